#include "model/command_model.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "commands/message_reporter.h"
#include "doubles/ide_services.h"
#include "doubles/message_boxes.h"
#include "doubles/target.h"
#include "model/coverage_model.h"

namespace coverage {
namespace {

constexpr const char* kFile = "C:\\space\\demo\\main.c";

struct CommandModelTest : testing::Test {
  CommandModelTest() {
    target.OfferTo(host);
    host.Offer(errors);
    target.Function(kFile, "main", 0x1000, 0x10FF);
    target.Function(kFile, "idle", 0x1100, 0x11FF);
    target.Function(kFile, "Main", 0x1200, 0x12FF);
  }
  std::string Windows(const CommandModel& model) {
    std::string text;
    for (std::uint32_t number = 1; number <= model.windowCount(); ++number) {
      const CommandEntry* entry = model.FirstEntry(number);
      text += platform::Format("%u %s %x-%x %u; ", number, entry->functionName.c_str(),
                               entry->counts->start(), entry->counts->end(), entry->counts->active());
    }
    return text;
  }

  doubles::CallLog log;
  doubles::HostDouble host;
  doubles::TargetDouble target{log};
  doubles::StubErrorText errors;
  doubles::RecordingBoxes boxes;
  MessageReporter reporter{&host};
};

TEST_F(CommandModelTest, OpensTheFunctionsOfAFile) {
  CoverageModel coverage(&host);
  CommandModel& model = coverage.Commands();
  model.AddWindow(0x10, 0x1F, "", reporter);
  model.SetStoreRange(0x1000, 0x10FF, reporter);
  model.commandStore().AddOne(0x1000, 3, 0);
  log.Clear();
  log.FailCall(2, "path.AddRange");
  EXPECT_TRUE(model.OpenFile(kFile, reporter));
  EXPECT_EQ(Windows(model), "1 main 1000-10ff 1; 2 idle 0-0 1; 3 Main 1200-12ff 1; ")
      << "a refused range still has its window";
  EXPECT_EQ(log.Text("path."),
            "path.RemoveRange(0x10, 0x1f)\npath.AddRange(0x1000, 0x10ff)\n"
            "path.AddRange(0x1100, 0x11ff)\npath.AddRange(0x1200, 0x12ff)\n");
  EXPECT_EQ(model.filePath(), kFile);
  EXPECT_EQ(model.commandStore().active(), 0u);
  EXPECT_EQ(model.commandStore().Lookup(0x1000), CoverageCell{});
  EXPECT_EQ(model.WindowOfFunction("Main"), 3u);
  EXPECT_EQ(model.WindowOfFunction("MAIN"), 0u);
  EXPECT_EQ(model.WindowOf(0x1200, 0x12FF, "Main"), 3u);
  EXPECT_EQ(model.WindowOf(0x1200, 0x12FF, "main"), 0u);
  log.Clear();
  model.RemoveAllWindows();
  EXPECT_EQ(log.Count("path.RemoveRange"), 2);
  EXPECT_EQ(model.windowCount(), 0u);
  EXPECT_EQ(model.filePath(), "");
}

TEST_F(CommandModelTest, AFileThatCannotBeOpened) {
  CoverageModel coverage(&host);
  CommandModel& model = coverage.Commands();
  EXPECT_FALSE(model.OpenFile("C:\\other.c", reporter)) << "no functions";
  boxes.Take();
  log.FailCall(1, "symbols.");
  EXPECT_FALSE(model.OpenFile(kFile, reporter));
  EXPECT_EQ(boxes.Take(), "exclamation ok: error 0x80004005\n");
  target.source.symbols = nullptr;
  EXPECT_FALSE(model.OpenFile(kFile, reporter));
  host.Withdraw(qal::iid::kSource);
  EXPECT_FALSE(model.OpenFile(kFile, reporter));
  EXPECT_EQ(boxes.Take(),
            "information ok: Program is not downloaded!\ninformation ok: Program is not downloaded!\n");
  SilentReporter silent;
  EXPECT_FALSE(model.OpenFile(kFile, silent));
  EXPECT_EQ(boxes.Take(), "");
  EXPECT_EQ(model.commandStore().active(), 1u);
}

TEST_F(CommandModelTest, AReaderSeesWhatWasReportedBeforeItCame) {
  CoverageModel coverage(&host);
  CommandModel& model = coverage.Commands();
  model.SetStoreRange(0x10, 0x1F, reporter);
  target.path.pairs = {{0x14, 0x20}};
  coverage.TakeReport();
  const CommandModel::Reader reader(model);
  const auto store = model.DescribeStore();
  CoverageCell cell;
  EXPECT_EQ(model.ReadCell(store.id, 0x14, cell), CommandModel::CellRead::kCell);
  EXPECT_EQ(cell, (CoverageCell{1, 1}));
  coverage.TakeReport();
  EXPECT_EQ(model.ReadCell(store.id, 0x12, cell), CommandModel::CellRead::kCell);
  EXPECT_EQ(cell, (CoverageCell{2, 0}));
  EXPECT_EQ(model.ReadCell(store.id, 0x20, cell), CommandModel::CellRead::kNoCell);
  const auto id = model.AddWindow(0x40, 0x4F, "f", reporter).counts->id();
  EXPECT_EQ(model.DescribeWindow(1)->functionName, "f");
  EXPECT_FALSE(model.DescribeWindow(2));
  model.RemoveAllWindows();
  EXPECT_EQ(model.ReadCell(id, 0x40, cell), CommandModel::CellRead::kGone);
}

// One thread reads rows while the UI thread replaces windows, clears and takes reports. The counters of a row
// that is read are those of one moment: the report adds to all cells of a store at once.
TEST_F(CommandModelTest, AReaderRunsBesideEveryChange) {
  CoverageModel coverage(&host);
  CommandModel& model = coverage.Commands();
  const auto shown = coverage.NewInstance(0x1000, 0x12FF, "", 1);
  CoverageInstance& instance = *shown;
  coverage.Register(instance, reporter);
  model.SetStoreRange(0x1000, 0x10FF, reporter);
  target.traceStart.address = 0x1000;
  target.path.pairs = {{0x12FE, 0x1000}, {0x12FE, 0x1000}};
  std::atomic<bool> stop{false};
  std::atomic<int> rows{0};
  auto reader = std::make_unique<CommandModel::Reader>(model);
  std::thread worker([&, own = std::move(reader)] {
    while (!stop) {
      for (std::uint32_t number = 0; number <= model.CountWindows(); ++number) {
        const auto store = number == 0 ? model.DescribeStore() : model.DescribeWindow(number);
        if (!store) continue;
        for (std::uint32_t at = store->start; at < store->end; at += 0x20) {
          CoverageCell cell;
          const auto read = model.ReadCell(store->id, at, cell);
          if (read == CommandModel::CellRead::kGone) break;
          if (read == CommandModel::CellRead::kCell) {
            EXPECT_EQ(cell.times % 2, 0u);
          }
          ++rows;
        }
      }
    }
  });
  for (int i = 0; i < 150 || rows < 200; ++i) {
    coverage.TakeReport();
    instance.ComputePercentage(true, *std::make_unique<DisassemblyCache>());
    EXPECT_GT(instance.counts->Lookup(0x1000)->times, 0u);
    if (i % 3 == 0) model.OpenFile(kFile, reporter);
    if (i % 3 == 1) model.RemoveAllWindows();
    model.SetStoreRange(0x1000, i % 2 == 0 ? 0x10FF : 0x11FF, reporter);
    model.SetStoreEnabled(true);
    if (i % 5 == 0) model.ClearAll();
    model.SetAllWindowsEnabled(i % 2 == 0);
    std::this_thread::yield();
  }
  stop = true;
  worker.join();
}

}  // namespace
}  // namespace coverage
