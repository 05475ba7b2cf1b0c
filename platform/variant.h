#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/api.h"
#include "qal/variant.h"

/// Building and reading variants with the texts and lists of the inside. Builders give new content, which the
/// variant owns and qal::ClearVariant frees; they give an empty variant (null array) when memory is out.
/// Readers answer "nothing" for null and for a variant of another kind. Any thread.
namespace platform {

PLATFORM_API qal::Variant TextVariant(std::string_view text);
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

/// Bare arrays of texts, as lists of names cross interfaces; freed with qal::FreeVariantArray.
PLATFORM_API qal::VariantArray* NewTextArray(std::span<const std::string> texts);
PLATFORM_API std::vector<std::string> TextsOf(const qal::VariantArray* array);

/// A variant that clears itself: `service->GetImage(image.put())`.
class PLATFORM_API OwnedVariant {
 public:
  OwnedVariant() = default;
  explicit OwnedVariant(qal::Variant value) : value_(value) {}
  ~OwnedVariant() { qal::ClearVariant(value_); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  /// Empties the object and gives the place to write to.
  qal::Variant* put() {
    qal::ClearVariant(value_);
    return &value_;
  }
  qal::Variant* get() { return &value_; }
  const qal::Variant* get() const { return &value_; }
  /// Hands the content to the caller and is empty afterwards.
  qal::Variant release() {
    const qal::Variant value = value_;
    value_ = {};
    return value;
  }

 private:
  qal::Variant value_{};
};

}  // namespace platform
