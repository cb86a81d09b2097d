#include "uDataUtils/Changes.h"

#include <algorithm>

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
  if (dynamic_cast<const TVELLehrer*>(&AnObject) != nullptr) {
    return ComesToTeacher(ASubstitution, AnObject);
  }
  if (dynamic_cast<const TVELRaum*>(&AnObject) != nullptr) {
    return ComesToRoom(ASubstitution, AnObject);
  }
  return ASubstitution.Termin() == nullptr && (ASubstitution.FVertretungsmerkmal == vmVorgezogen ||
                                               (ASubstitution.FVertretungsmerkmal == vmAenderung &&
                                                ASubstitution.FVertretungslehrermerkmal == vlmZusaetzlich));
}

bool IsSelected(const TVELAenderung& AChange, const TVELPlanobjekt& AnObject) {
  if (const auto* const Substitution = dynamic_cast<const TVELVertretung*>(&AChange)) {
    return ComesTo(*Substitution, AnObject);
  }
  if (const auto* const RoomChange = dynamic_cast<const TVELRaumaenderung*>(&AChange)) {
    return RoomChange->Raum() == &AnObject;
  }
  return dynamic_cast<const TVELZusatzAenderung*>(&AChange) != nullptr;
}

}  // namespace

int FindAenderung(const TVELPlan& APlan, const TSpan& ASpan) {
  return WalkBack(APlan.FAenderungen, FindHit(APlan.FAenderungen, ASpan), ASpan);
}

int FindAenderungForList(const TVELPlan& APlan, const TSpan& ASpan) {
  const int Hit = FindHit(APlan.FAenderungen, ASpan);
  const auto* const Substitution =
      Hit >= 0 ? dynamic_cast<const TVELVertretung*>(APlan.FAenderungen.GetItem(Hit)) : nullptr;
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

bool TakesPart(const TVELTermin& ATermin, const TVELPlanobjekt& AnObject) {
  const auto Holds = [&](const auto& AnObjects) { return std::ranges::find(AnObjects, &AnObject) != AnObjects.end(); };
  return Holds(ATermin.FLehrer.Items()) || Holds(ATermin.FRaeume.Items()) || Holds(ATermin.FRessourcen.Items()) ||
         Holds(ATermin.Klassen()) || Holds(ATermin.Schueler()) || ATermin.Fach() == &AnObject;
}

bool Concerns(const TVELAenderung& AChange, const TVELPlanobjekt& AnObject) {
  const bool IsNew = AChange.FNeu.Contains(&AnObject);
  if (const auto* const Message = dynamic_cast<const TVELMitteilung*>(&AChange)) {
    return IsNew || (Message->FAlleKlassen && dynamic_cast<const TVELKlasse*>(&AnObject) != nullptr) ||
           (Message->FAlleLehrer && dynamic_cast<const TVELLehrer*>(&AnObject) != nullptr);
  }
  if (dynamic_cast<const TVELZusatzunterricht*>(&AChange) != nullptr) {
    return IsNew || AChange.FOriginal.Contains(&AnObject) || AChange.FFehlend.Contains(&AnObject) ||
           AChange.FNeuesFach == &AnObject;
  }
  if (const auto* const Supervision = dynamic_cast<const TVELAufsichtsVertretung*>(&AChange)) {
    return Supervision->Lehrer() == &AnObject;
  }
  if (const auto* const Substitution = dynamic_cast<const TVELVertretung*>(&AChange)) {
    return IsNew || Substitution->FFehlend.Contains(&AnObject) || IsIn(Substitution->Termin(), AnObject) ||
           IsIn(Substitution->FNeuerTermin, AnObject);
  }
  return IsNew;
}

std::vector<TVELAenderung*> SelectChanges(const TVELPlan& APlan, const TVELPlanobjekt& AnObject, const TSpan& ASpan) {
  std::vector<TVELAenderung*> Found = ChangesFrom(APlan, FindAenderung(APlan, ASpan), ASpan);
  std::erase_if(Found, [&](const TVELAenderung* AChange) {
    return !Concerns(*AChange, AnObject) || !IsSelected(*AChange, AnObject);
  });
  return Found;
}

}  // namespace uDataUtils
