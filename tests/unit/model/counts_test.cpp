#include <gtest/gtest.h>

#include <random>
#include <utility>

#include "doubles/ide_services.h"
#include "doubles/message_boxes.h"
#include "doubles/target.h"
#include "literal_records.h"
#include "model/coverage_model.h"
#include "unit/loose_records.h"

namespace coverage {
namespace {

struct CountsTest : testing::Test {
  CountsTest() {
    host.Offer(path);
    host.Offer(errors);
  }
  /// Takes the path-coverage service away and offers the other one.
  void UseCounts() {
    host.Withdraw(doubles::StubPathCoverage::kService);
    host.Offer(count);
  }

  doubles::CallLog log;
  doubles::HostDouble host;
  doubles::StubPathCoverage path{log};
  doubles::StubCountCoverage count{log};
  doubles::StubErrorText errors;
  doubles::StubTraceStart trace{log};
  doubles::RecordingBoxes boxes;
};

std::string Range(const CoverageCounts& counts) {
  return platform::Format("%x-%x, %zu cells, active %u", counts.start(), counts.end(),
                          counts.table().cellCount(), counts.active());
}

TEST_F(CountsTest, ARefusedRangeLeavesTheOldOne) {
  host.Offer(count);  // with both services, the one that records paths
  LooseCounts counts(&host);
  log.FailCall(1);
  EXPECT_EQ(counts.SetRange(0x1000, 0x1FFF), 0u);
  EXPECT_EQ(Range(counts), "0-0, 0 cells, active 1");
  EXPECT_EQ(boxes.Take(), "exclamation ok: error 0x80004005\n");
  EXPECT_EQ(counts.SetRange(0x1000, 0x1FFF), 1u);
  log.Clear();
  log.FailCall(1, "path.AddRange");
  EXPECT_EQ(counts.SetRange(0x4000, 0x4FFF), 0u);
  EXPECT_EQ(Range(counts), "1000-1fff, 2048 cells, active 1");
  EXPECT_EQ(log.Text(),
            "path.RemoveRange(0x1000, 0x1fff)\npath.AddRange(0x4000, 0x4fff)\n"
            "path.AddRange(0x1000, 0x1fff)\n");
}

TEST_F(CountsTest, NothingHappensWithoutAServiceOrForARangeBeyondMemory) {
  LooseCounts counts(&host);
  counts.SetRange(0x1000, 0x1FFF);
  EXPECT_EQ(counts.SetRange(0, 0xFFFFFFFF), 0u);
  host.Withdraw(doubles::StubPathCoverage::kService);
  EXPECT_EQ(counts.SetRange(0x2000, 0x2FFF), 0u);
  EXPECT_EQ(Range(counts), "1000-1fff, 2048 cells, active 1");
  EXPECT_EQ(boxes.Take(), "");
  EXPECT_EQ(LooseCounts(nullptr).SetRange(0x2000, 0x2FFF), 0u);
}

TEST_F(CountsTest, PassTexts) {
  for (const auto& [pass, text] : {std::pair{0u, "-"}, {1u, "T"}, {2u, "F"}, {3u, "T/F"}, {4u, " 0"}}) {
    EXPECT_EQ(PassText(pass), text);
    EXPECT_EQ(PassOfText(text), pass < 4 ? static_cast<int>(pass) : -1);
  }
  EXPECT_EQ(PassOfText("t"), -1);
  CoverageRow row;
  const CoverageCell cell{5'000'000'000, 3};
  SetCounters(row, &cell);
  EXPECT_EQ(row.times + "," + row.pass, " 5000000000,T/F");
  SetCounters(row, nullptr);
  EXPECT_EQ(row.times + "," + row.pass, " 0,-");
}

// --- collection

struct CollectionTest : CountsTest {
  CollectionTest() {
    model.Open(window);
    for (std::uint32_t i = 0; i < 3; ++i) {
      model.Add(*window, model.NewInstance(0x10 * i, 0x10 * i + 0xF, "", i == 0));
      all.push_back(window->Instance(i + 1).get());
      model.Register(*all[i], reporter);
      all[i]->modified = 0;
      all[i]->saved = 1;
    }
    model.Enable(*all[1], false);
    commands.SetStoreRange(0x8, 0x17, reporter);
    log.Clear();
  }
  std::string Pictures() {
    std::string text;
    for (auto* instance : all) {
      text += platform::Format("m%us%u %s| ", instance->modified, instance->saved,
                               literal::Picture(instance->counts->table()).c_str());
    }
    return text + literal::Picture(commands.commandStore().table());
  }

  MessageReporter reporter{&host};
  CoverageModel model{&host};
  CommandModel& commands = model.Commands();
  CoverageModel::WindowPtr window = std::make_shared<CoverageWindow>();
  std::vector<CoverageInstance*> all;
};

TEST_F(CollectionTest, ACountReportReachesOverlappingRanges) {
  UseCounts();
  std::mt19937 random(8);
  const auto pick = [&](std::uint32_t low, std::uint32_t high) {
    return std::uniform_int_distribution<std::uint32_t>(low, high)(random);
  };
  for (int round = 0; round < 60; ++round) {
    std::vector<literal::Table> oracles(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
      const std::uint32_t start = pick(0, 0x60), end = start + pick(0, 0x60);
      model.SetRange(*all[i], start, end);
      model.Register(*all[i], reporter);
      model.Enable(*all[i], true);
      oracles[i].Layout(start, end);
    }
    count.counts.clear();
    count.flags.clear();
    for (int i = 0; i < 30; ++i) {
      count.counts.push_back({pick(0, 0xD0), pick(0, 3)});
      count.flags.push_back({pick(0, 0xD0), pick(0, 3)});
    }
    ASSERT_TRUE(model.TakeReport());
    for (std::size_t i = 0; i < all.size(); ++i) {
      for (const auto& [address, value] : count.counts) oracles[i].AddOne(address, value, 0);
      for (const auto& [address, value] : count.flags) oracles[i].AddOne(address, 0, value);
      ASSERT_EQ(literal::Picture(all[i]->counts->table()), literal::Picture(oracles[i])) << "round " << round;
    }
  }
}

TEST_F(CollectionTest, WhatIsPendingSurvivesEveryChange) {
  path.pairs = {{0x2E, 0}};
  model.TakeReport();
  model.Enable(*all[0], false);  // what was reported before still counts
  model.Clear(*all[2]);
  all[1]->RenewCounts();
  path.pairs = {{0x4, 0x20}, {0x20, 0}};
  model.TakeReport();
  commands.SetStoreRange(0x20, 0x21, reporter);
  EXPECT_EQ(all[0]->counts->Lookup(0xE)->times, 1u);
  EXPECT_EQ(all[0]->counts->Lookup(0x4)->times, 1u);
  EXPECT_EQ(literal::Picture(all[2]->counts->table()), "32:1/1 ");
  EXPECT_EQ(literal::Picture(commands.commandStore().table()), "");
}

TEST_F(CollectionTest, SwitchFollowsWhatIsEnabled) {
  const auto wanted = [&] {
    return std::exchange(model.Stale().wanted, false) ? model.CoverageWanted() + 1 : 0;
  };
  wanted();
  commands.SetStoreEnabled(true);
  EXPECT_EQ(wanted(), 2);
  commands.SetStoreEnabled(false);
  EXPECT_EQ(wanted(), 2);
  for (CoverageInstance* instance : all) model.Enable(*instance, false);
  EXPECT_EQ(wanted(), 1);
  model.Clear(*all[0]);
  EXPECT_EQ(wanted(), 0) << "nothing was enabled or registered";
  model.Enable(*all[0], true);
  commands.AddWindow(0x100, 0x1FF, "f", reporter);
  commands.AddWindow(0x200, 0x2FF, "g", reporter);
  commands.SetAllWindowsEnabled(false);
  EXPECT_EQ(wanted(), 1) << "with command windows only they count";
  commands.SetWindowEnabled(2, true);
  EXPECT_EQ(wanted(), 2);
  log.Clear();
  model.UpdateCoverageSwitch();
  UseCounts();
  commands.SetWindowEnabled(2, false);
  model.UpdateCoverageSwitch();
  EXPECT_EQ(log.Text(), "path.SetCollection(-1)\ncount.SetCollection(0)\n");
  EXPECT_EQ(wanted(), 0);
}

TEST_F(CollectionTest, ARefusedInstanceIsNeitherEnabledNorDisplayed) {
  log.FailCall(1, "path.AddRange");
  model.SetRange(*all[0], 0x40, 0x4F);
  model.Register(*all[0], reporter);
  model.Enable(*all[0], true);
  EXPECT_EQ(all[0]->enableStatus + all[0]->rangeSet, 0u);
  model.DisplayRegistered(*window);
  EXPECT_EQ(window->Displayed(), all[1]);
  model.Display(*all[0]);
  EXPECT_EQ(window->Displayed(), all[1]);
  const auto last = window->Instance(3);
  model.Remove(*all[1]);
  model.Withdraw(*last);
  model.DisplayRegistered(*window);
  EXPECT_EQ(window->Displayed(), nullptr) << "none is left that could be";
  EXPECT_EQ(window->NumberOf(*last), 2u);
}

TEST_F(CollectionTest, FromZeroToZeroIsNoRange) {
  EXPECT_EQ(commands.SetStoreRange(0, 0, reporter), 1u);
  commands.Withdraw();
  EXPECT_EQ(log.Text("path."), "path.RemoveRange(0x8, 0x17)\n");
}

TEST_F(CollectionTest, ASnapshotHasAnElementForEveryNumber) {
  CoverageWindow gaps;
  gaps.instances[3] = window->Instance(3);
  gaps.instances[1] = window->Instance(1);
  all[2]->functionName = "main";
  all[2]->percentage = 42;
  gaps.TakeStats();
  ASSERT_EQ(gaps.stats.size(), 3u);
  EXPECT_EQ(gaps.stats[0], all[0]->Snapshot());
  EXPECT_EQ(gaps.stats[1], FunctionStat{});
  EXPECT_EQ(gaps.stats[2], (FunctionStat{"main", 0x20, 0x2F, 42, 0, 1, 1, 0}));
}

}  // namespace
}  // namespace coverage
