#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"
#include "uSchluessel/Schluessel.h"

class TVELKlasse;

/// A block of parallel courses. Lessons join it by its name.
class TVELBlock : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::int32_t FBand = 0;
  std::int32_t FStufe = 0;  ///< level
  std::int32_t FMaxStdAnzahl = 0;
  std::int32_t FMinStdAnzahl = 0;
  std::string FName;  ///< name by which lessons join
  std::int32_t FIntern = 0;
  bool FIgnore = false;

  TVELKlasse* FKlasse = nullptr;           ///< from old files only
  TVELUnterrichtsart* FKursart = nullptr;  ///< from old files only
};
