#pragma once

#include <cstdint>

/// Days and milliseconds in whole numbers, the ground of everything in QuillonDateTime.h.
namespace QuillonDateTimeCalendar {

inline constexpr std::int64_t MillisecondsPerDay = 86'400'000;
/// Day counts of 0001-01-01, 1970-01-01 and 9999-12-31.
inline constexpr std::int64_t FirstDay = -693'593;
inline constexpr std::int64_t UnixDay = 25'569;
inline constexpr std::int64_t LastDay = 2'958'465;

struct Moment {
  std::int64_t Day = 0;           ///< days since 1899-12-30
  std::int64_t Milliseconds = 0;  ///< time of that day

  /// Milliseconds since 1899-12-30, running evenly also before it.
  constexpr std::int64_t Absolute() const { return Day * MillisecondsPerDay + Milliseconds; }
};

/// The moment of a value, rounded to the nearest millisecond and clamped to the years 1 to 9999.
Moment Split(double AValue);

/// The inverse of Split.
double Join(Moment AMoment);

/// The moment of a count as Moment::Absolute gives it.
Moment FromAbsolute(std::int64_t AMilliseconds);

/// Days since 1899-12-30 of a date of the proleptic Gregorian calendar.
std::int64_t DayOf(int AYear, int AMonth, int ADay);

int DaysOfMonth(int AYear, int AMonth);

}  // namespace QuillonDateTimeCalendar
