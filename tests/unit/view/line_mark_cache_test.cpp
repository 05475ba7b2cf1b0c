#include "view/line_mark_cache.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace coverage {
namespace {

std::string Picture(const LineMarkCache& cache, const char* file, std::uint32_t from, std::uint32_t to) {
  std::string picture;
  for (std::uint32_t line = from; line <= to; ++line) {
    const auto mark = cache.Find(file, line);
    picture += mark ? static_cast<char>('0' + *mark) : '.';
  }
  return picture;
}

TEST(LineMarkCache, MarksMoveWithTheirLines) {
  struct Row {
    const char* what;
    std::uint32_t from;
    std::int32_t count;
    const char* after;  // lines 1 to 12; before: "3456.9......"
  };
  const Row rows[] = {
      {"three lines inserted above line 3", 3, 3, "34...56.9..."},
      {"inserted above the first line", 1, 1, ".3456.9....."},
      {"inserted behind the last mark", 7, 5, "3456.9......"},
      {"lines 2 and 3 deleted", 2, -2, "36.9........"},
      {"everything deleted", 1, -12, "............"},
      {"more deleted than there is", 3, -2147483647 - 1, "34.........."},
      {"nothing inserted", 1, 0, "3456.9......"},
  };
  for (const Row& row : rows) {
    LineMarkCache cache;
    const std::vector<std::int32_t> marks = {3, 4, 5, 6, 0, 9};
    for (std::uint32_t i = 0; i < marks.size(); ++i) {
      if (marks[i] != 0) cache.Store("Main.c", i + 1, marks[i]);
    }
    cache.Store("other.c", 4, 9);
    cache.Move("MAIN.C", row.from, row.count);
    EXPECT_EQ(Picture(cache, "main.c", 1, 12), row.after) << row.what;
    EXPECT_EQ(Picture(cache, "other.c", 1, 5), "...9.") << row.what;
  }
}

TEST(LineMarkCache, MarksPushedOverTheLastLineNumberAreDropped) {
  LineMarkCache cache;
  cache.Store("a.c", 0xFFFFFFFE, 5);
  cache.Store("a.c", 0xFFFFFFF0, 4);
  cache.Move("a.c", 0xFFFFFFF0, 4);
  EXPECT_EQ(cache.Find("a.c", 0xFFFFFFF4), 4);
  EXPECT_EQ(cache.Find("a.c", 2), std::nullopt);
  EXPECT_EQ(cache.Find("a.c", 0xFFFFFFFE), std::nullopt);
}

}  // namespace
}  // namespace coverage
