#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <set>
#include <string>

#include "qal/all.h"

// The bytes that cross the line.
namespace {

template <class Record>
std::string Bytes(const Record& record) {
  return {reinterpret_cast<const char*>(&record), sizeof(record)};
}

TEST(Layout, AnIdentifierIsItsRegistryFormInMemoryOrder) {
  const unsigned char expected[] = {0x80, 0x10, 0xE2, 0xBB, 0xD9, 0x34, 0xD5, 0x11,
                                    0xB7, 0xCE, 0x00, 0xE0, 0x29, 0x35, 0x23, 0x78};
  EXPECT_EQ(Bytes(qal::kClassId), Bytes(expected));
  EXPECT_EQ(Bytes(qal::iid::kUnknown), std::string("\0\0\0\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16));
}

TEST(Layout, IdentifiersCompareByAllSixteenBytes) {
  const qal::Guid base = qal::MakeGuid("{01020304-0506-0708-090A-0B0C0D0E0F10}");
  std::set<qal::Guid> different{base};
  for (std::size_t i = 0; i < sizeof(base); ++i) {
    qal::Guid other = base;
    reinterpret_cast<unsigned char*>(&other)[i] ^= 0x80;
    EXPECT_FALSE(other == base) << i;
    different.insert(other);
  }
  EXPECT_EQ(different.size(), 17u);
  EXPECT_TRUE(base == qal::Guid(base));
}

TEST(Layout, RecordsHaveTheirSizesAndPlaces) {
  EXPECT_EQ(sizeof(qal::PathPair), 8u);
  EXPECT_EQ(offsetof(qal::PathPair, target), 4u);
  EXPECT_EQ(offsetof(qal::CountPair, value), 4u);
  EXPECT_EQ(offsetof(qal::FunctionRecord, start), sizeof(void*));
  EXPECT_EQ(offsetof(qal::FunctionRecord, end), sizeof(void*) + 4);
  EXPECT_EQ(offsetof(qal::InstructionRecord, length), sizeof(void*) + 4);
  EXPECT_EQ(offsetof(qal::InstructionRecord, lastText), sizeof(void*) + 8);
  EXPECT_EQ(sizeof(qal::Variant), 16u);
  EXPECT_EQ(offsetof(qal::Variant, text), 8u);
  EXPECT_EQ(offsetof(qal::VariantArray, elements), sizeof(void*));
  EXPECT_EQ(Bytes(qal::U32Variant(0x01020304)), std::string("\x17\0\0\0\0\0\0\0\4\3\2\1\0\0\0\0", 16));
}

TEST(Texts, ABlockHasItsLengthInFrontAndAZeroBehind) {
  char16_t* text = qal::AllocText(u"ab\0c", 4);
  ASSERT_NE(text, nullptr);
  std::uint32_t bytes;
  std::memcpy(&bytes, reinterpret_cast<char*>(text) - 4, 4);
  EXPECT_EQ(bytes, 8u);
  EXPECT_EQ(text[4], u'\0');
  EXPECT_EQ(qal::TextLength(text), 4u);
  EXPECT_EQ(qal::TextView(text), std::u16string_view(u"ab\0c", 4));
  std::free(reinterpret_cast<char*>(text) - 4);  // the block is the platform's own: whoever holds it frees it
}

TEST(Texts, NothingIsTheEmptyText) {
  EXPECT_EQ(qal::TextLength(nullptr), 0u);
  EXPECT_EQ(qal::TextView(nullptr), u"");
  qal::FreeText(nullptr);
  char16_t* empty = qal::AllocText({});
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(*empty, u'\0');
  qal::FreeText(empty);
  EXPECT_EQ(qal::AllocText(u"", std::size_t{1} << 62), nullptr);
}

TEST(Variants, ClearingFreesTheWholeTree) {
  qal::VariantArray* inner = qal::NewVariantArray(2);
  inner->elements[0] = qal::TextVariant(qal::AllocText(u"text"));
  inner->elements[1] = qal::ByteVariant(7);
  qal::VariantArray* outer = qal::NewVariantArray(1);
  outer->elements[0] = qal::ArrayVariant(qal::kVariantTextArray, inner);
  qal::Variant variant = qal::ArrayVariant(qal::kVariantTextArray, outer);
  qal::ClearVariant(variant);  // what is left over shows under the leak checker
  EXPECT_EQ(Bytes(variant), Bytes(qal::Variant{}));
  EXPECT_EQ(qal::ArrayVariant(qal::kVariantTextArray, nullptr).tag, qal::kVariantEmpty);
  qal::FreeVariantArray(nullptr);
}

}  // namespace
