#include "uPlandaten/Molekuele.h"

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

void TVELMolecule::Update() {
  Members.Clear();
  Resources.Clear();
  for (TVELTermin* Atom : Atoms) {
    Atom->FTag = Visited;
    for (const std::span<TQuillonDataObject* const> Objects : {Atom->Klassen(), Atom->FLehrer.Items()}) {
      for (TQuillonDataObject* Object : Objects) {
        Members.Merge(Object);
        Resources.Merge(Object);
      }
    }
    for (TVELRaum* Room : Atom->FRaeume) {
      Resources.Merge(Room);
    }
  }
}

void TVELMolecule::Update(TVELTermin& ATermin) {
  if (ATermin.FMolecule != nullptr) {
    Update(uPlandaten::BlockPartners(ATermin));
  }
}

void TVELMolecule::Update(std::span<TVELTermin* const> AGroup) {
  Atoms.Clear();
  for (TVELTermin* Member : AGroup) {
    if (Member->FMolecule != nullptr && Member->FMolecule != this) {
      Member->FMolecule->Atoms.Remove(Member);
    }
    Member->FTag = Visited;
    Member->FMolecule = this;
    Atoms.Add(Member);
  }
  Update();
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
      Appointment->FMolecule = nullptr;
    }
  }
  const uPlandaten::TBlockIndex Blocks(FPlan);
  for (const TVELVeranstaltung* Lesson : FPlan.FVeranstaltungen) {
    for (TVELTermin* Appointment : Lesson->FTermine) {
      if (Appointment->FTag != Visited) {
        FItems.push_back(std::make_unique<TVELMolecule>());
        FItems.back()->Update(Blocks.Partners(*Appointment));
      }
    }
  }
  FIsMade = true;
  FChangeCount = FPlan.ChangeCount();
}

void TVELMoleculeList::Update(TVELVeranstaltung& ALesson) {
  for (TVELTermin* Appointment : ALesson.FTermine) {
    Update(*Appointment);
  }
}

void TVELMoleculeList::Update(TVELTermin& ATermin) {
  // What is stale is made anew at the next look.
  if (!LockUpdate && FIsMade && FChangeCount == FPlan.ChangeCount() && ATermin.FMolecule != nullptr) {
    ATermin.FMolecule->Update(ATermin);
  }
}

void TVELMoleculeList::RemoveTermin(TVELTermin& ATermin) {
  if (ATermin.FMolecule != nullptr) {
    ATermin.FMolecule->Atoms.Remove(&ATermin);
    ATermin.FMolecule->Update();
    ATermin.FMolecule = nullptr;
  }
}
