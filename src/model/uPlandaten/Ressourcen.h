#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uSchluessel/Schluessel.h"

class TVELRaum;
class TVELTeam;

/// A thing that can be booked.
class TVELRessource : public TVELPlanobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FBarcode;
  TVELRessourcenkategorie* FKategorie = nullptr;
  TVELRessourcenmerkmal* FMerkmal = nullptr;
  TVELRaum* FRaum = nullptr;
  double FRuecklaufzeit = 0;       ///< time until it can be used again, minutes
  TVELRaum* FStammraum = nullptr;  ///< room where it is kept
  TVELTeam* FTeam = nullptr;
};

/// A lesson's demand: a definite resource, or some of a category.
class TVELRessourcenvorgabe : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::uint8_t FAnzahl = 0;  ///< how many of the category
  TVELRessourcenkategorie* FKategorie = nullptr;
  TVELRessource* FRessource = nullptr;  ///< a definite resource
  std::string FBemerkung;

 protected:
  std::string DisplayArgument() const override;
};

/// What a room has.
class TVELAusstattung : public TVELRessourcenvorgabe {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
};
