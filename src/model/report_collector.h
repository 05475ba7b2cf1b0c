#pragma once

#include <span>

#include "model/coverage_counts.h"
#include "model/path_grid.h"

namespace qal {
struct IQHost;
}  // namespace qal

namespace coverage {

class CommandModel;

/// Takes the debugger's report, once, into every store that is active. UI thread only. It may end before or
/// after the stores it served.
class ReportCollector {
 public:
  explicit ReportCollector(qal::IQHost* host) : host_(host) {}

  /// Asks the path-coverage service, then the count-coverage service; the first that answers counts. False,
  /// and nothing changed, when neither answers. The command stores' lock is held while counters change, and
  /// they are settled at once while a second thread reads them.
  bool Collect(const StoreIndex& index, CommandModel& commands);

 private:
  void AddPath(std::uint32_t from, std::span<const qal::PathPair> pairs,
               std::span<CoverageCounts* const> stores);

  qal::IQHost* host_;
  PathGrid grid_;
};

}  // namespace coverage
