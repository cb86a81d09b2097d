#include <gtest/gtest.h>

#include <limits>

#include "PlanFixture.h"
#include "uDataUtils/TimeUnits.h"
#include "uPlandaten/Zeitrahmen.h"

namespace {

/// Two rows of 45 minutes, a break, and a row up to midnight; one row has no times yet, one has them in disorder.
class LessonRows : public testing::Test {
 protected:
  LessonRows() {
    Row("08:00", "08:45");
    Row("00:00", "00:00");
    Row("08:45", "09:30");
    Row("22:00", "00:00");
    Row("12:00", "11:00");
  }

  void Row(const std::string& AStart, const std::string& AFinish) {
    auto& Line = Plan.Add<TVELZeitrahmenzeile>(Frame.FZeilen);
    Line.FStart = QuillonDateTime::ParseTime(AStart);
    Line.FEnde = QuillonDateTime::ParseTime(AFinish);
  }
  std::string Unit(int AnIndex) {
    const TSpan Unit = uDataUtils::TimeUnit(Frame, AnIndex);
    return Show(At("2026-08-03") + Unit.Start).substr(11) + "-" + Show(At("2026-08-03") + Unit.Finish).substr(8);
  }
  std::string End(std::string_view AnEnd) {
    return Show(uDataUtils::ApplyBreakRule(Frame, At("2026-08-03T" + std::string(AnEnd)))).substr(11);
  }
  std::string Next(std::string_view ATime) {
    return Show(uDataUtils::SkipBreak(Frame, At("2026-08-03T" + std::string(ATime)))).substr(11);
  }

  TPlanFixture Plan{"2026-08-03", "2027-07-01"};
  TVELZeitrahmen& Frame = Plan.Add<TVELZeitrahmen>(Plan->FZeitrahmen);
};

TEST_F(LessonRows, PartARowAndTheLastOneTakesTheRest) {
  const struct {
    std::int32_t PerRow;
    int Count, Index;
    const char* Unit;
  } Cases[] = {
      {1, 5, 2, "08:45-03T09:30"},     {2, 10, 0, "08:00-03T08:22"},
      {2, 10, 1, "08:22-03T08:45"},    {2, 10, 7, "23:00-04"},
      {60, 300, 59, "08:00-03T08:45"},  // shorter than a minute: the last one is the row
      {0, 5, 0, "08:00-03T08:45"},     {std::numeric_limits<std::int32_t>::max(), 5 * 1440, 0, "08:00-03T08:00"}};
  for (const auto& Case : Cases) {
    Frame.FEinheitenProStd = Case.PerRow;
    EXPECT_EQ(uDataUtils::TimeUnitCount(Frame), Case.Count);
    EXPECT_EQ(Unit(Case.Index), Case.Unit) << Case.PerRow;
  }
}

TEST_F(LessonRows, AnEndInABreakMovesToTheUnitBefore) {
  for (const auto& [Time, Expected] :
       {std::pair("07:00", "07:00"), std::pair("08:00", "08:00"), std::pair("08:20", "08:20"),
        std::pair("08:45", "08:45"), std::pair("09:30", "09:30"), std::pair("12:30", "09:30"),
        std::pair("22:00", "09:30"), std::pair("23:59", "23:59")}) {
    EXPECT_EQ(End(Time), Expected);
  }
  Frame.FBookAdaptive = false;
  EXPECT_EQ(End("12:00"), "12:00");
}

TEST_F(LessonRows, ABreakIsSkippedFromItsBeginOnly) {
  for (const auto& [Time, Expected] : {std::pair("08:45", "08:45"), std::pair("09:30", "22:00"),
                                       std::pair("09:31", "09:31"), std::pair("08:22", "08:22")}) {
    EXPECT_EQ(Next(Time), Expected);
  }
}

}  // namespace
