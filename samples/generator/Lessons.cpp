#include "Names.h"
#include "School.h"
#include "Subjects.h"
#include "Timetable.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

constexpr int LastLevelWithSupport = 7;

TVELWeeks EveryOtherWeek(int AFirst) {
  TVELWeeks Weeks;
  for (int Week = AFirst; Week <= WeeksOfYear; Week += 2) {
    Weeks.Include(Week);
  }
  return Weeks;
}

/// Some lessons do not take place in all weeks.
void VaryWeeks(TSchool& ASchool, TVELVeranstaltung& ALesson, std::string_view ACode) {
  TRandom& Random = ASchool.Random;
  if (ACode == "FÖD") {
    ALesson.FWochen = EveryOtherWeek(1);
  } else if (ACode == "FÖM") {
    ALesson.FWochen = EveryOtherWeek(2);
  } else if (ACode == "KU" && Random.Chance(20)) {
    ALesson.FPeriode = ASchool.Plan.FPerioden.GetItem(0);
  } else if (ACode == "PK" && Random.Chance(30)) {
    ALesson.FTermine.GetItem(0)->FPeriode = ASchool.Plan.FPerioden.GetItem(1);
  } else if (ACode == "BI" && Random.Chance(30)) {
    ALesson.FTermine.GetItem(0)->FWochen = EveryOtherWeek(1);
  }
}

void AddDetails(TSchool& ASchool, TVELVeranstaltung& ALesson, const TSubject& ARow) {
  TVELVerzeichnisse& Keys = *ASchool.Plan.FVerzeichnisse;
  ALesson.FUnterrichtsform = Keys.FUnterrichtsformen.GetItem(ARow.Code.starts_with("FÖ") ? 2 : 0);
  ALesson.FKategorie = Keys.FVeranstaltungskategorien.GetItem(0);
  ALesson.FRaumtyp = ARow.RoomType == 0 ? nullptr : Keys.FRaumtypen.GetItem(static_cast<int>(ARow.RoomType));
  ALesson.FMerkmal = ASchool.Random.Chance(5) ? Keys.FVeranstaltungsmerkmale.GetItem(1) : nullptr;
  if (ASchool.Random.Chance(5)) {
    auto& Wanted = ASchool.Add<TVELRessourcenvorgabe>(ALesson.FRessourcenvorgaben);
    Wanted.FAnzahl = 1;
    Wanted.FKategorie = ASchool.Any(Keys.FRessourcenkategorien);
    TVELRessource* const Resource = ASchool.Any(ASchool.Plan.FRessourcen);
    ALesson.FRessourcen.Append(Resource);
    ALesson.FTermine.GetItem(0)->FRessourcen.Append(Resource);
  }
  if (ASchool.Random.Chance(4)) {
    ALesson.FTermine.GetItem(0)->FJoker.Append(ASchool.Plan.FTeams.GetItem(ARow.Team));
    ALesson.FTermine.GetItem(0)->FBemerkung = "Zweitkraft aus dem Team; \"nach Absprache\"";
  }
}

void MakeWhole(TSchool& ASchool, TSection& ASection, TClass& AClass, std::size_t ASubject) {
  const TSubject& Row = SubjectTable[ASubject];
  TTeacher& Teacher = ChooseTeacher(ASection, ASubject);
  TVELVeranstaltung& Lesson = AddLesson(ASchool, ASubject, {&AClass}, &Teacher);
  // The basic subjects have less time in the upper levels.
  const int Hours = Row.Hours == 4 && AClass.Level > LastLevelWithSupport ? 3 : Row.Hours;
  if (Row.Code == "FÖD" && ASchool.Random.Chance(50)) {
    Lesson.FRaum = "/";
  }
  Place(ASchool, ASection, {{{&Lesson, &Teacher, Row.RoomType}}, {&AClass}, Hours});
  if (Row.Code == "KL") {
    Lesson.FRaum = AClass.Home->Raum->FKuerzel;
  }
  VaryWeeks(ASchool, Lesson, Row.Code);
  AddDetails(ASchool, Lesson, Row);
}

/// Girls and boys at one time.
void MakeGroups(TSchool& ASchool, TSection& ASection, TClass& AClass, std::size_t ASubject) {
  const TSubject& Row = SubjectTable[ASubject];
  TParallel Groups{{}, {&AClass}, Row.Hours};
  for (const TVELGeschlecht Gender : {gWeiblich, gMaennlich}) {
    TTeacher& Teacher = ChooseTeacher(ASection, ASubject, Groups.Parts);
    TVELVeranstaltung& Lesson = AddLesson(ASchool, ASubject, Groups.Classes, &Teacher);
    Lesson.FKursNr = Gender == gWeiblich ? 1 : 2;
    Lesson.FGruppe = "G";
    Lesson.FInfo = Gender == gWeiblich ? "Sport, Mädchen" : "Sport, Jungen";
    for (TVELSchueler* Student : AClass.Students) {
      if ((Student->FGeschlecht == gWeiblich) == (Gender == gWeiblich)) {
        Lesson.FSchueler.Append(Student);
      }
    }
    Lesson.FSchuelerAnzahl = Lesson.FSchueler.Count();
    Groups.Parts.push_back({&Lesson, &Teacher, Row.RoomType});
  }
  Place(ASchool, ASection, Groups);
}

void MakeWithoutSubject(TSchool& ASchool, TSection& ASection, TClass& AClass) {
  TTeacher* const Teacher = ASection.FindTeacher(AClass.Klasse->FLehrer1);
  TVELVeranstaltung& Lesson = AddLesson(ASchool, NoSubject, {&AClass}, Teacher);
  Lesson.FInfo = "Klassenrat; \"offene Runde\"";
  Place(ASchool, ASection, {{{&Lesson, Teacher, 0}}, {&AClass}, 1});
}

/// Days of a project, once in the year.
void MakeProject(TSchool& ASchool, TSection& ASection, TClass& AClass, int ANumber) {
  TRandom& Random = ASchool.Random;
  TTeacher* const Teacher = ASection.FindTeacher(AClass.Klasse->FLehrer2);
  TVELVeranstaltung& Lesson = AddLesson(ASchool, SubjectOf("KL"), {&AClass}, Teacher);
  Lesson.FExtern = "-P" + std::to_string(ANumber);
  Lesson.FReoccur = false;
  Lesson.FInfo = ANumber == 1 ? "Projekttag \"Gesunde Schule\"" : "Verkehrserziehung; Fahrräder mitbringen";
  Lesson.FKategorie = ASchool.Plan.FVerzeichnisse->FVeranstaltungskategorien.GetItem(1);
  const int Day = AnySchoolDay(Random);
  Lesson.FGueltigVon = Day;
  Lesson.FGueltigBis = Day + 1;
  for (const std::size_t First : {std::size_t{0}, std::size_t{2}}) {
    TVELTermin& Appointment = AddAppointment(ASchool, Lesson, 2);
    Appointment.FStart = At(Day, Rows[First].Start);
    Appointment.FEnde = At(Day, Rows[First + 1].End);
    Appointment.FWochentag = static_cast<TVELDay>(velMonday + WeekdayOf(Day));
    Appointment.FRaeume.Append(AClass.Home->Raum);
  }
  Lesson.FRaeume.Append(AClass.Home->Raum);
}

void MakeClubs(TSchool& ASchool, TSection& ASection) {
  const std::size_t Subject = SubjectOf("AG");
  for (int Number = 1; Number <= ASchool.Count(96); ++Number) {
    TClass& Class = ASchool.Random.Pick(ASection.Classes);
    TTeacher& Teacher = ASchool.Random.Pick(ASection.Teachers);
    TVELVeranstaltung& Lesson = AddLesson(ASchool, Subject, {&Class}, &Teacher);
    Lesson.FKursNr = Number;
    Lesson.FUnterrichtsart = ASchool.Plan.FVerzeichnisse->FUnterrichtsarten.GetItem(3);
    Lesson.FInfo = Number % 2 == 0 ? "Chor & Orchester" : "Schulgarten; nur bei \"gutem\" Wetter";
    Lesson.FLink = "https://ag.annette-gymnasium.example/?nr=" + std::to_string(Number) + "&jahr=2026";
    Lesson.FTagesposition = dpNachmittags;
    if (Number % 7 == 0) {
      // Wanted, with no place in the week yet.
      AddAppointment(ASchool, Lesson, 2);
    } else {
      Place(ASchool, ASection, {{{&Lesson, &Teacher, SubjectTable[Subject].RoomType}}, {&Class}, 1});
    }
    for (int I = 0; I < 5; ++I) {
      TVELSchueler* const Student = ASchool.Random.Pick(Class.Students);
      if (!Lesson.FSchueler.Holds(Student)) {
        Lesson.FSchueler.Append(Student);
      }
    }
  }
}

/// Lessons of teachers alone.
void MakeDuties(TSchool& ASchool, TSection& ASection) {
  for (std::size_t I = 0; I < ASection.Teachers.size(); I += 2) {
    TTeacher& Teacher = ASection.Teachers[I];
    TVELVeranstaltung& Lesson = AddLesson(ASchool, SubjectOf("VB"), {}, &Teacher);
    Lesson.FExtern = "-" + Teacher.Lehrer->FKuerzel;
    Lesson.FRaum = "/";
    Lesson.FKategorie = ASchool.Plan.FVerzeichnisse->FVeranstaltungskategorien.GetItem(2);
    Lesson.FVeranstaltungsattribute.Include(vmIgnoriereStatistik);
    Place(ASchool, ASection, {{{&Lesson, &Teacher, 0}}, {}, 1});
  }
  for (int Number = 1; Number <= ASchool.Count(14); ++Number) {
    TTeacher& Teacher = ASchool.Random.Pick(ASection.Teachers);
    TVELVeranstaltung& Lesson = AddLesson(ASchool, SubjectOf("KO"), {}, &Teacher);
    Lesson.FKursNr = 100 * ASection.Number + Number;
    Lesson.FWochen.Include(Number + 4);
    Lesson.FWochen.Include(Number + 30);
    Place(ASchool, ASection, {{{&Lesson, &Teacher, 8}}, {}, 1});
  }
}

}  // namespace

void MakeLessons(TSchool& ASchool) {
  for (TSection& Section : ASchool.Sections) {
    for (TClass& Class : Section.Classes) {
      for (std::size_t Subject = 0; Subject < SubjectTable.size(); ++Subject) {
        const TSubject& Row = SubjectTable[Subject];
        const bool IsSupport = Row.Code.starts_with("FÖ");
        if (Class.Level >= FirstCourseLevel || Row.FromLevel > Class.Level ||
            (IsSupport && Class.Level > LastLevelWithSupport)) {
          continue;
        }
        if (Row.Teaching == TTeaching::Whole) {
          MakeWhole(ASchool, Section, Class, Subject);
        } else if (Row.Teaching == TTeaching::Groups) {
          MakeGroups(ASchool, Section, Class, Subject);
        }
      }
      if (Class.Level < FirstCourseLevel) {
        MakeWithoutSubject(ASchool, Section, Class);
      }
      MakeProject(ASchool, Section, Class, 1);
      MakeProject(ASchool, Section, Class, 2);
    }
    MakeClubs(ASchool, Section);
    MakeDuties(ASchool, Section);
  }
}

}  // namespace SchoolGenerator
