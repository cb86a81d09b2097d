#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>

#include "QuillonSynchronization/Timer.h"

namespace QuillonRemoting {

/// Milliseconds between two exchanges that keep a session alive.
inline constexpr std::uint32_t KeepAliveInterval = 5000;
/// Milliseconds that an exchange under way gets to end by itself before it is aborted, and those between two attempts
/// to abort it. It ends within about a second then, but for the look-up of a host's name, which nothing can end.
inline constexpr std::uint32_t KeepAliveGrace = 500;
inline constexpr std::uint32_t KeepAliveAbortStep = 20;

}  // namespace QuillonRemoting

/// Keeps a session alive from a thread of its own, and gives way to the exchanges of other threads.
class TQuillonRemoteKeepAlive {
 public:
  /// @param AnExchange runs in the timer's thread and raises nothing; @return false to be switched off
  /// @param AnAbort ends, from another thread, what AnExchange waits for at this moment
  TQuillonRemoteKeepAlive(std::function<bool()> AnExchange, std::function<void()> AnAbort);
  TQuillonRemoteKeepAlive(const TQuillonRemoteKeepAlive&) = delete;
  TQuillonRemoteKeepAlive& operator=(const TQuillonRemoteKeepAlive&) = delete;
  /// As switching it off.
  ~TQuillonRemoteKeepAlive();

  bool Enabled() const { return FEnabled; }
  /// Not to be called by AnExchange; ends one that is under way.
  void SetEnabled(bool AValue);
  std::uint32_t Interval() const { return FTimer.Interval(); }
  void SetInterval(std::uint32_t AValue);

  /// Lets no exchange begin as long as one lives, and has waited for one that was under way, or ended it.
  class TPause {
   public:
    explicit TPause(TQuillonRemoteKeepAlive& AKeepAlive);
    TPause(const TPause&) = delete;
    TPause& operator=(const TPause&) = delete;
    /// A thread that the system does not start any more is logged, and leaves the switch off.
    ~TPause();

   private:
    TQuillonRemoteKeepAlive& FKeepAlive;
  };

 private:
  void OnTimer();
  void Start();
  void Stop();

  const std::function<bool()> FExchange;
  const std::function<void()> FAbort;
  std::atomic<bool> FEnabled = false;
  std::atomic<bool> FIsStopping = false;
  TQuillonEvent FIdle{true, true};  ///< signalled unless an exchange is under way
  std::mutex FSwitchLock;           ///< for starting and stopping the timer, which the timer's thread does not do
  int FPauses = 0;
  TQuillonTimer FTimer;
};
