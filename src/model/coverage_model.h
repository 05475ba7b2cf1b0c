#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "model/command_model.h"
#include "model/coverage_window.h"
#include "model/disassembly_cache.h"
#include "model/report_collector.h"
#include "model/reporter.h"
#include "model/stale_views.h"

namespace coverage {

/// Everything that is counted: the coverage windows with their instances, and beside them the stores of the
/// command line. Figures change through the verbs below and nowhere else; each verb marks what then no longer
/// shows them (StaleViews, CoverageWindow::stale), and whoever shows them looks at the marks when the IDE's
/// call or the window's message is over. So nothing has to be told twice and nothing can be forgotten. UI
/// thread only, but for the reading operations of the command stores.
class CoverageModel {
 public:
  using WindowPtr = std::shared_ptr<CoverageWindow>;
  using InstancePtr = std::shared_ptr<CoverageInstance>;

  /// `host` is borrowed and may be null.
  explicit CoverageModel(qal::IQHost* host);
  CoverageModel(const CoverageModel&) = delete;
  CoverageModel& operator=(const CoverageModel&) = delete;

  CommandModel& Commands() { return commands_; }
  DisassemblyCache& Instructions() { return instructions_; }
  StoreIndex& Stores() { return *index_; }
  StaleViews& Stale() { return stale_; }

  // The windows, in the order in which they were opened.
  const std::vector<WindowPtr>& Windows() const { return windows_; }
  CoverageWindow* FirstRangeWindow() const;
  void Open(WindowPtr window);
  /// Takes the window out of the table and its instances out of the window. Their ranges leave the debugger
  /// with their panes.
  void Close(CoverageWindow& window);
  /// Whether a range window other than this one has exactly this range.
  bool RangeShownElsewhere(const CoverageWindow* window, std::uint32_t start, std::uint32_t end) const;

  // Instances of a window, open or about to be.
  InstancePtr NewInstance(std::uint32_t start, std::uint32_t end, std::string name, std::uint32_t shown);
  /// As the next number.
  void Add(CoverageWindow& window, InstancePtr instance);
  /// Its range leaves the debugger; higher numbers move down. When it was displayed, nothing is.
  void Remove(CoverageInstance& instance);
  /// All at once, disabled. Their ranges stay registered.
  void RemoveAll(CoverageWindow& window);
  void Renumber(CoverageWindow& window, const std::vector<InstancePtr>& order);
  /// Makes it the displayed one of its window; not one whose range is not registered.
  void Display(CoverageInstance& instance);
  /// When the displayed instance has no registered range: the first one that has, or none.
  void DisplayRegistered(CoverageWindow& window);

  // Figures of an instance.
  /// Registers the instance's range with the debugger; rangeSet tells whether that succeeded. `active` then
  /// follows enableStatus. A refused instance is disabled.
  void Register(CoverageInstance& instance, Reporter& reporter);
  /// The same without touching `active` of an accepted one.
  void ReRegister(CoverageInstance& instance, Reporter& reporter);
  void Withdraw(CoverageInstance& instance);
  /// Another range, not registered yet, with percentage 0.
  void SetRange(CoverageInstance& instance, std::uint32_t start, std::uint32_t end);
  /// The range and the state before a range that was refused; not registered yet.
  void PutBack(CoverageInstance& instance, std::uint32_t start, std::uint32_t end,
               std::uint32_t enableStatus);
  /// Takes an instance for another function.
  void Reuse(CoverageInstance& instance, std::uint32_t start, std::uint32_t end, std::string name,
             std::uint32_t shown);
  /// Nothing when it is to be enabled and its range is not registered.
  void Enable(CoverageInstance& instance, bool enabled);
  /// Counters and percentage.
  void Clear(CoverageInstance& instance);
  void Lock(CoverageInstance& instance, bool locked);
  void ComputePercentage(CoverageInstance& instance, bool force0 = false);
  /// As a file holds it; it stands until the next time that percentages are computed.
  void LoadPercentage(CoverageInstance& instance, std::uint32_t percentage);
  void AddRows(CoverageInstance& instance, std::span<const qal::CountPair> counts,
               std::span<const qal::CountPair> pass);

  // All windows.
  /// Takes the debugger's report into everything that is active; every instance then has modified 1 and saved
  /// 0. False when there is none. The lists show a percentage only when it is computed.
  bool TakeReport();
  void ComputePercentages();
  /// What the lists or the rows take from the IDE, and not from the model, may have changed.
  void MarkLists();
  void MarkRows();
  /// The marks in the editors are to be asked for anew.
  void MarkLineMarks() { stale_.marks = true; }

  /// Tells the debugger's coverage service whether any coverage is wanted.
  void UpdateCoverageSwitch();
  /// The command line is enabled; or, with command windows, the first store of one of them is active; or,
  /// without any, some instance is enabled.
  bool CoverageWanted() const;

 private:
  void MarkWanted(CoverageInstance& instance);
  void MarkListed(CoverageInstance& instance);
  void MarkRowsOf(CoverageInstance& instance, StaleRows level);
  void NumberAnew(CoverageWindow& window, std::vector<InstancePtr> order);

  qal::IQHost* host_;
  std::shared_ptr<StoreIndex> index_;
  StaleViews stale_;
  DisassemblyCache instructions_;
  ReportCollector collector_;
  CommandModel commands_;
  std::vector<WindowPtr> windows_;
};

}  // namespace coverage
