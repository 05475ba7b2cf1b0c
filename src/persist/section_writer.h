// Which rows a section of a ".COV" file has, and the writing of whole sections. UI thread only.
#pragma once

#include <cstdint>

#include "model/coverage_instance.h"
#include "model/disassembly_cache.h"
#include "persist/cov_output.h"

namespace coverage {

/// Follows a range in 2-byte steps beside the addresses of its recorded instructions: rows are written as
/// long as the steps meet the instructions.
class RowStepper {
 public:
  RowStepper(std::uint32_t alignedStart, std::uint32_t end) : step_(alignedStart), end_(end) {}

  /// Whether the steps meet `address` before the end; once they did not, no further address is to be asked.
  bool Meet(std::uint32_t address);

 private:
  std::uint64_t step_;
  std::uint64_t end_;
  bool first_ = true;
};

/// Counts over the recorded instructions of a range.
struct RecordedCounts {
  std::uint64_t recorded = 0;
  std::uint64_t executed = 0;
  std::uint32_t percentage() const { return PercentageOf(executed, recorded); }
};
RecordedCounts CountRecorded(CoverageCounts& counts, std::uint32_t start, std::uint32_t end,
                             qal::IQHost* host, DisassemblyCache& cache);

/// Writes the row lines of a range.
void WriteRows(CovOutput& out, CoverageCounts& counts, std::uint32_t start, std::uint32_t end,
               qal::IQHost* host, DisassemblyCache& cache);

/// Writes the whole section of a window's instance, as its `number`-th.
void WriteInstanceSection(CovOutput& out, const CoverageInstance& instance, std::uint32_t number,
                          qal::IQHost* host, DisassemblyCache& cache);

}  // namespace coverage
