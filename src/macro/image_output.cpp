#include "macro/image_output.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <utility>

#include "macro/image_text.h"
#include "model/coverage_cell.h"
#include "platform/text.h"

namespace coverage {
namespace {

/// Bytes in front of a text that hold its length.
constexpr std::size_t kLengthBytes = 4;
/// As many units as a length of 32 signed bits can tell, in bytes.
constexpr std::size_t kMostUnits = 0x3FFFFFFF;
constexpr std::size_t kFirstUnits = 1024;

/// Pass texts with the blanks around them, by pass bits; all are copied with their full size.
constexpr struct PassField {
  char text[8];
  std::uint8_t length;
} kPassFields[] = {{" - ", 3}, {" T ", 3}, {" F ", 3}, {" T/F ", 5}};
/// Most bytes of an entry beside its address text.
constexpr std::size_t kCountAndPass = 1 + 11 + sizeof(PassField::text);

/// Puts an address text without the zeros in front to `out`, where 8 bytes or the text's size must fit.
char* PutWithoutZeros(char* out, std::string_view text) {
  if (text.size() == 8) {
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t digits;
    std::memcpy(&digits, text.data(), 8);
    // The lowest bit that is set belongs to the first character that is no zero.
    const std::uint64_t others = digits ^ 0x3030303030303030U;
    const int zeros = others == 0 ? 0 : std::countr_zero(others) / 8;
    digits >>= 8 * zeros;
    std::memcpy(out, &digits, 8);
    return out + 8 - zeros;
  }
  text = WithoutZeros(text);
  return std::copy(text.begin(), text.end(), out);
}

}  // namespace

ImageOutput::~ImageOutput() { std::free(block_); }

void ImageOutput::Append(std::string_view text) {
  if (text.size() > kChunk - filled_) Flush();
  if (text.size() > kChunk) return AppendWide(text);
  std::copy(text.begin(), text.end(), chunk_.begin() + static_cast<std::ptrdiff_t>(filled_));
  filled_ += text.size();
}

void ImageOutput::Entry(std::string_view addressText, std::int32_t count, std::uint32_t pass) {
  if (addressText.size() > kLongestEntry - kCountAndPass) {
    Append(WithoutZeros(addressText));
    addressText = {};
  }
  if (kChunk - filled_ < kLongestEntry) Flush();
  char* at = PutWithoutZeros(chunk_.data() + filled_, addressText);
  *at++ = ' ';
  at = std::to_chars(at, at + 11, count).ptr;
  const PassField& field = kPassFields[pass & kPassMask];
  std::memcpy(at, field.text, sizeof field.text);
  filled_ = static_cast<std::size_t>(at + field.length - chunk_.data());
}

char16_t* ImageOutput::Take() {
  Flush();
  Grow(0);
  const auto bytes = static_cast<std::uint32_t>(units_ * sizeof(char16_t));
  std::memcpy(block_, &bytes, kLengthBytes);
  Text()[units_] = u'\0';
  char* const shrunk = static_cast<char*>(std::realloc(block_, kLengthBytes + bytes + sizeof(char16_t)));
  char* const taken = shrunk != nullptr ? shrunk : block_;
  block_ = nullptr;
  units_ = room_ = 0;
  return reinterpret_cast<char16_t*>(taken + kLengthBytes);
}

void ImageOutput::Flush() { AppendWide({chunk_.data(), std::exchange(filled_, 0)}); }

void ImageOutput::AppendWide(std::string_view text) {
  // All but names and paths is ASCII, which is the same in every code page.
  unsigned char all = 0;
  for (const char c : text) all |= static_cast<unsigned char>(c);
  const std::u16string other = all < 0x80 ? std::u16string() : platform::Widen(text);
  const std::size_t size = all < 0x80 ? text.size() : other.size();
  Grow(size);
  char16_t* const to = Text() + units_;
  if (all < 0x80) {
    for (std::size_t i = 0; i < size; ++i) to[i] = static_cast<unsigned char>(text[i]);
  } else {
    std::copy(other.begin(), other.end(), to);
  }
  units_ += size;
}

void ImageOutput::Grow(std::size_t units) {
  const std::size_t needed = units_ + units;
  if (block_ != nullptr && needed <= room_) return;
  if (needed > kMostUnits) throw std::bad_alloc();
  const std::size_t room = std::min(kMostUnits, std::max({needed, 2 * room_, kFirstUnits}));
  // Large blocks are moved by their pages: growing copies nothing.
  void* const grown = std::realloc(block_, kLengthBytes + (room + 1) * sizeof(char16_t));
  if (grown == nullptr) throw std::bad_alloc();
  block_ = static_cast<char*>(grown);
  room_ = room;
}

char16_t* ImageOutput::Text() const { return reinterpret_cast<char16_t*>(block_ + kLengthBytes); }

}  // namespace coverage
