#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/presenter.h"
#include "platform/window.h"

namespace platform {

/// What the windows of a program share: handles, focus, queue, timers and presenter. Internal to this
/// library. It belongs to the thread that used it first while it was empty, and is free for another when it
/// is empty again.
class Desktop {
 public:
  static Desktop& Get();

  /// Whether the windows belong to the calling thread. False while there are none, unless the thread is to
  /// `adopt` them; false on another thread, after a stop in debug builds.
  bool OnOwnThread(bool adopt = false);

  WindowHandle Register(Window& window);
  void Forget(WindowHandle handle);
  Window* Find(WindowHandle handle);
  std::vector<Window*> TopLevel() const;

  LResult Deliver(Window& window, const Message& message);
  bool Post(WindowHandle handle, const Message& message);
  std::uint32_t SetTimer(WindowHandle handle, std::uint32_t id, std::chrono::milliseconds period);
  bool KillTimer(WindowHandle handle, std::uint32_t id);

  std::size_t Pump();
  std::size_t PassTime(std::chrono::milliseconds by);
  std::optional<std::chrono::milliseconds> TimeToNext();
  void SetWakeHook(std::function<void()> hook) { wake_ = std::move(hook); }
  std::size_t PostedCount() const { return posted_.size(); }
  std::size_t TimerCount() const { return timers_.size(); }

  void SetFocus(Window* window);
  WindowHandle Focus() const { return focus_; }

  void DeleteLater(std::unique_ptr<Window> window);

  Presenter* presenter = nullptr;
  Point cursor;
  void Tell(Window& window, Change what) {
    if (presenter && window.Exists()) presenter->WindowChanged(window, what);
  }

  /// While one lives, no object given to DeleteLater is deleted.
  class Busy {
   public:
    Busy() { ++Get().depth_; }
    ~Busy() {
      if (--Get().depth_ == 0) Get().DeletePending();
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
  };

 private:
  struct Posted {
    WindowHandle handle;
    Message message;
  };
  struct Timer {
    WindowHandle handle;
    std::uint32_t id;
    std::chrono::milliseconds period;
    std::chrono::milliseconds due;
  };

  std::chrono::milliseconds Now();
  /// The timer that is due first, up to `latest`; null when there is none.
  Timer* FirstDue(std::chrono::milliseconds latest);
  void DeletePending();
  void FreeThreadWhenEmpty();
  void Wake() {
    if (wake_) wake_();
  }

  std::atomic<std::thread::id> owner_{};
  std::unordered_map<WindowHandle, Window*> windows_;
  std::vector<WindowHandle> topLevel_;
  WindowHandle lastHandle_ = 0x10000;
  WindowHandle focus_ = 0;
  std::deque<Posted> posted_;
  std::vector<Timer> timers_;
  std::function<void()> wake_;
  const void* clock_ = nullptr;
  std::chrono::milliseconds clockThen_{0};
  std::chrono::milliseconds time_{0};
  int depth_ = 0;
  std::vector<std::unique_ptr<Window>> pending_;
};

}  // namespace platform
