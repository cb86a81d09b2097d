#include "uSchluessel/Verzeichnisse.h"

#include <algorithm>

namespace {

template <class TField, class TValue>
TVELSchluessel* FindFirst(const TVELSchluesselverzeichnis& AList, TField TVELSchluessel::*AField,
                          const TValue& AValue) {
  const auto Found = std::ranges::find_if(AList, [&](const TVELSchluessel* AKey) { return AKey->*AField == AValue; });
  return Found == AList.end() ? nullptr : *Found;
}

}  // namespace

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
  ARegistry.AddClass(TVELVerzeichnisse::Class());
  ARegistry.AddClass(TVELBildungsgang::Class());
  ARegistry.AddClass(TVELDienststelle::Class());
  ARegistry.AddClass(TVELFachschwerpunkt::Class());
  ARegistry.AddClass(TVELFachstatus::Class());
  ARegistry.AddClass(TVELFehlgrund::Class());
  ARegistry.AddClass(TVELKalendereintragKategorie::Class());
  ARegistry.AddClass(TVELKlassenfehlgrund::Class());
  ARegistry.AddClass(TVELKlassenmerkmal::Class());
  ARegistry.AddClass(TVELLehrbereich::Class());
  ARegistry.AddClass(TVELLehrerSollAenderungsArt::Class());
  ARegistry.AddClass(TVELLehrerSollAenderungsSchluessel::Class());
  ARegistry.AddClass(TVELLehrerSollAenderungsgrund::Class());
  ARegistry.AddClass(TVELLehrerfehlgrund::Class());
  ARegistry.AddClass(TVELLehrerfehlgrunddetail::Class());
  ARegistry.AddClass(TVELLehrertyp::Class());
  ARegistry.AddClass(TVELProfil::Class());
  ARegistry.AddClass(TVELRaumfehlgrund::Class());
  ARegistry.AddClass(TVELRaumtyp::Class());
  ARegistry.AddClass(TVELRessourcenkategorie::Class());
  ARegistry.AddClass(TVELRessourcenmerkmal::Class());
  ARegistry.AddClass(TVELRolle::Class());
  ARegistry.AddClass(TVELSchulform::Class());
  ARegistry.AddClass(TVELSchulstelle::Class());
  ARegistry.AddClass(TVELSchultyp::Class());
  ARegistry.AddClass(TVELSchulzweig::Class());
  ARegistry.AddClass(TVELSperrungskategorie::Class());
  ARegistry.AddClass(TVELUnterrichtsart::Class());
  ARegistry.AddClass(TVELUnterrichtsform::Class());
  ARegistry.AddClass(TVELVeranstaltungskategorie::Class());
  ARegistry.AddClass(TVELVeranstaltungsmerkmal::Class());
  ARegistry.AddClass(TVELVertretungsentfall::Class());
  ARegistry.AddClass(TVELVertretungslehrerart::Class());
  ARegistry.AddClass(TVELVertretungsqualitaet::Class());
  ARegistry.AddClass(TVELZeitpraeferenzkategorie::Class());
}

}  // namespace uSchluessel
