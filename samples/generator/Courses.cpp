#include <map>

#include "School.h"
#include "Subjects.h"
#include "Timetable.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

/// Courses at one time, of which each student takes one. A small school has the first ones only,
/// and of some blocks none.
struct TBlockRow {
  std::string_view Name;
  int LessonType;  ///< place in the directory; -1 for none
  int Hours;
  int SmallCount;
  std::vector<std::string_view> Courses;
};

const std::vector<TBlockRow> UpperBlocks = {{"LK1", 1, 5, 2, {"D", "M", "E", "BI", "GE", "PA", "KU"}},
                                            {"LK2", 2, 5, 2, {"E", "BI", "M", "PH", "SW", "EK", "F"}},
                                            {"GK1", 0, 3, 0, {"D", "D", "D", "D", "M", "M", "M"}},
                                            {"GK2", 0, 3, 0, {"M", "M", "M", "E", "E", "E", "D"}},
                                            {"GK3", 0, 3, 0, {"E", "F", "L", "S", "E", "SW", "GE"}},
                                            {"GK4", 0, 3, 2, {"GE", "SW", "EK", "PA", "PL", "GE", "SW"}},
                                            {"GK5", 0, 3, 2, {"BI", "PH", "CH", "IF", "PH", "CH", "BI"}},
                                            {"GK6", 0, 2, 2, {"KR", "ER", "PL", "PL", "KR", "ER", "PA"}},
                                            {"GK7", 0, 3, 2, {"SP", "SP", "SP", "SP", "LI", "MU", "KU"}},
                                            {"GK8", 0, 3, 0, {"KU", "MU", "LI", "KU", "MU", "IF", "S"}}};

const TBlockRow Religion = {"REL", -1, 2, 3, {"KR", "ER", "PP", "KR", "ER"}};
const TBlockRow Languages = {"2FS", -1, 3, 2, {"F", "L", "S", "F", "L"}};
constexpr int FirstLanguageLevel = 7;

/// The courses of a level, while they are made.
struct TLevel {
  int Level = 0;
  std::vector<TClass*> Classes;
  std::map<std::string, int> Numbers;  ///< courses so far, by subject and type
  int Blocks = 0;
};

void Choose(TSchool& ASchool, TVELSchueler& AStudent, TVELVeranstaltung& ACourse, int AHours, bool AnIsFixed) {
  auto& Choice = ASchool.Add<TVELKurswahl>(AStudent.FKurswahl);
  Choice.FFach = ACourse.FFach;
  Choice.FFachschwerpunkt = ACourse.FFachschwerpunkt;
  Choice.FKurs = &ACourse;
  Choice.FKursNr = ACourse.FKursNr;
  Choice.FUnterrichtsart = ACourse.FUnterrichtsart;
  Choice.FStunden = AHours;
  Choice.FFix = AnIsFixed;
  Choice.FPflicht = 4;
  for (const int HalfYear : {1, 2, 3, 4}) {
    Choice.FGewaehlt.Include(HalfYear);
  }
  Choice.FBemerkung = ASchool.SomeRemark(1);
}

TVELVeranstaltung& MakeCourse(TSchool& ASchool, TSection& ASection, TLevel& ALevel, const TBlockRow& ARow,
                              std::string_view ACode, TParallel& ABlock) {
  TVELVerzeichnisse& Keys = *ASchool.Plan.FVerzeichnisse;
  const std::size_t Subject = SubjectOf(ACode);
  TTeacher& Teacher = ChooseTeacher(ASection, Subject, ABlock.Parts);
  TVELVeranstaltung& Course = AddLesson(ASchool, Subject, ALevel.Classes, &Teacher);
  Course.FSchuelerAnzahl = 0;
  Course.FUnterrichtsart = ARow.LessonType < 0 ? nullptr : Keys.FUnterrichtsarten.GetItem(ARow.LessonType);
  Course.FKursNr = ++ALevel.Numbers[std::string(ACode) + (ARow.LessonType > 0 ? "/LK" : "")];
  Course.FMinSchuelerAnzahl = 5;
  Course.FMaxSchuelerAnzahl = 30;
  Course.FFachschwerpunkt = ASchool.Random.Chance(20) ? ASchool.Any(Keys.FFachschwerpunkte) : nullptr;
  Course.FSchulform = Keys.FSchulformen.GetItem(0);
  Course.FZeitraum = ASchool.Plan.FZeitraeume.GetItem(0);
  Course.FGueltigVon = FirstDay;
  Course.FGueltigBis = LastDay;
  Course.FInfo = Course.FFach->FBezeichnung + " " + std::string(ARow.Name);
  for (int Quarter = 0; Quarter < 4; ++Quarter) {
    Course.FJahresverteilung.push_back(ARow.Hours);
  }
  ABlock.Parts.push_back({&Course, &Teacher, SubjectTable[Subject].RoomType});
  return Course;
}

void MakeBlock(TSchool& ASchool, TSection& ASection, TLevel& ALevel, const TBlockRow& ARow) {
  TParallel Block{{}, ALevel.Classes, ARow.Hours};
  const std::size_t Count = ASchool.Options.Small ? static_cast<std::size_t>(ARow.SmallCount) : ARow.Courses.size();
  if (Count == 0) {
    return;
  }
  for (std::size_t I = 0; I < Count; ++I) {
    MakeCourse(ASchool, ASection, ALevel, ARow, ARow.Courses[I], Block);
  }
  const std::string Name = std::to_string(ALevel.Level) + "-" + std::string(ARow.Name) + ASection.Suffix;
  Join(ASchool, Block, Name, ++ALevel.Blocks, ALevel.Level);
  Place(ASchool, ASection, Block);
  for (TClass* Class : ALevel.Classes) {
    for (TVELSchueler* Student : Class->Students) {
      TVELVeranstaltung& Course = *ASchool.Random.Pick(Block.Parts).Lesson;
      Course.FSchueler.Append(Student);
      if (!Student->FKeineFachwahl) {
        Choose(ASchool, *Student, Course, ARow.Hours, ARow.LessonType > 0);
      }
      ++Course.FSchuelerAnzahl;
    }
  }
}

}  // namespace

void MakeCourses(TSchool& ASchool) {
  for (TSection& Section : ASchool.Sections) {
    for (int Level = FirstLevel; Level <= LastLevel; ++Level) {
      TLevel State;
      State.Level = Level;
      for (TClass& Class : Section.Classes) {
        if (Class.Level == Level) {
          State.Classes.push_back(&Class);
        }
      }
      if (Level >= FirstCourseLevel) {
        for (const TBlockRow& Row : UpperBlocks) {
          MakeBlock(ASchool, Section, State, Row);
        }
        continue;
      }
      MakeBlock(ASchool, Section, State, Religion);
      if (Level >= FirstLanguageLevel) {
        MakeBlock(ASchool, Section, State, Languages);
      }
    }
  }
}

}  // namespace SchoolGenerator
