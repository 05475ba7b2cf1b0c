#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace coverage {

/// Puts the text of an image together as the block that crosses the interface. Entries pass through a small
/// chunk, so that an image of millions of them is written to memory once. Operations throw std::bad_alloc
/// when memory is out or a text would be too long. UI thread only.
class ImageOutput {
 public:
  ImageOutput() = default;
  ~ImageOutput();
  ImageOutput(const ImageOutput&) = delete;
  ImageOutput& operator=(const ImageOutput&) = delete;

  /// Whole characters of the system code page.
  void Append(std::string_view text);
  /// One entry: the address text without the zeros in front (one of zeros only stays whole), count and pass
  /// text, each with a blank after it. `pass` is 0 to 3.
  void Entry(std::string_view addressText, std::int32_t count, std::uint32_t pass);
  /// The text, which the caller frees with qal::FreeText. Once.
  char16_t* Take();

 private:
  static constexpr std::size_t kChunk = 16 * 1024;
  static constexpr std::size_t kLongestEntry = 128;

  void Flush();
  void AppendWide(std::string_view text);
  /// Room for so many units and the zero after them.
  void Grow(std::size_t units);
  char16_t* Text() const;

  std::array<char, kChunk> chunk_;
  std::size_t filled_ = 0;
  char* block_ = nullptr;  ///< of malloc: room for a length, then the units
  std::size_t units_ = 0;
  std::size_t room_ = 0;  ///< units
};

}  // namespace coverage
