#include <algorithm>
#include <atomic>
#include <iterator>
#include <string_view>

#include "uDataUtils/Absences.h"
#include "uDataUtils/Classes.h"
#include "uDataUtils/Context.h"
#include "uDataUtils/Publishing.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlaneintraege/Eintraege.h"
#include "uPlaneintraege/Mengen.h"

namespace uPlaneintraege {

namespace {

/// Merges the items of each target's class into it.
template <class... TItems>
void Sort(const TVELPlanobjektliste& AList, std::vector<TItems*>&... ATargets) {
  (Merge(ATargets, ItemsOf<TItems>(AList.Items())), ...);
}

std::vector<TVELLehrer*> TeachersOf(const TVELTermin* ATermin) {
  return ATermin != nullptr ? ItemsOf<TVELLehrer>(ATermin->FLehrer.Items()) : std::vector<TVELLehrer*>();
}

std::vector<TVELRaum*> RoomsOf(const TVELTermin* ATermin) {
  return ATermin != nullptr ? ItemsOf<TVELRaum>(ATermin->FRaeume.Items()) : std::vector<TVELRaum*>();
}

/// The lesson's comment and the appointment's.
std::string Comment(const TVELTermin& ATermin) {
  constexpr std::string_view Separator = ". ";
  const TVELVeranstaltung* const Lesson = ATermin.Veranstaltung();
  std::string Text = Lesson != nullptr ? Lesson->FBemerkung : std::string();
  if (!Text.empty() && !ATermin.FBemerkung.empty()) {
    Text.append(Separator);
  }
  return Text.append(ATermin.FBemerkung);
}

std::int32_t WeekSum(const TVELWeeks& AWeeks) {
  std::int32_t Sum = 0;
  for (int Week = 1; Week <= TVELWeeks::Count; ++Week) {
    Sum += AWeeks.Contains(Week) ? TVELWeeks::Count * Week : 0;
  }
  return Sum;
}

/// Derives the lists of one entry.
class TDerivation {
 public:
  TDerivation(const TPlanContext& AContext, TVELPlaneintrag& AnEntry) : FContext(AContext), E(AnEntry) {}

  void Run(bool AWithAbsences, bool APublicOnly) {
    Empty();
    const TVELAenderung* const Change = E.Aenderung();
    if (Change == nullptr) {
      TakePlan();
    } else if (E.FAufsicht != nullptr) {
      TakeSupervision(*Change);
    } else {
      TakeChange(*Change);
    }
    if (AWithAbsences && (E.FTermin == nullptr || uDataUtils::InPublishWindow(FContext, E.FStart))) {
      TakeAbsences(APublicOnly);
    }
    Conclude();
  }

 private:
  void Empty();
  void TakePlan();
  void TakeIntegratedClasses();
  void TakeSupervision(const TVELAenderung& AChange);
  void TakeChange(const TVELAenderung& AChange);
  void TakeAddition(const TVELAenderung& AChange);
  void TakeRoomChange(const TVELRaumaenderung& AChange);
  void TakeSubstitution(const TVELVertretung& AChange);
  void TakeGap(const TVELVertretung& AChange);
  void TakeSwap(const TVELVertretung& AChange);
  void TakeTeacherRoomSwap(const TVELVertretung& AChange);
  void TakeNewRoom(const TVELVertretung& AChange);
  void TakeOtherAppointment(const TVELVertretung& AChange);
  void MergeAppointment(const TVELTermin* ATermin);
  void TakeMissing(const TVELFehlzeit* AnAbsence);
  void TakeAbsences(bool APublicOnly);
  void Conclude();

  /// Adds the absences of each item that is not missing yet, and the item to the missing ones if there are any.
  /// @return whether all are missing then
  template <class T>
  bool TakeAbsencesOf(const std::vector<T*>& AnItems, std::vector<T*>& AMissing, bool APublicOnly);

  const TPlanContext& FContext;
  TVELPlaneintrag& E;
};

void TDerivation::Empty() {
  const auto Clear = [](auto&... ALists) { (ALists.clear(), ...); };
  Clear(E.FKlassen, E.FLehrer, E.FFaecher, E.FRaeume, E.FSchueler, E.FNeueRaeume, E.FNeueFaecher, E.FNeueKlassen,
        E.FNeueLehrer, E.FFehlendeFaecher, E.FFehlendeKlassen, E.FFehlendeLehrer, E.FFehlendeRaeume, E.FFehlzeiten);
  E.FKlasseFehlt = false;
}

void TDerivation::TakePlan() {
  if (E.FTermin != nullptr) {
    Join(E.FFaecher, E.FTermin->Fach());
    Merge(E.FKlassen, ItemsOf<TVELKlasse>(E.FTermin->Klassen()));
    Merge(E.FLehrer, TeachersOf(E.FTermin));
    Merge(E.FRaeume, RoomsOf(E.FTermin));
    E.FBemerkung = Comment(*E.FTermin);
    const TVELVeranstaltung* const Lesson = E.FTermin->Veranstaltung();
    E.FWochenSortIndex = Lesson != nullptr ? WeekSum(Lesson->FWochen) : 0;
    TakeIntegratedClasses();
  } else if (E.FAufsicht != nullptr) {
    Join(E.FLehrer, E.FAufsicht->FLehrer);
  } else if (E.FZuweisung != nullptr) {
    Sort(E.FZuweisung->FNeu, E.FRaeume);
  }
}

void TDerivation::TakeIntegratedClasses() {
  if (FContext.Plan().FIntegriereKlassen) {
    const std::vector<TVELKlasse*> Own = E.FKlassen;
    Merge(E.FKlassen, FContext.IntegratedClasses().Of(Own));
  }
}

void TDerivation::TakeSupervision(const TVELAenderung& AChange) {
  Join(E.FFehlendeLehrer, E.FAufsicht->FLehrer);
  if (const auto* const Substitution = AChange.As<TVELAufsichtsVertretung>()) {
    Join(E.FNeueLehrer, Substitution->Lehrer());
    Join(E.FLehrer, Substitution->Lehrer());
  }
}

void TDerivation::TakeChange(const TVELAenderung& AChange) {
  const auto* const Substitution = AChange.As<TVELVertretung>();
  if (AChange.IsAddition()) {
    TakeAddition(AChange);
  } else if (const auto* const RoomChange = AChange.As<TVELRaumaenderung>()) {
    TakeRoomChange(*RoomChange);
  } else if (Substitution != nullptr) {
    TakeSubstitution(*Substitution);
  } else {
    TakeMissing(AChange.FFehlzeit);
  }
  Join(E.FFaecher, AChange.FNeuesFach);
  if (Substitution == nullptr || Substitution->FNeuerTermin == nullptr ||
      Substitution->FFehlstellengrund == vaLehrerRaumTausch) {
    MergeAppointment(E.FTermin);
  } else {
    TakeOtherAppointment(*Substitution);
  }
  Merge(E.FKlassen, E.FNeueKlassen);
  Merge(E.FLehrer, E.FNeueLehrer);
  Merge(E.FRaeume, E.FNeueRaeume);
  Merge(E.FFaecher, E.FNeueFaecher);
}

void TDerivation::TakeAddition(const TVELAenderung& AChange) {
  if (AChange.Kind() != TChangeKind::Zusatzunterricht) {
    Sort(AChange.FNeu, E.FKlassen, E.FLehrer, E.FRaeume);
    return;
  }
  Sort(AChange.FOriginal, E.FKlassen, E.FLehrer, E.FRaeume, E.FSchueler);
  Sort(AChange.FNeu, E.FNeueKlassen, E.FNeueLehrer, E.FNeueRaeume);
  Sort(AChange.FFehlend, E.FFehlendeKlassen, E.FFehlendeLehrer, E.FFehlendeRaeume);
}

void TDerivation::TakeRoomChange(const TVELRaumaenderung& AChange) {
  if (AChange.FFehlzeit != nullptr && AChange.FFehlzeit->Kind() == TAbsenceKind::Raum) {
    TakeMissing(AChange.FFehlzeit);
  }
  Join(E.FNeueFaecher, AChange.FNeuesFach);
  Sort(AChange.FNeu, E.FNeueRaeume);
}

void TDerivation::TakeSubstitution(const TVELVertretung& AChange) {
  if (E.FTermin == nullptr) {
    E.FTermin = AChange.FNeuerTermin;
  }
  if (AChange.FFehlstellengrund != vaLehrerRaumTausch) {
    if (AChange.FNeuesFach != nullptr) {
      Join(E.FNeueFaecher, AChange.FNeuesFach);
      Join(E.FFehlendeFaecher, E.FTermin != nullptr ? E.FTermin->Fach() : nullptr);
    }
    Sort(AChange.FNeu, E.FNeueLehrer, E.FNeueRaeume, E.FNeueFaecher);
  }
  Join(E.FFehlzeiten, AChange.FFehlzeit);
  TakeGap(AChange);
  TakeNewRoom(AChange);
}

void TDerivation::TakeGap(const TVELVertretung& AChange) {
  switch (AChange.FFehlstellengrund) {
    case vaFreigestellt:
      if (E.FTermin != nullptr) {
        Sort(AChange.FFehlend, E.FFehlendeKlassen, E.FFehlendeLehrer, E.FFehlendeRaeume, E.FFehlendeFaecher);
      }
      break;
    case vaFehlstelle:
      Sort(AChange.FFehlend, E.FKlassen, E.FLehrer, E.FRaeume, E.FFaecher);
      break;
    case vaTausch:
      if (AChange.FNeuerTermin != nullptr) {
        TakeSwap(AChange);
      }
      break;
    case vaLehrerRaumTausch:
      if (E.FTermin != nullptr) {
        TakeTeacherRoomSwap(AChange);
      }
      break;
    default:
      break;
  }
}

void TDerivation::TakeSwap(const TVELVertretung& AChange) {
  if (AChange.FTauschTerminLehrer) {
    Merge(E.FNeueLehrer, TeachersOf(AChange.FTauschTermin));
  }
  Merge(AChange.FTauschTerminLehrer ? E.FFehlendeLehrer : E.FLehrer, TeachersOf(AChange.FNeuerTermin));
  if (AChange.FTauschTerminRaum) {
    Merge(E.FNeueRaeume, RoomsOf(AChange.FTauschTermin));
  }
  Merge(AChange.FTauschTerminRaum ? E.FFehlendeRaeume : E.FRaeume, RoomsOf(AChange.FNeuerTermin));
}

void TDerivation::TakeTeacherRoomSwap(const TVELVertretung& AChange) {
  if (AChange.FTauschTerminLehrer) {
    Merge(E.FFehlendeLehrer, TeachersOf(AChange.Termin()));
    Merge(E.FNeueLehrer, TeachersOf(AChange.FNeuerTermin));
  }
  if (AChange.FTauschTerminRaum) {
    Merge(E.FFehlendeRaeume, RoomsOf(AChange.Termin()));
    Merge(E.FNeueRaeume, RoomsOf(AChange.FNeuerTermin));
  }
}

void TDerivation::TakeNewRoom(const TVELVertretung& AChange) {
  if (auto* const Room = AChange.FNeu.First<TVELRaum>()) {
    Merge(E.FFehlendeRaeume, E.FRaeume);
    E.FRaeume = {Room};
    Join(E.FNeueRaeume, Room);
  }
}

void TDerivation::TakeOtherAppointment(const TVELVertretung& AChange) {
  const TVELTermin* const Own = AChange.Termin();
  const TVELTermin* const Other = AChange.FNeuerTermin;
  if (Own != nullptr && Own != Other) {
    Join(E.FFehlendeFaecher, Own->Fach());
    MergeAppointment(Own);
  }
  Merge(E.FKlassen, ItemsOf<TVELKlasse>(Other->Klassen()));
  if (AChange.FVertretungslehrermerkmal == vlmFreigestellt || AChange.FVertretungslehrermerkmal == vlmMehrfach) {
    return;
  }
  const auto Source = [&](bool AIsSwapped) -> const TVELTermin* {
    if (AChange.FTauschTermin == nullptr || AIsSwapped) {
      return Other;
    }
    return Own != nullptr ? AChange.FTauschTermin : nullptr;
  };
  Merge(E.FLehrer, TeachersOf(Source(AChange.FTauschTerminLehrer)), E.FFehlendeLehrer);
  const std::vector<TVELRaum*> Rooms = RoomsOf(Source(AChange.FTauschTerminRaum));
  if (E.FNeueRaeume.empty()) {
    Merge(E.FRaeume, Rooms, E.FFehlendeRaeume);
  } else {
    Merge(E.FFehlendeRaeume, Rooms, E.FNeueRaeume);
  }
}

void TDerivation::MergeAppointment(const TVELTermin* ATermin) {
  if (ATermin == nullptr) {
    return;
  }
  if (TVELFach* const Subject = ATermin->Fach(); !Holds(E.FFehlendeFaecher, Subject)) {
    Join(E.FFaecher, Subject);
  }
  Merge(E.FKlassen, ItemsOf<TVELKlasse>(ATermin->Klassen()), E.FFehlendeKlassen);
  Merge(E.FLehrer, TeachersOf(ATermin), E.FFehlendeLehrer);
  // The one room of an appointment gives way to a new one, several do not.
  const bool IsReplaced = !E.FNeueRaeume.empty() && ATermin->FRaeume.Count() == 1;
  if (IsReplaced) {
    Merge(E.FFehlendeRaeume, RoomsOf(ATermin), E.FNeueRaeume);
  } else {
    std::vector<TVELRaum*> Taken = E.FNeueRaeume;
    Merge(Taken, E.FFehlendeRaeume);
    Merge(E.FRaeume, RoomsOf(ATermin), Taken);
  }
  E.FBemerkung = Comment(*ATermin);
}

void TDerivation::TakeMissing(const TVELFehlzeit* AnAbsence) {
  TVELPlanobjekt* const Object = AnAbsence != nullptr ? AnAbsence->Objekt() : nullptr;
  Join(E.FFehlendeLehrer, uDataObjects::As<TVELLehrer>(Object));
  Join(E.FFehlendeKlassen, uDataObjects::As<TVELKlasse>(Object));
  Join(E.FFehlendeRaeume, uDataObjects::As<TVELRaum>(Object));
}

template <class T>
bool TDerivation::TakeAbsencesOf(const std::vector<T*>& AnItems, std::vector<T*>& AMissing, bool APublicOnly) {
  bool AllAreMissing = true;
  const std::vector<T*> Known = AMissing;
  std::vector<T*> Present;
  Merge(Present, AnItems, Known);
  std::vector<T*> Missing;
  for (T* const Item : Present) {
    const auto Found =
        uDataUtils::FindFehlzeiten(FContext, *Item, E.Veranstaltung(), APublicOnly, {E.FStart, E.FFinish});
    Merge(E.FFehlzeiten, Found);
    if (Found.empty()) {
      AllAreMissing = false;
    } else {
      Missing.push_back(Item);
    }
  }
  Merge(AMissing, Missing);
  return AllAreMissing;
}

void TDerivation::TakeAbsences(bool APublicOnly) {
  TakeAbsencesOf(E.FRaeume, E.FFehlendeRaeume, APublicOnly);
  TakeAbsencesOf(E.FLehrer, E.FFehlendeLehrer, APublicOnly);
  const TVELAenderung* const Change = E.Aenderung();
  if ((Change == nullptr || Change->Kind() != TChangeKind::Mitteilung) && !E.FKlassen.empty()) {
    E.FKlasseFehlt = TakeAbsencesOf(E.FKlassen, E.FFehlendeKlassen, APublicOnly);
  }
}

void TDerivation::Conclude() {
  const TVELAenderung* const Change = E.Aenderung();
  E.FMissing = !E.FFehlendeFaecher.empty() || !E.FFehlendeKlassen.empty() || !E.FFehlendeLehrer.empty() ||
               !E.FFehlendeRaeume.empty();
  E.FChanges = Change != nullptr || E.FMissing;
  const TVELFehlzeit* const Absence = E.Fehlzeit();
  if (Change != nullptr) {
    E.FModified = std::max<double>(E.FModified, Change->FModified);
  } else if (Absence != nullptr) {
    E.FModified = std::max<double>(E.FModified, Absence->FModified);
  }
}

/// Raised by the first entry of the process with two rooms, and never lowered.
std::atomic<int> EntriesWithTwoRooms = 0;

}  // namespace

void BuildEintrag(const TPlanContext& AContext, TVELPlaneintrag& AnEntry, bool AWithAbsences, bool APublicOnly) {
  TDerivation Derivation(AContext, AnEntry);
  Derivation.Run(AWithAbsences, APublicOnly);
  int None = 0;
  if (AnEntry.FRaeume.size() == 2 && EntriesWithTwoRooms.compare_exchange_strong(None, 1)) {
    Derivation.Run(AWithAbsences, false);
  }
}

}  // namespace uPlaneintraege
