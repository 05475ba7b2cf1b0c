#include "macro/image_escapes.h"

#include <cstddef>

#include "platform/text.h"

namespace coverage {
namespace {

constexpr struct Escape {
  char character;
  std::string_view written;
} kEscapes[] = {{'(', "%28"}, {')', "%29"}, {'~', "%7E"}, {'*', "%2A"}, {'%', "%25"}};

/// The escape that `text` begins with, or null.
const Escape* EscapeAtFront(std::string_view text) {
  for (const Escape& escape : kEscapes) {
    if (text.starts_with(escape.written)) return &escape;
  }
  return nullptr;
}

std::string Written(std::string_view text, bool path) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t next = platform::NextChar(text, at);
    std::string_view piece = text.substr(at, next - at);
    for (const Escape& escape : kEscapes) {
      // Only this character in front of a code could be taken for one; the others always are what they mean.
      const bool ambiguous = escape.character != '%' || EscapeAtFront(text.substr(at)) != nullptr;
      if (text[at] == escape.character && ambiguous) piece = escape.written;
    }
    out += path && text[at] == '\\' ? "*" : piece;
    at = next;
  }
  return out;
}

std::string Read(std::string_view text, bool path) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (const Escape* const escape = EscapeAtFront(text.substr(at))) {
      out += escape->character;
      at += escape->written.size();
      continue;
    }
    const std::size_t next = platform::NextChar(text, at);
    out += path && text[at] == '*' ? "\\" : text.substr(at, next - at);
    at = next;
  }
  return out;
}

}  // namespace

std::string WrittenName(std::string_view name) { return Written(name, false); }
std::string ReadName(std::string_view written) { return Read(written, false); }
std::string WrittenToken(std::string_view token) { return Written(token, true); }
std::string ReadToken(std::string_view written) { return Read(written, true); }

}  // namespace coverage
