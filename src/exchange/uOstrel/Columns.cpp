#include "uOstrel/Columns.h"

#include <array>

#include "uOstrel/Lessons.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace uOstrel {

namespace {

/// The object's own time frame, or the standard one.
const TVELZeitrahmen& FrameOf(const TVELPlanobjekt& AnObject) {
  const TVELZeitrahmen* const Frame = AnObject.Timeframe();
  if (Frame == nullptr) {
    throw EQuillonException("The plan has no standard time frame.");
  }
  return *Frame;
}

const TVELEinstellungen& SettingsOf(const TVELBasisObject& AnObject) { return *AnObject.Plan()->FEinstellungen; }

/// Who sees a message besides those it names.
std::string_view Visibility(const TVELMitteilung& AMessage) {
  if (AMessage.FAlleKlassen) {
    return AMessage.FAlleLehrer ? "AllSchoolClasses,AllTeachers" : "AllSchoolClasses";
  }
  return AMessage.FAlleLehrer ? "AllTeachers" : "";
}

/// Names of the school days, going on from Sunday to Monday.
std::string ScopeOfWeek(const TVELEinstellungen& ASettings) {
  std::string Text(DayName(ASettings.FWochenstart));
  for (int Day = ASettings.FWochenstart; !DayName(ASettings.FWochenende).empty() && Day != ASettings.FWochenende;) {
    Day = Day >= velSunday ? velMonday : Day + 1;
    Text.append(Text.empty() ? "" : ", ").append(DayName(static_cast<TVELDay>(Day)));
  }
  return Text;
}

/// Rows of the day as a JSON array; empty without rows.
std::string TimeSlots(const TVELZeitrahmen& AFrame) {
  std::string Text;
  for (const TVELZeitrahmenzeile* Row : AFrame.FZeilen) {
    Text.append(Text.empty() ? R"([{"Label":)" : R"(,{"Label":)");
    AppendJsonString(Text, Row->FBezeichnung);
    Text.append(R"(,"StartTime":")");
    AppendTimepoint(Text, Row->FStart);
    Text.append(R"(","EndTime":")");
    AppendTimepoint(Text, Row->FEnde);
    Text.append(R"("})");
  }
  return Text.empty() ? Text : Text + "]";
}

template <class T, auto AnObject>
constexpr std::array<TColumn<T>, 6> AbsenceColumns(std::string_view AnObjectColumn) {
  return {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }},
      {AnObjectColumn, [](TCsvFile& F, const T& O) { F.Id(O.*AnObject); }},
      {"StartTimepoint", [](TCsvFile& F, const T& O) { F.Timepoint(O.FStart); }},
      {"EndTimepoint", [](TCsvFile& F, const T& O) { F.Timepoint(O.FEnde); }},
      {"ReasonId", [](TCsvFile& F, const T& O) { F.Id(O.FFehlgrund); }},
      {"Description", [](TCsvFile& F, const T& O) { F.Text(O.FBemerkung); }},
  }};
}

}  // namespace

std::span<const TCatalog> Catalogs() {
  using T = TVELVerzeichnisse;
  using TKeys = TVELSchluesselverzeichnis&;
  // clang-format off
  static constexpr std::array<TCatalog, 26> All = {{
      {"CourseTypes", [](T& D) -> TKeys { return D.FUnterrichtsarten; }},
      {"SchoolTypes", [](T& D) -> TKeys { return D.FSchultypen; }},
      {"RoomTypes", [](T& D) -> TKeys { return D.FRaumtypen; }},
      {"SchoolClassProfils", [](T& D) -> TKeys { return D.FSchulformen; }},
      {"SchoolClassLevels", [](T& D) -> TKeys { return D.FSchulzweige; }},
      {"EducationalPrograms", [](T& D) -> TKeys { return D.FBildungsgaenge; }},
      {"TimeAccountEntryReportings", [](T& D) -> TKeys { return D.FDienststellen; }},
      {"SubjectFocuses", [](T& D) -> TKeys { return D.FFachschwerpunkte; }},
      {"EventTypes", [](T& D) -> TKeys { return D.FKalendereintragKategorien; }},
      {"SchoolClassAbsenceReasons", [](T& D) -> TKeys { return D.FKlassenfehlgruende; }},
      {"SchoolClassFlags", [](T& D) -> TKeys { return D.FKlassenmerkmale; }},
      {"EducationalAreas", [](T& D) -> TKeys { return D.FLehrbereiche; }},
      {"LessonProfiles", [](T& D) -> TKeys { return D.FProfile; }},
      {"TeacherAbsenceReasons", [](T& D) -> TKeys { return D.FLehrerfehlgruende; }},
      {"TeacherAbsenceReasonDifferentiations", [](T& D) -> TKeys { return D.FLehrerfehlgrundDetails; }},
      {"TeacherTypes", [](T& D) -> TKeys { return D.FLehrertypen; }},
      {"TimeAccountEntryReasons", [](T& D) -> TKeys { return D.FLehrerSollAenderungsgruende; }},
      {"TimeAccountEntryTypes", [](T& D) -> TKeys { return D.FLehrerSollArten; }},
      {"RoomAbsenceReasons", [](T& D) -> TKeys { return D.FRaumfehlgruende; }},
      {"ResourceCategories", [](T& D) -> TKeys { return D.FRessourcenkategorien; }},
      {"ResourceFlags", [](T& D) -> TKeys { return D.FRessourcenmerkmale; }},
      {"ScheduleMarkerCategories", [](T& D) -> TKeys { return D.FSperrungskategorien; }},
      {"FormsOfTeaching", [](T& D) -> TKeys { return D.FUnterrichtsformen; }},
      {"CourseCategories", [](T& D) -> TKeys { return D.FVeranstaltungskategorien; }},
      {"CourseFlags", [](T& D) -> TKeys { return D.FVeranstaltungsmerkmale; }},
      {"SubstitutionQualities", [](T& D) -> TKeys { return D.FVertretungsqualitaeten; }},
  }};
  // clang-format on
  return All;
}

std::span<const TColumn<TVELSchluessel>> CatalogColumns() {
  using T = TVELSchluessel;
  // clang-format off
  static constexpr std::array<TColumn<T>, 4> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }},
      {"Code", [](TCsvFile& F, const T& O) { F.Text(O.FKuerzel); }},
      {"Name", [](TCsvFile& F, const T& O) { F.Text(O.FBezeichnung); }},
      {"StatisticalCode", [](TCsvFile& F, const T& O) { F.Text(O.FSchluessel); }},
  }};
  // clang-format on
  return Columns;
}

std::span<const TColumn<TVELKalendereintrag>> HolidayColumns() {
  using T = TVELKalendereintrag;
  // clang-format off
  static constexpr std::array<TColumn<T>, 4> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }},
      {"Title", [](TCsvFile& F, const T& O) { F.Text(O.FAnzeige); }},
      {"Description", [](TCsvFile& F, const T& O) { F.Text(O.Beschreibung()); }},
      {"TemporalExpressions", [](TCsvFile& F, const T& O) { F.Text(OneTime(O.Start(), O.Ende())); }},
  }};
  // clang-format on
  return Columns;
}

std::span<const TColumn<TVELZeitrahmen>> TimeFrameColumns() {
  using T = TVELZeitrahmen;
  // clang-format off
  static constexpr std::array<TColumn<T>, 6> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }},
      {"Code", [](TCsvFile& F, const T& O) { F.Text(O.FKuerzel); }},
      {"Description", [](TCsvFile& F, const T& O) { F.Text(O.FBemerkung); }},
      {"StartOfWeek", [](TCsvFile& F, const T& O) { F.Text(DayName(SettingsOf(O).FWochenstart)); }},
      {"ScopeOfWeek", [](TCsvFile& F, const T& O) { F.Text(ScopeOfWeek(SettingsOf(O))); }},
      {"TimeSlots", [](TCsvFile& F, const T& O) { F.Text(TimeSlots(O)); }},
  }};
  // clang-format on
  return Columns;
}

std::span<const TColumn<TVELTeam>> DepartmentColumns() {
  using T = TVELTeam;
  // clang-format off
  static constexpr std::array<TColumn<T>, 3> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }},
      {"Code", [](TCsvFile& F, const T& O) { F.Text(O.FKuerzel); }},
      {"Name", [](TCsvFile& F, const T& O) { F.Text(O.FBezeichnung); }},
  }};
  // clang-format on
  return Columns;
}

std::span<const TColumn<TVELRaum>> RoomColumns() {
  using T = TVELRaum;
  // clang-format off
  static constexpr std::array<TColumn<T>, 8> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }},
      {"Code", [](TCsvFile& F, const T& O) { F.Text(O.FKuerzel); }},
      {"Name", [](TCsvFile& F, const T& O) { F.Text(O.FBezeichnung); }},
      {"Color", [](TCsvFile& F, const T& O) { F.Colour(O.FFarbe); }},
      {"Notes", [](TCsvFile& F, const T& O) { F.Text(O.FBemerkung); }},
      {"Capacity", [](TCsvFile& F, const T& O) { F.Integer(O.FKapazitaet); }},
      {"TimeFrameId", [](TCsvFile& F, const T& O) { F.Id(&FrameOf(O)); }},
      {"DepartmentIdList", [](TCsvFile& F, const T& O) { F.IdList(O.FTeams); }},
  }};
  // clang-format on
  return Columns;
}

std::span<const TColumn<TVELFach>> SubjectColumns() {
  using T = TVELFach;
  // clang-format off
  static constexpr std::array<TColumn<T>, 6> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }},
      {"Code", [](TCsvFile& F, const T& O) { F.Text(O.FKuerzel); }},
      {"Name", [](TCsvFile& F, const T& O) { F.Text(O.FBezeichnung); }},
      {"StatisticalCode", [](TCsvFile& F, const T& O) { F.Text(O.FSchluessel); }},
      {"Color", [](TCsvFile& F, const T& O) { F.Colour(O.FFarbe); }},
      {"DepartmentIdList", [](TCsvFile& F, const T& O) { F.IdList(O.FTeams); }},
  }};
  // clang-format on
  return Columns;
}

std::span<const TColumn<TVELLehrer>> TeacherColumns() {
  using T = TVELLehrer;
  // clang-format off
  static constexpr std::array<TColumn<T>, 15> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }},
      {"Code", [](TCsvFile& F, const T& O) { F.Text(O.FKuerzel); }},
      {"LastName", [](TCsvFile& F, const T& O) { F.Text(O.FNachname); }},
      {"MiddleName", [](TCsvFile& F, const T& O) { F.Text(O.FMittelname); }},
      {"FirstName", [](TCsvFile& F, const T& O) { F.Text(O.FVorname); }},
      {"Salutation", [](TCsvFile& F, const T& O) { F.Text(O.FTitel); }},
      {"Gender", [](TCsvFile& F, const T& O) { F.Gender(O.FGeschlecht); }},
      {"Birthdate", [](TCsvFile& F, const T& O) { F.Date(O.FGebDatum); }},
      {"EmailAddress", [](TCsvFile& F, const T& O) { F.Text(O.FEmail); }},
      {"MobileNumber", [](TCsvFile& F, const T& O) { F.Text(O.FTelefon); }},
      {"TeacherNo", [](TCsvFile& F, const T& O) { F.Text(O.FPersonalnummer); }},
      {"Color", [](TCsvFile& F, const T& O) { F.Colour(O.FFarbe); }},
      {"Notes", [](TCsvFile& F, const T& O) { F.Text(O.FBemerkung); }},
      {"TimeFrameId", [](TCsvFile& F, const T& O) { F.Id(&FrameOf(O)); }},
      {"DepartmentIdList", [](TCsvFile& F, const T& O) { F.IdList(O.FTeams); }},
  }};
  // clang-format on
  return Columns;
}

std::span<const TColumn<TVELSchueler>> StudentColumns() {
  using T = TVELSchueler;
  // clang-format off
  static constexpr std::array<TColumn<T>, 14> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }},
      {"Code", [](TCsvFile& F, const T& O) { F.Text(O.FKuerzel); }},
      {"LastName", [](TCsvFile& F, const T& O) { F.Text(O.FNachname); }},
      {"MiddleName", [](TCsvFile& F, const T& O) { F.Text(O.FMittelname); }},
      {"FirstName", [](TCsvFile& F, const T& O) { F.Text(O.FVorname); }},
      {"Gender", [](TCsvFile& F, const T& O) { F.Gender(O.FGeschlecht); }},
      {"Birthdate", [](TCsvFile& F, const T& O) { F.Date(O.FGebDatum); }},
      {"EmailAddress", [](TCsvFile& F, const T& O) { F.Text(O.FEmail); }},
      {"MobileNumber", [](TCsvFile& F, const T& O) { F.Text(O.FTelefon); }},
      {"Locality", [](TCsvFile& F, const T& O) { F.Text(O.FOrt); }},
      {"PostalCode", [](TCsvFile& F, const T& O) { F.Text(O.FPostleitzahl); }},
      {"AddressLines", [](TCsvFile& F, const T& O) { F.Text(O.FStrasse); }},
      {"TutorId", [](TCsvFile& F, const T& O) { F.Id(O.FTutor); }},
      {"Notes", [](TCsvFile& F, const T& O) { F.Text(O.FBemerkung); }},
  }};
  // clang-format on
  return Columns;
}

std::span<const TColumn<TVELKlasse>> SchoolClassColumns() {
  using T = TVELKlasse;
  // clang-format off
  static constexpr std::array<TColumn<T>, 12> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }},
      {"Code", [](TCsvFile& F, const T& O) { F.Text(O.FKuerzel); }},
      {"Description", [](TCsvFile& F, const T& O) { F.Text(O.FBezeichnung); }},
      {"Notes", [](TCsvFile& F, const T& O) { F.Text(O.FBemerkung); }},
      {"Color", [](TCsvFile& F, const T& O) { F.Colour(O.FFarbe); }},
      {"SchoolClassNo", [](TCsvFile& F, const T& O) { F.Text(O.FSchulnummer); }},
      {"Teacher1Id", [](TCsvFile& F, const T& O) { F.Id(O.FLehrer1); }},
      {"Teacher2Id", [](TCsvFile& F, const T& O) { F.Id(O.FLehrer2); }},
      {"DepartmentId", [](TCsvFile& F, const T& O) { F.Id(O.FTeam); }},
      {"RoomId", [](TCsvFile& F, const T& O) { F.Id(O.FRaum); }},
      {"TimeFrameId", [](TCsvFile& F, const T& O) { F.Id(&FrameOf(O)); }},
      {"StudentIdList", [](TCsvFile& F, const T& O) { F.IdList(O.FSchueler); }},
  }};
  // clang-format on
  return Columns;
}

std::span<const TColumn<TVELRaumfehlzeit>> RoomAbsenceColumns() {
  static constexpr auto Columns = AbsenceColumns<TVELRaumfehlzeit, &TVELRaumfehlzeit::FRaum>("RoomId");
  return Columns;
}

std::span<const TColumn<TVELKlassenfehlzeit>> SchoolClassAbsenceColumns() {
  static constexpr auto Columns = AbsenceColumns<TVELKlassenfehlzeit, &TVELKlassenfehlzeit::FKlasse>("SchoolClassId");
  return Columns;
}

std::span<const TColumn<TVELLehrerfehlzeit>> TeacherAbsenceColumns() {
  static constexpr auto Columns = AbsenceColumns<TVELLehrerfehlzeit, &TVELLehrerfehlzeit::FLehrer>("TeacherId");
  return Columns;
}

std::span<const TColumn<TVELMitteilung>> AnnouncementColumns() {
  using T = TVELMitteilung;
  static constexpr std::array<TColumn<T>, 7> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }},
      {"Title", [](TCsvFile& F, const T& O) { F.Text(O.FInformation); }},
      {"Description", [](TCsvFile& F, const T& O) { F.Text(O.FMitteilung); }},
      {"Visibility", [](TCsvFile& F, const T& O) { F.Text(Visibility(O)); }},
      {"SchoolClassIdList",
       [](TCsvFile& F, const T& O) { F.Text(O.FAlleKlassen ? "" : ChangeClasses(&O.FNeu, nullptr)); }},
      {"TeacherIdList", [](TCsvFile& F, const T& O) { F.Text(O.FAlleLehrer ? "" : ChangeTeachers(&O.FNeu, nullptr)); }},
      {"TemporalExpressions", [](TCsvFile& F, const T& O) { F.Text(OneTime(O.FStart, O.FEnde)); }},
  }};
  return Columns;
}

}  // namespace uOstrel
