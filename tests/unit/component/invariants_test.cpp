#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <sstream>
#include <utility>

#include "model/address_text.h"
#include "panes/row_builder.h"
#include "unit/component/long_story.h"

// What must hold after every step of the long story, whatever the step was about.

namespace coverage {
namespace {

using Range = std::pair<std::uint32_t, std::uint32_t>;

/// What the debugger was told, by the calls that it got.
struct Debugger {
  std::multiset<Range> ranges;
  std::string collection;

  explicit Debugger(const std::string& calls) {
    std::istringstream lines(calls);
    for (std::string line; std::getline(lines, line);) {
      Range range;
      char word[32];
      if (std::sscanf(line.c_str(), "path.%31[A-Za-z](%x, %x)", word, &range.first, &range.second) != 3) {
        if (line.starts_with("path.SetCollection")) collection = line;
      } else if (std::string_view(word) == "AddRange") {
        ranges.insert(range);
      } else if (const auto known = ranges.find(range); known != ranges.end()) {
        ranges.erase(known);
      } else {
        ADD_FAILURE() << "withdrawn, but not registered: " << line;
      }
    }
  }
};

std::multiset<Range> RangesOfStores(CoverageModel& model) {
  std::multiset<Range> ranges;
  for (const CoverageCounts* store : model.Stores().stores()) {
    if (store->registered()) ranges.insert({store->start(), store->end()});
  }
  return ranges;
}

/// The percentage worked out anew from the counters.
std::uint32_t FreshPercentage(ViewWorld& world, CoverageInstance& instance) {
  InstructionReader reader(&world.host);
  InstructionWalk walk(instance.start, instance.end, reader.Alignment(), reader);
  std::uint64_t executed = 0;
  std::uint64_t recorded = 0;
  for (Instruction instruction; walk.Next(instruction); ++recorded) {
    const auto cell = instance.counts->Lookup(walk.address());
    executed += cell && cell->times > 0;
  }
  return PercentageOf(executed, recorded);
}

void ListShowsTheInstances(ViewWorld& world, OpenWindows::StatisticsPane& window) {
  const CoverageWindow& record = window.Record();
  const CCoverageListCtrl& list = window.List();
  ASSERT_EQ(list.RowCount(), static_cast<int>(record.instances.size()));
  for (const auto& [number, instance] : record.instances) {
    const int row = static_cast<int>(number) - 1;
    EXPECT_EQ(instance->percentage, FreshPercentage(world, *instance)) << number;
    const std::string percentage = platform::Format(" %u%%", instance->percentage);
    EXPECT_EQ(list.ItemText(row, 1), instance->refreshLocked != 0 ? " -" : percentage) << number;
    EXPECT_EQ(list.ItemText(row, 2), instance->enableStatus != 0 ? " Enable" : " Disable") << number;
    EXPECT_EQ(instance->enableStatus, instance->counts->active()) << number;
    EXPECT_TRUE(instance->rangeSet != 0 || instance->enableStatus + instance->shown == 0) << number;
    EXPECT_EQ(instance->window, &record) << number;
    if (record.isFile()) {
      EXPECT_EQ(list.ItemText(row, 0), " -" + instance->functionName);
    }
  }
}

void RowsShowTheCounters(ViewWorld& world, OpenWindows::StatisticsPane& window) {
  auto* const view = window.ViewPane();
  CoverageInstance* const displayed = window.Record().Displayed();
  ASSERT_NE(view, nullptr);
  if (displayed == nullptr) {
    EXPECT_EQ(view->List().RowCount(), 0);
    return;
  }
  if (displayed->refreshLocked != 0) return;
  const CCoverageListCtrl& list = view->List();
  DisassemblyCache cache;
  const RowBuilder builder(&world.host, *displayed, cache, view->List(), list.RowsPerPage());
  std::uint64_t expected = 0;
  for (int row = list.TopRow(); row < list.TopRow() + list.RowsPerPage(); ++row) {
    const auto address = builder.AddressOfRow(row);
    if (!address) {
      // Only where the range has ended.
      EXPECT_GE(expected, displayed->end) << "row " << row;
      EXPECT_EQ(list.ItemText(row, kTimesColumn), "") << "row " << row;
      continue;
    }
    if (expected != 0) {
      EXPECT_EQ(*address, expected) << "row " << row;
    }
    expected = *address + 2;
    EXPECT_TRUE(displayed->start <= *address && *address <= displayed->end) << "row " << row;
    const auto cell = displayed->counts->Lookup(*address);
    CoverageRow fresh;
    SetCounters(fresh, cell ? &*cell : nullptr);
    EXPECT_EQ(list.ItemText(row, kTimesColumn), fresh.times) << "row " << row;
    EXPECT_EQ(list.ItemText(row, kPassColumn), fresh.pass) << "row " << row;
  }
  const auto text = [&](std::uint32_t address) { return AddressText(&world.host, address).value_or(""); };
  EXPECT_EQ(world.window.titles[window.Record().frame],
            "Coverage " + text(displayed->start) + "- " + text(displayed->end));
}

/// Marks of lines and addresses in and beside the program.
std::string Marks(LineMarks& marks) {
  std::string text;
  for (std::uint32_t line : {3u, 4u, 9u, 20u}) {
    text += std::to_string(marks.Mark(EditorColumn::kSource, ViewWorld::kSource, line).value_or(0)) + ' ';
  }
  for (std::uint32_t address = 0x0FFE; address < 0x1024; address += 2) {
    text += std::to_string(marks.Mark(EditorColumn::kDisassembly, "dis", address).value_or(0)) + ' ';
  }
  return text;
}

/// Tells the story but for one step.
void TellWithout(std::string_view left) {
  Person person;
  for (const Step& step : Steps()) {
    if (step.name == left) continue;
    SCOPED_TRACE(step.name);
    // Marks that are asked for now are kept until they are dropped.
    if (person.View() != nullptr) Marks(person.View()->Marks());
    step.act(person);
    if (person.View() == nullptr) continue;
    CoverageModel& model = person.View()->Coverage();
    const Debugger debugger(person.world.log.Text("path."));
    EXPECT_EQ(debugger.ranges, RangesOfStores(model));
    if (!debugger.collection.empty()) {
      EXPECT_EQ(debugger.collection,
                model.CoverageWanted() ? "path.SetCollection(-1)" : "path.SetCollection(0)");
    }
    EXPECT_FALSE(model.Stale().wanted || model.Stale().marks);
    for (auto* window : person.View()->Windows().Panes()) {
      EXPECT_FALSE(window->Record().stale.any());
      ListShowsTheInstances(person.world, *window);
      RowsShowTheCounters(person.world, *window);
    }
    LineMarks fresh(model, &person.world.target.source, nullptr);
    EXPECT_EQ(Marks(person.View()->Marks()), Marks(fresh));
  }
  person.End();
  EXPECT_EQ(Debugger(person.world.log.Text("path.")).ranges, std::multiset<Range>{});
}

TEST(Invariants, HoldAfterEveryStepOfTheStory) { TellWithout(""); }
TEST(Invariants, HoldWithRowsThatNobodyLocks) { TellWithout("lock"); }

}  // namespace
}  // namespace coverage
