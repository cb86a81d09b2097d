#include "uOstrel/CatalogClasses.h"

#include <algorithm>
#include <array>

#include "uSchluessel/Schluessel.h"

namespace uOstrel {

namespace {

struct TCatalogClass {
  std::string_view Name;
  const TQuillonDataClass& (*Class)();
};

// The names are not all those of the files: "SchoolClassProfils" is none here, so its file can bring no new keys, and
// a category of markers comes in as a feature of resources. Receivers and senders of the format know it so.
constexpr std::array<TCatalogClass, 28> Classes = {{
    {"CourseTypes", TVELUnterrichtsart::Class},
    {"SchoolTypes", TVELSchultyp::Class},
    {"RoomTypes", TVELRaumtyp::Class},
    {"SchoolClassProfiles", TVELSchulform::Class},
    {"SchoolClassLevels", TVELSchulzweig::Class},
    {"EducationalPrograms", TVELBildungsgang::Class},
    {"TimeAccountEntryReportings", TVELDienststelle::Class},
    {"SubjectFocuses", TVELFachschwerpunkt::Class},
    {"EventTypes", TVELKalendereintragKategorie::Class},
    {"SchoolClassAbsenceReasons", TVELKlassenfehlgrund::Class},
    {"SchoolClassFlags", TVELKlassenmerkmal::Class},
    {"EducationalAreas", TVELLehrbereich::Class},
    {"LessonProfiles", TVELProfil::Class},
    {"TeacherAbsenceReasons", TVELLehrerfehlgrund::Class},
    {"TeacherAbsenceReasonDifferentiations", TVELLehrerfehlgrunddetail::Class},
    {"TeacherTypes", TVELLehrertyp::Class},
    {"TimeAccountEntryReasons", TVELLehrerSollAenderungsgrund::Class},
    {"TimeAccountEntryTypes", TVELLehrerSollAenderungsArt::Class},
    {"RoomAbsenceReasons", TVELRaumfehlgrund::Class},
    {"ResourceCategories", TVELRessourcenkategorie::Class},
    {"ResourceFlags", TVELRessourcenmerkmal::Class},
    {"ScheduleMarkerCategories", TVELRessourcenmerkmal::Class},
    {"FormsOfTeaching", TVELUnterrichtsform::Class},
    {"CourseCategories", TVELVeranstaltungskategorie::Class},
    {"CourseFlags", TVELVeranstaltungsmerkmal::Class},
    {"SubstitutionStatuses", TVELVertretungsentfall::Class},
    {"SubstitutionTypes", TVELVertretungslehrerart::Class},
    {"SubstitutionQualities", TVELVertretungsqualitaet::Class},
}};

}  // namespace

const TQuillonDataClass& CatalogClass(std::string_view AName) {
  const auto* const Found = std::ranges::find(Classes, AName, &TCatalogClass::Name);
  if (Found == Classes.end()) {
    throw EQuillonException("Not supported");
  }
  return Found->Class();
}

}  // namespace uOstrel
