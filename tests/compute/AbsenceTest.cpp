#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PlanFixture.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Vertretungen.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Absences : public testing::Test {
 protected:
  std::vector<TVELFehlzeit*> Find(const TVELPlanobjekt& AnObject, bool APublicOnly = false) const {
    return uDataUtils::FindFehlzeiten(Plan.Context(), AnObject, nullptr, APublicOnly, Lesson);
  }
  std::vector<TVELFehlzeit*> FindOfLesson() const {
    return uDataUtils::FindFehlzeiten(Plan.Context(), Termin, false, Lesson);
  }
  bool Has(const TVELPlanobjekt& AnObject) const {
    return uDataUtils::HasAbsence(Plan.Context(), AnObject, Termin.Veranstaltung(), Lesson) != nullptr;
  }

  const TSpan Lesson = Span("2026-09-07T08:00", "2026-09-07T08:45");
  TPlanFixture Plan{"2026-08-03", "2027-07-01"};
  TVELTermin& Termin = Plan.Weekly(velMonday);
  TVELLehrer& Teacher = Plan.Add<TVELLehrer>(Plan->FLehrer);
  TVELRaum& Room = Plan.Add<TVELRaum>(Plan->FRaeume);
  TVELKlasse& Class = Plan.Add<TVELKlasse>(Plan->FKlassen);
};

TEST_F(Absences, ALongOneIsFoundBehindManyShortOnes) {
  const auto Missing = [&](const TSpan& ASpan) { return &Plan.Absence<TVELLehrerfehlzeit>(Teacher, ASpan); };
  Missing(Span("2026-09-07T08:45", "2026-09-07T10:00"));  // touches the lesson only
  TVELFehlzeit* const Long = Missing(Span("2026-08-04", "2026-10-01"));
  for (int I = 0; I < 50; ++I) {
    const TVELDateTime Day = At("2026-08-05") + I % 30;
    Missing({Day, Day + 0.5});
  }
  TVELFehlzeit* const Inside = Missing(Span("2026-09-07T08:10", "2026-09-07T08:20"));
  TVELFehlzeit* const Moment = Missing(Span("2026-09-07T08:30", "2026-09-07T08:00"));  // ends ahead of its start
  Plan.Absence<TVELLehrerfehlzeit>(Plan.Add<TVELLehrer>(Plan->FLehrer), Lesson);
  EXPECT_THAT(Find(Teacher), ElementsAre(Long, Inside, Moment));
  Inside->FNotPublic = true;
  EXPECT_THAT(Find(Teacher, true), ElementsAre(Long, Moment));
}

TEST_F(Absences, AFreedTeacherIsMissingOnlyInTheLesson) {
  auto& Absence = Plan.Absence<TVELLehrerfehlzeit>(Teacher, Lesson);
  Termin.FLehrer.Add(&Teacher);
  EXPECT_TRUE(Has(Teacher));
  Absence.FFreistellung = true;
  EXPECT_FALSE(Has(Teacher));
  EXPECT_THAT(Find(Teacher), IsEmpty());
  EXPECT_THAT(FindOfLesson(), ElementsAre(&Absence));
}

TEST_F(Absences, ARoomIsMissingOnlyIfNothingMayTakePlaceThere) {
  auto& Absence = Plan.Absence<TVELRaumfehlzeit>(Room, Lesson);
  EXPECT_FALSE(Has(Room));
  EXPECT_THAT(Find(Room), ElementsAre(&Absence));
  Absence.FNichtVerfuegbar = true;
  EXPECT_TRUE(Has(Room));
}

TEST_F(Absences, AllClassesOfALessonMayBeMissing) {
  auto& Other = Plan.Add<TVELKlasse>(Plan->FKlassen);
  auto& Change = Plan.Change<TVELVertretung>(Lesson);
  Change.FATermin = &Termin;
  const auto AllAbsent = [&](const TVELKlasse* AnExcluded = nullptr) {
    return uDataUtils::AllClassesAbsent(Plan.Context(), Termin, AnExcluded, Lesson);
  };
  EXPECT_FALSE(AllAbsent()) << "no classes at all";
  Termin.Veranstaltung()->FKlassen.Add(&Class);
  Termin.Veranstaltung()->FKlassen.Add(&Other);
  auto& OfCourse = Plan.Absence<TVELKlassenfehlzeit>(Class, Lesson);
  OfCourse.FKurs = Termin.Veranstaltung();
  EXPECT_FALSE(AllAbsent());
  EXPECT_TRUE(AllAbsent(&Other));
  auto& OfOther = Plan.Absence<TVELKlassenfehlzeit>(Other, Lesson);
  EXPECT_TRUE(AllAbsent());
  EXPECT_TRUE(uDataUtils::AllClassesAbsent(Plan.Context(), Change));
  EXPECT_THAT(FindOfLesson(), ElementsAre(&OfCourse, &OfOther));
  OfCourse.FKurs = &Plan.Lesson();  // the class misses another lesson, at the same time
  EXPECT_FALSE(AllAbsent());
  EXPECT_FALSE(uDataUtils::AllClassesAbsent(Plan.Context(), Change));

  TVELTermin& Instead = Plan.Weekly(velTuesday);
  Instead.Veranstaltung()->FKlassen.Add(&Other);
  Change.FNeuerTermin = &Instead;
  EXPECT_TRUE(uDataUtils::AllClassesAbsent(Plan.Context(), Change));
  EXPECT_FALSE(uDataUtils::AllClassesAbsent(Plan.Context(), Plan.Change<TVELMitteilung>(Lesson)));
}

}  // namespace
