#include "QuillonClasses/ArrayList.h"

#include <algorithm>

#include "QuillonClasses/QuickSort.h"

namespace {

TQuillonItem CopyOf(const TQuillonItem& AnItem) {
  if (AnItem == nullptr) {
    return nullptr;
  }
  TQuillonItem Copy = AnItem->PersistentClass().Create();
  Copy->Assign(*AnItem);
  return Copy;
}

}  // namespace

void TQuillonArrayList::Clear() {
  FItems.clear();
  FCapacity = {};
}

bool TQuillonArrayList::Add(TQuillonItem AnItem) {
  std::int32_t Index = 0;
  return Add(std::move(AnItem), Index);
}

bool TQuillonArrayList::Add(TQuillonItem AnItem, std::int32_t& AnIndex) {
  AnIndex = Count();
  if (FSorted && Find(AnItem.get(), AnIndex) && FDuplicates != dupAccept) {
    if (FDuplicates == dupError) {
      throw EQuillonCollectionError("Keine Duplikate in der Liste erlaubt.");
    }
    return false;
  }
  Insert(AnIndex, std::move(AnItem));
  return true;
}

TQuillonItem TQuillonArrayList::Remove(const TQuillonPersistent* AnItem) {
  const std::int32_t Index = IndexOf(AnItem);
  return Index < 0 ? nullptr : Delete(Index);
}

const TQuillonItem& TQuillonArrayList::GetItem(std::int32_t AnIndex) const {
  QuillonClasses::CheckIndex(AnIndex, FItems.size());
  return FItems[static_cast<std::size_t>(AnIndex)];
}

void TQuillonArrayList::SetItem(std::int32_t AnIndex, TQuillonItem AnItem) {
  QuillonClasses::CheckIndex(AnIndex, FItems.size());
  FItems[static_cast<std::size_t>(AnIndex)] = std::move(AnItem);
}

void TQuillonArrayList::Insert(std::int32_t AnIndex, TQuillonItem AnItem) {
  QuillonClasses::CheckIndex(AnIndex, FItems.size() + 1);
  FCapacity.GrowFor(FItems.size());
  FItems.insert(FItems.begin() + AnIndex, std::move(AnItem));
}

TQuillonItem TQuillonArrayList::Delete(std::int32_t AnIndex) {
  TQuillonItem Item = GetItem(AnIndex);
  FItems.erase(FItems.begin() + AnIndex);
  return Item;
}

void TQuillonArrayList::Exchange(std::int32_t A, std::int32_t B) {
  QuillonClasses::CheckIndex(A, FItems.size());
  QuillonClasses::CheckIndex(B, FItems.size());
  std::swap(FItems[static_cast<std::size_t>(A)], FItems[static_cast<std::size_t>(B)]);
}

void TQuillonArrayList::Move(std::int32_t ACurIndex, std::int32_t ANewIndex) {
  QuillonClasses::CheckIndex(ACurIndex, FItems.size());
  QuillonClasses::CheckIndex(ANewIndex, FItems.size());
  TQuillonItem Item = Delete(ACurIndex);
  if (ANewIndex == Count()) {
    Add(std::move(Item));
  } else {
    Insert(ANewIndex, std::move(Item));
  }
}

void TQuillonArrayList::Pack() { std::erase(FItems, nullptr); }

std::int32_t TQuillonArrayList::IndexOf(const TQuillonPersistent* AnItem) const {
  const auto Found = std::ranges::find_if(
      FItems, [&](const TQuillonItem& AnOwn) { return QuillonClasses::AreEqual(AnOwn.get(), AnItem); });
  return Found == FItems.end() ? -1 : static_cast<std::int32_t>(Found - FItems.begin());
}

std::int32_t TQuillonArrayList::LastIndexOf(const TQuillonPersistent* AnItem) const {
  std::int32_t Index = Count() - 1;
  while (Index >= 0 && !QuillonClasses::AreEqual(GetItem(Index).get(), AnItem)) {
    --Index;
  }
  return Index;
}

void TQuillonArrayList::Sort() {
  QuillonClasses::QuickSort(
      0, Count() - 1, [this](int A, int B) { return CompareItems(GetItem(A).get(), GetItem(B).get()); },
      [this](int A, int B) { Exchange(A, B); });
}

void TQuillonArrayList::SetSorted(bool AnIsSorted) {
  if (AnIsSorted && !FSorted) {
    Sort();
  }
  FSorted = AnIsSorted;
}

void TQuillonArrayList::Assign(const TQuillonObject& AnObject) {
  const auto* const Other = dynamic_cast<const TQuillonArrayList*>(&AnObject);
  if (Other == nullptr) {
    TQuillonObject::Assign(AnObject);
    return;
  }
  std::vector<TQuillonItem> Copies(Other->FItems.size());
  std::ranges::transform(Other->FItems, Copies.begin(), CopyOf);
  Clear();
  for (TQuillonItem& Copy : Copies) {
    Add(std::move(Copy));
  }
}

int TQuillonArrayList::CompareItems(const TQuillonPersistent* A, const TQuillonPersistent* B) const {
  if (A == nullptr || B == nullptr) {
    return static_cast<int>(A != nullptr) - static_cast<int>(B != nullptr);
  }
  return FOnCompare ? FOnCompare(*A, *B) : A->Compare(*B);
}

/// @param AnIndex the place of the item. @return whether an equal one has been met; without duplicates its place counts
bool TQuillonArrayList::Find(const TQuillonPersistent* AnItem, std::int32_t& AnIndex) const {
  bool IsFound = false;
  std::int32_t Low = 0;
  std::int32_t High = Count() - 1;
  while (Low <= High) {
    const std::int32_t Middle = Low + (High - Low) / 2;
    const int Order = CompareItems(GetItem(Middle).get(), AnItem);
    if (Order < 0) {
      Low = Middle + 1;
      continue;
    }
    High = Middle - 1;
    if (Order == 0) {
      IsFound = true;
      Low = FDuplicates == dupAccept ? Low : Middle;
    }
  }
  AnIndex = Low;
  return IsFound;
}
