#include "platform/clock.h"

#include <atomic>

namespace platform {
namespace {

class SystemClock final : public Clock {
 public:
  std::chrono::milliseconds Now() const override {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
  }
  std::time_t Calendar() const override { return std::time(nullptr); }
};

const SystemClock systemClock;
std::atomic<const Clock*> installed{nullptr};

}  // namespace

const Clock& CurrentClock() {
  const Clock* clock = installed;
  return clock ? *clock : systemClock;
}

const Clock* InstallClock(const Clock* clock) { return installed.exchange(clock); }

std::string FormatLocalTime(const char* format) {
  const std::time_t now = CurrentClock().Calendar();
  std::tm local{};
  char text[256];
  if (!localtime_r(&now, &local)) return {};
  return std::string(text, std::strftime(text, sizeof(text), format, &local));
}

}  // namespace platform
