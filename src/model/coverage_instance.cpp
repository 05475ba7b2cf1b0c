#include "model/coverage_instance.h"

#include <utility>

namespace coverage {

CoverageInstance::CoverageInstance(qal::IQHost* host, std::shared_ptr<StoreIndex> index, std::uint32_t first,
                                   std::uint32_t last, std::string name, std::uint32_t isShown)
    : start(first),
      end(last),
      functionName(std::move(name)),
      counts(std::make_unique<CoverageCounts>(host, index, StoreOwner::kInstance)),
      shown(isShown),
      host_(host),
      index_(std::move(index)) {}

void CoverageInstance::SetEnabled(std::uint32_t enabled) {
  enableStatus = enabled;
  counts->SetActive(enabled);
}

void CoverageInstance::RenewCounts() {
  counts = std::make_unique<CoverageCounts>(host_, index_, StoreOwner::kInstance);
}

void CoverageInstance::ComputePercentage(bool force0, DisassemblyCache& cache) {
  if (force0) {
    percentage = 0;
    return;
  }
  InstructionReader reader(host_);
  CoverageCellTable& table = counts->table();
  plan_.Update(start, end, reader.Alignment(), table, cache, reader);
  percentage = PercentageOf(plan_.Executed(table), plan_.recorded());
}

FunctionStat CoverageInstance::Snapshot() const {
  return {functionName, start, end, percentage, shown, enableStatus, rangeSet, refreshLocked};
}

std::uint32_t PercentageOf(std::uint64_t executed, std::uint64_t recorded) {
  return recorded == 0 ? 0 : static_cast<std::uint32_t>(executed * 100 / recorded);
}

}  // namespace coverage
