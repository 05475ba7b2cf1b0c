#pragma once

#include <string>
#include <string_view>

/// Names and paths in images. An image is cut at "(", ")" and "~", and "*" stands for the backslash of a
/// path; where a name holds one of these it is written as %28 %29 %7E %2A, and "%" as %25 where it would read
/// as the beginning of one of these five. Everything else stands byte for byte, double-byte characters whole.
/// Any thread.
namespace coverage {

/// A function's name in a "~name~" head, and back. What no writer makes reads as it stands.
std::string WrittenName(std::string_view name);
std::string ReadName(std::string_view written);

/// An item's token in brackets, and back: a backslash is written as "*".
std::string WrittenToken(std::string_view token);
std::string ReadToken(std::string_view written);

}  // namespace coverage
