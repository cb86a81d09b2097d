#include "uDataUtils/Substitutions.h"

#include <algorithm>

#include "uDataUtils/Absences.h"
#include "uDataUtils/Changes.h"
#include "uDataUtils/Publishing.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Vertretungen.h"

namespace uDataUtils {

namespace {

bool PassesMode(const TVELAenderung& AChange, std::uint8_t AMode) {
  switch (AMode) {
    case smAll:
    case smSubstitutions:
      return true;
    case smOpenOnly:
      return IsOpen(AChange);
    case smWithoutOpen:
      return !IsOpen(AChange);
    default:
      return false;
  }
}

bool PassesFilter(const TVELPlan& APlan, const TVELAenderung& AChange, const TSubstitutionFilter& AFilter) {
  return PassesMode(AChange, AFilter.Mode) &&
         (AFilter.Objects.empty() ||
          std::ranges::any_of(AFilter.Objects,
                              [&](const TVELPlanobjekt* AnObject) { return Concerns(AChange, *AnObject); })) &&
         (!AFilter.PublishedOnly || IsPublished(APlan, &AChange, AFilter.Today)) &&
         (AFilter.WithAbsentClasses || !AllClassesAbsent(AChange));
}

bool NeedsNoSubstitution(const TVELVertretung& ASubstitution) {
  const TVELTermin* const Appointment =
      ASubstitution.Termin() != nullptr ? ASubstitution.Termin() : ASubstitution.FNeuerTermin;
  const TVELFach* const Subject = Appointment != nullptr ? Appointment->Fach() : nullptr;
  return Subject != nullptr && (Subject->FKeineVertretung || Subject->FVertretungsbereitschaft);
}

/// True if a substitution without missing and new objects is worth a line.
bool StaysWithoutObjects(const TVELVertretung& ASubstitution, std::uint8_t AMode) {
  switch (ASubstitution.FFehlstellengrund) {
    case vaVerschoben:
    case vaFreigestellt:
    case vaFehlstelle:
      return true;
    case vaTausch:
      return ASubstitution.FVertretungsmerkmal != vmWeggezogen;
    case vaWeggezogen:
      return AMode == smAll || AMode == smWithoutOpen;
    default:
      return false;
  }
}

bool IsShown(const TVELAenderung& AChange, std::uint8_t AMode,
             const std::function<bool(const TVELAenderung&)>& AHasObjects) {
  if (const auto* const Substitution = dynamic_cast<const TVELVertretung*>(&AChange)) {
    return !NeedsNoSubstitution(*Substitution) &&
           (StaysWithoutObjects(*Substitution, AMode) || AHasObjects(*Substitution));
  }
  if (const auto* const Message = dynamic_cast<const TVELMitteilung*>(&AChange)) {
    return AMode != smSubstitutions && !Message->Ganztaegig();
  }
  if (dynamic_cast<const TVELRaumaenderung*>(&AChange) != nullptr) {
    return !AChange.FNeu.IsEmpty();
  }
  return dynamic_cast<const TVELZusatzunterricht*>(&AChange) != nullptr ||
         dynamic_cast<const TVELAufsichtsVertretung*>(&AChange) != nullptr;
}

}  // namespace

std::vector<TVELAenderung*> AllSubstitutions(const TVELPlan& APlan, const TSubstitutionFilter& AFilter,
                                             const std::function<bool(const TVELAenderung&)>& AHasObjects) {
  std::vector<TVELAenderung*> Found = ChangesFrom(APlan, FindAenderungForList(APlan, AFilter.Span), AFilter.Span);
  std::erase_if(Found, [&](const TVELAenderung* AChange) {
    return !PassesFilter(APlan, *AChange, AFilter) || !IsShown(*AChange, AFilter.Mode, AHasObjects);
  });
  return Found;
}

}  // namespace uDataUtils
