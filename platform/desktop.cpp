#include "platform/desktop.h"

#include <algorithm>
#include <cassert>

#include "platform/clock.h"

namespace platform {

namespace {

constexpr std::size_t kMostPosted = 10000;
constexpr std::chrono::milliseconds kShortestPeriod{10};

}  // namespace

Desktop& Desktop::Get() {
  // Never destroyed: windows of static life outlive whatever was made later than they.
  static Desktop* const desktop = new Desktop;
  return *desktop;
}

bool Desktop::OnOwnThread(bool adopt) {
  const std::thread::id me = std::this_thread::get_id();
  std::thread::id owner = owner_.load();
  if (owner == std::thread::id()) {
    if (!adopt) return false;
    if (owner_.compare_exchange_strong(owner, me)) return true;
  }
  assert(owner == me && "windows belong to one thread");
  return owner == me;
}

void Desktop::FreeThreadWhenEmpty() {
  if (depth_ == 0 && windows_.empty() && pending_.empty()) owner_.store(std::thread::id());
}

WindowHandle Desktop::Register(Window& window) {
  lastHandle_ += 4;
  windows_[lastHandle_] = &window;
  topLevel_.push_back(lastHandle_);
  return lastHandle_;
}

void Desktop::Forget(WindowHandle handle) {
  windows_.erase(handle);
  std::erase(topLevel_, handle);
  std::erase_if(timers_, [&](const Timer& timer) { return timer.handle == handle; });
  std::erase_if(posted_, [&](const Posted& posted) { return posted.handle == handle; });
  FreeThreadWhenEmpty();
}

Window* Desktop::Find(WindowHandle handle) {
  if (handle == 0 || !OnOwnThread()) return nullptr;
  const auto found = windows_.find(handle);
  return found == windows_.end() ? nullptr : found->second;
}

std::vector<Window*> Desktop::TopLevel() const {
  std::vector<Window*> found;
  for (const WindowHandle handle : topLevel_) {
    Window* window = windows_.at(handle);
    if (!window->Parent()) found.push_back(window);
  }
  return found;
}

LResult Desktop::Deliver(Window& window, const Message& message) {
  if (!OnOwnThread()) return 0;
  const Busy busy;
  return window.OnMessage(message);
}

bool Desktop::Post(WindowHandle handle, const Message& message) {
  if (!Find(handle) || posted_.size() >= kMostPosted) return false;
  posted_.push_back({handle, message});
  Wake();
  return true;
}

std::chrono::milliseconds Desktop::Now() {
  const Clock& clock = CurrentClock();
  const auto now = clock.Now();
  if (clock_ == &clock && now > clockThen_) time_ += now - clockThen_;
  clock_ = &clock;
  clockThen_ = now;
  return time_;
}

std::uint32_t Desktop::SetTimer(WindowHandle handle, std::uint32_t id, std::chrono::milliseconds period) {
  if (id == 0 || !Find(handle)) return 0;
  KillTimer(handle, id);
  period = std::max(period, kShortestPeriod);
  timers_.push_back({handle, id, period, Now() + period});
  Wake();
  return id;
}

bool Desktop::KillTimer(WindowHandle handle, std::uint32_t id) {
  return std::erase_if(timers_,
                       [&](const Timer& timer) { return timer.handle == handle && timer.id == id; }) != 0;
}

Desktop::Timer* Desktop::FirstDue(std::chrono::milliseconds latest) {
  Timer* first = nullptr;
  for (Timer& timer : timers_) {
    if (timer.due <= latest && (!first || timer.due < first->due)) first = &timer;
  }
  return first;
}

std::size_t Desktop::Pump() {
  if (!OnOwnThread()) return 0;
  const Busy busy;
  // Only what is due already: a handler slower than its timer must not hold the pump for ever.
  const auto until = Now();
  std::size_t handled = 0;
  while (true) {
    if (!posted_.empty()) {
      const Posted next = posted_.front();
      posted_.pop_front();
      if (Window* window = Find(next.handle)) {
        ++handled;
        Deliver(*window, next.message);
      }
    } else if (Timer* timer = FirstDue(until)) {
      timer->due = std::max(timer->due, until) + timer->period;
      ++handled;
      const std::uint32_t id = timer->id;
      Deliver(*windows_.at(timer->handle), {message::kTimer, id, 0});
    } else {
      return handled;
    }
  }
}

std::size_t Desktop::PassTime(std::chrono::milliseconds by) {
  if (!OnOwnThread()) return 0;
  const Busy busy;
  std::size_t handled = Pump();
  const auto until = Now() + by;
  while (const Timer* timer = FirstDue(until)) {
    time_ = std::max(time_, timer->due);
    handled += Pump();
  }
  time_ = std::max(time_, until);
  return handled;
}

std::optional<std::chrono::milliseconds> Desktop::TimeToNext() {
  if (!OnOwnThread()) return std::nullopt;
  if (!posted_.empty()) return std::chrono::milliseconds(0);
  const Timer* next = FirstDue(std::chrono::milliseconds::max());
  if (!next) return std::nullopt;
  return std::max(next->due - Now(), std::chrono::milliseconds(0));
}

void Desktop::SetFocus(Window* window) {
  const WindowHandle before = focus_;
  const WindowHandle now = window ? window->Handle() : 0;
  if (before == now) return;
  const Busy busy;
  focus_ = now;
  if (Window* lost = Find(before)) Deliver(*lost, {message::kKillFocus, now, 0});
  // The window that lost the focus may have sent it elsewhere, or taken the new one away.
  if (focus_ != now) return;
  Window* gained = Find(now);
  if (!gained) focus_ = 0;
  if (presenter) presenter->FocusMoved(gained);
  if (gained) Deliver(*gained, {message::kSetFocus, before, 0});
}

void Desktop::DeleteLater(std::unique_ptr<Window> window) {
  if (!window) return;
  const Busy busy;
  window->Destroy();
  pending_.push_back(std::move(window));
}

void Desktop::DeletePending() {
  ++depth_;
  while (!pending_.empty()) {
    const auto window = std::move(pending_.back());
    pending_.pop_back();
  }
  --depth_;
  FreeThreadWhenEmpty();
}

}  // namespace platform
