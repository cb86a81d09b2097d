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
  if (std::ranges::is_sorted(AnOrder, IsLess) && std::ranges::equal(AnOrder, AList.Items())) {
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
    auto Next = Members.Items.begin() + Class->FSchueler.Count();
    if (Members.HasLeavers) {
      std::erase(Members.Items, nullptr);
      Class->FSchueler.Clear();
      Next = Members.Items.begin();
    }
    for (; Next != Members.Items.end(); ++Next) {
      Class->FSchueler.Add(*Next);
    }
  }
  FClasses.clear();
  FMembers.clear();
}

void TVELSammelaenderung::EnterUses(TVELPlanobjekt& AnObject, const std::vector<TUse>& AUses) {
  TVELVeranstaltungsliste& Lessons = AnObject.FVeranstaltungen;
  std::unordered_map<const TVELVeranstaltung*, bool> IsUsed;
  for (const TUse& Use : AUses) {
    IsUsed[Use.Lesson] = Use.IsUsed;
  }
  std::vector<TVELVeranstaltung*> Kept;
  std::unordered_set<const TVELVeranstaltung*> Held;
  for (TVELVeranstaltung* Lesson : Lessons) {
    const auto Told = IsUsed.find(Lesson);
    if (Told == IsUsed.end() || Told->second) {
      Kept.push_back(Lesson);
      Held.insert(Lesson);
    }
  }
  std::vector<TVELVeranstaltung*> Added;
  for (const TUse& Use : AUses) {
    if (IsUsed[Use.Lesson] && Held.insert(Use.Lesson).second) {
      Added.push_back(Use.Lesson);
    }
  }
  if (Added.empty() && Kept.size() == Lessons.Items().size()) {
    return;
  }
  Lessons.Clear();
  std::for_each(Added.rbegin(), Added.rend(), [&](TVELVeranstaltung* ALesson) { Lessons.Append(ALesson); });
  std::ranges::for_each(Kept, [&](TVELVeranstaltung* ALesson) { Lessons.Append(ALesson); });
  Lessons.Change();
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

/// A new lesson stands ahead of those that it is like, as one that is added by itself does.
void TVELSammelaenderung::SortLists() {
  const std::vector<TVELVeranstaltungsliste*> Lists = FPlan.LessonLists();
  const uPlandaten::TLessonPlaces Places({Lists.begin(), Lists.end()});
  const auto ComparePlaces = [&Places](const TQuillonDataObject& A, const TQuillonDataObject& B) {
    return Places.Of(A) - Places.Of(B);
  };
  for (TVELVeranstaltungsliste* List : Lists) {
    if (List != &FPlan.FVeranstaltungen) {
      SortStably(*List, ItemsOf(*List), ComparePlaces);
    }
  }
  std::vector<TQuillonDataObject*> Lessons(FNewLessons.rbegin(), FNewLessons.rend());
  const auto Old = FPlan.FVeranstaltungen.Items().first(FPlan.FVeranstaltungen.Items().size() - FNewLessons.size());
  Lessons.insert(Lessons.end(), Old.begin(), Old.end());
  SortStably(FPlan.FVeranstaltungen, Lessons, ComparePlaces);
  SortStably(FPlan.FFehlzeiten, ItemsOf(FPlan.FFehlzeiten), TVELFehlzeitenliste::CompareItems);
  SortStably(FPlan.FAnrechnungen, ItemsOf(FPlan.FAnrechnungen), TVELAnrechnungsliste::CompareItems);
}

void TVELSammelaenderung::Finish() {
  EnterMembers();
  EnterLessons();
  SortLists();
  FNewLessons.clear();
  AlignLists();
}

/// A list that is read has the stamps of its object: with those now, the file of the next load and save is the same.
void TVELSammelaenderung::AlignLists() {
  std::vector<TQuillonDataAbstractObject*> Objects = FPlan.Registry().Objects();
  Objects.push_back(&FPlan);
  for (TQuillonDataAbstractObject* Object : Objects) {
    for (const TQuillonDataClass::TListField List : Object->DataClass().Lists()) {
      List(*Object).TakeStamps(*Object);
    }
  }
}
