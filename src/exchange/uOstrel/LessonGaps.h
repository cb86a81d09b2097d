#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "uOstrel/Changes.h"
#include "uOstrel/CsvFile.h"

namespace uOstrel {

/// A row of "LessonGaps.csv": a lesson of the timetable that does not take place as planned.
struct TLessonGap {
  TGUID Id;
  TGUID LessonId;
  std::string Times;
  std::string Reasons;      ///< JSON array, or nothing
  std::string Resolutions;  ///< JSON array of one object at most: what takes the place
  std::string_view Description;
};

/// The gap that the change tears into the timetable, if it tears one and the set tells it. Texts point into the change.
std::optional<TLessonGap> LessonGap(const TVELAenderung& AChange, const TExportScope& AScope);

std::span<const TColumn<TLessonGap>> LessonGapColumns();

}  // namespace uOstrel
