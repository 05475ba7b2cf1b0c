#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// Coverage images as text files that a repository can keep, compare and merge. The component's image is one
/// long line; a file has a line each for the head (version and options), an item, a function or range, and an
/// instruction, none of which ends in a blank. Below the project's directory a source path is written from
/// there. The first line is taken as it stands, so that an image in one line is a file too.

/// The lines of an image, each with its line feed. `directory` is the project's.
std::string LinesOfImage(std::string_view image, std::string_view directory);
/// The image of such lines; CR LF ends a line as well.
std::string ImageOfLines(std::string_view lines, std::string_view directory);

/// Reads an image file by its product path. VerbError names the file as `shown` when it cannot be read, is
/// too large, holds what is no text, does not begin with `version` and two digits, or holds no item.
std::string ReadImageFile(const std::string& path, const std::string& shown, std::string_view directory,
                          std::string_view version);
/// Replaces a file as a whole. VerbError when that fails; the old file then stands as it was.
void WriteImageFile(const std::string& path, const std::string& shown, std::string_view directory,
                    std::string_view image);

}  // namespace workbench
