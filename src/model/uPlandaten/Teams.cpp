#include "uPlandaten/Teams.h"

const TQuillonDataClass& TVELTeam::Class() {
  using T = TVELTeam;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELStammobjekt>("Group", "Team \"%s\"")
      .String<&T::FEmail>("Email");
  // clang-format on
  return Class;
}
