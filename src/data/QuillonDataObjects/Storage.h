#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuillonDataObjects/ChangeLog.h"
#include "QuillonDataObjects/Content.h"
#include "QuillonDataObjects/DataObject.h"
#include "QuillonDataObjects/Registry.h"
#include "QuillonDataObjects/Release.h"
#include "QuillonFileReplacement.h"
#include "QuillonIO.h"
#include "QuillonSynchronization/Mutexes.h"

class TQuillonDataStorageBackgroundSaverThread;

/// What a storage is busy with; model objects skip reactions that would be wrong at these times.
enum class TQuillonDataStorageState : std::uint8_t { dssPlayback, dssClearing };

/// The form of a storage's file.
enum TQuillonDataFileFormat : std::uint8_t { ffXML, ffBinary };

/// How the last save in the background has ended.
enum class TQuillonBackgroundSave : std::uint8_t { None, Succeeded, Failed };

/// Root of a tree of data objects and the gate between it and files.
///
/// Threads bracket their work on the tree by BeginWrite or BeginRead; nothing in here does so itself but the background
/// saver.
class TQuillonDataStorage : public TQuillonDataAbstractObject {
 public:
  static constexpr std::int32_t DefaultReadersCount = 10;

  /// @param AReadersCount how many may read at a time
  explicit TQuillonDataStorage(std::int32_t AReadersCount = DefaultReadersCount);
  ~TQuillonDataStorage() override;

  static const TQuillonDataClass& Class();

  bool FCreateBackups = false;                 ///< the first state of a day stays beside the file
  std::string FFileName;                       ///< where the storage was loaded from or saved to
  std::int64_t FFileVersion = 0;               ///< raised by every tracked change
  std::atomic<bool> FModified = false;         ///< unsaved changes
  TQuillonDataFileFormat FFileFormat = ffXML;  ///< of files that are loaded and saved; never guessed from the content

  TQuillonDataStorage* AsStorage() override { return this; }
  TQuillonDataObjectRegistry& Registry() { return FObjectRegistry; }
  TQuillonDataChangeLog& ChangeLog() { return FChangeLog; }
  bool IsIn(TQuillonDataStorageState AState) const { return (FState & Mask(AState)) != 0; }
  /// Release of the file that is being read, for rows that only some releases have.
  virtual TQuillonRelease FileRelease() const { return "65535"; }

  /// Stamps the storage and raises its version, unless change tracking is locked.
  void Change() override;
  void LockChangeTracking() { ++FChangeTrackingLockCount; }
  void UnlockChangeTracking();
  /// True while a document is read: what loses its last holder now stays, unheld, since others may refer to it.
  bool IsReading() const { return FIsReading; }
  /// True while a state of this very storage is read again: it is in order as it is.
  bool IsRestoring() const { return FIsRestoring; }
  /// When the reading began.
  TQuillonDateTime ReadingSince() const { return FReadingSince; }
  bool IsChangeTrackingLocked() const { return FChangeTrackingLockCount > 0; }
  /// Rises with every change, tracked or not, and with every load: what was derived from the content is stale then.
  std::uint64_t ChangeCount() const { return FChangeCount; }
  /// Counts a change that is not tracked.
  void CountChange() { ++FChangeCount; }

  /// Empties the storage.
  void Clear();
  /// Starts afresh, without a file.
  void NewFile();
  /// Loads the file, or the template if the file does not exist; does nothing if neither does.
  /// @throws EQuillonFileHandleError, EQuillonDataObjectReaderError, EQuillonConvertError; the storage then holds
  ///   what was read so far
  virtual void LoadFromFile(const std::string& AFileName);
  void LoadFromFile() { LoadFromFile(FFileName); }
  /// As above without a template; where access is denied, opening is tried again until the time has passed.
  void LoadFromFile(const std::string& AFileName, std::chrono::milliseconds ATimeOut);
  /// Loads the file and keeps it open, so that nobody else writes to it; does nothing if it does not exist.
  /// @throws as LoadFromFile
  void OpenFile(const std::string& AFileName, bool AnIsReadOnly);
  void OpenFile(bool AnIsReadOnly) { OpenFile(FFileName, AnIsReadOnly); }
  /// As OpenFile, for reading and writing; nobody else opens it at all.
  void OpenFileExclusive(const std::string& AFileName);
  /// As OpenFile for a job that changes the file: waits while somebody else holds it, for QuillonIO::LongestWait at
  /// most. A file that we may not write is opened too; the save is refused then.
  /// @throws as LoadFromFile, EQuillonFileInUseError
  void OpenFileToChange(const std::string& AFileName);
  /// Lets go of the file that is held open.
  void CloseFile();
  bool HoldsFile() const { return FFileStream != nullptr; }
  /// Replaces the file whole or not at all, as QuillonIO::ReplaceFile tells; an empty name does nothing. While a file
  /// is held open, it is that one that is saved, whatever the name; it stays held.
  /// @throws EQuillonFileHandleError, EQuillonFileSystemError; for a file held for reading too
  virtual void SaveToFile(const std::string& AFileName);
  void SaveToFile() { SaveToFile(FFileName); }
  /// Saves to the file that is held open, which stays open; does nothing if none is.
  /// @throws as SaveToFile
  void StoreFile();
  /// Saves to another file and holds that open from now on; others may read it.
  /// @param ATakeFileName the storage takes the name over
  void StoreFile(const std::string& AFileName, bool ATakeFileName);

  /// @param ADocument the file's bytes; used up by the parser
  /// @param ASource what messages call the document, usually its file name
  void LoadFromXML(TQuillonBuffer ADocument, std::string_view ASource);
  /// The same from the stream's position on, without holding the document in memory as a rule.
  void LoadFromXML(TQuillonStream& AStream, std::string_view ASource);
  std::string SaveToXML() const;
  /// The same piece by piece; as long as the storage lives, and the same as long as nobody changes it.
  TQuillonContent XMLContent() const;
  /// The binary form, from the stream's position on; the stream stands behind it then.
  /// @throws EQuillonReaderError, EQuillonDataObjectReaderError; the storage then holds what was read so far
  void LoadFromBinStream(TQuillonStream& AStream);
  void SaveToBinStream(TQuillonStream& AStream) const;
  /// The binary form within the zlib format.
  /// @throws as LoadFromBinStream, EQuillonZlibError
  void LoadFromZIPStream(TQuillonStream& AStream);
  void SaveToZIPStream(TQuillonStream& AStream) const;
  /// A file of the binary form, whatever the form of the storage's own file; that and its name stay.
  /// @throws as LoadFromBinStream, EQuillonFileHandleError also for a file that does not exist
  void LoadFromBinFile(const std::string& AFileName);
  void SaveToBinFile(const std::string& AFileName) const;
  /// Makes objects of the other storage what those with their identities are here, and puts there what is missing; its
  /// list items that are not here stay. Does nothing unless both are of the same class.
  void Overwrite(TQuillonDataStorage& AStorage) const;

  /// Content and change log, from the begin of the stream. Nothing counts as unsaved afterwards.
  void SaveToMemorySnapshot(TQuillonStream& AStream);
  /// The reverse; lists keep the order they had.
  /// @throws as LoadFromBinStream
  void LoadFromMemorySnapshot(TQuillonStream& AStream);
  /// The same in a file, which is replaced whole. An empty name does nothing, nor does a file that does not exist.
  void SaveToSnapshot(const std::string& AFileName);
  void LoadFromSnapshot(const std::string& AFileName);

  /// Each waits without limit.
  void BeginRead() { FReadWriteMutex.BeginRead(QuillonInfinite); }
  void EndRead() { FReadWriteMutex.EndRead(); }
  void BeginWrite();
  void EndWrite() { FReadWriteMutex.EndWrite(); }

  /// Has the storage's file saved as soon as nobody writes to the storage; returns at once. Signals that come during a
  /// save are one more save. The saver stops with the storage, without a last save.
  void SignalBackgroundSaver();
  /// @throws EQuillonThreadError
  void StartBackgroundSaver();
  /// Waits for a save that has begun.
  void StopBackgroundSaver();
  /// A failed save is in the program's log too, and the storage counts as modified.
  TQuillonBackgroundSave LastBackgroundSave() const { return FLastBackgroundSave; }

 protected:
  void InitProperties() override;
  void ClearProperties() override;
  void FreeProperties() override;
  virtual void AfterNewFile() {}
  virtual void AfterLoad() {}
  virtual void AfterStore() {}
  virtual void BeforeNewFile() {}
  virtual void BeforeLoad() {}
  virtual void BeforeStore() {}
  virtual std::string GetDefaultFileName() const { return {}; }
  virtual std::string GetTemplateFileName() const { return {}; }

 private:
  static constexpr std::uint8_t Mask(TQuillonDataStorageState AState) {
    return static_cast<std::uint8_t>(1U << static_cast<unsigned>(AState));
  }
  /// Loads what AnOpen opens, up to AfterLoad.
  template <class TOpen>
  void LoadFrom(const std::string& AFileName, const TOpen& AnOpen, bool DoHold);
  /// @param AnOwnName the storage's file name from then on
  void LoadExistingFile(const std::string& AFileName, std::string AnOwnName);
  /// Loads the file, if it exists, and holds it.
  template <class TOpen>
  void OpenAndLoad(const std::string& AFileName, const TOpen& AnOpen);
  void FreeUnheld();
  /// Empties the storage and reads it with the reader.
  void LoadWith(TQuillonDataObjectReader& AReader);
  /// Reads a document while it passes by, into a storage that is as it was made.
  /// @return false, and nothing has changed, for what only the reader of whole documents can judge
  bool PullFromXML(TQuillonStream& AStream);
  /// Reads the document as a whole, and tells what is wrong with it.
  void ReadWholeXML(TQuillonBuffer ADocument, std::string_view ASource);
  /// Reads without tracking or recording anything.
  template <class TRead>
  void WhileReading(const TRead& ARead);
  /// The same into what is there and stays. An object that has lost its last holder then goes with all references to
  /// it.
  template <class TRead>
  void Update(const TRead& ARead);
  void WriteXML(const TQuillonContentSink& ASink) const;
  /// The document in the form of the file.
  std::string Document() const;
  /// The same, made while it is written; not held in memory if it is XML.
  TQuillonContent Content() const;
  /// Room that the binary form needs as a rule, in bytes.
  std::size_t ExpectedSize() const;
  /// The file that is held, else the one of the storage's name.
  std::string FileToSave();
  /// Puts a document in the place of the file, which may be the one that is held.
  void WriteDocument(const std::string& AFileName, const TQuillonContent& ADocument);
  /// The file has the content of that count of changes now.
  void MarkSaved(const std::string& AFileName, std::uint64_t AChangeCount);

  friend class TQuillonDataHolder;
  friend class TQuillonDataMemorySnapshot;
  friend class TQuillonDataStorageBackgroundSaverThread;
  friend class TQuillonStorageStateGuard;
  friend void QuillonDataObjects::ReadContent(TQuillonDataStorage& AStorage, TQuillonDataAbstractObject& AnObject,
                                              std::string_view AContent);

  TQuillonDataObjectRegistry FObjectRegistry;
  TQuillonDataChangeLog FChangeLog;
  TQuillonDateTime FReadingSince;
  std::unique_ptr<TQuillonFileStream> FFileStream;  ///< the file that is held open
  /// Objects by identity that have lost a holder in an update; null while there is none.
  std::vector<std::pair<TGUID, const TQuillonDataClass*>>* FLetGo = nullptr;
  std::uint64_t FChangeCount = 0;
  int FChangeTrackingLockCount = 0;
  std::uint8_t FState = 0;
  bool FIsReading = false;
  bool FIsRestoring = false;
  TQuillonReadWriteMutex FReadWriteMutex;
  std::mutex FFileMutex;       ///< one save at a time; guards FFileStream, FSavedAt, FSavedName
  std::uint64_t FSavedAt = 0;  ///< the count of changes that the file has
  std::string FSavedName;      ///< the file that was loaded or saved last
  std::atomic<TQuillonBackgroundSave> FLastBackgroundSave = TQuillonBackgroundSave::None;
  std::unique_ptr<TQuillonDataStorageBackgroundSaverThread> FBackgroundSaverThread;  ///< null unless running
};

/// Keeps a storage in a state for as long as it lives.
class TQuillonStorageStateGuard {
 public:
  TQuillonStorageStateGuard(TQuillonDataStorage& AStorage, TQuillonDataStorageState AState)
      : FStorage(AStorage), FBefore(AStorage.FState) {
    AStorage.FState = static_cast<std::uint8_t>(FBefore | TQuillonDataStorage::Mask(AState));
  }
  TQuillonStorageStateGuard(const TQuillonStorageStateGuard&) = delete;
  TQuillonStorageStateGuard& operator=(const TQuillonStorageStateGuard&) = delete;
  ~TQuillonStorageStateGuard() { FStorage.FState = FBefore; }

 private:
  TQuillonDataStorage& FStorage;
  const std::uint8_t FBefore;
};

/// Locks the change tracking of a storage for as long as it lives.
class TQuillonChangeTrackingLock {
 public:
  explicit TQuillonChangeTrackingLock(TQuillonDataStorage& AStorage) : FStorage(AStorage) {
    FStorage.LockChangeTracking();
  }
  TQuillonChangeTrackingLock(const TQuillonChangeTrackingLock&) = delete;
  TQuillonChangeTrackingLock& operator=(const TQuillonChangeTrackingLock&) = delete;
  ~TQuillonChangeTrackingLock() { FStorage.UnlockChangeTracking(); }

 private:
  TQuillonDataStorage& FStorage;
};
