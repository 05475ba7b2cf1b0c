#include "model/store_index.h"

#include <algorithm>

#include "model/coverage_counts.h"

namespace coverage {

void StoreIndex::Enter(CoverageCounts& store) {
  store.place_ = stores_.size();
  stores_.push_back(&store);
  built_ = false;
}

void StoreIndex::Leave(CoverageCounts& store) {
  stores_[store.place_] = stores_.back();
  stores_[store.place_]->place_ = store.place_;
  stores_.pop_back();
  for (auto& tree : byAddress_) tree.Clear();
  built_ = false;
}

void StoreIndex::Build() {
  std::vector<CoverageCounts*> ordered;
  ordered.reserve(stores_.size());
  for (CoverageCounts* store : stores_) {
    if (store->registered() && store->table().cellCount() != 0) ordered.push_back(store);
  }
  std::sort(ordered.begin(), ordered.end(),
            [](const CoverageCounts* a, const CoverageCounts* b) { return a->id() < b->id(); });
  for (auto& tree : byAddress_) tree.Clear();
  for (CoverageCounts* store : ordered) {
    byAddress_[static_cast<std::size_t>(store->owner())].Add(store->start(), store->end(), store);
  }
  for (auto& tree : byAddress_) tree.Build();
  built_ = true;
}

}  // namespace coverage
