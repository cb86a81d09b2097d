#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Dates.h"
#include "Random.h"
#include "SchoolGenerator.h"
#include "Week.h"
#include "uPlandaten/Plan.h"

class TVELAufsicht;
class TVELFach;
class TVELFehlzeit;
class TVELKlasse;
class TVELLehrer;
class TVELRaum;
class TVELSchueler;
class TVELTermin;
class TVELVeranstaltung;

namespace SchoolGenerator {

/// Lowest level, and the levels whose students choose courses.
inline constexpr int FirstLevel = 5;
inline constexpr int FirstCourseLevel = 11;
inline constexpr int LastLevel = 12;

struct TTeacher {
  TVELLehrer* Lehrer = nullptr;
  std::vector<std::size_t> Subjects;  ///< places in the table of subjects
  TWeek Busy;
  int Hours = 0;
};

struct TRoom {
  TVELRaum* Raum = nullptr;
  std::size_t Type = 0;  ///< place in the directory of room types
  TWeek Busy;
};

struct TClass {
  TVELKlasse* Klasse = nullptr;
  int Level = 0;
  TRoom* Home = nullptr;
  TWeek Busy;
  std::vector<TVELSchueler*> Students;
};

/// A scheduled weekly appointment with one teacher and one room.
struct TPlace {
  TVELTermin* Termin = nullptr;
  TSlot Slot;
  int Rows = 1;
};

/// One school of scale 1; a plan holds as many of them as its scale says.
struct TSection {
  int Number = 0;
  std::string Suffix;  ///< tells the codes of the sections apart; empty for the first one
  std::vector<TClass> Classes;
  std::vector<TTeacher> Teachers;
  std::vector<TRoom> Rooms;
  std::vector<TVELAufsicht*> Duties;
  std::vector<TPlace> Places;
  std::vector<TVELFehlzeit*> Absences;

  TTeacher* FindTeacher(const TVELLehrer* ALehrer);
};

/// A school in the making: the plan, the source of its accidents, and what the steps hand to each other.
struct TSchool {
  TVELPlan& Plan;
  TOptions Options;
  TRandom Random;
  std::vector<TSection> Sections;
  std::vector<TVELFach*> Subjects;

  template <class T>
  T& Add(TQuillonDataList& AList) {
    return AddAs<T>(AList, Random.Guid());
  }
  template <class T>
  T& AddAs(TQuillonDataList& AList, const TGUID& AnID) {
    T* const Object = QuillonDataObjects::Create<T>(&Plan, AnID);
    AList.Append(Object);
    return *Object;
  }
  /// Any of a list's items.
  template <class TList>
  auto* Any(const TList& AList) {
    return AList.GetItem(Random.Below(AList.Count()));
  }
  /// A remark for some objects, none for most.
  std::string SomeRemark(int APercent);
  /// How many of what a section of a large school has ALarge of.
  int Count(int ALarge) const { return Options.Small ? (ALarge + 3) / 4 : ALarge; }
};

/// The steps, in their order. Each makes one family of objects for the whole plan.
void MakeKeys(TSchool& ASchool);
void MakeSettings(TSchool& ASchool);
void MakeTimes(TSchool& ASchool);
void MakeSubjects(TSchool& ASchool);
void MakeRooms(TSchool& ASchool);
void MakeTeachers(TSchool& ASchool);
void MakeClasses(TSchool& ASchool);
void MakeCurricula(TSchool& ASchool);
void MakeCourses(TSchool& ASchool);
void MakeLessons(TSchool& ASchool);
void MakeSupervisions(TSchool& ASchool);
void MakeCalendar(TSchool& ASchool);
void MakeAbsences(TSchool& ASchool);
void MakeSubstitutions(TSchool& ASchool);
void MakeOtherChanges(TSchool& ASchool);
/// Sorts the plan's lists and enters lessons and absences in the lists of those who take part.
void LinkObjects(TSchool& ASchool);
/// Gives every object the stamps of its creation and last change.
void StampObjects(TSchool& ASchool);

}  // namespace SchoolGenerator
