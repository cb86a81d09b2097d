#include "QuillonDataObjects/ChangeLog.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>
#include <utility>

#include "QuillonDataObjects/DataObject.h"

namespace {

using TKind = TQuillonDataOperationKind;

}  // namespace

const TQuillonPersistentClass& TQuillonDataChangeLog::Class() {
  static const TQuillonPersistentClass Class{
      "TQuillonDataChangeLog",
      []() -> std::shared_ptr<TQuillonPersistent> { return std::make_shared<TQuillonDataChangeLog>(); },
      {}};
  return Class;
}

void TQuillonDataChangeLog::WriteProperties(TQuillonObjectWriter& AWriter) const {
  TQuillonPersistent::WriteProperties(AWriter);
  AWriter.WriteBoolean(FOverfilled);
  if (FOverfilled) {
    return;
  }
  if (FOperations.size() > std::numeric_limits<std::int32_t>::max()) {
    throw EQuillonWriterError();
  }
  AWriter.WriteLongInt(static_cast<std::int32_t>(FOperations.size()));
  for (const TQuillonDataOperation& Operation : FOperations) {
    Operation.Write(AWriter);
  }
}

void TQuillonDataChangeLog::ReadProperties(TQuillonObjectReader& AReader) {
  TQuillonPersistent::ReadProperties(AReader);
  if (AReader.ReadBoolean()) {
    FOverfilled = true;
    return;
  }
  const std::int32_t Count = AReader.ReadLongInt();
  if (Count < 0) {
    throw EQuillonReaderError();
  }
  if (Exceeds(static_cast<std::size_t>(Count))) {
    Spoil();
    return;
  }
  // The count is not believed: it reserves nothing.
  std::vector<TQuillonDataOperation> Operations;
  std::generate_n(std::back_inserter(Operations), Count, [&] { return TQuillonDataOperation::Read(AReader); });
  std::ranges::move(Operations, std::back_inserter(FOperations));
}

void TQuillonDataChangeLog::RecordCreation(TQuillonDataObject& AnObject) {
  Record(TKind::Creation, {.Object = &AnObject});
}

void TQuillonDataChangeLog::RecordModification(TQuillonDataObject& AnObject) {
  try {
    const bool IsNew = IsLast(TKind::Creation, AnObject);
    Record(IsNew ? TKind::Creation : TKind::Modification, {.Object = &AnObject},
           IsNew || IsLast(TKind::Modification, AnObject));
  } catch (...) {
    Spoil();
    throw;
  }
}

void TQuillonDataChangeLog::RecordRelease(TQuillonDataObject& AnObject) {
  if (IsRecording() && IsLast(TKind::Creation, AnObject)) {
    DropLast();
  } else {
    Record(TKind::Release, {.Object = &AnObject}, IsLast(TKind::Modification, AnObject));
  }
}

void TQuillonDataChangeLog::RecordInsertion(TQuillonDataList& AList, int AnIndex, TQuillonDataObject& AnItem) {
  Record(TKind::Insertion, {.Object = &AnItem, .List = &AList, .Index = AnIndex});
}

void TQuillonDataChangeLog::RecordDeletion(TQuillonDataList& AList, TQuillonDataObject& AnItem) {
  Record(TKind::Deletion, {.Object = &AnItem, .List = &AList});
}

void TQuillonDataChangeLog::RecordClearance(TQuillonDataList& AList) { Record(TKind::Clearance, {.List = &AList}); }

void TQuillonDataChangeLog::RecordMove(TQuillonDataList& AList, int ANewIndex, TQuillonDataObject& AnItem) {
  Record(TKind::Move, {.Object = &AnItem, .List = &AList, .Index = ANewIndex});
}

void TQuillonDataChangeLog::DropLast() {
  if (!FOperations.empty()) {
    FOperations.pop_back();
  }
}

bool TQuillonDataChangeLog::IsLast(TKind AKind, const TQuillonDataObject& AnObject) const {
  return !FOperations.empty() && FOperations.back().FKind == AKind && FOperations.back().FObjectID == AnObject.ID();
}

void TQuillonDataChangeLog::Record(TKind AKind, const TQuillonDataEvent& AnEvent, bool ReplacesLast) {
  if (!IsRecording()) {
    return;
  }
  if (!ReplacesLast) {
    FOperations.emplace_back();
  }
  try {
    FOperations.back() = TQuillonDataOperation::Record(AKind, FUserName.Text(), AnEvent);
  } catch (...) {
    if (!ReplacesLast) {
      DropLast();
    }
    throw;
  }
}

void TQuillonDataChangeLog::Deactivate() {
  FActive = false;
  Clear();
}

const TQuillonDataOperation& TQuillonDataChangeLog::GetOperation(int AnIndex) const {
  if (AnIndex < 0 || AnIndex >= Count()) {
    throw EQuillonCollectionError("Listenindex überschreitet das Maximum (" + std::to_string(AnIndex) + ")");
  }
  return FOperations[static_cast<std::size_t>(AnIndex)];
}

void TQuillonDataChangeLog::Clear() {
  FOperations.clear();
  FOverfilled = false;
}

void TQuillonDataChangeLog::Add(const TQuillonDataChangeLog* AChangeLog) {
  if (AChangeLog == nullptr) {
    return;
  }
  if (AChangeLog->FOverfilled || (!AChangeLog->IsEmpty() && Exceeds(AChangeLog->FOperations.size()))) {
    Spoil();
    return;
  }
  // The other one may be this log.
  std::vector<TQuillonDataOperation> Copies = AChangeLog->FOperations;
  std::ranges::move(Copies, std::back_inserter(FOperations));
}

bool TQuillonDataChangeLog::Exceeds(std::size_t ACount) const {
  return FOperationLimit != 0 && std::cmp_greater(FOperations.size() + ACount, FOperationLimit);
}
