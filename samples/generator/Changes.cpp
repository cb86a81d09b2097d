#include "Changes.h"

#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

namespace SchoolGenerator {

namespace {

/// Most changes are published; each status occurs.
constexpr std::array<TVELAenderungsStatus, 17> Statuses = {
    aePublished, aePublished,        aeFinished,  aePublished, aeNotified,  aePublished,
    aeOpen,      aePublished,        aeClosed,    aePublished, aePublished, aeNotPublic,
    aePublished, aeNotPublicAbsence, aePublished, aePublished, aeInvalid};

}  // namespace

TVELVeranstaltung& TOccurrence::Lesson() const { return *Place->Termin->Veranstaltung(); }

TVELKlasse* TOccurrence::Class() const { return Lesson().FKlassen.IsEmpty() ? nullptr : Lesson().FKlassen.GetItem(0); }

TVELLehrer* TOccurrence::Teacher() const { return Place->Termin->FLehrer.GetItem(0); }

TVELRaum* TOccurrence::Room() const { return Place->Termin->FRaeume.GetItem(0); }

TQuillonDateTime TOccurrence::Start() const {
  return At(Day, Rows.at(static_cast<std::size_t>(Place->Slot.Row)).Start);
}

TQuillonDateTime TOccurrence::End() const {
  return At(Day, Rows.at(static_cast<std::size_t>(Place->Slot.Row + Place->Rows - 1)).End);
}

bool TOccurrence::IsIn(const TVELFehlzeit& AnAbsence) const {
  return Start() < AnAbsence.FEnde && AnAbsence.FStart < End();
}

std::pair<int, int> DaysOf(const TVELFehlzeit& AnAbsence) {
  return {static_cast<int>(AnAbsence.FStart), static_cast<int>(AnAbsence.FEnde)};
}

bool TOccurrences::Claim(const TOccurrence& AnOccurrence) {
  return IsSchoolDay(AnOccurrence.Day) && AnOccurrence.Termin().Weeks().Contains(WeekOf(AnOccurrence.Day)) &&
         FTaken.insert({AnOccurrence.Place->Termin, AnOccurrence.Day}).second;
}

TOccurrence TOccurrences::Any() {
  while (true) {
    const TPlace& Place = FSchool.Random.Pick(FSection.Places);
    const TOccurrence Occurrence{&Place, AnySchoolDay(FSchool.Random, Place.Slot.Day)};
    if (Occurrence.Class() != nullptr && Occurrence.Lesson().FFach != nullptr && Claim(Occurrence)) {
      return Occurrence;
    }
  }
}

TOccurrence TOccurrences::OtherOf(const TOccurrence& AnOccurrence, int ADays) {
  for (int Day = AnOccurrence.Day; Day <= AnOccurrence.Day + ADays; ++Day) {
    for (const TPlace& Place : FSection.Places) {
      const TOccurrence Other{&Place, Day};
      if (Place.Slot.Day == WeekdayOf(Day) && Place.Termin != AnOccurrence.Place->Termin &&
          Place.Rows == AnOccurrence.Place->Rows && Other.Class() == AnOccurrence.Class() &&
          Other.Teacher() != AnOccurrence.Teacher() && Other.Lesson().FFach != nullptr && Claim(Other)) {
        return Other;
      }
    }
  }
  return {};
}

void Describe(TSchool& ASchool, TVELAenderung& AChange, const TQuillonDateTime& AStart, const TQuillonDateTime& AnEnd) {
  AChange.FStart = AStart;
  AChange.FEnde = AnEnd;
  AChange.FModified = At(static_cast<int>(AStart) - 1, ASchool.Random.Between(400, 1000));
  AChange.FAenderungsstatus = ASchool.Random.Pick(Statuses);
  AChange.FNotPublic = ASchool.Random.Chance(6);
  AChange.FBemerkung = ASchool.SomeRemark(20);
}

void Describe(TSchool& ASchool, TVELAenderung& AChange, const TOccurrence& AnOccurrence) {
  Describe(ASchool, AChange, AnOccurrence.Start(), AnOccurrence.End());
  AChange.FATermin = AnOccurrence.Place->Termin;
  AChange.FOriginalFach = AnOccurrence.Lesson().FFach;
  for (TVELKlasse* Class : AnOccurrence.Lesson().FKlassen) {
    AChange.FOriginal.Append(Class);
  }
  AChange.FOriginal.Append(AnOccurrence.Teacher());
  AChange.FOriginal.Append(AnOccurrence.Room());
}

TVELLehrer* ChooseSubstitute(TSchool& ASchool, TSection& ASection, const TOccurrence& AnOccurrence) {
  const TWeek Wanted = TWeek::Of(AnOccurrence.Place->Slot, AnOccurrence.Place->Rows);
  TTeacher* Teacher = nullptr;
  for (int Tries = 0; Tries < 50; ++Tries) {
    Teacher = &ASchool.Random.Pick(ASection.Teachers);
    if (Teacher->Lehrer != AnOccurrence.Teacher() && !Teacher->Busy.Meets(Wanted)) {
      break;
    }
  }
  return Teacher->Lehrer;
}

TVELRaum* ChooseFreeRoom(TSchool& ASchool, TSection& ASection, const TOccurrence& AnOccurrence) {
  const TWeek Wanted = TWeek::Of(AnOccurrence.Place->Slot, AnOccurrence.Place->Rows);
  TRoom* Room = nullptr;
  for (int Tries = 0; Tries < 50; ++Tries) {
    Room = &ASchool.Random.Pick(ASection.Rooms);
    if (Room->Raum != AnOccurrence.Room() && !Room->Busy.Meets(Wanted)) {
      break;
    }
  }
  return Room->Raum;
}

}  // namespace SchoolGenerator
