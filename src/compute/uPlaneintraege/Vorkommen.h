#pragma once

#include <vector>

#include "uPlaneintraege/Eintraege.h"

namespace uPlaneintraege {

/// One occurrence of an appointment in the plan of an object, with what befalls it.
class TOccurrence {
 public:
  /// @param AnObject may be null
  /// @param APublicOnly leaves out changes, absences and assignments that are not public
  TOccurrence(const TPlanContext& AContext, TVELPlanobjekt* AnObject, TVELTermin& ATermin, bool APublicOnly,
              const TSpan& ASpan);

  /// True if there are changes, absences, or an assignment.
  bool HadChanges() const { return !FChanges.empty() || !FAbsences.empty() || FAssignment != nullptr; }
  /// Adds its entries: one as a whole, or one for each change or absence and for what lies between.
  /// @param AKeepGaps adds none for what lies between
  void Expand(bool AKeepGaps, TVELPlanEintragListe& AList) const;

 private:
  struct TPart {
    TSpan Span;
    TVELAenderung* Change;  ///< null for an absence
  };

  std::vector<TPart> Parts() const;
  void Add(const TSpan& ASpan, TVELAenderung* AChange, TVELPlanEintragListe& AList) const;
  const TVELZeitrahmen* Frame() const;

  const TPlanContext& FContext;
  TVELPlanobjekt* FObject;
  TVELTermin& FTermin;
  bool FPublicOnly;
  TSpan FSpan;
  std::vector<TVELAenderung*> FChanges;  ///< by start
  std::vector<TVELFehlzeit*> FAbsences;  ///< by start
  TVELZuweisung* FAssignment = nullptr;
};

/// TOccurrence::Expand for one that is used once.
/// @return TOccurrence::HadChanges
bool ExpandOccurrence(const TPlanContext& AContext, TVELPlanobjekt* AnObject, TVELTermin& ATermin, bool APublicOnly,
                      bool AKeepGaps, TVELPlanEintragListe& AList, const TSpan& ASpan);

}  // namespace uPlaneintraege
