#pragma once

#include <cstdint>

#include "uPlandaten/Basis.h"

/// Weights of the automatic scheduler.
class TVELAutomatikparameter : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELTime FAMUntil;
  TVELTime FCountLehrerGapHoursUntil;
  std::int32_t FMaxDaysParttimeKlassen = 2;
  bool FWatchParttimeClasses = false;
  bool FKeepTwoHourLessons = false;
  std::int32_t FPriorityNot23HoursSaturdayMonday = 0;
  std::int32_t FPriorityOneHourLessonsNotSaturday = 0;
  std::int32_t FPriorityClassGaps = 8;
  std::int32_t FPriorityTeacherGaps = 0;
  std::int32_t FPriorityAvoidManyHourLessonsPM = 0;
  std::int32_t FPriorityAvoidManyLessonsAtDay = 9;
  std::int32_t FPriorityAvoidLessonsAtSameHour = 7;
  std::int32_t FPriorityTwoHourLessonsNotSaturday = 0;
  std::int32_t FPriorityManyHourLessonsNotNextDay = 0;
  std::int32_t FPriorityOneHourLessonNotAt6Pos = 0;
};
