#include "QuillonDataObjects/Storage.h"

#include <limits>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/XMLReader.h"
#include "QuillonDataObjects/XMLWriter.h"
#include "QuillonFileReplacement.h"
#include "QuillonFileSystem.h"

namespace {

/// The first state of a day: "plan.2026-08-01.backup".
std::string BackupNameOf(const std::string& AFileName) {
  std::string Stamp;
  QuillonDateTime::AppendDate(Stamp, QuillonDateTime::Now());
  return TQuillonFilePath::AddExtension(
      TQuillonFilePath::AddExtension(TQuillonFilePath::ChangeExtension(AFileName, ""), Stamp), "backup");
}

}  // namespace

const TQuillonDataClass& TQuillonDataStorage::Class() {
  using T = TQuillonDataStorage;
  static const TQuillonDataClass Class = DescribeAbstractClass<T, TQuillonDataAbstractObject>("TQuillonDataStorage")
                                             .Int64<&T::FFileVersion>("FileVersion")
                                             .Stamp();
  return Class;
}

void TQuillonDataStorage::InitProperties() {
  TQuillonDataAbstractObject::InitProperties();
  FFileName = GetDefaultFileName();
  FFileVersion = 0;
}

void TQuillonDataStorage::ClearProperties() { FFileVersion = 0; }

void TQuillonDataStorage::FreeProperties() {
  LockChangeTracking();
  FState = static_cast<std::uint8_t>(FState | Mask(TQuillonDataStorageState::dssClearing));
  // All at once: nobody looks an object up any more, and leaving one by one would take as long as the load.
  std::vector<TQuillonDataObject*> Loose = FObjectRegistry.Unheld();
  FObjectRegistry.Clear();
  TQuillonDataAbstractObject::FreeProperties();
  for (TQuillonDataObject* Object : Loose) {
    QuillonDataObjects::Free(Object);
  }
}

void TQuillonDataStorage::FreeUnheld() {
  // Freeing one may let others go, which then stand without a holder too.
  for (std::vector<TQuillonDataObject*> Loose = FObjectRegistry.Unheld(); !Loose.empty();
       Loose = FObjectRegistry.Unheld()) {
    for (TQuillonDataObject* Object : Loose) {
      QuillonDataObjects::Free(Object);
    }
  }
}

void TQuillonDataStorage::Change() {
  ++FChangeCount;
  if (!IsChangeTrackingLocked()) {
    FChanged = QuillonDateTime::Now();
    FModified = true;
    if (FFileVersion < std::numeric_limits<std::int64_t>::max()) {
      ++FFileVersion;
    }
  }
}

void TQuillonDataStorage::UnlockChangeTracking() {
  if (FChangeTrackingLockCount > 0) {
    --FChangeTrackingLockCount;
  }
}

void TQuillonDataStorage::Clear() {
  ++FChangeCount;
  const TQuillonChangeTrackingLock Lock(*this);
  const std::uint8_t Before = FState;
  FState = static_cast<std::uint8_t>(FState | Mask(TQuillonDataStorageState::dssClearing));
  ClearProperties();
  FreeUnheld();
  FObjectRegistry.ForgetNames();
  FState = Before;
}

void TQuillonDataStorage::NewFile() {
  BeforeNewFile();
  CloseFile();
  Clear();
  FFileName.clear();
  SetID(QuillonGuid::New());
  FModified = false;
  AfterNewFile();
}

void TQuillonDataStorage::LoadFromFile(const std::string& AFileName) {
  if (AFileName.empty()) {
    return;
  }
  if (TQuillonFileSystem::Exists(AFileName)) {
    LoadExistingFile(AFileName);
    return;
  }
  if (const std::string Template = GetTemplateFileName(); TQuillonFileSystem::Exists(Template)) {
    std::string Name = AFileName;  // it may be FFileName, which the load changes
    LoadExistingFile(Template);
    FFileName = std::move(Name);
  }
}

void TQuillonDataStorage::LoadFromFile(const std::string& AFileName, std::chrono::milliseconds ATimeOut) {
  if (!AFileName.empty() && TQuillonFileSystem::Exists(AFileName)) {
    LoadFrom(AFileName, [ATimeOut](const std::string& AName) {
      return std::make_unique<TQuillonFileStream>(AName, fomOpenRead, famShareDenyWrite, ATimeOut);
    });
    AfterLoad();
  }
}

void TQuillonDataStorage::LoadExistingFile(const std::string& AFileName) {
  LoadFrom(AFileName, [](const std::string& AName) {
    return std::make_unique<TQuillonFileStream>(AName, fomOpenRead, famShareDenyWrite, fomOpenRead, famShareDenyNone);
  });
  AfterLoad();
}

template <class TOpen>
std::unique_ptr<TQuillonFileStream> TQuillonDataStorage::LoadFrom(const std::string& AFileName, const TOpen& AnOpen) {
  std::unique_ptr<TQuillonFileStream> Stream;
  BeforeLoad();
  {
    const TQuillonChangeTrackingLock Lock(*this);
    FFileName = AFileName;
    Stream = AnOpen(FFileName);
    LoadFromXML(QuillonIO::ReadIntoBuffer(*Stream), FFileName);
  }
  FModified = false;
  return Stream;
}

void TQuillonDataStorage::OpenFile(const std::string& AFileName, bool AnIsReadOnly) {
  OpenAndLoad(AFileName, [AnIsReadOnly](const std::string& AName) {
    return std::make_unique<TQuillonFileStream>(AName, AnIsReadOnly ? fomOpenRead : fomOpenReadWrite,
                                                famShareDenyWrite);
  });
}

void TQuillonDataStorage::OpenFileExclusive(const std::string& AFileName) {
  OpenAndLoad(AFileName, [](const std::string& AName) {
    return std::make_unique<TQuillonFileStream>(AName, fomOpenReadWrite, famShareExclusive);
  });
}

void TQuillonDataStorage::OpenFileToChange(const std::string& AFileName) {
  OpenAndLoad(AFileName, [](const std::string& AName) { return QuillonIO::HoldFile(AName); });
}

template <class TOpen>
void TQuillonDataStorage::OpenAndLoad(const std::string& AFileName, const TOpen& AnOpen) {
  if (!AFileName.empty() && TQuillonFileSystem::Exists(AFileName)) {
    CloseFile();
    FFileStream = LoadFrom(AFileName, AnOpen);
    AfterLoad();
  }
}

void TQuillonDataStorage::LoadFromXML(TQuillonBuffer ADocument, std::string_view ASource) {
  TQuillonDataObjectXMLReader Reader(*this, std::move(ADocument), ASource);
  const TQuillonChangeTrackingLock Lock(*this);
  Clear();
  struct TReading {
    TQuillonDataStorage& Storage;
    ~TReading() {
      Storage.FIsReading = false;
      ++Storage.FChangeCount;
    }
  } const Reading{*this};
  const TQuillonDataChangeLogLock LogLock(&FChangeLog);
  FReadingSince = QuillonDateTime::Now();
  FIsReading = true;
  ReadProperties(Reader);
}

std::string TQuillonDataStorage::SaveToXML() const {
  TQuillonDataObjectXMLWriter Writer;
  WriteProperties(Writer);
  return Writer.Finish();
}

void TQuillonDataStorage::SaveToFile(const std::string& AFileName) {
  if (AFileName.empty()) {
    return;
  }
  BeforeStore();
  if (!HoldsFile()) {
    FFileName = AFileName;
  }
  const std::string Name = HoldsFile() ? FFileStream->FileName() : FFileName;
  const std::string Document = SaveToXML();
  TQuillonFileSystem::ForceDirectory(TQuillonFilePath::GetDirectoryName(Name));
  if (!HoldsFile() && !TQuillonFileSystem::IsFile(Name)) {
    QuillonIO::ReplaceFile(Name, Document);
  } else {
    const auto Held = HoldsFile() ? nullptr : QuillonIO::HoldFile(Name);
    TQuillonFileStream& File = HoldsFile() ? *FFileStream : *Held;
    if (FCreateBackups && File.OpenMode() != fomOpenRead) {
      QuillonIO::KeepBackup(File, BackupNameOf(Name));
    }
    QuillonIO::ReplaceFile(File, Document);
  }
  FModified = false;
  AfterStore();
}

void TQuillonDataStorage::StoreFile() {
  if (HoldsFile()) {
    BeforeStore();
    QuillonIO::ReplaceFile(*FFileStream, SaveToXML());
    FModified = false;
    AfterStore();
  }
}

void TQuillonDataStorage::StoreFile(const std::string& AFileName, bool ATakeFileName) {
  // It may be the one of the stream that is closed.
  const std::string Name = AFileName;  // NOLINT(performance-unnecessary-copy-initialization)
  CloseFile();
  BeforeStore();
  if (ATakeFileName) {
    FFileName = Name;
  }
  const std::string Document = SaveToXML();
  TQuillonFileSystem::ForceDirectory(TQuillonFilePath::GetDirectoryName(Name));
  FFileStream = QuillonIO::ReplaceFile(Name, Document);
  FModified = false;
  AfterStore();
}
