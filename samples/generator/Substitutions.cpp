#include <set>
#include <string>

#include "Changes.h"
#include "uPlandaten/Anrechnungen.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

/// Begin and teacher of the totals so far: two with both the same have no order.
using TTotals = std::set<std::pair<double, const TVELLehrer*>>;

/// What becomes of the lessons of a missing teacher.
constexpr std::array<TVELVertretungsmerkmal, 9> Answers = {
    vmAenderung, vmAenderung, vmFaelltAus, vmAenderung, vmKlasseFrei, vmAenderung, vmEntfaellt, vmZusaetzlich, vmKein};

struct TMaker {
  TSchool& School;
  TSection& Section;
  TTotals& Totals;
  TOccurrences Occurrences;

  TVELVertretung& Make(const TOccurrence& AnOccurrence, TVELVertretungsmerkmal AFeature, TVELFehlstellengrund AReason);
  void AddSubstitute(TVELVertretung& AChange, const TOccurrence& AnOccurrence);
  void AddTotal(TVELVertretung& AChange, TVELLehrer* ATeacher, double AHours);
  void MakeOfAbsence(const TOccurrence& AnOccurrence, TVELFehlzeit& AnAbsence, TVELVertretungsmerkmal AFeature);
  void MakeOfAbsences(int ACount);
  void MakeClassesMissing(int ACount);
  void MakeRoomsMissing(int ACount);
  void MakeMove(bool AHasMirror);
  void MakeSwap(TVELVertretungsmerkmal AFeature);
  void MakeAdditional();
  void MakeExempted();
  void MakeExam();
};

TVELVertretung& TMaker::Make(const TOccurrence& AnOccurrence, TVELVertretungsmerkmal AFeature,
                             TVELFehlstellengrund AReason) {
  auto& Change = AddChange<TVELVertretung>(School, School.Plan.FAenderungen, AFeature);
  Describe(School, Change, AnOccurrence);
  Change.FVertretungsmerkmal = AFeature;
  Change.FFehlstellengrund = AReason;
  return Change;
}

void TMaker::AddTotal(TVELVertretung& AChange, TVELLehrer* ATeacher, double AHours) {
  if (!Totals.insert({AChange.FStart, ATeacher}).second) {
    return;
  }
  auto& Total = School.Add<TVELAnrechnung>(School.Plan.FAnrechnungen);
  Total.FStart = AChange.FStart;
  Total.FEnde = AChange.FEnde;
  Total.FStunden = AHours;
  Total.FLehrer = ATeacher;
  Total.FFehlzeit = AChange.FFehlzeit;
  Total.FAenderung = &AChange;
  Total.FBemerkung = School.SomeRemark(10);
}

void TMaker::AddSubstitute(TVELVertretung& AChange, const TOccurrence& AnOccurrence) {
  TVELVerzeichnisse& Keys = *School.Plan.FVerzeichnisse;
  TVELLehrer* const Teacher = ChooseSubstitute(School, Section, AnOccurrence);
  AChange.FNeu.Append(Teacher);
  AChange.FVertretungslehrermerkmal = School.Random.Chance(15) ? vlmMehrfach : vlmKein;
  AChange.FVertretungslehrerart = School.Any(Keys.FVertretungslehrerarten);
  AChange.FVertretungsqualitaet = School.Any(Keys.FVertretungsqualitaeten);
  AChange.FVerrechnungsart = School.Random.Chance(60) ? vaVertretungsstunde : vaKeine;
  AChange.FKonflikt = School.Random.Chance(3);
  AChange.FNeuesFach = School.Random.Chance(30) ? School.Random.Pick(School.Subjects) : nullptr;
  if (School.Random.Chance(15)) {
    AChange.FNeu.Append(ChooseFreeRoom(School, Section, AnOccurrence));
  }
  if (AChange.FVerrechnungsart == vaVertretungsstunde) {
    AChange.FVerrechneteStd = AnOccurrence.Place->Rows;
    AddTotal(AChange, Teacher, AnOccurrence.Place->Rows);
  }
  Teacher->FVertretungsplanAenderung = AChange.FModified;
}

void TMaker::MakeOfAbsence(const TOccurrence& AnOccurrence, TVELFehlzeit& AnAbsence, TVELVertretungsmerkmal AFeature) {
  TVELVertretung& Change = Make(AnOccurrence, AFeature, vaLehrerFehlzeit);
  Change.FFehlzeit = &AnAbsence;
  Change.FFehlend.Append(AnOccurrence.Teacher());
  switch (AFeature) {
    case vmAenderung:
    case vmZusaetzlich:
      AddSubstitute(Change, AnOccurrence);
      break;
    case vmEntfaellt:
      Change.FVertretungsentfall = School.Any(School.Plan.FVerzeichnisse->FVertretungsentfaelle);
      break;
    case vmFaelltAus:
      Change.FVerrechnungsart = vaAusfallstunde;
      break;
    case vmKein:
      Change.FAenderungsstatus = aeOpen;
      Change.FFuellen = true;
      break;
    default:
      break;
  }
}

void TMaker::MakeOfAbsences(int ACount) {
  int Made = 0;
  for (TVELFehlzeit* Absence : Section.Absences) {
    const auto* const OfTeacher = Absence->As<TVELLehrerfehlzeit>();
    if (OfTeacher == nullptr) {
      continue;
    }
    const auto IsMissing = [&](const TOccurrence& AnOccurrence) {
      return AnOccurrence.Class() != nullptr && AnOccurrence.Teacher() == OfTeacher->FLehrer;
    };
    for (const TOccurrence& Occurrence : Occurrences.During(*Absence, std::min(3, ACount - Made), IsMissing)) {
      MakeOfAbsence(Occurrence, *Absence, Answers.at(static_cast<std::size_t>(Made++) % Answers.size()));
    }
  }
}

void TMaker::MakeClassesMissing(int ACount) {
  for (TVELFehlzeit* Absence : Section.Absences) {
    const auto* const OfClass = Absence->As<TVELKlassenfehlzeit>();
    if (OfClass == nullptr) {
      continue;
    }
    const auto IsMissing = [&](const TOccurrence& AnOccurrence) {
      return AnOccurrence.Class() == OfClass->FKlasse &&
             (OfClass->FKurs == nullptr || OfClass->FKurs == &AnOccurrence.Lesson());
    };
    for (const TOccurrence& Occurrence : Occurrences.During(*Absence, std::min(2, ACount), IsMissing)) {
      TVELVertretung& Change = Make(Occurrence, vmKlasseFehlt, vaKlassenFehlzeit);
      Change.FFehlzeit = Absence;
      Change.FFehlend.Append(OfClass->FKlasse);
      Change.FVertretungslehrermerkmal = vlmFreigestellt;
      --ACount;
    }
  }
}

/// Rooms that cannot be used: some lessons are substituted, others only move to another room.
void TMaker::MakeRoomsMissing(int ACount) {
  for (TVELFehlzeit* Absence : Section.Absences) {
    const auto* const OfRoom = Absence->As<TVELRaumfehlzeit>();
    if (OfRoom == nullptr) {
      continue;
    }
    const auto IsMissing = [&](const TOccurrence& AnOccurrence) { return AnOccurrence.Room() == OfRoom->FRaum; };
    for (const TOccurrence& Occurrence : Occurrences.During(*Absence, std::min(4, ACount), IsMissing)) {
      TVELRaum* const NewRoom = ChooseFreeRoom(School, Section, Occurrence);
      if (--ACount % 3 == 0) {
        TVELVertretung& Change = Make(Occurrence, vmAenderung, vaRaumFehlzeit);
        Change.FFehlzeit = Absence;
        Change.FFehlend.Append(OfRoom->FRaum);
        Change.FNeu.Append(NewRoom);
        continue;
      }
      auto& Change = AddChange<TVELRaumaenderung>(School, School.Plan.FAenderungen);
      Describe(School, Change, Occurrence);
      Change.FFehlzeit = Absence;
      Change.FFehlend.Append(OfRoom->FRaum);
      Change.FNeu.Append(NewRoom);
      Change.FKonflikt = School.Random.Chance(5);
      Change.FEntfaellt = School.Random.Chance(5);
    }
  }
}

/// A lesson is brought forward to the place of another one.
void TMaker::MakeMove(bool AHasMirror) {
  const TOccurrence Gap = Occurrences.Any();
  const TOccurrence Moved = Occurrences.OtherOf(Gap, 7);
  if (Moved.Place == nullptr) {
    return;
  }
  TVELVertretung& Forward = Make(Gap, vmVorgezogen, AHasMirror ? vaFreigestellt : vaVerschoben);
  Forward.FFehlend.Append(Gap.Teacher());
  Forward.FNeu.Append(Moved.Teacher());
  Forward.FNeuerTermin = Moved.Place->Termin;
  Forward.FNeuesTerminDatum = Moved.Start();
  Forward.FVertretungslehrermerkmal = vlmVerschoben;
  if (!AHasMirror) {
    return;
  }
  TVELVertretung& Away = Make(Moved, vmWeggezogen, vaWeggezogen);
  Away.FFehlend.Append(Moved.Teacher());
  Away.FTauschTermin = Gap.Place->Termin;
  Away.FSpiegelAenderung = &Forward;
  Forward.FSpiegelAenderung = &Away;
}

/// Two lessons of a class on one day swap their teachers, their rooms, or both.
void TMaker::MakeSwap(TVELVertretungsmerkmal AFeature) {
  const TOccurrence First = Occurrences.Any();
  const TOccurrence Second = Occurrences.OtherOf(First, 0);
  if (Second.Place == nullptr) {
    return;
  }
  const TVELFehlstellengrund Reason = AFeature == vmLehrerRaumTausch ? vaLehrerRaumTausch : vaTausch;
  TVELVertretung& One = Make(First, AFeature, Reason);
  TVELVertretung& Other = Make(Second, AFeature, Reason);
  One.FNeuerTermin = Second.Place->Termin;
  One.FNeuesTerminDatum = Second.Start();
  Other.FNeuerTermin = First.Place->Termin;
  Other.FNeuesTerminDatum = First.Start();
  One.FSpiegelAenderung = &Other;
  Other.FSpiegelAenderung = &One;
  for (TVELVertretung* Change : {&One, &Other}) {
    Change->FTauschTermin = Change->FNeuerTermin;
    Change->FTauschTerminLehrer = AFeature != vmRaumTausch;
    Change->FTauschTerminRaum = AFeature != vmLehrerTausch;
  }
}

/// A lesson beyond the timetable, with a new subject.
void TMaker::MakeAdditional() {
  const TOccurrence Occurrence = Occurrences.Any();
  TVELVertretung& Change = Make(Occurrence, vmZusaetzlich, vaFehlstelle);
  Change.FVertretungslehrermerkmal = vlmZusaetzlich;
  Change.FNeuesFach = Occurrence.Lesson().FFach;
  Change.FInformation = "Zusätzliche Übungsstunde";
  Change.FNeu.Append(ChooseSubstitute(School, Section, Occurrence));
  Change.FNeu.Append(ChooseFreeRoom(School, Section, Occurrence));
  Change.FFehlend.Append(Occurrence.Room());
}

void TMaker::MakeExempted() {
  const TOccurrence Occurrence = Occurrences.Any();
  TVELVertretung& Change = Make(Occurrence, vmAenderung, vaFreigestellt);
  Change.FFehlend.Append(Occurrence.Teacher());
  AddSubstitute(Change, Occurrence);
  Change.FVertretungslehrermerkmal = vlmFreigestellt;
}

void TMaker::MakeExam() {
  const TOccurrence Occurrence = Occurrences.Any();
  TVELVertretung& Change = Make(Occurrence, vmAenderung, vaPruefung);
  Change.FInformation = "Klausur; Raum \"ruhig\"";
  Change.FNeu.Append(Occurrence.Teacher());
  Change.FNeu.Append(ChooseFreeRoom(School, Section, Occurrence));
  Change.FVertretungsentfall = School.Plan.FVerzeichnisse->FVertretungsentfaelle.GetItem(0);
}

}  // namespace

void MakeSubstitutions(TSchool& ASchool) {
  TTotals Totals;
  for (TSection& Section : ASchool.Sections) {
    TMaker Maker{ASchool, Section, Totals, TOccurrences(ASchool, Section)};
    Maker.MakeOfAbsences(ASchool.Count(130));
    Maker.MakeClassesMissing(ASchool.Count(20));
    Maker.MakeRoomsMissing(ASchool.Count(30));
    for (int I = 0; I < ASchool.Count(12); ++I) {
      Maker.MakeMove(I % 4 != 0);
    }
    for (const TVELVertretungsmerkmal Feature : {vmLehrerTausch, vmRaumTausch, vmLehrerRaumTausch}) {
      for (int I = 0; I < ASchool.Count(4); ++I) {
        Maker.MakeSwap(Feature);
      }
    }
    for (int I = 0; I < ASchool.Count(8); ++I) {
      Maker.MakeAdditional();
      Maker.MakeExempted();
      Maker.MakeExam();
    }
  }
}

}  // namespace SchoolGenerator
