#include "uPlandaten/Anrechnungen.h"

#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Lehrer.h"

const TQuillonDataClass& TVELAnrechnung::Class() {
  using T = TVELAnrechnung;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("Total", "Anrechnung")
      .DateTime<&T::FStart>("Start")
      .DateTime<&T::FEnde>("End")
      .String<&T::FBemerkung>("Comment")
      .Double<&T::FStunden>("Lessons").Required()
      .Reference<&T::FLehrer>("Teacher")
      .Reference<&T::FFehlzeit>("AbsenceTime")
      .Reference<&T::FAenderung>("Change");
  // clang-format on
  return Class;
}
