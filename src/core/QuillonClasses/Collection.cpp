#include "QuillonClasses/Collection.h"

#include <algorithm>

#include "QuillonClasses/ArrayList.h"
#include "QuillonClasses/Arrays.h"
#include "QuillonClasses/Lines.h"
#include "QuillonMaps.h"
#include "QuillonValues.h"

namespace QuillonClasses {

bool AreEqual(const TQuillonPersistent* A, const TQuillonPersistent* B) {
  return A == nullptr || B == nullptr ? A == B : A->Equals(*B);
}

std::int32_t ReadCount(TQuillonReader& AReader) {
  const std::int32_t Count = AReader.ReadLongInt();
  if (Count < 0) {
    throw EQuillonReaderError();
  }
  return Count;
}

void CheckIndex(std::int32_t AnIndex, std::size_t ACount) {
  if (AnIndex < 0 || static_cast<std::size_t>(AnIndex) >= ACount) {
    throw EQuillonCollectionError("Listenindex überschreitet das Maximum (" + std::to_string(AnIndex) + ")");
  }
}

void RegisterClasses() {
  QuillonValues::RegisterClasses();
  auto& Registry = TQuillonClassRegistry::Instance();
  for (const auto* Class :
       {&TQuillonArrayList::Class(), &TQuillonStack::Class(), &TQuillonQueue::Class(), &TQuillonHashMap::Class(),
        &TQuillonHashSet::Class(), &TQuillonPropertyList::Class(), &TQuillonIntegerArray::Class(),
        &TQuillonMatrix::Class(), &TQuillonLongWordMatrix::Class()}) {
    Registry.AddClass(*Class);
  }
}

}  // namespace QuillonClasses

void TQuillonAbstractCollection::WriteProperties(TQuillonObjectWriter& AWriter) const {
  TQuillonPersistent::WriteProperties(AWriter);
  QuillonClasses::WriteItems(AWriter, Items());
}

void TQuillonAbstractCollection::ReadProperties(TQuillonObjectReader& AReader) {
  TQuillonPersistent::ReadProperties(AReader);
  Clear();
  QuillonClasses::ReadItems(AReader, [this](TQuillonItem AnItem) { Add(std::move(AnItem)); });
}

void TQuillonAbstractCollection::AddAll(const TQuillonAbstractCollection& ACollection) {
  for (TQuillonItem& Item : ACollection.Items()) {
    Add(std::move(Item));
  }
}

void TQuillonAbstractCollection::MoveAll(TQuillonAbstractCollection& ACollection) {
  if (&ACollection != this) {
    AddAll(ACollection);
    ACollection.Clear();
  }
}

void TQuillonAbstractCollection::RemoveAll(const TQuillonAbstractCollection& ACollection) {
  for (const TQuillonItem& Item : Items()) {
    if (ACollection.Contains(Item.get())) {
      Remove(Item.get());
    }
  }
}

void TQuillonAbstractCollection::RetainAll(const TQuillonAbstractCollection& ACollection) {
  for (const TQuillonItem& Item : Items()) {
    if (!ACollection.Contains(Item.get())) {
      Remove(Item.get());
    }
  }
}

bool TQuillonAbstractCollection::ContainsAll(const TQuillonAbstractCollection& ACollection) const {
  return std::ranges::all_of(ACollection.Items(),
                             [this](const TQuillonItem& AnItem) { return Contains(AnItem.get()); });
}
