#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "QuillonDateTime.h"
#include "QuillonDateTimeFormat.h"

namespace {

std::string DateTimeText(double AValue) {
  std::string Text;
  QuillonDateTime::AppendDateTime(Text, AValue);
  return Text;
}

std::string TimeText(double AValue) {
  std::string Text;
  QuillonDateTime::AppendTime(Text, AValue);
  return Text;
}

}  // namespace

TEST(DateTime, CountsDaysFromTheEndOf1899) {
  EXPECT_EQ(QuillonDateTime::ParseDate("1899-12-30"), 0.0);
  EXPECT_EQ(QuillonDateTime::ParseDate("1900-01-01"), 2.0);
  EXPECT_EQ(QuillonDateTime::ParseDate("1970-01-01"), 25569.0);
  EXPECT_EQ(QuillonDateTime::ParseDate("2000-02-29"), 36585.0);
  EXPECT_EQ(QuillonDateTime::ParseDate("0001-01-01"), -693593.0);
  EXPECT_EQ(QuillonDateTime::ParseDate("9999-12-31"), 2958465.0);
  EXPECT_EQ(QuillonDateTime::ParseDateTime("2000-01-01T18:00:00.000Z"), 36526.75);
}

TEST(DateTime, WholeCalendarRunsDayByDay) {
  TQuillonDateTimeFields Expected{.Year = 1, .Month = 1, .Day = 1};
  int DayOfWeek = 1;  // 0001-01-01 is a Monday
  for (int Day = -693593; Day <= 2958465; ++Day) {
    ASSERT_EQ(QuillonDateTime::Decode(Day), Expected) << Day;
    ASSERT_EQ(QuillonDateTime::Encode(Expected), Day);
    ASSERT_EQ(QuillonDateTime::DayOfWeek(Day), DayOfWeek) << Day;
    DayOfWeek = DayOfWeek % 7 + 1;
    const bool IsLeapYear = (Expected.Year % 4 == 0 && Expected.Year % 100 != 0) || Expected.Year % 400 == 0;
    const bool IsShort = Expected.Month == 4 || Expected.Month == 6 || Expected.Month == 9 || Expected.Month == 11;
    const int LastDay = Expected.Month == 2 ? (IsLeapYear ? 29 : 28) : (IsShort ? 30 : 31);
    if (++Expected.Day > LastDay) {
      Expected.Day = 1;
      Expected.Month = Expected.Month % 12 + 1;
      Expected.Year += Expected.Month == 1 ? 1 : 0;
    }
  }
}

TEST(DateTime, EveryMillisecondOfADayKeepsItsText) {
  // Days on both sides of the zero day, near the precision's end, and today; a stride that is prime to all units.
  for (const char* Day : {"0001-01-01", "1899-12-29", "1899-12-30", "2026-08-01", "9999-12-31"}) {
    for (int Milliseconds = 0; Milliseconds < 86'400'000; Milliseconds += 997) {
      const double Value = QuillonDateTime::Encode({1899, 12, 30, Milliseconds / 3'600'000, Milliseconds / 60'000 % 60,
                                                    Milliseconds / 1'000 % 60, Milliseconds % 1'000});
      std::string Text = std::string(Day) + "T" + TimeText(Value);
      ASSERT_EQ(DateTimeText(QuillonDateTime::ParseDateTime(Text)), Text);
    }
  }
  const double Start = QuillonDateTime::ParseDateTime("2026-08-01T11:59:00.000Z");
  std::string Before = "2026-08-01T11:58:59.999Z";
  for (int Milliseconds = 0; Milliseconds < 120'000; ++Milliseconds) {
    const std::string Text = DateTimeText(Start + Milliseconds / 86'400'000.0);
    ASSERT_LT(Before, Text);
    Before = Text;
  }
  EXPECT_EQ(Before, "2026-08-01T12:00:59.999Z");
}

TEST(DateTime, BeforeTheZeroDayTheFractionIsStillTheTimeOfDay) {
  EXPECT_EQ(DateTimeText(-0.25), "1899-12-30T06:00:00.000Z");
  EXPECT_EQ(DateTimeText(-1.25), "1899-12-29T06:00:00.000Z");
  EXPECT_EQ(QuillonDateTime::ParseDateTime("1899-12-29T06:00:00.000Z"), -1.25);
  EXPECT_EQ(TQuillonDateTime(-1.25).AddHours(24).FValue, 0.25);
  EXPECT_EQ(TQuillonDateTime(0.25).AddDays(-1).FValue, -1.25);
}

TEST(DateTime, RoundsTheWholeValueToTheNearestMillisecond) {
  const double HalfMillisecond = 0.5 / 86'400'000;
  EXPECT_EQ(DateTimeText(46235 - 0.9 * HalfMillisecond), "2026-08-01T00:00:00.000Z");
  EXPECT_EQ(DateTimeText(46235 - 1.2 * HalfMillisecond), "2026-07-31T23:59:59.999Z");
}

TEST(DateTime, ValuesWithoutACalendarDayAreClamped) {
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(DateTimeText(std::nan("")), "1899-12-30T00:00:00.000Z");
  for (const double Value : {2958466.0, 1e18, 1e300, Infinity, std::nextafter(2958466.0, 0)}) {
    EXPECT_EQ(DateTimeText(Value), "9999-12-31T23:59:59.999Z") << Value;
  }
  for (const double Value : {-693594.0, -1e18, -1e300, -Infinity}) {
    EXPECT_EQ(DateTimeText(Value), "0001-01-01T00:00:00.000Z") << Value;
  }
  EXPECT_EQ(DateTimeText(std::nextafter(-693594.0, 0)), "0001-01-01T23:59:59.999Z");
}

TEST(DateTime, ShorterTextsLackTheirLaterFields) {
  const auto Parsed = [](const char* AText) { return DateTimeText(QuillonDateTime::ParseDateTime(AText)); };
  EXPECT_EQ(Parsed("2026"), "2026-01-01T00:00:00.000Z");
  EXPECT_EQ(Parsed("2026-08"), "2026-08-01T00:00:00.000Z");
  EXPECT_EQ(Parsed("2026-08-15"), "2026-08-15T00:00:00.000Z");
  EXPECT_EQ(Parsed("2026-08-15T"), "2026-08-15T00:00:00.000Z");
  EXPECT_EQ(Parsed("2026-08-15T07:45"), "2026-08-15T07:45:00.000Z");
  EXPECT_EQ(Parsed("2026-08-15T07:45:09"), "2026-08-15T07:45:09.000Z");
  EXPECT_EQ(Parsed("2026-08-15T07:45:09.250"), "2026-08-15T07:45:09.250Z");
  EXPECT_EQ(Parsed("2026-08-15T07:45:09.7Z"), "2026-08-15T07:45:09.007Z");
  EXPECT_EQ(Parsed("2026-08-15T07:45:09.250+02:00"), "2026-08-15T07:45:09.250Z");
  EXPECT_EQ(Parsed("2026-08-15T07:45:09-02:00"), "2026-08-15T07:45:09.000Z");
  EXPECT_EQ(Parsed("2026/08/15 07.45"), "2026-08-15T07:45:00.000Z");

  EXPECT_EQ(QuillonDateTime::ParseDateTime("0000-00-00T00:00:00.000Z"), 0.0);
  EXPECT_EQ(QuillonDateTime::ParseDateTime("0000-00-00"), 0.0);
  EXPECT_EQ(QuillonDateTime::ParseDate("0000-00-00"), 0.0);
  EXPECT_EQ(QuillonDateTime::ParseTime("18:00"), 0.75);
  EXPECT_EQ(QuillonDateTime::ParseTime("18:00:00.000Z"), 0.75);
  EXPECT_EQ(TimeText(QuillonDateTime::ParseTime("23:59:59.999+01:00")), "23:59:59.999Z");
}

TEST(DateTime, ImpossibleTextsAreRefusedByName) {
  for (const char* Text : {"",
                           "202x",
                           "2026-",
                           "2026-13-01",
                           "2026-02-29",
                           "2026-00-10",
                           "2026-01-00",
                           "0000-01-01",
                           "0000",
                           "-026-01",
                           "2026-+1-01",
                           "2026-01- 1",
                           "2026-01-01T24:00",
                           "2026-01-01T12",
                           "2026-01-01T12:60",
                           "2026-01-01T12:00:60",
                           "2026-01-01T12:00:00.1000",
                           "2026-01-01T12:00:00.x00",
                           "2026-01-01T12:00:00..Z",
                           "2026-01-01T12:00:00.99999999999999999999Z",
                           "2026-01-01T12:00:00.Z+"}) {
    try {
      QuillonDateTime::ParseDateTime(Text);
      ADD_FAILURE() << "accepted: " << Text;
    } catch (const EQuillonConvertError& Error) {
      EXPECT_NE(std::string(Error.what()).find("\"" + std::string(Text) + "\""), std::string::npos) << Error.what();
    }
  }
  EXPECT_THROW(QuillonDateTime::ParseDate("2026-04-31"), EQuillonConvertError);
  EXPECT_THROW(QuillonDateTime::ParseTime("7:45"), EQuillonConvertError);
  EXPECT_THROW(QuillonDateTime::ParseTime(""), EQuillonConvertError);
  EXPECT_THROW(QuillonDateTime::Encode({2025, 2, 29, 0, 0, 0, 0}), EQuillonConvertError);
  EXPECT_THROW(QuillonDateTime::Encode({2025, 1, 1, 24, 0, 0, 0}), EQuillonConvertError);
  EXPECT_THROW(QuillonDateTime::Encode({10000, 1, 1, 0, 0, 0, 0}), EQuillonConvertError);
}

TEST(DateTime, MovesByCalendarUnits) {
  const auto Date = TQuillonDate::Create(2024, 1, 31);
  EXPECT_EQ(Date.AddMonths(1).ToISO8601(), "2024-02-29");
  EXPECT_EQ(Date.AddMonths(-11).ToISO8601(), "2023-02-28");
  EXPECT_EQ(Date.AddYears(-1).AddDays(1).ToISO8601(), "2023-02-01");
  EXPECT_EQ(Date.AddWeeks(-5).ToISO8601(), "2023-12-27");
  EXPECT_EQ((Date + TQuillonTimeSpan::Create(1, 23, 0, 0, 0)).ToISO8601(), "2024-02-01");
  EXPECT_EQ(Date.Since(TQuillonDate::Create(2023, 1, 31)).ToString(tsfInterval), "365 Tage");
  EXPECT_THROW((void)TQuillonDate::Create(2023, 1, 1).Since(Date), EQuillonDateTimeError);

  const auto Time = TQuillonDateTime::Create(2024, 2, 29, 23, 59, 59, 999);
  EXPECT_EQ(Time.AddMilliseconds(1).ToISO8601(), "2024-03-01T00:00:00.000Z");
  EXPECT_EQ(Time.AddYears(1).ToISO8601(), "2025-02-28T23:59:59.999Z");
  EXPECT_EQ((Time - TQuillonTimeSpan::Create(48, 0, 0, 0)).ToISO8601(), "2024-02-27T23:59:59.999Z");
  EXPECT_EQ(TQuillonDateTime::FromUnixTime(1'709'251'199).ToISO8601(), "2024-02-29T23:59:59.000Z");
  EXPECT_EQ(Time.ToUnixTime(), 1'709'251'199);

  constexpr auto Far = std::numeric_limits<std::int64_t>::max();
  EXPECT_THROW((void)Time.AddYears(7976), EQuillonDateTimeError);
  EXPECT_THROW((void)Time.AddYears(-2024), EQuillonDateTimeError);
  EXPECT_THROW((void)Time.AddYears(Far), EQuillonDateTimeError);
  EXPECT_THROW((void)Time.AddDays(Far), EQuillonDateTimeError);
  EXPECT_THROW((void)Time.AddMilliseconds(-Far), EQuillonDateTimeError);
  EXPECT_THROW((void)(Time + TQuillonTimeSpan(std::numeric_limits<std::uint64_t>::max())), EQuillonDateTimeError);
}

TEST(DateTime, ADateHasNoTimeOfDay) {
  EXPECT_EQ(TQuillonDate(46235.75).FValue, 46235.0);
  EXPECT_EQ(TQuillonDate(-1.25).FValue, -1.0);
  EXPECT_TRUE(std::isnan(TQuillonDate(std::nan("")).FValue));
  EXPECT_EQ(TQuillonDate(1e300).FValue, 1e300);
  EXPECT_EQ(TQuillonDate::MonthFromOrdinal(12), TQuillonMonth::December);
  EXPECT_EQ(TQuillonDate::DayOfWeekFromOrdinal(1), TQuillonDayOfWeek::Sunday);
  EXPECT_EQ(TQuillonDate::DayOfMonthFromOrdinal(31), TQuillonDayOfMonth::Day31);
  EXPECT_EQ(TQuillonDate::WeekOfMonthFromOrdinal(6), TQuillonWeekOfMonth::LastWeek);
  EXPECT_THROW(TQuillonDate::MonthFromOrdinal(13), EQuillonDateTimeError);
  EXPECT_THROW(TQuillonDate::DayOfMonthFromOrdinal(0), EQuillonDateTimeError);
}

TEST(DateTime, PicturesAreFilledInAndReadBack) {
  const auto Time = TQuillonDateTime::Create(2026, 3, 7, 8, 5, 9, 4);
  EXPECT_EQ(Time.ToString(), "07.03.2026 08:05:09");
  EXPECT_EQ(Time.ToString("dddd, d. mmmm yyyy"), "Samstag, 7. März 2026");
  EXPECT_EQ(Time.ToString("ddd d/m/yy h:m:s.zzz"), "Sa 7.3.26 8:5:9.004");
  EXPECT_EQ(Time.ToString("mm hh:mm mm"), "03 08:05 03");
  EXPECT_EQ(Time.ToString("'yyyy' \"unclosed mm"), "yyyy unclosed mm");
  EXPECT_EQ(Time.ToString("-yyyyy-"), "-02026-");

  TQuillonFormatSettings American;
  American.DateSeparator = '/';
  American.ShortDateFormat = "m/d/yyyy";
  EXPECT_EQ(Time.ToString(American), "3/7/2026 08:05:09");
  EXPECT_EQ(TQuillonDateTime::Create("3/7/2026 08:05:09.004", American).FValue, Time.FValue);
  EXPECT_EQ(TQuillonDate::Create(" 7.3.2026 ").ToISO8601(), "2026-03-07");
  EXPECT_EQ(TQuillonDate::Create("7.3.26").ToISO8601(), "2026-03-07");
  for (const char* Text :
       {"", "7.3", "7.3.", "7-3-2026", "31.2.2026", "7.3.2026 8", "7.3.2026 8:61", "7.3.2026x", "99999999999.1.2026"}) {
    EXPECT_THROW(TQuillonDateTime::Create(Text), EQuillonConvertError) << Text;
  }
}

TEST(DateTime, WindowsTimeCountsFrom1601) {
  struct Pair {
    std::int64_t Count;
    const char* Text;
  };
  for (const auto& [Count, Text] :
       {Pair{0, "1601-01-01T00:00:00.000Z"}, Pair{116'444'736'000'000'000, "1970-01-01T00:00:00.000Z"},
        Pair{-10'000, "1600-12-31T23:59:59.999Z"}, Pair{133'000'000'007'770'000, "2022-06-18T04:26:40.777Z"}}) {
    EXPECT_EQ(TQuillonDateTime::FromWindowsTime(Count).ToISO8601(), Text);
    EXPECT_EQ(TQuillonDateTime::FromISO8601(Text).ToWindowsTime(), Count);
  }
  EXPECT_EQ(TQuillonDate::FromWindowsTime(116'444'736'000'000'000).ToISO8601(), "1970-01-01");
}

TEST(DateTime, DatesOfMailsAndOfTheManagementServices) {
  // In whatever zone this runs: what is compared is the instant.
  const auto Instant = [](double ALocal) {
    return TQuillonDateTime(QuillonDateTime::UtcFromInstant(QuillonDateTime::InstantOfLocal(ALocal))).ToISO8601();
  };
  for (const auto& [Text, Utc] : std::initializer_list<std::pair<const char*, const char*>>{
           {"Sat, 01 Aug 2026 07:45:30 +0200", "2026-08-01T05:45:30.000Z"},
           {"1 aug 26 07:45 -0330 (summer)", "2026-08-01T11:15:00.000Z"},
           {"Thu, 1 Jan 98 00:00:60 PST", "1998-01-01T08:00:59.000Z"},
           {"1 Jan 2026 00:00 GMT", "2026-01-01T00:00:00.000Z"}}) {
    EXPECT_EQ(Instant(TQuillonDateTime::FromRFC822(Text)), Utc) << Text;
  }
  for (const char* Text : {"", "Sat", "Foo, 1 Aug 2026 07:45 GMT", "1 Xyz 2026 07:45 GMT", "31 Feb 2026 07:45 GMT",
                           "1 Aug 2026 7 GMT", "1 Aug 2026 07:45 +02", "1 Aug 2026 07:45 +0200x", "1 Aug 6 07:45 GMT",
                           "1 Aug 2026 25:00 GMT", "1 Aug 99999999999 07:45"}) {
    EXPECT_THROW(TQuillonDateTime::FromRFC822(Text), EQuillonConvertError) << Text;
  }
  EXPECT_EQ(Instant(TQuillonDateTime::FromWmiFormat("20260801074530.250999+120")), "2026-08-01T05:45:30.250Z");
  EXPECT_EQ(Instant(TQuillonDateTime::FromWmiFormat("20260801074530.000000-060")), "2026-08-01T08:45:30.000Z");
  EXPECT_EQ(TQuillonDateTime::FromWmiFormat("20260801074530.000000+***").ToISO8601(), "2026-08-01T07:45:30.000Z");
  for (const char* Text : {"", "20260801", "20260801074530.000000", "20260801074530.000000+12", "2026080107453",
                           "20261301074530.000000+120", "00000003000000.000000:000", "20260801074530.000000+1200"}) {
    EXPECT_THROW(TQuillonDateTime::FromWmiFormat(Text), EQuillonConvertError) << Text;
  }
}
