#include "QuillonSynchronization/Threads.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <system_error>

#include "platform/Errors.h"

namespace {

const std::thread::id MainThread = std::this_thread::get_id();

/// A method that waits for the main thread; its caller keeps it until it has run or is withdrawn.
struct TCall {
  const std::function<void()>& Method;
  std::exception_ptr Exception;
  TQuillonEvent Done{true, false};
};

/// The methods that wait for the main thread, in the order of their coming.
class TCalls {
 public:
  static TCalls& Instance() {
    static auto& Calls = *new TCalls;
    return Calls;
  }

  void Push(TCall& ACall) {
    const std::lock_guard<std::mutex> Guard(FLock);
    FCalls.push_back(&ACall);
    FWaiting.SetEvent();
  }
  /// @return null when there is none
  TCall* Pop() {
    const std::lock_guard<std::mutex> Guard(FLock);
    if (FCalls.empty()) {
      return nullptr;
    }
    TCall* const Call = FCalls.front();
    FCalls.pop_front();
    Tidy();
    return Call;
  }
  /// @return whether the method had not begun
  bool Withdraw(TCall& ACall) {
    const std::lock_guard<std::mutex> Guard(FLock);
    const bool Found = std::erase(FCalls, &ACall) > 0;
    Tidy();
    return Found;
  }
  std::size_t Count() {
    const std::lock_guard<std::mutex> Guard(FLock);
    return FCalls.size();
  }
  /// Signalled while a method waits.
  TQuillonEvent& Waiting() { return FWaiting; }

 private:
  void Tidy() {
    if (FCalls.empty()) {
      FWaiting.ResetEvent();
    }
  }

  std::mutex FLock;
  std::deque<TCall*> FCalls;
  TQuillonEvent FWaiting{true, false};
};

}  // namespace

bool QuillonSynchronization::Synchronize(const std::function<void()>& AMethod, const TQuillonEvent& AnAbortSignal) {
  if (std::this_thread::get_id() == MainThread) {
    AMethod();
    return true;
  }
  TCall Call{AMethod, nullptr};
  TCalls::Instance().Push(Call);
  if (Call.Done.WaitFor(QuillonInfinite, AnAbortSignal) == wrAborted) {
    if (TCalls::Instance().Withdraw(Call)) {
      return false;
    }
    Call.Done.WaitFor(QuillonInfinite);
  }
  if (Call.Exception != nullptr) {
    std::rethrow_exception(Call.Exception);
  }
  return true;
}

bool QuillonSynchronization::CheckSynchronize(std::uint32_t ATimeout) {
  if (std::this_thread::get_id() != MainThread) {
    throw EQuillonThreadError(Platform::NotPermittedError);
  }
  TCalls& Calls = TCalls::Instance();
  Calls.Waiting().WaitFor(ATimeout);
  bool HasRun = false;
  // Only those that are here now: a method that is queued again and again does not keep the main thread.
  for (std::size_t Left = Calls.Count(); Left > 0; --Left) {
    TCall* const Call = Calls.Pop();
    if (Call == nullptr) {
      break;
    }
    try {
      Call->Method();
    } catch (...) {
      Call->Exception = std::current_exception();
    }
    Call->Done.SetEvent();
    HasRun = true;
  }
  return HasRun;
}

TQuillonThread::~TQuillonThread() { Finish(); }

void TQuillonThread::Start() {
  if (FThread.joinable()) {
    throw EQuillonThreadError(Platform::AlreadyDoneError);
  }
  try {
    FThread = std::thread(&TQuillonThread::Run, this);
  } catch (const std::system_error& Error) {
    throw EQuillonThreadError(Error.code().value());
  }
}

void TQuillonThread::Run() {
  Platform::SetThreadPriority(FPriority);
  try {
    Execute();
  } catch (...) {
    FFatalException = std::current_exception();
  }
  FFinished.SetEvent();
}

TQuillonWaitResult TQuillonThread::WaitFor(std::uint32_t ATimeout) {
  if (std::this_thread::get_id() != MainThread) {
    return FFinished.WaitFor(ATimeout);
  }
  using TClock = std::chrono::steady_clock;
  const auto Until = TClock::now() + std::chrono::milliseconds(ATimeout);
  for (std::uint32_t Left = ATimeout;;) {
    const TQuillonWaitResult Result = FFinished.WaitFor(Left, TCalls::Instance().Waiting());
    if (Result != wrAborted) {
      return Result;
    }
    QuillonSynchronization::CheckSynchronize();
    if (ATimeout != QuillonInfinite) {
      const auto Rest = std::chrono::ceil<std::chrono::milliseconds>(Until - TClock::now()).count();
      Left = static_cast<std::uint32_t>(std::max<decltype(Rest)>(Rest, 0));
    }
  }
}

void TQuillonThread::Finish() {
  if (FThread.joinable()) {
    Terminate();
    FThread.join();
  }
}
