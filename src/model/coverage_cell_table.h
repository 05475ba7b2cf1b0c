#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "model/coverage_cell.h"
#include "model/path_marks.h"
#include "qal/types.h"

namespace coverage {

class PathGrid;

/// Counters of one address range, one cell per 2-byte step: a dense table, kept as arrays of counts and of
/// bits (8.5 bytes a cell; 4 more while a path report waits to be counted). Path reports are marked when they
/// come and counted when somebody reads; nobody can see the difference. UI thread only, but for
/// SettledCellAt.
class CoverageCellTable {
 public:
  CoverageCellTable() = default;
  ~CoverageCellTable();
  CoverageCellTable(const CoverageCellTable&) = delete;
  CoverageCellTable& operator=(const CoverageCellTable&) = delete;

  std::uint32_t start() const { return start_; }
  /// Last address, inclusive.
  std::uint32_t end() const { return end_; }
  static constexpr std::uint32_t step() { return kCellStep; }
  /// 0 until a range is laid out.
  std::size_t cellCount() const { return times_.size(); }

  /// Cell that counts `address`, or -1 outside [start, end]. An odd address counts in the even one below.
  std::int64_t IndexOf(std::uint32_t address) const;
  /// None outside the range.
  std::optional<CoverageCell> CellAt(std::uint32_t address);
  /// The same without taking in what is pending: for a second thread, under the owner's lock.
  std::optional<CoverageCell> SettledCellAt(std::uint32_t address) const;

  /// Takes a range, swapped when it comes in the other order, with every cell zero. Throws std::bad_alloc and
  /// is then without cells.
  void Layout(std::uint32_t start, std::uint32_t end);
  /// Back to no cells.
  void Reset();
  /// Zeroes every cell; the range stays.
  void ClearAll();

  /// Adds to `times`; pairs outside the range are skipped.
  void AddCounts(std::span<const qal::CountPair> records);
  /// Ors the second value, cut to two bits, into `pass`.
  void OrPass(std::span<const qal::CountPair> records);
  /// Both for one address.
  void AddOne(std::uint32_t address, std::uint64_t count, std::uint32_t bits);
  /// Walks the report: from `from` to the first branch, from its target to the second, and so on, in steps of
  /// 2. Every cell passed counts one; the branch's own cell gets pass bit 1. A walk that begins above its
  /// branch counts nothing; the address space ends at 0xFFFFFFFE.
  void AddPath(std::uint32_t from, std::span<const qal::PathPair> pairs);

  /// Whether marks wait to be counted; Settle counts them.
  bool pending() const;
  void Settle();

  /// One bit a cell, 64 a word, lowest first: cells with `times` above 0. Settles.
  std::span<const std::uint64_t> ExecutedBits();
  /// Bytes that the cells and pending marks of this table hold.
  std::size_t bytes() const;

 private:
  friend class PathGrid;

  void MarkClipped(std::uint32_t current, std::uint32_t branch);
  void TakeBlock(std::size_t block, const std::uint32_t* slots);
  void SettleOwnMarks();
  /// Counts one run at once, for the rare ones that a shared grid cannot hold.
  void CountRun(std::uint32_t current, std::uint32_t branch);

  std::uint32_t start_ = 0;
  std::uint32_t end_ = 0;
  std::vector<std::uint64_t> times_;
  std::vector<std::uint64_t> taken_;     ///< pass bit 1, a bit a cell
  std::vector<std::uint64_t> fallen_;    ///< pass bit 2
  std::vector<std::uint64_t> executed_;  ///< times above 0
  PathMarks marks_;
  PathGrid* grid_ = nullptr;  ///< marks shared with other tables; borrowed
};

}  // namespace coverage
