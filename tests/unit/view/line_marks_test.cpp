#include "view/line_marks.h"

#include <gtest/gtest.h>

#include <utility>

#include "unit/view/view_test.h"

namespace coverage {
namespace {

class Marks : public ViewTest {
 protected:
  Marks() {
    marks.SetColumn(EditorColumn::kSource, 1);
    marks.SetColumn(EditorColumn::kDisassembly, 2);
  }
  CoverageInstance& Add(std::uint32_t start, std::uint32_t end) {
    return *Open().NewRangeWindow(start, end)->Record().instances[1];
  }
  /// The mark of an address as the disassembly column gets it; 0 for none.
  std::int32_t At(std::uint32_t address) {
    return marks.Mark(EditorColumn::kDisassembly, "dis", address).value_or(0);
  }
  std::int32_t AtLine(std::uint32_t line) {
    return marks.Mark(EditorColumn::kSource, ViewWorld::kSource, line).value_or(0);
  }

  LineMarks& marks = view->Marks();
  CommandModel& model = view->Model();
  Reporter& reporter = view->Messages();
};

TEST_F(Marks, OutcomesOfAnAddressBecomeItsMark) {
  CoverageInstance& instance = Add(0x1000, 0x10FF);
  Add(0x2000, 0x20FF).SetEnabled(0);
  for (std::uint32_t pass = 0; pass < 4; ++pass) instance.counts->AddOne(0x1010 + 4 * pass, 1, pass);
  const std::pair<std::uint32_t, std::int32_t> expected[] = {{0x1010, 6}, {0x1014, 5}, {0x1018, 4},
                                                             {0x101C, 3}, {0x1000, 9}, {0x10FF, 9},
                                                             {0x1100, 0}, {0x0FFF, 0}, {0x2000, 0}};
  for (const auto& [address, mark] : expected) EXPECT_EQ(At(address), mark) << address;
}

TEST_F(Marks, WindowsComeBeforeTheCommandLine) {
  model.SetStoreRange(0x1000, 0x1FFF, reporter);
  model.commandStore().AddOne(0x1004, 1, 1);
  model.commandStore().AddOne(0x1104, 1, 1);
  const auto added = model.AddWindow(0x3000, 0x30FF, "f", reporter);
  added.counts->AddOne(0x3000, 2, 2);
  Add(0x1000, 0x10FF);
  EXPECT_EQ(At(0x1004), 9);  // the window covers it and has not executed it
  EXPECT_EQ(At(0x1104), 5);
  EXPECT_EQ(At(0x3000), 4);
  EXPECT_EQ(At(0x3002), 9);
  model.SetActive(model.commandStore(), 0);
  model.SetWindowEnabled(1, false);
  marks.Refresh();
  EXPECT_EQ(At(0x1104), 0);
  EXPECT_EQ(At(0x3000), 0);
}

TEST_F(Marks, CommandWindowsThatWereReplacedAreSeenAtOnce) {
  model.SetActive(model.commandStore(), 0);
  model.AddWindow(0x3000, 0x30FF, "f", reporter);
  EXPECT_EQ(At(0x3000), 9);
  model.RemoveAllWindows();
  EXPECT_EQ(At(0x3010), 0);
  model.AddWindow(0x4000, 0x40FF, "g", reporter);
  EXPECT_EQ(At(0x4000), 9);
  EXPECT_EQ(At(0x3020), 0);
  model.SetStoreEnabled(true);
  model.SetStoreRange(0x5000, 0x50FF, reporter);
  EXPECT_EQ(At(0x5000), 9);
}

TEST_F(Marks, GoWithWhatTheyShowed) {
  Add(0x1000, 0x10FF);
  EXPECT_EQ(At(0x1000), 9);
  world.window.frames.front()->Destroy();
  EXPECT_EQ(At(0x1000), 0);
  world.log.Clear();
  EXPECT_EQ(view->SetRange(0x1000, 0x10FF), qal::kOk);
  EXPECT_EQ(world.log.Count("columns.UpdateColumns("), 1)
      << "open editors ask for the marks of the new range";
}

TEST_F(Marks, ALineIsWorkedOutOnceAndDrawnAgain) {
  CoverageInstance& instance = Add(0x1000, 0x10FF);
  world.log.Clear();
  EXPECT_EQ(AtLine(3), 9);
  EXPECT_EQ(world.log.Take("columns"), "columns.RefreshLines(\"c:\\space\\demo\\main.c\", 1, 3, 3)\n");
  instance.counts->AddOne(0x1000, 1, 0);
  EXPECT_EQ(AtLine(3), 9);
  EXPECT_EQ(AtLine(7), 0);   // no code
  EXPECT_EQ(AtLine(20), 0);  // outside every range
  EXPECT_EQ(world.log.Take("columns"), "");
  marks.DropLineMarks();
  EXPECT_EQ(world.log.Take("columns"),
            "columns.RefreshLines(\"c:\\space\\demo\\main.c\", 1, 1, -1)\n"
            "columns.UpdateColumns(0)\ncolumns.RefreshLines(null, 1, 1, -1)\n");
  EXPECT_EQ(AtLine(3), 6);
}

}  // namespace
}  // namespace coverage
