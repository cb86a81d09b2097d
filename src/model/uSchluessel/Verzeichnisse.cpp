#include "uSchluessel/Verzeichnisse.h"

#include <algorithm>

namespace {

template <class TField, class TValue>
TVELSchluessel* FindFirst(const TVELSchluesselverzeichnis& AList, TField TVELSchluessel::*AField,
                          const TValue& AValue) {
  const auto Found = std::ranges::find_if(
      AList, [&](const TVELSchluessel* AKey) { return AKey != nullptr && AKey->*AField == AValue; });
  return Found == AList.end() ? nullptr : *Found;
}

}  // namespace

const TQuillonDataClass& TVELSchluesselverzeichnis::Class() {
  static const TQuillonDataClass Class =
      DescribeAbstractClass<TVELSchluesselverzeichnis, TVELDataList>("TVELSchluesselverzeichnis");
  return Class;
}

TVELSchluessel* TVELSchluesselverzeichnis::FindBezeichnung(std::string_view ABezeichnung) const {
  return FindFirst(*this, &TVELSchluessel::FBezeichnung, ABezeichnung);
}

TVELSchluessel* TVELSchluesselverzeichnis::FindKuerzel(std::string_view AKuerzel) const {
  return FindFirst(*this, &TVELSchluessel::FKuerzel, AKuerzel);
}

TVELSchluessel* TVELSchluesselverzeichnis::FindSchluessel(std::string_view ASchluessel) const {
  return FindFirst(*this, &TVELSchluessel::FSchluessel, ASchluessel);
}

TVELSchluessel* TVELSchluesselverzeichnis::FindCustomID(std::string_view ACustomID) const {
  return static_cast<TVELSchluessel*>(TVELDataList::FindCustomID(ACustomID));
}

TVELSchluessel* TVELSchluesselverzeichnis::FindBrenmarkID(std::int32_t ABrenmarkID) const {
  return FindFirst(*this, &TVELSchluessel::FBrenmarkID, ABrenmarkID);
}

const TQuillonDataClass& TVELVerzeichnisse::Class() {
  using T = TVELVerzeichnisse;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELDataObject>("Directories", "Schlüsselverzeichnisse")
      .List<&T::FAusfallgruende>("AbsenceReasons")
      .List<&T::FBildungsgaenge>("ProfessionalTrainingCourses")
      .List<&T::FDienststellen>("Sites")
      .List<&T::FFachschwerpunkte>("SubjectTopicAreas")
      .List<&T::FFachstatus>("SubjectStatus")
      .List<&T::FKalendereintragKategorien>("CalendarEventCategories")
      .List<&T::FKlassenfehlgruende>("ClassAbsenceReasons")
      .List<&T::FKlassenmerkmale>("ClassFeatures")
      .List<&T::FLehrbereiche>("TeachingAreas")
      .List<&T::FLehrerfehlgruende>("TeacherAbsenceReasons")
      .List<&T::FLehrerfehlgrundDetails>("TeacherAbsenceReasonDetails")
      .List<&T::FLehrerSollAenderungsgruende>("TeacherSetChangeReasons")
      .List<&T::FLehrerSollArten>("TeacherSetTypes")
      .List<&T::FLehrerSollSchluessel>("TeacherSetKey")
      .List<&T::FLehrertypen>("TeacherTypes")
      .List<&T::FProfile>("Profiles")
      .List<&T::FRaumfehlgruende>("RoomUnavailableReasons")
      .List<&T::FRaumtypen>("RoomTypes")
      .List<&T::FRessourcenkategorien>("ResourceCategories")
      .List<&T::FRessourcenmerkmale>("ResourceFeatures")
      .List<&T::FRollen>("Roles")
      .List<&T::FSchulformen>("SchoolTypes")
      .List<&T::FSchulstellen>("SchoolSites")
      .List<&T::FSchultypen>("SchulTypes")
      .List<&T::FSchulzweige>("SchoolBranches")
      .List<&T::FSperrungskategorien>("BlockCategories")
      .List<&T::FUnterrichtsarten>("LessonTypes")
      .List<&T::FUnterrichtsformen>("LessonForms")
      .List<&T::FVeranstaltungskategorien>("EventCategories")
      .List<&T::FVeranstaltungsmerkmale>("EventFeature")
      .List<&T::FVertretungsentfaelle>("SkipStandInReasons")
      .List<&T::FVertretungslehrerarten>("StandInTeacherTypes")
      .List<&T::FVertretungsqualitaeten>("StandInQualities")
      .List<&T::FZeitpraeferenzkategorien>("TimePreferenceCategories");
  // clang-format on
  return Class;
}

void TVELVerzeichnisse::Clear() {
  for (const TQuillonDataRow& Row : Class().Rows()) {
    if (Row.Kind == TQuillonRowKind::List) {
      Row.As<TQuillonDataRow::TItems>().Field(*this).Clear();
    }
  }
}

namespace uSchluessel {

void RegisterClasses(TQuillonDataClassRegistry& ARegistry) {
  ARegistry.AddClasses<TVELVerzeichnisse, TVELBildungsgang, TVELDienststelle, TVELFachschwerpunkt, TVELFachstatus,
                       TVELFehlgrund, TVELKalendereintragKategorie, TVELKlassenfehlgrund, TVELKlassenmerkmal,
                       TVELLehrbereich, TVELLehrerSollAenderungsArt, TVELLehrerSollAenderungsSchluessel,
                       TVELLehrerSollAenderungsgrund, TVELLehrerfehlgrund, TVELLehrerfehlgrunddetail, TVELLehrertyp,
                       TVELProfil, TVELRaumfehlgrund, TVELRaumtyp, TVELRessourcenkategorie, TVELRessourcenmerkmal,
                       TVELRolle, TVELSchulform, TVELSchulstelle, TVELSchultyp, TVELSchulzweig, TVELSperrungskategorie,
                       TVELUnterrichtsart, TVELUnterrichtsform, TVELVeranstaltungskategorie, TVELVeranstaltungsmerkmal,
                       TVELVertretungsentfall, TVELVertretungslehrerart, TVELVertretungsqualitaet,
                       TVELZeitpraeferenzkategorie>();
}

}  // namespace uSchluessel
