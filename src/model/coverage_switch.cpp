#include "model/coverage_switch.h"

#include <algorithm>

#include "model/services.h"
#include "qal/all.h"

namespace coverage {

bool CoverageWanted(const CommandModel& commands, std::span<CoverageInstance* const> instances) {
  if (commands.commandStoreActive() == 1) return true;
  if (commands.windowCount() == 0) {
    return std::any_of(instances.begin(), instances.end(),
                       [](const CoverageInstance* instance) { return instance->enableStatus == 1; });
  }
  for (std::uint32_t number = 1; number <= commands.windowCount(); ++number) {
    const CommandEntry* entry = commands.FirstEntry(number);
    if (entry != nullptr && entry->counts->active() == 1) return true;
  }
  return false;
}

void UpdateCoverageSwitch(qal::IQHost* host, bool wanted) {
  const std::int32_t value = wanted ? qal::kCollectionOn : qal::kCollectionOff;
  if (auto* path = FindService<qal::IQPathCoverage>(host, qal::iid::kPathCoverage)) {
    path->SetCollection(value);
  } else if (auto* count = FindService<qal::IQCountCoverage>(host, qal::iid::kCountCoverage)) {
    count->SetCollection(value);
  }
}

}  // namespace coverage
