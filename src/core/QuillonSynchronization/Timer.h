#pragma once

#include <atomic>

#include "QuillonSynchronization/Threads.h"

class TQuillonTimer;

/// The thread of a timer while that is enabled.
class TQuillonTimerThread final : public TQuillonThread {
 public:
  TQuillonTimerThread(TQuillonTimer& AnOwner, Platform::ThreadPriority APriority)
      : TQuillonThread(APriority), FOwner(AnOwner) {}
  TQuillonTimerThread(const TQuillonTimerThread&) = delete;
  TQuillonTimerThread& operator=(const TQuillonTimerThread&) = delete;
  ~TQuillonTimerThread() override { Finish(); }

 protected:
  void Execute() override;

 private:
  TQuillonTimer& FOwner;
};

/// Calls an event again and again, from a thread of its own.
///
/// All members may be called by any thread, the event's included, but for the destructor, which waits for the event.
/// An event that throws switches the timer off; `FatalException` keeps what it threw.
class TQuillonTimer {
 public:
  using TOnTimer = std::function<void(TQuillonTimer& ASender)>;

  TQuillonTimer() = default;
  TQuillonTimer(const TQuillonTimer&) = delete;
  TQuillonTimer& operator=(const TQuillonTimer&) = delete;
  ~TQuillonTimer();

  /// Fires the next tick at once; does nothing while the timer is off.
  void Signal();
  /// Runs a method on the main thread, for events that do not run there.
  /// @return false when the timer was switched off before
  bool Synchronize(const std::function<void()>& AMethod) {
    return QuillonSynchronization::Synchronize(AMethod, FStopSignal);
  }

  bool Enabled() const { return FEnabled; }
  /// Starts or ends the thread, and waits for its end. Within the event the value is only stored: switched off there,
  /// the thread ends when the event has returned.
  void SetEnabled(bool AValue);
  std::uint32_t Interval() const { return FInterval; }
  /// @param AValue milliseconds; within the event it holds from the next tick on, else the wait begins anew.
  ///               With 0 the event is called without a pause.
  void SetInterval(std::uint32_t AValue);
  Platform::ThreadPriority ThreadPriority() const { return FThreadPriority; }
  /// Starts the thread anew. Within the event a change is dropped.
  void SetThreadPriority(Platform::ThreadPriority AValue);
  /// Whether the event runs on the main thread, as soon as that calls QuillonSynchronization::CheckSynchronize, or on
  /// the timer's own.
  bool Synchronized() const { return FSynchronized; }
  void SetSynchronized(bool AValue) { FSynchronized = AValue; }
  void SetOnTimer(TOnTimer AValue);
  /// What the event threw last.
  std::exception_ptr FatalException() const;

 private:
  friend class TQuillonTimerThread;
  void Fire();
  bool IsInTimerEvent() const { return FInTimerEvent == std::this_thread::get_id(); }
  void StartThread();
  void StopThread();
  void RestartThread();

  std::atomic<bool> FEnabled = false;
  std::atomic<std::uint32_t> FInterval = 1000;
  std::atomic<bool> FSynchronized = true;
  std::atomic<Platform::ThreadPriority> FThreadPriority = Platform::ThreadPriority::Normal;
  /// The thread that is in the event.
  std::atomic<std::thread::id> FInTimerEvent;
  TQuillonEvent FSignal{false, false};
  TQuillonEvent FStopSignal{true, false};
  mutable std::mutex FEventLock;  ///< for the next two; never held while an event runs
  TOnTimer FOnTimer;
  std::exception_ptr FFatalException;
  std::mutex FThreadLock;  ///< for starting and ending the thread; an event never asks for it
  std::unique_ptr<TQuillonTimerThread> FTimerThread;
};
