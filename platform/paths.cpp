#include "platform/paths.h"

#include <dirent.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/native_path.h"
#include "platform/text.h"

namespace platform {
namespace {

constexpr std::size_t kLongestNative = PATH_MAX;
constexpr std::size_t kLongestUserName = 200;

/// What can be set: guarded, because worker threads open files too.
struct Settings {
  std::mutex mutex;
  std::string driveRoot;  ///< native, without a slash at its end: empty for "/"
  std::string directory;  ///< product form; empty for the process's own
};
Settings& TheSettings() {
  static Settings settings;
  return settings;
}

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

bool HasDrive(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' && ((path[0] | 0x20) >= 'a' && (path[0] | 0x20) <= 'z');
}

std::string DriveRoot() {
  Settings& settings = TheSettings();
  const std::lock_guard lock(settings.mutex);
  return settings.driveRoot;
}

std::size_t LastSeparator(std::string_view path) {
  std::size_t last = std::string_view::npos;
  for (std::size_t i = 0; i < path.size(); i = NextChar(path, i)) {
    if (IsSeparator(path[i])) last = i;
  }
  return last;
}

/// The names between the separators.
std::vector<std::string_view> Names(std::string_view path) {
  std::vector<std::string_view> names;
  std::size_t begin = 0;
  for (std::size_t i = 0; i <= path.size(); i = i == path.size() ? i + 1 : NextChar(path, i)) {
    if (i < path.size() && !IsSeparator(path[i])) continue;
    if (i > begin) names.push_back(path.substr(begin, i - begin));
    begin = i + 1;
  }
  return names;
}

/// The name in a directory that is `name`, else one that differs from it in case only: the first in byte
/// order.
std::string FindNoCase(const std::string& directory, const std::string& name) {
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(directory.c_str()), closedir);
  std::string found;
  if (!stream) return found;
  const std::string wanted = FromUtf8(name);
  while (const dirent* entry = readdir(stream.get())) {
    const std::string candidate = entry->d_name;
    if (candidate == name) return name;
    if (!EqualNoCase(FromUtf8(candidate), wanted)) continue;
    if (found.empty() || candidate < found) found = candidate;
  }
  return found;
}

/// `native` as it is called on the disk: with the case that is there, where the exact name is not.
std::string ResolveCase(const std::string& native) {
  if (native.empty() || native == "/" || access(native.c_str(), F_OK) == 0) return native;
  const std::size_t slash = native.rfind('/');
  if (slash == std::string::npos) return native;
  const std::string parent = ResolveCase(slash == 0 ? "/" : native.substr(0, slash));
  const std::string name = native.substr(slash + 1);
  const std::string found = FindNoCase(parent, name);
  return (parent == "/" ? parent : parent + "/") + (found.empty() ? name : found);
}

}  // namespace

std::optional<std::string> FullNativePath(const std::string& native) {
  const std::unique_ptr<char, void (*)(void*)> full(realpath(native.c_str(), nullptr), std::free);
  if (!full) return std::nullopt;
  return std::string(full.get());
}

void SetDriveRoot(std::string_view nativeDirectory) {
  Settings& settings = TheSettings();
  const std::lock_guard lock(settings.mutex);
  settings.driveRoot = nativeDirectory;
  while (!settings.driveRoot.empty() && settings.driveRoot.back() == '/') settings.driveRoot.pop_back();
}

std::string ToNative(std::string_view path) {
  const std::string absolute = FullPath(path);
  const std::string_view rest = HasDrive(absolute) ? std::string_view(absolute).substr(2) : absolute;
  std::string native = HasDrive(absolute) ? DriveRoot() : std::string{};
  for (const std::string_view name : Names(rest)) native += "/" + ToUtf8(name);
  if (native.empty()) native = "/";
  std::replace(native.begin(), native.end(), '\0', '?');  // a zero would cut the name short
  return native.size() < kLongestNative ? ResolveCase(native) : native;
}

std::string FromNative(std::string_view nativePath) {
  const std::string root = DriveRoot();
  std::string path;
  if (!root.empty() && nativePath.starts_with(root) &&
      (nativePath.size() == root.size() || nativePath[root.size()] == '/')) {
    path = "C:";
    nativePath.remove_prefix(root.size());
  }
  const std::string rest = FromUtf8(nativePath);
  for (const std::string_view name : Names(rest)) path.append("\\").append(name);
  return path.empty() || path == "C:" ? path + "\\" : path;
}

bool IsAbsolutePath(std::string_view path) {
  if (HasDrive(path)) path.remove_prefix(2);
  return !path.empty() && IsSeparator(path[0]);
}

std::string DirectoryPart(std::string_view path) {
  const std::size_t separator = LastSeparator(path);
  if (separator == std::string_view::npos) return {};
  const bool isRoot = separator == 0 || (separator == 2 && HasDrive(path));
  return std::string(path.substr(0, separator + (isRoot ? 1 : 0)));
}

std::string FilePart(std::string_view path) {
  const std::size_t separator = LastSeparator(path);
  if (separator != std::string_view::npos) return std::string(path.substr(separator + 1));
  return std::string(HasDrive(path) ? path.substr(2) : path);
}

std::string ExtensionPart(std::string_view path) {
  const std::string file = FilePart(path);
  const std::size_t dot = FindLastChar(file, '.');
  return dot == std::string::npos ? std::string{} : file.substr(dot);
}

std::string JoinPath(std::string_view directory, std::string_view name) {
  if (directory.empty() || name.empty()) return std::string(directory.empty() ? name : directory);
  const bool ends = LastSeparator(directory) == directory.size() - 1;
  if (IsSeparator(name[0])) name.remove_prefix(1);
  return std::string(directory) + (ends ? "" : "\\") + std::string(name);
}

std::string WithoutTrailingSeparator(std::string_view path) {
  const std::size_t root = HasDrive(path) ? 3 : 1;
  while (path.size() > root && LastSeparator(path) == path.size() - 1) path.remove_suffix(1);
  return std::string(path);
}

std::string FullPath(std::string_view path, std::string_view base) {
  std::string joined(path);
  if (!IsAbsolutePath(path) && !HasDrive(path)) {
    std::string from = base.empty() ? CurrentDirectory() : std::string(base);
    if (!IsAbsolutePath(from) && !HasDrive(from)) from = JoinPath(CurrentDirectory(), from);
    joined = path.empty() ? from : JoinPath(from, path);
  }
  std::string full = HasDrive(joined) ? joined.substr(0, 2) : std::string{};
  std::vector<std::string_view> kept;
  for (const std::string_view name : Names(std::string_view(joined).substr(full.size()))) {
    if (name == ".") continue;
    if (name != "..") {
      kept.push_back(name);
    } else if (!kept.empty()) {
      kept.pop_back();
    }
  }
  if (kept.empty()) return full + "\\";
  for (const std::string_view name : kept) full.append("\\").append(name);
  return full;
}

std::string CurrentDirectory() {
  Settings& settings = TheSettings();
  {
    const std::lock_guard lock(settings.mutex);
    if (!settings.directory.empty()) return settings.directory;
  }
  const std::unique_ptr<char, void (*)(void*)> native(getcwd(nullptr, 0), std::free);
  return FromNative(native ? native.get() : "/");
}

void SetCurrentDirectory(std::string_view directory) {
  const std::string full = directory.empty() ? std::string{} : FullPath(directory);
  Settings& settings = TheSettings();
  const std::lock_guard lock(settings.mutex);
  settings.directory = full;
}

std::string WindowsDirectory() { return "\\usr"; }
std::string SystemDirectory() { return "\\usr\\lib"; }

std::string TempDirectory() {
  const char* chosen = std::getenv("TMPDIR");
  return FromNative(chosen && chosen[0] == '/' ? chosen : "/tmp");
}

std::string UserName() {
  char buffer[4096];
  passwd record{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &record, buffer, sizeof(buffer), &found) != 0 || !found) return {};
  const std::string name = FromUtf8(found->pw_name);
  return std::string(CutToBytes(name, kLongestUserName));
}

}  // namespace platform
