#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uSchluessel/Schluessel.h"

class TVELGebaeude;
class TVELLehrer;

/// A room.
class TVELRaum : public TVELPlanobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELAusstattungsliste FAusstattungen{this, TQuillonDataList::TItems::Owned};
  std::string FBarcode;
  std::string FEbene;           ///< floor
  TVELTeamsliste FTeams{this};  ///< departments
  TVELGebaeude* FGebaeude = nullptr;
  std::int32_t FKapazitaet = 0;   ///< seats
  TVELLehrer* FLehrer = nullptr;  ///< teacher in charge
  TVELRaumtyp* FRaumtyp = nullptr;
  TVELRaum* FAlternative = nullptr;  ///< room that may stand in
  std::int32_t FGewichtung = 0;
  bool FZwingend = false;  ///< no other room will do
  std::string FUserName;

 protected:
  /// The lessons that remember it as their default forget it.
  void FreeProperties() override;
};
