#include "uOstrel/Changes.h"

#include "uDataUtils/Publishing.h"
#include "uDataUtils/Spans.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Vertretungen.h"

namespace uOstrel {

bool TExportScope::Covers(const TVELAenderung& AChange) const {
  return uDataUtils::DayOf(AChange.FStart) >= uDataUtils::DayOf(ValidFrom);
}

bool IsExportable(const TVELAenderung& AChange, const TExportScope& AScope) {
  const TVELAenderungsStatus Status = AChange.Status();
  if (Status == aeOpen || Status == aeInvalid || AChange.FNotPublic ||
      (AChange.FFehlzeit != nullptr && AChange.FFehlzeit->FNotPublic)) {
    return false;
  }
  const auto* const Substitution = AChange.As<TVELVertretung>();
  return Substitution == nullptr || !uDataUtils::HasNoEffect(AScope.Plan, *Substitution);
}

bool IsAdditionalLesson(const TVELAenderung& AChange) {
  if (AChange.FNeuesFach == nullptr) {
    return false;
  }
  if (const auto* const Substitution = AChange.As<TVELVertretung>()) {
    return Substitution->FFehlstellengrund == vaFehlstelle && Substitution->FVertretungslehrermerkmal == vlmZusaetzlich;
  }
  return AChange.Kind() == TChangeKind::Zusatzunterricht;
}

}  // namespace uOstrel
