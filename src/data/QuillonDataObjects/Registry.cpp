#include "QuillonDataObjects/Registry.h"

#include <algorithm>
#include <string>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/DataList.h"
#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonDataObjects/Storage.h"
#include "QuillonText.h"

TQuillonDataClassRegistry& TQuillonDataClassRegistry::Instance() {
  static TQuillonDataClassRegistry Registry;
  return Registry;
}

void TQuillonDataClassRegistry::AddClass(const TQuillonDataClass& AClass) {
  if (!ContainsClass(AClass)) {
    FClasses[AClass.Tag()].push_back(&AClass);
  }
}

void TQuillonDataClassRegistry::RemoveClass(const TQuillonDataClass& AClass) {
  const auto Found = FClasses.find(AClass.Tag());
  if (Found == FClasses.end()) {
    return;
  }
  std::erase(Found->second, &AClass);
  if (Found->second.empty()) {
    FClasses.erase(Found);
  }
}

const TQuillonDataClass* TQuillonDataClassRegistry::GetClass(std::string_view AClassName) const {
  const auto Found = FClasses.find(AClassName);
  return Found == FClasses.end() ? nullptr : Found->second.front();
}

void TQuillonDataClassRegistry::AddListClass(const TQuillonDataClass& AClass, TClassOf AnItemClass) {
  FListClasses.try_emplace(&AClass, AnItemClass);
}

const TQuillonDataClass* TQuillonDataClassRegistry::ItemClassOf(const TQuillonDataClass& AListClass) const {
  const auto Found = FListClasses.find(&AListClass);
  return Found == FListClasses.end() ? nullptr : &Found->second();
}

bool TQuillonDataClassRegistry::ContainsClass(const TQuillonDataClass& AClass) const {
  const auto Found = FClasses.find(AClass.Tag());
  return Found != FClasses.end() &&
         std::find(Found->second.begin(), Found->second.end(), &AClass) != Found->second.end();
}

const TQuillonDataClass* TQuillonDataClassRegistry::FindClass(std::string_view ATag,
                                                              const TQuillonDataClass& ABase) const {
  if (ATag.empty()) {
    throw EQuillonDataObjectReaderError("Kein Klassenname gefunden.");
  }
  const auto Found = FClasses.find(ATag);
  if (Found == FClasses.end()) {
    throw EQuillonDataObjectReaderError("Klasse " + QuillonText::Quoted(ATag) + " wurde nicht registriert.");
  }
  const auto Class = std::ranges::find_if(Found->second, [&](const TQuillonDataClass* AClass) {
    return AClass->DescendsFrom(ABase) && !AClass->IsAbstract();
  });
  return Class == Found->second.end() ? nullptr : *Class;
}

std::vector<const TQuillonDataClass*> TQuillonDataClassRegistry::Classes() const {
  std::vector<const TQuillonDataClass*> All;
  for (const auto& [Tag, Classes] : FClasses) {
    All.insert(All.end(), Classes.begin(), Classes.end());
  }
  return All;
}

namespace {

constexpr std::size_t InitialSlots = 64;

}  // namespace

TQuillonDataObjectRegistry::TQuillonDataObjectRegistry(TQuillonDataStorage& AStorage)
    : FSlots(InitialSlots), FStorage(AStorage) {}

void TQuillonDataObjectRegistry::Put(std::vector<TSlot>& ASlots, const TSlot& ASlot) const {
  const std::size_t Mask = ASlots.size() - 1;
  std::size_t Place = FHash(ASlot.ID) & Mask;
  while (ASlots[Place].Object != nullptr) {
    Place = (Place + 1) & Mask;
  }
  ASlots[Place] = ASlot;
}

void TQuillonDataObjectRegistry::Grow() {
  std::vector<TSlot> Slots(FSlots.size() * 2);
  for (const TSlot& Slot : FSlots) {
    if (Slot.Object != nullptr) {
      Put(Slots, Slot);
    }
  }
  FSlots = std::move(Slots);
}

void TQuillonDataObjectRegistry::AddObject(TQuillonDataAbstractObject& AnObject) {
  if (AnObject.FRegistered) {
    return;
  }
  const TQuillonDataClass* const Class = &AnObject.DataClass();
  const auto IsOther = [&](const TSlot& ASlot) { return ASlot.ID == AnObject.FID && ASlot.Class == Class; };
  if (FindSlot(AnObject.FID, IsOther) != nullptr) {
    FDoubles.insert(&AnObject);
    AnObject.FRegistered = true;
    return;
  }
  if (FCount >= FSlots.size() / 4 * 3) {
    Grow();
  }
  Put(FSlots, TSlot{.ID = AnObject.FID, .Class = Class, .Object = &AnObject});
  AnObject.FRegistered = true;
  ++FCount;
}

void TQuillonDataObjectRegistry::RemoveObject(TQuillonDataAbstractObject& AnObject) {
  if (!AnObject.FRegistered) {
    return;
  }
  AnObject.FRegistered = false;
  if (!FDoubles.empty() && FDoubles.erase(&AnObject) > 0) {
    return;
  }
  const std::size_t Mask = FSlots.size() - 1;
  std::size_t Hole = FHash(AnObject.FID) & Mask;
  while (FSlots[Hole].Object != &AnObject) {
    Hole = (Hole + 1) & Mask;
  }
  // Those behind the hole move up, unless they stand at or behind their own place already.
  for (std::size_t Next = (Hole + 1) & Mask; FSlots[Next].Object != nullptr; Next = (Next + 1) & Mask) {
    const std::size_t Home = FHash(FSlots[Next].ID) & Mask;
    if (((Next - Home) & Mask) >= ((Next - Hole) & Mask)) {
      FSlots[Hole] = FSlots[Next];
      Hole = Next;
    }
  }
  FSlots[Hole] = TSlot{};
  --FCount;
}

/// The first slot on the way of the identity that the predicate accepts; null if there is none.
template <class TPredicate>
const TQuillonDataObjectRegistry::TSlot* TQuillonDataObjectRegistry::FindSlot(const TGUID& AnID,
                                                                              const TPredicate& APredicate) const {
  const std::size_t Mask = FSlots.size() - 1;
  for (std::size_t Place = FHash(AnID) & Mask; FSlots[Place].Object != nullptr; Place = (Place + 1) & Mask) {
    if (APredicate(FSlots[Place])) {
      return &FSlots[Place];
    }
  }
  return nullptr;
}

bool TQuillonDataObjectRegistry::ContainsObject(const TQuillonDataAbstractObject& AnObject) const {
  return FindSlot(AnObject.FID, [&](const TSlot& ASlot) { return ASlot.Object == &AnObject; }) != nullptr;
}

TQuillonDataAbstractObject* TQuillonDataObjectRegistry::GetObject(const TGUID& AnID,
                                                                  const TQuillonDataClass& AClass) const {
  const TSlot* const Slot =
      FindSlot(AnID, [&](const TSlot& ASlot) { return ASlot.ID == AnID && ASlot.Class->DescendsFrom(AClass); });
  return Slot != nullptr ? Slot->Object : nullptr;
}

void TQuillonDataObjectRegistry::AddList(TQuillonDataList& AList) {
  if (FKnowsLists) {
    const std::scoped_lock Lock(FListsMutex);
    AList.FRegistered = FLists.try_emplace(AList.FID, &AList).second || AList.FRegistered;
  }
}

void TQuillonDataObjectRegistry::RemoveList(TQuillonDataList& AList) {
  const std::scoped_lock Lock(FListsMutex);
  FLists.erase(AList.FID);
  AList.FRegistered = false;
}

void TQuillonDataObjectRegistry::FindLists() {
  FKnowsLists = true;
  const auto AddListsOf = [this](TQuillonDataAbstractObject& AnObject) {
    for (const TQuillonDataClass::TListField Field : AnObject.DataClass().Lists()) {
      if (TQuillonDataList& List = Field(AnObject); List.FHasID) {
        AddList(List);
      }
    }
  };
  AddListsOf(FStorage);
  for (TQuillonDataAbstractObject* Object : Objects()) {
    AddListsOf(*Object);
  }
}

TQuillonDataList* TQuillonDataObjectRegistry::GetList(const TGUID& AnID) {
  if (!FKnowsLists) {
    FindLists();
  }
  const std::scoped_lock Lock(FListsMutex);
  const auto Found = FLists.find(AnID);
  return Found == FLists.end() ? nullptr : Found->second;
}

std::vector<TQuillonDataAbstractObject*> TQuillonDataObjectRegistry::Objects() const {
  std::vector<TQuillonDataAbstractObject*> Found(FDoubles.begin(), FDoubles.end());
  Found.reserve(FDoubles.size() + FCount);
  for (const TSlot& Slot : FSlots) {
    if (Slot.Object != nullptr) {
      Found.push_back(Slot.Object);
    }
  }
  return Found;
}

std::vector<TQuillonDataObject*> TQuillonDataObjectRegistry::Unheld() const {
  std::vector<TQuillonDataObject*> Found;
  for (TQuillonDataAbstractObject* Object : Objects()) {
    if (!Object->FIsHeld && Object->DataClass().DescendsFrom(TQuillonDataObject::Class())) {
      Found.push_back(static_cast<TQuillonDataObject*>(Object));
    }
  }
  return Found;
}

void TQuillonDataObjectRegistry::ForgetNames() const {
  for (TQuillonDataAbstractObject* Object : Objects()) {
    Object->FIsNamed = false;
  }
}

void TQuillonDataObjectRegistry::Clear() {
  for (const auto& [ID, List] : FLists) {
    List->FRegistered = false;
  }
  FLists.clear();
  FKnowsLists = false;
  for (TQuillonDataAbstractObject* Object : Objects()) {
    Object->FRegistered = false;
  }
  FDoubles.clear();
  FSlots.assign(InitialSlots, TSlot{});
  FCount = 0;
}
