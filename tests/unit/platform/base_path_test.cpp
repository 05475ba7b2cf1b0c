#include <gtest/gtest.h>

#include "doubles/scratch_disk.h"
#include "platform/text.h"

namespace platform {
namespace {

TEST(Paths, PartsOfShiftJisNames) {
  ASSERT_TRUE(SetCodePage(kShiftJis));
  EXPECT_EQ(DirectoryPart("C:\\\x95\x5C"), "C:\\");
  EXPECT_EQ(FilePart("C:\\\x95\x5C"), "\x95\x5C");
  EXPECT_EQ(JoinPath("C:\\\x95\x5C", "a"), "C:\\\x95\x5C\\a")
      << "the directory ends in a character, not a separator";
  EXPECT_EQ(WithoutTrailingSeparator("C:\\\x95\x5C\\"), "C:\\\x95\x5C");
  EXPECT_EQ(WithoutTrailingSeparator("C:\\\x95\x5C"), "C:\\\x95\x5C");
  SetCodePage(kUtf8);
}

TEST(Paths, Joining) {
  EXPECT_EQ(JoinPath("C:\\a", "b.c"), "C:\\a\\b.c");
  EXPECT_EQ(JoinPath("C:\\a\\", "b.c"), "C:\\a\\b.c");
  EXPECT_EQ(JoinPath("C:\\a\\", "\\b.c"), "C:\\a\\b.c");
  EXPECT_EQ(JoinPath("", "b.c"), "b.c");
  EXPECT_EQ(JoinPath("C:\\a", ""), "C:\\a");
  EXPECT_EQ(WithoutTrailingSeparator("C:\\"), "C:\\");
  EXPECT_EQ(WithoutTrailingSeparator("\\"), "\\");
  EXPECT_EQ(WithoutTrailingSeparator("a\\\\"), "a");
}

TEST(Paths, FullPaths) {
  const struct {
    const char *path, *base, *full;
  } rows[] = {
      {"b.c", "C:\\a", "C:\\a\\b.c"},
      {".\\x\\..\\b.c", "C:\\a", "C:\\a\\b.c"},
      {"..\\..\\..\\b.c", "C:\\a", "C:\\b.c"},
      {"\\b.c", "C:\\a", "\\b.c"},
      {"D:\\\\b\\\\c", "C:\\a", "D:\\b\\c"},
      {"D:", "C:\\a", "D:\\"},
      {"", "C:\\a\\", "C:\\a"},
      {"x/y", "C:\\a", "C:\\a\\x\\y"},
  };
  for (const auto& row : rows) EXPECT_EQ(FullPath(row.path, row.base), row.full) << row.path;
}

TEST(Paths, DrivesLieBelowTheirRootAndBack) {
  const doubles::ScratchDisk disk;
  EXPECT_EQ(ToNative("C:\\a\\b.c"), disk.root() + "/a/b.c");
  EXPECT_EQ(ToNative("d:/a//b.c"), disk.root() + "/a/b.c");
  EXPECT_EQ(ToNative("C:\\..\\..\\etc"), disk.root() + "/etc") << "no way out of a drive";
  EXPECT_EQ(ToNative(std::string_view("C:\\a\0b", 6)), disk.root() + "/a?b")
      << "a zero does not cut the name";
  EXPECT_EQ(ToNative("\\\\usr\\no-such"), "/usr/no-such");
  EXPECT_EQ(FromNative(disk.root() + "/a/b.c"), "C:\\a\\b.c");
  EXPECT_EQ(FromNative(disk.root()), "C:\\");
  EXPECT_EQ(FromNative(disk.root() + "x/y").substr(0, 1), "\\") << "beside the root, not below it";
  SetCurrentDirectory("sub");
  EXPECT_EQ(CurrentDirectory(), "C:\\sub");
  EXPECT_EQ(ToNative("a.c"), disk.root() + "/sub/a.c");
}

TEST(Paths, CaseGivesWayOnlyWhereTheExactNameIsMissing) {
  const doubles::ScratchDisk disk;
  disk.Put("Proj/Run.COV", "upper");
  EXPECT_EQ(ReadFile("C:\\proj\\run.cov"), "upper");
  disk.Put("Proj/run.cov", "lower");
  EXPECT_EQ(ReadFile("C:\\PROJ\\run.cov"), "lower");
  EXPECT_EQ(ReadFile("C:\\Proj\\RUN.cov"), "upper") << "the first in byte order";
  EXPECT_FALSE(PathExists("C:\\Proj\\run.co"));
  EXPECT_TRUE(IsDirectory("c:\\PROJ\\"));
}

TEST(Paths, NamesInTheCodePageAreUtf8OnTheDisk) {
  const doubles::ScratchDisk disk;
  ASSERT_TRUE(SetCodePage(kShiftJis));
  ASSERT_TRUE(CreateDirectory("C:\\\x95\x5C"));
  EXPECT_TRUE(ReplaceFile("C:\\\x95\x5C\\\x83\x5C.c", "x"));
  EXPECT_EQ(ListDirectory("C:\\\x95\x5C"), std::vector<std::string>{"\x83\x5C.c"});
  SetCodePage(kUtf8);
  EXPECT_TRUE(disk.Has("表/ソ.c"));
}

TEST(Paths, PathsLongerThanTheSystemTakesAreRefusedNotFollowed) {
  const doubles::ScratchDisk disk;
  std::string path = "C:";
  for (int i = 0; i < 50000; ++i) path += "\\a";
  EXPECT_FALSE(PathExists(path));
  EXPECT_FALSE(CreateDirectory(path));
}

}  // namespace
}  // namespace platform
