#include <set>

#include "Names.h"
#include "School.h"
#include "Subjects.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Zeitpraeferenzen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

/// First subjects of the teachers, in turn: as often as they are needed.
constexpr std::array<std::string_view, 46> FirstSubjects = {
    "D",  "E",  "M",  "BI", "PH", "CH", "F",  "L",   "S",  "EK",  "GE", "KR", "ER", "MU", "KU", "SP",
    "IF", "PK", "D",  "E",  "M",  "SW", "PA", "PL",  "PP", "SP",  "D",  "E",  "M",  "F",  "GE", "LI",
    "SP", "BI", "DS", "WI", "D",  "E",  "M",  "PSY", "RE", "SPT", "KU", "EK", "CH", "S"};

/// Three letters of the surname, and a number if that is taken.
std::string NewCode(std::set<std::string>& ACodes, std::string_view ASurname) {
  // Letters of two bytes stay whole.
  std::size_t Length = 0;
  for (int Letters = 0; Letters < 3 && Length < ASurname.size(); ++Letters) {
    Length += (static_cast<unsigned char>(ASurname[Length]) & 0xE0) == 0xC0 ? 2 : 1;
  }
  const std::string Code(ASurname.substr(0, Length));
  std::string Candidate = Code;
  for (int Number = 2; !ACodes.insert(Candidate).second; ++Number) {
    Candidate = Code + std::to_string(Number);
  }
  return Candidate;
}

void AddSubjects(TSchool& ASchool, TTeacher& ATeacher, int ANumber) {
  TRandom& Random = ASchool.Random;
  const auto First = static_cast<std::size_t>(ANumber) % FirstSubjects.size();
  ATeacher.Subjects.push_back(SubjectOf(FirstSubjects.at(First)));
  for (int Tries = 0; Tries < 3; ++Tries) {
    const std::size_t Other = SubjectOf(Random.Pick(FirstSubjects));
    if (std::ranges::find(ATeacher.Subjects, Other) == ATeacher.Subjects.end()) {
      ATeacher.Subjects.push_back(Other);
    }
  }
  for (const std::size_t Place : ATeacher.Subjects) {
    auto& Subject = ASchool.Add<TVELLehrerfach>(ATeacher.Lehrer->FFaecher);
    Subject.FFach = ASchool.Subjects[Place];
    Subject.FStufeVon = SubjectTable[Place].FromLevel;
    Subject.FStufeBis = LastLevel;
    ATeacher.Lehrer->FTeams.Merge(ASchool.Plan.FTeams.GetItem(SubjectTable[Place].Team));
  }
}

void AddTargetHours(TSchool& ASchool, TVELLehrer& ATeacher) {
  TVELVerzeichnisse& Keys = *ASchool.Plan.FVerzeichnisse;
  auto& Target = ASchool.Add<TVELLehrerSollAenderung>(ATeacher.FLehrersoll);
  Target.FSollSchluessel = Keys.FLehrerSollSchluessel.GetItem(0);
  Target.FSollArt1 = Keys.FLehrerSollArten.GetItem(2);
  Target.FGueltigVon = FirstDay;
  Target.FGueltigBis = LastDay;
  Target.FDienststelle = Keys.FDienststellen.GetItem(0);
  Target.FSchultyp = Keys.FSchultypen.GetItem(0);
  Target.FSchulzweig = Keys.FSchulzweige.GetItem(0);
  Target.FStdAnzahl = 25.5;
  if (ASchool.Random.Chance(25)) {
    auto& Relief = ASchool.Add<TVELLehrerSollAenderung>(ATeacher.FLehrersoll);
    Relief.FSollSchluessel = Keys.FLehrerSollSchluessel.GetItem(1);
    Relief.FSollArt1 = Keys.FLehrerSollArten.GetItem(0);
    Relief.FAenderungsgrund = ASchool.Any(Keys.FLehrerSollAenderungsgruende);
    Relief.FAnDienststelle = false;
    Relief.FAusDrittsystem = true;
    Relief.FStdAnzahl = -1.5;
    Relief.FBemerkung = "Entlastung; siehe \"Bescheid\"";
  }
}

void AddFreeTime(TSchool& ASchool, TVELLehrer& ATeacher) {
  TRandom& Random = ASchool.Random;
  auto& Wish = ASchool.Add<TVELZeitpraeferenz>(ATeacher.FZeitpraeferenzen);
  Wish.FTagesStart = At(0, Rows[6].Start);
  Wish.FTagesEnde = At(0, Rows[9].End);
  Wish.FWochenStart = static_cast<TVELDay>(Random.Between(velMonday, velFriday));
  Wish.FWochenEnde = Wish.FWochenStart;
  Wish.FWert = Random.Between(1, 9) / 2.0;
  Wish.FKategorie = ASchool.Plan.FVerzeichnisse->FZeitpraeferenzkategorien.GetItem(0);
  if (Random.Chance(30)) {
    auto& Bar = ASchool.Add<TVELSperrung>(ATeacher.FZeitpraeferenzen);
    Bar.FStart = AnySchoolDay(Random);
    Bar.FEnde = Bar.FStart + 1;
    Bar.FReoccur = false;
    Bar.FGanztaegig = true;
    Bar.FKategorie = static_cast<TVELFarbSchluessel*>(ASchool.Plan.FVerzeichnisse->FSperrungskategorien.GetItem(1));
  }
}

void MakeTeacher(TSchool& ASchool, TSection& ASection, std::set<std::string>& ACodes) {
  TRandom& Random = ASchool.Random;
  const int Number = static_cast<int>(ASection.Teachers.size());
  auto& Teacher = ASchool.Add<TVELLehrer>(ASchool.Plan.FLehrer);
  ASection.Teachers.push_back({&Teacher, {}, {}, 0});
  const bool IsWoman = Random.Chance(60);
  Teacher.FGeschlecht = IsWoman ? gWeiblich : gMaennlich;
  Teacher.FVorname = Random.Pick(IsWoman ? GirlNames : BoyNames);
  Teacher.FNachname = Random.Pick(Surnames);
  Teacher.FKuerzel = NewCode(ACodes, Teacher.FNachname);
  Teacher.FBezeichnung = Teacher.FVorname + " " + Teacher.FNachname;
  Teacher.FTitel = Random.Chance(8) ? "Dr." : (IsWoman ? "Frau" : "Herr");
  Teacher.FMittelname = Random.Chance(10) ? "Maria" : "";
  Teacher.FGebDatum = FirstDay - Random.Between(26 * 365, 64 * 365);
  Teacher.FEintritt = FirstDay - 365 * Random.Between(0, 20);
  Teacher.FAustritt = Random.Chance(3) ? FirstDay + 180 : 0;
  Teacher.FPersonalnummer = std::to_string(5'000'000 + 1000 * ASection.Number + Number);
  Teacher.FUsername = PlainName(Teacher.FKuerzel);
  Teacher.FEmail = PlainName(Teacher.FNachname) + "." + Teacher.FUsername + "@annette-gymnasium.example";
  Teacher.FTelefon = "+49 251 " + std::to_string(Random.Between(100000, 999999));
  Teacher.FLehrertyp = ASchool.Any(ASchool.Plan.FVerzeichnisse->FLehrertypen);
  Teacher.FSchulnummer = "167890";
  Teacher.FMaxStdAnzahl = 28;
  Teacher.FMinStdAnzahl = 12;
  Teacher.FMaxAufsichtsAnzahl = 3;
  Teacher.FMaxAufsichtsDauer = 60;
  Teacher.FMaxSpringStdAnzahl = 4;
  Teacher.FMittagspauseMinStd = 6;
  Teacher.FMittagspauseMaxStd = 8;
  Teacher.FMinWochentage = 3;
  Teacher.FFarbe = Random.Chance(70) ? NoColour : 0x60A0E0;
  Teacher.TVELPlanobjekt::FKeineAufsicht = Random.Chance(5);
  Teacher.FKeineAufsicht = Teacher.TVELPlanobjekt::FKeineAufsicht;
  Teacher.FBemerkung = ASchool.SomeRemark(6);
  AddSubjects(ASchool, ASection.Teachers.back(), Number);
  AddTargetHours(ASchool, Teacher);
  AddFreeTime(ASchool, Teacher);
  TRoom& Room = Random.Pick(ASection.Rooms);
  Teacher.FRaum = Random.Chance(20) ? Room.Raum : nullptr;
  if (Room.Raum->FLehrer == nullptr && Random.Chance(30)) {
    Room.Raum->FLehrer = &Teacher;
  }
}

}  // namespace

void MakeTeachers(TSchool& ASchool) {
  std::set<std::string> Codes;
  for (TSection& Section : ASchool.Sections) {
    const int Count = ASchool.Options.Small ? 20 : 90;
    for (int I = 0; I < Count; ++I) {
      MakeTeacher(ASchool, Section, Codes);
    }
  }
}

}  // namespace SchoolGenerator
