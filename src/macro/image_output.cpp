#include "macro/image_output.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <utility>

#include "platform/text.h"

namespace coverage {
namespace {

/// Bytes in front of a text that hold its length.
constexpr std::size_t kLengthBytes = 4;
/// As many units as a length of 32 signed bits can tell, in bytes.
constexpr std::size_t kMostUnits = 0x3FFFFFFF;
constexpr std::size_t kFirstUnits = 1024;

}  // namespace

ImageOutput::~ImageOutput() { std::free(block_); }

void ImageOutput::Append(std::string_view text) {
  if (text.size() > kChunk - filled_) Flush();
  if (text.size() > kChunk) return AppendWide(text);
  std::copy(text.begin(), text.end(), chunk_.begin() + static_cast<std::ptrdiff_t>(filled_));
  filled_ += text.size();
}

void ImageOutput::Entry(std::string_view address, std::int32_t count, std::string_view pass) {
  constexpr std::size_t kCountAndBlanks = 11 + 3;
  if (address.size() + pass.size() > kLongestEntry - kCountAndBlanks) {
    Append(address);
    address = {};
  }
  if (kChunk - filled_ < kLongestEntry) Flush();
  char* at = chunk_.data() + filled_;
  at = std::copy(address.begin(), address.end(), at);
  *at++ = ' ';
  at = std::to_chars(at, at + 11, count).ptr;
  *at++ = ' ';
  at = std::copy(pass.begin(), pass.end(), at);
  *at++ = ' ';
  filled_ = static_cast<std::size_t>(at - chunk_.data());
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
  const std::u16string wide = platform::Widen(text);
  Grow(wide.size());
  std::copy(wide.begin(), wide.end(), Text() + units_);
  units_ += wide.size();
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
