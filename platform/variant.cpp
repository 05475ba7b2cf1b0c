#include "platform/variant.h"

#include "platform/text.h"

namespace platform {
namespace {

/// An array variant with one element for each value; empty when memory is out.
template <class Values, class Make>
qal::Variant MakeArray(std::uint16_t tag, const Values& values, Make make) {
  qal::VariantArray* array = qal::NewVariantArray(static_cast<std::uint32_t>(values.size()));
  if (!array) return {};
  qal::Variant* element = array->elements;
  for (const auto& value : values) *element++ = make(value);
  return qal::ArrayVariant(tag, array);
}

template <class Value, class Read>
std::optional<std::vector<Value>> ReadArray(std::uint16_t tag, const qal::Variant* variant, Read read) {
  if (!variant || variant->tag != tag || !variant->array) return std::nullopt;
  std::vector<Value> values;
  values.reserve(variant->array->count);
  for (std::uint32_t i = 0; i < variant->array->count; ++i)
    values.push_back(read(variant->array->elements[i]));
  return values;
}

std::string ReadText(const qal::Variant& element) { return TextOf(&element).value_or(std::string{}); }

}  // namespace

qal::Variant TextVariant(std::string_view text) {
  char16_t* block = NewWide(text);
  return block ? qal::TextVariant(block) : qal::Variant{};
}

qal::Variant TextListVariant(std::span<const std::string> texts) {
  return MakeArray(qal::kVariantTextArray, texts, [](const std::string& text) { return TextVariant(text); });
}

qal::Variant IdListVariant(std::span<const std::uint32_t> ids) {
  return MakeArray(qal::kVariantU32Array, ids, [](std::uint32_t id) { return qal::U32Variant(id); });
}

qal::Variant BytesVariant(std::span<const std::uint8_t> bytes) {
  return MakeArray(qal::kVariantByteArray, bytes, [](std::uint8_t byte) { return qal::ByteVariant(byte); });
}

std::optional<std::string> TextOf(const qal::Variant* variant) {
  if (!variant || variant->tag != qal::kVariantText) return std::nullopt;
  return Narrow(qal::WideText{variant->text});
}

std::optional<std::uint32_t> UnsignedOf(const qal::Variant* variant) {
  if (!variant || variant->tag != qal::kVariantU32) return std::nullopt;
  return variant->number;
}

std::optional<std::vector<std::string>> TextListOf(const qal::Variant* variant) {
  return ReadArray<std::string>(qal::kVariantTextArray, variant, ReadText);
}

std::optional<std::vector<std::uint32_t>> IdListOf(const qal::Variant* variant) {
  return ReadArray<std::uint32_t>(qal::kVariantU32Array, variant, [](const qal::Variant& element) {
    return UnsignedOf(&element).value_or(0);
  });
}

std::optional<std::vector<std::uint8_t>> BytesOf(const qal::Variant* variant) {
  return ReadArray<std::uint8_t>(qal::kVariantByteArray, variant, [](const qal::Variant& element) {
    return element.tag == qal::kVariantByte ? element.byte : std::uint8_t{0};
  });
}

qal::VariantArray* NewTextArray(std::span<const std::string> texts) {
  return TextListVariant(texts).array;  // null in an empty variant
}

std::vector<std::string> TextsOf(const qal::VariantArray* array) {
  std::vector<std::string> texts;
  for (std::uint32_t i = 0; array && i < array->count; ++i) texts.push_back(ReadText(array->elements[i]));
  return texts;
}

}  // namespace platform
