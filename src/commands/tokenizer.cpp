#include "commands/tokenizer.h"

#include "platform/text.h"

namespace coverage {
namespace {

void ReadQuoted(std::string_view& cursor, std::string& token) {
  token.push_back('"');
  cursor.remove_prefix(1);
  while (!cursor.empty()) {
    const std::size_t quote = cursor.find('"');
    token.append(cursor.substr(0, quote));
    if (quote == std::string_view::npos) {
      cursor.remove_prefix(cursor.size());
      return;
    }
    token.push_back('"');
    cursor.remove_prefix(quote + 1);
    if (cursor.empty() || cursor.front() != '"') return;
    cursor.remove_prefix(1);
  }
}

}  // namespace

void NextToken(std::string_view& cursor, std::string& token, TokenKind& kind) {
  token.clear();
  kind = TokenKind::kWord;
  while (!cursor.empty() && cursor.front() == ' ') cursor.remove_prefix(1);
  if (cursor.empty()) return;
  if (cursor.front() == '"') {
    kind = TokenKind::kQuoted;
    ReadQuoted(cursor, token);
    return;
  }
  const bool braced = cursor.front() == '{';
  if (braced) cursor.remove_prefix(1);
  const std::size_t end = platform::FindChar(cursor, braced ? '}' : ' ');
  token = cursor.substr(0, end);
  // The brace is used up with the token; the blank stays for the next one.
  cursor.remove_prefix(end == std::string_view::npos ? cursor.size() : end + (braced ? 1 : 0));
}

bool OnlyBlanksRemain(std::string_view cursor) {
  return cursor.find_first_not_of(" \t") == std::string_view::npos;
}

}  // namespace coverage
