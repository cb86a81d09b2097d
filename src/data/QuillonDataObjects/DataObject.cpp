#include "QuillonDataObjects/DataObject.h"

#include <cassert>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/DataList.h"
#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonDataObjects/Storage.h"

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

std::string TQuillonDataAbstractObject::GetDisplayName() const {
  return GetPublicClassName() + " (ID: " + QuillonGuid::Braced(ID()) + ")";
}

const TGUID& TQuillonDataAbstractObject::ID() const {
  if (!FHasID) {
    FID = QuillonGuid::New();
    FHasID = true;
  }
  return FID;
}

void TQuillonDataAbstractObject::SetID(const TGUID& AnID) {
  if (FHasID && AnID == FID) {
    return;
  }
  TQuillonDataStorage* const Store = FRegistered ? Storage() : nullptr;
  if (Store != nullptr) {
    Store->Registry().RemoveObject(*this);
  }
  FID = AnID;
  FHasID = true;
  if (Store != nullptr) {
    Store->Registry().AddObject(*this);
  }
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

void TQuillonDataAbstractObject::Change() {
  FChanged = QuillonDateTime::Now();
  if (HasStorage()) {
    FOwner->Change();
  }
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
  // An object that a reader makes gets the stamps of the file.
  const TQuillonDataStorage* const Store = Storage();
  if (Store == nullptr || !Store->IsChangeTrackingLocked()) {
    FCreated = QuillonDateTime::Now();
    FChanged = FCreated;
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

void TQuillonDataAbstractObject::WriteProperties(TQuillonDataObjectWriter& AWriter) { AWriter.WriteRows(*this); }

void TQuillonDataAbstractObject::AfterConstruction(TQuillonDataAbstractObject* AnOwner, const TGUID& AnID) {
  FOwner = AnOwner;
  FID = AnID;
  FHasID = true;
  TQuillonDataStorage* const Store = AnOwner == nullptr ? nullptr : Storage();
  if (Store != nullptr) {
    Store->Registry().AddObject(*this);
  }
  InitProperties();
}

void TQuillonDataAbstractObject::BeforeDestruction() {
  if (FRegistered) {
    if (TQuillonDataStorage* const Store = Storage()) {
      Store->Registry().RemoveObject(*this);
    }
  }
  FreeProperties();
}

const TQuillonDataClass& TQuillonDataObject::Class() {
  static const TQuillonDataClass Class =
      DescribeAbstractClass<TQuillonDataObject, TQuillonDataAbstractObject>("TQuillonDataObject");
  return Class;
}

void TQuillonDataObject::Extract() {
  if (auto* const List = dynamic_cast<TQuillonDataList*>(FOwner)) {
    List->Extract(this);
  }
}

void TQuillonDataHolder::Hold(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder) {
  ++AnObject.FHolders;
  AnObject.SetOwner(&AHolder);
}

void TQuillonDataHolder::Release(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder) {
  assert(AnObject.FHolders > 0);
  TQuillonDataStorage* const Store = AHolder.AsStorage() != nullptr ? AHolder.AsStorage() : AHolder.Storage();
  if (AnObject.FHolders > 1 || (Store != nullptr && Store->IsReading())) {
    Drop(AnObject, AHolder);
    return;
  }
  AnObject.FHolders = 0;
  QuillonDataObjects::Free(&AnObject);
}

void TQuillonDataHolder::Drop(TQuillonDataObject& AnObject, TQuillonDataAbstractObject& AHolder) {
  assert(AnObject.FHolders > 0);
  --AnObject.FHolders;
  if (AnObject.FOwner == &AHolder) {
    AnObject.SetOwner(AHolder.AsStorage() != nullptr ? &AHolder : AHolder.Storage());
  }
}

namespace QuillonDataObjects {

void Free(TQuillonDataAbstractObject* AnObject) {
  if (AnObject != nullptr) {
    AnObject->BeforeDestruction();
    delete AnObject;
  }
}

}  // namespace QuillonDataObjects
