#include "dialogs/test_selection_dialog.h"

#include <gtest/gtest.h>

#include "unit/dialogs/dialog_world.h"

namespace coverage {
namespace {

/// Options, the tokens in order, and the remembered answer after the person's lines.
std::string Edited(const std::string& lines, std::uint32_t& bigRangeAnswer) {
  DialogWorld world;
  ImageSelection selection;
  selection.tokens = {"rng-0x1000 - 0x4000", "rng-0x1000 - 0x5000", "src-C:\\space\\demo\\main.c",
                      "rng+0x0 - 0xF", "rng-0x2000 - 0x9000"};
  const std::string errors =
      world.Act(lines, [&] { TestSelectionEditor(&world.host).Edit(selection, bigRangeAnswer); });
  EXPECT_EQ(errors, "") << lines;
  std::string text = std::to_string(selection.options);
  for (const std::string& token : selection.tokens) text += IsSelectedToken(token) ? '+' : '-';
  return text + std::to_string(bigRangeAnswer);
}

TEST(TestSelection, AsksBeforeABigRangeUntilToldNotTo) {
  const struct {
    const char* lines;
    std::uint32_t before;
    const char* result;
  } rows[] = {
      {"list 2214 row 1;click 2215;click 2226;click 2234", 0, "3---+-0"},
      {"list 2214 row 1;click 2215;check 2228 on;click 2226;click 2234", 0, "3---+-0"},
      {"list 2214 row 1;click 2215;click 2224;list 2214 row 2;click 2215;click 2226;click 2234", 0,
       "3-+-+-1"},
      {"list 2214 row 1;click 2215;check 2228 on;click 2224;list 2214 row 2;click 2215;click 2234", 0,
       "3-+-++5"},
      {"list 2214 row 0;click 2215;click 2234", 6, "3---+-6"},
  };
  for (const auto& row : rows) {
    std::uint32_t answer = row.before;
    EXPECT_EQ(Edited(row.lines, answer), row.result) << row.lines;
  }
}

}  // namespace
}  // namespace coverage
