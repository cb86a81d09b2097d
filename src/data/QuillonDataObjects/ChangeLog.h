#pragma once

#include "QuillonDataObjects/UserName.h"

/// What users did to a storage. While it is locked, what happens is part of an operation that is told as a whole.
class TQuillonDataChangeLog {
 public:
  TQuillonUserName FUserName;  ///< in whose name the storage is worked on

  void Lock() { ++FLockCount; }
  /// Stops at 0.
  void Unlock() { FLockCount -= FLockCount > 0 ? 1 : 0; }
  bool IsLocked() const { return FLockCount > 0; }

 private:
  int FLockCount = 0;
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
