#include <gtest/gtest.h>

#include "doubles/scratch_disk.h"
#include "platform/files.h"
#include "workbench/console/image_file.h"
#include "workbench/console/words.h"

namespace workbench {
namespace {

constexpr char kHere[] = "C:\\w (~%28)";

TEST(ImageFile, HasALineForEachThingAndGivesTheImageBack) {
  const struct {
    const char *image, *lines;
  } rows[] = {
      {"1.003", "1.003\n"},
      {"1.003(rng+0x10 - 0x13)~10 13~10 5 T 12 1 T/F ",
       "1.003\n(rng+0x10 - 0x13)\n~10 13~\n10 5 T\n12 1 T/F\n"},
      {"1.015(src+C:*w %28%7E%2528%29*a*b.c)~f~10 -1 - ~g~(src+C:*w %28%7E%2528%29r*b.c)(src+\\b.c)",
       "1.015\n(src+$(PROJDIR)*a*b.c)\n~f~\n10 -1 -\n~g~\n(src+C:*w %28%7E%2528%29r*b.c)\n(src+\\b.c)\n"},
      {"1.003(rng+0x10 - 0x13)~10 13~10 5 T 12 1", "1.003(rng+0x10 - 0x13)~10 13~10 5 T 12 1\n"},
      {"1.003(rng+0x10 - 0x13", "1.003(rng+0x10 - 0x13\n"},
      {"1.003(a)  ~f", "1.003(a)  ~f\n"},
      {"1", "1\n"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(LinesOfImage(row.image, kHere), row.lines);
    EXPECT_EQ(ImageOfLines(row.lines, kHere), row.image);
  }
  EXPECT_EQ(ImageOfLines("1.003\r\n\r\n(a) \r\n~f~\r\n10 5 T \t\r\n12 1 -", kHere),
            "1.003(a)~f~10 5 T 12 1 - ");
}

TEST(ImageFile, NamesTheFileThatIsNoImage) {
  doubles::ScratchDisk disk;
  const struct {
    std::string content;
    const char* error;
  } rows[] = {
      {"", "x is no coverage image: it does not begin with 1.0 and two digits"},
      {"1.1031(a)", "x is no coverage image: it does not begin with 1.0 and two digits"},
      {"1.00", "x is no coverage image: it does not begin with 1.0 and two digits"},
      {"1.003\n", "x checks nothing: it holds no item"},
      {std::string("1.003(a)\0", 9), "x is no text: it holds zero bytes"},
      {"1.003(\xC3)", "x is no UTF-8 text"},
      {"1.003(\xE0\x80\x80)", "x is no UTF-8 text"},
      {"1.003(\xED\xA0\x80)", "x is no UTF-8 text"},
      {"1.003(\xF4\x90\x80\x80)", "x is no UTF-8 text"},
      {"1.003(\xE3\x81", "x is no UTF-8 text"},
      {"1.003(\xC3\xA4\xF0\x9F\x98\x80)", ""},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(platform::ReplaceFile("C:\\x", row.content));
    std::string error;
    try {
      ReadImageFile("C:\\x", "x", kHere, "1.0");
    } catch (const VerbError& thrown) {
      error = thrown.what();
    }
    EXPECT_EQ(error, row.error) << row.content;
  }
}

}  // namespace
}  // namespace workbench
