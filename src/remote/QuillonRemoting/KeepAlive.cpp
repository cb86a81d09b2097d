#include "QuillonRemoting/KeepAlive.h"

#include <exception>
#include <utility>

#include "QuillonLogs/Manager.h"
#include "QuillonRemoting/Messages.h"

TQuillonRemoteKeepAlive::TQuillonRemoteKeepAlive(std::function<bool()> AnExchange, std::function<void()> AnAbort)
    : FExchange(std::move(AnExchange)), FAbort(std::move(AnAbort)) {
  FTimer.SetSynchronized(false);
  FTimer.SetInterval(QuillonRemoting::KeepAliveInterval);
  FTimer.SetOnTimer([this](TQuillonTimer& /*ASender*/) { OnTimer(); });
}

TQuillonRemoteKeepAlive::~TQuillonRemoteKeepAlive() {
  const std::lock_guard<std::mutex> Guard(FSwitchLock);
  Stop();
}

void TQuillonRemoteKeepAlive::SetEnabled(bool AValue) {
  const std::lock_guard<std::mutex> Guard(FSwitchLock);
  Stop();
  FEnabled = AValue;
  Start();
}

void TQuillonRemoteKeepAlive::SetInterval(std::uint32_t AValue) {
  const std::lock_guard<std::mutex> Guard(FSwitchLock);
  Stop();
  FTimer.SetInterval(AValue);
  Start();
}

void TQuillonRemoteKeepAlive::OnTimer() {
  FIdle.ResetEvent();
  if (!FIsStopping && !FExchange()) {
    // Within its own event the timer only takes note of this.
    FEnabled = false;
    FTimer.SetEnabled(false);
  }
  FIdle.SetEvent();
}

void TQuillonRemoteKeepAlive::Start() {
  if (FEnabled && FPauses == 0) {
    FIsStopping = false;
    try {
      FTimer.SetEnabled(true);
    } catch (const std::exception&) {
      FEnabled = false;
      throw;
    }
  }
}

void TQuillonRemoteKeepAlive::Stop() {
  FIsStopping = true;
  // The exchange may be on its way to its next wait, which an abort that comes too early does not end.
  for (std::uint32_t Patience = QuillonRemoting::KeepAliveGrace; FIdle.WaitFor(Patience) != wrSignaled;
       Patience = QuillonRemoting::KeepAliveAbortStep) {
    FAbort();
  }
  FTimer.SetEnabled(false);
}

TQuillonRemoteKeepAlive::TPause::TPause(TQuillonRemoteKeepAlive& AKeepAlive) : FKeepAlive(AKeepAlive) {
  const std::lock_guard<std::mutex> Guard(FKeepAlive.FSwitchLock);
  FKeepAlive.Stop();
  ++FKeepAlive.FPauses;
}

TQuillonRemoteKeepAlive::TPause::~TPause() {
  const std::lock_guard<std::mutex> Guard(FKeepAlive.FSwitchLock);
  --FKeepAlive.FPauses;
  try {
    FKeepAlive.Start();
  } catch (const std::exception& Error) {
    QuillonLogs::TheLog().AddEntry(letError, Error.what(), QuillonRemoting::LogNamespace);
  }
}
