#pragma once

#include <cstdint>

namespace Platform {

/// The system's clock and the local time zone.
class Clock {
 public:
  virtual ~Clock() = default;

  /// Milliseconds since 1970-01-01T00:00:00 UTC.
  virtual std::int64_t UtcMilliseconds() = 0;
  /// Seconds that local time is ahead of UTC at an instant given in seconds since 1970-01-01T00:00:00 UTC.
  virtual int OffsetAt(std::int64_t AnInstant) = 0;
};

/// The clock in use: the system's, if none was put in its place.
Clock& TheClock();

/// Puts another clock in the system's place, for tests, as long as it lives. Not for use beside running threads.
class ClockReplacement {
 public:
  explicit ClockReplacement(Clock& AClock);
  ClockReplacement(const ClockReplacement&) = delete;
  ClockReplacement& operator=(const ClockReplacement&) = delete;
  ~ClockReplacement();

 private:
  Clock* FReplaced;
};

}  // namespace Platform
