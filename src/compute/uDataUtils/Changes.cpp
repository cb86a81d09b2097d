#include "uDataUtils/Changes.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>

#include "uDataUtils/Context.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
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

bool IsIn(const TVELTermin* ATermin, const TVELPlanobjekt& AnObject) {
  return ATermin != nullptr && TakesPart(*ATermin, AnObject);
}

bool Frees(const TVELVertretung& ASubstitution, const TVELPlanobjekt& AnObject) {
  return ASubstitution.FFehlstellengrund == vaFreigestellt && ASubstitution.FFehlend.Contains(&AnObject);
}

/// True if the lesson was moved as a whole, its teachers included.
bool IsMoved(const TVELVertretung& ASubstitution) {
  return ASubstitution.FVertretungsmerkmal == vmVorgezogen && ASubstitution.FVertretungslehrermerkmal < vlmZusaetzlich;
}

bool ComesToTeacher(const TVELVertretung& ASubstitution, const TVELPlanobjekt& ATeacher) {
  if (IsIn(ASubstitution.Termin(), ATeacher) || Frees(ASubstitution, ATeacher)) {
    return false;
  }
  if (ASubstitution.FVertretungsmerkmal == vmLehrerRaumTausch) {
    return ASubstitution.FTauschTerminLehrer;
  }
  const TVELVertretungslehrermerkmal Mark = ASubstitution.FVertretungslehrermerkmal;
  return Mark == vlmKein || (Mark >= vlmZusaetzlich && Mark <= vlmMehrfach) ||
         (ASubstitution.FTauschTerminLehrer && IsIn(ASubstitution.FNeuerTermin, ATeacher));
}

bool ComesToRoom(const TVELVertretung& ASubstitution, const TVELPlanobjekt& ARoom) {
  if (IsIn(ASubstitution.Termin(), ARoom)) {
    return false;
  }
  return ASubstitution.FNeu.Contains(&ARoom) ||
         (ASubstitution.FTauschTerminRaum && IsIn(ASubstitution.FNeuerTermin, ARoom)) ||
         (ASubstitution.FVertretungsmerkmal == vmVorgezogen && ASubstitution.Termin() == nullptr);
}

/// True if a substitution that concerns the object brings a lesson into its plan that is not its own.
bool ComesTo(const TVELVertretung& ASubstitution, const TVELPlanobjekt& AnObject) {
  if ((IsMoved(ASubstitution) && !IsIn(ASubstitution.Termin(), AnObject)) ||
      (ASubstitution.FFehlstellengrund == vaFehlstelle && ASubstitution.FFehlend.Contains(&AnObject))) {
    return true;
  }
  if (uDataObjects::As<TVELLehrer>(&AnObject) != nullptr) {
    return ComesToTeacher(ASubstitution, AnObject);
  }
  if (uDataObjects::As<TVELRaum>(&AnObject) != nullptr) {
    return ComesToRoom(ASubstitution, AnObject);
  }
  return ASubstitution.Termin() == nullptr && (ASubstitution.FVertretungsmerkmal == vmVorgezogen ||
                                               (ASubstitution.FVertretungsmerkmal == vmAenderung &&
                                                ASubstitution.FVertretungslehrermerkmal == vlmZusaetzlich));
}

bool IsSelected(const TVELAenderung& AChange, const TVELPlanobjekt& AnObject) {
  switch (AChange.Kind()) {
    case TChangeKind::Vertretung:
      return ComesTo(static_cast<const TVELVertretung&>(AChange), AnObject);
    case TChangeKind::Raumaenderung:
      return static_cast<const TVELRaumaenderung&>(AChange).Raum() == &AnObject;
    case TChangeKind::AufsichtsVertretung:
      return false;
    default:
      return AChange.IsAddition();
  }
}

/// Calls AVisit with each list of those who take part in the appointment.
template <class TVisit>
void VisitParticipants(const TVELTermin& ATermin, const TVisit& AVisit) {
  for (const std::span<TQuillonDataObject* const> Objects :
       {ATermin.FLehrer.Items(), ATermin.FRaeume.Items(), ATermin.FRessourcen.Items(), ATermin.Klassen(),
        ATermin.Schueler()}) {
    AVisit(Objects);
  }
  TQuillonDataObject* const Subject = ATermin.Fach();
  AVisit(std::span(&Subject, 1));
}

/// Calls AVisit with lists of what the change concerns: objects, some of them more than once, or null.
template <class TVisit>
void VisitConcerned(const TVELAenderung& AChange, const TVisit& AVisit) {
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
  if (const auto* const Substitution = AChange.As<TVELVertretung>()) {
    AVisit(AChange.FFehlend.Items());
    for (const TVELTermin* Termin : {Substitution->Termin(), Substitution->FNeuerTermin}) {
      if (Termin != nullptr) {
        VisitParticipants(*Termin, AVisit);
      }
    }
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

std::vector<TVELAenderung*> ChangesFrom(const TPlanContext& AContext, int AnIndex, const TSpan& ASpan,
                                        std::span<const TVELPlanobjekt* const> AnObjects) {
  std::set<int, std::greater<>> Places;
  for (const TVELPlanobjekt* Object : AnObjects) {
    const std::vector<int> Found = AContext.Concerns().Of(*Object, ASpan);
    std::ranges::copy_if(Found, std::inserter(Places, Places.end()), [&](int APlace) { return APlace <= AnIndex; });
  }
  std::vector<TVELAenderung*> Changes;
  std::ranges::transform(Places, std::back_inserter(Changes),
                         [&](int APlace) { return AContext.Plan().FAenderungen.GetItem(APlace); });
  return Changes;
}

bool TakesPart(const TVELTermin& ATermin, const TVELPlanobjekt& AnObject) {
  bool Found = false;
  VisitParticipants(ATermin, [&](std::span<TQuillonDataObject* const> AnObjects) {
    Found = Found || std::ranges::find(AnObjects, &AnObject) != AnObjects.end();
  });
  return Found;
}

std::vector<TVELAenderung*> SelectChanges(const TPlanContext& AContext, const TVELPlanobjekt& AnObject,
                                          const TSpan& ASpan) {
  const TVELPlanobjekt* const Object = &AnObject;
  // All of them: a long message must not hide behind shorter changes that are over.
  const int Last = AContext.Plan().FAenderungen.Count() - 1;
  std::vector<TVELAenderung*> Found = ChangesFrom(AContext, Last, ASpan, std::span(&Object, 1));
  std::erase_if(Found, [&](const TVELAenderung* AChange) { return !IsSelected(*AChange, AnObject); });
  return Found;
}

TChanges::TChanges(const TVELPlan& APlan) {
  // From the end of the lists: forward in time, also among those that begin together.
  for (int Place = APlan.FAenderungen.Count() - 1; Place >= 0; --Place) {
    TVELAenderung* const Change = APlan.FAenderungen.GetItem(Place);
    if (Change->FATermin != nullptr) {
      FOfSlot.Add(Change->FATermin, IndexSpan(*Change), Change);
    }
  }
  for (int Place = APlan.FZuweisungen.Count() - 1; Place >= 0; --Place) {
    TVELZuweisung* const Assignment = APlan.FZuweisungen.GetItem(Place);
    if (Assignment->FATermin != nullptr) {
      FAssignments.Add(Assignment->FATermin, IndexSpan(*Assignment), Assignment);
    }
  }
  FOfSlot.Make();
  FAssignments.Make();
}

std::vector<TVELAenderung*> TChanges::Of(const TVELAbstrakterTermin& ASlot, const TSpan& ASpan) const {
  return ChangesOf(FOfSlot, &ASlot, ASpan);
}

std::vector<TVELZuweisung*> TChanges::Assignments(const TVELAbstrakterTermin& ASlot, const TSpan& ASpan) const {
  return ChangesOf(FAssignments, &ASlot, ASpan);
}

TConcerns::TConcerns(const TVELPlan& APlan) {
  for (int Place = APlan.FAenderungen.Count() - 1; Place >= 0; --Place) {
    const TChange Change{APlan.FAenderungen.GetItem(Place), Place};
    const auto Enter = [&](const void* AKey) { FOfObject.Add(AKey, IndexSpan(*Change.Change), Change); };
    VisitConcerned(*Change.Change,
                   [&](std::span<TQuillonDataObject* const> AnObjects) { std::ranges::for_each(AnObjects, Enter); });
    if (const auto* const Message = Change.Change->As<TVELMitteilung>()) {
      if (Message->FAlleKlassen) {
        Enter(AllOf<TVELKlasse>());
      }
      if (Message->FAlleLehrer) {
        Enter(AllOf<TVELLehrer>());
      }
    }
  }
  for (int Place = APlan.FZuweisungen.Count() - 1; Place >= 0; --Place) {
    TVELZuweisung* const Assignment = APlan.FZuweisungen.GetItem(Place);
    for (const TVELPlanobjekt* New : Assignment->FNeu) {
      FAssignments.Add(New, IndexSpan(*Assignment), Assignment);
    }
  }
  FOfObject.Make();
  FAssignments.Make();
}

std::vector<int> TConcerns::Of(const TVELPlanobjekt& AnObject, const TSpan& ASpan) const {
  std::vector<int> Found;
  for (const void* Key : {static_cast<const void*>(&AnObject), static_cast<const void*>(&AnObject.DataClass())}) {
    FOfObject.Visit(Key, ASpan.Finish, ASpan.Start, [&](const TChange& AChange) {
      if (Touches(*AChange.Change, ASpan)) {
        Found.push_back(AChange.Place);
      }
      return false;
    });
  }
  std::ranges::sort(Found, std::greater<>());
  Found.erase(std::unique(Found.begin(), Found.end()), Found.end());
  return Found;
}

std::vector<TVELZuweisung*> TConcerns::Assignments(const TVELPlanobjekt& AnObject, const TSpan& ASpan) const {
  return ChangesOf(FAssignments, &AnObject, ASpan);
}

}  // namespace uDataUtils
