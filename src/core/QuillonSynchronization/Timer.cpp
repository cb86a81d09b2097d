#include "QuillonSynchronization/Timer.h"

#include <cassert>

void TQuillonTimerThread::Execute() {
  while (!Terminated() && FOwner.FEnabled) {
    const TQuillonWaitResult Result = FOwner.FSignal.WaitFor(FOwner.FInterval, TerminateSignal());
    if (Result != wrSignaled && Result != wrTimeout) {
      continue;
    }
    if (!Terminated()) {
      FOwner.Fire();
    } else if (Result == wrSignaled) {
      // Meant for the thread that takes this one's place.
      FOwner.FSignal.SetEvent();
    }
  }
}

void TQuillonTimer::Fire() {
  TOnTimer OnTimer;
  {
    const std::lock_guard<std::mutex> Guard(FEventLock);
    OnTimer = FOnTimer;
  }
  if (!FEnabled || OnTimer == nullptr) {
    return;
  }
  const auto Call = [this, &OnTimer] {
    if (!FEnabled) {
      return;
    }
    FInTimerEvent = std::this_thread::get_id();
    try {
      OnTimer(*this);
    } catch (...) {
      FEnabled = false;
      const std::lock_guard<std::mutex> Guard(FEventLock);
      FFatalException = std::current_exception();
    }
    FInTimerEvent = std::thread::id();
  };
  if (FSynchronized) {
    Synchronize(Call);
  } else {
    Call();
  }
}

TQuillonTimer::~TQuillonTimer() {
  assert(!IsInTimerEvent());
  SetEnabled(false);
}

void TQuillonTimer::Signal() {
  if (FEnabled) {
    FSignal.SetEvent();
  }
}

void TQuillonTimer::SetEnabled(bool AValue) {
  if (IsInTimerEvent()) {
    FEnabled = AValue;
    return;
  }
  const std::lock_guard<std::mutex> Guard(FThreadLock);
  if (AValue && FEnabled) {
    return;
  }
  FEnabled = false;
  StopThread();
  FSignal.ResetEvent();
  // Once more: the event that ran meanwhile may have stored something else.
  FEnabled = AValue;
  if (AValue) {
    StartThread();
  }
}

void TQuillonTimer::SetInterval(std::uint32_t AValue) {
  const bool Changed = FInterval.exchange(AValue) != AValue;
  if (Changed && !IsInTimerEvent()) {
    RestartThread();
  }
}

void TQuillonTimer::SetThreadPriority(Platform::ThreadPriority AValue) {
  if (!IsInTimerEvent() && FThreadPriority.exchange(AValue) != AValue) {
    RestartThread();
  }
}

void TQuillonTimer::SetOnTimer(TOnTimer AValue) {
  const std::lock_guard<std::mutex> Guard(FEventLock);
  FOnTimer.swap(AValue);
}

std::exception_ptr TQuillonTimer::FatalException() const {
  const std::lock_guard<std::mutex> Guard(FEventLock);
  return FFatalException;
}

void TQuillonTimer::StartThread() {
  FTimerThread = std::make_unique<TQuillonTimerThread>(*this, FThreadPriority);
  try {
    FTimerThread->Start();
  } catch (...) {
    FEnabled = false;
    throw;
  }
}

void TQuillonTimer::StopThread() {
  if (FTimerThread != nullptr) {
    FTimerThread->Terminate();
    FStopSignal.SetEvent();
    FTimerThread.reset();
    FStopSignal.ResetEvent();
  }
}

void TQuillonTimer::RestartThread() {
  const std::lock_guard<std::mutex> Guard(FThreadLock);
  if (FEnabled) {
    StopThread();
    // The event may have switched the timer off meanwhile.
    if (FEnabled) {
      StartThread();
    }
  }
}
