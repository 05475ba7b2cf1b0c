#include "platform/code_page.h"

#include <iconv.h>

#include <atomic>
#include <memory>
#include <mutex>

#include "platform/text.h"

namespace platform {
namespace {

/// Both directions of code page 932, filled once from the C library's converter.
struct ShiftJisTables {
  char16_t fromBytes[0x10000] = {};     ///< by single byte or lead << 8 | trail; 0 is none
  std::uint16_t toBytes[0x10000] = {};  ///< by UTF-16 unit; 0 is none
};

constexpr bool IsShiftJisLead(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}
constexpr bool IsShiftJisTrail(unsigned char byte) { return byte >= 0x40 && byte <= 0xFC && byte != 0x7F; }

/// One conversion of a few bytes; the bytes written, 0 when the input is not one whole character.
std::size_t Convert(iconv_t converter, const unsigned char* in, std::size_t inSize, unsigned char* out,
                    std::size_t outSize) {
  char* from = reinterpret_cast<char*>(const_cast<unsigned char*>(in));
  char* to = reinterpret_cast<char*>(out);
  std::size_t left = outSize;
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  return iconv(converter, &from, &inSize, &to, &left) == 0 && inSize == 0 ? outSize - left : 0;
}

std::unique_ptr<ShiftJisTables> BuildShiftJis() {
  iconv_t in = iconv_open("UTF-16LE", "CP932");
  iconv_t out = iconv_open("CP932", "UTF-16LE");
  std::unique_ptr<ShiftJisTables> tables;
  if (in != iconv_t(-1) && out != iconv_t(-1)) {
    tables = std::make_unique<ShiftJisTables>();
    const auto take = [&](const unsigned char* bytes, std::size_t count, unsigned index) {
      unsigned char unit[4];
      if (Convert(in, bytes, count, unit, sizeof(unit)) == 2) {
        tables->fromBytes[index] = static_cast<char16_t>(unit[0] | unit[1] << 8);
      }
    };
    for (unsigned lead = 1; lead < 0x100; ++lead) {
      unsigned char bytes[2] = {static_cast<unsigned char>(lead), 0};
      if (!IsShiftJisLead(bytes[0])) {
        take(bytes, 1, lead);
        continue;
      }
      for (unsigned trail = 0x40; trail <= 0xFC; ++trail) {
        bytes[1] = static_cast<unsigned char>(trail);
        if (IsShiftJisTrail(bytes[1])) take(bytes, 2, lead << 8 | trail);
      }
    }
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
      const unsigned char bytes[2] = {static_cast<unsigned char>(unit),
                                      static_cast<unsigned char>(unit >> 8)};
      unsigned char result[4];
      const std::size_t count = Convert(out, bytes, 2, result, sizeof(result));
      if (count == 1) tables->toBytes[unit] = result[0];
      if (count == 2) tables->toBytes[unit] = static_cast<std::uint16_t>(result[0] << 8 | result[1]);
    }
  }
  if (in != iconv_t(-1)) iconv_close(in);
  if (out != iconv_t(-1)) iconv_close(out);
  return tables;
}

/// Null while the code page is UTF-8.
std::atomic<const ShiftJisTables*> shiftJis{nullptr};

}  // namespace

bool SetCodePage(std::uint32_t codePage) {
  if (codePage == kUtf8) {
    shiftJis = nullptr;
    return true;
  }
  if (codePage != kShiftJis) return false;
  static const std::unique_ptr<ShiftJisTables> tables = BuildShiftJis();
  if (!tables) return false;
  shiftJis = tables.get();
  return true;
}

std::uint32_t CodePage() { return shiftJis.load() ? kShiftJis : kUtf8; }

bool IsLeadByte(unsigned char byte) {
  return shiftJis.load() ? IsShiftJisLead(byte) : byte >= 0xC2 && byte <= 0xF4;
}

namespace code_page {

Character DecodeUtf8(std::string_view text, std::size_t position) {
  const auto byte = [&](std::size_t i) -> unsigned {
    return position + i < text.size() ? static_cast<unsigned char>(text[position + i]) : 0u;
  };
  const auto isTail = [](unsigned value) { return (value & 0xC0) == 0x80; };
  const unsigned lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  char32_t code = lead & (0x7F >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (!isTail(byte(i))) return {kNoCharacter, 1};
    code = code << 6 | (byte(i) & 0x3F);
  }
  constexpr char32_t kLowest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool valid = lead >= 0xC2 && lead <= 0xF4 && code >= kLowest[length] && code <= 0x10FFFF &&
                     !(code >= 0xD800 && code <= 0xDFFF);
  return valid ? Character{code, length} : Character{kNoCharacter, 1};
}

Character Decode(std::string_view text, std::size_t position) {
  const ShiftJisTables* tables = shiftJis.load();
  if (!tables) return DecodeUtf8(text, position);
  const auto lead = static_cast<unsigned char>(text[position]);
  unsigned index = lead;
  std::size_t length = 1;
  if (IsShiftJisLead(lead)) {
    if (position + 1 >= text.size()) return {kNoCharacter, 1};
    const auto trail = static_cast<unsigned char>(text[position + 1]);
    if (!IsShiftJisTrail(trail)) return {kNoCharacter, 1};
    index = static_cast<unsigned>(lead << 8 | trail);
    length = 2;
  }
  const char16_t unit = tables->fromBytes[index];
  return {unit || index == 0 ? char32_t{unit} : kNoCharacter, length};
}

bool EncodeUtf8(char32_t code, std::string* out) {
  if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return false;
  const auto put = [&](char32_t byte) { out->push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | code >> 6);
    put(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    put(0xE0 | code >> 12);
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
  } else {
    put(0xF0 | code >> 18);
    put(0x80 | (code >> 12 & 0x3F));
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
  }
  return true;
}

bool Encode(char32_t code, std::string* out) {
  const ShiftJisTables* tables = shiftJis.load();
  if (!tables) return EncodeUtf8(code, out);
  if (code == 0) {
    out->push_back('\0');
    return true;
  }
  const std::uint16_t bytes = code < 0x10000 ? tables->toBytes[code] : std::uint16_t{0};
  if (bytes == 0) return false;
  if (bytes > 0xFF) out->push_back(static_cast<char>(bytes >> 8));
  out->push_back(static_cast<char>(bytes));
  return true;
}

void EncodeUtf16(char32_t code, std::u16string* out) {
  if (code > 0x10FFFF) {
    out->push_back(u'?');
  } else if (code < 0x10000) {
    out->push_back(static_cast<char16_t>(code));
  } else {
    out->push_back(static_cast<char16_t>(0xD7C0 + (code >> 10)));
    out->push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
  }
}

Character DecodeUtf16(std::u16string_view text, std::size_t position) {
  const char16_t unit = text[position];
  if (unit < 0xD800 || unit > 0xDFFF) return {unit, 1};
  if (unit > 0xDBFF || position + 1 >= text.size()) return {kNoCharacter, 1};
  const char16_t second = text[position + 1];
  if (second < 0xDC00 || second > 0xDFFF) return {kNoCharacter, 1};
  return {0x10000 + (char32_t(unit - 0xD800) << 10) + (second - 0xDC00u), 2};
}

}  // namespace code_page
}  // namespace platform
