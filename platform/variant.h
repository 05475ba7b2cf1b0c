#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/api.h"
#include "qal/types.h"

/// Building, reading and freeing variants. A variant owns its text or its array; arrays own their elements.
/// Readers answer "nothing" for a variant of another kind and for null. Any thread.
namespace platform {

inline constexpr std::uint16_t kTagEmpty = 0;
inline constexpr std::uint16_t kTagText = 8;
inline constexpr std::uint16_t kTagByte = 0x11;
inline constexpr std::uint16_t kTagUnsigned = 0x17;
inline constexpr std::uint16_t kTagArray = 0x2000;

PLATFORM_API qal::Variant TextVariant(std::string_view text);
PLATFORM_API qal::Variant UnsignedVariant(std::uint32_t value);
/// Arrays of variants tagged 0x2008, 0x2017 and 0x2011. An empty list is an array of no elements.
PLATFORM_API qal::Variant TextListVariant(std::span<const std::string> texts);
PLATFORM_API qal::Variant IdListVariant(std::span<const std::uint32_t> ids);
PLATFORM_API qal::Variant BytesVariant(std::span<const std::uint8_t> bytes);

PLATFORM_API std::optional<std::string> TextOf(const qal::Variant* variant);
PLATFORM_API std::optional<std::uint32_t> UnsignedOf(const qal::Variant* variant);
/// Elements of another tag than the array's are read as an empty text, or 0.
PLATFORM_API std::optional<std::vector<std::string>> TextListOf(const qal::Variant* variant);
PLATFORM_API std::optional<std::vector<std::uint32_t>> IdListOf(const qal::Variant* variant);
PLATFORM_API std::optional<std::vector<std::uint8_t>> BytesOf(const qal::Variant* variant);

/// A new array of `count` empty variants; null when memory is out. FreeArray frees it with what it holds.
PLATFORM_API qal::VariantArray* NewArray(std::uint32_t count);
PLATFORM_API void FreeArray(qal::VariantArray* array);
PLATFORM_API qal::VariantArray* NewTextArray(std::span<const std::string> texts);
PLATFORM_API std::vector<std::string> TextsOf(const qal::VariantArray* array);

/// Frees what the variant owns and leaves it empty; null is allowed.
PLATFORM_API void ClearVariant(qal::Variant* variant);

/// A variant that clears itself: `service->GetImage(image.put())`.
class PLATFORM_API OwnedVariant {
 public:
  OwnedVariant() = default;
  explicit OwnedVariant(qal::Variant value) : value_(value) {}
  ~OwnedVariant() { ClearVariant(&value_); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  qal::Variant* put() {
    ClearVariant(&value_);
    return &value_;
  }
  qal::Variant* get() { return &value_; }
  const qal::Variant* get() const { return &value_; }
  /// Hands the content to the caller and is empty afterwards.
  qal::Variant release();

 private:
  qal::Variant value_{};
};

}  // namespace platform
