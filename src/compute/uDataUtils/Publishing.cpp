#include "uDataUtils/Publishing.h"

#include <algorithm>

#include "uDataUtils/Absences.h"
#include "uDataUtils/Context.h"
#include "uDataUtils/ItemSet.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Vertretungen.h"

namespace uDataUtils {

bool InPublishWindow(const TPlanContext& AContext, TVELDate ADate) {
  const TVELEinstellungen& Settings = *AContext.Plan().FEinstellungen;
  return !Settings.FAenderungenFreigeben || Settings.FPublishDaysScope == 0 || DayOf(ADate) <= AContext.LastPublicDay();
}

bool IsOpen(const TPlanContext& AContext, const TVELAenderung& AChange) {
  return !AChange.IsAddition() && AChange.Status() == aeOpen && !AllClassesAbsent(AContext, AChange);
}

bool ChangesNothing(const TVELVertretung& ASubstitution) {
  const auto MissesTeacher = [&] {
    const TItemSet Missing(ASubstitution.FFehlend);
    return std::ranges::any_of(ASubstitution.FOriginal.Items(), [&](const TQuillonDataObject* AnObject) {
      return uDataObjects::As<TVELLehrer>(AnObject) != nullptr && Missing.Contains(AnObject);
    });
  };
  return (ASubstitution.FVertretungsmerkmal == vmKein || ASubstitution.FVertretungsmerkmal == vmKlasseFehlt) &&
         ASubstitution.FNeuerTermin == nullptr && ASubstitution.FTauschTermin == nullptr &&
         ASubstitution.FNeuesFach == nullptr && ASubstitution.FNeu.IsEmpty() && !MissesTeacher();
}

bool HasNoEffect(const TPlanContext& AContext, const TVELVertretung& ASubstitution) {
  return ASubstitution.FVertretungsentfall == nullptr && ChangesNothing(ASubstitution) &&
         !AllClassesAbsent(AContext, ASubstitution);
}

bool IsPublished(const TPlanContext& AContext, const TVELAenderung* AChange) {
  if (AChange == nullptr) {
    return true;
  }
  // The flags tell what is not public. A status that says so may be left from a time when they did.
  if (AChange->FNotPublic || (AChange->FFehlzeit != nullptr && AChange->FFehlzeit->FNotPublic)) {
    return false;
  }
  const TVELAenderungsStatus Status = AChange->Status();
  const auto* const Substitution = AChange->As<TVELVertretung>();
  if (Status == aeOpen || Status == aeInvalid || (Substitution != nullptr && HasNoEffect(AContext, *Substitution))) {
    return false;
  }
  return !AContext.Plan().FEinstellungen->FAenderungenFreigeben ||
         (InPublishWindow(AContext, AChange->FEnde) && Status == aePublished);
}

}  // namespace uDataUtils
