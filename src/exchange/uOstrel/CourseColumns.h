#pragma once

#include <span>
#include <string_view>

#include "uOstrel/CsvFile.h"

class TVELTermin;
class TVELVeranstaltung;

/// Columns of the files in which additional lessons stand behind the objects of the timetable.
namespace uOstrel {

/// An appointment with the text of its times, which rests on the range of the export.
struct TScheduledLesson {
  const TVELTermin& Appointment;
  std::string_view Times;
};

std::span<const TColumn<TVELVeranstaltung>> CourseColumns();
std::span<const TColumn<TScheduledLesson>> ScheduledLessonColumns();

}  // namespace uOstrel
