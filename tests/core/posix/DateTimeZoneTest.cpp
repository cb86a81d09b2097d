#include <gtest/gtest.h>
#include <time.h>

#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>

#include "QuillonDateTime.h"
#include "platform/Clock.h"

namespace {

class LocalZone {
 public:
  explicit LocalZone(const char* AName) {
    if (const char* Present = std::getenv("TZ")) {
      FReplaced = Present;
    }
    setenv("TZ", AName, 1);
    Renew();
  }
  LocalZone(const LocalZone&) = delete;
  LocalZone& operator=(const LocalZone&) = delete;
  ~LocalZone() {
    if (FReplaced) {
      setenv("TZ", FReplaced->c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    Renew();
  }

 private:
  static void Renew() {
    tzset();
    QuillonDateTime::ForgetLocalOffsets();
  }

  std::optional<std::string> FReplaced;
};

class FixedClock final : public Platform::Clock {
 public:
  FixedClock(std::int64_t AUtcMilliseconds, int AnOffset) : FUtcMilliseconds(AUtcMilliseconds), FOffset(AnOffset) {}
  std::int64_t UtcMilliseconds() override { return FUtcMilliseconds; }
  int OffsetAt(std::int64_t /*AnInstant*/) override { return FOffset; }

 private:
  std::int64_t FUtcMilliseconds;
  int FOffset;
};

int OffsetAt(const char* AText) { return QuillonDateTime::LocalOffset(QuillonDateTime::ParseDateTime(AText)); }

std::string WithOffset(const char* AText) { return TQuillonDateTime::FromISO8601(AText).ToISO8601(true); }

constexpr std::int64_t UnixDay = 25569;

/// What the clocks on the wall showed, minute by minute, from the system's own conversion of UTC instants.
std::map<std::int64_t, int> ShownTimes(std::int64_t AFirst, std::int64_t ALast) {
  std::map<std::int64_t, int> Shown;
  for (std::int64_t Instant = AFirst; Instant <= ALast; Instant += 60) {
    const auto Time = static_cast<time_t>(Instant);
    tm Local{};
    localtime_r(&Time, &Local);
    Shown.emplace(Instant + Local.tm_gmtoff, static_cast<int>(Local.tm_gmtoff));  // the first occurrence stays
  }
  return Shown;
}

}  // namespace

TEST(DateTimeZone, EveryMinuteOfAYearHasTheOffsetTheWallClockHad) {
  const std::int64_t Start = TQuillonDateTime::Create(2026, 1, 1).ToUnixTime();
  const std::int64_t End = TQuillonDateTime::Create(2027, 1, 1).ToUnixTime();
  for (const char* Name : {"Europe/Berlin", "America/New_York", "Asia/Kolkata", "Australia/Lord_Howe"}) {
    SCOPED_TRACE(Name);
    const LocalZone Zone(Name);
    const auto Shown = ShownTimes(Start - 172'800, End + 172'800);
    int Before = 0;
    for (std::int64_t Wall = Start - 86'400; Wall < End; Wall += 60) {
      const auto Found = Shown.find(Wall);
      Before = Found != Shown.end() ? Found->second : Before;
      const double Value = static_cast<double>(UnixDay) + static_cast<double>(Wall) / 86'400.0;
      ASSERT_EQ(QuillonDateTime::LocalOffset(Value), Before) << TQuillonDateTime(Value).ToISO8601();
    }
  }
}

TEST(DateTimeZone, ChangesOfTheClocksInBerlin) {
  const LocalZone Zone("Europe/Berlin");
  EXPECT_EQ(WithOffset("2026-03-29T01:59:59.999Z"), "2026-03-29T01:59:59.999+01:00");
  EXPECT_EQ(WithOffset("2026-03-29T02:30:00.000Z"), "2026-03-29T02:30:00.000+01:00");  // never shown
  EXPECT_EQ(WithOffset("2026-03-29T03:00:00.000Z"), "2026-03-29T03:00:00.000+02:00");
  EXPECT_EQ(WithOffset("2026-10-25T02:00:00.000Z"), "2026-10-25T02:00:00.000+02:00");  // shown twice
  EXPECT_EQ(WithOffset("2026-10-25T02:59:59.999Z"), "2026-10-25T02:59:59.999+02:00");
  EXPECT_EQ(WithOffset("2026-10-25T03:00:00.000Z"), "2026-10-25T03:00:00.000+01:00");
  EXPECT_EQ(OffsetAt("1899-12-30"), 3600);

  std::string Time;
  QuillonDateTime::AppendTimeWithOffset(Time, 0.75);
  EXPECT_EQ(Time, "18:00:00.000+01:00");
}

TEST(DateTimeZone, OffsetsWestOfGreenwichAndOfOddMinutes) {
  {
    const LocalZone Zone("America/New_York");
    EXPECT_EQ(WithOffset("2026-07-01T12:00"), "2026-07-01T12:00:00.000-04:00");
    EXPECT_EQ(WithOffset("2026-11-01T01:30"), "2026-11-01T01:30:00.000-04:00");
    EXPECT_EQ(OffsetAt("1899-12-30"), -5 * 3600);
  }
  {
    const LocalZone Zone("America/St_Johns");
    EXPECT_EQ(WithOffset("2026-01-01T12:00"), "2026-01-01T12:00:00.000-03:30");
  }
  const LocalZone Zone("Asia/Kolkata");
  EXPECT_EQ(WithOffset("2026-07-01T12:00"), "2026-07-01T12:00:00.000+05:30");
  EXPECT_EQ(OffsetAt("1899-12-30"), 5 * 3600 + 21 * 60 + 10);  // mean time of Madras
  EXPECT_EQ(WithOffset("1899-12-30"), "1899-12-30T00:00:00.000+05:21");
}

TEST(DateTimeZone, ExtremeValuesHaveAnOffset) {
  const LocalZone Zone("UTC");
  for (const double Value : {-1e300, -693593.0, -0.5, 2958465.5, 1e300}) {
    EXPECT_EQ(QuillonDateTime::LocalOffset(Value), 0) << Value;
  }
}

TEST(DateTimeZone, NowIsTheLocalWallTime) {
  {
    FixedClock Clock(1'785'542'400'250, -(3 * 3600 + 1800));  // 2026-08-01T00:00:00.250 UTC
    const Platform::ClockReplacement Replacement(Clock);
    EXPECT_EQ(TQuillonDateTime(QuillonDateTime::Now()).ToISO8601(), "2026-07-31T20:30:00.250Z");
  }
  {
    FixedClock Clock(-1, 0);
    const Platform::ClockReplacement Replacement(Clock);
    EXPECT_EQ(TQuillonDateTime(QuillonDateTime::Now()).ToISO8601(), "1969-12-31T23:59:59.999Z");
  }
  EXPECT_GT(QuillonDateTime::Now(), QuillonDateTime::ParseDate("2024-01-01"));
}
