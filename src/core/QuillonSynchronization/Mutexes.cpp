#include "QuillonSynchronization/Mutexes.h"

#include <unordered_set>
#include <utility>

#include "platform/Errors.h"

class TQuillonMutex::TState : public QuillonWaiting::TState {
 public:
  TState();
  TState(const TState&) = delete;
  TState& operator=(const TState&) = delete;
  ~TState() override;

  std::optional<TQuillonWaitResult> TryTake(std::thread::id AThread) override {
    if (FCount != 0 && FOwner != AThread) {
      return std::nullopt;
    }
    FOwner = AThread;
    ++FCount;
    return std::exchange(FAbandoned, false) ? wrAbandoned : wrSignaled;
  }
  bool BelongsTo(std::thread::id AThread) const { return FCount != 0 && FOwner == AThread; }
  void Release() {
    if (--FCount == 0) {
      Grant();
    }
  }

  /// Gives back all that the ending thread still has.
  static void AbandonAll();

 private:
  /// All mutexes of the process, so that the end of a thread finds its own. Lives as long as any thread may.
  static std::unordered_set<TState*>& All() {
    static auto& All = *new std::unordered_set<TState*>;
    return All;
  }

  std::thread::id FOwner;
  std::size_t FCount = 0;
  bool FAbandoned = false;
};

namespace {

/// Runs an action at the end of each thread that ever asked for a mutex. Has no content: on Windows a thread's own
/// variables are freed ahead of their destructors.
template <void (*Action)()>
struct TThreadEnd {
  TThreadEnd() = default;
  TThreadEnd(const TThreadEnd&) = delete;
  TThreadEnd& operator=(const TThreadEnd&) = delete;
  ~TThreadEnd() { Action(); }
};

}  // namespace

TQuillonMutex::TState::TState() {
  const std::lock_guard<std::mutex> Guard(Lock());
  All().insert(this);
}

TQuillonMutex::TState::~TState() {
  const std::lock_guard<std::mutex> Guard(Lock());
  All().erase(this);
}

void TQuillonMutex::TState::AbandonAll() {
  const std::lock_guard<std::mutex> Guard(Lock());
  for (TState* State : All()) {
    if (State->BelongsTo(std::this_thread::get_id())) {
      State->FCount = 0;
      State->FAbandoned = true;
      State->Grant();
    }
  }
}

TQuillonMutex::TQuillonMutex(std::string_view AName) : TQuillonMutex(false, AName) {}

TQuillonMutex::TQuillonMutex(bool AnInitialOwner, std::string_view AName) {
  bool IsNew = false;
  FHandle = std::dynamic_pointer_cast<TState>(QuillonWaiting::Open(AName, [&] {
    IsNew = true;
    return std::make_shared<TState>();
  }));
  if (FHandle == nullptr) {
    throw EQuillonMutexError(Platform::InvalidArgumentError, AName);
  }
  if (IsNew && AnInitialOwner) {
    Aquire(QuillonInfinite);
  }
}

TQuillonWaitResult TQuillonMutex::Aquire(std::uint32_t ATimeOut) {
  thread_local const TThreadEnd<&TState::AbandonAll> ThreadEnd;
  return QuillonWaiting::WaitFor(*FHandle, ATimeOut);
}

void TQuillonMutex::Release() {
  const std::lock_guard<std::mutex> Guard(TState::Lock());
  if (!FHandle->BelongsTo(std::this_thread::get_id())) {
    throw EQuillonMutexError(Platform::NotPermittedError);
  }
  FHandle->Release();
}

TQuillonReadWriteMutex::TQuillonReadWriteMutex(std::int32_t AMaxReaderCount, std::string_view AMutexName,
                                               std::string_view ASemaphoreName)
    : FMutex(AMutexName), FSemaphore(AMaxReaderCount, AMaxReaderCount, ASemaphoreName) {}

TQuillonWaitResult TQuillonReadWriteMutex::BeginRead(std::uint32_t ATimeout) { return FSemaphore.Aquire(ATimeout); }

void TQuillonReadWriteMutex::EndRead() { FSemaphore.Release(1); }

TQuillonWaitResult TQuillonReadWriteMutex::BeginWrite(std::uint32_t ATimeout) {
  const TQuillonWaitResult Result = FMutex.Aquire(ATimeout);
  if (Result == wrTimeout) {
    return Result;
  }
  const std::unique_ptr<TQuillonMutex, void (*)(TQuillonMutex*)> Held(&FMutex,
                                                                      [](TQuillonMutex* AMutex) { AMutex->Release(); });
  if (Result == wrSignaled) {
    std::int32_t Taken = 0;
    try {
      for (; Taken < FSemaphore.MaxCount(); ++Taken) {
        FSemaphore.Aquire(QuillonInfinite);
      }
    } catch (...) {
      if (Taken > 0) {
        FSemaphore.Release(Taken);
      }
      throw;
    }
  }
  return Result;
}

void TQuillonReadWriteMutex::EndWrite() { FSemaphore.Release(FSemaphore.MaxCount()); }
