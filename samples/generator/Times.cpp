#include <algorithm>

#include "School.h"
#include "uPlandaten/Automatik.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Zeitpraeferenzen.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

constexpr TColor ButtonFace = static_cast<TColor>(0x8000000FU);
constexpr TColor WindowText = static_cast<TColor>(0x80000008U);

void FillFrame(TSchool& ASchool, TVELZeitrahmen& AFrame, std::string_view ACode, std::string_view AName) {
  AFrame.FKuerzel = ACode;
  AFrame.FBemerkung = AName;
  for (std::size_t I = 0; I < Rows.size(); ++I) {
    auto& Row = ASchool.Add<TVELZeitrahmenzeile>(AFrame.FZeilen);
    Row.FBezeichnung = std::to_string(I + 1) + ".";
    Row.FDoppelStd = I % 2 == 0 && I < 6;
    Row.FStart = At(0, Rows[I].Start);
    Row.FEnde = At(0, Rows[I].End);
    if (I % 2 == 1) {
      Row.FTrennlinienfarbe = ButtonFace;
    }
  }
  auto& Lunch = ASchool.Add<TVELZeitrahmenmarkierung>(AFrame.FMarkierungen);
  Lunch.FZeile = 7;
  Lunch.FFarbe = 0xC0E0FF;
  auto& Scheme = ASchool.Add<TVELPositionsschema>(AFrame.FPositionsschemata);
  Scheme.FPositionen = {1, 3, 5, 8};
}

TVELWeeks LessonWeeks() {
  TVELWeeks Weeks;
  for (int Day = FirstDay; Day <= LastDay; ++Day) {
    if (IsSchoolDay(Day)) {
      Weeks.Include(WeekOf(Day));
    }
  }
  return Weeks;
}

TVELPeriode& AddPeriod(TSchool& ASchool, std::string_view ACode, std::string_view AName, int AFirstWeek,
                       int ALastWeek) {
  auto& Period = ASchool.Add<TVELPeriode>(ASchool.Plan.FPerioden);
  Period.FKuerzel = ACode;
  Period.FBezeichnung = AName;
  Period.FStart = FirstDay + 7 * (AFirstWeek - 1);
  Period.FEnde = FirstDay + 7 * ALastWeek - 3;
  for (int Week = AFirstWeek; Week <= ALastWeek; ++Week) {
    Period.FWochen.Include(Week);
  }
  return Period;
}

void MakePeriods(TSchool& ASchool) {
  constexpr int HalfYear = 26;
  auto& First = AddPeriod(ASchool, "HJ1", "1. Halbjahr", 1, HalfYear);
  auto& Second = AddPeriod(ASchool, "HJ2", "2. Halbjahr", HalfYear + 1, WeeksOfYear);
  auto& Whole = AddPeriod(ASchool, "SJ", "Schuljahr 2026/27", 1, WeeksOfYear);
  Whole.FPerioden.Append(&First);
  Whole.FPerioden.Append(&Second);
  auto& Training = AddPeriod(ASchool, "PRAK", "Praktikumswochen", 33, 35);
  Training.FFaktor = 0.5;
  Training.FTeam = ASchool.Plan.FTeams.GetItem(0);
}

void MakeWindows(TSchool& ASchool) {
  auto& Year = ASchool.Add<TVELZeitraum>(ASchool.Plan.FZeitraeume);
  Year.FKuerzel = "2026/27";
  Year.FBezeichnung = "Schuljahr 2026/27";
  Year.FStart = FirstDay;
  Year.FEnde = LastDay;
  Year.FMaxStdAnzahl = 40;
  auto& Exams = ASchool.Add<TVELZeitraum>(ASchool.Plan.FZeitraeume);
  Exams.FKuerzel = "Abitur";
  Exams.FBezeichnung = "Prüfungszeitraum; schriftlich & mündlich";
  Exams.FStart = FirstDay + 252;
  Exams.FEnde = FirstDay + 315;
  Exams.FFarbe = 0x4060F0;
  Exams.FMinStdAnzahl = 2;
  Exams.FParentZeitraum = &Year;
}

void MakeTemplates(TSchool& ASchool) {
  TVELVerzeichnisse& Keys = *ASchool.Plan.FVerzeichnisse;
  auto& Wish = ASchool.Add<TVELZeitpraeferenz>(ASchool.Plan.FZeitpraeferenzvorlagen);
  Wish.FName = "Freitag früh frei";
  Wish.FTagesStart = At(0, Rows[0].Start);
  Wish.FTagesEnde = At(0, Rows[1].End);
  Wish.FWochenStart = velFriday;
  Wish.FWochenEnde = velFriday;
  Wish.FWert = 2.5;
  Wish.FKategorie = Keys.FZeitpraeferenzkategorien.GetItem(0);
  auto& Bar = ASchool.Add<TVELSperrung>(ASchool.Plan.FZeitpraeferenzvorlagen);
  Bar.FName = "Teilzeit; nachmittags";
  Bar.FTagesStart = At(0, Rows[6].Start);
  Bar.FTagesEnde = At(0, Rows[9].End);
  Bar.FWochenStart = velMonday;
  Bar.FWochenEnde = velFriday;
  Bar.FKategorie = static_cast<TVELFarbSchluessel*>(Keys.FSperrungskategorien.GetItem(0));
}

}  // namespace

void MakeSettings(TSchool& ASchool) {
  TVELEinstellungen& Settings = *ASchool.Plan.FEinstellungen;
  TVELVerzeichnisse& Keys = *ASchool.Plan.FVerzeichnisse;
  Settings.FBemerkung = {"Stundenplan für \"alle\" Stufen", "Stand: Sommer; wird nach den Ferien geprüft"};
  Settings.FBezeichnungen = {"Klasse", "Lehrkraft", "Raum"};
  Settings.FGueltigVon = FirstDay;
  Settings.FGueltigBis = LastDay;
  Settings.FWochenAusgenommen = LessonWeeks();
  Settings.FLKUnterrichtsart1 = Keys.FUnterrichtsarten.GetItem(1);
  Settings.FLKUnterrichtsart2 = Keys.FUnterrichtsarten.GetItem(2);
  Settings.FStandardUnterrichtsart = Keys.FUnterrichtsarten.GetItem(0);
  Settings.FStundenplantitel = "Stundenplan 2026/27";
  Settings.FStundenplanID = 2026;
  Settings.FStundenplanZeitraumVon = FirstDay;
  Settings.FStundenplanZeitraumBis = LastDay;
  Settings.FNachkommastellen = 2;
  Settings.FTerminfarbe = ButtonFace;
  Settings.FTerminfarbverlauf = 0xFFF0E0;
  Settings.FZeigeBemerkung = true;
  TVELTermininhalte& Layout = *Settings.FTerminInhalte;
  for (auto* Part : {&Layout.FKlasse, &Layout.FLehrer, &Layout.FRaum, &Layout.FFach, &Layout.FTitel}) {
    (*Part)->FSchriftfarbe = WindowText;
  }
  Layout.FFach->FSchriftstil = 1;
  FillFrame(ASchool, *Settings.FZeitrahmen, "Standard", "Standardzeitrahmen");
  TVELAutomatikparameter& Automatic = *ASchool.Plan.FAutomatik;
  Automatic.FAMUntil = At(0, Rows[5].End);
  Automatic.FCountLehrerGapHoursUntil = At(0, Rows[7].End);
  Automatic.FPriorityTeacherGaps = 5;
  ASchool.Plan.FInternalVersion = "1";
}

void MakeTimes(TSchool& ASchool) {
  for (const std::string_view Name :
       {"Sprachen", "Mathematik & Naturwissenschaften", "Gesellschaft", "Musik/Kunst", "Sport", "Schulleitung"}) {
    auto& Team = ASchool.Add<TVELTeam>(ASchool.Plan.FTeams);
    Team.FKuerzel = Name.substr(0, 3);
    Team.FBezeichnung = Name;
    Team.FEmail = "team" + std::to_string(ASchool.Plan.FTeams.Count()) + "@annette-gymnasium.example";
  }
  FillFrame(ASchool, ASchool.Add<TVELZeitrahmen>(ASchool.Plan.FZeitrahmen), "Sek II", "Oberstufe (gemeinsame Pausen)");
  auto& Duty = ASchool.Add<TVELZeitrahmen>(ASchool.Plan.FZeitrahmen);
  FillFrame(ASchool, Duty, "Aufsicht", "Pausen; mit Bus- und Mensaaufsicht");
  Duty.FBookAdaptive = false;
  MakePeriods(ASchool);
  MakeWindows(ASchool);
  MakeTemplates(ASchool);
}

}  // namespace SchoolGenerator
