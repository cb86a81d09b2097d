#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "QuillonDataObjects/Operations.h"
#include "QuillonDataObjects/UserName.h"
#include "QuillonStreams/Objects.h"

class TQuillonDataStorage;

/// What users did to a storage, as operations that can be played back on another copy of it. While the log is locked,
/// what happens is part of an operation that is told as a whole.
///
/// On a stream: whether the log is overfilled, and if not the number of operations and each of them.
class TQuillonDataChangeLog final : public TQuillonPersistent {
 public:
  TQuillonUserName FUserName;        ///< in whose name the storage is worked on
  std::int32_t FOperationLimit = 0;  ///< what merging and loading may bring the log to; 0 for no limit

  TQuillonDataChangeLog() = default;
  explicit TQuillonDataChangeLog(std::string_view AnUserName) : FUserName(AnUserName) {}

  static const TQuillonPersistentClass& Class();
  const TQuillonPersistentClass& PersistentClass() const override { return Class(); }
  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  /// Adds the operations read to those that are there. The log stays as it is if that raises.
  /// @throws EQuillonReaderError
  void ReadProperties(TQuillonObjectReader& AReader) override;

  /// A log records from here on.
  void Activate() { FActive = true; }
  /// Stops recording and forgets all operations.
  void Deactivate();
  bool IsActive() const { return FActive; }
  void Lock() { ++FLockCount; }
  /// Stops at 0.
  void Unlock() { FLockCount -= FLockCount > 0 ? 1 : 0; }
  bool IsLocked() const { return FLockCount > 0; }
  bool IsRecording() const { return FActive && FLockCount == 0; }

  /// What happens to an object or a list, each recorded while the log is active and not locked. A record of what
  /// happens to an object takes the place of the last one if that tells of the same object: a burst of changes costs
  /// one record, and an object that is made and freed again none.
  void RecordCreation(TQuillonDataObject& AnObject);
  void RecordModification(TQuillonDataObject& AnObject);
  void RecordRelease(TQuillonDataObject& AnObject);
  /// Ahead of the change of the list.
  /// @param AnIndex may be QuillonDataObjects::AnyPlace
  void RecordInsertion(TQuillonDataList& AList, int AnIndex, TQuillonDataObject& AnItem);
  void RecordDeletion(TQuillonDataList& AList, TQuillonDataObject& AnItem);
  void RecordClearance(TQuillonDataList& AList);
  void RecordMove(TQuillonDataList& AList, int ANewIndex, TQuillonDataObject& AnItem);
  /// Takes the last record back, if there is one.
  void DropLast();
  /// Something has happened that could not be recorded, or not wholly: the log cannot be played back any more.
  void Spoil() {
    FOperations.clear();
    FOverfilled = true;
  }

  int Count() const { return static_cast<int>(FOperations.size()); }
  bool IsEmpty() const { return FOperations.empty(); }
  /// @throws EQuillonCollectionError for an index outside of the log
  const TQuillonDataOperation& GetOperation(int AnIndex) const;
  /// True for a log that has dropped operations and cannot be played back any more.
  bool HasTooMuchChanges() const { return FOverfilled; }
  /// Forgets all operations, and that some were dropped.
  void Clear();
  /// Appends copies of another log's operations, which may be null.
  void Add(const TQuillonDataChangeLog* AChangeLog);

  /// Does to a storage what the log tells, all of it or nothing; what it does is not recorded.
  /// @return false for an empty log
  /// @throws EQuillonDataConflict for what others have changed since; EQuillonReaderError,
  ///   EQuillonDataObjectReaderError for objects that cannot be read. The storage is as it was then, but made anew:
  ///   pointers into it are no longer valid.
  bool Playback(TQuillonDataStorage& AStorage) const;

 private:
  bool IsLast(TQuillonDataOperationKind AKind, const TQuillonDataObject& AnObject) const;
  void Record(TQuillonDataOperationKind AKind, const TQuillonDataEvent& AnEvent, bool ReplacesLast = false);
  bool Exceeds(std::size_t ACount) const;

  std::vector<TQuillonDataOperation> FOperations;
  int FLockCount = 0;
  bool FActive = false;
  bool FOverfilled = false;
};

/// Keeps a change log locked for as long as it lives; may have none.
class TQuillonDataChangeLogLock {
 public:
  explicit TQuillonDataChangeLogLock(TQuillonDataChangeLog* ALog) : FLog(ALog) {
    if (FLog != nullptr) {
      FLog->Lock();
    }
  }
  TQuillonDataChangeLogLock(const TQuillonDataChangeLogLock&) = delete;
  TQuillonDataChangeLogLock& operator=(const TQuillonDataChangeLogLock&) = delete;
  ~TQuillonDataChangeLogLock() {
    if (FLog != nullptr) {
      FLog->Unlock();
    }
  }

 private:
  TQuillonDataChangeLog* FLog;
};
