#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "QuillonDataObjects/DataObject.h"

/// The classes that a data file can name, by their tags.
///
/// Two classes may share a tag: who reads knows the class that is wanted, and asks for it or a descendant.
class TQuillonDataClassRegistry {
 public:
  /// The process's only one.
  static TQuillonDataClassRegistry& Instance();

  /// Ignored if the class is there already.
  void AddClass(const TQuillonDataClass& AClass);
  /// No document can name the class any more; what is not there is passed over.
  void RemoveClass(const TQuillonDataClass& AClass);
  /// AddClass for each, by its description.
  template <class... TClasses>
  void AddClasses() {
    (AddClass(TClasses::Class()), ...);
  }
  using TClassOf = const TQuillonDataClass& (*)();
  /// A class of lists, with the class of their items. No document names a list's class.
  void AddListClass(const TQuillonDataClass& AClass, TClassOf AnItemClass);
  /// The class that lists of a class hold; null for one that is not known.
  const TQuillonDataClass* ItemClassOf(const TQuillonDataClass& AListClass) const;
  bool ContainsClass(const TQuillonDataClass& AClass) const;
  /// The class with the tag that descends from ABase; null where no class of the tag does.
  /// @throws EQuillonDataObjectReaderError for an empty or an unknown tag
  const TQuillonDataClass* FindClass(std::string_view ATag, const TQuillonDataClass& ABase) const;
  /// The class with the tag, of several the first; null if there is none.
  const TQuillonDataClass* GetClass(std::string_view AClassName) const;
  std::vector<const TQuillonDataClass*> Classes() const;

 private:
  TQuillonDataClassRegistry() = default;

  std::unordered_map<std::string_view, std::vector<const TQuillonDataClass*>> FClasses;
  std::unordered_map<const TQuillonDataClass*, TClassOf> FListClasses;
};

/// The live objects and lists of one storage by identity, not owning. Look-ups take constant time.
///
/// A damaged file may give one GUID to objects of different classes. Both live: a look-up names the class it wants.
/// Objects come and go under the storage's write lock; lists may come in by any of several readers, see
/// TQuillonDataAbstractObject::ID.
class TQuillonDataObjectRegistry {
 public:
  explicit TQuillonDataObjectRegistry(TQuillonDataStorage& AStorage);

  /// An object of a class and an identity that are there already is never found; the storage ends it with the others.
  void AddObject(TQuillonDataAbstractObject& AnObject);
  /// Does not free.
  void RemoveObject(TQuillonDataAbstractObject& AnObject);
  /// Whether a look-up finds the very object.
  bool ContainsObject(const TQuillonDataAbstractObject& AnObject) const;
  /// The object with the identity, of several any one; null if there is none.
  TQuillonDataAbstractObject* GetObject(const TGUID& AnID) const {
    return GetObject(AnID, TQuillonDataAbstractObject::Class());
  }
  /// The object with the identity whose class is AClass or descends from it; null if there is none.
  TQuillonDataAbstractObject* GetObject(const TGUID& AnID, const TQuillonDataClass& AClass) const;
  /// Has the memory fetched that a look-up of the identity will touch.
  void Prefetch(const TGUID& AnID) const { __builtin_prefetch(&FSlots[FHash(AnID) & (FSlots.size() - 1)]); }

  /// Ignored if a list has the identity already, or nobody has looked for a list yet.
  void AddList(TQuillonDataList& AList);
  void RemoveList(TQuillonDataList& AList);
  /// The list with the identity, if it was asked for it or told; null if there is none. Whoever asks first pays for a
  /// walk over all objects. Under the storage's write lock only.
  TQuillonDataList* GetList(const TGUID& AnID);

  std::size_t Count() const { return FCount; }
  /// All objects, no lists, in no order.
  std::vector<TQuillonDataAbstractObject*> Objects() const;
  /// Objects that no list and no other object holds.
  std::vector<TQuillonDataObject*> Unheld() const;
  /// Forgets that a document has named the objects.
  void ForgetNames() const;
  /// Forgets all objects and lists.
  void Clear();

 private:
  /// Holds all that a look-up compares, so that it touches no other object than the one it finds.
  struct TSlot {
    TGUID ID;
    const TQuillonDataClass* Class = nullptr;
    TQuillonDataAbstractObject* Object = nullptr;
  };

  template <class TPredicate>
  const TSlot* FindSlot(const TGUID& AnID, const TPredicate& APredicate) const;
  void Grow();
  void FindLists();
  void Put(std::vector<TSlot>& ASlots, const TSlot& ASlot) const;

  std::vector<TSlot> FSlots;  ///< open addressing; the length is a power of two
  std::size_t FCount = 0;
  std::unordered_set<TQuillonDataAbstractObject*> FDoubles;
  TQuillonDataStorage& FStorage;
  TGuidHash FHash;
  std::unordered_map<TGUID, TQuillonDataList*, TGuidHash> FLists;  ///< empty until somebody looks for a list
  std::atomic<bool> FKnowsLists = false;
  std::mutex FListsMutex;
};
