#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace coverage {

/// Texts used lately, newest first, each once; older ones fall off at the end. UI thread only.
class RecentList {
 public:
  static constexpr std::size_t kMost = 10;

  /// Moves the text to the front.
  void Note(const std::string& text) {
    std::erase(texts_, text);
    texts_.insert(texts_.begin(), text);
    if (texts_.size() > kMost) texts_.resize(kMost);
  }
  const std::vector<std::string>& texts() const { return texts_; }

 private:
  std::vector<std::string> texts_;
};

}  // namespace coverage
