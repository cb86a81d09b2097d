#include "Dates.h"

#include <algorithm>

namespace SchoolGenerator {

namespace {

constexpr int Clock(int AnHour, int AMinute) { return AnHour * 60 + AMinute; }

/// Days of the months as distances from the first day of the school year.
constexpr int October = FirstDay + 59;
constexpr int December = FirstDay + 120;
constexpr int January = FirstDay + 151;
constexpr int March = FirstDay + 210;
constexpr int May = FirstDay + 271;

}  // namespace

const std::array<THoliday, 8> Holidays = {{{"Herbstferien", October + 18, October + 30},
                                           {"Weihnachtsferien", December + 22, January + 5},
                                           {"Rosenmontag", FirstDay + 189, FirstDay + 189},
                                           {"Osterferien", March + 21, March + 33},
                                           {"Christi Himmelfahrt", May + 5, May + 5},
                                           {"Brückentag", May + 6, May + 6},
                                           {"Pfingstferien", May + 16, May + 17},
                                           {"Fronleichnam", May + 26, May + 26}}};

const std::array<TRow, RowsADay> Rows = {{{Clock(7, 45), Clock(8, 30)},
                                          {Clock(8, 35), Clock(9, 20)},
                                          {Clock(9, 40), Clock(10, 25)},
                                          {Clock(10, 30), Clock(11, 15)},
                                          {Clock(11, 35), Clock(12, 20)},
                                          {Clock(12, 25), Clock(13, 10)},
                                          {Clock(13, 15), Clock(14, 0)},
                                          {Clock(14, 5), Clock(14, 50)},
                                          {Clock(14, 55), Clock(15, 40)},
                                          {Clock(15, 45), Clock(16, 30)}}};

bool IsSchoolDay(int ADay) {
  return ADay >= FirstDay && ADay <= LastDay && WeekdayOf(ADay) < DaysAWeek &&
         std::ranges::none_of(
             Holidays, [ADay](const THoliday& AHoliday) { return ADay >= AHoliday.First && ADay <= AHoliday.Last; });
}

int AnySchoolDay(TRandom& ARandom) {
  int Day = 0;
  do {
    Day = ARandom.Between(FirstDay, LastDay);
  } while (!IsSchoolDay(Day));
  return Day;
}

int AnySchoolDay(TRandom& ARandom, int AWeekday) {
  int Day = 0;
  do {
    Day = FirstDay + AWeekday + 7 * ARandom.Below(WeeksOfYear);
  } while (!IsSchoolDay(Day));
  return Day;
}

int NextSchoolDay(int ADay) {
  while (ADay < LastDay && !IsSchoolDay(ADay)) {
    ++ADay;
  }
  return ADay;
}

TQuillonDateTime At(int ADay, int AMinute) {
  constexpr double MinutesADay = 1440;
  return ADay + AMinute / MinutesADay;
}

}  // namespace SchoolGenerator
