#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace coverage {

/// Things under numbers, in ascending order and in one piece of memory: thousands are walked at every stop of
/// the target. Nothing is added or cleared while somebody walks them.
template <class Thing>
class Numbered {
 public:
  using Entry = std::pair<std::uint32_t, Thing>;

  /// The thing under the number; an empty one is put there when there is none.
  Thing& operator[](std::uint32_t number) {
    const auto at =
        std::lower_bound(entries_.begin(), entries_.end(), number,
                         [](const Entry& entry, std::uint32_t sought) { return entry.first < sought; });
    if (at != entries_.end() && at->first == number) return at->second;
    return entries_.emplace(at, number, Thing{})->second;
  }
  /// The thing under the number, or null.
  const Thing* Find(std::uint32_t number) const {
    const auto at =
        std::lower_bound(entries_.begin(), entries_.end(), number,
                         [](const Entry& entry, std::uint32_t sought) { return entry.first < sought; });
    return at != entries_.end() && at->first == number ? &at->second : nullptr;
  }
  void clear() { entries_.clear(); }

  bool empty() const { return entries_.empty(); }
  std::size_t size() const { return entries_.size(); }
  auto begin() const { return entries_.begin(); }
  auto end() const { return entries_.end(); }
  const Entry& back() const { return entries_.back(); }

 private:
  std::vector<Entry> entries_;
};

}  // namespace coverage
