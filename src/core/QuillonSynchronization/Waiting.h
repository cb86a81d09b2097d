#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>
#include <vector>

/// How a wait ended.
enum TQuillonWaitResult {
  wrSignaled,   ///< the object was signalled, and is taken where it can be
  wrTimeout,    ///< the time was over
  wrAbandoned,  ///< the mutex is taken, but the thread that had it ended without giving it back
  wrAborted     ///< the abort signal came first
};

/// A time-out that never comes; all others are milliseconds.
constexpr std::uint32_t QuillonInfinite = 0xFFFFFFFF;

/// What stands behind the objects that threads wait for.
///
/// One lock guards the states of them all, since a wait for two objects has to see both at one moment. It is held for
/// a few instructions only. Whoever signals an object hands it to the waiting threads in the order of their coming, so
/// no wake-up is lost, and a thread that has not woken yet keeps what it was given.
namespace QuillonWaiting {

class TWait;

/// The state of one object. Objects of the same name share one state, within this process.
class TState {
 public:
  TState() = default;
  TState(const TState&) = delete;
  TState& operator=(const TState&) = delete;
  virtual ~TState();

  /// The lock of all states.
  static std::mutex& Lock();

  /// Takes the object for a thread, if it is to be had. To be called under the lock.
  virtual std::optional<TQuillonWaitResult> TryTake(std::thread::id AThread) = 0;
  /// Hands the object to those that wait, as far as it goes. To be called under the lock.
  void Grant();

 private:
  friend class TWait;
  std::vector<TWait*> FWaits;
};

/// Waits for one object, or for it and an abort signal at once; the object wins when both are there. Both outlive the
/// wait: whoever frees an object has ended the waits for it before.
TQuillonWaitResult WaitFor(TState& AState, std::uint32_t ATimeout, TState* AnAbortSignal = nullptr);

/// The state of that name, made when there is none; a state of its own for no name.
std::shared_ptr<TState> Open(std::string_view AName, const std::function<std::shared_ptr<TState>()>& AMake);

}  // namespace QuillonWaiting
