#include "QuillonDateTime.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "QuillonDateTimeCalendar.h"
#include "QuillonText.h"
#include "QuillonTextScanner.h"

namespace {

using QuillonDateTimeCalendar::DayOf;
using QuillonDateTimeCalendar::FirstDay;
using QuillonDateTimeCalendar::Join;
using QuillonDateTimeCalendar::LastDay;
using QuillonDateTimeCalendar::MillisecondsPerDay;
using QuillonDateTimeCalendar::Moment;
using QuillonDateTimeCalendar::Split;

/// The calendar's 400 years are counted from 1 March of a year divisible by 400, so that a leap day comes last.
constexpr std::int64_t DaysPerEra = 146'097;
/// Days from 0000-03-01 to 1899-12-30.
constexpr std::int64_t EraShift = 693'899;

struct Date {
  int Year;
  int Month;
  int Day;
};

/// "days_from_civil" backwards, Howard Hinnant, "chrono-Compatible Low-Level Date Algorithms".
Date DateOf(std::int64_t ADay) {
  const std::int64_t Days = ADay + EraShift;
  const std::int64_t Era = (Days >= 0 ? Days : Days - (DaysPerEra - 1)) / DaysPerEra;
  const auto DayOfEra = static_cast<unsigned>(Days - Era * DaysPerEra);
  const unsigned YearOfEra = (DayOfEra - DayOfEra / 1460 + DayOfEra / 36524 - DayOfEra / 146096) / 365;
  const unsigned DayOfYear = DayOfEra - (365 * YearOfEra + YearOfEra / 4 - YearOfEra / 100);
  const unsigned MonthFromMarch = (5 * DayOfYear + 2) / 153;
  const unsigned Day = DayOfYear - (153 * MonthFromMarch + 2) / 5 + 1;
  const unsigned Month = MonthFromMarch < 10 ? MonthFromMarch + 3 : MonthFromMarch - 9;
  const auto Year = static_cast<int>(Era * 400) + static_cast<int>(YearOfEra) + (Month <= 2 ? 1 : 0);
  return {Year, static_cast<int>(Month), static_cast<int>(Day)};
}

bool IsPossible(const TQuillonDateTimeFields& AFields) {
  return AFields.Year >= 1 && AFields.Year <= 9999 && AFields.Month >= 1 && AFields.Month <= 12 && AFields.Day >= 1 &&
         AFields.Day <= QuillonDateTimeCalendar::DaysOfMonth(AFields.Year, AFields.Month) && AFields.Hour >= 0 &&
         AFields.Hour <= 23 && AFields.Minute >= 0 && AFields.Minute <= 59 && AFields.Second >= 0 &&
         AFields.Second <= 59 && AFields.Millisecond >= 0 && AFields.Millisecond <= 999;
}

std::int64_t TimeOf(const TQuillonDateTimeFields& AFields) {
  return ((AFields.Hour * 60 + AFields.Minute) * 60 + AFields.Second) * std::int64_t{1000} + AFields.Millisecond;
}

double EncodePossible(const TQuillonDateTimeFields& AFields) {
  return Join({DayOf(AFields.Year, AFields.Month, AFields.Day), TimeOf(AFields)});
}

[[noreturn]] void ThrowConvertError(std::string_view AText, std::string_view AWanted) {
  throw EQuillonConvertError(QuillonText::Quoted(AText) + " ist " + std::string(AWanted) + ".");
}

/// Reads fields at fixed places, whatever stands between them.
class FieldReader {
 public:
  FieldReader(std::string_view AText, std::string_view AWanted) : FText(AText), FWanted(AWanted), FScanner(AText) {}

  void ReadDate(TQuillonDateTimeFields& AFields) {
    AFields.Year = Number(4);
    AFields.Month = FScanner.IsAtEnd() ? 1 : NextNumber(2);
    AFields.Day = FScanner.IsAtEnd() ? 1 : NextNumber(2);
  }

  void ReadTime(TQuillonDateTimeFields& AFields) {
    constexpr std::size_t SecondsLength = 3;  // with the sign ahead
    AFields.Hour = Number(2);
    AFields.Minute = NextNumber(2);
    if (FScanner.Left().size() < SecondsLength) {
      return;
    }
    AFields.Second = NextNumber(2);
    if (FScanner.Left().size() > 1 && FScanner.TryPass('.')) {
      AFields.Millisecond = Number(FScanner.CountDigits());
      constexpr std::string_view ZoneSigns = "Z+-";
      if (!FScanner.IsAtEnd() && ZoneSigns.find(FScanner.Left().front()) == std::string_view::npos) {
        Fail();
      }
    }
  }

  /// What is behind the next character. @return false where there is nothing
  bool PassOne() {
    FScanner.Skip(1);
    return !FScanner.IsAtEnd();
  }

  [[noreturn]] void Fail() const { ThrowConvertError(FText, FWanted); }

 private:
  int Number(std::size_t ACount) {
    const auto Value = FScanner.Field(ACount);
    return Value ? *Value : (Fail(), 0);
  }
  int NextNumber(std::size_t ACount) {
    FScanner.Skip(1);
    return Number(ACount);
  }

  std::string_view FText;
  std::string_view FWanted;
  TQuillonTextScanner FScanner;
};

template <int Digits>
char* PutNumber(char* ATarget, int AValue) {
  for (int Place = Digits - 1; Place >= 0; --Place) {
    ATarget[Place] = static_cast<char>('0' + AValue % 10);
    AValue /= 10;
  }
  return ATarget + Digits;
}

char* PutDate(char* ATarget, std::int64_t ADay) {
  const Date Fields = DateOf(ADay);
  ATarget = PutNumber<4>(ATarget, Fields.Year);
  *ATarget++ = '-';
  ATarget = PutNumber<2>(ATarget, Fields.Month);
  *ATarget++ = '-';
  return PutNumber<2>(ATarget, Fields.Day);
}

/// Puts "hh:nn:ss.zzz".
char* PutTime(char* ATarget, std::int64_t AMilliseconds) {
  const auto Milliseconds = static_cast<int>(AMilliseconds);
  ATarget = PutNumber<2>(ATarget, Milliseconds / 3'600'000);
  *ATarget++ = ':';
  ATarget = PutNumber<2>(ATarget, Milliseconds / 60'000 % 60);
  *ATarget++ = ':';
  ATarget = PutNumber<2>(ATarget, Milliseconds / 1'000 % 60);
  *ATarget++ = '.';
  return PutNumber<3>(ATarget, Milliseconds % 1'000);
}

char* PutOffset(char* ATarget, double AValue) {
  const int Offset = QuillonDateTime::LocalOffset(AValue);
  const int Minutes = std::abs(Offset) / 60;
  *ATarget++ = Offset < 0 ? '-' : '+';
  ATarget = PutNumber<2>(ATarget, Minutes / 60);
  *ATarget++ = ':';
  return PutNumber<2>(ATarget, Minutes % 60);
}

/// Long enough for "2026-08-01T07:45:00.000+02:00".
using TextBuffer = std::array<char, 32>;

char* PutDateTime(char* ATarget, double AValue) {
  const Moment Time = Split(AValue);
  ATarget = PutDate(ATarget, Time.Day);
  *ATarget++ = 'T';
  return PutTime(ATarget, Time.Milliseconds);
}

}  // namespace

namespace QuillonDateTimeCalendar {

Moment Split(double AValue) {
  if (std::isnan(AValue)) {
    return {};
  }
  if (AValue <= static_cast<double>(FirstDay - 1)) {
    return {FirstDay, 0};
  }
  if (AValue >= static_cast<double>(LastDay + 1)) {
    return {LastDay, MillisecondsPerDay - 1};
  }
  const std::int64_t Milliseconds = std::llrint(AValue * static_cast<double>(MillisecondsPerDay));
  const Moment Result{Milliseconds / MillisecondsPerDay, std::abs(Milliseconds) % MillisecondsPerDay};
  if (Result.Day < FirstDay || Result.Day > LastDay) {
    return Result.Day < FirstDay ? Moment{FirstDay, MillisecondsPerDay - 1} : Moment{LastDay, MillisecondsPerDay - 1};
  }
  return Result;
}

double Join(Moment AMoment) {
  const auto Day = static_cast<double>(AMoment.Day);
  const double Time = static_cast<double>(AMoment.Milliseconds) / static_cast<double>(MillisecondsPerDay);
  return AMoment.Day < 0 ? Day - Time : Day + Time;
}

Moment FromAbsolute(std::int64_t AMilliseconds) {
  std::int64_t Day = AMilliseconds / MillisecondsPerDay;
  std::int64_t Rest = AMilliseconds % MillisecondsPerDay;
  if (Rest < 0) {
    Rest += MillisecondsPerDay;
    --Day;
  }
  return {Day, Rest};
}

std::int64_t DayOf(int AYear, int AMonth, int ADay) {
  const int Year = AMonth <= 2 ? AYear - 1 : AYear;
  const std::int64_t Era = (Year >= 0 ? Year : Year - 399) / 400;
  const auto YearOfEra = static_cast<unsigned>(Year - Era * 400);
  const auto MonthFromMarch = static_cast<unsigned>(AMonth > 2 ? AMonth - 3 : AMonth + 9);
  const unsigned DayOfYear = (153 * MonthFromMarch + 2) / 5 + static_cast<unsigned>(ADay) - 1;
  const unsigned DayOfEra = YearOfEra * 365 + YearOfEra / 4 - YearOfEra / 100 + DayOfYear;
  return Era * DaysPerEra + DayOfEra - EraShift;
}

int DaysOfMonth(int AYear, int AMonth) {
  constexpr std::array<int, 12> Days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool IsLeapYear = AYear % 4 == 0 && (AYear % 100 != 0 || AYear % 400 == 0);
  return AMonth == 2 && IsLeapYear ? 29 : Days[static_cast<std::size_t>(AMonth - 1)];
}

}  // namespace QuillonDateTimeCalendar

namespace QuillonDateTime {

double Encode(const TQuillonDateTimeFields& AFields) {
  if (!IsPossible(AFields)) {
    std::string Text;
    for (const int Field : {AFields.Year, AFields.Month, AFields.Day, AFields.Hour, AFields.Minute, AFields.Second,
                            AFields.Millisecond}) {
      Text.append(Text.empty() ? "" : " ").append(std::to_string(Field));
    }
    ThrowConvertError(Text, "kein gültiger Zeitpunkt");
  }
  return EncodePossible(AFields);
}

TQuillonDateTimeFields Decode(double AValue) {
  const Moment Time = Split(AValue);
  const Date Fields = DateOf(Time.Day);
  const auto Milliseconds = static_cast<int>(Time.Milliseconds);
  return {Fields.Year,
          Fields.Month,
          Fields.Day,
          Milliseconds / 3'600'000,
          Milliseconds / 60'000 % 60,
          Milliseconds / 1'000 % 60,
          Milliseconds % 1'000};
}

double ParseDateTime(std::string_view AText) {
  FieldReader Reader(AText, "kein gültiger Zeitpunkt");
  TQuillonDateTimeFields Fields;
  Reader.ReadDate(Fields);
  if (Reader.PassOne()) {
    Reader.ReadTime(Fields);
  }
  if (IsPossible(Fields)) {
    return EncodePossible(Fields);
  }
  if (Fields != TQuillonDateTimeFields{}) {
    Reader.Fail();
  }
  return 0;
}

double ParseDate(std::string_view AText) {
  FieldReader Reader(AText, "kein gültiges Datum");
  TQuillonDateTimeFields Fields;
  Reader.ReadDate(Fields);
  if (IsPossible(Fields)) {
    return EncodePossible(Fields);
  }
  if (Fields != TQuillonDateTimeFields{}) {
    Reader.Fail();
  }
  return 0;
}

double ParseTime(std::string_view AText) {
  FieldReader Reader(AText, "keine gültige Uhrzeit");
  TQuillonDateTimeFields Fields{.Year = 1899, .Month = 12, .Day = 30};
  Reader.ReadTime(Fields);
  if (!IsPossible(Fields)) {
    Reader.Fail();
  }
  return EncodePossible(Fields);
}

void AppendDateTime(std::string& ATarget, double AValue) {
  TextBuffer Buffer;
  char* End = PutDateTime(Buffer.data(), AValue);
  *End++ = 'Z';
  ATarget.append(Buffer.data(), End);
}

void AppendDate(std::string& ATarget, double AValue) {
  TextBuffer Buffer;
  ATarget.append(Buffer.data(), PutDate(Buffer.data(), Split(AValue).Day));
}

void AppendTime(std::string& ATarget, double AValue) {
  TextBuffer Buffer;
  char* End = PutTime(Buffer.data(), Split(AValue).Milliseconds);
  *End++ = 'Z';
  ATarget.append(Buffer.data(), End);
}

void AppendDateTimeWithOffset(std::string& ATarget, double AValue) {
  TextBuffer Buffer;
  char* const End = PutDateTime(Buffer.data(), AValue);
  ATarget.append(Buffer.data(), PutOffset(End, AValue));
}

void AppendTimeWithOffset(std::string& ATarget, double AValue) {
  TextBuffer Buffer;
  char* const End = PutTime(Buffer.data(), Split(AValue).Milliseconds);
  ATarget.append(Buffer.data(), PutOffset(End, AValue));
}

int DayOfWeek(double AValue) {
  constexpr std::int64_t FirstMonday = 2;  // 1900-01-01
  const std::int64_t FromMonday = (Split(AValue).Day - FirstMonday) % 7;
  return static_cast<int>(FromMonday < 0 ? FromMonday + 7 : FromMonday) + 1;
}

}  // namespace QuillonDateTime
