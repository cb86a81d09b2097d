#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PlanFixture.h"
#include "uDataUtils/Absences.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Vertretungen.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Absences : public testing::Test {
 protected:
  std::vector<TVELFehlzeit*> Find(const TVELPlanobjekt& AnObject, const TSpan& ASpan) const {
    return uDataUtils::FindFehlzeiten(AnObject, nullptr, false, ASpan);
  }
  bool Has(const TVELPlanobjekt& AnObject) const {
    return uDataUtils::HasAbsence(AnObject, Termin.Veranstaltung(), Lesson) != nullptr;
  }

  const TSpan Lesson = Span("2026-09-07T08:00", "2026-09-07T08:45");
  TPlanFixture Plan{"2026-08-03", "2027-07-01"};
  TVELTermin& Termin = Plan.Weekly(velMonday);
  TVELLehrer& Teacher = Plan.Add<TVELLehrer>(Plan->FLehrer);
  TVELRaum& Room = Plan.Add<TVELRaum>(Plan->FRaeume);
  TVELKlasse& Class = Plan.Add<TVELKlasse>(Plan->FKlassen);
};

TEST_F(Absences, ALongOneIsFoundBehindManyShortOnes) {
  const auto Short = [&](std::string_view AStart, std::string_view AFinish) -> TVELFehlzeit& {
    return Plan.Absence<TVELLehrerfehlzeit>(Teacher, Span(AStart, AFinish));
  };
  TVELFehlzeit& Touching = Short("2026-09-07T08:45", "2026-09-07T10:00");
  TVELFehlzeit& Long = Short("2026-08-04", "2026-10-01");
  for (int I = 0; I < 50; ++I) {
    TVELFehlzeit& Past = Short("2026-08-05", "2026-08-05T12:00");
    Past.FStart = Past.FStart + I % 30;
    Past.FEnde = Past.FEnde + I % 30;
  }
  TVELFehlzeit& Inside = Short("2026-09-07T08:10", "2026-09-07T08:20");
  EXPECT_THAT(Find(Teacher, Lesson), ElementsAre(&Long, &Inside));

  // What was found once must not be found when it is over.
  Long.Set(Long.FEnde, At("2026-09-07T08:00"));
  Touching.Set(Touching.FStart, At("2026-09-07T08:44"));
  EXPECT_THAT(Find(Teacher, Lesson), ElementsAre(&Inside, &Touching));
  TVELFehlzeit& Added = Short("2026-09-07", "2026-09-08");
  EXPECT_THAT(Find(Teacher, Lesson), ElementsAre(&Added, &Inside, &Touching));
  Inside.FNotPublic = true;
  EXPECT_THAT(uDataUtils::FindFehlzeiten(Teacher, nullptr, true, Lesson), ElementsAre(&Added, &Touching));
  Teacher.FFehlzeiten.Remove(&Added);
  EXPECT_THAT(Find(Teacher, Lesson), ElementsAre(&Inside, &Touching));
}

TEST_F(Absences, AFreedTeacherIsMissingOnlyInTheLesson) {
  auto& Absence = Plan.Absence<TVELLehrerfehlzeit>(Teacher, Lesson);
  Termin.FLehrer.Add(&Teacher);
  EXPECT_TRUE(Has(Teacher));
  Absence.FFreistellung = true;
  EXPECT_FALSE(Has(Teacher));
  EXPECT_THAT(Find(Teacher, Lesson), IsEmpty());
  EXPECT_THAT(uDataUtils::FindFehlzeiten(Termin, false, Lesson), ElementsAre(&Absence));
}

TEST_F(Absences, ARoomIsMissingOnlyIfNothingMayTakePlaceThere) {
  auto& Absence = Plan.Absence<TVELRaumfehlzeit>(Room, Lesson);
  EXPECT_FALSE(Has(Room));
  EXPECT_THAT(Find(Room, Lesson), ElementsAre(&Absence));
  Absence.FNichtVerfuegbar = true;
  EXPECT_TRUE(Has(Room));
}

TEST_F(Absences, AllClassesOfALessonMayBeMissing) {
  auto& Other = Plan.Add<TVELKlasse>(Plan->FKlassen);
  auto& Change = Plan.Change<TVELVertretung>(Lesson);
  Change.FATermin = &Termin;
  const auto AllAbsent = [&](const TVELKlasse* AnExcluded = nullptr) {
    return uDataUtils::AllClassesAbsent(Termin, AnExcluded, Lesson);
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
  EXPECT_TRUE(uDataUtils::AllClassesAbsent(Change));
  EXPECT_THAT(uDataUtils::FindFehlzeiten(Termin, false, Lesson), ElementsAre(&OfCourse, &OfOther));
  OfCourse.FKurs = &Plan.Lesson();  // the class misses another lesson, at the same time
  EXPECT_FALSE(AllAbsent());
  EXPECT_FALSE(uDataUtils::AllClassesAbsent(Change));

  TVELTermin& Instead = Plan.Weekly(velTuesday);
  Instead.Veranstaltung()->FKlassen.Add(&Other);
  Change.FNeuerTermin = &Instead;
  EXPECT_TRUE(uDataUtils::AllClassesAbsent(Change));
  EXPECT_FALSE(uDataUtils::AllClassesAbsent(Plan.Change<TVELMitteilung>(Lesson)));
}

}  // namespace
