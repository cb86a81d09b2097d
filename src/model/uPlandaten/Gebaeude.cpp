#include "uPlandaten/Gebaeude.h"

const TQuillonDataClass& TVELGebaeude::Class() {
  using T = TVELGebaeude;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELStammobjekt>("Building", "Gebäude \"%s\"")
      .LongInt<&T::FWegzeit>("RouteTime")
      .String<&T::FCampus>("Campus");
  // clang-format on
  return Class;
}
