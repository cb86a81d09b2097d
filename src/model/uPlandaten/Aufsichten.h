#pragma once

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uPlandaten/Termine.h"

class TVELLehrer;
class TVELZeitrahmen;

/// An area in which teachers supervise breaks.
class TVELAufsichtsbereich : public TVELStammobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELRaumliste FRaeume{this};
  TVELTeamsliste FTeams{this};
  TVELAufsichtsliste FAufsichten{this, TQuillonDataList::TItems::Owned};  ///< the duties of the area
  TVELZeitrahmen* FZeitrahmen = nullptr;                                  ///< own time frame; the plan's if none

  TVELZeitrahmen* Timeframe() const override;
};

/// A break duty; its owner is a supervision area.
class TVELAufsicht : public TVELAbstrakterTermin {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELLehrer* FLehrer = nullptr;

  /// Changes the teacher; the supervision moves into the FAufsichten of the new one.
  void SetLehrer(TVELLehrer* AValue);
  /// The area that owns it; null for one that stands in no list.
  TVELAufsichtsbereich* Bereich() const;
  bool Reoccur() const override { return FWochentag != velNoDay; }
  /// That of the area; null without area.
  TVELZeitrahmen* Zeitrahmen() const override;
};
