#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>

#include "platform/api.h"

/// The message queue of the user-interface thread: posted messages in their order, then timers that are due.
/// Timers go by the installed clock (platform/clock.h) and fire only here. A handler that throws is let
/// through to whoever pumps; the queue stays in order. Windows post and set timers with their own operations
/// (platform/window.h).
namespace platform {

/// Handles what is posted, what that posts, and the timers that are due, until nothing is left. Gives the
/// number of messages handled. A message posted to a window that is gone is dropped.
PLATFORM_API std::size_t PumpPosted();

/// Pumps until `done` says so, sleeping while nothing is due. False when there is nothing left to wait for:
/// neither messages nor timers, or timers on a clock that stands still.
PLATFORM_API bool RunUntil(const std::function<bool()>& done);

/// Lets the time of timers pass without the clock: timers due within `by` fire in their order. For scripts,
/// where a person's slowness takes no time.
PLATFORM_API std::size_t PassTime(std::chrono::milliseconds by);

/// Time until the next timer is due, 0 when something is waiting already; nothing when neither is there.
PLATFORM_API std::optional<std::chrono::milliseconds> TimeToNextMessage();

/// Called when the queue gets something to wait for, so that a desktop's own loop can call PumpPosted in
/// time. Runs inside the operation that posts; must not pump itself. Empty takes it away.
PLATFORM_API void SetWakeHook(std::function<void()> hook);

/// Messages waiting, and timers running.
PLATFORM_API std::size_t PostedCount();
PLATFORM_API std::size_t TimerCount();

}  // namespace platform
