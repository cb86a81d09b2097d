#include "uPlandaten/Automatik.h"

const TQuillonDataClass& TVELAutomatikparameter::Class() {
  using T = TVELAutomatikparameter;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("AutomaticModeParameters", "Automatikparameter")
      .DateTime<&T::FAMUntil>("AMUntil")
      .DateTime<&T::FCountLehrerGapHoursUntil>("CountTeacherGapHoursUntil")
      .LongInt<&T::FMaxDaysParttimeKlassen>("MaxDaysParttimeClasses", 2)
      .Boolean<&T::FWatchParttimeClasses>("WatchParttimeClasses")
      .Boolean<&T::FKeepTwoHourLessons>("KeepTwoHourLessons")
      .LongInt<&T::FPriorityNot23HoursSaturdayMonday>("PriorityNot23HoursSaturdayMonday")
      .LongInt<&T::FPriorityOneHourLessonsNotSaturday>("PriorityOneHourLessonsNotSaturday")
      .LongInt<&T::FPriorityClassGaps>("PriorityClassGaps", 8)
      .LongInt<&T::FPriorityTeacherGaps>("PriorityTeacherGaps")
      .LongInt<&T::FPriorityAvoidManyHourLessonsPM>("PriorityAvoidManyHourLessonsPM")
      .LongInt<&T::FPriorityAvoidManyLessonsAtDay>("PriorityAvoidManyLessonsAtDay", 9)
      .LongInt<&T::FPriorityAvoidLessonsAtSameHour>("PriorityAvoidLessonsAtSameHour", 7)
      .LongInt<&T::FPriorityTwoHourLessonsNotSaturday>("PriorityTwoHourLessonsNotSaturday")
      .LongInt<&T::FPriorityManyHourLessonsNotNextDay>("PriorityManyHourLessonsNotNextDay")
      .LongInt<&T::FPriorityOneHourLessonNotAt6Pos>("PriorityOneHourLessonNotAt6Pos");
  // clang-format on
  return Class;
}
