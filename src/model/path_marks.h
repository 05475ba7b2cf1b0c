#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Executed runs that were reported but not counted yet. A run adds one where it begins and takes one away
/// behind its end, however long it is, and sets a flag at its branch; the counts are the running sums, made
/// when somebody reads. One 32-bit slot a cell: the difference in the upper 31 bits, the flag in the lowest.
/// UI thread only.
namespace coverage {

class PathMarks {
 public:
  static constexpr std::size_t kBlock = 64;
  /// Runs that may be marked between two integrations: no sum of so many leaves its 31 bits.
  static constexpr std::uint32_t kMaxRuns = (1u << 30) - 1;

  /// Begins to hold marks for cells 0 to `cells` - 1. Throws std::bad_alloc.
  void Open(std::size_t cells);
  void Close();
  bool open() const { return !slots_.empty(); }
  std::size_t bytes() const { return slots_.capacity() * sizeof(std::uint32_t); }

  /// Room for runs before the marks must be integrated.
  std::uint32_t room() const { return kMaxRuns - runs_; }
  /// Slots, for whoever marks in a tight loop and accounts for the runs with Took.
  std::uint32_t* slots() { return slots_.data(); }
  void Took(std::uint32_t runs) { runs_ += runs; }

  /// Marks cells `first` to `behind` - 1 once; both at most `cells`.
  void MarkRun(std::size_t first, std::size_t behind) {
    slots_[first] += 2;
    slots_[behind] -= 2;
  }
  void MarkBranch(std::size_t cell) { slots_[cell] |= 1; }

  /// Turns the marks of the slots in place into counts: the count in the upper 31 bits, the flag below.
  /// `running` carries the sum from block to block. False, and nothing written, when the block is idle.
  static bool IntegrateBlock(std::uint32_t* slots, std::size_t count, std::uint32_t& running);

 private:
  std::vector<std::uint32_t> slots_;  ///< cells + 1, or none
  std::uint32_t runs_ = 0;
};

}  // namespace coverage
