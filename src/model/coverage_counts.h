#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>

#include "model/coverage_cell_table.h"
#include "model/reporter.h"
#include "model/store_index.h"
#include "qal/types.h"

namespace qal {
struct IQHost;
}  // namespace qal

namespace coverage {

/// The store of one range: its counters and its registration with the debugger's coverage service. UI thread
/// only. A store that a second thread reads is given a lock, which it holds while its counters or its range
/// change, and never while it calls a service.
class CoverageCounts {
 public:
  /// `host` is borrowed and may be null; `guard`, when given, must outlive the store, which enters `index`.
  CoverageCounts(qal::IQHost* host, std::shared_ptr<StoreIndex> index, StoreOwner owner,
                 std::mutex* guard = nullptr);
  ~CoverageCounts();
  CoverageCounts(const CoverageCounts&) = delete;
  CoverageCounts& operator=(const CoverageCounts&) = delete;

  /// Registered range; both 0 when there is none.
  std::uint32_t start() const { return start_; }
  std::uint32_t end() const { return end_; }
  bool registered() const { return start_ != 0 || end_ != 0; }
  qal::IQHost* host() const { return host_; }
  /// Never the same number twice in a process; ascending.
  std::uint64_t id() const { return id_; }
  StoreOwner owner() const { return owner_; }

  /// 1: reports are added; any other value: they are ignored.
  std::uint32_t active() const { return active_; }
  void SetActive(std::uint32_t active);

  CoverageCellTable& table() { return table_; }
  const CoverageCellTable& table() const { return table_; }

  /// Registers the range (in either order) in place of the one before and lays the table out. 1 on success.
  /// From 0 to 0 is no range: the old one is withdrawn, nothing is registered. 0, with nothing changed, when
  /// there is no coverage service or the range is too large to hold; 0 after telling the reporter when the
  /// debugger refuses: the store is then back on its old range, zeroed, or on none.
  std::uint32_t SetRange(std::uint32_t start, std::uint32_t end, Reporter& reporter);
  /// Withdraws the registered range from the debugger. The counters stay.
  void RemoveRange();

  /// Reports of the debugger; ignored unless active is 1.
  void AddCountReport(std::span<const qal::CountPair> counts, std::span<const qal::CountPair> pass);
  void AddPathReport(std::uint32_t from, std::span<const qal::PathPair> pairs);

  /// Adds loaded rows, whatever `active` is. Pass pairs are cut to two bits.
  void AddRows(std::span<const qal::CountPair> counts, std::span<const qal::CountPair> pass);
  void AddOne(std::uint32_t address, std::uint64_t count, std::uint32_t bits);

  void Clear();
  std::optional<CoverageCell> Lookup(std::uint32_t address) { return table_.CellAt(address); }

 private:
  friend class StoreIndex;

  std::unique_lock<std::mutex> Hold() const;
  void TakeRange(std::uint32_t start, std::uint32_t end);

  qal::IQHost* host_;
  std::shared_ptr<StoreIndex> index_;
  StoreOwner owner_;
  std::size_t place_ = 0;  ///< in the index
  std::mutex* guard_;
  std::uint64_t id_;
  std::uint32_t start_ = 0;
  std::uint32_t end_ = 0;
  std::uint32_t active_ = 1;
  bool returns_ = false;  ///< the old range comes back when the person was told that the new one was refused
  CoverageCellTable table_;
};

/// Text of a failure status as the debugger words it; none when the service is missing or fails.
std::optional<std::string> DebuggerErrorText(qal::IQHost* host, qal::Status status);

}  // namespace coverage
