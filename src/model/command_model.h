#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/coverage_counts.h"
#include "model/file_functions.h"
#include "model/stale_views.h"

namespace coverage {

/// A store that a command opened and the function it counts; the name is empty for a range.
struct CommandEntry {
  std::unique_ptr<CoverageCounts> counts;
  std::string functionName;
};

/// What a reading thread may know of a store.
struct StoreDescription {
  std::uint64_t id = 0;
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  std::uint32_t active = 0;
  std::string functionName;
};

/// The coverage that commands and the automation interface work on: one current range, and the numbered
/// windows that commands opened. Everything is for the UI thread but the operations under "Any thread". The
/// UI thread locks while it changes structure or counters, never while it calls a service; so a reader sees
/// whole rows.
class CommandModel {
 public:
  /// `host` is borrowed and may be null; `stale` outlives the object, whose stores enter `index`.
  CommandModel(qal::IQHost* host, std::shared_ptr<StoreIndex> index, StaleViews& stale);
  CommandModel(const CommandModel&) = delete;
  CommandModel& operator=(const CommandModel&) = delete;
  /// Withdraws all ranges from the debugger and forgets the windows: what the owner does while its host is
  /// still there. No Reader may be left.
  void Withdraw();

  // The current range.
  CoverageCounts& commandStore() { return *store_; }
  const CoverageCounts& commandStore() const { return *store_; }
  std::uint32_t commandStoreActive() const { return storeActive_; }
  /// commandStoreActive and the store's `active` together.
  void SetStoreEnabled(bool enabled);
  /// Only a store's own state, as a loaded section sets it.
  void SetActive(CoverageCounts& store, std::uint32_t active);
  std::uint32_t SetStoreRange(std::uint32_t start, std::uint32_t end, Reporter& reporter);
  void ClearStore();
  /// Rows that a file holds for one of the stores.
  void AddRows(CoverageCounts& store, std::span<const qal::CountPair> counts,
               std::span<const qal::CountPair> pass);

  // The windows. Numbers are dense from 1 to windowCount().
  std::uint32_t windowCount() const { return static_cast<std::uint32_t>(windows_.size()); }
  /// First entry of a window, the one that commands use; null when there is none.
  const CommandEntry* FirstEntry(std::uint32_t number) const;
  /// Number of the first window whose first entry has exactly this function name (case counts); 0 for none.
  std::uint32_t WindowOfFunction(std::string_view functionName) const;
  /// Number of the first window with this range and name, all three equal; 0 for none.
  std::uint32_t WindowOf(std::uint32_t start, std::uint32_t end, std::string_view functionName) const;
  /// Whether the first entry of some window is active.
  bool AnyWindowActive() const;
  void SetWindowEnabled(std::uint32_t number, bool enabled);
  void SetAllWindowsEnabled(bool enabled);
  void ClearWindow(std::uint32_t number);
  void ClearAllWindows();
  /// Clears the store and every window.
  void ClearAll();
  /// Withdraws every window's range from the debugger and removes the windows.
  void RemoveAllWindows();

  struct Added {
    std::uint32_t number = 0;
    CoverageCounts* counts = nullptr;
    bool registered = false;
  };
  /// Opens the next window over a range. A refused range still gets its window.
  Added AddWindow(std::uint32_t start, std::uint32_t end, std::string functionName, Reporter& reporter);
  /// The same without a range: for one that is too long to be registered.
  Added AddWindow(std::string functionName);

  /// Replaces the windows by one for each function of the source file. On success the current range's
  /// counters are cleared, it is made inactive and filePath becomes `sourceFile`. False when no window could
  /// be opened.
  bool OpenFile(const std::string& sourceFile, Reporter& reporter);

  /// Source file of the windows; empty when they do not come from one.
  const std::string& filePath() const { return filePath_; }

  /// The store and every store of every window.
  std::vector<CoverageCounts*> Stores() const;

  /// A second thread's right to read. Made on the UI thread before the thread starts: counts what is pending,
  /// and from then on reports are counted when they come. Ends anywhere.
  class Reader {
   public:
    explicit Reader(CommandModel& model);
    ~Reader();
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

   private:
    CommandModel& model_;
  };

  // Any thread, while a Reader exists.
  enum class CellRead { kGone, kNoCell, kCell };
  std::uint32_t CountWindows() const;
  StoreDescription DescribeStore() const;
  /// None for a number without a window.
  std::optional<StoreDescription> DescribeWindow(std::uint32_t number) const;
  /// One cell of the store with this id; kGone once the store was removed.
  CellRead ReadCell(std::uint64_t id, std::uint32_t address, CoverageCell& out) const;

 private:
  friend class ReportCollector;

  void SettleStores();
  Added Enter(std::unique_ptr<CoverageCounts> counts, std::string functionName);
  /// What is wanted, and what marks show, is another than before.
  void MarkWanted();

  qal::IQHost* host_;
  std::shared_ptr<StoreIndex> index_;
  StaleViews& stale_;
  mutable std::mutex mutex_;
  std::unique_ptr<CoverageCounts> store_;
  std::uint32_t storeActive_ = 1;
  std::map<std::uint32_t, std::vector<CommandEntry>> windows_;
  std::unordered_map<std::uint64_t, CoverageCounts*> byId_;
  std::string filePath_;
  int readers_ = 0;
};

}  // namespace coverage
