#include "QuillonSynchronization/Waiting.h"

#include <cassert>
#include <chrono>
#include <condition_variable>
#include <map>
#include <string>
#include <utility>

namespace QuillonWaiting {

/// One thread's wait, for as long as it stands in the objects' queues.
class TWait {
 public:
  TWait(TState& AState, TState* AnAbortSignal) {
    Join(FState, &AState);
    try {
      Join(FAbortSignal, AnAbortSignal);
    } catch (...) {
      Withdraw();
      throw;
    }
  }
  TWait(const TWait&) = delete;
  TWait& operator=(const TWait&) = delete;
  ~TWait() { Withdraw(); }

  std::thread::id Thread() const { return FThread; }

  /// Ends the wait with one of its objects.
  void Decide(const TState& AState, TQuillonWaitResult AResult) {
    FResult = &AState == FState ? AResult : wrAborted;
    Withdraw();
    FDecided.notify_one();
  }

  TQuillonWaitResult Result(std::unique_lock<std::mutex>& ALock, std::uint32_t ATimeout) {
    const auto IsDecided = [this] { return FResult.has_value(); };
    if (ATimeout == QuillonInfinite) {
      FDecided.wait(ALock, IsDecided);
    } else {
      FDecided.wait_for(ALock, std::chrono::milliseconds(ATimeout), IsDecided);
    }
    return FResult.value_or(wrTimeout);
  }

 private:
  void Join(TState*& APlace, TState* AState) {
    if (AState != nullptr) {
      AState->FWaits.push_back(this);
      APlace = AState;
    }
  }
  void Withdraw() {
    for (TState* State : {std::exchange(FState, nullptr), std::exchange(FAbortSignal, nullptr)}) {
      if (State != nullptr) {
        std::erase(State->FWaits, this);
      }
    }
  }

  TState* FState = nullptr;
  TState* FAbortSignal = nullptr;
  std::thread::id FThread = std::this_thread::get_id();
  std::optional<TQuillonWaitResult> FResult;
  std::condition_variable FDecided;
};

TState::~TState() { assert(FWaits.empty()); }

std::mutex& TState::Lock() {
  static std::mutex Lock;
  return Lock;
}

void TState::Grant() {
  while (!FWaits.empty()) {
    TWait& Wait = *FWaits.front();
    const std::optional<TQuillonWaitResult> Result = TryTake(Wait.Thread());
    if (!Result) {
      return;
    }
    Wait.Decide(*this, *Result);
  }
}

TQuillonWaitResult WaitFor(TState& AState, std::uint32_t ATimeout, TState* AnAbortSignal) {
  std::unique_lock<std::mutex> Lock(TState::Lock());
  if (const auto Result = AState.TryTake(std::this_thread::get_id())) {
    return *Result;
  }
  if (AnAbortSignal != nullptr && AnAbortSignal->TryTake(std::this_thread::get_id())) {
    return wrAborted;
  }
  if (ATimeout == 0) {
    return wrTimeout;
  }
  return TWait(AState, AnAbortSignal).Result(Lock, ATimeout);
}

std::shared_ptr<TState> Open(std::string_view AName, const std::function<std::shared_ptr<TState>()>& AMake) {
  if (AName.empty()) {
    return AMake();
  }
  static std::mutex Lock;
  static std::map<std::string, std::weak_ptr<TState>, std::less<>> States;
  const std::lock_guard<std::mutex> Guard(Lock);
  std::erase_if(States, [](const auto& AnEntry) { return AnEntry.second.expired(); });
  std::weak_ptr<TState>& Entry = States[std::string(AName)];
  std::shared_ptr<TState> State = Entry.lock();
  if (State == nullptr) {
    State = AMake();
    Entry = State;
  }
  return State;
}

}  // namespace QuillonWaiting
