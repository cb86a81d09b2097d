#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "QuillonDataObjects/Conflict.h"
#include "QuillonDataObjects/UserName.h"
#include "QuillonDateTime.h"
#include "QuillonGuid.h"
#include "QuillonTypes.h"

class TQuillonDataChangeLog;
class TQuillonDataClass;
class TQuillonDataList;
class TQuillonDataObject;
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
  // Ahead of all other fields, beside the class: what readers touch of objects that are there. The order leaves no gap,
  // up to a list's own flags: a plan has some hundred thousand of these.
  mutable TGUID FID;
  mutable std::atomic<bool> FHasID = false;
  bool FRegistered = false;
  bool FIsNamed = false;  ///< a document that was read names the object; set without a look at what was there
  bool FIsHeld : 1 = false;
  mutable bool FIsSwept : 1 = false;  ///< nothing refers to the object any more: it is about to be freed

 public:
  /// The stamps that every object has: the first rows of every table.
  static const TQuillonDataClass& Class();

  TQuillonUserName FCreatedBy;                   ///< user who created the object
  TQuillonDateTime FCreated;                     ///< time of creation
  TQuillonDateTime FChanged;                     ///< time of the last change
  TQuillonDataAbstractObject* FOwner = nullptr;  ///< container; a back reference that never owns
  std::int64_t FVersion = 0;                     ///< raised once by each logged operation that concerns the object
  TQuillonUserName FChangedBy;                   ///< user of the last change

  /// The description of the object's own class.
  virtual const TQuillonDataClass& DataClass() const = 0;

  /// The tag of the object's class in data files; a list's is the name of its class.
  std::string GetPublicClassName() const;
  /// The name of the object's class in this program.
  std::string GetPrivateClassName() const;

  /// Name of the object in messages; by default its class tag and GUID.
  virtual std::string GetDisplayName() const;

  /// Identity within the storage, stable across saves.
  /// A list has one only from the first time it is asked or told, and is known to its storage by it from then on.
  /// Several readers may ask at a time.
  const TGUID& ID() const {
    if (!FHasID.load(std::memory_order_acquire)) {
      MakeID();
    }
    return FID;
  }
  /// Changes the identity and re-enters the object in the registry of its storage.
  void SetID(const TGUID& AnID);

  bool HasOwner() const { return FOwner != nullptr; }
  /// Whether the way up the owners leads to the object; true for the object itself.
  bool LiesWithin(const TQuillonDataAbstractObject& AnOuter) const;
  void SetOwner(TQuillonDataAbstractObject* AnOwner) { FOwner = AnOwner; }
  /// The last object on the way up the owners; null for an object without owner.
  TQuillonDataAbstractObject* Root() const;
  /// The root if that is a storage, else null. A storage has none itself.
  TQuillonDataStorage* Storage() const;
  bool HasStorage() const { return Storage() != nullptr; }
  /// This object as a storage, or as a list; null for all others.
  virtual TQuillonDataStorage* AsStorage() { return nullptr; }
  virtual TQuillonDataList* AsList() { return nullptr; }

  /// Stamps the object and passes the change up to the storage. The user of the storage's change log is the one who
  /// changed it, unless the log is locked.
  virtual void Change();
  /// Copies the stamps and the version of another object.
  void TakeStamps(const TQuillonDataAbstractObject& AnObject);
  /// Makes the stamps and the version those of an object of which nothing is told.
  void ResetStamps();

  /// The object that stands for AnObject in this object's data: itself if it has the same root, else the one
  /// with its identity in AList, which may be null; null if there is none.
  virtual TQuillonDataAbstractObject* ResolveReference(const TQuillonDataList* AList,
                                                       TQuillonDataAbstractObject* AnObject) const;

  virtual void ReadProperties(TQuillonDataObjectReader& AReader);
  virtual void WriteProperties(TQuillonDataObjectWriter& AWriter) const;

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
  /// What a reader makes is as old as the read.
  virtual void InitProperties();
  /// Resets the content, ahead of a load of a storage.
  virtual void ClearProperties() {}
  /// Frees owned parts, and in the model every reference to this object.
  virtual void FreeProperties();
  /// Change without a record of it. @return the storage
  TQuillonDataStorage* StampChange();
  /// Leaves the registry of the storage.
  void Unregister() {
    if (FRegistered) {
      LeaveRegistry();
    }
  }

 private:
  friend class TQuillonDataClass;
  friend class TQuillonDataHolder;
  friend class TQuillonDataObjectRegistry;
  friend class TQuillonDataStorage;
  friend class TQuillonDataSweep;
  friend void QuillonDataObjects::Free(TQuillonDataAbstractObject* AnObject);

  void AfterConstruction(TQuillonDataAbstractObject* AnOwner, const TGUID& AnID);
  void BeforeDestruction();
  void MakeID() const;
  void Register();
  void EnterRegistry(TQuillonDataStorage& AStorage);
  void LeaveRegistry();
  void LeaveRegistry(TQuillonDataStorage& AStorage);
  /// Sets the owner. What comes into another storage, or leaves one, changes the registry with all that it owns.
  void MoveTo(TQuillonDataAbstractObject& AnOwner);
  /// Records this object and all that it owns as made: it comes from outside of the storage.
  void RecordArrival(TQuillonDataChangeLog& ALog);
  /// The objects that this one owns itself: items of its lists and nested ones.
  std::vector<TQuillonDataObject*> Parts();
  /// Calls AVisit with this object and all that it owns, lists included.
  template <class TVisit>
  void VisitOwned(const TVisit& AVisit);
};

/// An object that lists and references can hold: the unit of change logging.
class TQuillonDataObject : public TQuillonDataAbstractObject {
 public:
  static const TQuillonDataClass& Class();

  /// Goes by the identity, in whatever storage.
  bool Equals(const TQuillonObject& AnObject) const override;
  std::int32_t GetHashCode() const override;

  /// Takes this object out of its owner, if that is a list.
  void Extract();
  /// The change is recorded too.
  void Change() override;

  /// Around an operation on this object that a change log plays back.
  /// @param AList the list that the object enters or is moved in; else null
  /// @throws EQuillonDataConflict to refuse the operation
  virtual void BeforeOperation(TQuillonDataOperationKind /*AKind*/) {}
  virtual void AfterOperation(TQuillonDataOperationKind /*AKind*/, const TQuillonDataList* /*AList*/) {}

 protected:
  /// What else a change stamps, before it is recorded.
  virtual void AfterStamp() {}

 private:
  friend class TQuillonDataHolder;

  /// All holders, while there are several; one is the owner.
  std::unique_ptr<std::vector<TQuillonDataAbstractObject*>> FHolders;
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
  /// Frees the object if this was its last holder; but while the storage is read, only one that nobody can refer to:
  /// the document has not named it, and is all that the storage holds.
  static void Release(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder);
  /// Lets go without freeing. One of those who hold the object still becomes the owner in the holder's place.
  static void Drop(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder);
  /// As Drop, to the owner before: as if the holder had never held the object. @param AnOwner may be null
  static void GiveBack(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder,
                       TQuillonDataAbstractObject* AnOwner);
  static bool IsHeld(const TQuillonDataObject& AnObject) { return AnObject.FIsHeld; }
  /// Whether several hold the object.
  static bool IsShared(const TQuillonDataObject& AnObject) { return AnObject.FHolders != nullptr; }
  static bool IsHeldBy(const TQuillonDataObject& AnObject, const TQuillonDataAbstractObject& AHolder);
  /// An object that was about to be freed stays: it and what it owns may be referred to again.
  static void Keep(TQuillonDataObject& AnObject);
  /// Takes the object out of all lists that hold it. @return whether nobody holds it then
  static bool LeaveLists(TQuillonDataObject& AnObject, TQuillonDataStorage& AStorage);
  /// Remembers that a document names the object: others may come to refer to it as long as that is read.
  static void MarkNamed(TQuillonDataObject& AnObject) { AnObject.FIsNamed = true; }
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
