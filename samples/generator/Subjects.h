#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "uPlandaten/Werte.h"

namespace SchoolGenerator {

/// How a subject is taught below the levels that choose courses.
enum class TTeaching {
  None,    ///< not at all there
  Whole,   ///< by class
  Groups,  ///< by two groups of a class at one time
  Choice,  ///< by choice, the students of a level together
};

struct TSubject {
  std::string_view Code;
  std::string_view Name;
  TVELFachkategorie Category;
  std::size_t RoomType;  ///< place in the directory of room types
  int Team;              ///< place in the plan's list of teams
  int Hours;             ///< a week, below the levels that choose courses
  int FromLevel;
  TTeaching Teaching;
  bool IsCourse;  ///< taught in courses
};

extern const std::vector<TSubject> SubjectTable;

/// Place of a subject in the table; the code must be there.
std::size_t SubjectOf(std::string_view ACode);

}  // namespace SchoolGenerator
