#include "Names.h"
#include "School.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

constexpr int EndOfDay = 23 * 60 + 59;

void AddMember(TSchool& ASchool, TVELKalendereintrag& AnEntry, TVELTeilnehmerArt AKind, TVELStammobjekt* AnObject) {
  auto& Member = ASchool.Add<TVELTeilnehmer>(AnEntry.FTeilnehmer);
  Member.FArt = AKind;
  Member.FName = AnObject == nullptr ? "Frau Öztürk (Elternvertretung)" : AnObject->FBezeichnung;
  Member.FDataObject = AnObject;
  Member.FDataobjectID = AnObject == nullptr ? TGUID{} : AnObject->ID();
  Member.FRolle = ASchool.Plan.FVerzeichnisse->FRollen.GetItem(AnObject == nullptr ? 2 : 1);
  Member.FEmail = AnObject == nullptr ? "eltern@annette-gymnasium.example" : "";
}

void MakeHolidays(TSchool& ASchool) {
  TVELKalender& Calendar = *ASchool.Plan.FKalender;
  for (const THoliday& Holiday : Holidays) {
    auto& Entry = ASchool.Add<TVELKalendereintrag>(Calendar.FEintraege);
    Entry.FAnzeige = Holiday.Name;
    Entry.FBeschreibung = {std::string(Holiday.Name), "Kein Unterricht"};
    Entry.FStart = At(Holiday.First, 0);
    Entry.FEnde = At(Holiday.Last, EndOfDay);
    Entry.FGanztaegig = true;
    Entry.FKategorie =
        ASchool.Plan.FVerzeichnisse->FKalendereintragKategorien.GetItem(Holiday.First == Holiday.Last ? 1 : 0);
    Entry.FModified = At(FirstDay - 30, 600);
  }
}

void MakeMeetings(TSchool& ASchool, TSection& ASection) {
  TRandom& Random = ASchool.Random;
  TVELKalender& Calendar = *ASchool.Plan.FKalender;
  for (int Number = 1; Number <= ASchool.Count(24); ++Number) {
    auto& Entry = ASchool.Add<TVELKalendereintrag>(Calendar.FEintraege);
    const bool IsParents = Number % 3 == 0;
    const int Day = AnySchoolDay(Random);
    Entry.FAnzeige = IsParents ? "Elternabend; \"Kennenlernen\"" : "Fachkonferenz";
    // Entries that end together are told apart by this.
    Entry.FBeschreibung = {"Nr. " + std::to_string(Number) + ASection.Suffix, "Tagesordnung folgt, bitte prüfen"};
    Entry.FStart = At(Day, IsParents ? 19 * 60 : 15 * 60);
    Entry.FEnde = At(Day, IsParents ? 21 * 60 : 16 * 60 + 30);
    Entry.FUnterrichtsfrei = false;
    Entry.FKategorie = ASchool.Plan.FVerzeichnisse->FKalendereintragKategorien.GetItem(IsParents ? 3 : 2);
    Entry.FRaum = Random.Pick(ASection.Rooms).Raum;
    TClass& Class = Random.Pick(ASection.Classes);
    Entry.FKlasse = IsParents ? Class.Klasse : nullptr;
    Entry.FStufe = static_cast<std::uint8_t>(IsParents ? Class.Level : 0);
    Entry.FDauer = 1.5;
    Entry.FStatus = Number % 5 == 0 ? esVorlaeufig : esBestaetigt;
    Entry.FVisibility = IsParents ? velPublic : velMembersOnly;
    Entry.FModified = At(Day - 14, 540);
    Entry.FZeitkonto = IsParents ? nullptr : ASchool.Plan.FVerzeichnisse->FLehrerSollSchluessel.GetItem(1);
    Entry.FRessourcen.Append(ASchool.Any(ASchool.Plan.FRessourcen));
    AddMember(ASchool, Entry, tnLehrer, Random.Pick(ASection.Teachers).Lehrer);
    AddMember(ASchool, Entry, IsParents ? tnPerson : tnGruppe, IsParents ? nullptr : ASchool.Any(ASchool.Plan.FTeams));
  }
}

void MakeTasks(TSchool& ASchool) {
  TVELKalender& Calendar = *ASchool.Plan.FKalender;
  for (const std::string_view Text : {"Zeugnisse drucken; unterschreiben", "Stundenplan \"2. Halbjahr\" prüfen"}) {
    auto& Task = ASchool.Add<TVELAufgabe>(Calendar.FAufgaben);
    const int Day = AnySchoolDay(ASchool.Random);
    Task.FAnzeige = Text;
    Task.FBeschreibung = {std::string(Text)};
    Task.FStart = At(Day, 480);
    Task.FEnde = At(Day, 960);
    Task.FErfuellt = vel50Complete;
    Task.FPrioritaet = 2;
    Task.FUnterrichtsfrei = false;
    Task.FKategorie = ASchool.Plan.FVerzeichnisse->FKalendereintragKategorien.GetItem(4);
    Task.FAdresse = {"Grüne Gasse 38", "48143 Münster"};
  }
}

/// Breaks in which teachers supervise, in minutes.
constexpr std::array<TRow, 3> Breaks = {
    {{7 * 60 + 30, 7 * 60 + 45}, {9 * 60 + 20, 9 * 60 + 40}, {11 * 60 + 15, 11 * 60 + 35}}};

void MakeArea(TSchool& ASchool, TSection& ASection, int ANumber, std::string_view AName) {
  auto& Area = ASchool.Add<TVELAufsichtsbereich>(ASchool.Plan.FAufsichtsbereiche);
  Area.FKuerzel = "A" + std::to_string(ANumber + 1) + ASection.Suffix;
  Area.FBezeichnung = AName;
  Area.FZeitrahmen = ANumber % 2 == 0 ? ASchool.Plan.FZeitrahmen.GetItem(1) : nullptr;
  Area.FTeams.Append(ASchool.Plan.FTeams.GetItem(ANumber % ASchool.Plan.FTeams.Count()));
  Area.FRaeume.Append(ASection.Rooms.at(static_cast<std::size_t>(ANumber)).Raum);
  for (int Day = 0; Day < DaysAWeek; ++Day) {
    for (const TRow& Break : Breaks) {
      auto& Duty = ASchool.Add<TVELAufsicht>(Area.FAufsichten);
      Duty.FStart = At(0, Break.Start);
      Duty.FEnde = At(0, Break.End);
      Duty.FWochentag = static_cast<TVELDay>(velMonday + Day);
      Duty.FLehrer = ASchool.Random.Pick(ASection.Teachers).Lehrer;
      Duty.FLehrer->FAufsichten.Append(&Duty);
      ASection.Duties.push_back(&Duty);
    }
  }
}

}  // namespace

void MakeSupervisions(TSchool& ASchool) {
  constexpr std::array<std::string_view, 5> Areas = {"Pausenhof", "Foyer & Treppenhaus", "Mensa", "Bushaltestelle",
                                                     "Gelände \"Süd\""};
  for (TSection& Section : ASchool.Sections) {
    for (int I = 0; I < ASchool.Count(static_cast<int>(Areas.size())); ++I) {
      MakeArea(ASchool, Section, I, Areas.at(static_cast<std::size_t>(I)));
    }
  }
}

void MakeCalendar(TSchool& ASchool) {
  ASchool.Plan.FKalender->FWochenendeErsterTag = velSaturday;
  ASchool.Plan.FKalender->FWochenendeLetzterTag = velSunday;
  MakeHolidays(ASchool);
  for (TSection& Section : ASchool.Sections) {
    MakeMeetings(ASchool, Section);
  }
  MakeTasks(ASchool);
}

}  // namespace SchoolGenerator
