#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "model/coverage_counts.h"
#include "model/disassembly_cache.h"
#include "model/instruction_plan.h"

namespace coverage {

/// One line of the statistics list: a snapshot of an instance.
struct FunctionStat {
  std::string name;
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  std::uint32_t percentage = 0;
  std::uint32_t shown = 0;
  std::uint32_t enableStatus = 0;
  std::uint32_t rangeSet = 0;
  std::uint32_t refreshLocked = 0;
  friend bool operator==(const FunctionStat&, const FunctionStat&) = default;
};

struct CoverageWindow;

/// One entry of a coverage window: an address range, or a function when it has a name. A plain record with
/// its counters. Others read it; it changes through the verbs of CoverageModel, which know what shows it. UI
/// thread only.
class CoverageInstance {
 public:
  CoverageInstance(qal::IQHost* host, std::shared_ptr<StoreIndex> index, std::uint32_t start,
                   std::uint32_t end, std::string functionName, std::uint32_t shown);
  CoverageInstance(const CoverageInstance&) = delete;
  CoverageInstance& operator=(const CoverageInstance&) = delete;

  std::uint32_t start;
  std::uint32_t end;
  std::uint32_t enableStatus = 1;
  std::uint32_t refreshLocked = 0;
  std::uint32_t modified = 1;
  std::uint32_t saved = 0;
  std::string functionName;
  std::unique_ptr<CoverageCounts> counts;  ///< never null
  std::uint32_t rangeSet = 0;
  std::uint32_t shown;
  std::uint32_t percentage = 0;
  std::uint32_t averageInstructionSize = 2;
  CoverageWindow* window = nullptr;  ///< that lists it; null before and after

  bool isFunction() const { return !functionName.empty(); }
  /// enableStatus and the counts' active together.
  void SetEnabled(std::uint32_t enabled);
  /// Fresh counters without a range, as a new instance has them.
  void RenewCounts();
  /// Whether data would go with it that nobody has saved: what questions about closing and clearing look for.
  bool HasDataAtStake() const { return modified != 0 && enableStatus != 0 && rangeSet != 0; }

  /// Percent of the instructions in the range that were executed, cut to a whole number; 0 when `force0`.
  /// Asks the target-information service, and the cache before it reads code.
  void ComputePercentage(bool force0, DisassemblyCache& cache);
  FunctionStat Snapshot() const;

 private:
  qal::IQHost* host_;
  std::shared_ptr<StoreIndex> index_;
  InstructionPlan plan_;
};

/// Whole percent of `executed` in `recorded`; 0 of nothing.
std::uint32_t PercentageOf(std::uint64_t executed, std::uint64_t recorded);

}  // namespace coverage
