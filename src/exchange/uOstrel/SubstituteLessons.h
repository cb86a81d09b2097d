#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "uOstrel/Changes.h"
#include "uOstrel/CsvFile.h"

class TVELFach;

namespace uOstrel {

/// A row of "SubstituteLessons.csv": a lesson as a change makes it.
struct TSubstituteLesson {
  TGUID Id{};
  std::string_view Description{};
  TGUID CourseId{};
  TGUID LessonId{};                   ///< the lesson of the timetable that it stands for
  const TVELFach* Subject = nullptr;  ///< the new one, if it has changed
  const TVELDataObject* Quality = nullptr;
  std::string Rooms{};
  std::string Classes{};
  std::string Teachers{};
  std::string Times{};
};

/// The lesson that the change makes, if it makes one and the set tells it. Texts point into the change.
std::optional<TSubstituteLesson> SubstituteLesson(const TVELAenderung& AChange, const TExportScope& AScope);

std::span<const TColumn<TSubstituteLesson>> SubstituteLessonColumns();

}  // namespace uOstrel
