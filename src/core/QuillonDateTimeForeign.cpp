#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string>

#include "QuillonDateTime.h"
#include "QuillonDateTimeCalendar.h"
#include "QuillonText.h"
#include "QuillonTextScanner.h"

namespace {

using QuillonDateTimeCalendar::DayOf;
using QuillonDateTimeCalendar::FromAbsolute;
using QuillonDateTimeCalendar::Join;
using QuillonDateTimeCalendar::MillisecondsPerDay;
using QuillonDateTimeCalendar::Split;

constexpr std::int64_t CountsPerMillisecond = 10'000;

/// 1601-01-01.
std::int64_t WindowsStart() { return DayOf(1601, 1, 1) * MillisecondsPerDay; }

double FromWindowsCount(std::int64_t ACount) {
  const std::int64_t Rest = ACount % CountsPerMillisecond;
  return Join(FromAbsolute(WindowsStart() + ACount / CountsPerMillisecond - (Rest < 0 ? 1 : 0)));
}

std::int64_t WindowsCount(double AValue) { return (Split(AValue).Absolute() - WindowsStart()) * CountsPerMillisecond; }

constexpr std::string_view MonthNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                           "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::string_view DayNames[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};

struct TZone {
  std::string_view Name;
  int Hours;
};
constexpr TZone Zones[] = {{"UT", 0},   {"GMT", 0},  {"Z", 0},    {"EST", -5}, {"EDT", -4}, {"CST", -6},
                           {"CDT", -5}, {"MST", -7}, {"MDT", -6}, {"PST", -8}, {"PDT", -7}};

/// Takes letters from the front of the text.
std::string_view PassWord(TQuillonTextScanner& AScanner) {
  const std::string_view Left = AScanner.Left();
  const auto IsLetter = [](char C) { return (C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z'); };
  const auto End = std::find_if_not(Left.begin(), Left.end(), IsLetter);
  AScanner.Skip(static_cast<std::size_t>(End - Left.begin()));
  return Left.substr(0, static_cast<std::size_t>(End - Left.begin()));
}

bool IsSameWord(std::string_view A, std::string_view B) { return QuillonText::CompareIgnoreAsciiCase(A, B) == 0; }

/// Number of the month; 0 for none.
int MonthIn(TQuillonTextScanner& AScanner) {
  const std::string_view Word = PassWord(AScanner);
  const auto* const Found = std::ranges::find_if(MonthNames, [&](auto AName) { return IsSameWord(AName, Word); });
  return Found == std::end(MonthNames) ? 0 : static_cast<int>(Found - MonthNames) + 1;
}

/// The year as it is meant: two digits are of the years from 1950 on, three of the twentieth century and the next ones.
std::optional<int> YearIn(TQuillonTextScanner& AScanner) {
  const std::size_t Digits = AScanner.CountDigits();
  const auto Year = AScanner.Field(Digits);
  if (!Year || Digits < 2) {
    return std::nullopt;
  }
  if (Digits == 2) {
    return *Year + (*Year < 50 ? 2000 : 1900);
  }
  return Digits == 3 ? *Year + 1900 : *Year;
}

/// Minutes east of UTC. A zone of an unknown name says nothing, and counts as UTC.
std::optional<int> ZoneIn(TQuillonTextScanner& AScanner) {
  const bool IsWest = AScanner.TryPass('-');
  if (IsWest || AScanner.TryPass('+')) {
    const bool HasFourDigits = AScanner.CountDigits() == 4;
    const auto Hours = AScanner.Field(2);
    const auto Minutes = AScanner.Field(2);
    if (!HasFourDigits || !Hours || !Minutes || *Minutes > 59) {
      return std::nullopt;
    }
    const int Offset = *Hours * 60 + *Minutes;
    return IsWest ? -Offset : Offset;
  }
  const std::string_view Word = PassWord(AScanner);
  const auto* const Found =
      std::ranges::find_if(Zones, [&](const TZone& AZone) { return IsSameWord(AZone.Name, Word); });
  return Found == std::end(Zones) ? 0 : Found->Hours * 60;
}

/// "07:45" or "07:45:00".
bool ReadTime(TQuillonTextScanner& AScanner, TQuillonDateTimeFields& AFields) {
  const auto Hour = AScanner.Field(std::min<std::size_t>(AScanner.CountDigits(), 2));
  const auto Minute = AScanner.TryPass(':') ? AScanner.Field(2) : std::nullopt;
  const auto Second = AScanner.TryPass(':') ? AScanner.Field(2) : std::optional(0);
  if (!Hour || !Minute || !Second) {
    return false;
  }
  AFields.Hour = *Hour;
  AFields.Minute = *Minute;
  // A leap second is shown as the one before.
  AFields.Second = *Second == 60 ? 59 : *Second;
  return true;
}

struct TZonedTime {
  TQuillonDateTimeFields Fields;
  std::optional<int> Offset;  ///< minutes east of UTC; none for local time
};

std::optional<TZonedTime> ReadMailDate(TQuillonTextScanner AScanner) {
  AScanner.PassBlanks();
  if (const std::string_view Day = PassWord(AScanner); !Day.empty()) {
    const bool IsDay = std::ranges::any_of(DayNames, [&](auto AName) { return IsSameWord(AName, Day); });
    if (!IsDay || !AScanner.TryPass(',')) {
      return std::nullopt;
    }
  }
  TZonedTime Result;
  AScanner.PassBlanks();
  const auto Day = AScanner.Field(std::min<std::size_t>(AScanner.CountDigits(), 2));
  AScanner.PassBlanks();
  Result.Fields.Month = MonthIn(AScanner);
  AScanner.PassBlanks();
  const auto Year = YearIn(AScanner);
  AScanner.PassBlanks();
  if (!Day || !Year || !ReadTime(AScanner, Result.Fields)) {
    return std::nullopt;
  }
  Result.Fields.Day = *Day;
  Result.Fields.Year = *Year;
  AScanner.PassBlanks();
  Result.Offset = ZoneIn(AScanner);
  AScanner.PassBlanks();
  // A comment may follow.
  const bool IsWhole = Result.Offset && (AScanner.IsAtEnd() || AScanner.Left().starts_with('('));
  return IsWhole ? std::optional(Result) : std::nullopt;
}

std::optional<TZonedTime> ReadManagementDate(TQuillonTextScanner AScanner) {
  TZonedTime Result;
  struct TPart {
    int TQuillonDateTimeFields::*Field;
    std::size_t Digits;
  };
  using T = TQuillonDateTimeFields;
  for (const auto& [Field, Digits] : {TPart{&T::Year, 4}, TPart{&T::Month, 2}, TPart{&T::Day, 2}, TPart{&T::Hour, 2},
                                      TPart{&T::Minute, 2}, TPart{&T::Second, 2}}) {
    const auto Value = AScanner.Field(Digits);
    if (!Value) {
      return std::nullopt;
    }
    Result.Fields.*Field = *Value;
  }
  const auto Microseconds = AScanner.TryPass('.') ? AScanner.Field(6) : std::nullopt;
  const bool IsWest = AScanner.TryPass('-');
  if (!Microseconds || !(IsWest || AScanner.TryPass('+'))) {
    return std::nullopt;
  }
  Result.Fields.Millisecond = *Microseconds / 1'000;
  if (AScanner.TryPass("***")) {
    return AScanner.IsAtEnd() ? std::optional(Result) : std::nullopt;
  }
  const auto Offset = AScanner.CountDigits() == 3 ? AScanner.Field(3) : std::nullopt;
  if (!Offset || !AScanner.IsAtEnd()) {
    return std::nullopt;
  }
  Result.Offset = IsWest ? -*Offset : *Offset;
  return Result;
}

double ToLocal(const std::optional<TZonedTime>& ATime, std::string_view AText) {
  const auto Fail = [AText] { throw EQuillonConvertError(QuillonText::Quoted(AText) + " ist kein gültiges Datum."); };
  if (!ATime) {
    Fail();
  }
  double Value = 0;
  try {
    Value = QuillonDateTime::Encode(ATime->Fields);
  } catch (const EQuillonConvertError&) {
    Fail();
  }
  constexpr std::int64_t MillisecondsPerMinute = TQuillonTimeSpan::MillisecondsPerMinute;
  return ATime->Offset ? QuillonDateTime::LocalFromInstant(QuillonDateTime::InstantOfUtc(Value) -
                                                           *ATime->Offset * MillisecondsPerMinute)
                       : Value;
}

}  // namespace

TQuillonDateTime TQuillonDateTime::FromWindowsTime(std::int64_t ACount) { return FromWindowsCount(ACount); }

std::int64_t TQuillonDateTime::ToWindowsTime() const { return WindowsCount(FValue); }

TQuillonDate TQuillonDate::FromWindowsTime(std::int64_t ACount) { return FromWindowsCount(ACount); }

std::int64_t TQuillonDate::ToWindowsTime() const { return WindowsCount(FValue); }

TQuillonDateTime TQuillonDateTime::FromRFC822(std::string_view AText) {
  return ToLocal(ReadMailDate(TQuillonTextScanner(AText)), AText);
}

TQuillonDateTime TQuillonDateTime::FromWmiFormat(std::string_view AText) {
  return ToLocal(ReadManagementDate(TQuillonTextScanner(AText)), AText);
}
