#include "platform/Signals.h"

#include <windows.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>

#include "platform/windows/WindowsCalls.h"

namespace {

/// What the system's call at Ctrl-C, which comes on a thread of its own, shares with the others.
struct TShared {
  std::mutex Lock;
  std::condition_variable HasChanged;
  std::map<std::size_t, std::wstring> Paths;
  std::size_t NextPlace = 0;
  int Steps = 0;  ///< threads within a step that is not broken off
  bool IsEnding = false;
};

TShared& Shared() {
  static TShared& Instance = *new TShared;  // never freed: the call may come at the very end
  return Instance;
}

thread_local int Depth = 0;

/// Ctrl-C, Ctrl-Break, the closed window, the end of the system: it ends the process behind this. A service is told of
/// every user who leaves, and goes on.
BOOL WINAPI RemoveAndEnd(DWORD AnEvent) {
  if (AnEvent == CTRL_LOGOFF_EVENT) {
    return FALSE;
  }
  TShared& All = Shared();
  std::unique_lock Guard(All.Lock);
  All.IsEnding = true;
  All.HasChanged.wait(Guard, [&All] { return All.Steps == 0; });
  for (const auto& [Place, Path] : All.Paths) {
    ::DeleteFileW(Path.c_str());
  }
  // The lock stays: no thread begins a new step.
  static_cast<void>(Guard.release());
  return FALSE;
}

}  // namespace

namespace Platform {

RemovalAtSignal::RemovalAtSignal(const std::string& APath) {
  static const BOOL IsHandled = ::SetConsoleCtrlHandler(RemoveAndEnd, TRUE);
  static_cast<void>(IsHandled);
  std::wstring Path = WindowsCalls::WidePath(APath);
  TShared& All = Shared();
  const std::lock_guard Guard(All.Lock);
  FPlace = All.NextPlace++;
  All.Paths.emplace(*FPlace, std::move(Path));
}

RemovalAtSignal::~RemovalAtSignal() {
  TShared& All = Shared();
  const std::lock_guard Guard(All.Lock);
  All.Paths.erase(*FPlace);
}

void WithSignalsDelayed(const std::function<void()>& AStep) {
  struct TStep {
    TStep() {
      if (Depth++ == 0) {
        std::unique_lock Guard(Shared().Lock);
        Shared().HasChanged.wait(Guard, [] { return !Shared().IsEnding; });
        ++Shared().Steps;
      }
    }
    TStep(const TStep&) = delete;
    TStep& operator=(const TStep&) = delete;
    ~TStep() {
      if (--Depth == 0) {
        const std::lock_guard Guard(Shared().Lock);
        --Shared().Steps;
        Shared().HasChanged.notify_all();
      }
    }
  } const Step;
  AStep();
}

}  // namespace Platform
