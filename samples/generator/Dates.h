#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "QuillonDateTime.h"
#include "Week.h"

/// The school year of the generated schools and its days.
namespace SchoolGenerator {

/// Monday, 2026-08-03: the first day of week 1.
inline constexpr int FirstDay = 46237;
/// Friday, 2027-07-30.
inline constexpr int LastDay = FirstDay + 361;
inline constexpr int WeeksOfYear = 52;

/// Days without lessons, both bounds included.
struct THoliday {
  std::string_view Name;
  int First;
  int Last;
};
extern const std::array<THoliday, 8> Holidays;

/// True for a Monday to Friday outside of the holidays.
bool IsSchoolDay(int ADay);
int AnySchoolDay(TRandom& ARandom);
/// A school day of the year on the given day of the week, which counts from 0.
int AnySchoolDay(TRandom& ARandom, int AWeekday);
/// ADay itself, or the first school day behind it.
int NextSchoolDay(int ADay);
/// 0 is Monday.
constexpr int WeekdayOf(int ADay) { return (ADay - FirstDay) % 7; }
/// 1 to 52.
constexpr int WeekOf(int ADay) { return (ADay - FirstDay) / 7 + 1; }

/// A day and a time of day in minutes; day 0 gives the bare time.
TQuillonDateTime At(int ADay, int AMinute);

/// Begin and end of a row of the standard time frame, in minutes.
struct TRow {
  int Start;
  int End;
};
extern const std::array<TRow, RowsADay> Rows;

}  // namespace SchoolGenerator
