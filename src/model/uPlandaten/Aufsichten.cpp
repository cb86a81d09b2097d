#include "uPlandaten/Aufsichten.h"

#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Relationen.h"
#include "uPlandaten/Zeitrahmen.h"

const TQuillonDataClass& TVELAufsichtsbereich::Class() {
  using T = TVELAufsichtsbereich;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELStammobjekt>("SupervisionArea", "Aufsichtsbereich \"%s\"")
      .List<&T::FRaeume>("Rooms")
      .List<&T::FTeams>("Groups")
      .List<&T::FAufsichten>("SupervisionList")
      .Reference<&T::FZeitrahmen>("TimeFrame");
  // clang-format on
  return Class;
}

TVELZeitrahmen* TVELAufsichtsbereich::Timeframe() const {
  return FZeitrahmen != nullptr ? FZeitrahmen : TVELStammobjekt::Timeframe();
}

const TQuillonDataClass& TVELAufsicht::Class() {
  using T = TVELAufsicht;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELAbstrakterTermin>("Supervision", "Aufsicht")
      .Reference<&T::FLehrer, &T::SetLehrer>("Teacher");
  // clang-format on
  return Class;
}

void TVELAufsicht::SetLehrer(TVELLehrer* AValue) {
  if (FLehrer == AValue) {
    return;
  }
  TVELLehrer* const Old = std::exchange(FLehrer, AValue);
  if (uPlandaten::FollowsRelations(*this)) {
    if (AValue != nullptr) {
      AValue->FAufsichten.Merge(this);
    }
    if (Old != nullptr) {
      Old->FAufsichten.RemoveObject(this);
    }
  }
  Change();
}

TVELAufsichtsbereich* TVELAufsicht::Bereich() const {
  return dynamic_cast<TVELAufsichtsbereich*>(HasOwner() ? FOwner->FOwner : nullptr);
}

TVELZeitrahmen* TVELAufsicht::Zeitrahmen() const {
  const TVELAufsichtsbereich* const Area = Bereich();
  return Area != nullptr ? Area->FZeitrahmen : nullptr;
}
