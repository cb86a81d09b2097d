#include "uDataUtils/Publishing.h"

#include <algorithm>

#include "uDataUtils/Absences.h"
#include "uDataUtils/SchoolDays.h"
#include "uDataUtils/Spans.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Vertretungen.h"

namespace uDataUtils {

bool InPublishWindow(const TVELPlan& APlan, TVELDate ADate, TVELDate AToday) {
  const TVELEinstellungen& Settings = *APlan.FEinstellungen;
  return !Settings.FAenderungenFreigeben || Settings.FPublishDaysScope == 0 ||
         DayOf(ADate) <= MoveSchoolDays(APlan, Settings.FPublishDaysScope, AToday, AToday);
}

bool IsOpen(const TVELAenderung& AChange) {
  return dynamic_cast<const TVELZusatzAenderung*>(&AChange) == nullptr && AChange.Status() == aeOpen &&
         !AllClassesAbsent(AChange);
}

bool HasNoEffect(const TVELVertretung& ASubstitution) {
  const auto Misses = [&](const TQuillonDataObject* AnObject) {
    return dynamic_cast<const TVELLehrer*>(AnObject) != nullptr && ASubstitution.FFehlend.Contains(AnObject);
  };
  return (ASubstitution.FVertretungsmerkmal == vmKein || ASubstitution.FVertretungsmerkmal == vmKlasseFehlt) &&
         ASubstitution.FNeuerTermin == nullptr && ASubstitution.FTauschTermin == nullptr &&
         ASubstitution.FNeuesFach == nullptr && ASubstitution.FNeu.IsEmpty() &&
         ASubstitution.FVertretungsentfall == nullptr &&
         std::ranges::none_of(ASubstitution.FOriginal.Items(), Misses) && !AllClassesAbsent(ASubstitution);
}

bool IsPublished(const TVELPlan& APlan, const TVELAenderung* AChange, TVELDate AToday) {
  if (AChange == nullptr) {
    return true;
  }
  const TVELAenderungsStatus Status = AChange->Status();
  const auto* const Substitution = dynamic_cast<const TVELVertretung*>(AChange);
  if (Status == aeOpen || Status == aeInvalid || Status == aeNotPublic || Status == aeNotPublicAbsence ||
      (Substitution != nullptr && HasNoEffect(*Substitution))) {
    return false;
  }
  return !APlan.FEinstellungen->FAenderungenFreigeben ||
         (InPublishWindow(APlan, AChange->FEnde, AToday) && Status == aePublished);
}

}  // namespace uDataUtils
