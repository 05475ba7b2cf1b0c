#include <gtest/gtest.h>

#include <cstdio>

#include "panes/data_pane.h"
#include "panes/pane_commands.h"
#include "panes/statistics_pane.h"
#include "platform/queue.h"
#include "unit/loose_records.h"
#include "unit/view/view_test.h"

namespace coverage {
namespace {

using DataPane = CJepCoverageInstanceCtrlCovData;
using StatisticsPane = CJepCoverageInstanceCtrlStatData;

/// Rows of a list over instructions of 2 and 4 bytes from 0x1000 to 0x10ff, with nothing at 0x100a, four rows
/// a page.
class Rows : public testing::Test {
 protected:
  Rows() {
    target.Instructions(0x1000, {2, 4, 2, 2});
    target.Fill(0x100C, 0x10FF);
    target.Line(0x1006, "main.c", 7, "\tx\t" + std::string(300, 'y'));
    target.addressText.names[0x1000] = "main";
    target.expression.names["main"] = 0x1000;
    target.OfferTo(host);
    parent.Create(0, 0, "", platform::window_style::kVisible, {0, 0, 600, 600});
    list.CreateList(0x5000040D, {0, 0, 600, 100}, parent, 200, 0);
    for (int column = 0; column < 5; ++column) {
      list.InsertColumn(column, "x", platform::ColumnFormat::kLeft, 50);
    }
    list.Resize(4);
    instance.counts->table().Layout(0x1000, 0x10FF);
  }
  std::uint32_t Build(bool rewrite, std::uint32_t from, int first, int count) {
    return RowBuilder(&host, instance, cache, list, 4).Build(rewrite, from, first, count);
  }
  /// The rows that are visible.
  std::string Page(int column) const {
    std::string page;
    for (int row = list.TopRow(); row < list.TopRow() + 4; ++row) page += list.ItemText(row, column) + '|';
    return page;
  }

  doubles::HostDouble host;
  doubles::TargetDouble target;
  platform::Window parent;
  CUiReportListCtrl list;
  DisassemblyCache cache;
  LooseInstance instance{&host, 0x1000, 0x10FF, {}, 1};
};

TEST_F(Rows, AreBuiltAPageAndOneRowAtATime) {
  const struct {
    const char* what;
    int top;  ///< -1: the last page
    std::uint32_t from;
    std::uint32_t next;
    const char* page;
  } rows[] = {
      {"the start, over the hole", 0, 0, 0x100E, "main|0x00001002|0x00001006|0x00001008|"},
      {"from an address", 8, 0x1020, 0x102A, "0x00001020|0x00001022|0x00001024|0x00001026|"},
      {"a row that is known", 8, 0, 0x102A, "0x00001020|0x00001022|0x00001024|0x00001026|"},
      {"a page below one that is known", 12, 0, 0x1032, "0x00001028|0x0000102a|0x0000102c|0x0000102e|"},
      {"an estimate", 40, 0, 0x105A, "0x00001050|0x00001052|0x00001054|0x00001056|"},
      {"the end", -1, 0, 0x1100, "0x000010f8|0x000010fa|0x000010fc|0x000010fe|"},
  };
  for (const auto& row : rows) {
    list.Scroll(row.top < 0 ? list.RowCount() : row.top - list.TopRow());
    EXPECT_EQ(Build(true, row.from, -1, -1), row.next) << row.what;
    EXPECT_EQ(Page(kAddressColumn), row.page) << row.what;
  }
  instance.shown = 0;
  EXPECT_EQ(Build(true, 0, 0, -1), 0u);
}

TEST_F(Rows, OnALongListTheEndStillFillsItsLastPage) {
  Build(true, 0, 0, -1);
  list.SetRowCount(1000);
  list.Scroll(1000);
  Build(true, 0, -1, -1);
  EXPECT_EQ(Page(kAddressColumn), "0x000010f8|0x000010fa|0x000010fc|0x000010fe|");
  EXPECT_EQ(list.RowCount(), list.TopRow() + 4);
}

TEST_F(Rows, BelowAShortRangeAreBlank) {
  Build(true, 0, 0, -1);
  instance.end = 0x1005;
  Build(true, 0, 0, -1);
  EXPECT_EQ(Page(kTimesColumn) + Page(kAddressColumn), " 0| 0|||main|0x00001002|||");
  EXPECT_EQ(list.RowCount(), 4);
}

TEST_F(Rows, KeepTheirCodeWhereOnlyCountersAreWritten) {
  Build(true, 0, 0, -1);
  EXPECT_EQ(list.ItemText(2, kSourceColumn),
            "    x   " + std::string(244, 'y') + "..." + std::string(53, 'y'));
  EXPECT_EQ(list.ItemText(3, kSourceColumn), " ");
  instance.counts->AddOne(0x1006, 12, 3);
  list.SetItemText(2, kAddressColumn, {});
  Build(false, 0, 0, -1);
  EXPECT_EQ(Page(kAddressColumn), "main|0x00001002|0x00001006|0x00001008|");
  EXPECT_EQ(Page(kTimesColumn) + Page(kPassColumn), " 0| 0| 12| 0|-|-|T/F|-|");
  target.Line(0x1002, "main.c", 1, "new");
  Build(false, 0, 0, -1);
  EXPECT_EQ(list.ItemText(1, kSourceColumn), " ");
  list.SetItemText(1, kAddressColumn, "0x00001004");
  Build(false, 0, 0, -1);
  EXPECT_EQ(list.ItemText(1, kAddressColumn) + list.ItemText(1, kSourceColumn), "0x00001002new")
      << "counters never stand beside another address";
}

TEST(SourceColumn, NeverShowsHalfACharacter) {
  const std::string e = "\xC3\xA9";  // two bytes
  const auto y = [](std::size_t count) { return std::string(count, 'y'); };
  const struct {
    const char* what;
    std::string line, shown;
  } rows[] = {
      {"just short enough", y(254), y(254)},
      {"letters", y(300), y(252) + "..." + y(45)},
      {"one over the start", y(251) + e + y(100), y(251) + "..." + y(98)},
      {"one over the end", y(254) + e + y(9), y(252) + "..." + y(9)},
      {"one on each side", y(250) + e + y(3) + e + y(9), y(250) + e + "..." + e + y(9)},
      {"before a tab", e + "\tx", e + "  x"},
  };
  for (const auto& row : rows) EXPECT_EQ(SourceColumnText(row.line), row.shown) << row.what;
}

TEST_F(Rows, BesideAHoleComeWithoutReadingItAgain) {
  doubles::CallLog log;
  struct Counting final : doubles::StubMemory {
    using StubMemory::StubMemory;
    qal::Status ReadMemory(std::uint32_t, std::uint32_t, std::uint16_t, std::uint8_t*) override {
      return ++asked, qal::kFail;
    }
    int asked = 0;
  } memory(log);
  Build(true, 0, 0, -1);
  host.Offer(memory);
  instance.end = 0x2FFF;
  list.SetRowCount(500);
  list.Scroll(100);
  EXPECT_EQ(Build(true, 0x10F8, -1, -1), 0x2FFFu + 1);
  const int once = memory.asked;
  EXPECT_GT(once, 0x1F00 / 2);
  EXPECT_EQ(Build(true, 0x10F8, -1, -1), 0x2FFFu + 1);
  EXPECT_EQ(memory.asked, once);
}

TEST_F(Rows, OfNothingButHolesAreNone) {
  target.information.alignment = 8;
  for (std::uint32_t at = 0x1000; at < 0x1100; at += 2) target.Forget(at);
  EXPECT_EQ(Build(true, 0x1034, 3, -1), 0x1100u);
  EXPECT_EQ(Page(kAddressColumn), "||||");
}

TEST_F(Rows, ColumnWidthsComeBackHiddenOnesToo) {
  doubles::StubSettings store;
  const auto toggle = [this](std::uint32_t column) { list.Send(platform::message::kCommand, column); };
  list.SetColumnWidth(1, 60);
  toggle(1);
  list.SaveColumnWidths(&store, "Pane");
  store.ints["Pane/ColWidth3"] = -1;
  toggle(1);
  list.LoadColumnWidths(&store, "Pane");
  EXPECT_EQ(store.ints["Pane/ColWidth1"], -60);
  EXPECT_EQ(list.ColumnWidth(1), 0);
  EXPECT_EQ(list.ColumnWidth(3), 30) << "too small to be seen";
  toggle(1);
  EXPECT_EQ(list.ColumnWidth(1), 60);
}

/// Windows over a program, as a person works in them.
class Panes : public ViewTest {
 protected:
  Panes() { world.target.Function(ViewWorld::kSource, "after", 0x1020, 0x102F); }
  static std::string Names(const StatisticsPane& window) {
    std::string names;
    for (const auto& [number, instance] : window.Record().instances) {
      names += (instance->shown ? "*" : "") + instance->functionName + (instance->enableStatus ? " " : "- ");
    }
    return names;
  }
};

TEST_F(Panes, GoToAddressSelectsTheRowOfTheAddress) {
  const struct {
    std::uint32_t end;
    const char *address, *top, *selected;
    bool locked;
  } rows[] = {
      {0x100F, "1008", "main", "0x00001008", false},  // all of it on one page
      {0x1FFF, "1800", "0x00001800", "0x00001800", false},
      {0x1FFF, "1000", "main", "main", false},
      {0x1FFF, "1800", "", "", true},  // rows that were not looked at
  };
  for (const auto& row : rows) {
    StatisticsPane& window = *Open().NewRangeWindow(0x1000, row.end);
    DataPane& pane = *window.Pane(1);
    platform::PumpPosted();
    pane.RebuildRows(true, 0, 0, -1);
    if (row.locked) platform::RunCommand(pane, pane_command::kLockRefresh);
    Do(std::string("type 8999 ") + row.address + ";click 9024",
       [&] { platform::RunCommand(pane, pane_command::kGoToAddress); });
    const CCoverageListCtrl& list = pane.List();
    EXPECT_EQ(list.ItemText(list.TopRow(), kAddressColumn), row.top) << row.address;
    EXPECT_EQ(list.ItemText(list.SelectedRow(), kAddressColumn), row.selected) << row.address;
    EXPECT_GE(list.SelectedRow(), 0);
    Open().CloseAll();
  }
}

TEST_F(Panes, GrowingLeavesNoGapAndNoBlankRow) {
  // Instructions of 2 and 4 bytes, so that no estimate hits the right one by itself.
  for (std::uint32_t at = 0x2000; at < 0x2400; at += 10) world.target.Instructions(at, {2, 4, 4});
  for (std::uint32_t odd = 0x2000; odd < 0x2400; odd += 10) {
    world.target.Forget(odd + 4);
    world.target.Forget(odd + 8);
  }
  StatisticsPane& window = *Open().NewRangeWindow(0x2000, 0x23FF);
  DataPane& pane = *window.ViewPane();
  const CCoverageListCtrl& list = pane.List();
  const auto grow = [&](int height) { pane.Move({0, 0, 600, height}); };
  const auto rows = [&] {
    std::string wrong;
    std::uint64_t next = 0;
    for (int row = list.TopRow(); row < list.TopRow() + list.RowsPerPage(); ++row) {
      std::uint32_t address = 0;
      const bool read = std::sscanf(list.ItemText(row, kAddressColumn).c_str(), "0x%x", &address) == 1;
      if (!read || (next != 0 && address != next)) wrong += platform::Format("row %d: %x; ", row, address);
      next = address + (address % 10 == 0x2000 % 10 ? 2 : 4);
    }
    return wrong;
  };
  for (const int lines : {0, 30, 10'000}) {
    grow(100);
    pane.List().ScrollTo(0);
    platform::PumpPosted();
    pane.List().ScrollLines(lines);
    platform::PumpPosted();
    for (const int height : {160, 163, 300}) {
      grow(height);
      EXPECT_EQ(rows(), "") << lines << " lines down, " << height << " high";
    }
  }
}

TEST_F(Panes, SortingAlternatesForAllWindowsTogether) {
  world.log.FailCall(2, "path.AddRange");  // "step" has no range
  StatisticsPane& first = *Open().NewFileWindow(ViewWorld::kSource, "main.c");
  StatisticsPane& second = *Open().NewFileWindow(ViewWorld::kSource, "main.c");
  first.Record().instances[3]->percentage = 40;
  first.List().ClickHeader(0);
  EXPECT_EQ(Names(first), "after *main step- ");
  second.List().ClickHeader(0);
  EXPECT_EQ(Names(second), "step *main after ");
  first.List().ClickHeader(1);
  EXPECT_EQ(first.List().ItemText(0, 1) + first.List().ItemText(2, 1), " 0% 40%");
  first.List().ClickHeader(1);
  EXPECT_EQ(first.List().ItemText(0, 1) + first.List().ItemText(2, 1), " 40% 0%");
  EXPECT_EQ(first.Record().instances[1]->functionName, "after") << "numbers follow the order";

  const int refused = first.Record().instances[2]->functionName == "step" ? 1 : 2;
  first.List().Click(refused);
  EXPECT_EQ(first.List().SelectedRow(), -1) << "a function without a range cannot be picked";
  first.List().Click(0);
  EXPECT_EQ(Names(first).substr(0, 7), "*after ");
  for (const bool all : {true, false, true}) {
    platform::RunCommand(first, pane_command::kEnableAll);
    EXPECT_EQ(platform::QueryCommand(first, pane_command::kEnableAll).Checked(), all)
        << "but for the refused";
  }
}

TEST_F(Panes, AnEditedRangeIsShownFromItsStart) {
  DataPane& pane = *Open().NewRangeWindow(0x1000, 0x1FFF)->Pane(1);
  pane.List().Scroll(20);
  Do("type 204 2000;type 205 2fff;click 9021", [&] { platform::RunCommand(pane, pane_command::kEditRange); });
  EXPECT_EQ(pane.List().TopRow(), 0);
  EXPECT_EQ(pane.List().ItemText(0, kAddressColumn), "0x00002000");
}

TEST_F(Panes, LockedRowsStayUntilTheyAreClearedOrUnlocked) {
  StatisticsPane& window = *Open().NewRangeWindow(0x1000, 0x10FF);
  CoverageInstance& instance = *window.Record().instances[1];
  const auto after = [&](const std::function<void(CoverageModel&)>& act) {
    Open().Do([&] { act(view->Coverage()); });
    return window.ViewPane()->List().ItemText(0, kTimesColumn);
  };
  const auto lock = [&](bool on) { return [&, on](CoverageModel& model) { model.Lock(instance, on); }; };
  after(lock(true));
  instance.counts->AddOne(0x1000, 7, 0);
  EXPECT_EQ(after([](CoverageModel& model) { model.MarkRows(); }), " 0");
  EXPECT_EQ(after(lock(false)), " 7");
  after(lock(true));
  EXPECT_EQ(after([&](CoverageModel& model) { model.Clear(instance); }), " 0");
}

TEST_F(Panes, CommandsAreRecordedWithTheNumbersOfTheDebugger) {
  world.target.Function(ViewWorld::kSource, "step", 0x1030, 0x103F);
  StatisticsPane& window = *Open().NewFileWindow(ViewWorld::kSource, "main.c");
  for (int sorted = 0; sorted < 2; ++sorted) window.List().ClickHeader(0);
  world.recorder.recording = true;
  for (int row = 0; row < 4; ++row) {
    window.List().Click(row);
    platform::RunCommand(window, pane_command::kEnable);
  }
  DataPane& range = *Open().NewRangeWindow(0x1000, 0x10FF)->Pane(1);
  platform::RunCommand(range, pane_command::kClearData);  // modified, and nobody is asked: not recorded
  platform::RunCommand(range, pane_command::kClearData);
  EXPECT_EQ(world.recorder.lines, (std::vector<std::string>{"cv 2 disable", "cv 4 disable", "cv 1 disable",
                                                            "cv 3 disable", "cv reset"}));
}

}  // namespace
}  // namespace coverage
