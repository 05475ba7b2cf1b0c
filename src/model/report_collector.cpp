#include "model/report_collector.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "model/command_model.h"
#include "model/services.h"
#include "qal/all.h"

namespace coverage {

namespace {

template <class Pair>
std::span<const Pair> Block(const Pair* pairs, std::uint32_t count) {
  return pairs != nullptr ? std::span(pairs, count) : std::span<const Pair>();
}

std::uint32_t TraceStart(qal::IQHost* host) {
  std::uint32_t address = 0;
  auto* service = FindService<qal::IQTraceStart>(host, qal::iid::kTraceStart);
  if (service == nullptr || qal::Failed(service->GetAddress(0, &address))) return 0;
  return address;
}

/// Tables by address, so that a pair of a report meets only those that hold it.
class TablesByAddress {
 public:
  explicit TablesByAddress(std::span<CoverageCounts* const> stores) {
    for (CoverageCounts* store : stores) {
      if (store->table().cellCount() != 0) tables_.push_back({store->table().start(), 0, &store->table()});
    }
    std::sort(tables_.begin(), tables_.end(), [](const auto& a, const auto& b) { return a.start < b.start; });
    std::uint32_t reach = 0;
    for (Entry& entry : tables_) entry.reach = reach = std::max(reach, entry.table->end());
  }

  void AddOne(std::uint32_t address, std::uint64_t count, std::uint32_t bits) const {
    auto entry =
        std::upper_bound(tables_.begin(), tables_.end(), address,
                         [](std::uint32_t wanted, const Entry& each) { return wanted < each.start; });
    while (entry != tables_.begin() && (--entry)->reach >= address)
      entry->table->AddOne(address, count, bits);
  }

 private:
  struct Entry {
    std::uint32_t start;
    std::uint32_t reach;  ///< last address of all tables up to this one
    CoverageCellTable* table;
  };
  std::vector<Entry> tables_;
};

}  // namespace

bool ReportCollector::Collect(const StoreIndex& index, CommandModel& commands) {
  // Services are asked before the lock is taken.
  std::uint32_t pathCount = 0;
  std::uint32_t countCount = 0;
  std::uint32_t passCount = 0;
  const qal::PathPair* path = nullptr;
  const qal::CountPair* counts = nullptr;
  const qal::CountPair* pass = nullptr;
  auto* paths = FindService<qal::IQPathCoverage>(host_, qal::iid::kPathCoverage);
  const bool hasPath = paths != nullptr && qal::Succeeded(paths->GetPath(&pathCount, &path));
  std::uint32_t from = 0;
  if (hasPath) {
    from = TraceStart(host_);
  } else {
    auto* counters = FindService<qal::IQCountCoverage>(host_, qal::iid::kCountCoverage);
    if (counters == nullptr || qal::Failed(counters->GetCounts(&countCount, &counts, &passCount, &pass))) {
      return false;
    }
  }

  std::vector<CoverageCounts*> stores;
  stores.reserve(index.stores().size());
  for (CoverageCounts* store : index.stores()) {
    if (store->active() == 1) stores.push_back(store);
  }
  const std::lock_guard lock(commands.mutex_);
  if (hasPath) {
    AddPath(from, Block(path, pathCount), stores);
  } else {
    const TablesByAddress tables(stores);
    for (const auto& [address, count] : Block(counts, countCount)) tables.AddOne(address, count, 0);
    for (const auto& [address, bits] : Block(pass, passCount)) tables.AddOne(address, 0, bits);
  }
  if (commands.readers_ > 0) commands.SettleStores();
  return true;
}

void ReportCollector::AddPath(std::uint32_t from, std::span<const qal::PathPair> pairs,
                              std::span<CoverageCounts* const> stores) {
  if (pairs.empty() || stores.empty()) return;
  if (stores.size() == 1) {
    stores.front()->table().AddPath(from, pairs);
    return;
  }
  std::vector<CoverageCellTable*> tables;
  tables.reserve(stores.size());
  for (CoverageCounts* store : stores) tables.push_back(&store->table());
  grid_.Choose(tables);
  grid_.AddPath(from, pairs);
}

}  // namespace coverage
