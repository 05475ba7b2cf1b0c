#include <gtest/gtest.h>

#include "platform/text.h"

namespace platform {
namespace {

struct Text : testing::Test {
  ~Text() override { SetCodePage(kUtf8); }
};

TEST_F(Text, Utf8IsReadStrictly) {
  const struct {
    const char* what;
    std::string bytes;
    std::u16string wide;
  } rows[] = {
      {"plain", "C:\\a.c", u"C:\\a.c"},
      {"two, three and four bytes", "\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80", u"é日😀"},
      {"overlong slash", "\xC0\xAF", u"??"},
      {"overlong in three bytes", "\xE0\x80\xAF", u"???"},
      {"half of a pair", "\xED\xA0\x80", u"???"},
      {"beyond the last character", "\xF4\x90\x80\x80", u"????"},
      {"cut short", "a\xE6\x97", u"a??"},
      {"cut short before a letter", "\xE6\x97x", u"??x"},
      {"tail alone", "\x80x", u"?x"},
      {"zero inside", std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
  };
  for (const auto& row : rows) EXPECT_EQ(Widen(row.bytes), row.wide) << row.what;
}

TEST_F(Text, LoneHalvesOfPairsBecomeQuestionMarks) {
  EXPECT_EQ(Narrow(std::u16string_view(u"a\xD800z")), "a?z");
  EXPECT_EQ(Narrow(std::u16string_view(u"\xDC00\xD800")), "??");
  EXPECT_EQ(Narrow(std::u16string_view(u"\xD83D\xDE00")), "\xF0\x9F\x98\x80");
}

// In code page 932 the second byte of some characters is 0x5C, a backslash on its own: 表 is 95 5C, ソ is 83
// 5C.
TEST_F(Text, ABackslashInsideACharacterIsNone) {
  ASSERT_TRUE(SetCodePage(kShiftJis));
  const std::string path = "C:\\\x95\x5C\\\x83\x5C.c";
  EXPECT_EQ(Widen(path), u"C:\\表\\ソ.c");
  EXPECT_EQ(Narrow(std::u16string_view(u"C:\\表\\ソ.c")), path);
  EXPECT_EQ(FindLastBackslash(path), 5u);
  EXPECT_EQ(FindChar(path, '\\', 3), 5u);
  EXPECT_EQ(FindLastBackslash("\x83\x5C"), std::string::npos);
  EXPECT_EQ(FindText(path, "\\.c"), std::string::npos) << "the second byte of ソ is no beginning";
  EXPECT_EQ(ReplaceAll(path, "\\", "\\\\"), "C:\\\\\x95\x5C\\\\\x83\x5C.c");
  EXPECT_EQ(CutToBytes(path, 4), "C:\\") << "no half of 表";
  EXPECT_EQ(CutToBytes(path, 5), "C:\\\x95\x5C");
}

TEST_F(Text, ShiftJisCharactersThatMeanNothing) {
  ASSERT_TRUE(SetCodePage(kShiftJis));
  EXPECT_EQ(Widen("\xB1\xB2"), u"ｱｲ") << "single bytes";
  EXPECT_EQ(Widen("a\x95"), u"a?") << "lead byte at the end";
  EXPECT_EQ(Widen("\x95\x20z"), u"? z") << "no second byte follows the lead byte";
  EXPECT_EQ(Widen("\x81\xAD"), u"?") << "a pair without a character counts once";
  EXPECT_EQ(Narrow(std::u16string_view(u"é😀x")), "??x");
  EXPECT_EQ(ToUtf8("\x95\x5C"), "表");
  EXPECT_EQ(FromUtf8("表é"), "\x95\x5C?");
}

TEST_F(Text, AnotherCharacterAnywhereInALongAsciiText) {
  const std::string ascii = std::string(4100, 'a') + std::string("\0\x7F\\~", 4) + std::string(100, 'z');
  for (const auto& [codePage, character] : {std::pair{kUtf8, "\xE8\xA1\xA8"}, {kShiftJis, "\x95\x5C"}}) {
    ASSERT_TRUE(SetCodePage(codePage));
    for (std::size_t at = 0; at <= ascii.size(); at += at == 70 ? 4000 : 1) {
      const std::string text = std::string(ascii).insert(at, character);
      const std::u16string wide = std::u16string(ascii.begin(), ascii.end()).insert(at, u"表");
      ASSERT_TRUE(Widen(text) == wide) << at;
      ASSERT_TRUE(Narrow(std::u16string_view(wide)) == text) << at;
    }
  }
}

TEST_F(Text, CaseKeepsTheNumberOfBytes) {
  EXPECT_EQ(ToUpper("a\xC3\xA9z{"), "A\xC3\x89Z{");
  EXPECT_EQ(ToLower("A\xC3\x89Z["), "a\xC3\xA9z[");
  EXPECT_EQ(ToUpper("\xC4\xB1\xFF"), "\xC4\xB1\xFF")
      << "dotless i would become one byte; 0xFF is no character";
  EXPECT_TRUE(EqualNoCase(".cOv", ".COV"));
  EXPECT_FALSE(EqualNoCase(".COV", ".COVX"));
  EXPECT_LT(CompareNoCase("ALPHA", "beta"), 0);
  ASSERT_TRUE(SetCodePage(kShiftJis));
  EXPECT_EQ(ToLower("\x83\x41"), "\x83\x41") << "the second byte of ア is an A";
  EXPECT_EQ(ToLower("\x82\x60"), "\x82\x81") << "wide A";
}

}  // namespace
}  // namespace platform
