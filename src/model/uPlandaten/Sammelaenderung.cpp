#include "uPlandaten/Sammelaenderung.h"

#include <algorithm>
#include <cassert>
#include <unordered_set>

#include "uPlandaten/Anrechnungen.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Ordnungen.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Veranstaltungen.h"

namespace {

/// Sorts a list, items that are alike in the order of AnOrder, which has all of them; null places come last.
template <class TCompare>
void SortStably(TQuillonDataList& AList, const std::vector<TQuillonDataObject*>& AnOrder, const TCompare& ACompare) {
  const auto IsLess = [&ACompare](const TQuillonDataObject* A, const TQuillonDataObject* B) {
    return A != nullptr && (B == nullptr || ACompare(*A, *B) < 0);
  };
  if (std::ranges::is_sorted(AList.Items(), IsLess)) {
    return;
  }
  std::vector<TQuillonDataObject*> Wanted = AnOrder;
  std::ranges::stable_sort(Wanted, IsLess);
  std::unordered_map<const TQuillonDataObject*, int> Places;
  for (const TQuillonDataObject* Item : Wanted) {
    Places.emplace(Item, static_cast<int>(Places.size()));
  }
  AList.SortBy([&Places](const TQuillonDataObject& A, const TQuillonDataObject& B) {
    return Places.find(&A)->second - Places.find(&B)->second;
  });
}

std::vector<TQuillonDataObject*> ItemsOf(const TQuillonDataList& AList) {
  return {AList.Items().begin(), AList.Items().end()};
}

/// Adds the items; those of the list are replaced where AHasLeavers tells that some are no longer wanted.
template <class TList, class TItem>
void Enter(TList& AList, const std::vector<TItem*>& AnItems, bool AHasLeavers) {
  auto Next = AnItems.begin();
  if (AHasLeavers) {
    AList.Clear();
  } else {
    Next += AList.Count();
  }
  for (; Next != AnItems.end(); ++Next) {
    AList.Add(*Next);
  }
}

}  // namespace

TVELSammelaenderung::TVELSammelaenderung(TVELPlan& APlan) : FPlan(APlan) {
  assert(FPlan.FSammelaenderung == nullptr);
  FPlan.FSammelaenderung = this;
}

TVELSammelaenderung::~TVELSammelaenderung() { FPlan.FSammelaenderung = nullptr; }

TVELSammelaenderung::TMembers& TVELSammelaenderung::MembersOf(TVELKlasse& AClass) {
  const auto [Found, IsNew] = FMembers.try_emplace(&AClass);
  TMembers& Members = Found->second;
  if (IsNew) {
    FClasses.push_back(&AClass);
    for (TVELSchueler* Student : AClass.FSchueler) {
      Members.Places.emplace(Student, Members.Items.size());
      Members.Items.push_back(Student);
    }
  }
  return Members;
}

void TVELSammelaenderung::Move(TVELSchueler& AStudent, TVELKlasse& AClass) {
  if (AStudent.FKlasse == &AClass) {
    return;
  }
  if (AStudent.FKlasse != nullptr) {
    TMembers& Former = MembersOf(*AStudent.FKlasse);
    if (const auto Place = Former.Places.find(&AStudent); Place != Former.Places.end()) {
      Former.Items[Place->second] = nullptr;
      Former.HasLeavers = true;
      Former.Places.erase(Place);
    }
  }
  AStudent.Set(AStudent.FKlasse, &AClass);
  TMembers& Members = MembersOf(AClass);
  if (Members.Places.emplace(&AStudent, Members.Items.size()).second) {
    Members.Items.push_back(&AStudent);
  }
}

void TVELSammelaenderung::Note(TVELPlanobjekt& AnObject, TVELVeranstaltung& ALesson, bool AnIsUsed) {
  const auto [Found, IsNew] = FUses.try_emplace(&AnObject);
  if (IsNew) {
    FObjects.push_back(&AnObject);
  }
  Found->second.push_back({.Lesson = &ALesson, .IsUsed = AnIsUsed});
}

void TVELSammelaenderung::EnterMembers() {
  for (TVELKlasse* Class : FClasses) {
    TMembers& Members = FMembers[Class];
    std::erase(Members.Items, nullptr);
    Enter(Class->FSchueler, Members.Items, Members.HasLeavers);
  }
  FClasses.clear();
  FMembers.clear();
}

void TVELSammelaenderung::EnterUses(TVELPlanobjekt& AnObject, const std::vector<TUse>& AUses) {
  std::unordered_map<const TVELVeranstaltung*, bool> IsUsed;
  for (const TUse& Use : AUses) {
    IsUsed[Use.Lesson] = Use.IsUsed;
  }
  std::vector<TVELVeranstaltung*> Items;
  std::unordered_set<const TVELVeranstaltung*> Held;
  for (TVELVeranstaltung* Lesson : AnObject.FVeranstaltungen) {
    const auto Told = IsUsed.find(Lesson);
    if (Told == IsUsed.end() || Told->second) {
      Items.push_back(Lesson);
      Held.insert(Lesson);
    }
  }
  const bool HasLeavers = Items.size() < AnObject.FVeranstaltungen.Items().size();
  for (const TUse& Use : AUses) {
    if (IsUsed[Use.Lesson] && Held.insert(Use.Lesson).second) {
      Items.push_back(Use.Lesson);
    }
  }
  Enter(AnObject.FVeranstaltungen, Items, HasLeavers);
}

void TVELSammelaenderung::EnterLessons() {
  for (TVELVeranstaltung* Lesson : FNewLessons) {
    FPlan.FVeranstaltungen.Append(Lesson);
  }
  if (!FNewLessons.empty()) {
    FPlan.FVeranstaltungen.Change();
  }
  for (TVELPlanobjekt* Object : FObjects) {
    EnterUses(*Object, FUses[Object]);
  }
  FObjects.clear();
  FUses.clear();
}

void TVELSammelaenderung::SortLists() {
  const std::vector<TVELVeranstaltungsliste*> Lists = FPlan.LessonLists();
  uPlandaten::MarkPlaces(Lists);
  for (TVELVeranstaltungsliste* List : Lists) {
    if (List != &FPlan.FVeranstaltungen) {
      SortStably(*List, ItemsOf(*List), uPlandaten::ComparePlaces);
    }
  }
  // A new lesson stands ahead of those that it is like, as one that is added by itself does.
  std::vector<TQuillonDataObject*> Lessons(FNewLessons.rbegin(), FNewLessons.rend());
  const auto Old = FPlan.FVeranstaltungen.Items().first(FPlan.FVeranstaltungen.Items().size() - FNewLessons.size());
  Lessons.insert(Lessons.end(), Old.begin(), Old.end());
  SortStably(FPlan.FVeranstaltungen, Lessons, uPlandaten::ComparePlaces);
  SortStably(FPlan.FFehlzeiten, ItemsOf(FPlan.FFehlzeiten), TVELFehlzeitenliste::CompareItems);
  SortStably(FPlan.FAnrechnungen, ItemsOf(FPlan.FAnrechnungen), TVELAnrechnungsliste::CompareItems);
}

void TVELSammelaenderung::Finish() {
  EnterMembers();
  EnterLessons();
  SortLists();
  FNewLessons.clear();
}
