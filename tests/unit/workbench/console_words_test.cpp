#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "workbench/console/line_source.h"
#include "workbench/console/words.h"

namespace workbench {
namespace {

std::string All(std::string_view line) {
  Words words(line);
  std::string all;
  while (!words.Empty()) all += "<" + words.Take("a word") + ">";
  return all;
}

TEST(Words, AreDividedByBlanksOutsideQuotes) {
  const struct {
    const char* line;
    const char* words;
  } rows[] = {
      {"", ""},
      {"  run   10\t", "<run><10>"},
      {"cat \"a b.txt\" 3", "<cat><a b.txt><3>"},
      {"type 5 \"say \"\"yes\"\"\"", "<type><5><say \"yes\">"},
      {"cat c:\\new\\x", "<cat><c:\\new\\x>"},
      {"a\"b c", "<ab c>"},
      {"\"\"", "<>"},
  };
  for (const auto& row : rows) EXPECT_EQ(All(row.line), row.words) << row.line;
}

TEST(Words, SayWhatIsWrong) {
  const auto reason = [](std::string_view line, const std::function<void(Words&)>& take) -> std::string {
    Words words(line);
    try {
      take(words);
      return "none";
    } catch (const VerbError& error) {
      return error.what();
    }
  };
  EXPECT_EQ(reason("", [](Words& words) { words.Take("the file"); }), "the file is missing");
  EXPECT_EQ(reason("x1", [](Words& words) { words.TakeNumber("the count", 9); }),
            "the count is no number: x1");
  EXPECT_EQ(reason("10", [](Words& words) { words.TakeNumber("the count", 9); }), "the count is above 9: 10");
  EXPECT_EQ(reason("99999999999999999999", [](Words& words) { words.TakeNumber("the count", ~0ull); }),
            "the count is no number: 99999999999999999999");
  EXPECT_EQ(reason("maybe", [](Words& words) { words.TakeSwitch("it"); }), "it must be on or off, not maybe");
  EXPECT_EQ(reason("a b", [](Words& words) { words.Take("a"), words.End(); }), "too many words, from: b");
}

TEST(ScriptLines, RefuseALineWithoutEnd) {
  auto lines = ScriptLines({}, std::make_unique<std::istringstream>("a\n" + std::string(70'000, 'x')));
  EXPECT_EQ(lines->Next(""), "a");
  try {
    lines->Next("");
    FAIL() << "the line was taken";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "line 2 of the script is longer than 64 KiB");
  }
}

}  // namespace
}  // namespace workbench
