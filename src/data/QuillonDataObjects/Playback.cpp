#include "QuillonDataObjects/Playback.h"

#include <algorithm>
#include <utility>

#include "QuillonDataObjects/ChangeLog.h"
#include "QuillonDataObjects/Content.h"
#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/DataList.h"
#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonDataObjects/Snapshot.h"
#include "QuillonDataObjects/Storage.h"
#include "QuillonText.h"

namespace {

using TKind = TQuillonDataOperationKind;

[[noreturn]] void RaiseMissing(TQuillonDataConflictType AType, const std::string& ADisplayName) {
  throw EQuillonDataConflict(AType, ADisplayName + " existiert nicht mehr in der Zieldatenmenge");
}

/// @param AVersion what the operation has made of the object or list
void CheckVersion(TQuillonDataConflictType AType, std::int64_t AVersion, const TQuillonDataAbstractObject& AnObject,
                  const std::string& ADisplayName) {
  if (AVersion <= AnObject.FVersion) {
    throw EQuillonDataConflict(AType, "\"" + ADisplayName + "\" wurde bereits von Benutzer \"" +
                                          AnObject.FChangedBy.Text() + "\" modifiziert.");
  }
}

void StampChange(TQuillonDataAbstractObject& AnObject, const TQuillonDataOperation& AnOperation) {
  AnObject.FChanged = QuillonDateTime::Now();
  AnObject.FChangedBy = TQuillonUserName(AnOperation.FUserName);
}

bool NamesObject(const TQuillonDataOperation& AnOperation) { return AnOperation.FKind != TKind::Clearance; }

/// As Contains, without a walk through a list that owns its items.
bool Contains(const TQuillonDataList& AList, const TQuillonDataObject& AnItem) {
  return AList.IsItemOwner() ? TQuillonDataHolder::IsHeldBy(AnItem, AList) : AList.Contains(&AnItem);
}

}  // namespace

bool TQuillonDataChangeLog::Playback(TQuillonDataStorage& AStorage) const {
  if (FOverfilled) {
    throw EQuillonDataConflict(ctTooMuchChanges, "Die Zahl der abzugleichenden Änderungen ist zu groß");
  }
  if (IsEmpty()) {
    return false;
  }
  const TQuillonDataChangeLogLock Lock(&AStorage.ChangeLog());
  const bool WasModified = AStorage.FModified;
  {
    TQuillonDataMemorySnapshot Snapshot(AStorage);
    Snapshot.Request();
    AStorage.FModified = WasModified;
    const TQuillonStorageStateGuard State(AStorage, TQuillonDataStorageState::dssPlayback);
    try {
      TQuillonDataPlayback(AStorage, FOperations).Run();
    } catch (...) {
      Snapshot.Rollback();
      AStorage.FModified = WasModified;
      throw;
    }
  }
  AStorage.Change();
  return true;
}

TQuillonDataPlayback::TQuillonDataPlayback(TQuillonDataStorage& AStorage, std::span<const TOperation> AnOperations)
    : FStorage(AStorage), FOperations(AnOperations), FNext(AnOperations.size(), AnOperations.size()) {
  std::unordered_map<TGUID, std::size_t, TGuidHash> Nearest;
  for (std::size_t I = FOperations.size(); I-- > 0;) {
    if (NamesObject(FOperations[I])) {
      const auto [Found, IsLast] = Nearest.try_emplace(FOperations[I].FObjectID, I);
      if (!IsLast) {
        FNext[I] = std::exchange(Found->second, I);
      }
    }
  }
}

void TQuillonDataPlayback::Run() {
  for (const TOperation& Operation : FOperations) {
    (this->*Operation.Class().Play)(Operation);
  }
}

const TQuillonDataOperation* TQuillonDataPlayback::NextOf(const TOperation& AnOperation) const {
  const std::size_t Next = FNext[static_cast<std::size_t>(&AnOperation - FOperations.data())];
  return Next < FOperations.size() ? &FOperations[Next] : nullptr;
}

const TQuillonDataClass& TQuillonDataPlayback::ClassOf(const TOperation& AnOperation) const {
  const auto& Classes = TQuillonDataClassRegistry::Instance();
  const std::string& Tag = AnOperation.FObjectClassName;
  const TQuillonDataClass* const First = Tag.empty() ? nullptr : Classes.FindClass(Tag, TQuillonDataObject::Class());
  if (First == nullptr) {
    throw EQuillonDataObjectReaderError("Klasse " + QuillonText::Quoted(Tag) + " wurde nicht registriert.");
  }
  // Two classes may share the tag. The list that the object is put in knows which of them is meant.
  const TOperation* Next = NextOf(AnOperation);
  while (Next != nullptr && Next->FKind != TKind::Insertion && Next->FKind != TKind::Creation) {
    Next = NextOf(*Next);
  }
  if (Next != nullptr && Next->FKind == TKind::Insertion) {
    const TQuillonDataList* const List = FStorage.Registry().GetList(Next->FListID);
    const TQuillonDataClass* const Class = List != nullptr ? Classes.FindClass(Tag, List->ItemClass()) : nullptr;
    if (Class != nullptr) {
      return *Class;
    }
  }
  // Else what refers to the object already does.
  const TQuillonDataObject* const Bare = Find(AnOperation, TQuillonDataObject::Class());
  return Bare != nullptr && Bare->DataClass().Tag() == Tag ? Bare->DataClass() : *First;
}

TQuillonDataObject* TQuillonDataPlayback::Find(const TOperation& AnOperation, const TQuillonDataClass& AClass) const {
  return static_cast<TQuillonDataObject*>(FStorage.Registry().GetObject(AnOperation.FObjectID, AClass));
}

TQuillonDataObject& TQuillonDataPlayback::Require(const TOperation& AnOperation,
                                                  const TQuillonDataClass& AClass) const {
  TQuillonDataObject* const Object = Find(AnOperation, AClass);
  if (Object == nullptr) {
    RaiseMissing(ctObjectMissing, AnOperation.FObjectDisplayName);
  }
  return *Object;
}

TQuillonDataList& TQuillonDataPlayback::RequireList(const TOperation& AnOperation) const {
  TQuillonDataList* const List = FStorage.Registry().GetList(AnOperation.FListID);
  if (List == nullptr) {
    RaiseMissing(ctObjectListMissing, AnOperation.FListDisplayName);
  }
  return *List;
}

void TQuillonDataPlayback::CheckList(const TOperation& AnOperation, const TQuillonDataList& AList) const {
  if (!AList.FItemsAreIndependent) {
    CheckVersion(ctObjectListModified, AnOperation.FListVersion, AList, AnOperation.FListDisplayName);
  }
}

void TQuillonDataPlayback::Finish(const TOperation& AnOperation, TQuillonDataObject* AnItem) {
  // What goes with an item may be the owner of the list.
  TQuillonDataList* const List = FStorage.Registry().GetList(AnOperation.FListID);
  if (List == nullptr) {
    return;
  }
  StampChange(*List, AnOperation);
  List->FVersion = std::max(List->FVersion, AnOperation.FListVersion);
  List->AfterOperation(AnOperation.FKind, AnItem);
  if (AnItem != nullptr) {
    AnItem->AfterOperation(AnOperation.FKind, List);
  }
}

void TQuillonDataPlayback::Create(const TOperation& AnOperation) {
  const TQuillonDataClass& Class = ClassOf(AnOperation);
  TQuillonDataObject* Object = Find(AnOperation, Class);
  if (Object != nullptr && TQuillonDataHolder::IsHeld(*Object)) {
    return;
  }
  if (Object == nullptr) {
    Object = Class.Create(&FStorage, AnOperation.FObjectID);
  }
  QuillonDataObjects::ReadContent(FStorage, *Object, AnOperation.FObjectData);
  StampChange(*Object, AnOperation);
  Object->FCreated = Object->FChanged;
  Object->FCreatedBy = Object->FChangedBy;
  Object->AfterOperation(AnOperation.FKind, nullptr);
}

void TQuillonDataPlayback::Modify(const TOperation& AnOperation) {
  TQuillonDataObject& Object = Require(AnOperation, TQuillonDataObject::Class());
  CheckVersion(ctObjectModified, AnOperation.FObjectVersion, Object, AnOperation.FObjectDisplayName);
  Object.BeforeOperation(AnOperation.FKind);
  QuillonDataObjects::ReadContent(FStorage, Object, AnOperation.FObjectData);
  StampChange(Object, AnOperation);
  Object.FVersion = AnOperation.FObjectVersion;
  Object.AfterOperation(AnOperation.FKind, nullptr);
}

void TQuillonDataPlayback::Release(const TOperation& AnOperation) {
  TQuillonDataObject* const Object = Find(AnOperation, TQuillonDataObject::Class());
  if (Object == nullptr) {
    return;
  }
  CheckVersion(ctObjectModified, AnOperation.FObjectVersion, *Object, AnOperation.FObjectDisplayName);
  Object->BeforeOperation(AnOperation.FKind);
  // A part of an object has its successor with the next modification of that, and goes then.
  if (TQuillonDataHolder::LeaveLists(*Object, FStorage)) {
    QuillonDataObjects::Free(Object);
  }
}

void TQuillonDataPlayback::Insert(const TOperation& AnOperation) {
  TQuillonDataList& List = RequireList(AnOperation);
  TQuillonDataObject& Object = Require(AnOperation, List.ItemClass());
  CheckList(AnOperation, List);
  if (Contains(List, Object)) {
    return;
  }
  if (List.IsItemOwner() && List.LiesWithin(Object)) {
    throw EQuillonDataConflict(ctSemanticConflict,
                               AnOperation.FObjectDisplayName + " kann sich nicht selbst enthalten.");
  }
  List.BeforeOperation(AnOperation.FKind, &Object);
  if (AnOperation.FListIndex < 0 || AnOperation.FListIndex > List.Count()) {
    List.Add(&Object);
  } else {
    List.Insert(AnOperation.FListIndex, &Object);
  }
  Finish(AnOperation, &Object);
}

void TQuillonDataPlayback::Delete(const TOperation& AnOperation) {
  TQuillonDataList& List = RequireList(AnOperation);
  TQuillonDataObject& Object = Require(AnOperation, TQuillonDataObject::Class());
  CheckList(AnOperation, List);
  if (!Contains(List, Object)) {
    return;
  }
  Object.BeforeOperation(AnOperation.FKind);
  List.BeforeOperation(AnOperation.FKind, &Object);
  // An object of which the log tells more has only been taken out, and is put elsewhere.
  const TOperation* const Next = NextOf(AnOperation);
  if (Next != nullptr && Next->FKind != TKind::Creation) {
    List.Extract(&Object);
  } else {
    List.Remove(&Object);
  }
  Finish(AnOperation, nullptr);
}

void TQuillonDataPlayback::Clear(const TOperation& AnOperation) {
  TQuillonDataList& List = RequireList(AnOperation);
  CheckList(AnOperation, List);
  List.BeforeOperation(AnOperation.FKind, nullptr);
  List.Clear();
  Finish(AnOperation, nullptr);
}

void TQuillonDataPlayback::Move(const TOperation& AnOperation) {
  TQuillonDataList& List = RequireList(AnOperation);
  TQuillonDataObject& Object = Require(AnOperation, TQuillonDataObject::Class());
  CheckList(AnOperation, List);
  const int Index = List.IndexOf(&Object);
  if (Index < 0) {
    return;
  }
  List.BeforeOperation(AnOperation.FKind, &Object);
  const int Last = List.Count() - 1;
  List.Move(Index, AnOperation.FListIndex < 0 ? Last : std::min<int>(AnOperation.FListIndex, Last));
  Finish(AnOperation, &Object);
}
