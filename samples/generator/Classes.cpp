#include "Names.h"
#include "School.h"
#include "Subjects.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Gebaeude.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Stundentafeln.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

void MakeStudent(TSchool& ASchool, TClass& AClass) {
  TRandom& Random = ASchool.Random;
  auto& Student = ASchool.Add<TVELSchueler>(ASchool.Plan.FSchueler);
  AClass.Students.push_back(&Student);
  AClass.Klasse->FSchueler.Append(&Student);
  const int Number = ASchool.Plan.FSchueler.Count();
  const bool IsGirl = Random.Chance(50);
  Student.FGeschlecht = Random.Chance(1) ? gUnbekannt : (IsGirl ? gWeiblich : gMaennlich);
  Student.FVorname = Random.Pick(IsGirl ? GirlNames : BoyNames);
  Student.FNachname = Random.Pick(Surnames);
  Student.FSchuelerNr = std::to_string(2'600'000 + Number);
  Student.FKuerzel = Student.FSchuelerNr;
  Student.FBezeichnung = Student.FNachname + ", " + Student.FVorname;
  // A class of level 5 is ten or eleven years old.
  Student.FGebDatum = FirstDay - 365 * (AClass.Level + 5) - Random.Between(0, 364);
  Student.FKlasse = AClass.Klasse;
  Student.FStufe = AClass.Level;
  Student.FSchluessel = "S" + std::to_string(Number);
  Student.FUsername = PlainName(Student.FVorname).substr(0, 8) + std::to_string(Number);
  Student.FEmail = Random.Chance(50) ? Student.FUsername + "@schule.example" : "";
  Student.FPostleitzahl = "48" + std::to_string(Random.Between(100, 999));
  Student.FOrt = Random.Pick(Towns);
  Student.FStrasse = Random.Pick(Streets);
  Student.FStrasse += " " + std::to_string(Random.Between(1, 120));
  Student.FTelefon = Random.Chance(40) ? "0251/" + std::to_string(Random.Between(10000, 99999)) : "";
  Student.FHinweis = ASchool.SomeRemark(3);
  Student.FMittelname = Random.Chance(4) ? "Sophie" : "";
  Student.FPruefung = AClass.Level == LastLevel ? "Abitur" : "";
  Student.FKeineFachwahl = AClass.Level < FirstCourseLevel;
}

TVELRaum* HomeOf(TSection& ASection, TClass& AClass) {
  const std::size_t Number = ASection.Classes.size() - 1;
  AClass.Home = &ASection.Rooms.at(Number);
  return AClass.Home->Raum;
}

void MakeClass(TSchool& ASchool, TSection& ASection, int ALevel, int AnIndex) {
  TVELVerzeichnisse& Keys = *ASchool.Plan.FVerzeichnisse;
  auto& Class = ASchool.Add<TVELKlasse>(ASchool.Plan.FKlassen);
  TClass& State = ASection.Classes.emplace_back();
  State.Klasse = &Class;
  State.Level = ALevel;
  const bool IsCourse = ALevel >= FirstCourseLevel;
  Class.FKuerzel = std::to_string(ALevel) + static_cast<char>('a' + AnIndex) + ASection.Suffix;
  Class.FBezeichnung = (IsCourse ? "Stufe " : "Klasse ") + Class.FKuerzel;
  Class.FStufe = ALevel;
  Class.FModus = IsCourse ? cmCourse : cmClass;
  Class.FRaum = HomeOf(ASection, State);
  Class.FGebaeude = Class.FRaum->FGebaeude;
  Class.FBildungsgang = Keys.FBildungsgaenge.GetItem(IsCourse ? 1 : 0);
  Class.FKlassenmerkmal = AnIndex < 3 ? Keys.FKlassenmerkmale.GetItem(AnIndex) : nullptr;
  Class.FKursmerkmal = IsCourse ? Keys.FVeranstaltungsmerkmale.GetItem(0) : nullptr;
  Class.FSchulform = Keys.FSchulformen.GetItem(0);
  Class.FSchulstelle = Keys.FSchulstellen.GetItem(AnIndex % 2);
  Class.FTeam = ASchool.Plan.FTeams.GetItem(IsCourse ? 5 : AnIndex % 5);
  Class.FLehrer1 = ASection.Teachers.at((ASection.Classes.size() * 2) % ASection.Teachers.size()).Lehrer;
  Class.FLehrer2 = ASection.Teachers.at((ASection.Classes.size() * 2 + 1) % ASection.Teachers.size()).Lehrer;
  Class.FPeriode = ASchool.Plan.FPerioden.GetItem(2);
  Class.FZeitraum = ASchool.Plan.FZeitraeume.GetItem(0);
  Class.FZeitraumStart = FirstDay;
  Class.FZeitraumEnde = LastDay;
  Class.FZeitrahmen = IsCourse ? ASchool.Plan.FZeitrahmen.GetItem(0) : nullptr;
  Class.FJahr = IsCourse ? 2026 - (ALevel - FirstCourseLevel) : 0;
  Class.FHalbjahr = IsCourse ? 1 : 0;
  Class.FWochentage = DaysAWeek;
  Class.FMaxStdAnzahl = 36;
  Class.FMinStdAnzahl = 28;
  Class.FMittagspauseDauer = 60;
  Class.FMittagspauseMinStd = 6;
  Class.FMittagspauseMaxStd = 8;
  Class.FSchulnummer = "167890";
  Class.FUsername = PlainName("klasse" + Class.FKuerzel);
  Class.FFarbe = IsCourse ? 0x80C0FF : NoColour;
  Class.FBemerkung = ASchool.SomeRemark(15);
  if (IsCourse) {
    Class.FFachwahlskript = "wenn LK1 = \"D\" dann\n  GK <> \"D\";\nende";
    auto& Info = ASchool.Add<TVELBlockInfo>(Class.FBlockInfos);
    Info.FStd = 1;
    Info.FStdAnzahl = 2;
    Info.FFarbe = 0x00E0E0;
  }
  const int Count = ASchool.Options.Small ? 20 : 25;
  for (int I = 0; I < Count; ++I) {
    MakeStudent(ASchool, State);
  }
  Class.FSchuelerAnzahl = Count;
  for (TVELSchueler* Student : State.Students) {
    Student->FTutor = IsCourse ? Class.FLehrer1 : nullptr;
  }
}

void MakeEntry(TSchool& ASchool, TVELStundentafel& ATable, std::size_t ASubject) {
  TVELVerzeichnisse& Keys = *ASchool.Plan.FVerzeichnisse;
  const TSubject& Row = SubjectTable[ASubject];
  auto& Entry = ASchool.Add<TVELStundentafelEintrag>(ATable.FEintraege);
  Entry.FFach = ASchool.Subjects[ASubject];
  Entry.FFachstatus = Entry.FFach->FFachstatus;
  Entry.FLehrbereich = Keys.FLehrbereiche.GetItem(Row.Team % 3);
  Entry.FSollStdAnzahl = Row.Hours;
  Entry.FMinSollStdAnzahl = Row.Hours - 0.5;
  Entry.FMaxSollStdAnzahl = Row.Hours + 1;
  Entry.FDoppelstundenMax = Row.Hours / 2;
  Entry.FGruppe = Row.Teaching == TTeaching::Whole ? "" : "G";
  Entry.FKursanzahl = Row.Teaching == TTeaching::Groups ? 2 : 1;
  Entry.FUnterrichtsform = Keys.FUnterrichtsformen.GetItem(0);
  Entry.FVeranstaltungskategorie = Keys.FVeranstaltungskategorien.GetItem(0);
  Entry.FStufenSoll = 6.0 * Row.Hours;
  Entry.FTermine = Row.Hours > 2 ? "2+1" : "";
  Entry.FBemerkung = ASchool.SomeRemark(4);
}

}  // namespace

void MakeClasses(TSchool& ASchool) {
  for (TSection& Section : ASchool.Sections) {
    const int Parallel = ASchool.Options.Small ? 1 : 5;
    for (int Level = FirstLevel; Level <= LastLevel; ++Level) {
      for (int I = 0; I < Parallel; ++I) {
        MakeClass(ASchool, Section, Level, I);
      }
    }
    if (Parallel > 1) {
      Section.Classes[0].Klasse->FAssoziierteKlasse = Section.Classes[1].Klasse;
      Section.Classes[2].Klasse->FIntegrierteKlasse = Section.Classes[3].Klasse;
    }
  }
}

void MakeCurricula(TSchool& ASchool) {
  for (int Level = FirstLevel; Level < FirstCourseLevel; ++Level) {
    auto& Table = ASchool.Add<TVELStundentafel>(ASchool.Plan.FStundentafeln);
    Table.FKuerzel = "ST" + std::to_string(Level);
    Table.FBezeichnung = "Stundentafel für Stufe " + std::to_string(Level);
    Table.FKlassenstufe = Level;
    Table.FBildungsgang = ASchool.Plan.FVerzeichnisse->FBildungsgaenge.GetItem(0);
    Table.FProfil = ASchool.Plan.FVerzeichnisse->FProfile.GetItem(Level % 2);
    Table.FPeriode = ASchool.Plan.FPerioden.GetItem(2);
    Table.FTeam = ASchool.Plan.FTeams.GetItem(5);
    for (std::size_t Subject = 0; Subject < SubjectTable.size(); ++Subject) {
      if (SubjectTable[Subject].Teaching != TTeaching::None && SubjectTable[Subject].FromLevel <= Level) {
        MakeEntry(ASchool, Table, Subject);
      }
    }
    for (TSection& Section : ASchool.Sections) {
      for (TClass& Class : Section.Classes) {
        if (Class.Level == Level) {
          Class.Klasse->FStundentafel = &Table;
        }
      }
    }
  }
}

}  // namespace SchoolGenerator
