#pragma once

#include <string>
#include <string_view>

#include "platform/api.h"

/// Paths in the product's form: backslashes, an optional drive letter, texts in the system code page. Slashes
/// and repeated separators are understood. Only ToNative and FromNative know what the operating system calls
/// a file. Any thread; the drive root is set once, early.
namespace platform {

/// Directory of the operating system that "X:\" stands for, whatever the letter; at start "/". A path without
/// a drive letter is counted from the operating system's own root.
PLATFORM_API void SetDriveRoot(std::string_view nativeDirectory);
/// Native form, UTF-8. The path need not exist; each component is taken as it stands when it does, else in
/// whatever case it is found. A relative path is completed with CurrentDirectory.
PLATFORM_API std::string ToNative(std::string_view path);
/// Product form of an absolute native path: "C:\…" when it lies below a drive root other than "/", else "\…".
PLATFORM_API std::string FromNative(std::string_view nativePath);

/// Begins with a separator or with a drive letter and a separator.
PLATFORM_API bool IsAbsolutePath(std::string_view path);
/// Up to the last separator, without it ("C:\a.c" gives "C:\", "\a.c" gives "\"); empty when there is none.
PLATFORM_API std::string DirectoryPart(std::string_view path);
/// Behind the last separator, or behind the drive colon, or the whole path.
PLATFORM_API std::string FilePart(std::string_view path);
/// From the last dot of the file part on, with the dot; empty when there is none.
PLATFORM_API std::string ExtensionPart(std::string_view path);
/// One backslash between the two; either may be empty.
PLATFORM_API std::string JoinPath(std::string_view directory, std::string_view name);
/// Without separators at the end; a root keeps its own.
PLATFORM_API std::string WithoutTrailingSeparator(std::string_view path);
/// Absolute, with backslashes, without "." and ".."; a relative path is counted from `base`, and that, or an
/// empty one, from CurrentDirectory.
PLATFORM_API std::string FullPath(std::string_view path, std::string_view base = {});

PLATFORM_API std::string CurrentDirectory();
/// For this program's paths only: the process's own directory stays.
PLATFORM_API void SetCurrentDirectory(std::string_view directory);
/// What the system calls its own directories, where temporary files go, and who is logged on (at most 200
/// bytes).
PLATFORM_API std::string WindowsDirectory();
PLATFORM_API std::string SystemDirectory();
PLATFORM_API std::string TempDirectory();
PLATFORM_API std::string UserName();

}  // namespace platform
