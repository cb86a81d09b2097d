#include "uDataUtils/Substitutions.h"

#include "uDataUtils/Absences.h"
#include "uDataUtils/Changes.h"
#include "uDataUtils/Context.h"
#include "uDataUtils/Publishing.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Vertretungen.h"

namespace uDataUtils {

namespace {

bool PassesMode(const TPlanContext& AContext, const TVELAenderung& AChange, std::uint8_t AMode) {
  switch (AMode) {
    case smAll:
    case smSubstitutions:
      return true;
    case smOpenOnly:
      return IsOpen(AContext, AChange);
    case smWithoutOpen:
      return !IsOpen(AContext, AChange);
    default:
      return false;
  }
}

bool PassesFilter(const TPlanContext& AContext, const TVELAenderung& AChange, const TSubstitutionFilter& AFilter) {
  return PassesMode(AContext, AChange, AFilter.Mode) && (!AFilter.PublishedOnly || IsPublished(AContext, &AChange)) &&
         (AFilter.WithAbsentClasses || !AllClassesAbsent(AContext, AChange));
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
  switch (AChange.Kind()) {
    case TChangeKind::Vertretung: {
      const auto& Substitution = static_cast<const TVELVertretung&>(AChange);
      return !NeedsNoSubstitution(Substitution) &&
             (AHasObjects(Substitution) || StaysWithoutObjects(Substitution, AMode));
    }
    case TChangeKind::Mitteilung:
      return AMode != smSubstitutions && !static_cast<const TVELMitteilung&>(AChange).Ganztaegig();
    case TChangeKind::Raumaenderung:
      return !AChange.FNeu.IsEmpty();
    case TChangeKind::Zusatzunterricht:
    case TChangeKind::AufsichtsVertretung:
      return true;
    case TChangeKind::Zuweisung:
      return false;
  }
  return false;
}

}  // namespace

std::vector<TVELAenderung*> AllSubstitutions(const TPlanContext& AContext, const TSubstitutionFilter& AFilter,
                                             const std::function<bool(const TVELAenderung&)>& AHasObjects) {
  const int First = AContext.ListStart().Find(AFilter.Span);
  std::vector<TVELAenderung*> Found = AFilter.Objects.empty()
                                          ? ChangesFrom(AContext.Plan(), First, AFilter.Span)
                                          : ChangesFrom(AContext, First, AFilter.Span, AFilter.Objects);
  std::erase_if(Found, [&](const TVELAenderung* AChange) {
    return (AFilter.Takes && !AFilter.Takes(*AChange)) || !PassesFilter(AContext, *AChange, AFilter) ||
           !IsShown(*AChange, AFilter.Mode, AHasObjects);
  });
  return Found;
}

}  // namespace uDataUtils
