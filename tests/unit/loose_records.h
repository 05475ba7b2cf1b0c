#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "commands/message_reporter.h"
#include "model/coverage_instance.h"

namespace coverage {

/// Records that belong to no model: each with an index of its own. Refusals are shown in message boxes.
struct LooseCounts final : CoverageCounts {
  explicit LooseCounts(qal::IQHost* hostObject)
      : CoverageCounts(hostObject, std::make_shared<StoreIndex>(), StoreOwner::kInstance) {}
  std::uint32_t SetRange(std::uint32_t first, std::uint32_t last) {
    MessageReporter reporter(host());
    return CoverageCounts::SetRange(first, last, reporter);
  }
};

struct LooseInstance : CoverageInstance {
  LooseInstance(qal::IQHost* host, std::uint32_t first, std::uint32_t last, std::string name,
                std::uint32_t isShown, std::shared_ptr<StoreIndex> index = std::make_shared<StoreIndex>())
      : CoverageInstance(host, std::move(index), first, last, std::move(name), isShown) {}
  /// Registers a range, and whatever becomes of it.
  std::uint32_t Register(std::uint32_t first, std::uint32_t last) {
    MessageReporter reporter(counts->host());
    return rangeSet = counts->SetRange(first, last, reporter);
  }
};

}  // namespace coverage
