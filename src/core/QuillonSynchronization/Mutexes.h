#pragma once

#include "QuillonSynchronization/Events.h"

/// A misused mutex.
class EQuillonMutexError : public EQuillonWin32Error {
 public:
  using EQuillonWin32Error::EQuillonWin32Error;
};

/// A lock that one thread has, as many times as it takes it.
class TQuillonMutex {
 public:
  /// @param AName mutexes of one name are one mutex, within this process
  /// @throws EQuillonMutexError where the name is that of another kind of object
  explicit TQuillonMutex(std::string_view AName = {});
  /// @param AnInitialOwner the calling thread has it, unless the name was there before
  TQuillonMutex(bool AnInitialOwner, std::string_view AName);

  /// @return wrAbandoned: the lock is taken, but what it guards may be half done, since its last thread ended inside
  TQuillonWaitResult Aquire(std::uint32_t ATimeOut);
  /// @throws EQuillonMutexError in a thread that does not have it
  void Release();

 private:
  class TState;
  std::shared_ptr<TState> FHandle;
};

/// Lets many read or one write. Not to be entered again by a thread that is inside, whichever way.
class TQuillonReadWriteMutex {
 public:
  /// @throws EQuillonSemaphoreError for less than one reader
  explicit TQuillonReadWriteMutex(std::int32_t AMaxReaderCount, std::string_view AMutexName = {},
                                  std::string_view ASemaphoreName = {});

  TQuillonWaitResult BeginRead(std::uint32_t ATimeout);
  void EndRead();
  /// Waits for the other writers until the time-out, then for the readers without limit.
  /// @return the thread may write only after wrSignaled
  TQuillonWaitResult BeginWrite(std::uint32_t ATimeout);
  void EndWrite();

 private:
  TQuillonMutex FMutex;
  TQuillonSemaphore FSemaphore;
};
