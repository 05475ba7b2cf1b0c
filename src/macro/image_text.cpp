#include "macro/image_text.h"

#include <algorithm>
#include <limits>

#include "macro/image_escapes.h"
#include "model/instruction_reader.h"
#include "platform/text.h"

namespace coverage {
namespace {

bool HasKind(std::string_view token, std::string_view kind) {
  return token.size() >= kTokenBody && platform::EqualNoCase(token.substr(0, kind.size()), kind);
}

}  // namespace

std::string_view OutcomeName(qal::Status outcome, bool comparing) {
  switch (outcome) {
    case kAddressMismatch:
      return comparing ? "Address mismatch" : "Address Mismatch";
    case kExecutionMismatch:
      return "Execution Path mismatch";
    case kTimesMismatch:
      return "Instruction execution time mismatch";
    case kPassMismatch:
      return "Pass mismatch";
    case kRangeNotFound:
      return "Range not found";
    case kImageCorrupted:
      return "Image file corrupted";
    default:
      return {};
  }
}

bool IsSourceToken(std::string_view token) { return HasKind(token, "src"); }
bool IsRangeToken(std::string_view token) { return HasKind(token, "rng"); }
bool IsSelectedToken(std::string_view token) { return token.size() > kTokenMark && token[kTokenMark] == '+'; }

std::string RangeToken(std::uint32_t start, std::uint32_t end, bool selected) {
  return platform::Format("rng%c0x%X - 0x%X", selected ? '+' : '-', start, end);
}

std::string SourceToken(std::string_view sourceFile, bool selected) {
  return std::string(selected ? "src+" : "src-").append(sourceFile);
}

std::string_view TokenLabel(std::string_view token) {
  const std::size_t backslash = platform::FindLastBackslash(token);
  if (backslash != std::string_view::npos) return token.substr(backslash + 1);
  return token.size() > kTokenBody ? token.substr(kTokenBody) : std::string_view();
}

std::string StarsForBackslashes(std::string_view text) { return platform::ReplaceAll(text, "\\", "*"); }

ImageSelection ParseImageSelection(std::string_view text, bool* complete) {
  ImageSelection selection;
  if (complete) *complete = !text.empty();
  if (text.empty()) return selection;
  const std::string_view digits = text.substr(std::min(kImageVersion.size(), text.size()), 2);
  selection.options = static_cast<std::uint32_t>(CountOfField(digits));
  for (std::size_t open = text.find('('); open != std::string_view::npos;) {
    const std::size_t close = text.find(')', open);
    if (close == std::string_view::npos) {
      if (complete) *complete = false;
      break;
    }
    selection.tokens.push_back(ReadToken(text.substr(open + 1, close - open - 1)));
    open = text.find('(', close);
  }
  return selection;
}

std::string ImageHead(std::uint32_t options) {
  return std::string(kImageVersion) + platform::Format("%02d", static_cast<std::int32_t>(options));
}

bool IsMalformed(std::string_view image) { return !SplitImage(image); }

std::optional<std::vector<ImageItem>> SplitImage(std::string_view image) {
  std::vector<ImageItem> items;
  for (std::size_t open = image.find('('); open != std::string_view::npos;) {
    const std::size_t close = image.find(')', open);
    if (close == std::string_view::npos) return std::nullopt;
    const std::size_t next = image.find('(', close);
    const std::size_t end = std::min(next, image.size());
    items.push_back(
        {ReadToken(image.substr(open + 1, close - open - 1)), image.substr(close + 1, end - close - 1)});
    open = next;
  }
  return items;
}

std::vector<ImageInstance> SplitItem(std::string_view itemData) {
  std::vector<ImageInstance> instances;
  for (std::string_view rest = itemData; rest.starts_with('~');) {
    const std::size_t nameEnd = platform::FindChar(rest, '~', 1);
    if (nameEnd == std::string_view::npos) break;
    const std::size_t dataEnd = std::min(rest.find('~', nameEnd + 1), rest.size());
    instances.push_back(
        {ReadName(rest.substr(1, nameEnd - 1)), rest.substr(nameEnd + 1, dataEnd - nameEnd - 1)});
    rest.remove_prefix(dataEnd);
  }
  return instances;
}

std::vector<NamedPart> PartsOf(const std::vector<ImageInstance>& instances) {
  std::vector<NamedPart> parts;
  parts.reserve(instances.size());
  for (const ImageInstance& instance : instances) {
    const auto address = EntryReader(instance.data).Field();
    parts.push_back({instance.name, address ? AddressOfText(*address) : kNoStart});
  }
  return parts;
}

std::string_view EntryReader::LastField(bool& ended) {
  const std::optional<std::string_view> field = Field();
  ended = !field;
  if (field) return *field;
  const std::string_view last = rest();
  next_ = end_;
  return last;
}

bool EntryReader::HasField() const { return rest().find(' ') != std::string_view::npos; }

std::int64_t CountOfField(std::string_view field) {
  std::size_t at = 0;
  while (at < field.size() && field[at] == ' ') ++at;
  const bool negative = at < field.size() && field[at] == '-';
  if (negative || (at < field.size() && field[at] == '+')) ++at;
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  constexpr std::uint64_t kTooLarge = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t value = 0;
  for (; at < field.size() && field[at] >= '0' && field[at] <= '9'; ++at) {
    value = value > kMost / 10 ? kTooLarge : value * 10 + static_cast<std::uint64_t>(field[at] - '0');
  }
  value = std::min(value, negative ? kMost + 1 : kMost);
  return static_cast<std::int64_t>(negative ? 0 - value : value);
}

}  // namespace coverage
