#include <set>
#include <utility>

#include "School.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

constexpr int EndOfDay = 23 * 60 + 59;

/// The absences made so far, by first day and object: two of them never begin together.
using TTaken = std::set<std::pair<int, const TVELPlanobjekt*>>;

/// Sets begin and end of an absence of so many days.
void SetTimes(TSchool& ASchool, TVELFehlzeit& AnAbsence, const TVELPlanobjekt* AnObject, int ADays, TTaken& ATaken) {
  TRandom& Random = ASchool.Random;
  int Day = AnySchoolDay(Random);
  while (!ATaken.insert({Day, AnObject}).second) {
    Day = AnySchoolDay(Random);
  }
  const bool IsPartial = ADays == 1 && Random.Chance(30);
  AnAbsence.FStart = At(Day, IsPartial ? 10 * 60 : 0);
  AnAbsence.FEnde = At(Day + ADays - 1, IsPartial ? 13 * 60 + 10 : EndOfDay);
  AnAbsence.FModified = At(Day - 1, Random.Between(420, 900));
  AnAbsence.FNotPublic = Random.Chance(8);
  AnAbsence.FBemerkung = ASchool.SomeRemark(10);
}

void MakeOfTeacher(TSchool& ASchool, TSection& ASection, TTaken& ATaken) {
  TRandom& Random = ASchool.Random;
  TVELVerzeichnisse& Keys = *ASchool.Plan.FVerzeichnisse;
  auto& Absence = ASchool.Add<TVELLehrerfehlzeit>(ASchool.Plan.FFehlzeiten);
  ASection.Absences.push_back(&Absence);
  Absence.FLehrer = Random.Pick(ASection.Teachers).Lehrer;
  const int Days = Random.Between(1, 5);
  SetTimes(ASchool, Absence, Absence.FLehrer, Days, ATaken);
  Absence.FFehlgrund = ASchool.Any(Keys.FLehrerfehlgruende);
  Absence.FFehlgrundDetail = Random.Chance(60) ? ASchool.Any(Keys.FLehrerfehlgrundDetails) : nullptr;
  Absence.FFreistellung = Random.Chance(10);
  Absence.FVerrechnung = Absence.FFehlgrund->FVerrechnen;
  Absence.FAnrechenStd = Absence.FVerrechnung ? 2.5 * Days : 0;
}

/// A class on a trip takes a teacher along.
void MakeCompanion(TSchool& ASchool, TSection& ASection, TVELKlassenfehlzeit& AnAbsence, TTaken& ATaken) {
  const int Day = static_cast<int>(AnAbsence.FStart);
  TVELLehrer* const Teacher = AnAbsence.FKlasse->FLehrer1;
  if (!ATaken.insert({Day, Teacher}).second) {
    return;
  }
  auto& Companion = ASchool.Add<TVELLehrerfehlzeit>(ASchool.Plan.FFehlzeiten);
  ASection.Absences.push_back(&Companion);
  Companion.FLehrer = Teacher;
  Companion.FStart = AnAbsence.FStart;
  Companion.FEnde = AnAbsence.FEnde;
  Companion.FModified = AnAbsence.FModified;
  Companion.FKlassenfehlzeit = &AnAbsence;
  Companion.FFehlgrund = ASchool.Plan.FVerzeichnisse->FLehrerfehlgruende.GetItem(2);
}

void MakeOfClass(TSchool& ASchool, TSection& ASection, int ANumber, TTaken& ATaken) {
  TRandom& Random = ASchool.Random;
  auto& Absence = ASchool.Add<TVELKlassenfehlzeit>(ASchool.Plan.FFehlzeiten);
  ASection.Absences.push_back(&Absence);
  Absence.FFehlgrund = ASchool.Any(ASchool.Plan.FVerzeichnisse->FKlassenfehlgruende);
  if (ANumber % 3 == 1) {
    TVELVeranstaltung* const Lesson = Random.Pick(ASection.Places).Termin->Veranstaltung();
    if (!Lesson->FKlassen.IsEmpty()) {
      Absence.FKurs = Lesson;
      Absence.FKlasse = Lesson->FKlassen.GetItem(0);
    }
  }
  if (Absence.FKlasse == nullptr) {
    Absence.FKlasse = Random.Pick(ASection.Classes).Klasse;
  }
  const bool IsTrip = ANumber % 3 == 0;
  const int Days = IsTrip ? 3 : 1;
  SetTimes(ASchool, Absence, Absence.FKlasse, Days, ATaken);
  if (IsTrip) {
    Absence.FFehlgrund = ASchool.Plan.FVerzeichnisse->FKlassenfehlgruende.GetItem(0);
    MakeCompanion(ASchool, ASection, Absence, ATaken);
  }
}

void MakeOfRoom(TSchool& ASchool, TSection& ASection, TTaken& ATaken) {
  TRandom& Random = ASchool.Random;
  auto& Absence = ASchool.Add<TVELRaumfehlzeit>(ASchool.Plan.FFehlzeiten);
  ASection.Absences.push_back(&Absence);
  Absence.FRaum = Random.Pick(ASection.Rooms).Raum;
  Absence.FNeuerRaum = Random.Chance(50) ? Absence.FRaum->FAlternative : nullptr;
  Absence.FFehlgrund = ASchool.Any(ASchool.Plan.FVerzeichnisse->FRaumfehlgruende);
  Absence.FNichtVerfuegbar = Random.Chance(50);
  SetTimes(ASchool, Absence, Absence.FRaum, Random.Between(1, 4), ATaken);
}

}  // namespace

void MakeAbsences(TSchool& ASchool) {
  TTaken Taken;
  for (TSection& Section : ASchool.Sections) {
    for (int I = 0; I < ASchool.Count(76); ++I) {
      MakeOfTeacher(ASchool, Section, Taken);
    }
    for (int I = 0; I < ASchool.Count(24); ++I) {
      MakeOfClass(ASchool, Section, I, Taken);
    }
    for (int I = 0; I < ASchool.Count(16); ++I) {
      MakeOfRoom(ASchool, Section, Taken);
    }
    // Conferences stand in the calendar too.
    Section.Absences.front()->FTermin = ASchool.Plan.FKalender->FEintraege.GetItem(static_cast<int>(Holidays.size()));
  }
}

}  // namespace SchoolGenerator
