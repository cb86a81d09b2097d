#include "uPlandaten/Schueler.h"

#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Relationen.h"
#include "uPlandaten/Veranstaltungen.h"

const TQuillonDataClass& TVELSchueler::Class() {
  using T = TVELSchueler;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELPlanobjekt>("Student", "Schüler \"%s\"")
      .LongInt<&T::FAttribute>("Attributes")
      .Byte<&T::FGeschlecht>("Gender").Required()
      .Date<&T::FGebDatum>("DateOfBirth")
      .List<&T::FKurswahl>("CourseSelection")
      .Reference<&T::FKlasse, &T::SetKlasse>("Class")
      .String<&T::FSchluessel>("Key")
      .String<&T::FMittelname>("MiddleName")
      .String<&T::FNachname>("Surname")
      .LongInt<&T::FLerngruppe>("StudyGroup")
      .String<&T::FVorname>("FirstName")
      .String<&T::FSchulnummer>("SchoolNumber")
      .String<&T::FSchuelerNr>("StudentNo")
      .Reference<&T::FTutor>("Tutor")
      .String<&T::FPostleitzahl>("ZipCode")
      .String<&T::FOrt>("Location")
      .String<&T::FStrasse>("Street")
      .String<&T::FEmail>("Email")
      .String<&T::FTelefon>("Phone")
      .String<&T::FPruefung>("Audit").AlwaysWritten()
      .String<&T::FHinweis>("Hint")
      .String<&T::FUsername>("Username")
      .Boolean<&T::FKeineFachwahl>("NoCourseSelecting")
      .LongInt<&T::FStufe>("Level", -1);
  // clang-format on
  return Class;
}

void TVELSchueler::SetKlasse(TVELKlasse* AKlasse) {
  if (AKlasse == FKlasse) {
    return;
  }
  const bool IsFollowed = uPlandaten::FollowsRelations(*this);
  if (IsFollowed && FKlasse != nullptr) {
    FKlasse->FSchueler.Remove(this);
  }
  Set(FKlasse, AKlasse);
  if (IsFollowed && AKlasse != nullptr) {
    AKlasse->FSchueler.Merge(this);
  }
}

TVELZeitrahmen* TVELSchueler::Timeframe() const {
  return FKlasse != nullptr ? FKlasse->Timeframe() : StandardTimeframe();
}

TVELKlassenstufe TVELSchueler::Klassenstufe() const { return FKlasse != nullptr ? FKlasse->FStufe : FStufe; }

std::string TVELSchueler::DisplayArgument() const { return FNachname + " " + FVorname; }

const TQuillonDataClass& TVELKurswahl::Class() {
  using T = TVELKurswahl;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("CourseSelection", "Kurswahl (Fach: %s)")
      .String<&T::FAttribute>("Attributes")
      .String<&T::FBemerkung>("Comment")
      .Reference<&T::FFach>("Subject").Essential()
      .Reference<&T::FFachschwerpunkt>("SubjectTopicArea")
      .Reference<&T::FFachstatus>("SubjectStatus")
      .Boolean<&T::FFix>("Fix")
      .String<&T::FGewaehlt>("Selected")
      .Reference<&T::FKurs>("Course")
      .LongInt<&T::FKursNr>("CourseNo", -1)
      .LongInt<&T::FPflicht>("CourseCount")
      .LongInt<&T::FStunden>("SetLessonsCount")
      .Reference<&T::FUnterrichtsart>("LessonType");
  // clang-format on
  return Class;
}

TVELSchueler* TVELKurswahl::Schueler() const {
  return dynamic_cast<TVELSchueler*>(HasOwner() ? FOwner->FOwner : nullptr);
}

std::string TVELKurswahl::DisplayArgument() const { return FFach != nullptr ? FFach->FKuerzel : "Unbenannt"; }
