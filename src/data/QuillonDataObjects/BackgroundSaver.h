#pragma once

#include "QuillonSynchronization/Threads.h"

class TQuillonDataStorage;

/// Saves a storage's file while others go on reading it: what it holds off is a writer, for as long as a snapshot in
/// memory takes.
class TQuillonDataStorageBackgroundSaverThread final : public TQuillonThread {
 public:
  explicit TQuillonDataStorageBackgroundSaverThread(TQuillonDataStorage& AStorage) : FStorage(AStorage) {}
  TQuillonDataStorageBackgroundSaverThread(const TQuillonDataStorageBackgroundSaverThread&) = delete;
  TQuillonDataStorageBackgroundSaverThread& operator=(const TQuillonDataStorageBackgroundSaverThread&) = delete;
  ~TQuillonDataStorageBackgroundSaverThread() override { Finish(); }

  void Signal() { FSignal.SetEvent(); }

 protected:
  void Execute() override;

 private:
  /// @return false when the thread was told to end before
  bool BeginRead();
  void Save();
  void Report(const char* AnError);

  TQuillonDataStorage& FStorage;
  TQuillonEvent FSignal{false, false};
};
