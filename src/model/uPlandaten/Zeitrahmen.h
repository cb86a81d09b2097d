#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"

/// The lesson rows of a day.
class TVELZeitrahmen : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FKuerzel;
  std::string FBemerkung;                 ///< long name
  std::int32_t FStdProTag = 10;           ///< rows a day
  std::int32_t FMinutenProStd = 45;       ///< minutes a row
  std::int32_t FEinheitenProStd = 1;      ///< units a row
  std::int32_t FDefaultStdSichtbar = 10;  ///< rows shown
  std::int32_t FVormittagBisStd = 6;      ///< last row of the morning
  TVELZeitrahmenzeilenliste FZeilen{this, TQuillonDataList::TItems::Owned};
  TVELZeitrahmenmarkierungsliste FMarkierungen{this, TQuillonDataList::TItems::Owned};
  TVELPositionsschemata FPositionsschemata{this, TQuillonDataList::TItems::Owned};
  bool FBookAdaptive = true;  ///< a booking that ends in a break ends with the row before it
  bool FKeinePauseInTermin = false;
  bool FTerminPassgenau = false;
  bool FDoppelStdPosBeachten = true;

  /// Empties the three lists; all else stays.
  void Clear();

 protected:
  std::string DisplayArgument() const override;
};

/// One row of the day.
class TVELZeitrahmenzeile : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FBezeichnung;
  bool FDoppelStd = false;  ///< a double lesson may begin here
  TVELTime FStart;          ///< time of day
  TVELTime FEnde;           ///< time of day
  TColor FTrennlinienfarbe = NoColour;

 protected:
  std::string DisplayArgument() const override;
};

/// A coloured place of a time frame.
class TVELZeitrahmenmarkierung : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TColor FFarbe = NoColour;  ///< display colour
  std::int32_t FZeile = 0;
  std::int32_t FUnterzeile = 0;
};

/// Allowed starts of appointments of a length.
class TVELPositionsschema : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::int32_t FDauer = 90;               ///< minutes; a scheme without a length in its file has 2
  std::vector<std::int32_t> FPositionen;  ///< rows where an appointment may begin

  std::string GetDisplayName() const override;
};
