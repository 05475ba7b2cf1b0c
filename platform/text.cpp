#include "platform/text.h"

#include <locale.h>

#include <algorithm>
#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cwctype>
#include <type_traits>

#include "platform/code_page.h"

namespace platform {
namespace {

using code_page::Character;
using code_page::kNoCharacter;

/// How many units from the beginning on are ASCII, which is the same in every encoding here. Looks at no more
/// than a cache holds, so that what follows finds them there.
template <class Unit>
std::size_t AsciiAhead(std::basic_string_view<Unit> text) {
  constexpr std::size_t kFarthest = 4096;
  constexpr std::size_t kAtOnce = 32;
  const std::size_t size = std::min(text.size(), kFarthest);
  const auto bits = [text](std::size_t i) { return static_cast<std::make_unsigned_t<Unit>>(text[i]); };
  std::size_t length = 0;
  for (; length + kAtOnce <= size; length += kAtOnce) {
    unsigned all = 0;
    for (std::size_t i = 0; i < kAtOnce; ++i) all |= bits(length + i);
    if (all >= 0x80) break;
  }
  while (length < size && bits(length) < 0x80) ++length;
  return length;
}

/// Appends the ASCII that `text` begins with; how many units that was.
template <class To, class From>
std::size_t AppendAscii(std::basic_string_view<From> text, std::basic_string<To>& out) {
  const std::size_t length = AsciiAhead(text);
  const std::size_t at = out.size();
  out.resize(at + length);
  std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length),
                 out.begin() + static_cast<std::ptrdiff_t>(at),
                 [](From unit) { return static_cast<To>(unit); });
  return length;
}

/// Text of `code`s from one encoding in another; what either of them cannot say becomes "?".
std::string Recode(std::string_view text, Character (*decode)(std::string_view, std::size_t),
                   bool (*encode)(char32_t, std::string*)) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const Character character = decode(text, i);
    if (character.code == kNoCharacter || !encode(character.code, &out)) out.push_back('?');
    i += character.length;
  }
  return out;
}

wint_t MapCase(wint_t code, bool upper) {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (!locale) return code;
  return upper ? towupper_l(code, locale) : towlower_l(code, locale);
}

std::string ChangeCase(std::string_view text, bool upper) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80) {
      const bool changes = upper ? byte >= 'a' && byte <= 'z' : byte >= 'A' && byte <= 'Z';
      out.push_back(static_cast<char>(changes ? byte ^ 0x20 : byte));
      ++i;
      continue;
    }
    const Character character = code_page::Decode(text, i);
    const std::size_t before = out.size();
    const bool mapped = character.code != kNoCharacter &&
                        code_page::Encode(static_cast<char32_t>(MapCase(character.code, upper)), &out) &&
                        out.size() - before == character.length;
    if (!mapped) {
      out.resize(before);
      out.append(text.substr(i, character.length));
    }
    i += character.length;
  }
  return out;
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

std::string Narrow(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    if (const std::size_t ascii = AppendAscii(text.substr(i), out)) {
      i += ascii;
      continue;
    }
    const Character character = code_page::DecodeUtf16(text, i);
    if (character.code == kNoCharacter || !code_page::Encode(character.code, &out)) out.push_back('?');
    i += character.length;
  }
  return out;
}

std::string Narrow(qal::WideText text) { return Narrow(qal::TextView(text)); }

std::u16string Widen(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    if (const std::size_t ascii = AppendAscii(text.substr(i), out)) {
      i += ascii;
      continue;
    }
    const Character character = code_page::Decode(text, i);
    code_page::EncodeUtf16(character.code, &out);
    i += character.length;
  }
  return out;
}

char16_t* NewWide(std::string_view text) { return qal::AllocText(Widen(text)); }

std::string FromUtf8(std::string_view utf8) { return Recode(utf8, code_page::DecodeUtf8, code_page::Encode); }
std::string ToUtf8(std::string_view text) { return Recode(text, code_page::Decode, code_page::EncodeUtf8); }

char16_t** WideOut::put() {
  qal::FreeText(block_);
  block_ = nullptr;
  return &block_;
}

std::string Format(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  char small[256];
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(small, sizeof(small), format, arguments);
  va_end(arguments);
  std::string text;
  if (length > 0) {
    text.resize(static_cast<std::size_t>(length));
    if (text.size() < sizeof(small)) {
      text.assign(small, text.size());
    } else {
      std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
  }
  va_end(again);
  return text;
}

std::size_t CharLength(std::string_view text, std::size_t position) {
  return code_page::Decode(text, position).length;
}

std::size_t NextChar(std::string_view text, std::size_t position) {
  return position < text.size() ? position + CharLength(text, position) : text.size();
}

std::size_t FindChar(std::string_view text, char wanted, std::size_t from) {
  for (std::size_t i = from; i < text.size(); i = NextChar(text, i)) {
    if (text[i] == wanted) return i;
  }
  return std::string_view::npos;
}

std::size_t FindLastChar(std::string_view text, char wanted) {
  std::size_t last = std::string_view::npos;
  for (std::size_t i = 0; i < text.size(); i = NextChar(text, i)) {
    if (text[i] == wanted) last = i;
  }
  return last;
}

std::size_t FindText(std::string_view text, std::string_view wanted, std::size_t from) {
  for (std::size_t i = from; i + wanted.size() <= text.size(); i = NextChar(text, i)) {
    if (text.compare(i, wanted.size(), wanted) == 0) return i;
  }
  return std::string_view::npos;
}

std::size_t FindLastBackslash(std::string_view text) { return FindLastChar(text, '\\'); }

std::string_view CutToBytes(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  std::size_t end = 0;
  for (std::size_t next = NextChar(text, 0); next <= bytes; next = NextChar(text, end)) {
    end = next;
    if (end == text.size()) break;
  }
  return text.substr(0, end);
}

std::string ToUpper(std::string_view text) { return ChangeCase(text, true); }
std::string ToLower(std::string_view text) { return ChangeCase(text, false); }

int CompareNoCase(std::string_view left, std::string_view right) {
  return ToLower(left).compare(ToLower(right));
}
bool EqualNoCase(std::string_view left, std::string_view right) {
  return left.size() == right.size() && CompareNoCase(left, right) == 0;
}

std::string Trim(std::string_view text) {
  std::size_t first = 0;
  while (first < text.size() && IsBlank(text[first])) ++first;
  std::size_t last = text.size();
  while (last > first && IsBlank(text[last - 1])) --last;  // no code page has a blank as a second byte
  return std::string(text.substr(first, last - first));
}

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
  std::string out;
  std::size_t done = 0;
  if (!from.empty()) {
    for (std::size_t i; (i = FindText(text, from, done)) != std::string_view::npos;) {
      out.append(text.substr(done, i - done)).append(to);
      done = i + from.size();
    }
  }
  return out.append(text.substr(done));
}

}  // namespace platform
