#pragma once

#include <cstdint>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uPlandaten/Werte.h"

class TVELTeam;
class TVELZeitraum;

/// A stretch of weeks.
class TVELPeriode : public TVELStammobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELDate FStart;
  TVELDate FEnde;
  TVELWeeks FWochen;  ///< weeks of the period
  double FFaktor = 1;
  double FFaktor2 = 1;
  TVELTeam* FTeam = nullptr;
  TVELPeriodenliste FPerioden{this};  ///< periods that make up this one
};

/// A stretch of dates.
class TVELZeitraum : public TVELStammobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELDate FEnde;            ///< last day
  TColor FFarbe = NoColour;  ///< display colour
  TVELDate FStart;           ///< first day
  std::int32_t FMaxStdAnzahl = 0;
  std::int32_t FMinStdAnzahl = 0;
  TVELZeitraum* FParentZeitraum = nullptr;  ///< the window that this one is a part of
};
