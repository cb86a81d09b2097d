#include <gtest/gtest.h>

#include <limits>
#include <optional>

#include "QuillonDateTimeSpan.h"

namespace {

std::optional<std::uint64_t> Read(std::string_view AText) {
  TQuillonTimeSpan Span(77);
  if (!TQuillonTimeSpan::FromString(AText, Span)) {
    EXPECT_EQ(Span.FValue, 77U) << AText;
    return std::nullopt;
  }
  return Span.FValue;
}

}  // namespace

TEST(TimeSpan, TextsNameTheSpan) {
  const TQuillonTimeSpan DayAndHour(90'000'000);
  EXPECT_EQ(DayAndHour.ToString(tsfMinSec), "1.01:00:00");
  EXPECT_EQ(DayAndHour.ToString(tsfInterval), "1 Tag");
  EXPECT_EQ(TQuillonTimeSpan::Create(2, 3, 4, 5).ToString(tsfMinSec), "02:03:04");
  EXPECT_EQ(TQuillonTimeSpan::Create(2, 3, 4, 5).ToString(tsfMinSecMSec), "02:03:04:05");
  EXPECT_EQ(TQuillonTimeSpan::Create(10, 2, 3, 4, 567).ToString(tsfMinSecMSec), "10.02:03:04:567");
  EXPECT_EQ(DefaultTimeSpan.ToString(tsfInterval), "");
  EXPECT_EQ(TQuillonTimeSpan(7'200'000).ToString(tsfInterval), "2 Stunden");
  EXPECT_EQ(TQuillonTimeSpan(119'999).ToString(tsfInterval), "1 Minute");
  EXPECT_EQ(TQuillonTimeSpan(59'999).ToString(tsfInterval), "59 Sekunden");
  EXPECT_EQ(TQuillonTimeSpan(1).ToString(tsfInterval), "1 Millisekunde");
}

TEST(TimeSpan, ReadsItsOwnTexts) {
  for (const std::uint64_t Value : {std::uint64_t{0}, std::uint64_t{999}, std::uint64_t{90'061'001},
                                    std::uint64_t{86'399'999}, std::numeric_limits<std::uint64_t>::max()}) {
    EXPECT_EQ(Read(TQuillonTimeSpan(Value).ToString(tsfMinSecMSec)), Value);
    EXPECT_EQ(Read(TQuillonTimeSpan(Value).ToString(tsfMinSec)), Value - Value % 1000);
  }
  EXPECT_EQ(Read("3 Tage"), 259'200'000U);
  EXPECT_EQ(Read("1Stunde"), 3'600'000U);
  EXPECT_EQ(Read("5 Sekunden"), 5'000U);
  EXPECT_EQ(Read("5 Millisekunden"), 5U);
  EXPECT_EQ(Read("100:00:00"), 360'000'000U);
  for (const char* Text :
       {"", "Tage", "-1 Tag", "5", "5 Wochen", "1:", "1:2", "1:2:", "1:2:3:", "1.", "1.2", "1.24:00:00", "1:60:00",
        "1:00:00:1000", "99999999999999999999 Tage", "18446744073709551615 Tage"}) {
    EXPECT_EQ(Read(Text), std::nullopt) << Text;
  }
}

TEST(TimeSpan, IsNeverNegativeNorTooLong) {
  const TQuillonTimeSpan Minute(60'000);
  EXPECT_EQ(Minute.AddSeconds(-60), DefaultTimeSpan);
  EXPECT_EQ(Minute.AddDays(1).AddHours(-24) - Minute, DefaultTimeSpan);
  EXPECT_GT(Minute.AddMinutes(1), Minute);
  constexpr auto Most = std::numeric_limits<std::int64_t>::max();
  constexpr auto Least = std::numeric_limits<std::int64_t>::min();
  const auto MessageOf = [](auto ACall) -> std::string {
    try {
      ACall();
    } catch (const EQuillonDateTimeError& Error) {
      return Error.what();
    }
    return "";
  };
  EXPECT_EQ(MessageOf([&] { (void)Minute.AddMilliseconds(-60'001); }), "Dauer ist ungültig.");
  EXPECT_EQ(MessageOf([&] { (void)Minute.AddDays(Least); }), "Dauer ist ungültig.");
  EXPECT_EQ(MessageOf([&] { (void)(Minute - Minute.AddMilliseconds(1)); }), "Dauer ist ungültig.");
  EXPECT_EQ(MessageOf([&] { (void)Minute.AddDays(Most); }), "Argument is out of range.");
  EXPECT_EQ(MessageOf([&] { (void)TQuillonTimeSpan::Create(1, 24, 0, 0, 0); }), "Argument is out of range.");
  EXPECT_EQ(MessageOf([&] { (void)TQuillonTimeSpan::Create(-1, 0); }), "Argument is out of range.");
  EXPECT_EQ(MessageOf([&] { (void)(TQuillonTimeSpan(~0ULL) + Minute); }), "Argument is out of range.");
}
