// Cuts a command's argument line into tokens. Texts are in the system code page; a double-byte character is
// never split. Pure functions, any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace coverage {

enum class TokenKind : std::uint8_t {
  kWord = 0,    ///< up to the next blank, or the text between braces
  kQuoted = 1,  ///< between double quotes, which stay part of the token; a doubled quote inside became one
};

/// Reads one token and advances `cursor` behind it. At the end of the line the token is empty.
void NextToken(std::string_view& cursor, std::string& token, TokenKind& kind);

/// Whether only blanks and TABs remain.
bool OnlyBlanksRemain(std::string_view cursor);

}  // namespace coverage
