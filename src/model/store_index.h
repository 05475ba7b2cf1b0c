#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "util/range_index.h"

namespace coverage {

class CoverageCounts;

/// Whose counters a store holds, in the order in which editor marks ask for them.
enum class StoreOwner : std::uint8_t { kInstance, kCurrentRange, kCommandWindow };
inline constexpr std::size_t kStoreOwners = 3;

/// Every store that there is: each enters when it is made and leaves when it goes. UI thread only.
class StoreIndex {
 public:
  void Enter(CoverageCounts& store);
  void Leave(CoverageCounts& store);
  /// A store has got another range, or lost it.
  void RangeChanged() { built_ = false; }

  /// In no particular order.
  const std::vector<CoverageCounts*>& stores() const { return stores_; }

  /// Calls visit(CoverageCounts&) for every store of this owner whose registered range holds the address, in
  /// the order in which they were made; looks at no other store.
  template <class Visit>
  void VisitHolding(StoreOwner owner, std::uint32_t address, Visit visit) {
    if (!built_) Build();
    byAddress_[static_cast<std::size_t>(owner)].VisitHolding(address,
                                                             [&](CoverageCounts* store) { visit(*store); });
  }

 private:
  void Build();

  std::vector<CoverageCounts*> stores_;
  std::array<RangeIndex<CoverageCounts*>, kStoreOwners> byAddress_;
  bool built_ = false;
};

}  // namespace coverage
