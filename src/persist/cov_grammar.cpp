#include "persist/cov_grammar.h"

#include <algorithm>
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

/// Eight hexadecimal digits of either case, all at once; false when one of them is none.
bool EightHexDigits(const char* at, std::uint32_t& value) {
  constexpr std::uint64_t kEach = 0x0101010101010101U;
  const std::uint64_t word = Load8(at);
  // In each byte: the digit's value, or the letter's place in the alphabet; high bits say that it is neither.
  const std::uint64_t digit = word ^ 0x30 * kEach;
  const std::uint64_t letter = (word | 0x20 * kEach) ^ 0x60 * kEach;
  const std::uint64_t noDigit = ((digit & 0x7F * kEach) + 0x76 * kEach) | digit;
  const std::uint64_t place = letter & 0x7F * kEach;
  const std::uint64_t noLetter = (place + 0x79 * kEach) | letter | ~(place + 0x7F * kEach);
  if ((noDigit & noLetter & 0x80 * kEach) != 0) return false;
  std::uint64_t sum = (word & 0x0F * kEach) + 9 * (word >> 6 & kEach);
  sum = (sum * 0x10 + (sum >> 8)) & 0x00FF00FF00FF00FFU;
  sum = (sum * 0x100 + (sum >> 16)) & 0x0000FFFF0000FFFFU;
  value = static_cast<std::uint32_t>(sum * 0x10000 + (sum >> 32));
  return true;
}

/// States of the pass texts of one character; kNoPass for any other character.
constexpr std::uint8_t kNoPass = 4;
constexpr auto kShortPass = [] {
  std::array<std::uint8_t, 256> states{};
  states.fill(kNoPass);
  states['-'] = 0;
  states['T'] = 1;
  states['F'] = 2;
  return states;
}();

/// The pass column of a row with the TABs around it; what stands behind `length` is overwritten.
struct PassColumn {
  char text[8];
  std::size_t length;
};
constexpr std::array<PassColumn, 4> kPassColumns = {
    {{"\t-\t", 3}, {"\tT\t", 3}, {"\tF\t", 3}, {"\tT/F\t", 5}}};

/// Whether a number stands at the front, so that a line of other text is no row.
bool BeginsWithNumber(std::string_view text, bool hexadecimal) {
  text = WithoutLeadingBlanks(text);
  return !text.empty() && kHexValues[static_cast<unsigned char>(text.front())] < (hexadecimal ? 16 : 10);
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
  if (!BeginsWithNumber(line.substr(0, first), false) || !BeginsWithNumber(address, true)) return false;
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
  if (!BeginsWithNumber(line, false) || !BeginsWithNumber(address, true)) return false;
  count.value = ParseDecimal32(line.substr(0, first));
  pass.value = PassStateOf(line.substr(passStart, second - passStart));
  count.address = pass.address = ParseHex32(address.substr(0, address.find(' ')));
  return true;
}

std::size_t ParseFastRow(const char* at, qal::CountPair& count, qal::CountPair& pass) {
  std::uint32_t eight;
  if (!EightDecimalDigits(at, eight)) return 0;
  std::uint64_t times = eight;
  const char* tab = at + 8;
  for (int more = 0; more < 2 && *tab >= '0' && *tab <= '9'; ++more) {
    times = times * 10 + static_cast<std::uint64_t>(*tab++ - '0');
  }
  // Pass texts come in no order, so nothing here depends on which one it is.
  const unsigned isBoth = std::memcmp(tab + 1, "T/F\t", 4) == 0;
  const unsigned state = isBoth * 3U | kShortPass[static_cast<unsigned char>(tab[1])];
  const unsigned known =
      isBoth | (static_cast<unsigned>(tab[2] == '\t') & static_cast<unsigned>(state < kNoPass));
  const char* const digits = tab + 3 + isBoth * 2U;
  std::uint32_t address;
  if (*tab != '\t' || known == 0 || !EightHexDigits(digits, address)) return 0;
  const char* end = digits + 8;
  if (*end == '\r') ++end;
  if (*end != '\n') return 0;
  count = {address, times > 0xFFFFFFFFU ? 0xFFFFFFFFU : static_cast<std::uint32_t>(times)};
  pass = {address, state};
  return static_cast<std::size_t>(end + 1 - at);
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
  const PassColumn& column = kPassColumns[pass & kPassMask];
  std::memcpy(out, column.text, sizeof column.text);
  out += column.length;
  if (address.size() == 8) {
    std::memcpy(out, address.data(), 8);
    return out + 8;
  }
  for (std::size_t i = address.size(); i < 8; ++i) *out++ = '0';
  return std::copy(address.begin(), address.end(), out);
}

void AlignToSteps(std::uint32_t& start, std::uint32_t& end) {
  if (start > end) std::swap(start, end);
  if (start & 1) --start;
  if (end > start && (end & 1) == 0) --end;
}

}  // namespace coverage
