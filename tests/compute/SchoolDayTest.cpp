#include <gtest/gtest.h>

#include <limits>

#include "Growth.h"
#include "PlanFixture.h"
#include "uDataUtils/Publishing.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Vertretungen.h"

namespace {

/// Christmas from Thursday, 24 December, to Wednesday, 6 January.
class SchoolYear : public testing::Test {
 protected:
  SchoolYear() { Plan.Free("2026-12-24", "2027-01-07"); }

  std::string Move(int ACount, std::string_view ADate) {
    return Show(uDataUtils::MoveSchoolDays(Plan.Context(), ACount, At("1990-01-01"), At(ADate)));
  }
  bool IsSchoolDay(std::string_view ADay) { return uDataUtils::IsSchoolDay(Plan.Context(), At(ADay)); }

  TPlanFixture Plan{"2026-12-07", "2027-01-29"};
};

TEST_F(SchoolYear, DaysAreCountedOverHolidaysAndWeekends) {
  EXPECT_EQ(Move(1, "2026-12-23T10:00"), "2027-01-07");
  EXPECT_EQ(Move(3, "2026-12-23"), "2027-01-11");
  EXPECT_EQ(Move(-1, "2027-01-07"), "2026-12-23");
  EXPECT_EQ(Move(-3, "2027-01-10"), "2026-12-23");
  EXPECT_EQ(Move(0, "2026-12-25T10:00"), "2026-12-25");
}

TEST_F(SchoolYear, AWalkEndsWithTheTimetable) {
  EXPECT_EQ(Move(5, "2027-01-28"), "2027-01-29");
  EXPECT_EQ(Move(1, "2027-01-29"), "1990-01-01");
  EXPECT_EQ(Move(-2, "2026-12-08"), "2026-12-07");
  EXPECT_EQ(Move(1, "2026-08-01"), "1990-01-01");
  Plan.Settings().FStundenplanZeitraumVon = At("1900-01-01");
  Plan.Settings().FStundenplanZeitraumBis = At("9999-12-31");
  EXPECT_EQ(Move(std::numeric_limits<int>::max(), "2026-12-08"), "9999-12-31");
  EXPECT_EQ(Move(std::numeric_limits<int>::min(), "2026-12-08"), "1900-01-01");
}

TEST_F(SchoolYear, OnlyWholeDaysForAllAreFree) {
  EXPECT_FALSE(IsSchoolDay("2026-12-24T12:00"));
  EXPECT_FALSE(IsSchoolDay("2027-01-06"));
  EXPECT_TRUE(IsSchoolDay("2027-01-07"));
  Plan.Free("2027-01-18T08:00", "2027-01-19T23:59");
  EXPECT_EQ(Move(1, "2027-01-15"), "2027-01-20") << "a whole day has no times of day";
  TVELKalendereintrag& Entry = Plan.Free("2027-01-11", "2027-01-11");
  EXPECT_FALSE(IsSchoolDay("2027-01-11"));
  Entry.FGanztaegig = false;
  EXPECT_TRUE(IsSchoolDay("2027-01-11"));
  Entry.FGanztaegig = true;
  Entry.FUnterrichtsfrei = false;
  EXPECT_TRUE(IsSchoolDay("2027-01-11"));
  Entry.FUnterrichtsfrei = true;
  Plan.Invite(Entry, Plan.Add<TVELLehrer>(Plan->FLehrer));
  EXPECT_TRUE(IsSchoolDay("2027-01-11"));

  EXPECT_FALSE(IsSchoolDay("2027-01-16"));
  Plan.Settings().FWochenstart = velSaturday;
  Plan.Settings().FWochenende = velWednesday;
  EXPECT_TRUE(IsSchoolDay("2027-01-16"));
  EXPECT_FALSE(IsSchoolDay("2027-01-14"));
}

TEST_F(SchoolYear, EntriesMayOverlapInAnyOrder) {
  Plan.Settings().FWochenende = velSunday;
  Plan.Free("2027-01-05", "2027-01-09");  // over the end of the holidays
  Plan.Free("2026-12-28", "2026-12-30");  // within them
  Plan.Free("2027-01-09", "2027-01-10");  // touching
  Plan.Free("2027-01-12", "2027-01-11");  // of no length
  std::string Days;
  for (int Day = 0; Day < 22; ++Day) {
    Days += uDataUtils::IsSchoolDay(Plan.Context(), At("2026-12-22") + Day) ? "x" : "-";
  }
  EXPECT_EQ(Days, "xx-----------------xxx");
}

TEST_F(SchoolYear, ChangesAreShownForSomeSchoolDaysAhead) {
  const auto Shows = [&](std::string_view ADate) {
    return uDataUtils::InPublishWindow(Plan.Context(At("2026-12-22T09:00")), At(ADate));
  };
  Plan.Settings().FPublishDaysScope = 2;
  EXPECT_TRUE(Shows("2027-01-29"));
  Plan.Settings().FAenderungenFreigeben = true;
  EXPECT_TRUE(Shows("2026-12-01"));
  EXPECT_TRUE(Shows("2027-01-07T16:00"));
  EXPECT_FALSE(Shows("2027-01-08"));
  Plan.Settings().FPublishDaysScope = 0;
  EXPECT_TRUE(Shows("2027-01-29"));
}

TEST_F(SchoolYear, WhatIsOpenOrMarkedIsNotPublic) {
  const TSpan Lesson = Span("2026-12-23T08:00", "2026-12-23T08:45");
  auto& Change = Plan.Change<TVELVertretung>(Lesson);
  Change.FVertretungsmerkmal = vmFaelltAus;
  const auto IsPublished = [&] { return uDataUtils::IsPublished(Plan.Context(At("2026-12-22")), &Change); };
  EXPECT_TRUE(uDataUtils::IsPublished(Plan.Context(), nullptr));
  EXPECT_FALSE(IsPublished());
  for (const auto& [Status, Expected] :
       {std::pair(aeInvalid, false), std::pair(aeNotPublic, true), std::pair(aeNotPublicAbsence, true),
        std::pair(aeClosed, true), std::pair(aeFinished, true)}) {
    Change.FAenderungsstatus = Status;
    EXPECT_EQ(IsPublished(), Expected) << Status << ": only the flags tell what is not public";
  }
  Change.FNotPublic = true;
  EXPECT_FALSE(IsPublished());
  Change.FNotPublic = false;
  Change.FVertretungsmerkmal = vmKein;  // nobody stands in, and no reason is given
  EXPECT_FALSE(IsPublished());
  Change.FVertretungsentfall = QuillonDataObjects::Create<TVELVertretungsentfall>(&*Plan);
  EXPECT_TRUE(IsPublished());
  auto& Absence = Plan.Absence<TVELLehrerfehlzeit>(Plan.Add<TVELLehrer>(Plan->FLehrer), Lesson);
  Change.FFehlzeit = &Absence;
  EXPECT_TRUE(IsPublished());
  Absence.FNotPublic = true;
  EXPECT_FALSE(IsPublished());
  Absence.FNotPublic = false;
  Plan.Settings().FAenderungenFreigeben = true;
  EXPECT_FALSE(IsPublished());
  Change.FAenderungsstatus = aePublished;
  Plan.Settings().FPublishDaysScope = 1;
  EXPECT_TRUE(IsPublished());
  Change.FEnde = At("2027-01-07T08:45");
  EXPECT_FALSE(IsPublished());
}

TEST_F(SchoolYear, AChangeOfAClassThatIsAwayIsNotOpen) {
  const TSpan Lesson = Span("2026-12-23T08:00", "2026-12-23T08:45");
  TVELTermin& Termin = Plan.Weekly(velWednesday);
  auto& Class = Plan.Add<TVELKlasse>(Plan->FKlassen);
  Termin.Veranstaltung()->FKlassen.Add(&Class);
  auto& Change = Plan.Change<TVELVertretung>(Lesson);
  Change.FATermin = &Termin;
  EXPECT_TRUE(uDataUtils::IsOpen(Plan.Context(), Change));
  Plan.Absence<TVELKlassenfehlzeit>(Class, Lesson);
  EXPECT_FALSE(uDataUtils::IsOpen(Plan.Context(), Change));
  EXPECT_FALSE(uDataUtils::IsOpen(Plan.Context(), Plan.Change<TVELMitteilung>(Lesson)));
}

TEST(Publishing, ManyChangesAndManyMissingTeachersTakeNoMoreTimeEach) {
  EXPECT_LT(Growth(1000,
                   [](int ASize) {
                     TPlanFixture Plan("2026-12-07", "2027-01-29");
                     Plan.Settings().FAenderungenFreigeben = true;
                     Plan.Settings().FPublishDaysScope = 30;
                     for (int I = 0; I < ASize; ++I) {
                       Plan.Free("2027-01-11", "2027-01-12");
                       Plan.Change<TVELMitteilung>(Span("2027-01-08", "2027-01-09")).FAenderungsstatus = aePublished;
                     }
                     const uDataUtils::TPlanContext& Context = Plan.Context(At("2026-12-22"));
                     return Seconds([&] {
                       for (const TVELAenderung* Change : Plan->FAenderungen) {
                         ASSERT_TRUE(uDataUtils::IsPublished(Context, Change));
                       }
                     });
                   }),
            QuadraticGrowth);
  EXPECT_LT(Growth(1000,
                   [](int ASize) {
                     TPlanFixture Plan("2026-12-07", "2027-01-29");
                     auto& Change = Plan.Change<TVELVertretung>(Span("2027-01-08", "2027-01-09"));
                     for (int I = 0; I < ASize; ++I) {
                       Change.FOriginal.Append(QuillonDataObjects::Create<TVELLehrer>(&*Plan));
                       Change.FFehlend.Append(QuillonDataObjects::Create<TVELLehrer>(&*Plan));
                     }
                     const uDataUtils::TPlanContext& Context = Plan.Context();
                     return Seconds([&] { ASSERT_TRUE(uDataUtils::HasNoEffect(Context, Change)); });
                   }),
            QuadraticGrowth);
}

TEST(SchoolDays, AreThoseOfTheTimetableFromADayInItOn) {
  TPlanFixture Plan("2026-08-05", "2026-08-14");
  Plan.Free("2026-08-07", "2026-08-08").FUnterrichtsfrei = true;
  const auto Days = [&](std::string_view AFirst, std::string_view ALast) {
    return uDataUtils::SchoolDaysIn(Plan.Context(), At(AFirst), At(ALast));
  };
  EXPECT_EQ(Days("2026-08-06", "2026-08-11"),
            (std::vector<TVELDate>{At("2026-08-06"), At("2026-08-10"), At("2026-08-11")}));
  EXPECT_EQ(Days("2026-08-13", "9999-12-31"), (std::vector<TVELDate>{At("2026-08-13"), At("2026-08-14")}));
  EXPECT_EQ(Days("2026-08-04", "2026-08-11"), std::vector<TVELDate>());
}

}  // namespace
