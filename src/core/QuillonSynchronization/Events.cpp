#include "QuillonSynchronization/Events.h"

#include "platform/Errors.h"

class TQuillonEvent::TState : public QuillonWaiting::TState {
 public:
  TState(bool AManualReset, bool ASignaled) : FManualReset(AManualReset), FSignaled(ASignaled) {}

  std::optional<TQuillonWaitResult> TryTake(std::thread::id /*AThread*/) override {
    if (!FSignaled) {
      return std::nullopt;
    }
    FSignaled = FManualReset;
    return wrSignaled;
  }
  void Change(bool ASignaled) {
    FSignaled = ASignaled;
    Grant();
  }

 private:
  const bool FManualReset;
  bool FSignaled;
};

TQuillonEvent::TQuillonEvent(bool AManualReset, bool AnInitialState, std::string_view AName)
    : FHandle(std::dynamic_pointer_cast<TState>(
          QuillonWaiting::Open(AName, [&] { return std::make_shared<TState>(AManualReset, AnInitialState); }))) {
  if (FHandle == nullptr) {
    throw EQuillonEventError(Platform::InvalidArgumentError, AName);
  }
}

void TQuillonEvent::SetEvent() {
  const std::lock_guard<std::mutex> Guard(TState::Lock());
  FHandle->Change(true);
}

void TQuillonEvent::ResetEvent() {
  const std::lock_guard<std::mutex> Guard(TState::Lock());
  FHandle->Change(false);
}

void TQuillonEvent::PulseEvent() {
  const std::lock_guard<std::mutex> Guard(TState::Lock());
  FHandle->Change(true);
  FHandle->Change(false);
}

TQuillonWaitResult TQuillonEvent::WaitFor(std::uint32_t ATimeout) {
  return QuillonWaiting::WaitFor(*FHandle, ATimeout);
}

TQuillonWaitResult TQuillonEvent::WaitFor(std::uint32_t ATimeout, const TQuillonEvent& AnAbortSignal) {
  return QuillonWaiting::WaitFor(*FHandle, ATimeout, AnAbortSignal.FHandle.get());
}

class TQuillonSemaphore::TState : public QuillonWaiting::TState {
 public:
  TState(std::int32_t ACount, std::int32_t AMaxCount) : FMaxCount(AMaxCount), FCount(ACount) {}

  std::optional<TQuillonWaitResult> TryTake(std::thread::id /*AThread*/) override {
    if (FCount == 0) {
      return std::nullopt;
    }
    --FCount;
    return wrSignaled;
  }

  const std::int32_t FMaxCount;
  std::int32_t FCount;
};

TQuillonSemaphore::TQuillonSemaphore(std::int32_t AnInitialCount, std::int32_t AMaxCount, std::string_view AName) {
  if (AMaxCount < 1 || AnInitialCount < 0 || AnInitialCount > AMaxCount) {
    throw EQuillonSemaphoreError(Platform::InvalidArgumentError, AName);
  }
  FHandle = std::dynamic_pointer_cast<TState>(
      QuillonWaiting::Open(AName, [&] { return std::make_shared<TState>(AnInitialCount, AMaxCount); }));
  if (FHandle == nullptr) {
    throw EQuillonSemaphoreError(Platform::InvalidArgumentError, AName);
  }
  FMaxCount = FHandle->FMaxCount;
}

TQuillonWaitResult TQuillonSemaphore::Aquire(std::uint32_t ATimeOut) {
  return QuillonWaiting::WaitFor(*FHandle, ATimeOut);
}

TQuillonWaitResult TQuillonSemaphore::Aquire(std::uint32_t ATimeOut, const TQuillonEvent& AnAbortSignal) {
  return QuillonWaiting::WaitFor(*FHandle, ATimeOut, AnAbortSignal.FHandle.get());
}

std::int32_t TQuillonSemaphore::Release(std::int32_t AReleaseCount) {
  const std::lock_guard<std::mutex> Guard(TState::Lock());
  const std::int32_t Before = FHandle->FCount;
  if (AReleaseCount < 1) {
    throw EQuillonSemaphoreError(Platform::InvalidArgumentError);
  }
  if (AReleaseCount > FMaxCount - Before) {
    throw EQuillonSemaphoreError(Platform::TooManyError);
  }
  FHandle->FCount += AReleaseCount;
  FHandle->Grant();
  return Before;
}
