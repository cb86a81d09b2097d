#include "QuillonDataObjects/Registry.h"

#include <algorithm>
#include <string>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/ReaderWriter.h"
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

bool TQuillonDataClassRegistry::ContainsClass(const TQuillonDataClass& AClass) const {
  const auto Found = FClasses.find(AClass.Tag());
  return Found != FClasses.end() &&
         std::find(Found->second.begin(), Found->second.end(), &AClass) != Found->second.end();
}

const TQuillonDataClass& TQuillonDataClassRegistry::GetClass(std::string_view ATag,
                                                             const TQuillonDataClass& ABase) const {
  if (ATag.empty()) {
    throw EQuillonDataObjectReaderError("Kein Klassenname gefunden.");
  }
  const auto Found = FClasses.find(ATag);
  if (Found == FClasses.end()) {
    throw EQuillonDataObjectReaderError("Klasse " + QuillonText::Quoted(ATag) + " wurde nicht registriert.");
  }
  for (const TQuillonDataClass* Class : Found->second) {
    if (Class->DescendsFrom(ABase)) {
      return *Class;
    }
  }
  throw EQuillonDataObjectReaderError("Klasse " + QuillonText::Quoted(ATag) + " ist hier nicht erlaubt.");
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

TQuillonDataObjectRegistry::TQuillonDataObjectRegistry() : FSlots(InitialSlots) {}

void TQuillonDataObjectRegistry::Put(std::vector<TSlot>& ASlots, const TSlot& ASlot) {
  const std::size_t Mask = ASlots.size() - 1;
  std::size_t Place = ASlot.Hash & Mask;
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
  if (FCount >= FSlots.size() / 4 * 3) {
    Grow();
  }
  Put(FSlots, TSlot{FHash(AnObject.ID()), &AnObject});
  AnObject.FRegistered = true;
  ++FCount;
}

void TQuillonDataObjectRegistry::RemoveObject(TQuillonDataAbstractObject& AnObject) {
  if (!AnObject.FRegistered) {
    return;
  }
  const std::size_t Mask = FSlots.size() - 1;
  std::size_t Hole = FHash(AnObject.FID) & Mask;
  while (FSlots[Hole].Object != &AnObject) {
    Hole = (Hole + 1) & Mask;
  }
  // Those behind the hole move up, unless they stand at or behind their own place already.
  for (std::size_t Next = (Hole + 1) & Mask; FSlots[Next].Object != nullptr; Next = (Next + 1) & Mask) {
    const std::size_t Home = FSlots[Next].Hash & Mask;
    if (((Next - Home) & Mask) >= ((Next - Hole) & Mask)) {
      FSlots[Hole] = FSlots[Next];
      Hole = Next;
    }
  }
  FSlots[Hole] = TSlot{};
  AnObject.FRegistered = false;
  --FCount;
}

TQuillonDataAbstractObject* TQuillonDataObjectRegistry::GetObject(const TGUID& AnID,
                                                                  const TQuillonDataClass& AClass) const {
  const std::uint64_t Hash = FHash(AnID);
  const std::size_t Mask = FSlots.size() - 1;
  for (std::size_t Place = Hash & Mask; FSlots[Place].Object != nullptr; Place = (Place + 1) & Mask) {
    TQuillonDataAbstractObject* const Object = FSlots[Place].Object;
    if (FSlots[Place].Hash == Hash && Object->FID == AnID && Object->DataClass().DescendsFrom(AClass)) {
      return Object;
    }
  }
  return nullptr;
}

std::vector<TQuillonDataAbstractObject*> TQuillonDataObjectRegistry::Objects() const {
  std::vector<TQuillonDataAbstractObject*> Found;
  Found.reserve(FCount);
  for (const TSlot& Slot : FSlots) {
    if (Slot.Object != nullptr) {
      Found.push_back(Slot.Object);
    }
  }
  return Found;
}

std::vector<TQuillonDataObject*> TQuillonDataObjectRegistry::Unheld() const {
  std::vector<TQuillonDataObject*> Found;
  for (const TSlot& Slot : FSlots) {
    if (Slot.Object != nullptr && Slot.Object->FHolders == 0 &&
        Slot.Object->DataClass().DescendsFrom(TQuillonDataObject::Class())) {
      Found.push_back(static_cast<TQuillonDataObject*>(Slot.Object));
    }
  }
  return Found;
}

void TQuillonDataObjectRegistry::Clear() {
  for (const TSlot& Slot : FSlots) {
    if (Slot.Object != nullptr) {
      Slot.Object->FRegistered = false;
    }
  }
  FSlots.assign(InitialSlots, TSlot{});
  FCount = 0;
}
