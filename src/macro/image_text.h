#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "macro/name_pairing.h"
#include "qal/types.h"

/// The text of a coverage image: version, options, then "(token)" and the data of each item. Plain functions
/// on texts; nothing here looks at a window. Any thread.
namespace coverage {

inline constexpr std::string_view kImageVersion = "1.0";

/// Comparison options, a bit set.
inline constexpr std::uint32_t kImageAddress = 1;
inline constexpr std::uint32_t kImageExecution = 2;
inline constexpr std::uint32_t kImageTimes = 4;
inline constexpr std::uint32_t kImagePass = 8;
inline constexpr std::uint32_t kImageDefaults = kImageAddress | kImageExecution;

/// Outcomes of a comparison beside 0.
inline constexpr qal::Status kAddressMismatch = static_cast<qal::Status>(0x80040B01);
inline constexpr qal::Status kExecutionMismatch = static_cast<qal::Status>(0x80040B02);
inline constexpr qal::Status kTimesMismatch = static_cast<qal::Status>(0x80040B03);
inline constexpr qal::Status kPassMismatch = static_cast<qal::Status>(0x80040B04);
inline constexpr qal::Status kRangeNotFound = static_cast<qal::Status>(0x80040B05);
inline constexpr qal::Status kImageCorrupted = static_cast<qal::Status>(0x80040B06);

/// Name of an outcome as verifying gives it (comparing writes one of them with another capital); empty for 0.
std::string_view OutcomeName(qal::Status outcome, bool comparing);

/// An item token: "rng" or "src", then "-" while the item is only available or "+" once it is selected, then
/// a range text or a path.
inline constexpr std::size_t kTokenMark = 3;
inline constexpr std::size_t kTokenBody = 4;
bool IsSourceToken(std::string_view token);
bool IsRangeToken(std::string_view token);
bool IsSelectedToken(std::string_view token);
std::string RangeToken(std::uint32_t start, std::uint32_t end, bool selected);
std::string SourceToken(std::string_view sourceFile, bool selected);
/// What people are shown of a token: behind its last backslash, or its body.
std::string_view TokenLabel(std::string_view token);
/// Messages hold no backslashes: each is written as "*". Safe for double-byte characters.
std::string StarsForBackslashes(std::string_view text);

/// What goes into an image, and how it is compared.
struct ImageSelection {
  std::uint32_t options = kImageDefaults;
  std::vector<std::string> tokens;
};
/// Options and tokens of an image or selection text; an empty text gives the defaults. A "(" without its ")"
/// ends the list, and `complete`, when given, is then false.
ImageSelection ParseImageSelection(std::string_view text, bool* complete = nullptr);
/// Version and options, the head of every image.
std::string ImageHead(std::uint32_t options);

/// An address text as entries have it: without zeros in front; one of zeros only stays whole.
inline std::string_view WithoutZeros(std::string_view addressText) {
  const std::size_t digit = addressText.find_first_not_of('0');
  return digit == std::string_view::npos ? addressText : addressText.substr(digit);
}

struct ImageItem {
  std::string token;
  std::string_view data;  ///< into the image
};
/// Whether a "(" has no ")" after it.
bool IsMalformed(std::string_view image);
/// None when the image is malformed.
std::optional<std::vector<ImageItem>> SplitImage(std::string_view image);

struct ImageInstance {
  std::string name;       ///< function name, or "start end" of a range
  std::string_view data;  ///< into the image
};
/// The instances of an item's data, up to where no "~name~" stands.
std::vector<ImageInstance> SplitItem(std::string_view itemData);
/// What tells instances of equal names apart: their name and the address of their first entry. Valid as long
/// as `instances`.
std::vector<NamedPart> PartsOf(const std::vector<ImageInstance>& instances);

/// Reads the fields of entries, each ended by a blank.
class EntryReader {
 public:
  explicit EntryReader(std::string_view data) : next_(data.data()), end_(data.data() + data.size()) {}

  /// The text up to the next blank; nothing, and no step, when there is none.
  std::optional<std::string_view> Field() {
    const char* const blank = FirstBlank();
    if (!blank) return std::nullopt;
    const std::string_view field(next_, static_cast<std::size_t>(blank - next_));
    next_ = blank + 1;
    return field;
  }
  /// The text up to the next blank or the end; `ended` says that it was the end.
  std::string_view LastField(bool& ended);
  bool HasField() const;
  /// Everything not read yet.
  std::string_view rest() const { return {next_, static_cast<std::size_t>(end_ - next_)}; }
  void Skip(std::size_t bytes) { next_ += bytes; }

 private:
  /// Null when there is none. Most fields are short: eight characters are looked at at once.
  const char* FirstBlank() const {
    static_assert(std::endian::native == std::endian::little);
    constexpr std::uint64_t kEach = 0x0101010101010101U;
    const std::size_t left = static_cast<std::size_t>(end_ - next_);
    if (left >= 8) {
      std::uint64_t word;
      std::memcpy(&word, next_, 8);
      word ^= ' ' * kEach;
      // The lowest bit that is set belongs to the first blank.
      const std::uint64_t blanks = (word - kEach) & ~word & 0x80 * kEach;
      if (blanks != 0) return next_ + std::countr_zero(blanks) / 8;
    }
    return left == 0 ? nullptr : static_cast<const char*>(std::memchr(next_, ' ', left));
  }

  const char* next_;
  const char* end_;
};

/// Decimal number of a count field; as much of it as is one, within 64 signed bits.
std::int64_t CountOfField(std::string_view field);

}  // namespace coverage
