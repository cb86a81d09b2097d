#include <algorithm>

#include "uDataUtils/Absences.h"
#include "uDataUtils/Publishing.h"
#include "uJSONExport/Run.h"
#include "uJSONExport/UserData.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Gebaeude.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Vertretungen.h"

namespace uJSONExport {

namespace {

using uDataObjects::As;

std::vector<const TQuillonDataObject*> Items(const TQuillonDataList& AList) {
  return {AList.Items().begin(), AList.Items().end()};
}

/// The teams that an object belongs to; a student belongs to that of the class.
std::vector<const TQuillonDataObject*> TeamsOf(const TVELPlanobjekt& AnObject) {
  if (const auto* const Teacher = As<TVELLehrer>(&AnObject)) {
    return Items(Teacher->FTeams);
  }
  if (const auto* const Room = As<TVELRaum>(&AnObject)) {
    return Items(Room->FTeams);
  }
  if (const auto* const Subject = As<TVELFach>(&AnObject)) {
    return Items(Subject->FTeams);
  }
  if (const auto* const Resource = As<TVELRessource>(&AnObject)) {
    return {Resource->FTeam};
  }
  const auto* const Student = As<TVELSchueler>(&AnObject);
  const auto* const Class = Student != nullptr ? Student->FKlasse : As<TVELKlasse>(&AnObject);
  return {Class != nullptr ? Class->FTeam : nullptr};
}

void AddTeachersOfTeams(const TVELPlan& APlan, const TVELPlanobjekt& AMember, std::vector<TVELPlanobjekt*>& ATeachers) {
  const auto OwnTeams = TeamsOf(AMember);
  const std::unordered_set<const TQuillonDataObject*> Teams(OwnTeams.begin(), OwnTeams.end());
  for (TVELLehrer* Teacher : APlan.FLehrer) {
    const auto Items = Teacher->FTeams.Items();
    if (std::ranges::any_of(Items, [&](const auto* ATeam) { return Teams.contains(ATeam); })) {
      ATeachers.push_back(Teacher);
    }
  }
}

/// True if the change is settled, or tells more than an absence.
bool IsSettled(const TVELAenderung& AChange) {
  const TVELAenderungsStatus Status = AChange.Status();
  const auto* const OfRoom = AChange.As<TVELRaumaenderung>();
  const auto* const OfSupervision = AChange.As<TVELAufsichtsVertretung>();
  if (Status == aeInvalid || Status == aeClosed || AChange.Kind() == TChangeKind::Mitteilung ||
      AChange.FVertretungsentfall != nullptr || (OfRoom != nullptr && OfRoom->FEntfaellt) ||
      (OfSupervision != nullptr && OfSupervision->FKeineVertretung)) {
    return true;
  }
  const auto* const Substitution = AChange.As<TVELVertretung>();
  switch (Substitution != nullptr ? Substitution->FVertretungsmerkmal : vmKein) {
    case vmVorgezogen:
    case vmKlasseFrei:
    case vmEntfaellt:
    case vmWeggezogen:
      return true;
    default:
      return false;
  }
}

/// True if all of the classes are among the missing ones.
bool MissesAllClasses(const TVELPlaneintrag& AnEntry) {
  const std::unordered_set<const TVELKlasse*> Missing(AnEntry.FFehlendeKlassen.begin(), AnEntry.FFehlendeKlassen.end());
  return !Missing.empty() &&
         std::ranges::all_of(AnEntry.FKlassen, [&](const TVELKlasse* AClass) { return Missing.contains(AClass); });
}

template <class T>
void MarkAll(const std::vector<T*>& AnObjects) {
  for (T* Object : AnObjects) {
    Object->FTag = 1;
    if constexpr (std::is_same_v<T, TVELRaum>) {
      if (Object->FGebaeude != nullptr) {
        Object->FGebaeude->FTag = 1;
      }
    }
  }
}

}  // namespace

TTeamSelection::TTeamSelection(const TVELStammobjektliste& AChoice) {
  const auto Chosen = AChoice.Items();
  if (!Chosen.empty() && As<TVELTeam>(Chosen.front()) != nullptr) {
    FTeams.insert(Chosen.begin(), Chosen.end());
  }
}

bool TTeamSelection::Passes(const TVELStammobjekt& AnObject) const {
  const auto* const Member = As<TVELPlanobjekt>(&AnObject);
  return FTeams.empty() || Member == nullptr ||
         std::ranges::any_of(TeamsOf(*Member), [&](const auto* ATeam) { return FTeams.contains(ATeam); });
}

std::vector<TVELPlanobjekt*> ChosenObjects(const TVELJSONExport& AnExport) {
  std::vector<TVELPlanobjekt*> Objects;
  if (AnExport.AllLessons) {
    return Objects;
  }
  if (AnExport.UserData != nullptr && !AnExport.Admin) {
    const auto& Policies = AnExport.UserData->UserPolicies;
    for (std::size_t I = 0; I < Policies.size(); ++I) {
      TVELPlanobjekt* const Home = AnExport.UserData->Home(I);
      if (Home != nullptr && TVELJSONUserData::IsOfTeam(Policies[I])) {
        AddTeachersOfTeams(AnExport.Plan(), *Home, Objects);
      } else if (Home != nullptr) {
        Objects.push_back(Home);
      }
    }
  }
  if (Objects.empty() && AnExport.Planobjekt != nullptr) {
    Objects.push_back(AnExport.Planobjekt);
  }
  std::unordered_set<const TVELPlanobjekt*> Seen;
  std::erase_if(Objects, [&](const TVELPlanobjekt* AnObject) { return !Seen.insert(AnObject).second; });
  return Objects;
}

std::vector<TVELPlanobjekt*> AllObjects(const TRun& ARun) {
  std::vector<TVELPlanobjekt*> Objects;
  for (const TVELPlanobjektliste* List : {static_cast<const TVELPlanobjektliste*>(&ARun.Plan.FLehrer),
                                          static_cast<const TVELPlanobjektliste*>(&ARun.Plan.FKlassen)}) {
    for (TQuillonDataObject* Item : List->Items()) {
      auto* const Object = static_cast<TVELPlanobjekt*>(Item);
      if (!Object->FNichtVerfuegbar && ARun.Teams.Passes(*Object)) {
        Objects.push_back(Object);
      }
    }
  }
  return Objects;
}

int ChangeType(const TRun& ARun, const TVELPlaneintrag& AnEntry) {
  const TVELAenderung* const Change = AnEntry.Aenderung();
  if (Change == nullptr) {
    return 0;
  }
  switch (Change->Kind()) {
    case TChangeKind::Raumaenderung:
      return 1;
    case TChangeKind::Zuweisung:
      return 2;
    case TChangeKind::Zusatzunterricht:
      return 3;
    case TChangeKind::Mitteilung:
      return 4;
    case TChangeKind::AufsichtsVertretung:
      return 5;
    case TChangeKind::Vertretung:
      break;
  }
  const auto& Substitution = static_cast<const TVELVertretung&>(*Change);
  if (!uDataUtils::ChangesNothing(Substitution) && !uDataUtils::AllClassesAbsent(ARun.Context, Substitution)) {
    return 0;
  }
  return Substitution.FVertretungsmerkmal == vmKlasseFrei    ? 7
         : Substitution.FVertretungsmerkmal == vmKlasseFehlt ? 8
                                                             : 6;
}

bool IsAbsenceOnly(const TVELPlaneintrag& AnEntry) {
  const TVELAenderung* const Change = AnEntry.Aenderung();
  if (AnEntry.FKlasseFehlt || (Change != nullptr && IsSettled(*Change))) {
    return false;
  }
  const bool MissesRooms = !AnEntry.FFehlendeRaeume.empty() && AnEntry.FNeueRaeume.empty();
  if (const auto* const Substitution = AnEntry.Vertretung();
      Substitution != nullptr && Substitution->FVertretungsmerkmal == vmFaelltAus) {
    return MissesRooms;
  }
  const bool IsAdditional = Change != nullptr && Change->Kind() == TChangeKind::Zusatzunterricht;
  const bool IsOfRoom = Change != nullptr && Change->Kind() == TChangeKind::Raumaenderung;
  const bool MissesTeachers = !AnEntry.FFehlendeLehrer.empty() && AnEntry.FNeueLehrer.empty();
  const bool MissesClasses = AnEntry.FNeueKlassen.empty() && MissesAllClasses(AnEntry);
  return (!IsAdditional && ((!IsOfRoom && (MissesClasses || MissesTeachers)) || MissesRooms)) ||
         (Change != nullptr && Change->Status() == aeOpen);
}

void ClearMarks(TVELPlan& APlan) {
  for (const TQuillonDataList* List :
       std::initializer_list<const TQuillonDataList*>{&APlan.FKlassen, &APlan.FLehrer, &APlan.FRaeume, &APlan.FFaecher,
                                                      &APlan.FTeams, &APlan.FSchueler, &APlan.FGebaeude}) {
    for (TQuillonDataObject* Object : List->Items()) {
      static_cast<TVELDataObject*>(Object)->FTag = 0;
    }
  }
}

void Mark(const TVELPlaneintrag& AnEntry) {
  for (const auto* Classes : {&AnEntry.FKlassen, &AnEntry.FNeueKlassen, &AnEntry.FFehlendeKlassen}) {
    MarkAll(*Classes);
  }
  for (const auto* Teachers : {&AnEntry.FLehrer, &AnEntry.FNeueLehrer, &AnEntry.FFehlendeLehrer}) {
    MarkAll(*Teachers);
  }
  for (const auto* Subjects : {&AnEntry.FFaecher, &AnEntry.FNeueFaecher, &AnEntry.FFehlendeFaecher}) {
    MarkAll(*Subjects);
  }
  for (const auto* Rooms : {&AnEntry.FRaeume, &AnEntry.FNeueRaeume, &AnEntry.FFehlendeRaeume}) {
    MarkAll(*Rooms);
  }
  MarkAll(AnEntry.FSchueler);
}

}  // namespace uJSONExport
