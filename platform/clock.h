#pragma once

#include <chrono>
#include <ctime>
#include <string>

#include "platform/api.h"

/// Time as the program sees it: a steady clock for timers and the calendar for texts; both can be replaced.
/// The clock is installed before it is used by other threads.
namespace platform {

class PLATFORM_API Clock {
 public:
  virtual ~Clock() = default;
  /// Never runs backwards; its zero is nowhere in particular.
  virtual std::chrono::milliseconds Now() const = 0;
  virtual std::time_t Calendar() const = 0;
};

/// Stands still until it is moved.
class PLATFORM_API ManualClock final : public Clock {
 public:
  explicit ManualClock(std::time_t calendar = 0) : calendar_(calendar) {}
  std::chrono::milliseconds Now() const override { return now_; }
  std::time_t Calendar() const override { return calendar_ + static_cast<std::time_t>(now_.count() / 1000); }
  void Advance(std::chrono::milliseconds by) { now_ += by; }

 private:
  std::time_t calendar_;
  std::chrono::milliseconds now_{0};
};

/// The installed clock, at start the system's own.
PLATFORM_API const Clock& CurrentClock();
/// Installs a clock that must outlive its use; null brings the system's own back. Gives the one before, or
/// null.
PLATFORM_API const Clock* InstallClock(const Clock* clock);

/// Local date and time of the installed clock in a strftime form.
PLATFORM_API std::string FormatLocalTime(const char* format);

}  // namespace platform
