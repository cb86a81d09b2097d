#pragma once

#include <cstdint>

#include "platform/Service.h"

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

using ClockReplacement = ServiceReplacement<Clock>;

}  // namespace Platform
