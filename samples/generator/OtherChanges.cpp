#include "Changes.h"
#include "Names.h"
#include "Subjects.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

TQuillonDateTime OnDay(int ADay, const TQuillonDateTime& ATime) {
  constexpr double MinutesADay = 1440;
  return At(ADay, static_cast<int>(ATime * MinutesADay + 0.5));
}

void MakeSupervisionChange(TSchool& ASchool, TSection& ASection, int ANumber) {
  TRandom& Random = ASchool.Random;
  TVELAufsicht& Duty = *Random.Pick(ASection.Duties);
  const int Day = AnySchoolDay(Random, Duty.FWochentag - velMonday);
  auto& Change = AddChange<TVELAufsichtsVertretung>(ASchool, ASchool.Plan.FAenderungen);
  Describe(ASchool, Change, OnDay(Day, Duty.FStart), OnDay(Day, Duty.FEnde));
  Change.FATermin = &Duty;
  Change.FOriginal.Append(Duty.FLehrer);
  Change.FFehlend.Append(Duty.FLehrer);
  Change.FKeineVertretung = ANumber % 4 == 3;
  Change.FKonflikt = ANumber % 7 == 6;
  if (!Change.FKeineVertretung) {
    Change.FNeu.Append(Random.Pick(ASection.Teachers).Lehrer);
  }
}

void MakeAdditionalLesson(TSchool& ASchool, TSection& ASection, int ANumber) {
  TRandom& Random = ASchool.Random;
  const int Day = AnySchoolDay(Random);
  const auto Row = static_cast<std::size_t>(Random.Between(7, 9));
  auto& Change = AddChange<TVELZusatzunterricht>(ASchool, ASchool.Plan.FAenderungen);
  Describe(ASchool, Change, At(Day, Rows.at(Row).Start), At(Day, Rows.at(Row).End));
  TClass& Class = Random.Pick(ASection.Classes);
  Change.FInformation = "Zusatzunterricht " + Class.Klasse->FKuerzel;
  Change.FNeuesFach = ANumber % 6 == 5 ? nullptr : ASchool.Subjects[SubjectOf(ANumber % 2 == 0 ? "M" : "D")];
  Change.FKursart = ASchool.Plan.FVerzeichnisse->FUnterrichtsarten.GetItem(0);
  Change.FKursNr = static_cast<std::int8_t>(ANumber % 3 + 1);
  Change.FOriginal.Append(Class.Klasse);
  Change.FOriginal.Append(Random.Pick(ASection.Teachers).Lehrer);
  Change.FOriginal.Append(Random.Pick(ASection.Rooms).Raum);
  if (ANumber % 3 == 1) {
    for (std::size_t I = 0; I < 4; ++I) {
      Change.FOriginal.Append(Class.Students.at(I));
    }
  }
  if (ANumber % 3 == 0) {
    Change.FFehlzeit = ASection.Absences.front();
    Change.FNeu.Append(Random.Pick(ASection.Teachers).Lehrer);
    Change.FNeu.Append(Random.Pick(ASection.Rooms).Raum);
  }
}

void MakeMessage(TSchool& ASchool, TSection& ASection, int ANumber) {
  TRandom& Random = ASchool.Random;
  const int Day = AnySchoolDay(Random);
  auto& Change = AddChange<TVELMitteilung>(ASchool, ASchool.Plan.FAenderungen);
  const bool IsAllDay = ANumber % 2 == 0;
  Describe(ASchool, Change, At(Day, IsAllDay ? 0 : 9 * 60 + 20),
           At(IsAllDay ? Day + 1 : Day, IsAllDay ? 0 : 9 * 60 + 40));
  Change.FInformation = "Mitteilung Nr. " + std::to_string(ANumber + 1) + "; \"wichtig\"";
  Change.FMitteilung = Random.Pick(Remarks);
  Change.FAlleKlassen = ANumber % 4 == 0;
  Change.FAlleLehrer = ANumber % 3 == 0;
  Change.FNeu.Append(Random.Pick(ASection.Classes).Klasse);
  Change.FNeu.Append(Random.Pick(ASection.Teachers).Lehrer);
}

/// A room or a resource that is booked.
void MakeAssignment(TSchool& ASchool, TSection& ASection, int ANumber) {
  TRandom& Random = ASchool.Random;
  const int Day = AnySchoolDay(Random);
  auto& Change = AddChange<TVELZuweisung>(ASchool, ASchool.Plan.FZuweisungen);
  Describe(ASchool, Change, At(Day, Rows[2].Start), At(Day, Rows[3].End));
  TVELRaum* const Room = Random.Pick(ASection.Rooms).Raum;
  Change.FInformation = "Buchung durch " + Random.Pick(ASection.Teachers).Lehrer->FKuerzel;
  Change.FOriginal.Append(Room);
  Change.FFehlend.Append(Room);
  if (ANumber % 2 == 0) {
    Change.FNeu.Append(Random.Pick(ASection.Rooms).Raum);
  } else {
    Change.FNeu.Append(ASchool.Any(ASchool.Plan.FRessourcen));
  }
}

}  // namespace

void MakeOtherChanges(TSchool& ASchool) {
  for (TSection& Section : ASchool.Sections) {
    for (int I = 0; I < ASchool.Count(16); ++I) {
      MakeSupervisionChange(ASchool, Section, I);
    }
    for (int I = 0; I < ASchool.Count(20); ++I) {
      MakeAdditionalLesson(ASchool, Section, I);
    }
    for (int I = 0; I < ASchool.Count(18); ++I) {
      MakeMessage(ASchool, Section, I);
      MakeAssignment(ASchool, Section, I);
    }
  }
}

}  // namespace SchoolGenerator
