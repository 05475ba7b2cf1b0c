#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "model/coverage_cell_table.h"
#include "model/disassembly_cache.h"
#include "model/instruction_walk.h"

namespace coverage {

/// Which cells of a range begin an instruction, as one bit a cell: made by one walk, good until the code
/// changes, so that a percentage is a count of bits. UI thread only.
class InstructionPlan {
 public:
  /// Makes the plan anew when the code, the range, the alignment or the table differ from those it was made
  /// for. Drops the cache, too, when an address that gave no instruction then gives one now.
  void Update(std::uint32_t start, std::uint32_t end, std::optional<InstructionAlignment> alignment,
              const CoverageCellTable& table, DisassemblyCache& cache, InstructionSource& source);

  /// Instructions recorded, and those of them whose cell was executed.
  std::uint64_t recorded() const { return recorded_; }
  std::uint64_t Executed(CoverageCellTable& table) const;

  std::size_t bytes() const;

 private:
  struct Key {
    std::uint64_t generation = 0;
    std::uint32_t start = 0;
    std::uint32_t end = 0;
    std::uint32_t tableStart = 0;
    std::uint32_t tableEnd = 0;
    std::size_t cells = 0;
    std::optional<InstructionAlignment> alignment;
    friend bool operator==(const Key&, const Key&) = default;
  };

  /// Failed addresses that are tried again before the plan is used again.
  static constexpr std::size_t kMaxFailed = 256;

  bool FailedStill(InstructionSource& source) const;
  void Record(std::uint32_t address, const CoverageCellTable& table);

  Key key_;
  std::vector<std::uint64_t> starts_;   ///< a bit a cell
  std::vector<std::uint32_t> further_;  ///< cells that were recorded once more
  std::vector<std::uint32_t> failed_;
  std::uint64_t recorded_ = 0;
};

}  // namespace coverage
