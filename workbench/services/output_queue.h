#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace workbench {

/// Lines of one running command on their way from whatever thread writes them to the console. Any thread.
///
/// Memory is bounded: a writer on another thread waits while many lines are pending. The thread that made the
/// queue is the one that empties it and never waits.
class OutputQueue {
 public:
  static constexpr std::size_t kPendingLines = 4096;

  OutputQueue() : reader_(std::this_thread::get_id()) {}

  void Write(std::string line);
  /// No line follows.
  void End();
  /// Nobody reads any more: lines are dropped, and writers that wait go on.
  void Abandon();

  enum class Result { kLine, kEnd, kTimeout };
  /// The next line, waiting at most this long.
  Result Read(std::string& line, std::chrono::milliseconds patience);
  /// The next line when there is one at once.
  bool TryRead(std::string& line);
  bool Ended() const;

 private:
  const std::thread::id reader_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::string> lines_;
  bool ended_ = false;
  bool abandoned_ = false;
};

}  // namespace workbench
