#pragma once

#include <functional>
#include <string_view>

#include "QuillonClasses/Collection.h"

enum TQuillonDuplicates { dupIgnore, dupAccept, dupError };

/// The order of two items, none of which is null: negative, zero or positive.
using TQuillonCompareEvent = std::function<int(const TQuillonPersistent& A, const TQuillonPersistent& B)>;

/// A list by index. A sorted one keeps its order by FOnCompare or, without that, by the items' own Compare; null stands
/// before everything else. An index outside of the list raises EQuillonCollectionError, and nothing has changed then.
class TQuillonArrayList : public TQuillonNamed<TQuillonArrayList, TQuillonAbstractCollection> {
 public:
  static constexpr std::string_view ClassName = "TQuillonArrayList";

  void Clear() override;
  /// At the end, or in a sorted list at its place. @return false for an item that FDuplicates ignores
  /// @throws EQuillonCollectionError "Keine Duplikate in der Liste erlaubt."
  bool Add(TQuillonItem AnItem) override;
  /// @param AnIndex where the item or, in a sorted list, the one that it equals has its place
  bool Add(TQuillonItem AnItem, std::int32_t& AnIndex);
  TQuillonItem Remove(const TQuillonPersistent* AnItem) override;
  bool Contains(const TQuillonPersistent* AnItem) const override { return IndexOf(AnItem) >= 0; }
  std::int32_t Count() const override { return static_cast<std::int32_t>(FItems.size()); }
  std::vector<TQuillonItem> Items() const override { return FItems; }

  const TQuillonItem& GetItem(std::int32_t AnIndex) const;
  void SetItem(std::int32_t AnIndex, TQuillonItem AnItem);
  /// @param AnIndex the count is allowed
  void Insert(std::int32_t AnIndex, TQuillonItem AnItem);
  /// @return the item that has been taken out
  TQuillonItem Delete(std::int32_t AnIndex);
  void Exchange(std::int32_t A, std::int32_t B);
  void Move(std::int32_t ACurIndex, std::int32_t ANewIndex);
  /// Takes out what is null.
  void Pack();
  /// The first place of an equal item, or of null; -1 if there is none.
  std::int32_t IndexOf(const TQuillonPersistent* AnItem) const;
  std::int32_t LastIndexOf(const TQuillonPersistent* AnItem) const;
  /// The product's quicksort, which is not stable.
  void Sort();
  bool IsSorted() const { return FSorted; }
  /// Sorts first.
  void SetSorted(bool AnIsSorted);
  /// Fresh objects of the same classes as the other list's, each assigned from the one that it copies.
  /// @throws EQuillonAssignError if the other is no list, or an item cannot be copied
  void Assign(const TQuillonObject& AnObject) override;
  std::int32_t Capacity() const { return FCapacity.Value(); }
  /// @throws EQuillonCollectionError "Kapazität der Liste ist erschöpft (%d)" for less than the count
  void SetCapacity(std::int64_t AValue) { FCapacity.Set(AValue, FItems.size()); }

  TQuillonDuplicates FDuplicates = dupAccept;
  TQuillonCompareEvent FOnCompare;

 private:
  int CompareItems(const TQuillonPersistent* A, const TQuillonPersistent* B) const;
  bool Find(const TQuillonPersistent* AnItem, std::int32_t& AnIndex) const;

  std::vector<TQuillonItem> FItems;
  QuillonClasses::TCapacity<EQuillonCollectionError> FCapacity;
  bool FSorted = false;
};
