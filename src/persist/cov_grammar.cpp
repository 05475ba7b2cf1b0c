#include "persist/cov_grammar.h"

#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <utility>

#include "model/coverage_cell.h"

namespace coverage {
namespace {

constexpr auto kDigitPairs = [] {
  std::array<char, 200> pairs{};
  for (int i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

constexpr auto kHexValues = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(0xFF);
  for (int i = 0; i < 10; ++i) values['0' + i] = static_cast<std::uint8_t>(i);
  for (int i = 0; i < 6; ++i) {
    values['a' + i] = static_cast<std::uint8_t>(10 + i);
    values['A' + i] = static_cast<std::uint8_t>(10 + i);
  }
  return values;
}();

std::uint64_t Load8(const char* at) {
  std::uint64_t word;
  std::memcpy(&word, at, 8);
  return word;
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

/// Eight decimal digits as a value, all at once; false when one of them is no digit.
bool EightDecimalDigits(const char* at, std::uint32_t& value) {
  static_assert(std::endian::native == std::endian::little);
  std::uint64_t word = Load8(at) ^ 0x3030303030303030U;
  if (((word + 0x7676767676767676U) | word) & 0x8080808080808080U) return false;
  word = (word * 10 + (word >> 8)) & 0x00FF00FF00FF00FFU;
  word = (word * 100 + (word >> 16)) & 0x0000FFFF0000FFFFU;
  value = static_cast<std::uint32_t>((word * 10000 + (word >> 32)) & 0xFFFFFFFFU);
  return true;
}

bool EightHexDigits(const char* at, std::uint32_t& value) {
  std::uint32_t sum = 0;
  std::uint32_t bad = 0;
  for (int i = 0; i < 8; ++i) {
    const std::uint32_t digit = kHexValues[static_cast<unsigned char>(at[i])];
    bad |= digit;
    sum = sum << 4 | (digit & 15);
  }
  if (bad & 0xF0) return false;
  value = sum;
  return true;
}

std::uint32_t PassStateOf(std::string_view text) {
  const int state = PassOfText(text);
  return state < 0 ? 0 : static_cast<std::uint32_t>(state);
}

}  // namespace

std::uint32_t ParseHex32(std::string_view text) {
  text = WithoutLeadingBlanks(text);
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') &&
      kHexValues[static_cast<unsigned char>(text[2])] < 16) {
    text.remove_prefix(2);
  }
  std::uint64_t value = 0;
  for (const char c : text) {
    const std::uint8_t digit = kHexValues[static_cast<unsigned char>(c)];
    if (digit > 15) break;
    value = value << 4 | digit;
    if (value > 0xFFFFFFFFU) return 0xFFFFFFFFU;
  }
  return static_cast<std::uint32_t>(value);
}

std::uint32_t ParseDecimal32(std::string_view text) {
  std::uint64_t value = 0;
  for (const char c : WithoutLeadingBlanks(text)) {
    if (c < '0' || c > '9') break;
    value = value * 10 + static_cast<std::uint64_t>(c - '0');
    if (value > 0xFFFFFFFFU) return 0xFFFFFFFFU;
  }
  return static_cast<std::uint32_t>(value);
}

bool IsSectionLine(std::string_view line) {
  return line.find(kWindowSection) != std::string_view::npos ||
         line.find(kInstanceSection) != std::string_view::npos;
}

bool SplitKeyLine(std::string_view line, std::string_view& key, std::string_view& value) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return false;
  key = line.substr(0, equals);
  value = equals + 2 <= line.size() ? line.substr(equals + 2) : std::string_view();
  return true;
}

bool ParseTypedRow(std::string_view line, qal::CountPair& count, qal::CountPair& pass) {
  const std::size_t first = line.find('\t');
  if (first == std::string_view::npos) return false;
  const std::size_t second = line.find('\t', first + 1);
  if (second == std::string_view::npos) return false;
  const std::string_view address = line.substr(second + 1);
  count.value = ParseDecimal32(line.substr(0, first));
  pass.value = PassStateOf(line.substr(first + 1, second - first - 1));
  count.address = pass.address = ParseHex32(address.substr(0, address.find(' ')));
  return true;
}

bool ParseUntypedRow(std::string_view line, qal::CountPair& count, qal::CountPair& pass) {
  constexpr std::size_t kColumnGap = 6;
  const std::size_t first = line.find(' ');
  if (first == std::string_view::npos || first + kColumnGap >= line.size()) return false;
  const std::size_t passStart = first + kColumnGap;
  const std::size_t second = line.find(' ', passStart);
  if (second == std::string_view::npos || second + kColumnGap >= line.size()) return false;
  const std::string_view address = line.substr(second + kColumnGap);
  count.value = ParseDecimal32(line.substr(0, first));
  pass.value = PassStateOf(line.substr(passStart, second - passStart));
  count.address = pass.address = ParseHex32(address.substr(0, address.find(' ')));
  return true;
}

std::size_t ParseFastRow(const char* at, qal::CountPair& count, qal::CountPair& pass) {
  if (at[8] != '\t') return 0;
  std::uint32_t state;
  std::size_t digits = 11;
  if (at[10] == '\t') {
    if (at[9] == '-') {
      state = 0;
    } else if (at[9] == 'T') {
      state = 1;
    } else if (at[9] == 'F') {
      state = 2;
    } else {
      return 0;
    }
  } else if (std::memcmp(at + 9, "T/F\t", 4) == 0) {
    state = 3;
    digits = 13;
  } else {
    return 0;
  }
  const char* end = at + digits + 8;
  std::size_t length = digits + 9;
  if (end[0] == '\r' && end[1] == '\n') {
    ++length;
  } else if (end[0] != '\n') {
    return 0;
  }
  std::uint32_t times;
  std::uint32_t address;
  if (!EightDecimalDigits(at, times) || !EightHexDigits(at + digits, address)) return 0;
  count = {address, times};
  pass = {address, state};
  return length;
}

char* FormatDecimal8(char* out, std::uint64_t value) {
  if (value < 100000000U) {
    const auto low = static_cast<std::uint32_t>(value);
    const std::uint32_t high4 = low / 10000;
    const std::uint32_t low4 = low % 10000;
    std::memcpy(out, &kDigitPairs[2 * (high4 / 100)], 2);
    std::memcpy(out + 2, &kDigitPairs[2 * (high4 % 100)], 2);
    std::memcpy(out + 4, &kDigitPairs[2 * (low4 / 100)], 2);
    std::memcpy(out + 6, &kDigitPairs[2 * (low4 % 100)], 2);
    return out + 8;
  }
  out = std::to_chars(out, out + 20, value / 100000000U).ptr;
  return FormatDecimal8(out, value % 100000000U);
}

char* FormatHex8(char* out, std::uint32_t value) {
  for (int shift = 28; shift >= 0; shift -= 4) *out++ = "0123456789abcdef"[value >> shift & 15];
  return out;
}

char* FormatRow(char* out, std::uint64_t count, std::uint32_t pass, std::string_view address) {
  *out++ = '\r';
  *out++ = '\n';
  out = FormatDecimal8(out, count);
  *out++ = '\t';
  for (const char c : PassText(pass & kPassMask)) *out++ = c;
  *out++ = '\t';
  for (std::size_t i = address.size(); i < 8; ++i) *out++ = '0';
  std::memcpy(out, address.data(), address.size());
  return out + address.size();
}

void AlignToSteps(std::uint32_t& start, std::uint32_t& end) {
  if (start > end) std::swap(start, end);
  if (start & 1) --start;
  if (end > start && (end & 1) == 0) --end;
}

}  // namespace coverage
