#include "model/coverage_window.h"

namespace coverage {

void CoverageWindow::TakeStats() {
  stats.assign(instances.empty() ? 0 : instances.back().first, {});
  for (const auto& [number, instance] : instances) {
    if (number != 0 && instance != nullptr) stats[number - 1] = instance->Snapshot();
  }
}

}  // namespace coverage
