#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
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
  bool ContainsClass(const TQuillonDataClass& AClass) const;
  /// The class with the tag that descends from ABase.
  /// @throws EQuillonDataObjectReaderError for an empty or an unknown tag, and where no class of the tag descends
  const TQuillonDataClass& GetClass(std::string_view ATag, const TQuillonDataClass& ABase) const;
  std::vector<const TQuillonDataClass*> Classes() const;

 private:
  TQuillonDataClassRegistry() = default;

  std::unordered_map<std::string_view, std::vector<const TQuillonDataClass*>> FClasses;
};

/// The live objects of one storage by identity, not owning. Look-ups take constant time.
///
/// A damaged file may give one GUID to objects of different classes. Both live: a look-up names the class it wants.
class TQuillonDataObjectRegistry {
 public:
  TQuillonDataObjectRegistry();

  void AddObject(TQuillonDataAbstractObject& AnObject);
  /// Does not free.
  void RemoveObject(TQuillonDataAbstractObject& AnObject);
  /// The object with the identity whose class is AClass or descends from it; null if there is none.
  TQuillonDataAbstractObject* GetObject(const TGUID& AnID, const TQuillonDataClass& AClass) const;

  std::size_t Count() const { return FCount; }
  /// All objects, in no order.
  std::vector<TQuillonDataAbstractObject*> Objects() const;
  /// Objects that no list and no other object holds.
  std::vector<TQuillonDataObject*> Unheld() const;
  /// Forgets all objects.
  void Clear();

 private:
  struct TSlot {
    std::uint64_t Hash = 0;
    TQuillonDataAbstractObject* Object = nullptr;
  };

  void Grow();
  static void Put(std::vector<TSlot>& ASlots, const TSlot& ASlot);

  std::vector<TSlot> FSlots;  ///< open addressing; the length is a power of two
  std::size_t FCount = 0;
  TGuidHash FHash;
};
