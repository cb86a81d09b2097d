#pragma once

#include <string>

#include "uPlandaten/Basis.h"

/// The school that owns the file.
class TVELBesitzer : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FEmail;
  std::string FHomepage;
  std::string FIdentifikation;
  std::string FLand;
  std::string FDisplayName;
  std::string FName1;
  std::string FName2;
  std::string FName3;
  std::string FPLZ;
  std::string FRegion;
  std::string FRemarks;
  std::string FDienststelle;
  std::string FSchultyp;
  std::string FStadt;
  std::string FStrasse;
  std::string FName;
  std::string FSite;
  std::string FVerantwortlich;
};
