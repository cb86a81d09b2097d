#pragma once

#include <string>

#include "QuillonGuid.h"
#include "QuillonIO.h"
#include "QuillonStreams/Objects.h"

class TQuillonDataStorage;

/// A state of a storage in memory: content and change log.
class TQuillonDataMemorySnapshot {
 public:
  /// @param AStorage must outlive the snapshot
  explicit TQuillonDataMemorySnapshot(TQuillonDataStorage& AStorage);

  /// Keeps the present state; nothing counts as unsaved afterwards.
  void Request();
  /// Makes the storage what it was; its objects are others then.
  void Rollback() { RestoreTo(FStorage); }
  /// The same for another storage of the class.
  void RestoreTo(TQuillonDataStorage& AStorage);

 private:
  TQuillonDataStorage& FStorage;
  TQuillonMemoryStream FStream;
};

/// A state of a storage in a file beside the storage's own, "plan.velmora.{...}.snapshot". What is persistent is its
/// identity and description.
class TQuillonDataSnapshot final : public TQuillonPersistent {
 public:
  explicit TQuillonDataSnapshot(TQuillonDataStorage& AStorage) : FStorage(AStorage) {}

  std::string FDescription;
  TGUID FID = QuillonGuid::New();

  const TQuillonPersistentClass& PersistentClass() const override;
  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  void ReadProperties(TQuillonObjectReader& AReader) override;

  /// Empty while the storage has no file.
  std::string FileName() const;
  /// @throws EQuillonFileHandleError
  void SaveToFile() const;
  /// Does nothing if there is no such file.
  /// @throws EQuillonFileHandleError, EQuillonReaderError, EQuillonDataObjectReaderError
  void LoadFromFile() const;
  void DeleteFile() const;

 private:
  TQuillonDataStorage& FStorage;
};
