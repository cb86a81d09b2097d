#pragma once

#include <span>
#include <unordered_set>
#include <vector>

#include "QuillonClasses/QuickSort.h"
#include "QuillonDataObjects/DataObject.h"
#include "QuillonDataObjects/Items.h"

class TQuillonDataChangeLog;

using TQuillonDataObjectSet = std::unordered_set<const TQuillonDataAbstractObject*>;

/// Order of two items: negative, zero or positive.
using TQuillonCompareItems = int (*)(const TQuillonDataObject& A, const TQuillonDataObject& B);

/// A list of data objects: of its own, or of references to objects that others own.
///
/// Every change runs in one shape: the record of it, then the Before hook, the change of the items, the After hook and
/// Change, with the change log locked. A place may hold null, which nothing but Pack and the count takes for an item.
class TQuillonDataList : public TQuillonDataAbstractObject {
 public:
  enum class TItems : std::uint8_t { Referenced, Owned };

  explicit TQuillonDataList(TQuillonDataAbstractObject* AnOwner = nullptr, TItems AnItems = TItems::Referenced,
                            bool HasItemsAreIndependent = true);
  ~TQuillonDataList() override;

  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  TQuillonDataList* AsList() override { return this; }
  /// The class that the list holds; an item of another class never enters it.
  virtual const TQuillonDataClass& ItemClass() const;

  bool IsItemOwner() const { return FIsItemOwner; }
  /// True, the default, says that items do not depend on one another: concurrent edits do not conflict.
  bool FItemsAreIndependent = true;

  int Count() const { return static_cast<int>(FItems.size()); }
  bool IsEmpty() const { return FItems.empty(); }
  std::span<TQuillonDataObject* const> Items() const { return {FItems.begin(), FItems.end()}; }
  /// The class that all items descend from: none for an empty list, else the base of all objects.
  const TQuillonDataClass* GetCommonItemBaseClass() const { return IsEmpty() ? nullptr : &TQuillonDataObject::Class(); }
  /// @throws EQuillonCollectionError for an index outside of the list
  TQuillonDataObject* GetItem(int AnIndex) const;
  /// Puts another item in the place; neither logs nor notifies.
  /// @throws EQuillonCollectionError for an index outside of the list
  void SetItem(int AnIndex, TQuillonDataObject* AnItem);

  /// Appends the item, or places it by the order of a sorted list; null is ignored, doubles are not.
  /// @throws EQuillonCollectionError for an item that the list lies in, if the list would own it
  void Add(TQuillonDataObject* AnItem);
  /// At the end whatever the order, without hooks or notice: for readers, which sort when all is read. Null is ignored.
  void Append(TQuillonDataObject* AnItem);
  /// As Add at a place; an item whose identity the list holds already is ignored.
  /// @throws EQuillonCollectionError for an index outside of the list
  void Insert(int AnIndex, TQuillonDataObject* AnItem);
  /// True if the other list had items.
  bool AddAll(const TQuillonDataList& AnOther);
  bool InsertAll(int AnIndex, const TQuillonDataList& AnOther);
  /// Adds what the list does not hold; true if something was added.
  bool Merge(const TQuillonDataList& AnOther);
  bool Merge(TQuillonDataObject* AnItem);
  /// Moves every item that this list does not hold out of the other one; the number of them.
  int MergeEx(TQuillonDataList& AnOther);
  /// Assigns each item of the other list to the item with its identity, which is created if it is missing.
  /// True if an object was created.
  bool Import(const TQuillonDataList& AnOther);
  /// An owning list gets copies with new identities, another one the same items; in another storage, those there with
  /// their identities.
  void Assign(const TQuillonObject& AnObject) override;

  bool Contains(const TQuillonDataObject* AnItem) const;
  bool Contains(const TGUID& AnID) const;
  bool ContainsAll(const TQuillonDataList& AnOther) const;
  TQuillonDataObject* Find(const TGUID& AnID) const;
  /// As Contains for the very object, not for one with its identity: looks at no item but this one.
  bool Holds(const TQuillonDataObject* AnItem) const;
  /// -1 if missing.
  int IndexOf(const TQuillonDataObject* AnItem) const;
  int IndexOf(const TGUID& AnID) const;

  /// Frees the items of an owning list. An empty one goes through the same steps.
  void Clear();
  /// Removes, and frees in an owning list; what is not there is passed over.
  /// @throws EQuillonCollectionError for an index outside of the list
  void Delete(int AnIndex);
  void Delete(const TGUID& AnID);
  void Remove(const TQuillonDataObject* AnItem);
  /// As Remove for the very object, as often as the list holds it.
  void RemoveObject(const TQuillonDataObject* AnItem);
  /// The same for all of a set in one walk.
  void RemoveObjects(const TQuillonDataObjectSet& AnItems);
  /// Removes without freeing; null if it is not there.
  /// @throws EQuillonCollectionError for an index outside of the list
  TQuillonDataObject* Extract(int AnIndex);
  TQuillonDataObject* Extract(const TGUID& AnID);
  TQuillonDataObject* Extract(const TQuillonDataObject* AnItem);
  /// True if something went.
  bool RemoveAll(const TQuillonDataList& AnOther);
  bool RetainAll(const TQuillonDataList& AnOther);
  /// Removes null items.
  void Pack();

  /// @throws EQuillonCollectionError for an index outside of the list
  void Move(int ACurIndex, int ANewIndex);
  void Move(const TQuillonDataObject* AnItem, int ANewIndex);
  void MoveToFirstIndex(int AnIndex) { Move(AnIndex, 0); }
  void MoveToLastIndex(int AnIndex) { Move(AnIndex, Count() - 1); }
  void MoveToPrevIndex(int AnIndex);
  void MoveToNextIndex(int AnIndex);
  /// The same for an item; what is not there is passed over.
  void MoveToFirstIndex(const TQuillonDataObject* AnItem) { Move(AnItem, 0); }
  void MoveToLastIndex(const TQuillonDataObject* AnItem) { Move(AnItem, Count() - 1); }
  void MoveToPrevIndex(const TQuillonDataObject* AnItem) { MoveToPrevIndex(IndexOf(AnItem)); }
  void MoveToNextIndex(const TQuillonDataObject* AnItem);
  /// @throws EQuillonCollectionError for an index outside of the list
  void Exchange(int AFirstIndex, int ASecondIndex);

  /// Sorts by the list's own comparison, without notice.
  void Sort();
  /// Sorts by another comparison, int(const TQuillonDataObject&, const TQuillonDataObject&), without notice.
  template <class TCompare>
  void SortBy(const TCompare& ACompare) {
    const auto At = [this](int AnIndex) -> TQuillonDataObject*& { return FItems[static_cast<std::size_t>(AnIndex)]; };
    QuillonClasses::QuickSort(
        0, Count() - 1, [&](int A, int B) { return CompareReal(At(A), At(B), ACompare); },
        [&](int A, int B) { std::swap(At(A), At(B)); });
  }
  /// As SortBy by keys, one for each place, which are sorted along: int(const TKey&, const TKey&). Null goes to the
  /// end.
  template <class TKey, class TCompare>
  void SortByKeys(std::vector<TKey>& AKeys, const TCompare& ACompare) {
    const auto Compare = [&](std::size_t A, std::size_t B) {
      const bool HasBoth = FItems[A] != nullptr && FItems[B] != nullptr;
      return HasBoth ? ACompare(AKeys[A], AKeys[B])
                     : static_cast<int>(FItems[A] == nullptr) - static_cast<int>(FItems[B] == nullptr);
    };
    QuillonClasses::QuickSort(
        0, Count() - 1, [&](int A, int B) { return Compare(static_cast<std::size_t>(A), static_cast<std::size_t>(B)); },
        [&](int A, int B) {
          std::swap(FItems[static_cast<std::size_t>(A)], FItems[static_cast<std::size_t>(B)]);
          std::swap(AKeys[static_cast<std::size_t>(A)], AKeys[static_cast<std::size_t>(B)]);
        });
  }
  /// Sorts by moves, each of which notifies.
  void Sort(TQuillonCompareItems ACompare);
  /// The comparison of Add and Sort; without one the items' own Compare counts.
  /// @throws EQuillonCollectionError where lists sort by some 255 others already
  void SetCompare(TQuillonCompareItems ACompare);
  bool IsSorted() const { return FSorted; }
  /// Switching on sorts.
  void SetSorted(bool AnIsSorted);
  /// Switches on for items that stand in the order already.
  void TakeAsSorted() { FSorted = true; }

  std::string GetDisplayName() const override;

  /// Around an operation on this list that a change log plays back.
  /// @param AnItem the object that it concerns; null for a clearance, and for an item that has gone
  /// @throws EQuillonDataConflict to refuse the operation
  virtual void BeforeOperation(TQuillonDataOperationKind /*AKind*/, TQuillonDataObject* /*AnItem*/) {}
  virtual void AfterOperation(TQuillonDataOperationKind /*AKind*/, TQuillonDataObject* /*AnItem*/) {}

  /// Frees the items without hooks or notice: the end of a list.
  void FreeItems();

 protected:
  virtual void AfterClear() {}
  virtual void AfterDelete(int /*AnIndex*/) {}
  virtual void AfterExtract(int /*AnIndex*/) {}
  virtual void AfterInsert(int /*AnIndex*/) {}
  virtual void AfterMove(int /*AnIndex*/) {}
  virtual void BeforeClear() {}
  /// All items of an owning list are about to be freed, for which nobody can refer to them any more.
  virtual void ReleaseReferences() {}
  virtual void BeforeDelete(int /*AnIndex*/) {}
  virtual void BeforeExtract(int /*AnIndex*/) {}
  /// @param AnIndex -1 when the place is the list's choice
  virtual void BeforeInsert(int /*AnIndex*/, TQuillonDataObject* /*AnItem*/) {}
  virtual void BeforeMove(int /*AnIndex*/) {}
  virtual std::string GetBaseDisplayName() const;

 private:
  enum class TOperationKind : std::uint8_t { Insertion, Deletion, Extraction, Clearance, Move };
  /// One change of the items.
  struct TOperation {
    TOperationKind Kind;
    int Index = 0;     ///< of the item; of an insertion the place that was asked for, -1 for any
    int NewIndex = 0;  ///< place of an insertion or a move
    TQuillonDataObject* Item = nullptr;
  };

  /// Order with null places behind all items.
  template <class TCompare>
  static int CompareReal(const TQuillonDataObject* A, const TQuillonDataObject* B, const TCompare& ACompare) {
    return A != nullptr && B != nullptr ? ACompare(*A, *B)
                                        : static_cast<int>(A == nullptr) - static_cast<int>(B == nullptr);
  }

  void Perform(const TOperation& AnOperation);
  void Record(const TOperation& AnOperation, TQuillonDataChangeLog& ALog);
  /// True for a list that a row of its owner's table holds; others are of the running program only.
  bool IsPersisted() const;
  /// As Contains, without a walk for what belongs to the list's own storage.
  bool ContainsIdentity(const TQuillonDataObject& AnItem) const;
  void Before(const TOperation& AnOperation);
  void Apply(const TOperation& AnOperation);
  void After(const TOperation& AnOperation);
  std::vector<TQuillonDataObject*> Copy() const { return {FItems.begin(), FItems.end()}; }
  /// The items without null places.
  std::vector<TQuillonDataObject*> RealItems() const;
  template <class TPredicate>
  bool DeleteIf(const TPredicate& APredicate);
  void InsertAt(int AWanted, int AnIndex, TQuillonDataObject* AnItem);
  int CheckedIndex(int AnIndex, int ALimit) const;
  int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B) const;
  int FindPlace(const TQuillonDataObject& AnItem) const;

  bool FIsItemOwner;
  bool FSorted = false;
  std::uint8_t FCompare = 0;  ///< number of the comparison; 0 for the items' own
  TQuillonItems FItems;
};

/// A list whose items are of class TItem; TBase is the untyped list class that it specialises.
template <class TItem, class TBase = TQuillonDataList>
class TQuillonListOf : public TBase {
 public:
  using TItemClass = TItem;
  using TBase::TBase;

  class TIterator {
   public:
    using difference_type = std::ptrdiff_t;
    using value_type = TItem*;
    TIterator() = default;
    explicit TIterator(TQuillonDataObject* const* ANext) : FNext(ANext) {}
    TItem* operator*() const { return static_cast<TItem*>(*FNext); }
    TIterator& operator++() {
      ++FNext;
      return *this;
    }
    TIterator operator++(int) { return TIterator(FNext++); }
    friend bool operator==(const TIterator&, const TIterator&) = default;

   private:
    TQuillonDataObject* const* FNext = nullptr;
  };

  TIterator begin() const { return TIterator(this->Items().data()); }
  TIterator end() const { return TIterator(this->Items().data() + this->Items().size()); }
  TItem* GetItem(int AnIndex) const { return static_cast<TItem*>(TBase::GetItem(AnIndex)); }
};
