#pragma once

#include <exception>

#include "QuillonSynchronization/Events.h"
#include "platform/Threads.h"

/// A thread that the system did not start, or one started twice.
class EQuillonThreadError : public EQuillonWin32Error {
 public:
  using EQuillonWin32Error::EQuillonWin32Error;
};

namespace QuillonSynchronization {

/// Runs a method on the main thread, which is the one that ran before main: at once when called there, else as soon as
/// the main thread looks into the queue. What the method throws is thrown here.
/// @return false when the signal came before the method had begun: it will not run
bool Synchronize(const std::function<void()>& AMethod, const TQuillonEvent& AnAbortSignal);

/// Runs the methods that wait for the main thread now. A program that lets other threads synchronise calls this from
/// its main thread, again and again; nothing else empties the queue.
/// @param ATimeout milliseconds to wait for the first method
/// @return whether one ran
/// @throws EQuillonThreadError on any other thread
bool CheckSynchronize(std::uint32_t ATimeout = 0);

}  // namespace QuillonSynchronization

/// A thread of the program. It is not self-freeing, and whoever derives from it calls `Finish` in the destructor, while
/// what `Execute` uses still lives.
class TQuillonThread {
 public:
  explicit TQuillonThread(Platform::ThreadPriority APriority = Platform::ThreadPriority::Normal)
      : FPriority(APriority) {}
  TQuillonThread(const TQuillonThread&) = delete;
  TQuillonThread& operator=(const TQuillonThread&) = delete;
  virtual ~TQuillonThread();

  /// @throws EQuillonThreadError when the system starts no more threads, or the thread was started before
  void Start();
  /// Tells the thread to end. Methods of it that wait for the main thread are not run any more.
  void Terminate() { FTerminateSignal.SetEvent(); }
  bool Terminated() { return FTerminateSignal.WaitFor(0) == wrSignaled; }
  /// Stays signalled once the thread is to end; the abort signal of its waits.
  const TQuillonEvent& TerminateSignal() const { return FTerminateSignal; }
  /// Waits until the thread has ended; a wait on the main thread runs the methods that wait for that.
  TQuillonWaitResult WaitFor(std::uint32_t ATimeout = QuillonInfinite);
  /// What `Execute` threw, once the thread has ended.
  std::exception_ptr FatalException() const { return FFatalException; }

 protected:
  virtual void Execute() = 0;
  /// Tells the thread to end and waits for that; does nothing for one that never began.
  void Finish();
  /// Runs a method on the main thread.
  /// @return false when the thread was told to end before
  bool Synchronize(const std::function<void()>& AMethod) {
    return QuillonSynchronization::Synchronize(AMethod, FTerminateSignal);
  }

 private:
  void Run();

  const Platform::ThreadPriority FPriority;
  TQuillonEvent FTerminateSignal{true, false};
  TQuillonEvent FFinished{true, false};
  std::exception_ptr FFatalException;
  std::thread FThread;
};

/// A thread whose work is an event.
class TQuillonWorkerThread final : public TQuillonThread {
 public:
  using TOnExecute = std::function<void(TQuillonWorkerThread& ASender)>;

  explicit TQuillonWorkerThread(TOnExecute AnOnExecute,
                                Platform::ThreadPriority APriority = Platform::ThreadPriority::Normal)
      : TQuillonThread(APriority), FOnExecute(std::move(AnOnExecute)) {}
  TQuillonWorkerThread(const TQuillonWorkerThread&) = delete;
  TQuillonWorkerThread& operator=(const TQuillonWorkerThread&) = delete;
  ~TQuillonWorkerThread() override { Finish(); }

  using TQuillonThread::Synchronize;

 protected:
  void Execute() override { FOnExecute(*this); }

 private:
  const TOnExecute FOnExecute;
};
