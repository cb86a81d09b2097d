#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "QuillonDataObjects/UserName.h"
#include "QuillonDateTime.h"
#include "QuillonGuid.h"
#include "QuillonTypes.h"

class TQuillonDataClass;
class TQuillonDataList;
class TQuillonDataObjectReader;
class TQuillonDataObjectWriter;
class TQuillonDataStorage;
class TQuillonDataAbstractObject;

namespace QuillonDataObjects {

/// Ends an object's life: leaves the registry, frees its parts while it is whole, deletes it.
void Free(TQuillonDataAbstractObject* AnObject);

}  // namespace QuillonDataObjects

/// Base of everything that a storage holds: objects, lists and the storage itself.
///
/// An object lives in two phases. It is constructed, told its owner and identity and entered in its
/// storage's registry; then the virtual InitProperties runs. At its end it leaves the registry and the
/// virtual FreeProperties runs while it is still whole; then it is deleted.
/// TQuillonDataClass::Create and QuillonDataObjects::Free are these two ways.
class TQuillonDataAbstractObject : public TQuillonObject {
  // First of all fields, beside the class: the two are what a look-up by identity touches.
  mutable TGUID FID;

 public:
  /// The stamps that every object has: the first rows of every table.
  static const TQuillonDataClass& Class();

  TQuillonDateTime FChanged;                     ///< time of the last change
  TQuillonUserName FChangedBy;                   ///< user of the last change
  TQuillonDateTime FCreated;                     ///< time of creation
  TQuillonUserName FCreatedBy;                   ///< user who created the object
  TQuillonDataAbstractObject* FOwner = nullptr;  ///< container; a back reference that never owns
  std::int64_t FVersion = 0;                     ///< raised once by each logged operation that concerns the object

  /// The description of the object's own class.
  virtual const TQuillonDataClass& DataClass() const = 0;

  /// The tag of the object's class in data files.
  std::string GetPublicClassName() const;

  /// Name of the object in messages; by default its class tag and GUID.
  virtual std::string GetDisplayName() const;

  /// Identity within the storage, stable across saves.
  /// A list has one only from the first time it is asked: nothing but the binary form tells it.
  const TGUID& ID() const;
  /// Changes the identity and re-enters the object in the registry of its storage.
  void SetID(const TGUID& AnID);

  bool HasOwner() const { return FOwner != nullptr; }
  void SetOwner(TQuillonDataAbstractObject* AnOwner) { FOwner = AnOwner; }
  /// The last object on the way up the owners; null for an object without owner.
  TQuillonDataAbstractObject* Root() const;
  /// The root if that is a storage, else null. A storage has none itself.
  TQuillonDataStorage* Storage() const;
  bool HasStorage() const { return Storage() != nullptr; }
  /// This object as a storage; null for all others.
  virtual TQuillonDataStorage* AsStorage() { return nullptr; }

  /// Stamps the object and passes the change up to the storage.
  virtual void Change();

  /// The object that stands for AnObject in this object's data: itself if it has the same root, else the one
  /// with its identity in AList, which may be null; null if there is none.
  virtual TQuillonDataAbstractObject* ResolveReference(const TQuillonDataList* AList,
                                                       TQuillonDataAbstractObject* AnObject) const;

  virtual void ReadProperties(TQuillonDataObjectReader& AReader);
  virtual void WriteProperties(TQuillonDataObjectWriter& AWriter);

  /// Compares, stores, and reports the change. For fields without a rule of their own.
  template <class TField, class TValue>
  void Set(TField& AField, TValue&& AValue) {
    if (!(AField == AValue)) {
      AField = std::forward<TValue>(AValue);
      Change();
    }
  }

 protected:
  /// Creates owned parts and sets defaults that no member initialiser can; stamps the creation.
  virtual void InitProperties();
  /// Resets the content, ahead of a load of a storage.
  virtual void ClearProperties() {}
  /// Frees owned parts, and in the model every reference to this object.
  virtual void FreeProperties();

 private:
  friend class TQuillonDataClass;
  friend class TQuillonDataHolder;
  friend class TQuillonDataObjectRegistry;
  friend class TQuillonDataStorage;
  friend void QuillonDataObjects::Free(TQuillonDataAbstractObject* AnObject);

  void AfterConstruction(TQuillonDataAbstractObject* AnOwner, const TGUID& AnID);
  void BeforeDestruction();

  std::uint32_t FHolders = 0;
  mutable bool FHasID = false;
  bool FRegistered = false;
};

/// An object that lists and references can hold: the unit of change logging.
class TQuillonDataObject : public TQuillonDataAbstractObject {
 public:
  static const TQuillonDataClass& Class();

  /// Takes this object out of its owner, if that is a list.
  void Extract();
};

/// The right to hold an object: whoever owns one counts here, and the last to let go frees it.
///
/// A data file may name one object in two owning places, say a time frame that is both the standard one and
/// an item of the plan's list. An object that nobody holds belongs to its storage, which frees it at its end:
/// that is a reference whose target never came, or an object that was taken out of its list.
class TQuillonDataHolder {
 public:
  /// AHolder becomes the owner: a list, or the object that a nested object belongs to.
  static void Hold(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder);
  /// Frees the object if this was its last holder, but not while the storage is read.
  static void Release(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder);
  /// Lets go without freeing.
  static void Drop(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder);
};

/// Handle of an object that stands in no list, a storage above all.
struct TQuillonDataRelease {
  void operator()(TQuillonDataAbstractObject* AnObject) const { QuillonDataObjects::Free(AnObject); }
};
template <class T>
using TQuillonDataHandle = std::unique_ptr<T, TQuillonDataRelease>;

/// Owner of one nested object of class T; the row of a class table reads and writes through it.
template <class T>
class TQuillonOwned {
 public:
  TQuillonOwned() = default;
  TQuillonOwned(const TQuillonOwned&) = delete;
  TQuillonOwned& operator=(const TQuillonOwned&) = delete;
  ~TQuillonOwned() = default;

  T* Get() const { return static_cast<T*>(FObject); }
  T* operator->() const { return Get(); }
  T& operator*() const { return *Get(); }
  explicit operator bool() const { return FObject != nullptr; }

  /// Holds another object, or none; frees the one before unless somebody else holds it.
  void Take(TQuillonDataObject* AnObject, TQuillonDataAbstractObject& AnOwner) {
    if (AnObject == FObject) {
      return;
    }
    if (AnObject != nullptr) {
      TQuillonDataHolder::Hold(*AnObject, AnOwner);
    }
    if (TQuillonDataObject* const Old = std::exchange(FObject, AnObject); Old != nullptr) {
      TQuillonDataHolder::Release(*Old, AnOwner);
    }
  }

 private:
  TQuillonDataObject* FObject = nullptr;
};
