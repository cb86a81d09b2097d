#pragma once

#include <vector>

#include "School.h"

namespace SchoolGenerator {

/// A lesson with its teacher, to be placed in the week.
struct TPart {
  TVELVeranstaltung* Lesson = nullptr;
  TTeacher* Teacher = nullptr;
  std::size_t RoomType = 0;
};

/// Lessons that lie at the same times, for the same classes.
struct TParallel {
  std::vector<TPart> Parts;
  std::vector<TClass*> Classes;
  int Hours = 0;
};

/// Adds a lesson; without a subject for place NoSubject.
inline constexpr std::size_t NoSubject = static_cast<std::size_t>(-1);
TVELVeranstaltung& AddLesson(TSchool& ASchool, std::size_t ASubject, const std::vector<TClass*>& AClasses,
                             const TTeacher* ATeacher);

/// The teacher of the subject with the fewest hours; one without the subject if all who have it are excluded.
TTeacher& ChooseTeacher(TSection& ASection, std::size_t ASubject, const std::vector<TPart>& AnExcluded = {});

/// Adds the appointments of the lessons, at times when classes and teachers are free; what finds no place stays
/// unscheduled.
void Place(TSchool& ASchool, TSection& ASection, const TParallel& AParallel);

/// Adds one appointment and gives it a length, in rows, but no place.
TVELTermin& AddAppointment(TSchool& ASchool, TVELVeranstaltung& ALesson, int ARows);

/// Makes a block of lessons: name, number, and the ring.
void Join(TSchool& ASchool, const TParallel& AParallel, const std::string& AName, int ANumber, int ALevel);

}  // namespace SchoolGenerator
