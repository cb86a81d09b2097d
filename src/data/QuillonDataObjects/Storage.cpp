#include "QuillonDataObjects/Storage.h"

#include <filesystem>
#include <system_error>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/XMLReader.h"
#include "QuillonDataObjects/XMLWriter.h"
#include "QuillonFileSystem.h"

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
    ++FFileVersion;
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
    LoadExistingFile(Template);
    FFileName = AFileName;
  }
}

void TQuillonDataStorage::LoadFromFile(const std::string& AFileName, std::chrono::milliseconds ATimeOut) {
  if (!AFileName.empty() && TQuillonFileSystem::Exists(AFileName)) {
    TQuillonFileStream Stream(AFileName, fomOpenRead, famShareDenyWrite, ATimeOut);
    LoadFromStream(Stream, AFileName);
  }
}

void TQuillonDataStorage::LoadExistingFile(const std::string& AFileName) {
  TQuillonFileStream Stream(AFileName, fomOpenRead, famShareDenyWrite, fomOpenRead, famShareDenyNone);
  LoadFromStream(Stream, AFileName);
}

void TQuillonDataStorage::LoadFromStream(TQuillonStream& AStream, const std::string& AFileName) {
  BeforeLoad();
  {
    const TQuillonChangeTrackingLock Lock(*this);
    FFileName = AFileName;
    LoadFromXML(QuillonIO::ReadIntoBuffer(AStream), AFileName);
  }
  FModified = false;
  AfterLoad();
}

void TQuillonDataStorage::OpenFile(const std::string& AFileName, bool AnIsReadOnly) {
  OpenAndLoad(AFileName, AnIsReadOnly ? fomOpenRead : fomOpenReadWrite, famShareDenyWrite);
}

void TQuillonDataStorage::OpenFileExclusive(const std::string& AFileName) {
  OpenAndLoad(AFileName, fomOpenReadWrite, famShareExclusive);
}

void TQuillonDataStorage::OpenAndLoad(const std::string& AFileName, TQuillonFileOpenMode AnOpenMode,
                                      TQuillonFileAccessMode AnAccessMode) {
  if (AFileName.empty() || !TQuillonFileSystem::Exists(AFileName)) {
    return;
  }
  CloseFile();
  FFileStream = std::make_unique<TQuillonFileStream>(AFileName, AnOpenMode, AnAccessMode);
  LoadFromStream(*FFileStream, AFileName);
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
  Replace(HoldsFile() ? FFileStream->FileName() : FFileName);
  FModified = false;
  AfterStore();
}

void TQuillonDataStorage::StoreFile() {
  if (HoldsFile()) {
    BeforeStore();
    Replace(FFileStream->FileName());
    FModified = false;
    AfterStore();
  }
}

void TQuillonDataStorage::StoreFile(const std::string& AFileName, bool ATakeFileName) {
  CloseFile();
  BeforeStore();
  if (ATakeFileName) {
    FFileName = AFileName;
  }
  Replace(AFileName);
  FFileStream = std::make_unique<TQuillonFileStream>(AFileName, fomOpenReadWrite, famShareDenyWrite);
  FModified = false;
  AfterStore();
}

void TQuillonDataStorage::Replace(std::string AFileName) {  // NOLINT(performance-unnecessary-value-param)
  const std::string Document = SaveToXML();
  TQuillonFileSystem::ForceDirectory(TQuillonFilePath::GetDirectoryName(AFileName));
  if (FCreateBackups && TQuillonFileSystem::Exists(AFileName)) {
    KeepBackup(AFileName);
  }
  // The file that is held is another one once it is replaced: what is written to the old one would be lost.
  const bool IsHeld = HoldsFile();
  const TQuillonFileOpenMode OpenMode = IsHeld ? FFileStream->OpenMode() : fomOpenRead;
  const TQuillonFileAccessMode AccessMode = IsHeld ? FFileStream->AccessMode() : famShareDenyNone;
  QuillonIO::ReplaceFile(AFileName, Document);
  if (IsHeld) {
    CloseFile();
    FFileStream = std::make_unique<TQuillonFileStream>(AFileName, OpenMode, AccessMode);
  }
}

void TQuillonDataStorage::KeepBackup(const std::string& AFileName) {
  std::string Stamp;
  QuillonDateTime::AppendDate(Stamp, QuillonDateTime::Now());
  const std::string Backup = TQuillonFilePath::AddExtension(
      TQuillonFilePath::AddExtension(TQuillonFilePath::ChangeExtension(AFileName, ""), Stamp), "backup");
  if (TQuillonFileSystem::Exists(Backup)) {
    return;
  }
  // A second name, not a move: the data file must not be missing at any moment. A link is followed, or the second
  // name would be one for the link.
  std::error_code Error;
  std::filesystem::create_hard_link(std::filesystem::canonical(AFileName), Backup, Error);
  if (Error) {
    QuillonIO::ReplaceFile(Backup, QuillonIO::ReadWholeFile(AFileName));
  }
}
