#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "qal/types.h"

namespace doubles {

/// What was asked of the doubles that share it, one line a call: "path.AddRange(0x1000, 0x1fff)". Any thread.
class CallLog {
 public:
  /// Appends the call. Gives `answer`, or kFail when this is the call that was told to fail.
  qal::Status Add(std::string line, qal::Status answer = qal::kOk) {
    const std::lock_guard lock(mutex_);
    answer = Judge(line, answer);
    lines_.push_back(std::move(line));
    return answer;
  }
  /// The same for calls of which there are too many to write down.
  qal::Status Pass(std::string_view name, qal::Status answer = qal::kOk) {
    const std::lock_guard lock(mutex_);
    return Judge(name, answer);
  }

  /// The `n`-th call from now on fails (1 is the next one); with a prefix, the n-th among those that begin
  /// with it.
  void FailCall(int n, std::string prefix = {}) {
    const std::lock_guard lock(mutex_);
    failAfter_ = n;
    failPrefix_ = std::move(prefix);
  }

  /// The calls that begin with `prefix`, each with a line feed.
  std::string Text(std::string_view prefix = {}) const {
    const std::lock_guard lock(mutex_);
    std::string text;
    for (const auto& line : lines_) {
      if (line.starts_with(prefix)) text += line + '\n';
    }
    return text;
  }

  /// The same, and forgets every call.
  std::string Take(std::string_view prefix = {}) {
    std::string text = Text(prefix);
    Clear();
    return text;
  }

  int Count(std::string_view prefix = {}) const {
    const std::lock_guard lock(mutex_);
    int count = 0;
    for (const auto& line : lines_) count += line.starts_with(prefix);
    return count;
  }

  void Clear() {
    const std::lock_guard lock(mutex_);
    lines_.clear();
  }

  /// Every call so far, by service: what stands before the dot. Clear leaves them.
  const std::map<std::string, int, std::less<>>& Calls() const { return calls_; }

 private:
  qal::Status Judge(std::string_view line, qal::Status answer) {
    const std::string_view service = line.substr(0, line.find('.'));
    const auto known = calls_.find(service);
    ++(known != calls_.end() ? known : calls_.emplace(service, 0).first)->second;
    return failAfter_ > 0 && line.starts_with(failPrefix_) && --failAfter_ == 0 ? qal::kFail : answer;
  }

  mutable std::mutex mutex_;
  std::map<std::string, int, std::less<>> calls_;
  std::vector<std::string> lines_;
  std::string failPrefix_;
  int failAfter_ = 0;
};

}  // namespace doubles
