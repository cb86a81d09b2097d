#include "uPlandaten/Bloecke.h"

#include "uPlandaten/Klassen.h"

const TQuillonDataClass& TVELBlock::Class() {
  using T = TVELBlock;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("Block", "Block")
      .LongInt<&T::FBand>("Band").AlwaysWritten()
      .Reference<&T::FKlasse>("Class").Until("6.0.135")
      .Reference<&T::FKursart>("LessonType").Until("6.0.135")
      .LongInt<&T::FStufe>("Level")
      .LongInt<&T::FMaxStdAnzahl>("MaxLessonsCount")
      .LongInt<&T::FMinStdAnzahl>("MinHoursCount")
      .String<&T::FName>("Name")
      .LongInt<&T::FIntern>("Internal")
      .Boolean<&T::FIgnore>("Ignore");
  // clang-format on
  return Class;
}
