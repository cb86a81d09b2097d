#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PlanFixture.h"
#include "uDataUtils/Weeks.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"

using testing::ElementsAre;

namespace {

/// The days of all occurrences in the timetable.
std::vector<std::string> Days(TPlanFixture& APlan, const TVELTermin& ATermin,
                              const TVELPlanobjekt* AnObject = nullptr) {
  const uDataUtils::TPlanContext& Context = APlan.Context();
  std::vector<std::string> Found;
  std::optional<TSpan> Next = uDataUtils::FirstOccurrence(Context, AnObject, ATermin);
  while (Next && Found.size() < 100) {
    Found.push_back(Show(uDataUtils::DayOf(Next->Start)));
    Next = uDataUtils::NextOccurrence(Context, AnObject, ATermin, velNoDay,
                                      {Next->Start + 7, APlan.Settings().FStundenplanZeitraumBis + 1});
  }
  return Found;
}

TEST(Occurrences, AFortnightlyCourseOverTheNewYearPassesOverTheHolidays) {
  TPlanFixture Plan("2026-12-07", "2027-02-05");
  TVELTermin& Termin = Plan.Weekly(velMonday);
  Termin.FWochen = Weeks({1, 3, 5, 7, 9});
  EXPECT_THAT(Days(Plan, Termin), ElementsAre("2026-12-07", "2026-12-21", "2027-01-04", "2027-01-18", "2027-02-01"));
  Plan.Free("2026-12-24", "2027-01-07");
  EXPECT_THAT(Days(Plan, Termin), ElementsAre("2026-12-07", "2026-12-21", "2027-01-18", "2027-02-01"));
  Plan.Settings().FWochenAusgenommen = Weeks({1, 2, 3, 4, 5, 6, 9});
  EXPECT_THAT(Days(Plan, Termin), ElementsAre("2026-12-07", "2026-12-21", "2027-02-01"));
}

TEST(Occurrences, WeeksAreCountedFromTheMondayOfAPlanThatBeginsOnWednesday) {
  TPlanFixture Plan("2026-07-29", "2027-07-01");
  const uDataUtils::TPlanContext& Context = Plan.Context();
  for (const auto& [Date, Week] :
       {std::pair("2026-07-26T23:59", 0), std::pair("2026-07-27", 1), std::pair("2026-08-03", 2),
        std::pair("2027-07-04T12:00", 49), std::pair("2027-07-05", 0)}) {
    EXPECT_EQ(uDataUtils::WeekIndex(Context, At(Date)), Week) << Date;
  }
  EXPECT_EQ(uDataUtils::WeekCount(Context), 49);
  EXPECT_EQ(Show(uDataUtils::WeekStart(Context, 0)), "2026-07-27");
  EXPECT_EQ(Show(uDataUtils::WeekDate(Context, 3, velFriday)), "2026-08-14");
  EXPECT_EQ(Show(uDataUtils::WeekRange(Context, 2)), "2026-08-03/2026-08-08");

  const TVELTermin& Monday = Plan.Weekly(velMonday);
  EXPECT_EQ(Show(uDataUtils::FirstOccurrence(Context, nullptr, Monday)), "2026-08-03T08:00/2026-08-03T08:45");
  EXPECT_EQ(Show(uDataUtils::FirstOccurrence(Context, nullptr, Plan.Weekly(velWednesday))),
            "2026-07-29T08:00/2026-07-29T08:45");
  // The Monday of week 1 lies ahead of the first day: it is found from there on, but does not count in a range.
  const TSpan FirstWeek = Span("2026-07-27", "2026-08-01");
  EXPECT_TRUE(uDataUtils::NextOccurrence(Context, nullptr, Monday, velNoDay, FirstWeek));
  EXPECT_FALSE(uDataUtils::OccursIn(Context, Monday, FirstWeek));
  EXPECT_EQ(Show(uDataUtils::NextOccurrence(Context, nullptr, Monday, velNoDay, Span("2026-04-01", "2027-01-01"))),
            "2026-07-27T08:00/2026-07-27T08:45");
}

TEST(Occurrences, AnEmptySetOfWeeksRestrictsNothing) {
  TPlanFixture Plan("2026-08-03", "2026-10-30");
  const struct {
    TVELWeeks Lessons, Plan, Effective;
  } Sets[] = {{{}, Weeks({2, 3}), Weeks({2, 3})},
              {TVELWeeks::All(), Weeks({2, 3}), Weeks({2, 3})},
              {Weeks({1, 2}), Weeks({2, 3}), Weeks({2})},
              {Weeks({1, 2}), {}, Weeks({1, 2})},
              {TVELWeeks::All(), {}, {}}};
  for (const auto& Set : Sets) {
    Plan.Settings().FWochenAusgenommen = Set.Plan;
    EXPECT_EQ(uDataUtils::EffectiveWeeks(Plan.Context(), Set.Lessons), Set.Effective);
  }
  TVELTermin& Termin = Plan.Weekly(velMonday);
  Plan.Settings().FWochenAusgenommen = Weeks({2});
  EXPECT_FALSE(uDataUtils::TerminInWeek(Plan.Context(), Termin, 0));
  EXPECT_TRUE(uDataUtils::TerminInWeek(Plan.Context(), Termin, 2));
  Termin.Veranstaltung()->FReoccur = false;
  Termin.FStart = At("2026-08-19");
  EXPECT_TRUE(uDataUtils::TerminInWeek(Plan.Context(), Termin, 3));
  Termin.FStart = At("2026-07-19");
  EXPECT_FALSE(uDataUtils::TerminInWeek(Plan.Context(), Termin, 0));

  Plan.Add<TVELZeitraum>(Plan->FZeitraeume);
  EXPECT_EQ(uDataUtils::SelectWeek(Plan.Context(), 0).Week, 0);
  EXPECT_EQ(uDataUtils::SelectWeek(Plan.Context(), 1).Period, Plan->FZeitraeume.GetItem(0));
  EXPECT_EQ(uDataUtils::SelectWeek(Plan.Context(), 5).Week, 4);
}

TEST(Occurrences, ALessonLiesInTheNarrowestOfItsWindowsAndOutsideOfTheirParts) {
  TPlanFixture Plan("2026-08-03", "2026-12-18");
  TVELTermin& Termin = Plan.Weekly(velTuesday);
  TVELVeranstaltung& Lesson = *Termin.Veranstaltung();
  const auto Valid = [&] { return Show(uDataUtils::Validity(Plan.Context(), Termin)); };
  const auto Window = [&](std::string_view AStart, std::string_view AFinish) {
    auto& Added = Plan.Add<TVELZeitraum>(Plan->FZeitraeume);
    Added.FStart = At(AStart);
    Added.FEnde = At(AFinish);
    return &Added;
  };
  EXPECT_EQ(Valid(), "1899-12-30/1899-12-30");
  EXPECT_TRUE(uDataUtils::InValidity(Plan.Context(), Termin, At("2030-01-01")));
  Plan.Settings().FGueltigVon = At("2026-08-05");
  Plan.Settings().FGueltigBis = At("2026-12-17");
  EXPECT_EQ(Valid(), "2026-08-05/2026-12-17");
  Lesson.FGueltigBis = At("2026-12-01");
  auto& First = Plan.Add<TVELKlasse>(Plan->FKlassen);
  auto& Second = Plan.Add<TVELKlasse>(Plan->FKlassen);
  Lesson.FKlassen.Add(&First);
  Lesson.FKlassen.Add(&Second);
  Second.FZeitraumStart = At("2026-11-01");
  First.FZeitraumStart = At("2026-08-07");
  EXPECT_EQ(Valid(), "2026-08-07/2026-12-01");
  First.FZeitraum = Window("2026-08-06", "2026-11-30");
  EXPECT_EQ(Valid(), "2026-08-07/2026-11-30");
  Lesson.FZeitraum = Window("2026-08-18", "2026-09-29");
  EXPECT_FALSE(uDataUtils::InValidity(Plan.Context(), Termin, At("2026-08-17T23:00")));
  EXPECT_TRUE(uDataUtils::InValidity(Plan.Context(), Termin, At("2026-09-29T23:00")));
  EXPECT_THAT(Days(Plan, Termin), ElementsAre("2026-08-18", "2026-08-25", "2026-09-01", "2026-09-08", "2026-09-15",
                                              "2026-09-22", "2026-09-29"));
  TVELZeitraum* const Part = Window("2026-09-01", "2026-09-22");
  EXPECT_EQ(Days(Plan, Termin).size(), 7U);
  Part->FParentZeitraum = Lesson.FZeitraum;
  EXPECT_THAT(Days(Plan, Termin), ElementsAre("2026-08-18", "2026-08-25", "2026-09-29"));
  Part->FStart = 0;
  EXPECT_EQ(Days(Plan, Termin).size(), 7U);
}

TEST(Occurrences, OnlyAPublicEntryThatCoversTheWholeLessonFreesIt) {
  TPlanFixture Plan("2026-08-03", "2026-08-14");
  TVELTermin& Termin = Plan.Weekly(velMonday);
  const auto& Teacher = Plan.Add<TVELLehrer>(Plan->FLehrer);
  TVELKalendereintrag& Entry = Plan.Free("2026-08-03", "2026-08-03");  // to the midnight behind the day
  const auto Mondays = [&] { return Days(Plan, Termin, &Teacher).size(); };
  EXPECT_EQ(Mondays(), 1U);
  Entry.FVisibility = velMembersOnly;
  Plan.Invite(Entry, *Plan->FLehrer.GetItem(0));
  EXPECT_TRUE(uDataUtils::AppliesTo(Entry, &Teacher));
  EXPECT_FALSE(uDataUtils::AppliesTo(Entry, nullptr));
  EXPECT_EQ(Mondays(), 2U);
  Entry.FVisibility = velPublic;
  EXPECT_EQ(Mondays(), 1U);
  EXPECT_EQ(Days(Plan, Termin).size(), 2U);  // it names participants: not for all
  Entry.FUnterrichtsfrei = false;
  EXPECT_EQ(Mondays(), 2U);
  Entry.FUnterrichtsfrei = true;
  Entry.FStart = At("2026-08-03T08:00");
  Entry.FEnde = At("2026-08-03T08:45");
  EXPECT_EQ(Mondays(), 1U);
  Entry.FEnde = At("2026-08-03T08:44");
  EXPECT_EQ(Mondays(), 2U);
  Plan->FAlternativeTiming = true;
  Entry.FAltStart = At("2026-08-03");
  Entry.FAltEnde = At("2026-08-11");
  Termin.FAltStart = Termin.FStart;
  Termin.FAltEnde = Termin.FEnde;
  Termin.FAltWochentag = velMonday;
  EXPECT_EQ(Mondays(), 0U);
}

TEST(Occurrences, TimesMayEndAtMidnightAndOddOnesNeverOccur) {
  TPlanFixture Plan("2026-08-03", "2026-08-16");
  TVELVeranstaltung& Lesson = Plan.Lesson();
  const auto First = [&](const TVELTermin& ATermin) {
    return Show(uDataUtils::FirstOccurrence(Plan.Context(), nullptr, ATermin));
  };
  EXPECT_EQ(First(Plan.Weekly(Lesson, velSunday, "22:00", "00:00")), "2026-08-09T22:00/2026-08-10");
  EXPECT_EQ(First(Plan.Weekly(Lesson, velNoDay)), "2026-08-09T08:00/2026-08-09T08:45");
  EXPECT_EQ(First(Plan.Weekly(Lesson, velMonday, "08:00", "07:59")), "none");
  EXPECT_EQ(First(Plan.Weekly(static_cast<TVELDay>(8))), "none");
  TVELTermin& Unscheduled = Plan.Weekly(Lesson, velMonday);
  Unscheduled.ClearSchedule();
  EXPECT_EQ(First(Unscheduled), "none");
  EXPECT_FALSE(uDataUtils::OccursIn(Plan.Context(), Unscheduled, Span("2026-08-03", "2026-08-16")));
}

TEST(Occurrences, ASingleAppointmentMustBeginInTheRange) {
  TPlanFixture Plan("2026-08-03", "2026-08-16");
  TVELVeranstaltung& Lesson = Plan.Lesson();
  Lesson.FReoccur = false;
  const TVELTermin& Trip = Plan.Once(Lesson, "2026-08-05T08:00", "2026-08-06T16:00");
  const auto Next = [&](TVELDay ADay, std::string_view AStart, std::string_view AFinish) {
    return Show(uDataUtils::NextOccurrence(Plan.Context(), nullptr, Trip, ADay, Span(AStart, AFinish)));
  };
  EXPECT_EQ(Next(velNoDay, "2026-08-05T08:00", "2026-08-05T09:00"), "2026-08-05T08:00/2026-08-06T16:00");
  EXPECT_EQ(Next(velNoDay, "2026-08-05T08:01", "2026-08-05T09:00"), "none");
  EXPECT_EQ(Next(velNoDay, "2026-08-01", "2026-08-05T08:00"), "none");
  EXPECT_EQ(Next(velTuesday, "2026-08-01", "2026-08-09"), "none");
  EXPECT_NE(Next(velWednesday, "2026-08-01", "2026-08-09"), "none");
  EXPECT_TRUE(uDataUtils::OccursIn(Plan.Context(), Trip, Span("2026-08-06", "2026-08-07")));
  EXPECT_FALSE(uDataUtils::OccursIn(Plan.Context(), Trip, Span("2026-08-07", "2026-08-08")));
  // The timetable is no bound to it.
  EXPECT_TRUE(uDataUtils::OccursIn(Plan.Context(), Plan.Once(Lesson, "2026-08-20T08:00", "2026-08-20T09:00"),
                                   Span("2026-08-20T08:59", "2026-12-08")));
}

TEST(Occurrences, InARangeOfOneDayTheTimesMustMeet) {
  TPlanFixture Plan("2026-08-03", "2026-08-16");
  const TVELTermin& Termin = Plan.Weekly(velMonday);
  const struct {
    const char *Start, *Finish;
    bool Occurs;
  } Ranges[] = {{"2026-08-03T08:44", "2026-08-03T12:00", true},
                {"2026-08-03T08:45", "2026-08-03T12:00", false},
                {"2026-08-03T08:45", "2026-08-04", false},  // midnight belongs to the day before
                {"2026-08-03T07:00", "2026-08-04", true},
                {"2026-08-03T08:45", "2026-08-04T08:00", true},
                {"2026-08-04", "2026-08-10", false},
                {"2026-08-04", "2026-08-11", true},
                {"2026-08-17", "2026-12-31", false},
                {"2026-01-01", "2026-08-31", true}};
  for (const auto& Range : Ranges) {
    EXPECT_EQ(uDataUtils::OccursIn(Plan.Context(), Termin, Span(Range.Start, Range.Finish)), Range.Occurs)
        << Range.Start << "/" << Range.Finish;
  }
  EXPECT_TRUE(uDataUtils::OccursIn(Plan.Context(), Plan.Weekly(velSunday), Span("2026-08-10", "2026-09-01")));
  EXPECT_FALSE(uDataUtils::OccursIn(Plan.Context(), Plan.Weekly(velNoDay), Span("2026-08-03", "2026-09-01")));
}

TEST(Occurrences, LongTimetablesTakeNoTime) {
  TPlanFixture Plan("1900-01-01", "9999-12-31");
  TVELTermin& Termin = Plan.Weekly(velFriday);
  EXPECT_EQ(Days(Plan, Termin).size(), 56U);
  Termin.Veranstaltung()->FGueltigVon = At("9999-12-01");
  for (int I = 0; I < 1000; ++I) {
    ASSERT_FALSE(uDataUtils::FirstOccurrence(Plan.Context(), nullptr, Termin));
  }
}

TEST(Occurrences, SupervisionsTakePlaceInWeeksWithLessonsWhereNothingIsFree) {
  TPlanFixture Plan("2026-08-03", "2026-09-11");
  auto& Duty = Plan.Add<TVELAufsicht>(Plan.Add<TVELAufsichtsbereich>(Plan->FAufsichtsbereiche).FAufsichten);
  auto& Teacher = Plan.Add<TVELLehrer>(Plan->FLehrer);
  Duty.FStart = At("2020-01-06T09:30");
  Duty.FEnde = At("2020-01-06T09:45");
  Duty.FWochentag = velTuesday;
  Plan.Settings().FWochenAusgenommen = Weeks({1, 2, 4, 5, 6});
  Plan.Settings().FGueltigBis = At("2026-09-01");
  const auto Next = [&](std::string_view AStart, const TVELPlanobjekt* AnObject = nullptr) {
    return Show(uDataUtils::NextOccurrence(Plan.Context(), AnObject, Duty, velNoDay, {At(AStart), At("2026-12-01")}));
  };
  EXPECT_EQ(Show(uDataUtils::FirstOccurrence(Plan.Context(), nullptr, Duty)), "2026-08-04T09:30/2026-08-04T09:45");
  EXPECT_EQ(Next("2026-08-04T09:44"), "2026-08-04T09:30/2026-08-04T09:45");
  EXPECT_EQ(Next("2026-08-04T09:45"), "2026-08-11T09:30/2026-08-11T09:45");
  EXPECT_EQ(Next("2026-08-12"), "2026-08-25T09:30/2026-08-25T09:45") << "no lessons in week 3";
  EXPECT_EQ(Next("2026-09-02"), "none") << "behind the plan's validity";
  TVELKalendereintrag& Entry = Plan.Free("2026-08-25T09:40", "2026-08-25T12:00", false);
  EXPECT_EQ(Next("2026-08-12"), "2026-09-01T09:30/2026-09-01T09:45") << "an overlap is enough";
  Entry.FVisibility = velMembersOnly;
  Plan.Invite(Entry, Teacher);
  EXPECT_EQ(Next("2026-08-12"), "2026-08-25T09:30/2026-08-25T09:45");
  EXPECT_EQ(Next("2026-08-12", &Teacher), "2026-09-01T09:30/2026-09-01T09:45");
  EXPECT_TRUE(uDataUtils::OccursIn(Plan.Context(), Duty, Span("2026-08-25", "2026-08-26")));
  EXPECT_FALSE(uDataUtils::OccursIn(Plan.Context(), Duty, Span("2026-08-26", "2026-09-01")));

  Duty.FWochentag = velNoDay;  // once, on its date
  EXPECT_EQ(Next("2020-01-01"), "none");
  Duty.FStart = At("2026-08-06T09:30");
  Duty.FEnde = At("2026-08-06T09:45");
  EXPECT_EQ(Next("2026-08-06T09:40"), "2026-08-06T09:30/2026-08-06T09:45");
  EXPECT_EQ(Next("2026-08-07"), "none");
}

}  // namespace
