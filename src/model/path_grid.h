#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "model/path_marks.h"
#include "qal/types.h"

namespace coverage {

class CoverageCellTable;

/// Marks of path reports for many tables at once: one slot for every cell of the union of their ranges, so
/// that a report is passed once however many tables take it. The tables take their slices when one of them is
/// read. Tables may overlap. UI thread only.
class PathGrid {
 public:
  PathGrid() = default;
  ~PathGrid();
  PathGrid(const PathGrid&) = delete;
  PathGrid& operator=(const PathGrid&) = delete;

  /// Chooses the tables that the next reports go to, each once. What is pending is settled first when the
  /// choice is another than before. A table that is laid out anew or destroyed ends the choice.
  void Choose(std::span<CoverageCellTable* const> tables);
  /// Exactly CoverageCellTable::AddPath on every chosen table.
  void AddPath(std::uint32_t from, std::span<const qal::PathPair> pairs);

  bool pending() const { return marks_.open(); }
  void Settle();
  std::size_t bytes() const;

 private:
  friend class CoverageCellTable;

  /// Where the slots of a 64-byte page begin; mask 0 for a page outside, whose addresses all stand for the
  /// first slot behind it.
  struct Page {
    std::uint32_t base = 0;
    std::uint32_t mask = 0;
  };
  /// Pages of 64 KiB of addresses; mask 0 when one page stands for all of them.
  struct Region {
    std::uint32_t firstPage = 0;
    std::uint32_t mask = 0;
  };

  const Page& PageOf(std::uint32_t address) const;
  void Build();
  /// Settles, and lets go of every table.
  void Release();
  void MarkOdd(std::uint32_t current, std::uint32_t branch);

  std::vector<CoverageCellTable*> chosen_;  ///< as given
  std::vector<CoverageCellTable*> shared_;  ///< those whose cells have slots
  std::vector<CoverageCellTable*> alone_;   ///< those that take reports by themselves
  bool evenEnds_ = false;                   ///< some shared table ends on an even address
  std::uint32_t firstRegion_ = 0;
  std::vector<Region> regions_;
  std::vector<Page> pages_;
  std::size_t slotCount_ = 0;
  PathMarks marks_;
};

}  // namespace coverage
