#pragma once

#include <forward_list>
#include <string_view>

#include "QuillonClasses/Collection.h"
#include "QuillonValues.h"

/// A load factor or a capacity that no map can have.
class EQuillonMapError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// The table behind maps and sets: as many chains as a power of two, and an entry in the chain that the low bits of its
/// key's hash name. A new entry stands at the head of its chain. As soon as the entries are as many as the threshold,
/// chains times load factor, the chains are doubled.
class TQuillonHashTable {
 public:
  struct TEntry {
    std::int32_t Hash = 0;
    TQuillonItem Key;  ///< may be null, its hash is 0 then
    TQuillonItem Item;
  };

  /// @throws EQuillonMapError for a capacity below 0, or a load factor that is not above 0
  explicit TQuillonHashTable(std::int32_t AnInitialCapacity = 16, double ALoadFactor = 0.75);

  /// Becomes the table that WriteTo has written: chains and load factor, the count, and each key with, if they have
  /// any, its item. As many chains as told, but no more than sixteen times what the entries that come need.
  /// @throws EQuillonReaderError for equal keys, or a load factor so low that few entries would take much memory; the
  /// table is as it was then
  void ReadFrom(TQuillonObjectReader& AReader, bool HaveItems);
  void WriteTo(TQuillonObjectWriter& AWriter, bool HaveItems) const;

  /// The entry of an equal key, null if there is none. An empty table does not ask the key for its hash.
  const TEntry* Find(const TQuillonPersistent* AKey) const;
  /// The entry of an equal key, or a fresh one for this key. @return whether it is fresh, too
  std::pair<TEntry*, bool> Put(TQuillonItem AKey);
  /// Takes out the entry of an equal key. @return whether there was one; it is in AnEntry then
  bool Take(const TQuillonPersistent* AKey, TEntry& AnEntry);
  /// The entries as they are now, by their chains and each chain from its head.
  std::vector<TEntry> Entries() const;
  /// Size and load factor stay.
  void Clear();

  std::int32_t Count() const { return FCount; }
  std::int32_t BucketCount() const { return static_cast<std::int32_t>(FBuckets.size()); }
  std::int32_t Threshold() const { return FThreshold; }
  double LoadFactor() const { return FLoadFactor; }

  bool FIgnoreEquals = false;  ///< whether a key is found as the same object before it is asked for equality

 private:
  using TBucket = std::forward_list<TEntry>;

  TBucket& BucketOf(std::int32_t AHash);
  bool Matches(const TEntry& AnEntry, std::int32_t AHash, const TQuillonPersistent* AKey) const;
  TBucket::iterator FindBefore(TBucket& ABucket, std::int32_t AHash, const TQuillonPersistent* AKey) const;
  void Resize(std::size_t ABucketCount);

  std::vector<TBucket> FBuckets;
  std::int32_t FCount = 0;
  double FLoadFactor;
  std::int32_t FThreshold = 0;
};

/// Goes over the entries that a table had when the iterator was made.
class TQuillonHashIterator {
 public:
  explicit TQuillonHashIterator(TQuillonHashTable& ATable) : FTable(ATable), FEntries(ATable.Entries()) {}

  bool HasNext() const { return FNext < FEntries.size(); }
  /// @throws EQuillonCollectionError if there is none
  const TQuillonHashTable::TEntry& Next();
  /// Takes the entry that Next has given last out of the table. @return its item
  /// @throws EQuillonCollectionError if it is gone already
  TQuillonItem Remove();

 private:
  TQuillonHashTable& FTable;
  std::vector<TQuillonHashTable::TEntry> FEntries;
  std::size_t FNext = 0;
};

/// Items by their keys. On streams the number of chains and the load factor, the count, and each key with its item.
/// As the order of the entries follows their hashes, no two maps have the same content whose keys have the default one.
class TQuillonHashMap final : public TQuillonNamed<TQuillonHashMap> {
 public:
  static constexpr std::string_view ClassName = "TQuillonHashMap";

  TQuillonHashMap() = default;
  /// @throws EQuillonMapError
  explicit TQuillonHashMap(std::int32_t AnInitialCapacity, double ALoadFactor = 0.75)
      : FTable(AnInitialCapacity, ALoadFactor) {}

  void WriteProperties(TQuillonObjectWriter& AWriter) const override { FTable.WriteTo(AWriter, true); }
  void ReadProperties(TQuillonObjectReader& AReader) override { FTable.ReadFrom(AReader, true); }

  /// Integers, texts and identities as keys, in their boxes.
  static TQuillonItem Box(std::int32_t AKey) { return std::make_shared<TQuillonLongInt>(AKey); }
  static TQuillonItem Box(std::string_view AKey) { return std::make_shared<TQuillonString>(std::string(AKey)); }
  static TQuillonItem Box(const TGUID& AKey) { return std::make_shared<TQuillonGuid>(AKey); }
  static TQuillonItem Box(TQuillonItem AKey) { return AKey; }

  /// The item of an equal key; null if there is none.
  TQuillonItem Get(const auto& AKey) const { return GetItem(Box(AKey).get()); }
  /// The first key of equal ones stays. @return the item that was there before, or null
  TQuillonItem Put(const auto& AKey, const TQuillonItem& AnItem) { return PutItem(Box(AKey), AnItem); }
  /// @return the item, null if there is none
  TQuillonItem Remove(const auto& AKey) { return RemoveItem(Box(AKey).get()); }
  bool ContainsKey(const auto& AKey) const { return FTable.Find(Box(AKey).get()) != nullptr; }
  bool ContainsItem(const TQuillonPersistent* AnItem) const;
  bool IsEmpty() const { return FTable.Count() == 0; }
  std::int32_t Count() const { return FTable.Count(); }
  void Clear() { FTable.Clear(); }
  /// The table itself, for its iterator and its measures.
  TQuillonHashTable& Table() { return FTable; }

 private:
  TQuillonItem GetItem(const TQuillonPersistent* AKey) const;
  TQuillonItem PutItem(TQuillonItem AKey, const TQuillonItem& AnItem);
  TQuillonItem RemoveItem(const TQuillonPersistent* AKey);

  TQuillonHashTable FTable;
};

/// Objects of which no two are equal: a map's keys alone.
class TQuillonHashSet final : public TQuillonNamed<TQuillonHashSet, TQuillonAbstractCollection> {
 public:
  static constexpr std::string_view ClassName = "TQuillonHashSet";

  void WriteProperties(TQuillonObjectWriter& AWriter) const override { FTable.WriteTo(AWriter, false); }
  void ReadProperties(TQuillonObjectReader& AReader) override { FTable.ReadFrom(AReader, false); }

  void Clear() override { FTable.Clear(); }
  bool Add(TQuillonItem AnItem) override { return FTable.Put(std::move(AnItem)).second; }
  TQuillonItem Remove(const TQuillonPersistent* AnItem) override;
  bool Contains(const TQuillonPersistent* AnItem) const override { return FTable.Find(AnItem) != nullptr; }
  std::int32_t Count() const override { return FTable.Count(); }
  std::vector<TQuillonItem> Items() const override;
  TQuillonHashTable& Table() { return FTable; }

 private:
  TQuillonHashTable FTable;
};

/// Values in boxes by their names.
class TQuillonPropertyList final : public TQuillonNamed<TQuillonPropertyList> {
 public:
  static constexpr std::string_view ClassName = "TQuillonPropertyList";
  static std::vector<TQuillonProperty> Properties() {
    return {QuillonStreams::Published<&TQuillonPropertyList::FProperties>()};
  }

  /// In a box of the class, in place of what had the name before: Add<TQuillonLongInt>("Count", 3).
  template <std::derived_from<TQuillonType> TBox, class... TValue>
  void Add(std::string_view AName, TValue&&... AValue) {
    FProperties.Put(AName, std::make_shared<TBox>(std::forward<TValue>(AValue)...));
  }
  /// What is in the box of the class.
  /// @throws EQuillonConvertError if the name has none, or one of another class
  template <std::derived_from<TQuillonType> TBox>
  auto Get(std::string_view AName) const {
    if constexpr (std::is_same_v<TBox, TQuillonBinary>) {
      return Held<TBox>(AName)->FStream;
    } else {
      return Held<TBox>(AName)->FValue;
    }
  }
  bool Exists(std::string_view AName) const { return FProperties.ContainsKey(AName); }
  void Remove(std::string_view AName) { FProperties.Remove(AName); }
  void Clear() { FProperties.Clear(); }

  TQuillonHashMap FProperties;

 private:
  [[noreturn]] static void Refuse(std::string_view AName);
  template <class TBox>
  std::shared_ptr<TBox> Held(std::string_view AName) const {
    auto Found = std::dynamic_pointer_cast<TBox>(FProperties.Get(AName));
    if (Found == nullptr) {
      Refuse(AName);
    }
    return Found;
  }
};
