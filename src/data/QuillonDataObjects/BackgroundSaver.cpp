#include "QuillonDataObjects/BackgroundSaver.h"

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Snapshot.h"
#include "QuillonDataObjects/Storage.h"
#include "QuillonLogs/Manager.h"

namespace {

constexpr std::uint32_t Second = 1000;
constexpr std::string_view LogNamespace = "Velmora.Storage";

}  // namespace

void TQuillonDataStorageBackgroundSaverThread::Execute() {
  while (!Terminated()) {
    if (FSignal.WaitFor(Second, TerminateSignal()) != wrSignaled || Terminated()) {
      continue;
    }
    try {
      Save();
    } catch (const std::exception& Error) {
      Report(Error.what());
    }
  }
}

void TQuillonDataStorageBackgroundSaverThread::Report(const char* AnError) {
  FStorage.FModified = true;
  FStorage.FLastBackgroundSave = TQuillonBackgroundSave::Failed;
  QuillonLogs::TheLog().AddEntry(letError, AnError, LogNamespace);
}

bool TQuillonDataStorageBackgroundSaverThread::BeginRead() {
  // A writer may well wait for this thread's end.
  constexpr std::uint32_t Patience = 100;
  while (FStorage.FReadWriteMutex.BeginRead(Patience) != wrSignaled) {
    if (Terminated()) {
      return false;
    }
  }
  return true;
}

void TQuillonDataStorageBackgroundSaverThread::Save() {
  if (!BeginRead()) {
    return;
  }
  std::unique_ptr<TQuillonDataStorage, void (*)(TQuillonDataStorage*)> Reading(
      &FStorage, [](TQuillonDataStorage* AStorage) { AStorage->EndRead(); });
  const std::string FileName = FStorage.FileToSave();
  if (FileName.empty()) {
    return;
  }
  TQuillonDataMemorySnapshot Snapshot(FStorage);
  Snapshot.Request();
  const std::uint64_t Count = FStorage.FChangeCount;
  const TQuillonDataFileFormat Format = FStorage.FFileFormat;
  Reading.reset();
  const TQuillonDataHandle<TQuillonDataAbstractObject> Fresh(
      FStorage.DataClass().CreateAny(nullptr, QuillonGuid::New()));
  TQuillonDataStorage& Copy = *Fresh->AsStorage();
  Copy.FFileFormat = Format;
  Snapshot.RestoreTo(Copy);
  Copy.BeforeStore();
  const std::string Document = Copy.Document();
  {
    const std::scoped_lock Lock(FStorage.FFileMutex);
    // Somebody may have saved a later state by now, or have turned to another file.
    if (FStorage.FSavedName != FileName || FStorage.FSavedAt <= Count) {
      FStorage.WriteDocument(FileName, [&](const TQuillonContentSink& ASink) { ASink(Document); });
      FStorage.MarkSaved(FileName, Count);
    }
  }
  Copy.AfterStore();
  FStorage.FLastBackgroundSave = TQuillonBackgroundSave::Succeeded;
}
