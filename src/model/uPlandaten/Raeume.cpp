#include "uPlandaten/Raeume.h"

#include "uPlandaten/Gebaeude.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Relationen.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Veranstaltungen.h"

const TQuillonDataClass& TVELRaum::Class() {
  using T = TVELRaum;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELPlanobjekt>("Room", "Raum \"%s\"")
      .List<&T::FAusstattungen>("equipments")
      .String<&T::FBarcode>("Barcode").AlwaysWritten()
      .String<&T::FEbene>("Level").AlwaysWritten().Since("6.0.171")
      .List<&T::FTeams>("Groups").Since("6.0.168")
      .ReferenceInto<&T::FTeams, TVELTeam>("Group").Until("6.0.168")
      .Reference<&T::FGebaeude>("Building")
      .LongInt<&T::FKapazitaet>("Capacity")
      .Reference<&T::FLehrer>("Teacher")
      .Reference<&T::FRaumtyp>("RoomType")
      .Reference<&T::FAlternative>("Alternative")
      .LongInt<&T::FGewichtung>("Weight")
      .Boolean<&T::FZwingend>("NoAlternative")
      .String<&T::FUserName>("Username");
  // clang-format on
  return Class;
}

void TVELRaum::FreeProperties() {
  if (TVELPlan* const Owner = Plan(); Owner != nullptr && uPlandaten::FollowsRelations(*this)) {
    // Lessons that were taken out of their list remember a room too.
    for (const TQuillonDataAbstractObject* Object : Owner->Registry().Objects()) {
      if (&Object->DataClass() == &TVELVeranstaltung::Class()) {
        TVELRaum* Freed = this;
        static_cast<const TVELVeranstaltung*>(Object)->FDefaultRoom.compare_exchange_strong(Freed, nullptr);
      }
    }
  }
  TVELPlanobjekt::FreeProperties();
}
