#pragma once

#include <optional>
#include <string>

/// The operating system's side of paths. Inside the platform library only.
namespace platform {

/// Absolute form of a native path, by the process's own directory; nothing when there is no such file.
std::optional<std::string> FullNativePath(const std::string& native);

}  // namespace platform
