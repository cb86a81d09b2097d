#include "uPlandaten/Molekuele.h"

#include <unordered_set>
#include <utility>

#include "uPlandaten/Blockketten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

namespace {

/// Values of an appointment's FTag while the molecules are made.
constexpr std::int32_t Unvisited = 0;
constexpr std::int32_t Visited = -1;

}  // namespace

TVELMolecule::~TVELMolecule() { LetGo(); }

void TVELMolecule::LetGo() {
  for (TVELTermin* Atom : Atoms) {
    Atom->FMolecule = nullptr;
  }
  Atoms.Clear();
}

void TVELMolecule::Update() {
  for (TVELTermin* Atom : Atoms) {
    Atom->FTag = Visited;
  }
  FIsStale = true;
}

const TVELPlanobjektliste& TVELMolecule::Members() {
  Refresh();
  return FMembers;
}

const TVELPlanobjektliste& TVELMolecule::Resources() {
  Refresh();
  return FResources;
}

void TVELMolecule::Refresh() {
  if (!std::exchange(FIsStale, false)) {
    return;
  }
  FMembers.Clear();
  FResources.Clear();
  std::unordered_set<const TQuillonDataObject*> Seen;
  for (const TVELTermin* Atom : Atoms) {
    for (const std::span<TQuillonDataObject* const> Objects : {Atom->Klassen(), Atom->FLehrer.Items()}) {
      for (TQuillonDataObject* Object : Objects) {
        if (Seen.insert(Object).second) {
          FMembers.Add(Object);
          FResources.Add(Object);
        }
      }
    }
    for (TVELRaum* Room : Atom->FRaeume) {
      if (Seen.insert(Room).second) {
        FResources.Add(Room);
      }
    }
  }
}

void TVELMolecule::Update(TVELTermin& ATermin) {
  if (ATermin.FMolecule != nullptr) {
    Update(uPlandaten::BlockPartners(ATermin));
  }
}

void TVELMolecule::Update(std::span<TVELTermin* const> AGroup) {
  LetGo();
  for (TVELTermin* Member : AGroup) {
    if (Member->FMolecule == this) {
      continue;
    }
    if (Member->FMolecule != nullptr) {
      Member->FMolecule->Remove(*Member);
    }
    Member->FMolecule = this;
    Member->FMoleculePlace = Atoms.Count();
    Atoms.Add(Member);
  }
  Update();
}

void TVELMolecule::Remove(TVELTermin& ATermin) {
  // The last one takes its place: a block that is freed is no walk for each of its appointments.
  TVELTermin* const Last = Atoms.GetItem(Atoms.Count() - 1);
  Atoms.SetItem(ATermin.FMoleculePlace, Last);
  Last->FMoleculePlace = ATermin.FMoleculePlace;
  Atoms.Delete(Atoms.Count() - 1);
  ATermin.FMolecule = nullptr;
  FIsStale = true;
}

void TVELMolecule::RemoveObject(const TVELPlanobjekt& AnObject) {
  FMembers.RemoveObject(&AnObject);
  FResources.RemoveObject(&AnObject);
}

const std::vector<std::unique_ptr<TVELMolecule>>& TVELMoleculeList::Items() {
  Refresh();
  return FItems;
}

TVELMolecule* TVELMoleculeList::Find(TVELTermin& ATermin) {
  Refresh();
  return ATermin.FMolecule;
}

void TVELMoleculeList::Refresh() {
  if (!LockUpdate && (!FIsMade || FChangeCount != FPlan.ChangeCount())) {
    Update();
  }
}

void TVELMoleculeList::Clear() {
  FItems.clear();
  FIsMade = false;
}

void TVELMoleculeList::Update() {
  FItems.clear();
  for (const TVELVeranstaltung* Lesson : FPlan.FVeranstaltungen) {
    for (TVELTermin* Appointment : Lesson->FTermine) {
      Appointment->FTag = Unvisited;
    }
  }
  const uPlandaten::TBlockIndex Blocks(FPlan);
  for (const TVELVeranstaltung* Lesson : FPlan.FVeranstaltungen) {
    for (TVELTermin* Appointment : Lesson->FTermine) {
      if (Appointment->FTag != Visited) {
        std::vector<TVELTermin*> Group = Blocks.Partners(*Appointment);
        std::erase_if(Group, [](const TVELTermin* AMember) { return AMember->FTag == Visited; });
        FItems.push_back(std::make_unique<TVELMolecule>());
        FItems.back()->Update(Group);
      }
    }
  }
  FIsMade = true;
  FChangeCount = FPlan.ChangeCount();
}

void TVELMoleculeList::Update(TVELVeranstaltung& ALesson) {
  if (ALesson.FBlockNext != nullptr || ALesson.FTermine.Count() == 1) {
    for (TVELTermin* Appointment : ALesson.FTermine) {
      Update(*Appointment);
    }
    return;
  }
  // Without ring each would be a walk over the plan.
  const uPlandaten::TBlockIndex Blocks(FPlan);
  for (TVELTermin* Appointment : ALesson.FTermine) {
    if (CanUpdate(*Appointment)) {
      Appointment->FMolecule->Update(Blocks.Partners(*Appointment));
    }
  }
}

/// What is stale is made anew at the next look.
bool TVELMoleculeList::CanUpdate(const TVELTermin& ATermin) const {
  return !LockUpdate && FIsMade && FChangeCount == FPlan.ChangeCount() && ATermin.FMolecule != nullptr;
}

void TVELMoleculeList::Update(TVELTermin& ATermin) {
  if (CanUpdate(ATermin)) {
    ATermin.FMolecule->Update(ATermin);
  }
}

void TVELMoleculeList::RemoveObject(const TVELPlanobjekt& AnObject) {
  for (const auto& Molecule : FItems) {
    Molecule->RemoveObject(AnObject);
  }
}

void TVELMoleculeList::RemoveTermin(TVELTermin& ATermin) {
  if (ATermin.FMolecule != nullptr) {
    ATermin.FMolecule->Remove(ATermin);
  }
}
