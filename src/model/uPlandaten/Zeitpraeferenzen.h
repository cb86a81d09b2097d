#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Werte.h"
#include "uSchluessel/Schluessel.h"

class TVELTeam;

/// A time with a value.
class TVELAbstraktePraeferenz : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();

  std::string FName;
  TVELDateTime FStart;
  TVELDateTime FEnde;
  TVELTime FTagesStart;  ///< time of day
  TVELTime FTagesEnde;   ///< time of day
  TVELDay FWochenStart = TVELDay::velNoDay;
  TVELDay FWochenEnde = TVELDay::velNoDay;
  double FWert = 0;           ///< weight
  std::int32_t FSchiene = 0;  ///< column of the display
  std::int32_t FTyp = 1;
  TVELFarbSchluessel* FKategorie = nullptr;
  TVELTeam* FTeam = nullptr;
  bool FReoccur = true;
  bool FGanztaegig = false;
  bool FSystemCreated = false;
};

/// A time that is wanted or not.
class TVELZeitpraeferenz : public TVELAbstraktePraeferenz {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
};

/// A time that is barred.
class TVELSperrung : public TVELAbstraktePraeferenz {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
};
