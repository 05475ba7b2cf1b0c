#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace coverage {

/// Finds the ranges that hold an address without looking at those that do not: ranges sorted by start, with
/// the highest end of every subtree beside them. Built once, then read; UI thread only.
template <typename Payload>
class RangeIndex {
 public:
  /// Both addresses are inside the range; start <= end. Ranges are visited later in the order of these calls.
  void Add(std::uint32_t start, std::uint32_t end, Payload payload) {
    entries_.push_back({start, end, end, entries_.size(), payload});
  }

  /// Call after the last Add and before the first visit.
  void Build() {
    std::sort(entries_.begin(), entries_.end(),
              [](const Entry& a, const Entry& b) { return a.start < b.start; });
    Fold(0, entries_.size());
  }

  void Clear() { entries_.clear(); }
  bool empty() const { return entries_.empty(); }

  /// Calls visit(payload) for every range with start <= address <= end, in the order in which they were
  /// added.
  template <typename Visit>
  void VisitHolding(std::uint32_t address, Visit visit) const {
    std::vector<const Entry*> hits;
    Collect(0, entries_.size(), address, hits);
    std::sort(hits.begin(), hits.end(), [](const Entry* a, const Entry* b) { return a->order < b->order; });
    for (const Entry* hit : hits) visit(hit->payload);
  }

 private:
  struct Entry {
    std::uint32_t start;
    std::uint32_t end;
    std::uint32_t highestEnd;  // of the subtree whose middle this entry is
    std::size_t order;
    Payload payload;
  };

  std::uint32_t Fold(std::size_t first, std::size_t last) {
    if (first >= last) return 0;
    const std::size_t middle = first + (last - first) / 2;
    Entry& entry = entries_[middle];
    entry.highestEnd = std::max({entry.end, Fold(first, middle), Fold(middle + 1, last)});
    return entry.highestEnd;
  }

  void Collect(std::size_t first, std::size_t last, std::uint32_t address,
               std::vector<const Entry*>& hits) const {
    if (first >= last) return;
    const std::size_t middle = first + (last - first) / 2;
    const Entry& entry = entries_[middle];
    if (entry.highestEnd < address) return;
    Collect(first, middle, address, hits);
    if (address < entry.start) return;
    if (address <= entry.end) hits.push_back(&entry);
    Collect(middle + 1, last, address, hits);
  }

  std::vector<Entry> entries_;
};

}  // namespace coverage
