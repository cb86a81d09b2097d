#include <algorithm>
#include <limits>

#include "QuillonDateTime.h"
#include "QuillonDateTimeCalendar.h"
#include "QuillonDateTimeFormat.h"

namespace {

using QuillonDateTimeCalendar::DayOf;
using QuillonDateTimeCalendar::DaysOfMonth;
using QuillonDateTimeCalendar::FirstDay;
using QuillonDateTimeCalendar::FromAbsolute;
using QuillonDateTimeCalendar::Join;
using QuillonDateTimeCalendar::LastDay;
using QuillonDateTimeCalendar::Moment;
using QuillonDateTimeCalendar::Split;
using QuillonDateTimeCalendar::UnixDay;

[[noreturn]] void ThrowOutOfRange() { throw EQuillonDateTimeError("Argument is out of range."); }

/// The value moved by ACount units of AUnit milliseconds.
double Moved(double AValue, std::int64_t ACount, std::int64_t AUnit) {
  constexpr std::int64_t WholeRange = (LastDay - FirstDay + 1) * TQuillonTimeSpan::MillisecondsPerDay;
  if (ACount > WholeRange / AUnit || ACount < -WholeRange / AUnit) {
    ThrowOutOfRange();
  }
  const Moment Result = FromAbsolute(Split(AValue).Absolute() + ACount * AUnit);
  if (Result.Day < FirstDay || Result.Day > LastDay) {
    ThrowOutOfRange();
  }
  return Join(Result);
}

double MovedByMonths(double AValue, std::int64_t ACount) {
  constexpr std::int64_t MostMonths = 119'988;  // all of 9999 years
  if (ACount > MostMonths || ACount < -MostMonths) {
    ThrowOutOfRange();
  }
  const TQuillonDateTimeFields Fields = QuillonDateTime::Decode(AValue);
  const std::int64_t Months = std::int64_t{Fields.Year} * 12 + (Fields.Month - 1) + ACount;
  const auto Year = static_cast<int>(Months / 12);
  const auto Month = static_cast<int>(Months % 12) + 1;
  if (Months < 12 || Year > 9999) {
    ThrowOutOfRange();
  }
  return Join({DayOf(Year, Month, std::min(Fields.Day, DaysOfMonth(Year, Month))), Split(AValue).Milliseconds});
}

double MovedByYears(double AValue, std::int64_t ACount) {
  return MovedByMonths(AValue, std::clamp<std::int64_t>(ACount, -9999, 9999) * 12);
}

std::int64_t SignedCount(TQuillonTimeSpan ASpan) {
  if (ASpan.FValue > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
    ThrowOutOfRange();
  }
  return static_cast<std::int64_t>(ASpan.FValue);
}

TQuillonTimeSpan SpanBetween(double AnEarlier, double ALater) {
  const std::int64_t Count = Split(ALater).Absolute() - Split(AnEarlier).Absolute();
  return TQuillonTimeSpan().AddMilliseconds(Count);
}

std::int64_t UnixSeconds(double AValue) {
  const Moment Time = Split(AValue);
  return (Time.Day - UnixDay) * 86'400 + Time.Milliseconds / 1'000;
}

template <class TEnum>
TEnum FromOrdinal(int AnOrdinal, TEnum ALast) {
  if (AnOrdinal < 1 || AnOrdinal > static_cast<int>(ALast) + 1) {
    ThrowOutOfRange();
  }
  return static_cast<TEnum>(AnOrdinal - 1);
}

}  // namespace

TQuillonDateTime TQuillonDateTime::Create(int AYear, int AMonth, int ADay, int AHour, int AMinute, int ASecond,
                                          int AMillisecond) {
  return QuillonDateTime::Encode({AYear, AMonth, ADay, AHour, AMinute, ASecond, AMillisecond});
}

TQuillonDateTime TQuillonDateTime::Create(std::string_view AText) { return QuillonDateTimeFormat::Parse(AText); }

TQuillonDateTime TQuillonDateTime::Create(std::string_view AText, const TQuillonFormatSettings& ASettings) {
  return QuillonDateTimeFormat::Parse(AText, ASettings);
}

TQuillonDateTime TQuillonDateTime::FromISO8601(std::string_view AText) { return QuillonDateTime::ParseDateTime(AText); }

TQuillonDateTime TQuillonDateTime::FromUnixTime(std::int64_t ASeconds) {
  return TQuillonDateTime(static_cast<double>(UnixDay)).AddSeconds(ASeconds);
}

TQuillonDateTime TQuillonDateTime::AddMilliseconds(std::int64_t ACount) const { return Moved(FValue, ACount, 1); }

TQuillonDateTime TQuillonDateTime::AddSeconds(std::int64_t ACount) const {
  return Moved(FValue, ACount, TQuillonTimeSpan::MillisecondsPerSecond);
}

TQuillonDateTime TQuillonDateTime::AddMinutes(std::int64_t ACount) const {
  return Moved(FValue, ACount, TQuillonTimeSpan::MillisecondsPerMinute);
}

TQuillonDateTime TQuillonDateTime::AddHours(std::int64_t ACount) const {
  return Moved(FValue, ACount, TQuillonTimeSpan::MillisecondsPerHour);
}

TQuillonDateTime TQuillonDateTime::AddDays(std::int64_t ACount) const {
  return Moved(FValue, ACount, TQuillonTimeSpan::MillisecondsPerDay);
}

TQuillonDateTime TQuillonDateTime::AddWeeks(std::int64_t ACount) const {
  return Moved(FValue, ACount, 7 * TQuillonTimeSpan::MillisecondsPerDay);
}

TQuillonDateTime TQuillonDateTime::AddMonths(std::int64_t ACount) const { return MovedByMonths(FValue, ACount); }

TQuillonDateTime TQuillonDateTime::AddYears(std::int64_t ACount) const { return MovedByYears(FValue, ACount); }

TQuillonDateTime operator+(TQuillonDateTime ATime, TQuillonTimeSpan ASpan) {
  return ATime.AddMilliseconds(SignedCount(ASpan));
}

TQuillonDateTime operator-(TQuillonDateTime ATime, TQuillonTimeSpan ASpan) {
  return ATime.AddMilliseconds(-SignedCount(ASpan));
}

TQuillonTimeSpan TQuillonDateTime::Since(TQuillonDateTime AnEarlier) const { return SpanBetween(AnEarlier, FValue); }

std::string TQuillonDateTime::ToISO8601(bool IncludeTimeZone) const {
  std::string Text;
  (IncludeTimeZone ? QuillonDateTime::AppendDateTimeWithOffset : QuillonDateTime::AppendDateTime)(Text, FValue);
  return Text;
}

std::int64_t TQuillonDateTime::ToUnixTime() const { return UnixSeconds(FValue); }

std::string TQuillonDateTime::ToString() const { return ToString(TQuillonFormatSettings()); }

std::string TQuillonDateTime::ToString(const TQuillonFormatSettings& ASettings) const {
  return ToString(ASettings.ShortDateFormat + " " + ASettings.LongTimeFormat, ASettings);
}

std::string TQuillonDateTime::ToString(std::string_view AFormat) const {
  return QuillonDateTimeFormat::Format(AFormat, FValue);
}

std::string TQuillonDateTime::ToString(std::string_view AFormat, const TQuillonFormatSettings& ASettings) const {
  return QuillonDateTimeFormat::Format(AFormat, FValue, ASettings);
}

TQuillonDate TQuillonDate::Create(int AYear, int AMonth, int ADay) {
  return QuillonDateTime::Encode({.Year = AYear, .Month = AMonth, .Day = ADay});
}

TQuillonDate TQuillonDate::Create(std::string_view AText) { return QuillonDateTimeFormat::Parse(AText); }

TQuillonDate TQuillonDate::Create(std::string_view AText, const TQuillonFormatSettings& ASettings) {
  return QuillonDateTimeFormat::Parse(AText, ASettings);
}

TQuillonDate TQuillonDate::FromISO8601(std::string_view AText) { return QuillonDateTime::ParseDate(AText); }

TQuillonDate TQuillonDate::FromUnixTime(std::int64_t ASeconds) {
  return TQuillonDateTime::FromUnixTime(ASeconds).FValue;
}

TQuillonDate TQuillonDate::AddDays(std::int64_t ACount) const {
  return Moved(FValue, ACount, TQuillonTimeSpan::MillisecondsPerDay);
}

TQuillonDate TQuillonDate::AddWeeks(std::int64_t ACount) const {
  return Moved(FValue, ACount, 7 * TQuillonTimeSpan::MillisecondsPerDay);
}

TQuillonDate TQuillonDate::AddMonths(std::int64_t ACount) const { return MovedByMonths(FValue, ACount); }

TQuillonDate TQuillonDate::AddYears(std::int64_t ACount) const { return MovedByYears(FValue, ACount); }

TQuillonDate operator+(TQuillonDate ADate, TQuillonTimeSpan ASpan) { return Moved(ADate, SignedCount(ASpan), 1); }

TQuillonDate operator-(TQuillonDate ADate, TQuillonTimeSpan ASpan) { return Moved(ADate, -SignedCount(ASpan), 1); }

TQuillonTimeSpan TQuillonDate::Since(TQuillonDate AnEarlier) const { return SpanBetween(AnEarlier, FValue); }

std::string TQuillonDate::ToISO8601() const {
  std::string Text;
  QuillonDateTime::AppendDate(Text, FValue);
  return Text;
}

std::int64_t TQuillonDate::ToUnixTime() const { return UnixSeconds(FValue); }

std::string TQuillonDate::ToString() const { return ToString(TQuillonFormatSettings()); }

std::string TQuillonDate::ToString(const TQuillonFormatSettings& ASettings) const {
  return ToString(ASettings.ShortDateFormat, ASettings);
}

std::string TQuillonDate::ToString(std::string_view AFormat) const {
  return QuillonDateTimeFormat::Format(AFormat, FValue);
}

std::string TQuillonDate::ToString(std::string_view AFormat, const TQuillonFormatSettings& ASettings) const {
  return QuillonDateTimeFormat::Format(AFormat, FValue, ASettings);
}

TQuillonDayOfMonth TQuillonDate::DayOfMonthFromOrdinal(int AnOrdinal) {
  return FromOrdinal(AnOrdinal, TQuillonDayOfMonth::Day31);
}

TQuillonDayOfWeek TQuillonDate::DayOfWeekFromOrdinal(int AnOrdinal) {
  return FromOrdinal(AnOrdinal, TQuillonDayOfWeek::Saturday);
}

TQuillonMonth TQuillonDate::MonthFromOrdinal(int AnOrdinal) { return FromOrdinal(AnOrdinal, TQuillonMonth::December); }

TQuillonWeekOfMonth TQuillonDate::WeekOfMonthFromOrdinal(int AnOrdinal) {
  return FromOrdinal(AnOrdinal, TQuillonWeekOfMonth::LastWeek);
}
