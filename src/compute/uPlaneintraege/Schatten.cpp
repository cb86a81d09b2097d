#include <optional>

#include "uDataUtils/Absences.h"
#include "uDataUtils/Context.h"
#include "uDataUtils/Spans.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlaneintraege/Eintraege.h"
#include "uPlaneintraege/Mengen.h"

namespace uPlaneintraege {

namespace {

bool IsCancelled(const TVELAenderung& AChange) {
  if (const auto* const RoomChange = AChange.As<TVELRaumaenderung>()) {
    return RoomChange->FEntfaellt;
  }
  const auto* const Substitution = AChange.As<TVELVertretung>();
  return Substitution != nullptr &&
         (Substitution->FVertretungsmerkmal == vmKlasseFrei || Substitution->FVertretungsmerkmal == vmEntfaellt ||
          uDataUtils::MovesAway(*Substitution));
}

/// What a lesson that was moved here decides for a room or teacher; nothing for others.
std::optional<bool> ShadowOfMoved(const TVELPlanobjekt& AnObject, const TVELPlaneintrag& AnEntry) {
  const TVELVertretung* const Substitution = AnEntry.Vertretung();
  if (Substitution == nullptr || Substitution->FVertretungsmerkmal != vmVorgezogen ||
      Substitution->FNeuerTermin == nullptr) {
    return std::nullopt;
  }
  if (Substitution->FTauschTerminRaum && uDataObjects::As<TVELRaum>(&AnObject) != nullptr) {
    return !Substitution->FNeu.Contains(&AnObject) && !Substitution->FNeuerTermin->FRaeume.Contains(&AnObject);
  }
  if (Substitution->FTauschTerminLehrer && uDataObjects::As<TVELLehrer>(&AnObject) != nullptr) {
    return uDataUtils::Milliseconds(AnEntry.FStart) == uDataUtils::Milliseconds(Substitution->FNeuesTerminDatum);
  }
  return std::nullopt;
}

bool IsFreed(const TVELPlanobjekt& AnObject, const TVELPlaneintrag& AnEntry) {
  const TVELVertretung* const Substitution = AnEntry.Vertretung();
  return Substitution != nullptr && Substitution->FFehlstellengrund == vaFreigestellt &&
         Substitution->FFehlend.Contains(&AnObject);
}

bool IsMovedAwayThen(const TPlanContext& AContext, const TVELPlaneintrag& AnEntry) {
  return AnEntry.FTermin != nullptr && AContext.Changes().MoveAway(*AnEntry.FTermin, {AnEntry.FStart, AnEntry.FFinish});
}

bool IsMissing(const TVELPlanobjekt& AnObject, const TVELPlaneintrag& AnEntry) {
  return Holds(AnEntry.FFehlendeKlassen, uDataObjects::As<TVELKlasse>(&AnObject)) ||
         Holds(AnEntry.FFehlendeLehrer, uDataObjects::As<TVELLehrer>(&AnObject));
}

bool IsShadowFor(const TPlanContext& AContext, const TVELPlanobjekt& AnObject, const TVELPlaneintrag& AnEntry,
                 bool ASkipAbsences) {
  if (IsFreed(AnObject, AnEntry) || IsMovedAwayThen(AContext, AnEntry)) {
    return true;
  }
  const TVELAenderung* const Change = AnEntry.Aenderung();
  const bool HasChange = Change != nullptr && Change->Kind() != TChangeKind::Zusatzunterricht;
  if (HasChange && IsMissing(AnObject, AnEntry)) {
    return true;
  }
  const bool IsClass = uDataObjects::As<TVELKlasse>(&AnObject) != nullptr;
  return (HasChange || (!IsClass && !ASkipAbsences)) &&
         uDataUtils::HasAbsence(AContext, AnObject, AnEntry.Veranstaltung(), {AnEntry.FStart, AnEntry.FFinish}) !=
             nullptr;
}

bool ClassesAreAbsent(const TPlanContext& AContext, const TVELPlaneintrag& AnEntry) {
  if (const TVELAenderung* const Change = AnEntry.Aenderung(); Change != nullptr && !Change->IsAddition()) {
    return uDataUtils::AllClassesAbsent(AContext, *Change);
  }
  return AnEntry.FTermin != nullptr &&
         uDataUtils::AllClassesAbsent(AContext, *AnEntry.FTermin, nullptr, {AnEntry.FStart, AnEntry.FFinish});
}

}  // namespace

bool IsShadow(const TPlanContext& AContext, const TVELPlanobjekt* AnObject, const TVELPlaneintrag& AnEntry,
              bool ASkipAbsences, bool ACheckClasses) {
  const TVELAenderung* const Change = AnEntry.Aenderung();
  if (Change != nullptr && IsCancelled(*Change)) {
    return true;
  }
  if (AnObject != nullptr) {
    if (const std::optional<bool> Decision = ShadowOfMoved(*AnObject, AnEntry)) {
      return *Decision;
    }
    if (IsShadowFor(AContext, *AnObject, AnEntry, ASkipAbsences)) {
      return true;
    }
  } else if (IsMovedAwayThen(AContext, AnEntry)) {
    return true;
  }
  return ACheckClasses && ClassesAreAbsent(AContext, AnEntry);
}

}  // namespace uPlaneintraege
