#include "QuillonDataObjects/Storage.h"

#include <limits>

#include "QuillonDataObjects/BackgroundSaver.h"
#include "QuillonDataObjects/DataClass.h"
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

TQuillonDataStorage::TQuillonDataStorage(std::int32_t AReadersCount)
    : FObjectRegistry(*this), FReadWriteMutex(AReadersCount) {}

TQuillonDataStorage::~TQuillonDataStorage() = default;

void TQuillonDataStorage::InitProperties() {
  TQuillonDataAbstractObject::InitProperties();
  FFileName = GetDefaultFileName();
  FFileVersion = 0;
}

void TQuillonDataStorage::ClearProperties() { FFileVersion = 0; }

void TQuillonDataStorage::FreeProperties() {
  LockChangeTracking();
  FChangeLog.Deactivate();
  const TQuillonStorageStateGuard Clearing(*this, TQuillonDataStorageState::dssClearing);
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
  const TQuillonStorageStateGuard Clearing(*this, TQuillonDataStorageState::dssClearing);
  ClearProperties();
  FreeUnheld();
  FObjectRegistry.ForgetNames();
}

void TQuillonDataStorage::NewFile() {
  BeforeNewFile();
  CloseFile();
  Clear();
  {
    const std::scoped_lock Lock(FFileMutex);
    FFileName.clear();
  }
  SetID(QuillonGuid::New());
  FChangeLog.Clear();
  FModified = false;
  AfterNewFile();
}

void TQuillonDataStorage::LoadFromFile(const std::string& AFileName) {
  if (AFileName.empty()) {
    return;
  }
  if (TQuillonFileSystem::Exists(AFileName)) {
    LoadExistingFile(AFileName, AFileName);
    return;
  }
  if (const std::string Template = GetTemplateFileName(); TQuillonFileSystem::Exists(Template)) {
    LoadExistingFile(Template, AFileName);
  }
}

void TQuillonDataStorage::LoadFromFile(const std::string& AFileName, std::chrono::milliseconds ATimeOut) {
  if (!AFileName.empty() && TQuillonFileSystem::Exists(AFileName)) {
    LoadFrom(
        AFileName,
        [ATimeOut](const std::string& AName) {
          return std::make_unique<TQuillonFileStream>(AName, fomOpenRead, famShareDenyWrite, ATimeOut);
        },
        false);
    AfterLoad();
  }
}

void TQuillonDataStorage::LoadExistingFile(const std::string& AFileName, std::string AnOwnName) {
  LoadFrom(
      AFileName,
      [](const std::string& AName) {
        return std::make_unique<TQuillonFileStream>(AName, fomOpenRead, famShareDenyWrite, fomOpenRead,
                                                    famShareDenyNone);
      },
      false);
  {
    const std::scoped_lock Lock(FFileMutex);
    FFileName = std::move(AnOwnName);
  }
  AfterLoad();
}

template <class TOpen>
void TQuillonDataStorage::LoadFrom(const std::string& AFileName, const TOpen& AnOpen, bool DoHold) {
  BeforeLoad();
  FChangeLog.Clear();
  // From before the file is open, or a save in the background would wait for us, and we for it.
  const std::scoped_lock FileLock(FFileMutex);
  std::unique_ptr<TQuillonFileStream> Stream;
  {
    const TQuillonChangeTrackingLock Lock(*this);
    FFileName = AFileName;
    Stream = AnOpen(FFileName);
    if (FFileFormat == ffBinary) {
      LoadFromBinStream(*Stream);
    } else {
      LoadFromXML(*Stream, FFileName);
    }
  }
  FModified = false;
  MarkSaved(FFileName, FChangeCount);
  if (DoHold) {
    FFileStream = std::move(Stream);
  }
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
    LoadFrom(AFileName, AnOpen, true);
    AfterLoad();
  }
}

std::string TQuillonDataStorage::Document() const {
  if (FFileFormat == ffXML) {
    return SaveToXML();
  }
  TQuillonMemoryStream Stream(0, ExpectedSize());
  SaveToBinStream(Stream);
  return Stream.TakeContent();
}

TQuillonContent TQuillonDataStorage::Content() const {
  return FFileFormat == ffXML ? XMLContent() : [this](const TQuillonContentSink& ASink) { ASink(Document()); };
}

std::size_t TQuillonDataStorage::ExpectedSize() const {
  // Of memory that is never touched only the addresses are taken; what grows is copied again and again.
  constexpr std::size_t BytesPerObject = 1024;
  return FObjectRegistry.Count() * BytesPerObject;
}

void TQuillonDataStorage::MarkSaved(const std::string& AFileName, std::uint64_t AChangeCount) {
  FSavedAt = AChangeCount;
  FSavedName = AFileName;
}

std::string TQuillonDataStorage::FileToSave() {
  const std::scoped_lock Lock(FFileMutex);
  return HoldsFile() ? FFileStream->FileName() : FFileName;
}

void TQuillonDataStorage::WriteDocument(const std::string& AFileName, const TQuillonContent& ADocument) {
  TQuillonFileSystem::ForceDirectory(TQuillonFilePath::GetDirectoryName(AFileName));
  const bool IsHeld = HoldsFile() && FFileStream->FileName() == AFileName;
  if (!IsHeld && !TQuillonFileSystem::IsFile(AFileName)) {
    QuillonIO::ReplaceFile(AFileName, ADocument);
    return;
  }
  const auto Held = IsHeld ? nullptr : QuillonIO::HoldFile(AFileName);
  TQuillonFileStream& File = IsHeld ? *FFileStream : *Held;
  if (FCreateBackups && File.OpenMode() != fomOpenRead) {
    QuillonIO::KeepBackup(File, BackupNameOf(AFileName));
  }
  QuillonIO::ReplaceFile(File, ADocument);
}

void TQuillonDataStorage::SaveToFile(const std::string& AFileName) {
  if (AFileName.empty()) {
    return;
  }
  BeforeStore();
  {
    const std::scoped_lock Lock(FFileMutex);
    const std::string Name = HoldsFile() ? FFileStream->FileName() : AFileName;
    if (!HoldsFile()) {
      FFileName = Name;
    }
    WriteDocument(Name, Content());
    MarkSaved(Name, FChangeCount);
    FModified = false;
  }
  AfterStore();
}

void TQuillonDataStorage::StoreFile() {
  if (HoldsFile()) {
    BeforeStore();
    {
      const std::scoped_lock Lock(FFileMutex);
      QuillonIO::ReplaceFile(*FFileStream, Content());
      MarkSaved(FFileStream->FileName(), FChangeCount);
      FModified = false;
    }
    AfterStore();
  }
}

void TQuillonDataStorage::StoreFile(const std::string& AFileName, bool ATakeFileName) {
  // It may be the one of the stream that is closed.
  const std::string Name = AFileName;  // NOLINT(performance-unnecessary-copy-initialization)
  CloseFile();
  BeforeStore();
  {
    const std::scoped_lock Lock(FFileMutex);
    if (ATakeFileName) {
      FFileName = Name;
    }
    TQuillonFileSystem::ForceDirectory(TQuillonFilePath::GetDirectoryName(Name));
    FFileStream = QuillonIO::ReplaceFile(Name, Content());
    MarkSaved(Name, FChangeCount);
    FModified = false;
  }
  AfterStore();
}

void TQuillonDataStorage::CloseFile() {
  const std::scoped_lock Lock(FFileMutex);
  FFileStream.reset();
}

void TQuillonDataStorage::BeginWrite() {
  // A writer that ended inside leaves the lock to the next one, who learns of it and has to ask again.
  while (FReadWriteMutex.BeginWrite(QuillonInfinite) != wrSignaled) {
  }
}

void TQuillonDataStorage::StartBackgroundSaver() {
  if (FBackgroundSaverThread == nullptr) {
    auto Thread = std::make_unique<TQuillonDataStorageBackgroundSaverThread>(*this);
    Thread->Start();
    FBackgroundSaverThread = std::move(Thread);
  }
}

void TQuillonDataStorage::SignalBackgroundSaver() {
  StartBackgroundSaver();
  FBackgroundSaverThread->Signal();
}

void TQuillonDataStorage::StopBackgroundSaver() { FBackgroundSaverThread.reset(); }
