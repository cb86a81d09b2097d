#include "Timetable.h"

#include <algorithm>
#include <array>

#include "Subjects.h"
#include "uPlandaten/Bloecke.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

namespace SchoolGenerator {

namespace {

constexpr std::array<int, 6> Morning = {0, 1, 2, 3, 4, 5};
constexpr std::array<int, 3> Afternoon = {7, 8, 9};

/// Where a double lesson may begin.
constexpr std::array<int, 3> MorningPairs = {0, 2, 4};

TWeek BusyOf(const TParallel& AParallel) {
  TWeek Busy;
  for (const TClass* Class : AParallel.Classes) {
    Busy |= Class->Busy;
  }
  for (const TPart& Part : AParallel.Parts) {
    Busy |= Part.Teacher->Busy;
  }
  return Busy;
}

bool FindSlot(TRandom& ARandom, const TWeek& ABusy, int ARows, TSlot& ASlot) {
  const TWeek Mornings = TWeek::OfRows(Morning).Without(ABusy);
  const TWeek Afternoons = TWeek::OfRows(Afternoon).Without(ABusy);
  TWeek Free = Mornings;
  if (ARows == 2) {
    const TWeek Pairs = Mornings.FirstsOfPairs();
    const TWeek Wrong = Pairs.Without(TWeek::OfRows(MorningPairs));
    Free = Pairs.Without(Wrong);
  }
  if (Free.IsEmpty()) {
    Free = ARows == 2 ? Afternoons.FirstsOfPairs() : Afternoons;
  }
  if (Free.IsEmpty()) {
    return false;
  }
  ASlot = Free.Pick(ARandom);
  return true;
}

/// The class's own room for a lesson of the whole class, else a free one of the type, else any free one.
TRoom* FindRoom(TSection& ASection, const TParallel& AParallel, const TPart& APart, const TWeek& AWanted) {
  if (AParallel.Parts.size() == 1 && APart.RoomType == 0 && AParallel.Classes.size() == 1) {
    TRoom* const Home = AParallel.Classes.front()->Home;
    if (!Home->Busy.Meets(AWanted)) {
      return Home;
    }
  }
  for (const std::size_t Type : {APart.RoomType, std::size_t{0}}) {
    // The rooms of the classes stand first; courses take the others.
    for (auto Room = ASection.Rooms.rbegin(); Room != ASection.Rooms.rend(); ++Room) {
      if (Room->Type == Type && !Room->Busy.Meets(AWanted)) {
        return &*Room;
      }
    }
  }
  return nullptr;
}

void Schedule(TVELTermin& AnAppointment, const TSlot& ASlot, int ARows) {
  AnAppointment.FStart = At(0, Rows.at(static_cast<std::size_t>(ASlot.Row)).Start);
  AnAppointment.FEnde = At(0, Rows.at(static_cast<std::size_t>(ASlot.Row + ARows - 1)).End);
  AnAppointment.FWochentag = static_cast<TVELDay>(velMonday + ASlot.Day);
}

void PlaceOne(TSchool& ASchool, TSection& ASection, const TParallel& AParallel, int ARows, int ANumber) {
  TSlot Slot;
  const bool Found = FindSlot(ASchool.Random, BusyOf(AParallel), ARows, Slot);
  const TWeek Wanted = Found ? TWeek::Of(Slot, ARows) : TWeek();
  for (TClass* Class : AParallel.Classes) {
    Class->Busy |= Wanted;
  }
  for (const TPart& Part : AParallel.Parts) {
    TVELTermin& Appointment = AddAppointment(ASchool, *Part.Lesson, ARows);
    Part.Teacher->Hours += ARows;
    if (!Part.Lesson->FBlockID.empty()) {
      Appointment.FBlockID = Part.Lesson->FBlockID + "." + std::to_string(ANumber);
    }
    if (!Found) {
      continue;
    }
    Schedule(Appointment, Slot, ARows);
    Part.Teacher->Busy |= Wanted;
    TRoom* const Room = Part.Lesson->IgnoreRoom() ? nullptr : FindRoom(ASection, AParallel, Part, Wanted);
    if (Room == nullptr) {
      continue;
    }
    Room->Busy |= Wanted;
    Appointment.FRaeume.Append(Room->Raum);
    if (!Part.Lesson->FRaeume.Holds(Room->Raum)) {
      Part.Lesson->FRaeume.Append(Room->Raum);
    }
    ASection.Places.push_back({&Appointment, Slot, ARows});
  }
}

}  // namespace

TVELVeranstaltung& AddLesson(TSchool& ASchool, std::size_t ASubject, const std::vector<TClass*>& AClasses,
                             const TTeacher* ATeacher) {
  auto& Lesson = ASchool.Add<TVELVeranstaltung>(ASchool.Plan.FVeranstaltungen);
  Lesson.FVeranstaltungsNr = "V" + std::to_string(ASchool.Plan.FVeranstaltungen.Count());
  if (ASubject != NoSubject) {
    Lesson.FFach = ASchool.Subjects[ASubject];
    Lesson.FFachfolge = Lesson.FFach->FFachfolge;
    Lesson.FFachstatus = Lesson.FFach->FFachstatus;
  }
  for (const TClass* Class : AClasses) {
    Lesson.FKlassen.Append(Class->Klasse);
    Lesson.FSchuelerAnzahl += Class->Klasse->FSchuelerAnzahl;
  }
  if (ATeacher != nullptr) {
    Lesson.FLehrer.Append(ATeacher->Lehrer);
  }
  Lesson.FBemerkung = ASchool.SomeRemark(5);
  return Lesson;
}

TTeacher& ChooseTeacher(TSection& ASection, std::size_t ASubject, const std::vector<TPart>& AnExcluded) {
  TTeacher* Best = nullptr;
  bool BestHasSubject = false;
  for (TTeacher& Teacher : ASection.Teachers) {
    if (std::ranges::find(AnExcluded, &Teacher, &TPart::Teacher) != AnExcluded.end()) {
      continue;
    }
    const bool HasSubject = std::ranges::find(Teacher.Subjects, ASubject) != Teacher.Subjects.end();
    if (Best == nullptr || (HasSubject && !BestHasSubject) ||
        (HasSubject == BestHasSubject && Teacher.Hours < Best->Hours)) {
      Best = &Teacher;
      BestHasSubject = HasSubject;
    }
  }
  return *Best;
}

TVELTermin& AddAppointment(TSchool& ASchool, TVELVeranstaltung& ALesson, int ARows) {
  auto& Appointment = ASchool.Add<TVELTermin>(ALesson.FTermine);
  Appointment.FSollDauer = ARows;
  for (TVELLehrer* Teacher : ALesson.FLehrer) {
    Appointment.FLehrer.Append(Teacher);
  }
  return Appointment;
}

void Place(TSchool& ASchool, TSection& ASection, const TParallel& AParallel) {
  int Number = 0;
  for (int Left = AParallel.Hours; Left > 0;) {
    const int Count = Left >= 2 && ASchool.Random.Chance(AParallel.Hours > 2 ? 60 : 30) ? 2 : 1;
    PlaceOne(ASchool, ASection, AParallel, Count, ++Number);
    Left -= Count;
  }
  for (const TPart& Part : AParallel.Parts) {
    Part.Lesson->FDoppelstundenMax = AParallel.Hours / 2;
  }
}

void Join(TSchool& ASchool, const TParallel& AParallel, const std::string& AName, int ANumber, int ALevel) {
  auto& Block = ASchool.Add<TVELBlock>(ASchool.Plan.FBlockungen);
  Block.FName = AName;
  Block.FBand = ANumber;
  Block.FStufe = ALevel;
  Block.FMaxStdAnzahl = AParallel.Hours;
  Block.FMinStdAnzahl = AParallel.Hours;
  Block.FIntern = ASchool.Plan.FBlockungen.Count();
  for (std::size_t I = 0; I < AParallel.Parts.size(); ++I) {
    TVELVeranstaltung& Lesson = *AParallel.Parts[I].Lesson;
    Lesson.FBlock = &Block;
    Lesson.FBlockID = AName;
    Lesson.FBand = ANumber;
    Lesson.FBlockIndex = ANumber;
    Lesson.FBlockNext = AParallel.Parts[(I + 1) % AParallel.Parts.size()].Lesson;
    Lesson.FGruppe = "G";
  }
}

}  // namespace SchoolGenerator
