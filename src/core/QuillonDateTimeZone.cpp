#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "QuillonDateTime.h"
#include "QuillonDateTimeCalendar.h"
#include "platform/Clock.h"

namespace {

using QuillonDateTimeCalendar::FirstDay;
using QuillonDateTimeCalendar::FromAbsolute;
using QuillonDateTimeCalendar::Join;
using QuillonDateTimeCalendar::MillisecondsPerDay;
using QuillonDateTimeCalendar::Split;
using QuillonDateTimeCalendar::UnixDay;

constexpr std::int64_t SecondsPerDay = 86'400;
constexpr std::int64_t SecondsPerHour = 3'600;
constexpr std::int64_t HoursPerDay = 24;

/// @param AWall a wall time in seconds, counted as if it were UTC since 1970
int ComputeOffset(std::int64_t AWall) {
  Platform::Clock& Clock = Platform::TheClock();
  const int Before = Clock.OffsetAt(AWall - SecondsPerDay);
  if (Clock.OffsetAt(AWall - Before) == Before) {
    return Before;
  }
  const int After = Clock.OffsetAt(AWall + SecondsPerDay);
  return Clock.OffsetAt(AWall - After) == After ? After : Before;
}

/// Offsets by hour of the wall time, for hours without a change of the offset.
struct OffsetCache {
  struct Entry {
    std::int32_t Key;  ///< the hour counted from the first one that a value can have, plus 1; 0 for an empty entry
    std::int32_t Offset;
  };

  /// Room for every hour of nearly two years.
  std::array<Entry, 16'384> Entries{};
  unsigned Generation = 0;
};

std::atomic<unsigned> CacheGeneration = 0;

int CachedOffset(std::int64_t AWall) {
  static thread_local OffsetCache Cache;
  if (const unsigned Generation = CacheGeneration.load(std::memory_order_relaxed); Cache.Generation != Generation) {
    Cache.Entries.fill({});
    Cache.Generation = Generation;
  }
  constexpr std::int64_t FirstHour = (FirstDay - UnixDay) * HoursPerDay;
  const std::int64_t HourFromFirst = AWall / SecondsPerHour - (AWall % SecondsPerHour < 0 ? 1 : 0) - FirstHour;
  const auto Key = static_cast<std::int32_t>(HourFromFirst + 1);
  OffsetCache::Entry& Entry = Cache.Entries[static_cast<std::size_t>(Key) % Cache.Entries.size()];
  if (Entry.Key == Key) {
    return Entry.Offset;
  }
  const std::int64_t HourStart = (HourFromFirst + FirstHour) * SecondsPerHour;
  const int AtStart = ComputeOffset(HourStart);
  if (ComputeOffset(HourStart + SecondsPerHour) != AtStart) {
    return ComputeOffset(AWall);
  }
  Entry = {Key, AtStart};
  return AtStart;
}

}  // namespace

namespace QuillonDateTime {

double Now() { return LocalFromInstant(Platform::TheClock().UtcMilliseconds()); }

double UtcFromInstant(std::int64_t AnInstant) { return Join(FromAbsolute(AnInstant + UnixDay * MillisecondsPerDay)); }

double LocalFromInstant(std::int64_t AnInstant) {
  const std::int64_t Seconds = AnInstant / 1000 - (AnInstant % 1000 < 0 ? 1 : 0);
  return UtcFromInstant(AnInstant + Platform::TheClock().OffsetAt(Seconds) * std::int64_t{1000});
}

std::int64_t InstantOfUtc(double AValue) { return Split(AValue).Absolute() - UnixDay * MillisecondsPerDay; }

std::int64_t InstantOfLocal(double AValue) { return InstantOfUtc(AValue) - LocalOffset(AValue) * std::int64_t{1000}; }

int LocalOffset(double ALocal) {
  const auto [Day, Milliseconds] = Split(ALocal);
  return CachedOffset((Day - UnixDay) * SecondsPerDay + Milliseconds / 1000);
}

void ForgetLocalOffsets() { CacheGeneration.fetch_add(1, std::memory_order_relaxed); }

}  // namespace QuillonDateTime
