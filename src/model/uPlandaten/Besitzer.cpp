#include "uPlandaten/Besitzer.h"

const TQuillonDataClass& TVELBesitzer::Class() {
  using T = TVELBesitzer;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("Owner", "Besitzer")
      .String<&T::FEmail>("Email")
      .String<&T::FHomepage>("Homepage")
      .String<&T::FIdentifikation>("Identification")
      .String<&T::FLand>("Country")
      .String<&T::FDisplayName>("DName")
      .String<&T::FName1>("Name1")
      .String<&T::FName2>("Name2")
      .String<&T::FName3>("Name3")
      .String<&T::FPLZ>("ZipCode")
      .String<&T::FRegion>("Region")
      .String<&T::FRemarks>("Remarks")
      .String<&T::FDienststelle>("Site").Since("6.0.170")
      .String<&T::FSchultyp>("SchoolType")
      .String<&T::FStadt>("City")
      .String<&T::FStrasse>("Street")
      .String<&T::FName>("Name")
      .String<&T::FSite>("Site")
      .String<&T::FVerantwortlich>("Responsible");
  // clang-format on
  return Class;
}
