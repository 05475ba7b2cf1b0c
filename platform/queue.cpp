#include "platform/queue.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "platform/clock.h"
#include "platform/desktop.h"

namespace platform {

std::size_t PumpPosted() { return Desktop::Get().Pump(); }

bool RunUntil(const std::function<bool()>& done) {
  constexpr std::chrono::milliseconds kLongestNap{20};
  int standstills = 0;
  while (!done()) {
    if (PumpPosted() != 0) continue;
    const auto wait = TimeToNextMessage();
    if (!wait) return done();
    const auto before = CurrentClock().Now();
    std::this_thread::sleep_for(std::clamp(*wait, std::chrono::milliseconds(1), kLongestNap));
    standstills = CurrentClock().Now() == before ? standstills + 1 : 0;
    // A real clock has moved after so many naps; one that has not will not.
    if (standstills == 5) return done();
  }
  return true;
}

std::size_t PassTime(std::chrono::milliseconds by) { return Desktop::Get().PassTime(by); }

std::optional<std::chrono::milliseconds> TimeToNextMessage() { return Desktop::Get().TimeToNext(); }

void SetWakeHook(std::function<void()> hook) { Desktop::Get().SetWakeHook(std::move(hook)); }

std::size_t PostedCount() { return Desktop::Get().PostedCount(); }

std::size_t TimerCount() { return Desktop::Get().TimerCount(); }

}  // namespace platform
