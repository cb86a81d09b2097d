#pragma once

#include "QuillonSynchronization/Waiting.h"
#include "QuillonTypes.h"

/// A misused event.
class EQuillonEventError : public EQuillonWin32Error {
 public:
  using EQuillonWin32Error::EQuillonWin32Error;
};

/// A misused semaphore.
class EQuillonSemaphoreError : public EQuillonWin32Error {
 public:
  using EQuillonWin32Error::EQuillonWin32Error;
};

/// A signal that threads wait for.
class TQuillonEvent {
 public:
  /// @param AManualReset whether the signal stays until it is taken back, for all; else one wait takes it
  /// @param AName events of one name are one event, within this process; the first one's other arguments hold
  /// @throws EQuillonEventError where the name is that of another kind of object
  TQuillonEvent(bool AManualReset, bool AnInitialState, std::string_view AName = {});

  void SetEvent();
  void ResetEvent();
  /// Lets those go that wait at this moment (one of them without manual reset), and leaves no signal behind.
  void PulseEvent();

  TQuillonWaitResult WaitFor(std::uint32_t ATimeout);
  /// Waits for either; this event wins when both are signalled.
  TQuillonWaitResult WaitFor(std::uint32_t ATimeout, const TQuillonEvent& AnAbortSignal);

 private:
  friend class TQuillonSemaphore;
  class TState;
  std::shared_ptr<TState> FHandle;
};

/// A number of permits.
class TQuillonSemaphore {
 public:
  /// @param AName semaphores of one name are one semaphore, within this process; the first one's counts hold
  /// @throws EQuillonSemaphoreError unless 0 <= AnInitialCount <= AMaxCount and AMaxCount > 0, or where the name is
  ///         that of another kind of object
  TQuillonSemaphore(std::int32_t AnInitialCount, std::int32_t AMaxCount, std::string_view AName = {});

  /// Takes one permit.
  TQuillonWaitResult Aquire(std::uint32_t ATimeOut);
  /// Waits for a permit and the signal at once; the permit wins when both are there.
  TQuillonWaitResult Aquire(std::uint32_t ATimeOut, const TQuillonEvent& AnAbortSignal);
  /// Gives permits back, all at once.
  /// @return the count before
  /// @throws EQuillonSemaphoreError for less than one permit, or more than are out; the count stays
  std::int32_t Release(std::int32_t AReleaseCount);

  std::int32_t MaxCount() const { return FMaxCount; }

 private:
  class TState;
  std::shared_ptr<TState> FHandle;
  std::int32_t FMaxCount;
};
