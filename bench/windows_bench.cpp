#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "harness.h"
#include "model/report_collector.h"
#include "panes/pane_commands.h"
#include "panes/row_builder.h"
#include "unit/loose_records.h"
#include "unit/view/open_windows.h"
#include "unit/view/view_world.h"

// What the coverage windows and the editors' marks cost, against their own parts and against less of the
// same.

namespace {

using StatisticsPane = coverage::WindowTable::StatisticsPane;

constexpr std::uint32_t kStart = 0x08000000;
constexpr int kPage = 50;

/// A pane's list over a range of 2-byte instructions, each on a source line of its own.
struct Rows {
  explicit Rows(std::uint32_t bytes) : instance(&host, kStart, kStart + bytes - 1, {}, 1) {
    target.Fill(kStart, kStart + bytes - 1);
    target.OfferTo(host);
    parent.Create(0, 0, "", platform::window_style::kVisible, {0, 0, 600, 1200});
    list.CreateList(0x5000040D, {0, 0, 600, 1000}, parent, 200, 0);
    for (int column = 0; column < 5; ++column) {
      list.InsertColumn(column, "x", platform::ColumnFormat::kLeft, 50);
    }
    list.Resize(kPage);
    instance.counts->table().Layout(kStart, kStart + bytes - 1);
  }
  void Build(bool rewrite, int from = -1) {
    coverage::RowBuilder(&host, instance, cache, list, kPage).Build(rewrite, 0, from, -1);
  }

  doubles::HostDouble host;
  doubles::TargetDouble target;
  platform::Window parent;
  coverage::CUiReportListCtrl list;
  coverage::DisassemblyCache cache;
  coverage::LooseInstance instance;
};

/// A page that is brought up to date, against nothing but the texts that may have changed in it.
void PageRows(bench::Suite& suite) {
  constexpr int kTimes = 100;
  static Rows rows(0x20000);
  rows.Build(true, 0);
  suite.Measure("page of rows, code known", kTimes, [] {
    for (int i = 0; i < kTimes; ++i) rows.Build(false);
  });
  suite.Measure("floor: the counters of a page", kTimes, [] {
    for (int i = 0; i < kTimes; ++i) {
      for (int row = 0; row <= kPage; ++row) {
        coverage::CoverageRow counters;
        const auto cell = rows.instance.counts->Lookup(kStart + 2 * static_cast<std::uint32_t>(row));
        coverage::SetCounters(counters, cell ? &*cell : nullptr);
        rows.list.SetItemTextDefault(row, coverage::kTimesColumn, counters.times);
        rows.list.SetItemTextDefault(row, coverage::kPassColumn, counters.pass);
      }
    }
  });
  suite.RequireAtMost("page of 50 rows, code known, against writing its counters", "page of rows, code known",
                      "floor: the counters of a page", 1.7);
}

/// A file window over functions of 64 bytes.
class FileWindow {
 public:
  explicit FileWindow(std::uint32_t functions) {
    constexpr std::uint32_t kBytes = 64;
    const std::string file = "C:\\space\\demo\\many.c";
    world.target.Fill(kStart, kStart + functions * kBytes - 1);
    world.target.Line(kStart, file, 1, "");
    for (std::uint32_t i = 0; i < functions; ++i) {
      const std::uint32_t at = kStart + i * kBytes;
      world.target.Function(file, platform::Format("f%04u", i), at, at + kBytes - 1);
      pairs.push_back({at + 30, at + 64});
    }
    view.CreateSinkWindow();
    window = windows.NewFileWindow(file, file);
    windows.Do([&] { view.RefreshAllStatistics(); });
    instances = windows.Instances();
  }
  /// The target ran; the IDE has not told yet.
  void Run() {
    world.Ran(kStart, pairs);
    world.log.Clear();
  }
  /// The two events of a stop, each shown when it is over.
  void Stop() {
    windows.Do([&] { view.CollectCoverage(); });
    windows.Do([&] { view.RefreshAllStatistics(); });
  }
  void Collect() {
    coverage::ReportCollector(&world.host).Collect(view.Coverage().Stores(), view.Coverage().Commands());
  }
  void Percentages() {
    for (const auto& instance : instances) {
      instance->ComputePercentage(false, view.Coverage().Instructions());
    }
  }
  void List() { window->ListInstances(true, -1, -1); }
  std::size_t Functions() { return instances.size(); }

  coverage::ViewWorld world;
  coverage::CUiCustomizer customizer{&world.host};
  coverage::CJepCoverageCtrl view{&world.host, &customizer};
  coverage::OpenWindows windows{view};
  StatisticsPane* window = nullptr;
  std::vector<coverage::CoverageModel::InstancePtr> instances;
  std::vector<qal::PathPair> pairs;
};

void StopRows(bench::Suite& suite) {
  static FileWindow one(1000);
  static FileWindow eight(8000);
  static FileWindow sixteen(16000);
  // Some stops, one after the other: what the other measurements left in the caches counts for one only.
  const auto stops = [](FileWindow& file, int times) {
    for (int i = 0; i < times; ++i) {
      file.Run();
      file.Stop();
    }
  };
  constexpr int kTimes = 20;
  suite.Measure("stops over 1,000 functions", 1000 * kTimes, [stops] { stops(one, kTimes); });
  suite.Measure("parts of the stops", 1000 * kTimes, [] {
    for (int i = 0; i < kTimes; ++i) {
      one.Run();
      one.Collect();
      one.Percentages();
      one.List();
    }
  });
  suite.Measure("stops over 8,000 functions", 8000 * 4, [stops] { stops(eight, 4); });
  suite.Measure("stops over 16,000 functions", 16000 * 2, [stops] { stops(sixteen, 2); });
  suite.RequireFigure(
      "functions that the file windows lack",
      [] { return 25000.0 - static_cast<double>(one.Functions() + eight.Functions() + sixteen.Functions()); },
      0);
  // Both are beyond the nearest caches. Work that grew with the square would cost twice as much a function.
  suite.RequireAtMost("stop, a function, 16,000 against 8,000", "stops over 16,000 functions",
                      "stops over 8,000 functions", 1.6);
  suite.RequireAtMost("stop over 1,000 functions against its parts", "stops over 1,000 functions",
                      "parts of the stops", 1.6);
}

/// A range window over ranges of 64 bytes.
class RangeWindow {
 public:
  explicit RangeWindow(std::uint32_t ranges) {
    world_.target.Fill(kStart, kStart + ranges * 64 - 1);
    view_.CreateSinkWindow();
    pane_ = windows_.NewRangeWindow(kStart, kStart + 63);
    windows_.Do([&] {
      view_.Opener().Fill([&] {
        for (std::uint32_t at = kStart + 64; at < kStart + ranges * 64; at += 64) {
          view_.Opener().AddRange(pane_->Record(), at, at + 63, false);
        }
      });
      view_.Opener().ShowRanges(pane_->Record());
    });
  }
  void Refresh() {
    world_.log.Clear();
    pane_->Send(platform::message::kCommand, coverage::pane_command::kRefresh);
  }
  std::size_t Ranges() { return windows_.Instances().size(); }

 private:
  coverage::ViewWorld world_;
  coverage::CUiCustomizer customizer_{&world_.host};
  coverage::CJepCoverageCtrl view_{&world_.host, &customizer_};
  coverage::OpenWindows windows_{view_};
  StatisticsPane* pane_ = nullptr;
};

void RefreshRows(bench::Suite& suite) {
  static RangeWindow few(500);
  static RangeWindow many(2000);
  suite.Measure("refresh of 500 ranges", 500 * 4, [] {
    for (int i = 0; i < 4; ++i) few.Refresh();
  });
  suite.Measure("refresh of 2,000 ranges", 2000, [] { many.Refresh(); });
  suite.RequireFigure(
      "ranges that the range windows lack",
      [] { return 2500.0 - static_cast<double>(few.Ranges() + many.Ranges()); }, 0);
  suite.RequireAtMost("refresh, a range, 2,000 against 500", "refresh of 2,000 ranges",
                      "refresh of 500 ranges", 1.5);
}

/// Ranges of 64 bytes, one after the other, and the editor over them: a line for each two bytes.
class Editor {
 public:
  explicit Editor(std::uint32_t ranges) {
    target_.OfferTo(host_);
    coverage::SilentReporter silent;
    for (std::uint32_t i = 0; i < ranges; ++i) {
      instances_.push_back(model_.NewInstance(kStart + 64 * i, kStart + 64 * i + 63, "", 0));
      model_.Register(*instances_.back(), silent);
    }
  }
  /// Asks for the marks of so many lines over the first `covered` ranges, then drops them.
  void AskAndDrop(std::uint32_t lines, std::uint32_t covered) {
    for (std::uint32_t line = 0; line < lines; ++line) {
      const std::uint32_t at =
          kStart + 2 * (line % (covered * 32)) + 0x10000000 * (line / (covered * 32) % 8);
      const auto mark = marks_.Mark(coverage::EditorColumn::kDisassembly, "disassembly", at);
      if (line == 0 && !mark) std::abort();
      bench::Keep(mark);
    }
    marks_.DropLineMarks();
  }

 private:
  doubles::HostDouble host_;
  doubles::TargetDouble target_;
  coverage::CoverageModel model_{&host_};
  std::vector<coverage::CoverageModel::InstancePtr> instances_;
  doubles::StubSource source_;
  coverage::LineMarks marks_{model_, &source_, nullptr};
};

void MarkRows(bench::Suite& suite) {
  static Editor few(4);
  static Editor many(4000);
  suite.Measure("marks of 100,000 lines", 100'000, [] { many.AskAndDrop(100'000, 4000); });
  suite.Measure("marks of 25,000 lines", 25'000, [] { many.AskAndDrop(25'000, 4000); });
  suite.Measure("marks beside 4 windows", 100'000, [] { few.AskAndDrop(100'000, 4); });
  suite.Measure("marks beside 4,000 windows", 100'000, [] { many.AskAndDrop(100'000, 4); });
  suite.RequireAtMost("marks asked and dropped, a line, 100,000 against 25,000", "marks of 100,000 lines",
                      "marks of 25,000 lines", 1.5);
  suite.RequireAtMost("marks, a line, beside 4,000 windows against 4", "marks beside 4,000 windows",
                      "marks beside 4 windows", 1.5);
}

/// The dearest page over the median page, while a range is scrolled from end to end for the first time. With
/// its percentage `known`, every address was looked at before.
double DearestPage(Rows& rows, bool known) {
  std::vector<double> best;
  for (int pass = 0; pass < 4; ++pass) {
    rows.cache.Drop();
    if (known) rows.instance.ComputePercentage(false, rows.cache);
    rows.list.DeleteAllRows();
    rows.Build(true, 0);
    std::size_t page = 0;
    for (int top = -1; rows.list.TopRow() != top; ++page) {
      top = rows.list.TopRow();
      const auto begin = std::chrono::steady_clock::now();
      rows.list.Scroll(kPage);
      rows.Build(true);
      const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
      if (page == best.size()) best.push_back(std::numeric_limits<double>::infinity());
      best[page] = std::min(best[page], taken.count());
    }
  }
  const auto dearest = *std::max_element(best.begin(), best.end());
  std::nth_element(best.begin(), best.begin() + static_cast<std::ptrdiff_t>(best.size() / 2), best.end());
  return dearest / best[best.size() / 2];
}

double DearestPageOfCode() {
  static Rows rows(0x200000);
  return DearestPage(rows, false);
}

/// The same over a range in whose middle half there is no memory.
double DearestPageBesideAHole() {
  constexpr std::uint32_t kBytes = 0x80000;
  static Rows rows(kBytes);
  for (std::uint32_t at = kBytes / 4; at < kBytes * 3 / 4; at += 2) rows.target.Forget(kStart + at);
  return DearestPage(rows, true);
}

}  // namespace

int main(int argc, char** argv) {
  bench::Suite suite("windows");
  PageRows(suite);
  StopRows(suite);
  RefreshRows(suite);
  MarkRows(suite);
  suite.RequireFigure("scrolling 2 MiB, the dearest page against the median", DearestPageOfCode, 3);
  suite.RequireFigure("scrolling over a hole, the dearest page against the median", DearestPageBesideAHole,
                      3);
  return suite.Run(argc, argv);
}
