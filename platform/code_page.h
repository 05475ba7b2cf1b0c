#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Characters of the two code pages, one at a time. Inside the platform library only.
namespace platform::code_page {

inline constexpr char32_t kNoCharacter = 0xFFFFFFFF;

struct Character {
  char32_t code;       ///< kNoCharacter for bytes that mean nothing
  std::size_t length;  ///< bytes, at least 1
};

/// The character at `position`, which must be inside the text.
Character DecodeUtf8(std::string_view text, std::size_t position);
Character Decode(std::string_view text, std::size_t position);
/// Appends a character; false, and nothing appended, when the code page has none for it.
bool EncodeUtf8(char32_t code, std::string* out);
bool Encode(char32_t code, std::string* out);

/// Appends the UTF-16 form; a code that is no character becomes "?".
void EncodeUtf16(char32_t code, std::u16string* out);
/// The character at `position`; lone halves of a pair give kNoCharacter.
Character DecodeUtf16(std::u16string_view text, std::size_t position);

}  // namespace platform::code_page
