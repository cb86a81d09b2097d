#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <limits>
#include <stdexcept>

#include "QuillonSynchronization/Mutexes.h"
#include "QuillonSynchronization/Timer.h"

namespace {

/// Longer than anything here takes, unless it hangs: the bound of all waits.
constexpr std::uint32_t Long = 20'000;
/// Long enough for another thread to come to its wait.
constexpr std::uint32_t Short = 30;

void Pause() { std::this_thread::sleep_for(std::chrono::milliseconds(Short)); }

TEST(SynchronizationTest, AWaitTellsWhatEndedIt) {
  const struct {
    bool Manual, Own, Abort;
    TQuillonWaitResult First, Second;
  } Cases[] = {
      {false, false, false, wrTimeout, wrTimeout}, {false, true, false, wrSignaled, wrTimeout},
      {true, true, false, wrSignaled, wrSignaled}, {false, false, true, wrAborted, wrTimeout},
      {false, true, true, wrSignaled, wrAborted},  {true, false, true, wrAborted, wrAborted},
      {true, true, true, wrSignaled, wrSignaled},
  };
  for (const auto& Case : Cases) {
    TQuillonEvent Event(Case.Manual, Case.Own);
    TQuillonEvent Abort(Case.Manual, Case.Abort);
    TQuillonSemaphore Semaphore(Case.Own ? 1 : 0, 1);
    EXPECT_EQ(Semaphore.Aquire(Case.Abort ? Long : 1, Abort), Case.First);
    Abort.ResetEvent();
    if (Case.Abort) {
      Abort.SetEvent();
    }
    for (const TQuillonWaitResult Expected : {Case.First, Case.Second}) {
      EXPECT_EQ(Event.WaitFor(Expected == wrTimeout ? 1 : Long, Abort), Expected);
    }
  }
}

TEST(SynchronizationTest, TheFirstSignalEndsAWaitThatRuns) {
  for (const bool Aborted : {false, true}) {
    TQuillonEvent Event(false, false);
    TQuillonEvent Abort(false, false);
    TQuillonWorkerThread Thread([&](TQuillonWorkerThread&) {
      Pause();
      (Aborted ? Abort : Event).SetEvent();
      Pause();
      (Aborted ? Event : Abort).SetEvent();
    });
    Thread.Start();
    EXPECT_EQ(Event.WaitFor(QuillonInfinite, Abort), Aborted ? wrAborted : wrSignaled);
    EXPECT_EQ((Aborted ? Event : Abort).WaitFor(Long), wrSignaled);
    EXPECT_EQ(Event.WaitFor(0, Abort), wrTimeout);
  }
}

TEST(SynchronizationTest, APulseLetsThoseGoThatWait) {
  for (const bool Manual : {false, true}) {
    TQuillonEvent Event(Manual, true);
    TQuillonSemaphore Gone(0, 2);
    Event.PulseEvent();
    EXPECT_EQ(Event.WaitFor(0), wrTimeout);
    const auto Wait = [&](TQuillonWorkerThread& AThread) {
      if (Event.WaitFor(Long, AThread.TerminateSignal()) == wrSignaled) {
        Gone.Release(1);
      }
    };
    TQuillonWorkerThread First(Wait);
    TQuillonWorkerThread Second(Wait);
    First.Start();
    Second.Start();
    int Pulses = 0;
    bool HasGone = false;
    while (!HasGone && Pulses < 40) {
      Pause();
      Event.PulseEvent();
      ++Pulses;
      HasGone = Gone.Aquire(500) == wrSignaled;
    }
    EXPECT_TRUE(HasGone);
    if (!Manual && Pulses == 1) {
      EXPECT_EQ(Gone.Aquire(Short), wrTimeout);
    }
    EXPECT_EQ(Event.WaitFor(0), wrTimeout);
  }
}

TEST(SynchronizationTest, PermitsComeBackAllOrNone) {
  TQuillonSemaphore Semaphore(3, 3);
  EXPECT_EQ(Semaphore.Aquire(0), wrSignaled);
  EXPECT_EQ(Semaphore.Aquire(0), wrSignaled);
  for (const std::int32_t Count : {3, 0, -1, std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_THROW(Semaphore.Release(Count), EQuillonSemaphoreError);
  }
  EXPECT_EQ(Semaphore.Release(2), 1);
  for (const auto& [Initial, Max] : {std::pair(2, 1), std::pair(-1, 1), std::pair(0, 0)}) {
    EXPECT_THROW(TQuillonSemaphore(Initial, Max), EQuillonSemaphoreError);
  }
}

TEST(SynchronizationTest, ObjectsOfOneNameAreOne) {
  TQuillonEvent Event(true, true, "name");
  TQuillonMutex Mutex(true, "other");
  EXPECT_EQ(TQuillonEvent(false, false, "name").WaitFor(0), wrSignaled);
  EXPECT_EQ(TQuillonEvent(false, false).WaitFor(0), wrTimeout);
  EXPECT_THROW(TQuillonMutex("name"), EQuillonMutexError);
  EXPECT_THROW(TQuillonSemaphore(1, 1, "other"), EQuillonSemaphoreError);
  EXPECT_THROW(TQuillonEvent(true, true, "other"), EQuillonEventError);
  TQuillonWorkerThread Thread([&](TQuillonWorkerThread&) {
    if (TQuillonMutex(true, "other").Aquire(0) != wrTimeout) {
      throw std::logic_error("two threads have the mutex");
    }
    Mutex.Release();
  });
  Thread.Start();
  ASSERT_EQ(Thread.WaitFor(Long), wrSignaled);
  EXPECT_THROW(std::rethrow_exception(Thread.FatalException()), EQuillonMutexError);
}

TEST(SynchronizationTest, AMutexOfAThreadThatEndedIsAbandoned) {
  TQuillonMutex Mutex;
  TQuillonEvent Taken(false, false);
  TQuillonEvent End(false, false);
  for (const bool WaitsBefore : {false, true}) {
    TQuillonWorkerThread Thread([&](TQuillonWorkerThread&) {
      Mutex.Aquire(Long);
      Mutex.Aquire(Long);
      Mutex.Release();
      Taken.SetEvent();
      End.WaitFor(Long);
      if (WaitsBefore) {
        Pause();
      }
    });
    Thread.Start();
    ASSERT_EQ(Taken.WaitFor(Long), wrSignaled);
    EXPECT_EQ(Mutex.Aquire(0), wrTimeout);
    EXPECT_THROW(Mutex.Release(), EQuillonMutexError);
    End.SetEvent();
    EXPECT_EQ(Mutex.Aquire(Long), wrAbandoned);
    EXPECT_EQ(Mutex.Aquire(Long), wrSignaled);
    Mutex.Release();
    Mutex.Release();
  }
}

TEST(SynchronizationTest, TheTimeOutOfAWriterIsNotForTheReaders) {
  TQuillonReadWriteMutex Mutex(2);
  ASSERT_EQ(Mutex.BeginRead(0), wrSignaled);
  std::atomic<bool> HasWritten = false;
  TQuillonEvent Begun(false, false);
  TQuillonEvent End(false, false);
  TQuillonWorkerThread Writer([&](TQuillonWorkerThread&) {
    if (Mutex.BeginWrite(1) == wrSignaled) {
      HasWritten = true;
      Begun.SetEvent();
      End.WaitFor(Long);
      Mutex.EndWrite();
    }
  });
  Writer.Start();
  while (Mutex.BeginRead(0) == wrSignaled) {
    Mutex.EndRead();
    std::this_thread::yield();
  }
  EXPECT_EQ(Writer.WaitFor(Short), wrTimeout);
  EXPECT_EQ(Mutex.BeginWrite(1), wrTimeout);
  EXPECT_FALSE(HasWritten);
  Mutex.EndRead();
  ASSERT_EQ(Begun.WaitFor(Long), wrSignaled);
  EXPECT_EQ(Mutex.BeginRead(0), wrTimeout);
  End.SetEvent();
  EXPECT_EQ(Writer.WaitFor(Long), wrSignaled);
  EXPECT_EQ(Mutex.BeginRead(0), wrSignaled);
  EXPECT_EQ(Mutex.BeginRead(0), wrSignaled);
  EXPECT_EQ(Mutex.BeginRead(0), wrTimeout);
}

TEST(SynchronizationTest, WritersAreAloneAndAllGetTheirTurn) {
  TQuillonReadWriteMutex Mutex(3);
  int Value = 0;
  std::vector<std::unique_ptr<TQuillonWorkerThread>> Threads;
  for (int Thread = 0; Thread < 6; ++Thread) {
    Threads.push_back(std::make_unique<TQuillonWorkerThread>([&, Writes = Thread % 2 == 0](TQuillonWorkerThread&) {
      for (int Round = 0; Round < 200; ++Round) {
        if (Writes) {
          Mutex.BeginWrite(QuillonInfinite);
          ++Value;
          Mutex.EndWrite();
        } else {
          Mutex.BeginRead(QuillonInfinite);
          EXPECT_LE(Value, 600);
          Mutex.EndRead();
        }
      }
    }));
    Threads.back()->Start();
  }
  for (const auto& Thread : Threads) {
    ASSERT_EQ(Thread->WaitFor(Long), wrSignaled);
  }
  EXPECT_EQ(Value, 600);
}

TEST(SynchronizationTest, MethodsRunOnTheMainThreadOrNotAtAll) {
  const std::thread::id Main = std::this_thread::get_id();
  bool Ran = false;
  const auto Work = [&](TQuillonWorkerThread& AThread) {
    if (AThread.Synchronize([&] {
          Ran = std::this_thread::get_id() == Main;
          throw std::out_of_range("for the caller");
        })) {
      throw std::logic_error("nothing came back");
    }
  };
  TQuillonWorkerThread Thread(Work);
  Thread.Start();
  EXPECT_TRUE(QuillonSynchronization::CheckSynchronize(Long));
  EXPECT_EQ(Thread.WaitFor(Long), wrSignaled);
  EXPECT_TRUE(Ran);
  EXPECT_THROW(std::rethrow_exception(Thread.FatalException()), std::out_of_range);
  EXPECT_THROW(Thread.Start(), EQuillonThreadError);

  TQuillonWorkerThread Waited(Work);
  Waited.Start();
  Ran = false;
  EXPECT_EQ(Waited.WaitFor(Long), wrSignaled);
  EXPECT_TRUE(Ran);

  Ran = false;
  {
    TQuillonWorkerThread Ended(Work);
    Ended.Start();
    Pause();
  }
  EXPECT_FALSE(QuillonSynchronization::CheckSynchronize());
  EXPECT_FALSE(Ran);
}

class TimerTest : public ::testing::TestWithParam<bool> {
 protected:
  TimerTest() {
    FTimer.SetSynchronized(GetParam());
    FTimer.SetInterval(QuillonInfinite);
  }
  /// Waits for one tick, wherever it runs.
  bool HasTicked(std::uint32_t ATimeout = Long) {
    if (GetParam()) {
      QuillonSynchronization::CheckSynchronize(ATimeout);
      ATimeout = 0;
    }
    return FTicks.WaitFor(ATimeout) == wrSignaled;
  }

  TQuillonEvent FTicks{false, false};
  TQuillonTimer FTimer;
};

TEST_P(TimerTest, TicksAtItsIntervalOrAtTheSignal) {
  FTimer.SetOnTimer([&](TQuillonTimer&) { FTicks.SetEvent(); });
  FTimer.Signal();
  FTimer.SetEnabled(true);
  EXPECT_FALSE(HasTicked(Short));
  FTimer.Signal();
  EXPECT_TRUE(HasTicked());
  FTimer.SetInterval(1);
  EXPECT_TRUE(HasTicked());
  EXPECT_TRUE(HasTicked());
  FTimer.SetThreadPriority(Platform::ThreadPriority::Lower);
  EXPECT_TRUE(HasTicked());
  FTimer.SetEnabled(false);
  FTicks.ResetEvent();
  EXPECT_FALSE(HasTicked(Short));
  // Freed with a tick that waits for the main thread.
  FTimer.SetEnabled(true);
  Pause();
}

TEST_P(TimerTest, TheEventOnlyStoresWhatItSets) {
  FTimer.SetOnTimer([&](TQuillonTimer& ASender) {
    ASender.SetEnabled(false);
    ASender.SetInterval(1);
    ASender.SetThreadPriority(Platform::ThreadPriority::Idle);
    EXPECT_TRUE(ASender.Synchronize([] {}) || !GetParam());
    FTicks.SetEvent();
  });
  ASSERT_EQ(FTimer.ThreadPriority(), Platform::ThreadPriority::Normal);
  FTimer.SetEnabled(true);
  FTimer.Signal();
  if (!GetParam()) {
    EXPECT_TRUE(QuillonSynchronization::CheckSynchronize(Long));
  }
  EXPECT_TRUE(HasTicked());
  EXPECT_FALSE(FTimer.Enabled());
  EXPECT_EQ(FTimer.Interval(), 1U);
  EXPECT_EQ(FTimer.ThreadPriority(), Platform::ThreadPriority::Normal);
  EXPECT_FALSE(HasTicked(Short));
  FTimer.SetOnTimer([&](TQuillonTimer&) { FTicks.SetEvent(); });
  FTimer.SetEnabled(true);
  EXPECT_TRUE(HasTicked());
}

TEST_P(TimerTest, AnEventThatFailsSwitchesItOff) {
  FTimer.SetOnTimer([&](TQuillonTimer&) {
    FTicks.SetEvent();
    throw std::out_of_range("event");
  });
  FTimer.SetEnabled(true);
  FTimer.Signal();
  EXPECT_TRUE(HasTicked());
  FTimer.SetEnabled(false);
  ASSERT_NE(FTimer.FatalException(), nullptr);
  EXPECT_THROW(std::rethrow_exception(FTimer.FatalException()), std::out_of_range);
}

TEST_P(TimerTest, AllThreadsMaySetItAtOnce) {
  std::atomic<std::uint32_t> Ticks = 0;
  FTimer.SetOnTimer([&](TQuillonTimer& ASender) {
    const std::uint32_t Tick = ++Ticks;
    ASender.SetEnabled(Tick % 3 != 0);
    ASender.SetInterval(Tick % 2);
    ASender.Signal();
  });
  const auto Work = [&](TQuillonWorkerThread&) {
    for (std::uint32_t Round = 0; Round < 50; ++Round) {
      FTimer.SetEnabled(Round % 4 != 0);
      FTimer.SetInterval(Round % 3);
      FTimer.Signal();
      FTimer.Synchronize([&] { FTimer.SetSynchronized(GetParam()); });
    }
  };
  TQuillonWorkerThread First(Work);
  TQuillonWorkerThread Second(Work);
  First.Start();
  Second.Start();
  EXPECT_EQ(First.WaitFor(Long), wrSignaled);
  EXPECT_EQ(Second.WaitFor(Long), wrSignaled);
  const std::uint32_t Before = Ticks;
  FTimer.SetEnabled(false);
  FTimer.SetEnabled(true);
  for (std::uint32_t Left = Long; Left > 0 && Ticks == Before; --Left) {
    QuillonSynchronization::CheckSynchronize(1);
  }
  EXPECT_GT(Ticks, Before);
}

INSTANTIATE_TEST_SUITE_P(Threads, TimerTest, ::testing::Bool(),
                         [](const auto& AnInfo) { return AnInfo.param ? "Main" : "Own"; });

}  // namespace
