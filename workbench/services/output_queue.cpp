#include "workbench/services/output_queue.h"

namespace workbench {

void OutputQueue::Write(std::string line) {
  std::unique_lock lock(mutex_);
  if (std::this_thread::get_id() != reader_) {
    changed_.wait(lock, [this] { return abandoned_ || lines_.size() < kPendingLines; });
  }
  if (abandoned_ || ended_) return;
  lines_.push_back(std::move(line));
  changed_.notify_all();
}

void OutputQueue::End() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
  changed_.notify_all();
}

void OutputQueue::Abandon() {
  const std::lock_guard lock(mutex_);
  abandoned_ = true;
  lines_.clear();
  changed_.notify_all();
}

OutputQueue::Result OutputQueue::Read(std::string& line, std::chrono::milliseconds patience) {
  std::unique_lock lock(mutex_);
  if (!changed_.wait_for(lock, patience, [this] { return ended_ || !lines_.empty(); }))
    return Result::kTimeout;
  if (lines_.empty()) return Result::kEnd;
  line = std::move(lines_.front());
  lines_.pop_front();
  if (lines_.size() + 1 == kPendingLines) changed_.notify_all();
  return Result::kLine;
}

bool OutputQueue::TryRead(std::string& line) {
  const std::lock_guard lock(mutex_);
  if (lines_.empty()) return false;
  line = std::move(lines_.front());
  lines_.pop_front();
  changed_.notify_all();
  return true;
}

bool OutputQueue::Ended() const {
  const std::lock_guard lock(mutex_);
  return ended_ && lines_.empty();
}

}  // namespace workbench
