#include "uDataUtils/Changes.h"

#include <algorithm>
#include <array>
#include <functional>

#include "uDataUtils/Context.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"

namespace uDataUtils {

namespace {

bool Touches(const TVELAenderung& AChange, const TSpan& ASpan) {
  return Overlap({AChange.FStart, AChange.FEnde}, ASpan);
}

/// The place of some change that overlaps the span; -1 if the search by halves meets none.
int FindHit(const TVELAenderungsliste& AChanges, const TSpan& ASpan) {
  int First = 0;
  int Last = AChanges.Count() - 1;
  while (First <= Last) {
    const int Middle = First + (Last - First) / 2;
    const TVELAenderung& Change = *AChanges.GetItem(Middle);
    if (Touches(Change, ASpan)) {
      return Middle;
    }
    if (Change.FStart > ASpan.Start) {
      First = Middle + 1;
    } else {
      Last = Middle - 1;
    }
  }
  return -1;
}

/// The first in time of the run of overlapping changes around a hit: what is earlier stands further on in the list.
int WalkBack(const TVELAenderungsliste& AChanges, int AHit, const TSpan& ASpan) {
  int Index = AHit;
  while (Index >= 0 && Index + 1 < AChanges.Count() && Touches(*AChanges.GetItem(Index + 1), ASpan)) {
    ++Index;
  }
  return Index;
}

bool IsIn(const TPlanContext& AContext, const TVELTermin* ATermin, const TVELPlanobjekt& AnObject) {
  return ATermin != nullptr && TakesPart(AContext, *ATermin, AnObject);
}

bool Frees(const TVELVertretung& ASubstitution, const TVELPlanobjekt& AnObject) {
  return ASubstitution.FFehlstellengrund == vaFreigestellt && ASubstitution.FFehlend.Contains(&AnObject);
}

/// The places once each, forward in time.
void MakeForward(std::vector<int>& APlaces) {
  std::ranges::sort(APlaces, std::greater<>());
  APlaces.erase(std::unique(APlaces.begin(), APlaces.end()), APlaces.end());
}

/// True if the lesson was moved as a whole, its teachers included.
bool IsMoved(const TVELVertretung& ASubstitution) {
  return ASubstitution.FVertretungsmerkmal == vmVorgezogen && ASubstitution.FVertretungslehrermerkmal < vlmZusaetzlich;
}

bool ComesToTeacher(const TPlanContext& AContext, const TVELVertretung& ASubstitution, const TVELPlanobjekt& ATeacher) {
  if (IsIn(AContext, ASubstitution.Termin(), ATeacher) || Frees(ASubstitution, ATeacher)) {
    return false;
  }
  if (ASubstitution.FVertretungsmerkmal == vmLehrerRaumTausch) {
    return ASubstitution.FTauschTerminLehrer;
  }
  const TVELVertretungslehrermerkmal Mark = ASubstitution.FVertretungslehrermerkmal;
  return Mark == vlmKein || (Mark >= vlmZusaetzlich && Mark <= vlmMehrfach) ||
         (ASubstitution.FTauschTerminLehrer && IsIn(AContext, ASubstitution.FNeuerTermin, ATeacher));
}

bool ComesToRoom(const TPlanContext& AContext, const TVELVertretung& ASubstitution, const TVELPlanobjekt& ARoom) {
  if (IsIn(AContext, ASubstitution.Termin(), ARoom)) {
    return false;
  }
  return ASubstitution.FNeu.Contains(&ARoom) ||
         (ASubstitution.FTauschTerminRaum && IsIn(AContext, ASubstitution.FNeuerTermin, ARoom)) ||
         (ASubstitution.FVertretungsmerkmal == vmVorgezogen && ASubstitution.Termin() == nullptr);
}

/// True if a substitution that concerns the object brings a lesson into its plan that is not its own.
bool ComesTo(const TPlanContext& AContext, const TVELVertretung& ASubstitution, const TVELPlanobjekt& AnObject) {
  if ((IsMoved(ASubstitution) && !IsIn(AContext, ASubstitution.Termin(), AnObject)) ||
      (ASubstitution.FFehlstellengrund == vaFehlstelle && ASubstitution.FFehlend.Contains(&AnObject))) {
    return true;
  }
  if (uDataObjects::As<TVELLehrer>(&AnObject) != nullptr) {
    return ComesToTeacher(AContext, ASubstitution, AnObject);
  }
  if (uDataObjects::As<TVELRaum>(&AnObject) != nullptr) {
    return ComesToRoom(AContext, ASubstitution, AnObject);
  }
  return ASubstitution.Termin() == nullptr && (ASubstitution.FVertretungsmerkmal == vmVorgezogen ||
                                               (ASubstitution.FVertretungsmerkmal == vmAenderung &&
                                                ASubstitution.FVertretungslehrermerkmal == vlmZusaetzlich));
}

bool IsSelected(const TPlanContext& AContext, const TVELAenderung& AChange, const TVELPlanobjekt& AnObject) {
  switch (AChange.Kind()) {
    case TChangeKind::Vertretung:
      return ComesTo(AContext, static_cast<const TVELVertretung&>(AChange), AnObject);
    case TChangeKind::Raumaenderung:
      return static_cast<const TVELRaumaenderung&>(AChange).Raum() == &AnObject;
    case TChangeKind::AufsichtsVertretung:
      return false;
    default:
      return AChange.IsAddition();
  }
}

/// Calls AVisit with lists of what the change names: objects, some of them more than once, or null.
template <class TVisit>
void VisitNamed(const TVELAenderung& AChange, const TVisit& AVisit) {
  const auto* const Supervision = AChange.As<TVELAufsichtsVertretung>();
  if (Supervision != nullptr) {
    TQuillonDataObject* const Teacher = Supervision->Lehrer();
    AVisit(std::span(&Teacher, 1));
    return;
  }
  AVisit(AChange.FNeu.Items());
  if (AChange.Kind() == TChangeKind::Zusatzunterricht) {
    TQuillonDataObject* const Subject = AChange.FNeuesFach;
    AVisit(AChange.FOriginal.Items());
    AVisit(AChange.FFehlend.Items());
    AVisit(std::span(&Subject, 1));
  }
  if (AChange.Kind() == TChangeKind::Vertretung) {
    AVisit(AChange.FFehlend.Items());
  }
}

/// The key of a message to all of a class.
template <class T>
const void* AllOf() {
  return &T::Class();
}

/// The span as the index takes it: one that ends ahead of its start counts as a moment.
TSpan IndexSpan(const TVELAenderung& AChange) {
  return {AChange.FStart, std::max<double>(AChange.FStart, AChange.FEnde)};
}

/// The changes of a key that overlap the span, forward in time.
template <class TChange>
std::vector<TChange*> ChangesOf(const TSpanIndex<TChange*>& AnIndex, const void* AKey, const TSpan& ASpan) {
  std::vector<TChange*> Found;
  AnIndex.Visit(AKey, ASpan.Finish, ASpan.Start, [&](TChange* AChange) {
    if (Touches(*AChange, ASpan)) {
      Found.push_back(AChange);
    }
    return false;
  });
  return Found;
}

}  // namespace

bool MovesAway(const TVELVertretung& ASubstitution) {
  return ASubstitution.FVertretungsmerkmal == vmWeggezogen || ASubstitution.FFehlstellengrund == vaWeggezogen;
}

int FindAenderung(const TVELPlan& APlan, const TSpan& ASpan) {
  return WalkBack(APlan.FAenderungen, FindHit(APlan.FAenderungen, ASpan), ASpan);
}

int FindAenderungForList(const TVELPlan& APlan, const TSpan& ASpan) {
  const int Hit = FindHit(APlan.FAenderungen, ASpan);
  const auto* const Substitution = Hit >= 0 ? APlan.FAenderungen.GetItem(Hit)->As<TVELVertretung>() : nullptr;
  return Substitution != nullptr && Substitution->FFehlstellengrund == vaFreigestellt
             ? Hit
             : WalkBack(APlan.FAenderungen, Hit, ASpan);
}

std::vector<TVELAenderung*> ChangesFrom(const TVELPlan& APlan, int AnIndex, const TSpan& ASpan) {
  std::vector<TVELAenderung*> Found;
  for (int I = AnIndex; I >= 0; --I) {
    TVELAenderung* const Change = APlan.FAenderungen.GetItem(I);
    if (Change->FStart > ASpan.Finish) {
      break;
    }
    if (Touches(*Change, ASpan)) {
      Found.push_back(Change);
    }
  }
  return Found;
}

namespace {

/// Those of the places that the run from AnIndex reaches, forward in time.
std::vector<TVELAenderung*> ChangesAt(const TVELPlan& APlan, int AnIndex, const std::vector<int>& APlaces) {
  std::vector<TVELAenderung*> Changes;
  for (const int Place : APlaces) {
    if (Place <= AnIndex) {
      Changes.push_back(APlan.FAenderungen.GetItem(Place));
    }
  }
  return Changes;
}

}  // namespace

std::vector<TVELAenderung*> ChangesFrom(const TPlanContext& AContext, int AnIndex, const TSpan& ASpan,
                                        std::span<const TVELPlanobjekt* const> AnObjects) {
  std::vector<int> Places;
  for (const TVELPlanobjekt* Object : AnObjects) {
    const std::vector<int> Found = AContext.Concerns().Of(*Object, ASpan);
    Places.insert(Places.end(), Found.begin(), Found.end());
  }
  MakeForward(Places);
  return ChangesAt(AContext.Plan(), AnIndex, Places);
}

std::vector<TVELAenderung*> SelectChanges(const TPlanContext& AContext, const TVELPlanobjekt& AnObject,
                                          const TSpan& ASpan) {
  // All of them: a long message must not hide behind shorter changes that are over. But what only changes an
  // appointment of the object does not come to it.
  const int Last = AContext.Plan().FAenderungen.Count() - 1;
  std::vector<TVELAenderung*> Found = ChangesAt(AContext.Plan(), Last, AContext.Concerns().Elsewhere(AnObject, ASpan));
  std::erase_if(Found, [&](const TVELAenderung* AChange) { return !IsSelected(AContext, *AChange, AnObject); });
  return Found;
}

int TListStart::Find(const TSpan& ASpan) const {
  const std::scoped_lock Lock(FMutex);
  if (FSpan != ASpan) {
    FPlace = FindAenderungForList(FPlan, ASpan);
    FSpan = ASpan;
  }
  return FPlace;
}

TChanges::TChanges(const TVELPlan& APlan) {
  // From the end of the lists: forward in time, also among those that begin together.
  for (int Place = APlan.FAenderungen.Count() - 1; Place >= 0; --Place) {
    TVELAenderung* const Change = APlan.FAenderungen.GetItem(Place);
    if (Change->FATermin != nullptr) {
      FOfSlot.Add(Change->FATermin, IndexSpan(*Change), Change);
      const auto* const Substitution = Change->As<TVELVertretung>();
      if (Substitution != nullptr && MovesAway(*Substitution)) {
        FMovingAway.Add(Change->FATermin, IndexSpan(*Change), Change);
      }
    }
  }
  for (int Place = APlan.FZuweisungen.Count() - 1; Place >= 0; --Place) {
    TVELZuweisung* const Assignment = APlan.FZuweisungen.GetItem(Place);
    if (Assignment->FATermin != nullptr) {
      FAssignments.Add(Assignment->FATermin, IndexSpan(*Assignment), Assignment);
    }
  }
  FOfSlot.Make();
  FMovingAway.Make();
  FAssignments.Make();
}

std::vector<TVELAenderung*> TChanges::Of(const TVELAbstrakterTermin& ASlot, const TSpan& ASpan) const {
  return ChangesOf(FOfSlot, &ASlot, ASpan);
}

bool TChanges::MoveAway(const TVELAbstrakterTermin& ASlot, const TSpan& ASpan) const {
  return FMovingAway.Visit(&ASlot, ASpan.Finish, ASpan.Start,
                           [&](const TVELAenderung* AChange) { return Touches(*AChange, ASpan); });
}

std::vector<TVELZuweisung*> TChanges::Assignments(const TVELAbstrakterTermin& ASlot, const TSpan& ASpan) const {
  return ChangesOf(FAssignments, &ASlot, ASpan);
}

TConcerns::TConcerns(const TPlanContext& AContext) : FContext(AContext) {
  const TVELPlan& Plan = AContext.Plan();
  for (int Place = Plan.FAenderungen.Count() - 1; Place >= 0; --Place) {
    const TChange Change{Plan.FAenderungen.GetItem(Place), Place};
    const TSpan Span = IndexSpan(*Change.Change);
    const auto Enter = [&](const void* AKey) { FOfObject.Add(AKey, Span, Change); };
    VisitNamed(*Change.Change,
               [&](std::span<TQuillonDataObject* const> AnObjects) { std::ranges::for_each(AnObjects, Enter); });
    // Not by those who take part: plans with long appointments that change often would take their product.
    if (const auto* const Substitution = Change.Change->As<TVELVertretung>()) {
      FOfAppointment.Add(Substitution->Termin(), Span, Change);
      FOfOther.Add(Substitution->FNeuerTermin, Span, Change);
    }
    if (const auto* const Message = Change.Change->As<TVELMitteilung>()) {
      if (Message->FAlleKlassen) {
        Enter(AllOf<TVELKlasse>());
      }
      if (Message->FAlleLehrer) {
        Enter(AllOf<TVELLehrer>());
      }
    }
  }
  for (int Place = Plan.FZuweisungen.Count() - 1; Place >= 0; --Place) {
    TVELZuweisung* const Assignment = Plan.FZuweisungen.GetItem(Place);
    for (const TVELPlanobjekt* New : Assignment->FNeu) {
      FAssignments.Add(New, IndexSpan(*Assignment), Assignment);
    }
  }
  for (TIndex* const Index : {&FOfObject, &FOfAppointment, &FOfOther}) {
    Index->Make();
  }
  FAssignments.Make();
}

void TConcerns::Add(std::vector<int>& AFound, const TIndex& AnIndex, const void* AKey, const TSpan& ASpan) {
  AnIndex.Visit(AKey, ASpan.Finish, ASpan.Start, [&](const TChange& AChange) {
    if (Touches(*AChange.Change, ASpan)) {
      AFound.push_back(AChange.Place);
    }
    return false;
  });
}

std::vector<int> TConcerns::Find(const TVELPlanobjekt& AnObject, const TSpan& ASpan,
                                 std::span<const TIndex* const> AnOfAppointments) const {
  std::vector<int> Found;
  for (const void* Key : {static_cast<const void*>(&AnObject), static_cast<const void*>(&AnObject.DataClass())}) {
    Add(Found, FOfObject, Key, ASpan);
  }
  for (const TVELVeranstaltung* const Lesson : AnObject.FVeranstaltungen) {
    for (const TVELTermin* const Termin : FContext.Participants().Appointments(*Lesson, AnObject)) {
      for (const TIndex* const Index : AnOfAppointments) {
        Add(Found, *Index, Termin, ASpan);
      }
    }
  }
  MakeForward(Found);
  return Found;
}

std::vector<int> TConcerns::Of(const TVELPlanobjekt& AnObject, const TSpan& ASpan) const {
  return Find(AnObject, ASpan, std::array{&FOfAppointment, &FOfOther});
}

std::vector<int> TConcerns::Elsewhere(const TVELPlanobjekt& AnObject, const TSpan& ASpan) const {
  return Find(AnObject, ASpan, std::array{&FOfOther});
}

std::vector<TVELZuweisung*> TConcerns::Assignments(const TVELPlanobjekt& AnObject, const TSpan& ASpan) const {
  return ChangesOf(FAssignments, &AnObject, ASpan);
}

}  // namespace uDataUtils
