#include "QuillonDataObjects/DataObject.h"

#include <cxxabi.h>

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <iterator>
#include <mutex>
#include <span>
#include <typeinfo>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/DataList.h"
#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonDataObjects/Storage.h"
#include "QuillonValues.h"

namespace {

/// The storage's change log if it records; null else.
TQuillonDataChangeLog* RecordingLog(TQuillonDataStorage* AStorage) {
  return AStorage != nullptr && AStorage->ChangeLog().IsRecording() ? &AStorage->ChangeLog() : nullptr;
}

}  // namespace

const TQuillonDataClass& TQuillonDataAbstractObject::Class() {
  using T = TQuillonDataAbstractObject;
  static const TQuillonDataClass Class = TQuillonDataClassBuilder("TQuillonDataAbstractObject", {}, nullptr, nullptr)
                                             .Int64<&T::FVersion>("Version")
                                             .Stamp()
                                             .DateTime<&T::FChanged>("Changed")
                                             .Stamp()
                                             .String<&T::FChangedBy>("ChangedBy")
                                             .Stamp()
                                             .DateTime<&T::FCreated>("Created")
                                             .Stamp()
                                             .String<&T::FCreatedBy>("CreatedBy")
                                             .Stamp();
  return Class;
}

std::string TQuillonDataAbstractObject::GetPublicClassName() const { return std::string(DataClass().Tag()); }

std::string TQuillonDataAbstractObject::GetPrivateClassName() const {
  const char* const Name = typeid(*this).name();
  int Status = 0;
  const std::unique_ptr<char, void (*)(void*)> Plain(abi::__cxa_demangle(Name, nullptr, nullptr, &Status), std::free);
  return Plain != nullptr ? Plain.get() : Name;
}

bool TQuillonDataObject::Equals(const TQuillonObject& AnObject) const {
  const auto* const Other = dynamic_cast<const TQuillonDataObject*>(&AnObject);
  return Other != nullptr && Other->ID() == ID();
}

std::int32_t TQuillonDataObject::GetHashCode() const { return QuillonValues::HashOf(ID()); }

std::string TQuillonDataAbstractObject::GetDisplayName() const {
  return GetPublicClassName() + " (ID: " + QuillonGuid::Braced(ID()) + ")";
}

void TQuillonDataAbstractObject::MakeID() const {
  // One for all objects: what asks at the same time are the few threads that write a storage.
  static std::mutex Mutex;
  const std::scoped_lock Lock(Mutex);
  if (!FHasID) {
    FID = QuillonGuid::New();
    // Whoever reads the object may be the first to ask.
    const_cast<TQuillonDataAbstractObject*>(this)->Register();
    FHasID.store(true, std::memory_order_release);
  }
}

void TQuillonDataAbstractObject::SetID(const TGUID& AnID) {
  if (FHasID && AnID == FID) {
    return;
  }
  Unregister();
  FID = AnID;
  FHasID = true;
  Register();
}

void TQuillonDataAbstractObject::Register() {
  if (TQuillonDataStorage* const Store = Storage()) {
    EnterRegistry(*Store);
  }
}

void TQuillonDataAbstractObject::EnterRegistry(TQuillonDataStorage& AStorage) {
  if (TQuillonDataList* const List = AsList()) {
    AStorage.Registry().AddList(*List);
  } else {
    AStorage.Registry().AddObject(*this);
  }
}

void TQuillonDataAbstractObject::LeaveRegistry() {
  if (TQuillonDataStorage* const Store = Storage()) {
    LeaveRegistry(*Store);
  }
}

void TQuillonDataAbstractObject::LeaveRegistry(TQuillonDataStorage& AStorage) {
  if (TQuillonDataList* const List = AsList()) {
    AStorage.Registry().RemoveList(*List);
  } else {
    AStorage.Registry().RemoveObject(*this);
  }
}

std::vector<TQuillonDataObject*> TQuillonDataAbstractObject::Parts() {
  std::vector<TQuillonDataObject*> Found;
  for (const TQuillonDataRow& Row : DataClass().Rows()) {
    if (Row.Kind == TQuillonRowKind::List) {
      const TQuillonDataList& List = Row.As<TQuillonDataRow::TItems>().Field(*this);
      std::ranges::copy_if(List.Items(), std::back_inserter(Found), [&](const TQuillonDataObject* AnItem) {
        return AnItem != nullptr && AnItem->FOwner == &List;
      });
    } else if (Row.Kind == TQuillonRowKind::Object) {
      TQuillonDataObject* const Part = Row.As<TQuillonDataRow::TPointer>().Get(*this);
      if (Part != nullptr && Part->FOwner == this) {
        Found.push_back(Part);
      }
    }
  }
  return Found;
}

template <class TVisit>
void TQuillonDataAbstractObject::VisitOwned(const TVisit& AVisit) {
  AVisit(*this);
  for (const TQuillonDataClass::TListField List : DataClass().Lists()) {
    AVisit(List(*this));
  }
  for (TQuillonDataObject* Part : Parts()) {
    Part->VisitOwned(AVisit);
  }
}

void TQuillonDataAbstractObject::MoveTo(TQuillonDataAbstractObject& AnOwner) {
  const TQuillonDataStorage* const Other = AnOwner.AsStorage() != nullptr ? AnOwner.AsStorage() : AnOwner.Storage();
  if (Storage() == Other) {
    FOwner = &AnOwner;
    return;
  }
  VisitOwned([](TQuillonDataAbstractObject& AnObject) { AnObject.Unregister(); });
  FOwner = &AnOwner;
  VisitOwned([](TQuillonDataAbstractObject& AnObject) {
    if (AnObject.FHasID) {
      AnObject.Register();
    }
  });
  if (TQuillonDataChangeLog* const Log = RecordingLog(Storage())) {
    RecordArrival(*Log);
  }
}

void TQuillonDataAbstractObject::RecordArrival(TQuillonDataChangeLog& ALog) {
  VisitOwned([&](TQuillonDataAbstractObject& AnObject) {
    if (AnObject.AsList() == nullptr) {
      ALog.RecordCreation(static_cast<TQuillonDataObject&>(AnObject));
    }
  });
  VisitOwned([&](TQuillonDataAbstractObject& AnObject) {
    TQuillonDataList* const List = AnObject.AsList();
    for (TQuillonDataObject* Item : List != nullptr ? List->Items() : std::span<TQuillonDataObject* const>()) {
      if (Item != nullptr && Item->Storage() == Storage()) {
        ALog.RecordInsertion(*List, QuillonDataObjects::AnyPlace, *Item);
      }
    }
  });
}

bool TQuillonDataAbstractObject::LiesWithin(const TQuillonDataAbstractObject& AnOuter) const {
  const TQuillonDataAbstractObject* Object = this;
  while (Object != nullptr && Object != &AnOuter) {
    Object = Object->FOwner;
  }
  return Object != nullptr;
}

TQuillonDataAbstractObject* TQuillonDataAbstractObject::Root() const {
  TQuillonDataAbstractObject* Object = FOwner;
  while (Object != nullptr && Object->FOwner != nullptr) {
    Object = Object->FOwner;
  }
  return Object;
}

TQuillonDataStorage* TQuillonDataAbstractObject::Storage() const {
  TQuillonDataAbstractObject* const Top = Root();
  return Top == nullptr ? nullptr : Top->AsStorage();
}

TQuillonDataStorage* TQuillonDataAbstractObject::StampChange() {
  FChanged = QuillonDateTime::Now();
  TQuillonDataStorage* const Store = Storage();
  if (Store != nullptr) {
    FOwner->Change();
    if (const TQuillonDataChangeLog& Log = Store->ChangeLog(); !Log.IsLocked()) {
      FChangedBy = Log.FUserName;
    }
  }
  return Store;
}

void TQuillonDataAbstractObject::Change() { StampChange(); }

void TQuillonDataAbstractObject::TakeStamps(const TQuillonDataAbstractObject& AnObject) {
  FVersion = AnObject.FVersion;
  FChanged = AnObject.FChanged;
  FChangedBy = AnObject.FChangedBy;
  FCreated = AnObject.FCreated;
  FCreatedBy = AnObject.FCreatedBy;
}

void TQuillonDataAbstractObject::ResetStamps() {
  FVersion = 0;
  FChanged = FCreated = 0;
  FChangedBy = FCreatedBy = TQuillonUserName();
}

TQuillonDataAbstractObject* TQuillonDataAbstractObject::ResolveReference(const TQuillonDataList* AList,
                                                                         TQuillonDataAbstractObject* AnObject) const {
  if (AnObject == nullptr || AnObject->Root() == Root()) {
    return AnObject;
  }
  if (AList != nullptr) {
    return AList->Find(AnObject->ID());
  }
  TQuillonDataStorage* const Store = Storage();
  return Store == nullptr ? nullptr : Store->Registry().GetObject(AnObject->ID(), AnObject->DataClass());
}

void TQuillonDataAbstractObject::InitProperties() {
  const TQuillonDataStorage* const Store = Storage();
  // The clock is not asked for each of a million objects that are read.
  const bool IsRead = Store != nullptr && Store->IsReading();
  FCreated = IsRead ? Store->ReadingSince() : TQuillonDateTime(QuillonDateTime::Now());
  FChanged = FCreated;
  // What a reader makes gets the stamps of its lists with their rows.
  for (const TQuillonDataClass::TListField List :
       IsRead ? std::span<const TQuillonDataClass::TListField>() : DataClass().Lists()) {
    List(*this).TakeStamps(*this);
  }
}

void TQuillonDataAbstractObject::FreeProperties() {
  for (const TQuillonDataRow& Row : DataClass().Rows()) {
    if (Row.Kind == TQuillonRowKind::List) {
      Row.As<TQuillonDataRow::TItems>().Field(*this).FreeItems();
    } else if (Row.Kind == TQuillonRowKind::Object) {
      Row.As<TQuillonDataRow::TPointer>().Set(*this, nullptr);
    }
  }
}

void TQuillonDataAbstractObject::ReadProperties(TQuillonDataObjectReader& AReader) { AReader.ReadRows(*this); }

void TQuillonDataAbstractObject::WriteProperties(TQuillonDataObjectWriter& AWriter) const { AWriter.WriteRows(*this); }

void TQuillonDataAbstractObject::AfterConstruction(TQuillonDataAbstractObject* AnOwner, const TGUID& AnID) {
  FOwner = AnOwner;
  FID = AnID;
  FHasID = true;
  TQuillonDataStorage* const Store = Storage();
  if (Store != nullptr) {
    EnterRegistry(*Store);
  }
  TQuillonDataChangeLog* const Log = RecordingLog(Store);
  {
    // The parts that the object makes for itself are told with it.
    const TQuillonDataChangeLogLock Lock(Log);
    InitProperties();
  }
  if (Log != nullptr && DataClass().DescendsFrom(TQuillonDataObject::Class())) {
    Log->RecordCreation(static_cast<TQuillonDataObject&>(*this));
  }
}

void TQuillonDataAbstractObject::BeforeDestruction() {
  if (TQuillonDataStorage* const Store = AsStorage()) {
    Store->StopBackgroundSaver();
  }
  TQuillonDataChangeLog* Log = nullptr;
  if (TQuillonDataStorage* const Store = FRegistered ? Storage() : nullptr) {
    Log = RecordingLog(Store);
    if (Log != nullptr && DataClass().DescendsFrom(TQuillonDataObject::Class())) {
      Log->RecordRelease(static_cast<TQuillonDataObject&>(*this));
    }
    LeaveRegistry(*Store);
  }
  // What goes with the object, and all references to it, is told with its end.
  const TQuillonDataChangeLogLock Lock(Log);
  try {
    FreeProperties();
  } catch (...) {
    if (Log != nullptr) {
      Log->Spoil();
    }
    throw;
  }
}

const TQuillonDataClass& TQuillonDataObject::Class() {
  static const TQuillonDataClass Class =
      DescribeAbstractClass<TQuillonDataObject, TQuillonDataAbstractObject>("TQuillonDataObject");
  return Class;
}

void TQuillonDataObject::Extract() {
  if (TQuillonDataList* const List = FOwner != nullptr ? FOwner->AsList() : nullptr) {
    List->Extract(this);
  }
}

void TQuillonDataObject::Change() {
  TQuillonDataStorage* const Store = StampChange();
  AfterStamp();
  if (TQuillonDataChangeLog* const Log = RecordingLog(Store)) {
    Log->RecordModification(*this);
  }
}

void TQuillonDataHolder::Hold(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder) {
  if (AnObject.FIsHeld) {
    if (AnObject.FHolders == nullptr) {
      AnObject.FHolders = std::make_unique<std::vector<TQuillonDataAbstractObject*>>(
          std::initializer_list<TQuillonDataAbstractObject*>{AnObject.FOwner, &AHolder});
    } else {
      AnObject.FHolders->push_back(&AHolder);
    }
  }
  AnObject.FIsHeld = true;
  AnObject.MoveTo(AHolder);
}

bool TQuillonDataHolder::IsHeldBy(const TQuillonDataObject& AnObject, const TQuillonDataAbstractObject& AHolder) {
  if (AnObject.FHolders != nullptr) {
    return std::ranges::find(*AnObject.FHolders, &AHolder) != AnObject.FHolders->end();
  }
  return AnObject.FIsHeld && AnObject.FOwner == &AHolder;
}

void TQuillonDataHolder::Release(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder) {
  const TQuillonDataStorage* const Store = AHolder.AsStorage() != nullptr ? AHolder.AsStorage() : AHolder.Storage();
  const bool IsUpdated = Store != nullptr && Store->FLetGo != nullptr;
  const bool MayBeReferredTo = Store != nullptr && Store->IsReading() && (AnObject.FIsNamed || IsUpdated);
  if (AnObject.FHolders != nullptr || MayBeReferredTo) {
    if (IsUpdated) {
      Store->FLetGo->emplace_back(AnObject.ID(), &AnObject.DataClass());
    }
    Drop(AnObject, AHolder);
    return;
  }
  assert(AnObject.FIsHeld);
  AnObject.FIsHeld = false;
  QuillonDataObjects::Free(&AnObject);
}

void TQuillonDataHolder::Drop(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder) {
  assert(AnObject.FIsHeld);
  if (AnObject.FHolders != nullptr) {
    auto& Holders = *AnObject.FHolders;
    if (const auto Found = std::ranges::find(Holders, &AHolder); Found != Holders.end()) {
      Holders.erase(Found);
    }
    if (AnObject.FOwner == &AHolder || Holders.size() == 1) {
      AnObject.MoveTo(*Holders.back());
    }
    if (Holders.size() == 1) {
      AnObject.FHolders.reset();
    }
    return;
  }
  AnObject.FIsHeld = false;
  if (AnObject.FOwner == &AHolder) {
    AnObject.SetOwner(AHolder.AsStorage() != nullptr ? &AHolder : AHolder.Storage());
  }
}

void TQuillonDataHolder::GiveBack(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder,
                                  TQuillonDataAbstractObject* AnOwner) {
  TQuillonDataStorage* Store = nullptr;
  if (AnOwner != nullptr) {
    Store = AnOwner->AsStorage() != nullptr ? AnOwner->AsStorage() : AnOwner->Storage();
  }
  // It has never left.
  const TQuillonDataChangeLogLock Lock(Store != nullptr ? &Store->ChangeLog() : nullptr);
  Drop(AnObject, AHolder);
  if (AnOwner != nullptr) {
    AnObject.MoveTo(*AnOwner);
  } else {
    AnObject.VisitOwned([](TQuillonDataAbstractObject& AnOwned) { AnOwned.Unregister(); });
    AnObject.FOwner = nullptr;
  }
}

void TQuillonDataHolder::Keep(TQuillonDataObject& AnObject) {
  AnObject.VisitOwned([](TQuillonDataAbstractObject& AnOwned) { AnOwned.FIsSwept = false; });
}

bool TQuillonDataHolder::LeaveLists(TQuillonDataObject& AnObject, TQuillonDataStorage& AStorage) {
  if (!AnObject.FIsHeld) {
    return true;
  }
  // The last list to let go would free it.
  struct THeld {
    TQuillonDataObject& Object;
    TQuillonDataStorage& Storage;
    THeld(TQuillonDataObject& AHeld, TQuillonDataStorage& AHolder) : Object(AHeld), Storage(AHolder) {
      Hold(Object, Storage);
    }
    THeld(const THeld&) = delete;
    THeld& operator=(const THeld&) = delete;
    ~THeld() { Drop(Object, Storage); }
  };
  {
    const THeld Held(AnObject, AStorage);
    for (TQuillonDataAbstractObject* Holder : std::vector(*AnObject.FHolders)) {
      if (TQuillonDataList* const List = Holder->AsList()) {
        List->RemoveObject(&AnObject);
      }
    }
  }
  return !AnObject.FIsHeld;
}

namespace QuillonDataObjects {

void Free(TQuillonDataAbstractObject* AnObject) {
  if (AnObject == nullptr) {
    return;
  }
  try {
    AnObject->BeforeDestruction();
  } catch (...) {
    AnObject->FIsSwept = false;
    AnObject->Register();
    // If nobody holds it any more, its storage frees it.
    if (TQuillonDataStorage* const Store = AnObject->Storage(); Store != nullptr && !AnObject->FIsHeld) {
      AnObject->SetOwner(Store);
    }
    throw;
  }
  delete AnObject;
}

}  // namespace QuillonDataObjects
