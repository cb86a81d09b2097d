#include "QuillonDataObjects/DataList.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cassert>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Storage.h"

namespace {

/// What lists sort by: a program has a few comparisons, and a byte in each list for the number of one.
std::array<std::atomic<TQuillonCompareItems>, 256> Comparisons;

}  // namespace

TQuillonDataList::TQuillonDataList(TQuillonDataAbstractObject* AnOwner, TItems AnItems, bool HasItemsAreIndependent)
    : FItemsAreIndependent(HasItemsAreIndependent), FIsItemOwner(AnItems == TItems::Owned) {
  FOwner = AnOwner;
}

TQuillonDataList::~TQuillonDataList() {
  // What a table row holds has gone with the object by now; a list of its own still has its items.
  if (!FItems.empty()) {
    FreeItems();
  }
  Unregister();
}

const TQuillonDataClass& TQuillonDataList::Class() {
  static const TQuillonDataClass Class =
      DescribeAbstractClass<TQuillonDataList, TQuillonDataAbstractObject>("TQuillonDataList");
  return Class;
}

const TQuillonDataClass& TQuillonDataList::ItemClass() const { return TQuillonDataObject::Class(); }

/// The one shape of every change of the items. What it brings with it, the list's own Change and what the hooks do,
/// belongs to the operation and is not recorded.
void TQuillonDataList::Perform(const TOperation& AnOperation) {
  TQuillonDataStorage* const Store = Storage();
  TQuillonDataChangeLog* const Log = Store != nullptr ? &Store->ChangeLog() : nullptr;
  const bool IsRecording = Log != nullptr && Log->IsRecording();
  const bool IsRecorded = IsRecording && IsPersisted();
  const int CountBefore = IsRecorded ? Log->Count() : 0;
  const std::int64_t VersionBefore = FVersion;
  if (IsRecorded) {
    Record(AnOperation, *Log);
  }
  const TQuillonDataChangeLogLock Lock(IsRecorded == IsRecording ? Log : nullptr);
  const std::size_t SizeBefore = FItems.size();
  bool HasBegun = false;
  try {
    Before(AnOperation);
    HasBegun = AnOperation.Kind == TOperationKind::Clearance;
    Apply(AnOperation);
    HasBegun = true;
    After(AnOperation);
    Change();
  } catch (...) {
    if (IsRecorded && (HasBegun || FItems.size() != SizeBefore)) {
      Log->Spoil();
    } else if (IsRecorded && Log->Count() > CountBefore) {
      // Refused by a hook: nothing has happened.
      Log->DropLast();
      FVersion = VersionBefore;
    }
    throw;
  }
}

void TQuillonDataList::Record(const TOperation& AnOperation, TQuillonDataChangeLog& ALog) {
  if (AnOperation.Kind == TOperationKind::Clearance) {
    ALog.RecordClearance(*this);
  } else if (AnOperation.Item == nullptr) {
    return;  // an empty place is no item
  } else if (AnOperation.Kind == TOperationKind::Insertion) {
    ALog.RecordInsertion(*this, AnOperation.Index, *AnOperation.Item);
  } else if (AnOperation.Kind == TOperationKind::Move) {
    ALog.RecordMove(*this, AnOperation.NewIndex, *AnOperation.Item);
  } else {
    ALog.RecordDeletion(*this, *AnOperation.Item);
  }
}

bool TQuillonDataList::IsPersisted() const {
  return FOwner != nullptr && std::ranges::any_of(FOwner->DataClass().Lists(),
                                                  [this](const auto AField) { return &AField(*FOwner) == this; });
}

void TQuillonDataList::Before(const TOperation& AnOperation) {
  switch (AnOperation.Kind) {
    case TOperationKind::Insertion:
      BeforeInsert(AnOperation.Index, AnOperation.Item);
      return;
    case TOperationKind::Deletion:
      BeforeDelete(AnOperation.Index);
      return;
    case TOperationKind::Extraction:
      BeforeExtract(AnOperation.Index);
      return;
    case TOperationKind::Clearance:
      BeforeClear();
      return;
    case TOperationKind::Move:
      BeforeMove(AnOperation.Index);
      return;
  }
}

void TQuillonDataList::Apply(const TOperation& AnOperation) {
  const auto At = [this](int AnIndex) { return FItems.begin() + AnIndex; };
  const bool HoldsItem = FIsItemOwner && AnOperation.Item != nullptr;
  switch (AnOperation.Kind) {
    case TOperationKind::Insertion:
      FItems.insert(At(AnOperation.NewIndex), AnOperation.Item);
      return;
    case TOperationKind::Deletion:
      FItems.erase(At(AnOperation.Index));
      if (HoldsItem) {
        TQuillonDataHolder::Release(*AnOperation.Item, *this);
      }
      return;
    case TOperationKind::Extraction:
      FItems.erase(At(AnOperation.Index));
      if (HoldsItem) {
        TQuillonDataHolder::Drop(*AnOperation.Item, *this);
      }
      return;
    case TOperationKind::Clearance:
      if (FIsItemOwner) {
        ReleaseReferences();
      }
      FreeItems();
      return;
    case TOperationKind::Move:
      if (AnOperation.Index < AnOperation.NewIndex) {
        std::rotate(At(AnOperation.Index), At(AnOperation.Index + 1), At(AnOperation.NewIndex + 1));
      } else {
        std::rotate(At(AnOperation.NewIndex), At(AnOperation.Index), At(AnOperation.Index + 1));
      }
      return;
  }
}

void TQuillonDataList::After(const TOperation& AnOperation) {
  switch (AnOperation.Kind) {
    case TOperationKind::Insertion:
      AfterInsert(AnOperation.NewIndex);
      return;
    case TOperationKind::Deletion:
      AfterDelete(AnOperation.Index);
      return;
    case TOperationKind::Extraction:
      AfterExtract(AnOperation.Index);
      return;
    case TOperationKind::Clearance:
      AfterClear();
      return;
    case TOperationKind::Move:
      AfterMove(AnOperation.NewIndex);
      return;
  }
}

int TQuillonDataList::CheckedIndex(int AnIndex, int ALimit) const {
  if (AnIndex < 0 || AnIndex >= ALimit) {
    throw EQuillonCollectionError("Listenindex überschreitet das Maximum (" + std::to_string(AnIndex) + ")");
  }
  return AnIndex;
}

TQuillonDataObject* TQuillonDataList::GetItem(int AnIndex) const {
  return FItems[static_cast<std::size_t>(CheckedIndex(AnIndex, Count()))];
}

void TQuillonDataList::SetItem(int AnIndex, TQuillonDataObject* AnItem) {
  TQuillonDataObject*& Place = FItems[static_cast<std::size_t>(CheckedIndex(AnIndex, Count()))];
  TQuillonDataObject* const Old = Place;
  if (FIsItemOwner && AnItem != nullptr) {
    TQuillonDataHolder::Hold(*AnItem, *this);
  }
  Place = AnItem;
  if (FIsItemOwner && Old != nullptr) {
    TQuillonDataHolder::Release(*Old, *this);
  }
}

void TQuillonDataList::InsertAt(int AWanted, int AnIndex, TQuillonDataObject* AnItem) {
  assert(AnItem->DataClass().DescendsFrom(ItemClass()));
  if (!FIsItemOwner) {
    Perform({.Kind = TOperationKind::Insertion, .Index = AWanted, .NewIndex = AnIndex, .Item = AnItem});
    return;
  }
  if (LiesWithin(*AnItem)) {
    throw EQuillonCollectionError(AnItem->GetDisplayName() + " kann sich nicht selbst enthalten.");
  }
  const int CountBefore = Count();
  TQuillonDataStorage* const Store = Storage();
  const int RecordsBefore = Store != nullptr ? Store->ChangeLog().Count() : 0;
  TQuillonDataAbstractObject* const Owner = AnItem->FOwner;
  TQuillonDataHolder::Hold(*AnItem, *this);
  try {
    Perform({.Kind = TOperationKind::Insertion, .Index = AWanted, .NewIndex = AnIndex, .Item = AnItem});
  } catch (...) {
    if (Count() == CountBefore) {
      TQuillonDataHolder::GiveBack(*AnItem, *this, Owner);
      while (Store != nullptr && Store->ChangeLog().Count() > RecordsBefore) {
        Store->ChangeLog().DropLast();
      }
    }
    throw;
  }
}

void TQuillonDataList::Add(TQuillonDataObject* AnItem) {
  if (AnItem != nullptr) {
    InsertAt(QuillonDataObjects::AnyPlace, FSorted ? FindPlace(*AnItem) : Count(), AnItem);
  }
}

void TQuillonDataList::Append(TQuillonDataObject* AnItem) {
  if (AnItem == nullptr) {
    return;
  }
  assert(AnItem->DataClass().DescendsFrom(ItemClass()));
  FItems.push_back(AnItem);
  if (FIsItemOwner) {
    try {
      TQuillonDataHolder::Hold(*AnItem, *this);
    } catch (...) {
      FItems.pop_back();
      throw;
    }
  }
}

void TQuillonDataList::Insert(int AnIndex, TQuillonDataObject* AnItem) {
  if (AnItem != nullptr && !ContainsIdentity(*AnItem)) {
    InsertAt(AnIndex, CheckedIndex(AnIndex, Count() + 1), AnItem);
  }
}

bool TQuillonDataList::AddAll(const TQuillonDataList& AnOther) {
  for (TQuillonDataObject* Item : AnOther.Copy()) {
    Add(Item);
  }
  return !AnOther.IsEmpty();
}

bool TQuillonDataList::InsertAll(int AnIndex, const TQuillonDataList& AnOther) {
  for (TQuillonDataObject* Item : AnOther.Copy()) {
    const int Before = Count();
    Insert(AnIndex, Item);
    AnIndex += Count() - Before;
  }
  return !AnOther.IsEmpty();
}

bool TQuillonDataList::Merge(TQuillonDataObject* AnItem) {
  if (AnItem == nullptr || Contains(AnItem)) {
    return false;
  }
  Add(AnItem);
  return true;
}

bool TQuillonDataList::Merge(const TQuillonDataList& AnOther) {
  bool Added = false;
  for (TQuillonDataObject* Item : AnOther.Copy()) {
    Added = Merge(Item) || Added;
  }
  return Added;
}

int TQuillonDataList::MergeEx(TQuillonDataList& AnOther) {
  int Moved = 0;
  for (TQuillonDataObject* Item : AnOther.RealItems()) {
    if (!Contains(Item)) {
      AnOther.Extract(Item);
      Add(Item);
      ++Moved;
    }
  }
  return Moved;
}

bool TQuillonDataList::Import(const TQuillonDataList& AnOther) {
  bool Created = false;
  for (const TQuillonDataObject* Item : AnOther.RealItems()) {
    TQuillonDataObject* Own = Find(Item->ID());
    if (Own == nullptr) {
      Own = Item->DataClass().Create(Storage(), Item->ID());
      Add(Own);
      Created = true;
    }
    Own->Assign(*Item);
  }
  return Created;
}

void TQuillonDataList::Assign(const TQuillonObject& AnObject) {
  const auto* Other = dynamic_cast<const TQuillonDataList*>(&AnObject);
  if (Other == nullptr) {
    TQuillonDataAbstractObject::Assign(AnObject);
    return;
  }
  if (Other == this) {
    return;
  }
  if (FIsItemOwner) {
    Clear();
    for (const TQuillonDataObject* Item : Other->RealItems()) {
      TQuillonDataObject* const Copy = Item->DataClass().Create(Storage(), QuillonGuid::New());
      Add(Copy);
      Copy->Assign(*Item);
    }
    return;
  }
  RetainAll(*Other);
  // A list without storage takes the items as they are: there is no counterpart of them.
  const bool HasCounterparts = HasStorage();
  for (TQuillonDataObject* Item : Other->RealItems()) {
    Merge(HasCounterparts ? static_cast<TQuillonDataObject*>(ResolveReference(nullptr, Item)) : Item);
  }
}

bool TQuillonDataList::Contains(const TQuillonDataObject* AnItem) const { return IndexOf(AnItem) >= 0; }

bool TQuillonDataList::ContainsIdentity(const TQuillonDataObject& AnItem) const {
  TQuillonDataStorage* const Store = FIsItemOwner ? Storage() : nullptr;
  const bool IsTheOne = Store != nullptr && Store->Registry().GetObject(AnItem.ID(), ItemClass()) == &AnItem;
  return IsTheOne ? TQuillonDataHolder::IsHeldBy(AnItem, *this) : Contains(&AnItem);
}

bool TQuillonDataList::Contains(const TGUID& AnID) const { return IndexOf(AnID) >= 0; }

bool TQuillonDataList::Holds(const TQuillonDataObject* AnItem) const {
  return std::find(FItems.begin(), FItems.end(), AnItem) != FItems.end();
}

bool TQuillonDataList::ContainsAll(const TQuillonDataList& AnOther) const {
  return std::all_of(AnOther.FItems.begin(), AnOther.FItems.end(),
                     [this](const TQuillonDataObject* AnItem) { return Contains(AnItem); });
}

TQuillonDataObject* TQuillonDataList::Find(const TGUID& AnID) const {
  const int Index = IndexOf(AnID);
  return Index < 0 ? nullptr : FItems[static_cast<std::size_t>(Index)];
}

int TQuillonDataList::IndexOf(const TQuillonDataObject* AnItem) const {
  return AnItem == nullptr ? -1 : IndexOf(AnItem->ID());
}

int TQuillonDataList::IndexOf(const TGUID& AnID) const {
  const auto Found = std::find_if(FItems.begin(), FItems.end(), [&](const TQuillonDataObject* AnItem) {
    return AnItem != nullptr && AnItem->ID() == AnID;
  });
  return Found == FItems.end() ? -1 : static_cast<int>(Found - FItems.begin());
}

void TQuillonDataList::Clear() { Perform({.Kind = TOperationKind::Clearance}); }

void TQuillonDataList::FreeItems() {
  // Taken out first: an item that is freed may look at the list that held it.
  TQuillonItems Items = std::move(FItems);
  if (!FIsItemOwner) {
    return;
  }
  for (auto Next = Items.begin(); Next != Items.end();) {
    TQuillonDataObject* const Item = *Next++;
    try {
      if (Item != nullptr) {
        TQuillonDataHolder::Release(*Item, *this);
      }
    } catch (...) {
      // The others are held still.
      Items.erase(Items.begin(), Next);
      FItems = std::move(Items);
      std::ranges::for_each(RealItems(), [](TQuillonDataObject* AnItem) { TQuillonDataHolder::Keep(*AnItem); });
      throw;
    }
  }
}

void TQuillonDataList::Delete(int AnIndex) {
  Perform({.Kind = TOperationKind::Deletion, .Index = AnIndex, .Item = GetItem(AnIndex)});
}

void TQuillonDataList::Delete(const TGUID& AnID) {
  if (const int Index = IndexOf(AnID); Index >= 0) {
    Delete(Index);
  }
}

void TQuillonDataList::Remove(const TQuillonDataObject* AnItem) {
  if (const int Index = IndexOf(AnItem); Index >= 0) {
    Delete(Index);
  }
}

/// True if something went.
template <class TPredicate>
bool TQuillonDataList::DeleteIf(const TPredicate& APredicate) {
  const int Before = Count();
  for (int I = Before - 1; I >= 0; --I) {
    // An item that is freed may take others with it.
    if (I < Count() && APredicate(FItems[static_cast<std::size_t>(I)])) {
      Delete(I);
    }
  }
  return Count() != Before;
}

void TQuillonDataList::RemoveObject(const TQuillonDataObject* AnItem) {
  DeleteIf([&](const TQuillonDataObject* AnOwn) { return AnOwn == AnItem; });
}

void TQuillonDataList::RemoveObjects(const TQuillonDataObjectSet& AnItems) {
  DeleteIf([&](const TQuillonDataObject* AnOwn) { return AnItems.contains(AnOwn); });
}

TQuillonDataObject* TQuillonDataList::Extract(int AnIndex) {
  TQuillonDataObject* const Item = GetItem(AnIndex);
  Perform({.Kind = TOperationKind::Extraction, .Index = AnIndex, .Item = Item});
  return Item;
}

TQuillonDataObject* TQuillonDataList::Extract(const TGUID& AnID) {
  const int Index = IndexOf(AnID);
  return Index < 0 ? nullptr : Extract(Index);
}

TQuillonDataObject* TQuillonDataList::Extract(const TQuillonDataObject* AnItem) {
  const int Index = IndexOf(AnItem);
  return Index < 0 ? nullptr : Extract(Index);
}

bool TQuillonDataList::RemoveAll(const TQuillonDataList& AnOther) {
  return DeleteIf([&](const TQuillonDataObject* AnItem) { return AnOther.Contains(AnItem); });
}

bool TQuillonDataList::RetainAll(const TQuillonDataList& AnOther) {
  return DeleteIf([&](const TQuillonDataObject* AnItem) { return !AnOther.Contains(AnItem); });
}

void TQuillonDataList::Pack() { FItems.erase(std::remove(FItems.begin(), FItems.end(), nullptr), FItems.end()); }

void TQuillonDataList::Move(int ACurIndex, int ANewIndex) {
  CheckedIndex(ACurIndex, Count());
  CheckedIndex(ANewIndex, Count());
  Perform({.Kind = TOperationKind::Move, .Index = ACurIndex, .NewIndex = ANewIndex, .Item = GetItem(ACurIndex)});
}

void TQuillonDataList::Move(const TQuillonDataObject* AnItem, int ANewIndex) {
  if (const int Index = IndexOf(AnItem); Index >= 0) {
    Move(Index, ANewIndex);
  }
}

void TQuillonDataList::MoveToPrevIndex(int AnIndex) {
  if (AnIndex > 0) {
    Move(AnIndex, AnIndex - 1);
  }
}

void TQuillonDataList::MoveToNextIndex(int AnIndex) {
  if (AnIndex < Count() - 1) {
    Move(AnIndex, AnIndex + 1);
  }
}

void TQuillonDataList::MoveToNextIndex(const TQuillonDataObject* AnItem) {
  if (const int Index = IndexOf(AnItem); Index >= 0) {
    MoveToNextIndex(Index);
  }
}

void TQuillonDataList::Exchange(int AFirstIndex, int ASecondIndex) {
  if (CheckedIndex(AFirstIndex, Count()) == CheckedIndex(ASecondIndex, Count())) {
    return;
  }
  Move(AFirstIndex, ASecondIndex > AFirstIndex ? ASecondIndex - 1 : ASecondIndex + 1);
  Move(ASecondIndex, AFirstIndex);
}

std::vector<TQuillonDataObject*> TQuillonDataList::RealItems() const {
  std::vector<TQuillonDataObject*> Found = Copy();
  std::erase(Found, nullptr);
  return Found;
}

int TQuillonDataList::CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B) const {
  return FCompare != 0 ? Comparisons[FCompare].load()(A, B) : A.Compare(B);
}

int TQuillonDataList::FindPlace(const TQuillonDataObject& AnItem) const {
  int Low = 0;
  int High = Count() - 1;
  while (Low <= High) {
    const int Middle = Low + (High - Low) / 2;
    const TQuillonDataObject* const Own = FItems[static_cast<std::size_t>(Middle)];
    if (Own != nullptr && CompareItems(*Own, AnItem) < 0) {
      Low = Middle + 1;
    } else {
      High = Middle - 1;
    }
  }
  return Low;
}

void TQuillonDataList::Sort() {
  SortBy([this](const TQuillonDataObject& A, const TQuillonDataObject& B) { return CompareItems(A, B); });
}

void TQuillonDataList::Sort(TQuillonCompareItems ACompare) {
  QuillonClasses::QuickSort(
      0, Count() - 1, [&](int A, int B) { return CompareReal(GetItem(A), GetItem(B), ACompare); },
      [this](int A, int B) { Exchange(A, B); });
}

void TQuillonDataList::SetCompare(TQuillonCompareItems ACompare) {
  for (std::size_t I = 0; I < Comparisons.size(); ++I) {
    TQuillonCompareItems Known = nullptr;
    if (ACompare == nullptr || (I > 0 && Comparisons[I].compare_exchange_strong(Known, ACompare)) ||
        Known == ACompare) {
      FCompare = static_cast<std::uint8_t>(I);
      return;
    }
  }
  throw EQuillonCollectionError("Die Anzahl der Vergleiche überschreitet das Maximum.");
}

void TQuillonDataList::SetSorted(bool AnIsSorted) {
  if (AnIsSorted && !FSorted) {
    Sort();
  }
  FSorted = AnIsSorted;
}

std::string TQuillonDataList::GetBaseDisplayName() const { return TQuillonDataAbstractObject::GetDisplayName(); }

std::string TQuillonDataList::GetDisplayName() const {
  if (FOwner == nullptr || FOwner->AsStorage() != nullptr) {
    return GetBaseDisplayName();
  }
  return GetBaseDisplayName() + " von " + FOwner->GetDisplayName();
}
