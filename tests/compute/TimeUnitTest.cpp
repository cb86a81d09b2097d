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
  EXPECT_EQ(uDataUtils::TimeUnitCount(Frame), 5);
  EXPECT_EQ(Unit(2), "08:45-03T09:30");
  Frame.FEinheitenProStd = 2;
  EXPECT_EQ(uDataUtils::TimeUnitCount(Frame), 10);
  EXPECT_EQ(Unit(0), "08:00-03T08:22");
  EXPECT_EQ(Unit(1), "08:22-03T08:45");
  EXPECT_EQ(Unit(4), "08:45-03T09:07");
  EXPECT_EQ(Unit(6), "22:00-03T23:00");
  EXPECT_EQ(Unit(7), "23:00-04");
  Frame.FEinheitenProStd = 60;
  EXPECT_EQ(Unit(59), "08:00-03T08:45");  // shorter than a minute: the last one is the row
  Frame.FEinheitenProStd = 0;
  EXPECT_EQ(uDataUtils::TimeUnitCount(Frame), 5);
  EXPECT_EQ(Unit(0), "08:00-03T08:45");
  Frame.FEinheitenProStd = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(uDataUtils::TimeUnitCount(Frame), 5 * 1440);
}

TEST_F(LessonRows, AnEndInABreakMovesToTheUnitBefore) {
  EXPECT_EQ(End("07:00"), "07:00");
  EXPECT_EQ(End("08:00"), "08:00");
  EXPECT_EQ(End("08:20"), "08:20");
  EXPECT_EQ(End("08:45"), "08:45");
  EXPECT_EQ(End("09:30"), "09:30");
  EXPECT_EQ(End("12:30"), "09:30");
  EXPECT_EQ(End("22:00"), "09:30");
  EXPECT_EQ(End("23:59"), "23:59");
  Frame.FBookAdaptive = false;
  EXPECT_EQ(End("12:00"), "12:00");
}

TEST_F(LessonRows, ABreakIsSkippedFromItsBeginOnly) {
  EXPECT_EQ(Next("08:45"), "08:45");
  EXPECT_EQ(Next("09:30"), "22:00");
  EXPECT_EQ(Next("09:31"), "09:31");
  EXPECT_EQ(Next("08:22"), "08:22");
}

}  // namespace
