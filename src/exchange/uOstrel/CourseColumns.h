#pragma once

#include <span>
#include <string_view>

#include "uOstrel/CsvFile.h"

class TVELAenderung;
class TVELTermin;
class TVELVeranstaltung;

/// Columns of the files in which additional lessons stand behind the objects of the timetable.
namespace uOstrel {

/// A column of rows about objects of class T and about changes; null leaves the cell empty.
template <class T>
struct TJointColumn {
  std::string_view Name;
  void (*Write)(TCsvFile& AFile, const T& AnObject);
  void (*WriteChange)(TCsvFile& AFile, const TVELAenderung& AChange);
};

/// An appointment with the text of its times, which rests on the range of the export.
struct TScheduledLesson {
  const TVELTermin& Appointment;
  std::string_view Times;
};

std::span<const TJointColumn<TVELVeranstaltung>> CourseColumns();
std::span<const TJointColumn<TScheduledLesson>> ScheduledLessonColumns();

}  // namespace uOstrel
