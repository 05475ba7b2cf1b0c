#include "model/coverage_window.h"

#include <algorithm>

namespace coverage {

CoverageInstance* CoverageWindow::Displayed() const {
  const auto found = std::find_if(instances.begin(), instances.end(),
                                  [](const auto& each) { return each.second->shown != 0; });
  return found == instances.end() ? nullptr : found->second.get();
}

std::shared_ptr<CoverageInstance> CoverageWindow::Instance(std::uint32_t number) const {
  const auto* found = instances.Find(number);
  return found == nullptr ? nullptr : *found;
}

std::uint32_t CoverageWindow::NumberOf(const CoverageInstance& instance) const {
  for (const auto& [number, each] : instances) {
    if (each.get() == &instance) return number;
  }
  return 0;
}

void CoverageWindow::TakeStats() {
  stats.assign(instances.empty() ? 0 : instances.back().first, {});
  for (const auto& [number, instance] : instances) {
    if (number != 0 && instance != nullptr) stats[number - 1] = instance->Snapshot();
  }
}

}  // namespace coverage
