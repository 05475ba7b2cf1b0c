#include "commands/command_paths.h"

#include "platform/files.h"
#include "platform/paths.h"
#include "platform/text.h"

namespace coverage {
namespace {

/// The current project's directory; empty when none is open.
std::string ProjectDirectory(const PlaceholderResolver& placeholders) {
  std::string directory;
  placeholders.ResolveIndex(placeholder::kProjectDir, directory);
  return directory == PlaceholderResolver::PlaceholderName(placeholder::kProjectDir, true) ? std::string()
                                                                                           : directory;
}

/// Single backslashes, but for the two that a network path begins with.
std::string WithSingleBackslashes(std::string_view path) {
  std::string single;
  bool afterBackslash = false;
  for (std::size_t at = 0; at < path.size(); at = platform::NextChar(path, at)) {
    const bool backslash = path[at] == '\\';
    if (!backslash || !afterBackslash || at == 1) single.append(path, at, platform::CharLength(path, at));
    afterBackslash = backslash;
  }
  return single;
}

}  // namespace

ResolvedPath ExpandPath(std::string_view typed, const PlaceholderResolver& placeholders) {
  if (typed.size() >= 2 && typed.starts_with('"') && typed.ends_with('"')) {
    typed = typed.substr(1, typed.size() - 2);
  }
  ResolvedPath result;
  result.path = WithSingleBackslashes(placeholders.ExpandPlaceholders(typed, {}, &result.resolved));
  if (result.path.find("$(") != std::string::npos || platform::FilePart(result.path).empty())
    result.resolved = false;
  return result;
}

ResolvedPath ResolveInProject(std::string_view typed, const PlaceholderResolver& placeholders) {
  ResolvedPath result = ExpandPath(typed, placeholders);
  if (!result.resolved || platform::IsAbsolutePath(result.path)) return result;
  const std::string directory = ProjectDirectory(placeholders);
  if (directory.empty() || result.path.find(':') != std::string::npos) {
    result.resolved = false;
  } else {
    result.path = platform::JoinPath(directory, result.path);
  }
  return result;
}

ResolvedPath ResolveBelow(std::string_view directory, std::string_view typed,
                          const PlaceholderResolver& placeholders) {
  ResolvedPath result = ExpandPath(typed, placeholders);
  result.path = result.resolved ? platform::FullPath(result.path, directory)
                                : platform::FullPath(PutInProject(result.path, placeholders));
  return result;
}

std::string PutInProject(std::string_view path, const PlaceholderResolver& placeholders) {
  const std::string directory = ProjectDirectory(placeholders);
  const std::string file = platform::FilePart(path);
  return directory.empty() || file.empty() ? file : platform::JoinPath(directory, file);
}

bool HasExtension(std::string_view path, std::string_view extension) {
  return platform::EqualNoCase(platform::ExtensionPart(path), extension);
}

bool HasNoExtension(std::string_view path) { return platform::ExtensionPart(path).empty(); }

std::string WithDefaultExtension(std::string_view name, std::string_view extension) {
  return std::string(name).append(HasNoExtension(name) ? extension : std::string_view());
}

bool DirectoryExists(std::string_view path) {
  const std::string directory = platform::DirectoryPart(path);
  return directory.empty() || platform::IsDirectory(directory) ||
         platform::IsDirectory(platform::WithoutTrailingSeparator(directory));
}

}  // namespace coverage
