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

Platform::Clock* Current = nullptr;

}  // namespace

namespace Platform {

Clock& TheClock() { return Current != nullptr ? *Current : System(); }

ClockReplacement::ClockReplacement(Clock& AClock) : FReplaced(Current) { Current = &AClock; }

ClockReplacement::~ClockReplacement() { Current = FReplaced; }

}  // namespace Platform
