#pragma once

#include "qal/basic.h"

/// Variants and their arrays: how images, lists of texts and lists of command ids cross an interface.
namespace qal {

/// What a Variant holds. An array tag is the tag of its elements with kVariantArrayBit.
inline constexpr std::uint16_t kVariantEmpty = 0;
inline constexpr std::uint16_t kVariantText = 8;
inline constexpr std::uint16_t kVariantByte = 0x11;
inline constexpr std::uint16_t kVariantU32 = 0x17;
inline constexpr std::uint16_t kVariantArrayBit = 0x2000;
inline constexpr std::uint16_t kVariantTextArray = 0x2008;
inline constexpr std::uint16_t kVariantByteArray = 0x2011;
inline constexpr std::uint16_t kVariantU32Array = 0x2017;

struct VariantArray;

/// A tagged value of 16 bytes. The value owns what it points to; ClearVariant frees it.
struct Variant {
  std::uint16_t tag = kVariantEmpty;
  std::uint16_t zero[3] = {};
  union {
    std::uint64_t bits = 0;
    char16_t* text;
    VariantArray* array;
    std::uint32_t number;
    std::uint8_t byte;
  };
};
static_assert(sizeof(Variant) == 16);

/// One dimension of variants, elements in a block of its own.
struct VariantArray {
  std::uint32_t count;
  Variant* elements;
};

/// A new array of empty variants, freed with FreeVariantArray; null when there is no memory.
inline VariantArray* NewVariantArray(std::uint32_t count) {
  auto* array = static_cast<VariantArray*>(std::malloc(sizeof(VariantArray)));
  if (!array) return nullptr;
  array->count = count;
  array->elements = static_cast<Variant*>(std::calloc(count ? count : 1, sizeof(Variant)));
  if (array->elements) return array;
  std::free(array);
  return nullptr;
}

inline void FreeVariantArray(VariantArray* array);

/// Frees what the variant owns and leaves it empty.
inline void ClearVariant(Variant& variant) {
  if (variant.tag == kVariantText) FreeText(variant.text);
  if (variant.tag & kVariantArrayBit) FreeVariantArray(variant.array);
  variant = Variant{};
}

/// Frees the array with everything its elements own; null is allowed.
inline void FreeVariantArray(VariantArray* array) {
  if (!array) return;
  for (std::uint32_t i = 0; i < array->count; ++i) ClearVariant(array->elements[i]);
  std::free(array->elements);
  std::free(array);
}

/// A text variant that takes over `text`.
inline Variant TextVariant(char16_t* text) {
  Variant variant;
  variant.tag = kVariantText;
  variant.text = text;
  return variant;
}

inline Variant U32Variant(std::uint32_t number) {
  Variant variant;
  variant.tag = kVariantU32;
  variant.number = number;
  return variant;
}

inline Variant ByteVariant(std::uint8_t byte) {
  Variant variant;
  variant.tag = kVariantByte;
  variant.byte = byte;
  return variant;
}

/// An array variant of the given tag that takes over `array`; empty when `array` is null.
inline Variant ArrayVariant(std::uint16_t tag, VariantArray* array) {
  Variant variant;
  if (!array) return variant;
  variant.tag = tag;
  variant.array = array;
  return variant;
}

}  // namespace qal
