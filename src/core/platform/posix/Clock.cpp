#include "platform/Clock.h"

#include <time.h>

#include <chrono>

namespace {

class SystemClock final : public Platform::Clock {
 public:
  std::int64_t UtcMilliseconds() override {
    const auto Time = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(Time).count();
  }

  int OffsetAt(std::int64_t AnInstant) override {
    const auto Instant = static_cast<time_t>(AnInstant);
    tm Local{};
    return localtime_r(&Instant, &Local) == nullptr ? 0 : static_cast<int>(Local.tm_gmtoff);
  }
};

Platform::Clock& System() {
  static SystemClock Clock;
  return Clock;
}

}  // namespace

namespace Platform {

Clock& TheClock() { return ClockReplacement::Current(System); }

}  // namespace Platform
