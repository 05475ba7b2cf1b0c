#include "workbench/console/image_file.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "platform/files.h"
#include "platform/text.h"
#include "workbench/console/words.h"

namespace workbench {
namespace {

constexpr std::size_t kLargestFile = 256u << 20;
constexpr std::size_t kHeadSize = 5;     // "1.0" and two digits
constexpr std::size_t kItemBody = 5;     // behind "(src+"
constexpr int kFieldsOfInstruction = 3;  // address, count and outcome, a blank behind each
constexpr std::string_view kProject = "$(PROJDIR)";
constexpr std::string_view kBlanks = " \t\r";

/// A path as images write it: "*" for a backslash, and the characters that images are cut at in codes, which
/// "%" in front of one of them has, too.
std::string ImagePath(std::string_view path) {
  constexpr struct {
    std::string_view character, written;
  } kWritten[] = {{"%28", "%2528"}, {"%29", "%2529"}, {"%7E", "%257E"}, {"%2A", "%252A"}, {"%25", "%2525"},
                  {"(", "%28"},     {")", "%29"},     {"~", "%7E"},     {"*", "%2A"},     {"\\", "*"}};
  std::string image;
  for (std::size_t at = 0; at < path.size();) {
    const std::string_view rest = path.substr(at);
    const auto* const found =
        std::find_if(std::begin(kWritten), std::end(kWritten),
                     [rest](const auto& each) { return rest.starts_with(each.character); });
    const bool plain = found == std::end(kWritten);
    const std::size_t size = plain ? platform::CharLength(rest, 0) : found->character.size();
    image += plain ? rest.substr(0, size) : found->written;
    at += size;
  }
  return image;
}

bool EndsWithoutBlank(std::string_view line) { return line.ends_with(')') || line.ends_with('~'); }

/// Where the line that begins at `from` ends: behind a bracket, a head or a blank.
std::size_t EndOfLine(std::string_view image, std::size_t from) {
  const auto behind = [&](char last) {
    const std::size_t at = platform::FindChar(image, last, from + 1);
    return at == std::string_view::npos ? image.size() : at + 1;
  };
  if (image[from] == '(') return behind(')');
  if (image[from] == '~') return behind('~');
  std::size_t at = from;
  for (int fields = 0; at < image.size() && fields < kFieldsOfInstruction; ++at) {
    if (image[at] == '(' || image[at] == '~') break;
    if (image[at] == ' ') ++fields;
  }
  return at;
}

/// Whether the bytes are UTF-8 as it should be: neither cut characters nor detours.
bool IsUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const auto first = static_cast<unsigned char>(text[at++]);
    if (first < 0x80) continue;
    const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    if (first < 0xC2 || first > 0xF4) return false;
    char32_t code = first & (0x3F >> more);
    for (int i = 0; i < more; ++i, ++at) {
      if (at >= text.size() || (static_cast<unsigned char>(text[at]) & 0xC0) != 0x80) return false;
      code = code << 6 | (static_cast<unsigned char>(text[at]) & 0x3F);
    }
    constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
    if (code < kLeast[more] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return false;
  }
  return true;
}

/// Why a file that cannot be read cannot be read.
std::string ReasonAgainst(const std::string& path) {
  if (!platform::PathExists(path)) return "there is no such file";
  if (platform::IsDirectory(path)) return "it is a directory";
  const auto size = platform::FileSize(path);
  if (!size) return "it is no ordinary file";
  if (*size > kLargestFile) return platform::Format("it is larger than %zu MiB", kLargestFile >> 20);
  return "it cannot be read";
}

}  // namespace

std::string LinesOfImage(std::string_view image, std::string_view directory) {
  const std::string base = ImagePath(directory) + "*";
  std::string lines(image.substr(0, kHeadSize));
  lines += '\n';
  for (std::size_t at = kHeadSize; at < image.size();) {
    const std::size_t end = EndOfLine(image, at);
    std::string_view line = image.substr(at, end - at);
    at = end;
    if (line.ends_with(' ')) line.remove_suffix(1);
    if (line.starts_with('(') && line.size() > kItemBody && line.substr(kItemBody).starts_with(base)) {
      lines.append(line.substr(0, kItemBody)).append(kProject);
      line.remove_prefix(kItemBody + base.size() - 1);
    }
    lines.append(line).push_back('\n');
  }
  // An image that its lines would not give back, as somebody's hand may have made it, stays in one.
  if (ImageOfLines(lines, directory) != image) lines = std::string(image) + "\n";
  return lines;
}

std::string ImageOfLines(std::string_view lines, std::string_view directory) {
  std::string image;
  for (bool first = true; !lines.empty(); first = false) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    std::string_view line = lines.substr(0, end);
    lines.remove_prefix(std::min(end + 1, lines.size()));
    if (first) {
      if (line.ends_with('\r')) line.remove_suffix(1);
      image += line;
      continue;
    }
    line = line.substr(0, line.find_last_not_of(kBlanks) + 1);
    if (line.empty()) continue;
    if (line.starts_with('(') && line.size() > kItemBody && line.substr(kItemBody).starts_with(kProject)) {
      image.append(line.substr(0, kItemBody)).append(ImagePath(directory));
      line.remove_prefix(kItemBody + kProject.size());
    }
    image += line;
    if (!EndsWithoutBlank(line)) image += ' ';
  }
  return image;
}

std::string ReadImageFile(const std::string& path, const std::string& shown, std::string_view directory,
                          std::string_view version) {
  const auto text = platform::ReadFile(path, kLargestFile);
  if (!text) throw VerbError(shown + ": " + ReasonAgainst(path));
  if (text->find('\0') != std::string::npos) throw VerbError(shown + " is no text: it holds zero bytes");
  if (!IsUtf8(*text)) throw VerbError(shown + " is no UTF-8 text");
  std::string image = ImageOfLines(platform::FromUtf8(*text), directory);
  const auto digit = [&](std::size_t at) {
    return at < image.size() && image[at] >= '0' && image[at] <= '9';
  };
  if (!image.starts_with(version) || !digit(version.size()) || !digit(version.size() + 1)) {
    throw VerbError(shown + " is no coverage image: it does not begin with " + std::string(version) +
                    " and two digits");
  }
  if (image.find('(') == std::string::npos) throw VerbError(shown + " checks nothing: it holds no item");
  return image;
}

void WriteImageFile(const std::string& path, const std::string& shown, std::string_view directory,
                    std::string_view image) {
  std::string error;
  if (!platform::ReplaceFile(path, platform::ToUtf8(LinesOfImage(image, directory)), &error)) {
    throw VerbError(shown + " cannot be written: " + error);
  }
}

}  // namespace workbench
