#include "uPlandaten/Stundentafeln.h"

#include "uPlandaten/Faecher.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Teams.h"

const TQuillonDataClass& TVELFachkombination::Class() {
  using T = TVELFachkombination;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELStammobjekt>("SubjectCombination", "Fachkombination \"%s\"")
      .List<&T::FFaecher>("Subjects");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELFachkombinationEintrag::Class() {
  using T = TVELFachkombinationEintrag;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("SubjectCombinationItem", "Fachkombinationseintrag \"%s\"")
      .Reference<&T::FUnterrichtsart>("LessonType")
      .Reference<&T::FFach>("Subject");
  // clang-format on
  return Class;
}

std::string TVELFachkombinationEintrag::DisplayArgument() const {
  return FFach != nullptr ? FFach->FKuerzel : "Unbenannt";
}

const TQuillonDataClass& TVELStundentafel::Class() {
  using T = TVELStundentafel;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELStammobjekt>("LessonsTable", "Stundentafel \"%s\"")
      .Reference<&T::FBildungsgang>("ProfessionalTrainingCourse")
      .List<&T::FEintraege>("Entries")
      .Reference<&T::FPeriode>("Period")
      .Reference<&T::FProfil>("Profile")
      .Reference<&T::FTeam>("Group")
      .Byte<&T::FUnterrichtseinheit>("LessonUnit").AlwaysWritten()
      .LongInt<&T::FKlassenstufe>("ClassLevel", -1);
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELStundentafelEintrag::Class() {
  using T = TVELStundentafelEintrag;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("LessonsTableEntry", "Stundentafeleintrag \"%s\"")
      .String<&T::FBemerkung>("Comments")
      .Reference<&T::FFach>("Subject").Essential()
      .Reference<&T::FFachstatus>("SubjectStatus")
      .String<&T::FGruppe>("Group")
      .LongInt<&T::FKursanzahl>("CourseCount")
      .Reference<&T::FLehrbereich>("TeachingArea")
      .Single<&T::FMaxSollStdAnzahl>("MaxSetLessonsCount")
      .Single<&T::FMinSollStdAnzahl>("MinSetHoursCount")
      .LongInt<&T::FDoppelstundenMin>("DoubleBlocksMin")
      .LongInt<&T::FDoppelstundenMax>("DoubleBlocksMax")
      .Boolean<&T::FReoccur>("Reoccur", true)
      .Single<&T::FSollDifferenz>("SetDifference")
      .Single<&T::FSollStdAnzahl>("SetLessonsCount")
      .Single<&T::FStufenSoll>("LevelSet")
      .Single<&T::FStufe1Soll>("Level1Set")
      .Single<&T::FStufe2Soll>("Level2Set")
      .Single<&T::FStufe3Soll>("Level3Set")
      .Single<&T::FStufe4Soll>("Level4Set")
      .String<&T::FTermine>("Times")
      .Reference<&T::FUnterrichtsart>("LessonType")
      .Reference<&T::FUnterrichtsform>("LessonForm")
      .Reference<&T::FVeranstaltungskategorie>("EventCategory")
      .Single<&T::FWertfaktor>("ValueFactor", 1)
      .OldBoolean<&T::SetWholeClass>("WholeClass", true).Until("6.0.101");
  // clang-format on
  return Class;
}

std::string TVELStundentafelEintrag::DisplayArgument() const {
  return FFach != nullptr ? FFach->FKuerzel : "Unbenannt";
}

void TVELStundentafelEintrag::SetWholeClass(bool AnIsWhole) {
  if (!AnIsWhole) {
    FGruppe = "G";
  }
}
