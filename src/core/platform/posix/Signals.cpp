#include "platform/Signals.h"

#include <pthread.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <climits>
#include <csignal>

namespace {

constexpr std::array EndingSignals = {SIGHUP, SIGINT, SIGTERM};

/// A path in memory of its own: a handler may not ask for any, nor meet a text that is just freed.
struct Place {
  std::atomic<bool> IsTaken = false;
  std::atomic<bool> IsSet = false;
  std::array<char, PATH_MAX> Path;
};

// More files than any job writes at once; the memory of those never used is never touched.
std::array<Place, 256> Places;

static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void RemoveAndEnd(int ASignal) {
  for (const Place& Each : Places) {
    if (Each.IsSet) {
      ::unlink(Each.Path.data());
    }
  }
  // The disposition is the default one again: the process ends by the signal as soon as this returns.
  std::raise(ASignal);
}

/// Signals that nobody has decided about are handled from now on; one that is ignored stays so.
void HandleSignals() {
  for (const int Signal : EndingSignals) {
    struct sigaction Present {};
    if (::sigaction(Signal, nullptr, &Present) == 0 && (Present.sa_flags & SA_SIGINFO) == 0 &&
        Present.sa_handler == SIG_DFL) {
      struct sigaction Ours {};
      Ours.sa_handler = RemoveAndEnd;
      Ours.sa_flags = static_cast<int>(SA_RESETHAND);
      for (const int Other : EndingSignals) {
        ::sigaddset(&Ours.sa_mask, Other);
      }
      ::sigaction(Signal, &Ours, nullptr);
    }
  }
}

}  // namespace

namespace Platform {

RemovalAtSignal::RemovalAtSignal(const std::string& APath) {
  HandleSignals();
  if (APath.size() >= PATH_MAX) {
    return;
  }
  for (std::size_t I = 0; I < Places.size(); ++I) {
    if (!Places[I].IsTaken.exchange(true)) {
      Places[I].Path[APath.copy(Places[I].Path.data(), APath.size())] = '\0';
      Places[I].IsSet = true;
      FPlace = I;
      return;
    }
  }
}

RemovalAtSignal::~RemovalAtSignal() {
  if (FPlace) {
    Places[*FPlace].IsSet = false;
    Places[*FPlace].IsTaken = false;
  }
}

void WithSignalsDelayed(const std::function<void()>& AStep) {
  struct TMask {
    TMask() {
      sigset_t Delayed;
      ::sigemptyset(&Delayed);
      for (const int Signal : EndingSignals) {
        ::sigaddset(&Delayed, Signal);
      }
      ::pthread_sigmask(SIG_BLOCK, &Delayed, &Before);
    }
    TMask(const TMask&) = delete;
    TMask& operator=(const TMask&) = delete;
    ~TMask() { ::pthread_sigmask(SIG_SETMASK, &Before, nullptr); }
    sigset_t Before{};
  } const Mask;
  AStep();
}

}  // namespace Platform
