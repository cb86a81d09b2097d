#include "SchoolGenerator.h"

#include <string>

#include "Names.h"
#include "School.h"
#include "uPlandaten/Automatik.h"
#include "uPlandaten/Besitzer.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

/// The plan and the parts that it makes itself have random identities at first.
void Rename(TQuillonDataAbstractObject& AnObject, TRandom& ARandom) {
  AnObject.SetID(ARandom.Guid());
  for (const TQuillonDataRow& Row : AnObject.DataClass().Rows()) {
    if (Row.Kind == TQuillonRowKind::Object) {
      Rename(*Row.As<TQuillonDataRow::TPointer>().Get(AnObject), ARandom);
    }
  }
}

}  // namespace

std::string TSchool::SomeRemark(int APercent) {
  return Random.Chance(APercent) ? std::string(Random.Pick(Remarks)) : std::string();
}

TTeacher* TSection::FindTeacher(const TVELLehrer* ALehrer) {
  for (TTeacher& Teacher : Teachers) {
    if (Teacher.Lehrer == ALehrer) {
      return &Teacher;
    }
  }
  return nullptr;
}

TQuillonDataHandle<TVELPlan> Generate(const TOptions& AnOptions) {
  TQuillonDataHandle<TVELPlan> Plan = QuillonDataObjects::CreateStorage<TVELPlan>();
  const TQuillonChangeTrackingLock Lock(*Plan);
  TSchool School{*Plan, AnOptions, TRandom(AnOptions.Seed), {}, {}};
  Rename(*Plan, School.Random);
  for (int Number = 0; Number < AnOptions.Scale; ++Number) {
    TSection& Section = School.Sections.emplace_back();
    Section.Number = Number;
    Section.Suffix = Number == 0 ? "" : "." + std::to_string(Number + 1);
  }
  for (const auto& Step : {MakeKeys, MakeSettings, MakeTimes, MakeSubjects, MakeRooms, MakeTeachers, MakeClasses,
                           MakeCurricula, MakeCourses, MakeLessons, MakeSupervisions, MakeCalendar, MakeAbsences,
                           MakeSubstitutions, MakeOtherChanges, LinkObjects, StampObjects}) {
    Step(School);
  }
  return Plan;
}

}  // namespace SchoolGenerator
