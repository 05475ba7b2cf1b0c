// File names as commands take them: quotes, placeholders, the project's directory, extensions. UI thread
// only.
#pragma once

#include <string>
#include <string_view>

#include "util/placeholder_resolver.h"

namespace coverage {

struct ResolvedPath {
  std::string path;
  bool resolved = true;  ///< false: a placeholder without a value, no file name, or no directory to put it in
};

/// The text of a file name argument as a path with its placeholders expanded: without the pair of quotes
/// around it, and with the doubled backslashes of recorded lines made single.
ResolvedPath ExpandPath(std::string_view typed, const PlaceholderResolver& placeholders);

/// The same, with a name without a directory, or with a relative one, below the current project's directory.
ResolvedPath ResolveInProject(std::string_view typed, const PlaceholderResolver& placeholders);

/// The same, always absolute, for a name that a person types: a relative one is taken below `directory`, that
/// and an empty one below the current directory. What cannot be resolved is its file part in the current
/// project's directory, or in the current directory when no project is open.
ResolvedPath ResolveBelow(std::string_view directory, std::string_view typed,
                          const PlaceholderResolver& placeholders);

/// The file part of a path in the current project's directory; alone when no project is open, empty when the
/// path has none.
std::string PutInProject(std::string_view path, const PlaceholderResolver& placeholders);

/// Whether the path has this extension, given with its dot; case aside.
bool HasExtension(std::string_view path, std::string_view extension);
/// Whether the path has no extension.
bool HasNoExtension(std::string_view path);
/// The name with this extension, given with its dot, when it has none of its own.
std::string WithDefaultExtension(std::string_view name, std::string_view extension);

/// Whether the directory that the path lies in is there; a path without one lies in the current directory.
bool DirectoryExists(std::string_view path);

}  // namespace coverage
