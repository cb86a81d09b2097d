#include "uPlandaten/Zeitpraeferenzen.h"

#include "uPlandaten/Teams.h"

const TQuillonDataClass& TVELAbstraktePraeferenz::Class() {
  using T = TVELAbstraktePraeferenz;
  // clang-format off
  static const TQuillonDataClass Class = DescribeAbstractClass<T, TVELBasisObject>("TVELAbstraktePraeferenz")
      .String<&T::FName>("Name")
      .DateTime<&T::FStart>("Start")
      .DateTime<&T::FEnde>("End")
      .Time<&T::FTagesStart>("WeekdaysStart")
      .Time<&T::FTagesEnde>("WeekdaysEnd")
      .Byte<&T::FWochenStart>("WeekStart")
      .Byte<&T::FWochenEnde>("Weekend")
      .Single<&T::FWert>("Value")
      .LongInt<&T::FSchiene>("Focus")
      .LongInt<&T::FTyp>("Type").Required()
      .Reference<&T::FKategorie>("Category")
      .Reference<&T::FTeam>("Group")
      .Boolean<&T::FReoccur>("Reoccur", true)
      .Boolean<&T::FGanztaegig>("AllDay")
      .Boolean<&T::FSystemCreated>("VelmoraCreated");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELZeitpraeferenz::Class() {
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<TVELZeitpraeferenz, TVELAbstraktePraeferenz>("TimePreference", "Zeitpräferenz");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELSperrung::Class() {
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<TVELSperrung, TVELAbstraktePraeferenz>("BlockedTime", "Sperrung");
  // clang-format on
  return Class;
}
