#include "QuillonDataObjects/Snapshot.h"

#include "QuillonDataObjects/Storage.h"
#include "QuillonFileSystem.h"

TQuillonDataMemorySnapshot::TQuillonDataMemorySnapshot(TQuillonDataStorage& AStorage)
    : FStorage(AStorage), FStream(0, AStorage.ExpectedSize()) {}

void TQuillonDataMemorySnapshot::Request() { FStorage.SaveToMemorySnapshot(FStream); }

void TQuillonDataMemorySnapshot::RestoreTo(TQuillonDataStorage& AStorage) { AStorage.LoadFromMemorySnapshot(FStream); }

const TQuillonPersistentClass& TQuillonDataSnapshot::PersistentClass() const {
  // Not made by readers: it belongs to a storage.
  static const TQuillonPersistentClass Class{.Name = "TQuillonDataSnapshot", .Create = nullptr, .Properties = {}};
  return Class;
}

void TQuillonDataSnapshot::WriteProperties(TQuillonObjectWriter& AWriter) const {
  TQuillonPersistent::WriteProperties(AWriter);
  AWriter.WriteGuid(FID);
  AWriter.WriteString(FDescription);
}

void TQuillonDataSnapshot::ReadProperties(TQuillonObjectReader& AReader) {
  TQuillonPersistent::ReadProperties(AReader);
  FID = AReader.ReadGuid();
  FDescription = AReader.ReadString();
}

std::string TQuillonDataSnapshot::FileName() const {
  return FStorage.FFileName.empty()
             ? std::string()
             : TQuillonFilePath::AddExtension(FStorage.FFileName, QuillonGuid::Braced(FID) + ".snapshot");
}

void TQuillonDataSnapshot::SaveToFile() const { FStorage.SaveToSnapshot(FileName()); }

void TQuillonDataSnapshot::LoadFromFile() const { FStorage.LoadFromSnapshot(FileName()); }

void TQuillonDataSnapshot::DeleteFile() const {
  if (const std::string Name = FileName(); !Name.empty() && TQuillonFileSystem::Exists(Name)) {
    TQuillonFileSystem::DeleteFile(Name);
  }
}
