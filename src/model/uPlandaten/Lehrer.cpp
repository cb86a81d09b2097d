#include "uPlandaten/Lehrer.h"

#include "uPlandaten/Faecher.h"
#include "uPlandaten/Raeume.h"

const TQuillonDataClass& TVELLehrer::Class() {
  using T = TVELLehrer;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELPlanobjekt>("Teacher", "Lehrer \"%s\"")
      .List<&T::FTeams>("Groups")
      .List<&T::FAufsichten>("SupervisionList")
      .Date<&T::FAustritt>("Finish")
      .Date<&T::FEintritt>("Start")
      .String<&T::FEmail>("Email")
      .List<&T::FFaecher>("Subjects")
      .Byte<&T::FGeschlecht>("Gender").Required()
      .Date<&T::FGebDatum>("DateOfBirth")
      .List<&T::FLehrersoll>("SetChanges")
      .Reference<&T::FLehrertyp>("TeacherType")
      .LongInt<&T::FMaxAufsichtsAnzahl>("MaxSupervisionsCount")
      .LongInt<&T::FMaxAufsichtsDauer>("MaxSupervisions")
      .LongInt<&T::FMaxSpringStdAnzahl>("MaxLeapLessonsCount")
      .LongInt<&T::FMaxStdAnzahl>("MaxLessonsCount")
      .LongInt<&T::FMinStdAnzahl>("MinHoursCount")
      .LongInt<&T::FMittagspauseDauer>("LengthOfLunchBreak")
      .LongInt<&T::FMittagspauseMaxStd>("LunchBreakMax")
      .LongInt<&T::FMittagspauseMinStd>("LunchBreakMin")
      .String<&T::FMittelname>("MiddleName")
      .String<&T::FNachname>("Surname")
      .String<&T::FPersonalnummer>("PersonalID")
      .Reference<&T::FRaum>("Room")
      .String<&T::FSchulnummer>("SchoolNumber")
      .Graphic<&T::FSymbol>("Symbol")
      .String<&T::FTelefon>("Phone")
      .String<&T::FTitel>("Title")
      .String<&T::FUsername>("Username")
      .LongInt<&T::FVertretungseinschraenkung>("Stand-InRestriction")
      .String<&T::FVorname>("FirstName")
      .LongInt<&T::FMaxWochentage>("MaxFreeWeekdays")
      .LongInt<&T::FMinWochentage>("Weekdays")
      .Boolean<&T::FKeineAufsicht>("NoSupervision");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELLehrerfach::Class() {
  using T = TVELLehrerfach;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("TeacherSubject", "Lehrerfach \"%s\"")
      .LongInt<&T::FStufeVon>("LevelFrom")
      .LongInt<&T::FStufeBis>("LevelTo")
      .Reference<&T::FFach>("Subject").Essential();
  // clang-format on
  return Class;
}

std::string TVELLehrerfach::DisplayArgument() const { return FFach != nullptr ? FFach->FKuerzel : "Unbenannt"; }

const TQuillonDataClass& TVELLehrerSollAenderung::Class() {
  using T = TVELLehrerSollAenderung;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("TeacherSetChange", "Lehrer-Soll-Änderung")
      .Boolean<&T::FAnDienststelle>("AtSite", true)
      .Reference<&T::FAenderungsgrund>("ChangeReason")
      .Boolean<&T::FAusDrittsystem>("ExternalSystem")
      .String<&T::FBemerkung>("Comments")
      .Reference<&T::FDienststelle>("Site")
      .Date<&T::FGueltigVon>("ValidFrom")
      .Date<&T::FGueltigBis>("ValidTo")
      .Reference<&T::FSchultyp>("SchoolType")
      .Reference<&T::FSchulzweig>("SchoolBranch")
      .Reference<&T::FSollArt1>("SetChangeType1")
      .Reference<&T::FSollArt2>("SetChangeType2")
      .Reference<&T::FSollSchluessel>("Key")
      .Single<&T::FStdAnzahl>("LessonsCount").Required();
  // clang-format on
  return Class;
}
