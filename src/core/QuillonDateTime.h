#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "QuillonDateTimeSpan.h"

struct TQuillonFormatSettings;

enum class TQuillonDayOfWeek { Sunday, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };

// clang-format off
enum class TQuillonMonth {
  January, February, March, April, May, June, July, August, September, October, November, December
};
enum class TQuillonDayOfMonth {
  Day1, Day2, Day3, Day4, Day5, Day6, Day7, Day8, Day9, Day10, Day11, Day12, Day13, Day14, Day15, Day16,
  Day17, Day18, Day19, Day20, Day21, Day22, Day23, Day24, Day25, Day26, Day27, Day28, Day29, Day30, Day31
};
// clang-format on
enum class TQuillonWeekOfMonth { Week1, Week2, Week3, Week4, Week5, LastWeek };

/// A point in time of the proleptic Gregorian calendar: days since 1899-12-30, the time of day as fraction.
/// Before that day the whole part is still the day and the fraction's absolute value the time. There is no zone in
/// the value; it means local time. Years 1 to 9999 have a text, values outside are shown as the nearest of them.
struct TQuillonDateTime {
  double FValue = 0;

  constexpr TQuillonDateTime() = default;
  constexpr TQuillonDateTime(double AValue) : FValue(AValue) {}
  constexpr operator double() const { return FValue; }

  /// @throws EQuillonConvertError for an impossible date or time
  static TQuillonDateTime Create(int AYear, int AMonth, int ADay, int AHour = 0, int AMinute = 0, int ASecond = 0,
                                 int AMillisecond = 0);
  /// Reads the settings' short date, with or without a time behind it: "24.12.2026 18:30".
  /// @throws EQuillonConvertError for any other text
  static TQuillonDateTime Create(std::string_view AText);
  static TQuillonDateTime Create(std::string_view AText, const TQuillonFormatSettings& ASettings);
  /// By position, see QuillonDateTime::ParseDateTime.
  static TQuillonDateTime FromISO8601(std::string_view AText);
  /// @param ASeconds since 1970-01-01; the wall time is taken as it stands
  static TQuillonDateTime FromUnixTime(std::int64_t ASeconds);
  /// @param ACount of 100 nanoseconds since 1601-01-01; the wall time is taken as it stands
  static TQuillonDateTime FromWindowsTime(std::int64_t ACount);
  /// The date of mails (RFC 822, with the years and zones of RFC 2822): "Sat, 01 Aug 2026 07:45:00 +0200". In the local
  /// zone's time, as the next one. @throws EQuillonConvertError, naming the text
  static TQuillonDateTime FromRFC822(std::string_view AText);
  /// The date of the management services: "20260801074500.000000+120", the offset in minutes; with "+***" the time is
  /// taken as it stands.
  static TQuillonDateTime FromWmiFormat(std::string_view AText);

  /// The value moved by an amount of either sign; a day that the month does not have becomes its last one.
  /// @throws EQuillonDateTimeError "Argument is out of range." beyond the years 1 to 9999
  [[nodiscard]] TQuillonDateTime AddMilliseconds(std::int64_t ACount) const;
  [[nodiscard]] TQuillonDateTime AddSeconds(std::int64_t ACount) const;
  [[nodiscard]] TQuillonDateTime AddMinutes(std::int64_t ACount) const;
  [[nodiscard]] TQuillonDateTime AddHours(std::int64_t ACount) const;
  [[nodiscard]] TQuillonDateTime AddDays(std::int64_t ACount) const;
  [[nodiscard]] TQuillonDateTime AddWeeks(std::int64_t ACount) const;
  [[nodiscard]] TQuillonDateTime AddMonths(std::int64_t ACount) const;
  [[nodiscard]] TQuillonDateTime AddYears(std::int64_t ACount) const;
  friend TQuillonDateTime operator+(TQuillonDateTime ATime, TQuillonTimeSpan ASpan);
  friend TQuillonDateTime operator-(TQuillonDateTime ATime, TQuillonTimeSpan ASpan);
  /// The span from an earlier value to this one. (The plain difference is a number of days.)
  /// @throws EQuillonDateTimeError "Dauer ist ungültig." if AnEarlier is the later one
  TQuillonTimeSpan Since(TQuillonDateTime AnEarlier) const;

  /// "2026-08-01T07:45:00.000Z", or with the local zone's offset at that wall time in place of the Z.
  std::string ToISO8601(bool IncludeTimeZone = false) const;
  std::int64_t ToUnixTime() const;
  std::int64_t ToWindowsTime() const;
  /// Short date and time of the settings; a format is told in QuillonDateTimeFormat.h.
  std::string ToString() const;
  std::string ToString(const TQuillonFormatSettings& ASettings) const;
  std::string ToString(std::string_view AFormat) const;
  std::string ToString(std::string_view AFormat, const TQuillonFormatSettings& ASettings) const;
};

/// A day, counted as in TQuillonDateTime; a time of day is cut off.
struct TQuillonDate {
  double FValue = 0;

  constexpr TQuillonDate() = default;
  constexpr TQuillonDate(double AValue) : FValue(WholePart(AValue)) {}
  constexpr operator double() const { return FValue; }

  /// @throws EQuillonConvertError for an impossible date
  static TQuillonDate Create(int AYear, int AMonth, int ADay);
  static TQuillonDate Create(std::string_view AText);
  static TQuillonDate Create(std::string_view AText, const TQuillonFormatSettings& ASettings);
  static TQuillonDate FromISO8601(std::string_view AText);
  static TQuillonDate FromUnixTime(std::int64_t ASeconds);
  static TQuillonDate FromWindowsTime(std::int64_t ACount);

  [[nodiscard]] TQuillonDate AddDays(std::int64_t ACount) const;
  [[nodiscard]] TQuillonDate AddWeeks(std::int64_t ACount) const;
  [[nodiscard]] TQuillonDate AddMonths(std::int64_t ACount) const;
  [[nodiscard]] TQuillonDate AddYears(std::int64_t ACount) const;
  friend TQuillonDate operator+(TQuillonDate ADate, TQuillonTimeSpan ASpan);
  friend TQuillonDate operator-(TQuillonDate ADate, TQuillonTimeSpan ASpan);
  TQuillonTimeSpan Since(TQuillonDate AnEarlier) const;

  std::string ToISO8601() const;
  std::int64_t ToUnixTime() const;
  std::int64_t ToWindowsTime() const;
  std::string ToString() const;
  std::string ToString(const TQuillonFormatSettings& ASettings) const;
  std::string ToString(std::string_view AFormat) const;
  std::string ToString(std::string_view AFormat, const TQuillonFormatSettings& ASettings) const;

  /// Ordinals count from 1; the week begins with Sunday.
  /// @throws EQuillonDateTimeError "Argument is out of range."
  static TQuillonDayOfMonth DayOfMonthFromOrdinal(int AnOrdinal);
  static TQuillonDayOfWeek DayOfWeekFromOrdinal(int AnOrdinal);
  static TQuillonMonth MonthFromOrdinal(int AnOrdinal);
  static TQuillonWeekOfMonth WeekOfMonthFromOrdinal(int AnOrdinal);

 private:
  static constexpr double WholePart(double AValue) {
    constexpr double AllWhole = 4503599627370496.0;  // 2^52: no fractions from here on
    return AValue > -AllWhole && AValue < AllWhole ? static_cast<double>(static_cast<std::int64_t>(AValue)) : AValue;
  }
};

/// A value taken apart; the month counts from 1.
struct TQuillonDateTimeFields {
  int Year = 0;
  int Month = 0;
  int Day = 0;
  int Hour = 0;
  int Minute = 0;
  int Second = 0;
  int Millisecond = 0;

  friend bool operator==(const TQuillonDateTimeFields&, const TQuillonDateTimeFields&) = default;
};

/// Points in time, their calendar fields and their text; a double is the value of a TQuillonDateTime.
namespace QuillonDateTime {

/// @throws EQuillonConvertError for an impossible date or time: month 13, 30 February, year 0, hour 24
double Encode(const TQuillonDateTimeFields& AFields);

/// Rounds to the nearest millisecond. Values before the year 1 or past 9999 give the nearest one inside; what is
/// not a number gives 1899-12-30.
TQuillonDateTimeFields Decode(double AValue);

/// Reads "yyyy-mm-ddThh:nn:ss.zzzZ" by position: a shorter text lacks the fields behind its end, zone information is
/// passed over. All fields zero give 0.
/// @throws EQuillonConvertError, naming the text, where digits are missing or the date or time is impossible
double ParseDateTime(std::string_view AText);
/// As ParseDateTime for "yyyy-mm-dd".
double ParseDate(std::string_view AText);
/// As ParseDateTime for "hh:nn:ss.zzzZ"; a fraction of a day.
double ParseTime(std::string_view AText);

/// Appends "2026-08-01T07:45:00.000Z".
void AppendDateTime(std::string& ATarget, double AValue);
/// Appends "2026-08-01".
void AppendDate(std::string& ATarget, double AValue);
/// Appends "07:45:00.000Z".
void AppendTime(std::string& ATarget, double AValue);
/// As AppendDateTime and AppendTime, with LocalOffset in place of the Z: "2026-08-01T07:45:00.000+02:00".
void AppendDateTimeWithOffset(std::string& ATarget, double AValue);
void AppendTimeWithOffset(std::string& ATarget, double AValue);

/// The present local time.
double Now();

/// Seconds east of UTC of the local zone when its clocks show ALocal. A time that is shown twice means its first
/// occurrence, one that is never shown has the offset from before the gap (RFC 5545, section 3.3.5).
int LocalOffset(double ALocal);
/// Offsets are remembered; this is for those who change the zone of the running program.
void ForgetLocalOffsets();

/// An instant, in milliseconds since 1970-01-01T00:00:00 UTC, as the clocks show it there or here, and back.
double UtcFromInstant(std::int64_t AnInstant);
double LocalFromInstant(std::int64_t AnInstant);
std::int64_t InstantOfUtc(double AValue);
std::int64_t InstantOfLocal(double AValue);

/// Monday is 1, Sunday 7 (ISO 8601).
int DayOfWeek(double AValue);

}  // namespace QuillonDateTime
