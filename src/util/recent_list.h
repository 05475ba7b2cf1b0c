#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace coverage {

/// Addresses used lately as they were written, newest first, each once however it was written; older ones
/// fall off at the end. UI thread only.
class RecentList {
 public:
  static constexpr std::size_t kMost = 10;

  /// Moves the address to the front, under this text.
  void Note(std::string text, std::uint64_t address) {
    const auto known = std::find(addresses_.begin(), addresses_.end(), address);
    if (known != addresses_.end()) {
      texts_.erase(texts_.begin() + (known - addresses_.begin()));
      addresses_.erase(known);
    }
    texts_.insert(texts_.begin(), std::move(text));
    addresses_.insert(addresses_.begin(), address);
    if (texts_.size() <= kMost) return;
    texts_.resize(kMost);
    addresses_.resize(kMost);
  }
  const std::vector<std::string>& texts() const { return texts_; }

 private:
  std::vector<std::string> texts_;
  std::vector<std::uint64_t> addresses_;  ///< of the texts
};

}  // namespace coverage
