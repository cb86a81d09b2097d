#include "uPlandaten/Perioden.h"

#include "uPlandaten/Teams.h"

const TQuillonDataClass& TVELPeriode::Class() {
  using T = TVELPeriode;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELStammobjekt>("Period", "Periode \"%s\"")
      .DateTime<&T::FStart>("Start")
      .DateTime<&T::FEnde>("End")
      .String<&T::FWochen>("Weeks").AlwaysWritten()
      .Single<&T::FFaktor>("Factor", 1)
      .Single<&T::FFaktor2>("Factor2", 1)
      .Reference<&T::FTeam>("Group")
      .List<&T::FPerioden>("Periods");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELZeitraum::Class() {
  using T = TVELZeitraum;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELStammobjekt>("TimeWindow", "Zeitraum \"%s\"")
      .Date<&T::FEnde>("ValidTo")
      .LongInt<&T::FFarbe>("Color", NoColour).AlwaysWritten()
      .Date<&T::FStart>("ValidFrom")
      .LongInt<&T::FMaxStdAnzahl>("MaxLessonsCount").Required()
      .LongInt<&T::FMinStdAnzahl>("MinHoursCount").Required()
      .Reference<&T::FParentZeitraum>("ParentTimeWindow");
  // clang-format on
  return Class;
}
