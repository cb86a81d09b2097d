#include "uPlaneintraege/Vorkommen.h"

#include <algorithm>

#include "uDataUtils/Absences.h"
#include "uDataUtils/Context.h"
#include "uDataUtils/Publishing.h"
#include "uDataUtils/TimeUnits.h"
#include "uDataUtils/Weeks.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Vertretungen.h"

namespace uPlaneintraege {

using uDataUtils::Milliseconds;

namespace {

bool Same(TVELDateTime A, TVELDateTime B) { return Milliseconds(A) == Milliseconds(B); }
bool Earlier(TVELDateTime A, TVELDateTime B) { return Milliseconds(A) < Milliseconds(B); }
bool Same(const TSpan& A, const TSpan& B) { return Same(A.Start, B.Start) && Same(A.Finish, B.Finish); }

/// A side without date takes that of the other; a finish at midnight is the end of the day.
TSpan Complete(TSpan ASpan) {
  using uDataUtils::DayOf;
  if (DayOf(ASpan.Start) == 0) {
    ASpan.Start = DayOf(ASpan.Finish) + ASpan.Start;
  } else if (DayOf(ASpan.Finish) == 0) {
    ASpan.Finish = DayOf(ASpan.Start) + ASpan.Finish;
  }
  return {ASpan.Start, uDataUtils::Fix24(ASpan.Finish, ASpan.Start)};
}

bool ExchangesWithoutMove(const TVELVertretung& ASubstitution) {
  const TVELVertretungsmerkmal Feature = ASubstitution.FVertretungsmerkmal;
  return Feature == vmLehrerRaumTausch || Feature == vmLehrerTausch || Feature == vmRaumTausch;
}

void SetShadow(const TPlanContext& AContext, TVELPlaneintrag& AnEntry) {
  const TVELVertretung* const Substitution = AnEntry.Vertretung();
  AnEntry.FMirror = Substitution != nullptr && uDataUtils::MovesAway(*Substitution);
  constexpr bool SkipAbsences = false;
  constexpr bool CheckClasses = true;
  AnEntry.FShadow = AnEntry.FMirror || IsShadow(AContext, AnEntry.FPlanobjekt, AnEntry, SkipAbsences, CheckClasses);
}

}  // namespace

TVELPlaneintrag& CreateEintrag(const TPlanContext& AContext, TVELPlanobjekt* AnObject, TVELTermin* ATermin,
                               bool APublicOnly, TVELPlanEintragListe& AList, TSpan ASpan, TVELZuweisung* AnAssignment,
                               TVELAenderung* AChange) {
  const TSpan Span = Complete(ASpan);
  TVELPlaneintrag& Entry = AList.Add();
  Entry.FTermin = ATermin;
  Entry.FZuweisung = AnAssignment;
  Entry.FPlanobjekt = AnObject;
  Entry.FStart = Span.Start;
  Entry.FFinish = Span.Finish;
  // Without a change of the day the assignment is what there is to tell.
  if (TVELAenderung* const Change = AChange != nullptr ? AChange : AnAssignment) {
    Entry.FAenderungen.push_back(Change);
  }
  const int Week = uDataUtils::WeekIndex(AContext, Span.Start);
  if (Week >= 1 && Week <= TVELWeeks::Count) {
    Entry.FWochen.Include(Week);
  }
  BuildEintrag(AContext, Entry, true, APublicOnly);
  const TVELVertretung* const Substitution = Entry.Vertretung();
  if (Substitution != nullptr && !ExchangesWithoutMove(*Substitution) && Substitution->FNeuerTermin != nullptr) {
    Entry.FTermin = Substitution->FNeuerTermin;
  }
  SetShadow(AContext, Entry);
  return Entry;
}

std::unique_ptr<TVELPlaneintrag> CreateChangeEintrag(const TPlanContext& AContext, TVELAenderung& AChange,
                                                     TVELPlanobjekt* AnObject, bool APublicOnly) {
  auto Entry = std::make_unique<TVELPlaneintrag>();
  Entry->FPlanobjekt = AnObject;
  Entry->FStart = AChange.FStart;
  Entry->FFinish = AChange.FEnde;
  Entry->FTermin = AChange.Termin();
  Entry->FAufsicht = AChange.Kind() == TChangeKind::AufsichtsVertretung ? AChange.Aufsicht() : nullptr;
  Entry->FAenderungen.push_back(&AChange);
  BuildEintrag(AContext, *Entry, true, APublicOnly);
  if (AnObject != nullptr) {
    SetShadow(AContext, *Entry);
  }
  return Entry;
}

TOccurrence::TOccurrence(const TPlanContext& AContext, TVELPlanobjekt* AnObject, TVELTermin& ATermin, bool APublicOnly,
                         const TSpan& ASpan)
    : FContext(AContext),
      FObject(AnObject),
      FTermin(ATermin),
      FPublicOnly(APublicOnly),
      FSpan(ASpan),
      FChanges(AContext.Changes().Of(ATermin, ASpan)),
      FAbsences(uDataUtils::FindFehlzeiten(AContext, ATermin, APublicOnly, ASpan)) {
  std::vector<TVELZuweisung*> Assignments = AContext.Changes().Assignments(ATermin, ASpan);
  if (APublicOnly) {
    const auto IsHidden = [&](const TVELAenderung* AChange) { return !uDataUtils::IsPublished(AContext, AChange); };
    std::erase_if(FChanges, IsHidden);
    std::erase_if(Assignments, IsHidden);
  }
  std::ranges::stable_sort(FAbsences, {}, [](const TVELFehlzeit* AnAbsence) { return double{AnAbsence->FStart}; });
  FAssignment = Assignments.empty() ? nullptr : Assignments.back();
}

const TVELZeitrahmen* TOccurrence::Frame() const {
  return FObject != nullptr ? FObject->Timeframe() : FTermin.Zeitrahmen();
}

std::vector<TOccurrence::TPart> TOccurrence::Parts() const {
  std::vector<TPart> Parts;
  for (TVELAenderung* const Change : FChanges) {
    Parts.push_back({{Change->FStart, Change->FEnde}, Change});
  }
  if (!Parts.empty()) {
    return Parts;
  }
  for (const TVELFehlzeit* const Absence : FAbsences) {
    const TSpan Span{std::max<double>(Absence->FStart, FSpan.Start), std::min<double>(Absence->FEnde, FSpan.Finish)};
    // An entry tells all absences of its time.
    if (Parts.empty() || !Same(Parts.back().Span, Span)) {
      Parts.push_back({Span, nullptr});
    }
  }
  return Parts;
}

void TOccurrence::Add(const TSpan& ASpan, TVELAenderung* AChange, TVELPlanEintragListe& AList) const {
  CreateEintrag(FContext, FObject, &FTermin, FPublicOnly, AList, ASpan, FAssignment, AChange);
}

void TOccurrence::Expand(bool AKeepGaps, TVELPlanEintragListe& AList) const {
  const std::vector<TPart> All = Parts();
  if (All.empty()) {
    Add(FSpan, nullptr, AList);
    return;
  }
  const TVELZeitrahmen* const TimeFrame = Frame();
  TVELDateTime Cursor = FSpan.Start;
  for (const TPart& Part : All) {
    const bool IsRest = Same(Part.Span.Start, Cursor) && Same(Part.Span.Finish, FSpan.Finish);
    if (!Same(Part.Span, FSpan) && !IsRest && !Earlier(Part.Span.Start, Cursor) && !AKeepGaps) {
      const TVELDateTime GapEnd =
          TimeFrame != nullptr ? uDataUtils::ApplyBreakRule(*TimeFrame, Part.Span.Start) : Part.Span.Start;
      if (Earlier(Cursor, Part.Span.Start) && Earlier(Cursor, GapEnd)) {
        Add({Cursor, GapEnd}, nullptr, AList);
      }
    }
    if (Same(Part.Span, FSpan) || !Earlier(Part.Span.Start, Cursor)) {
      Add(Part.Span, Part.Change, AList);
    }
    const TVELDateTime End =
        TimeFrame != nullptr ? uDataUtils::SkipBreak(*TimeFrame, Part.Span.Finish) : Part.Span.Finish;
    Cursor = std::max<double>(Cursor, End);
  }
  if (!AKeepGaps && Earlier(Cursor, FSpan.Finish)) {
    Add({Cursor, FSpan.Finish}, nullptr, AList);
  }
}

bool ExpandOccurrence(const TPlanContext& AContext, TVELPlanobjekt* AnObject, TVELTermin& ATermin, bool APublicOnly,
                      bool AKeepGaps, TVELPlanEintragListe& AList, const TSpan& ASpan) {
  const TOccurrence Occurrence(AContext, AnObject, ATermin, APublicOnly, ASpan);
  Occurrence.Expand(AKeepGaps, AList);
  return Occurrence.HadChanges();
}

}  // namespace uPlaneintraege
