#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <thread>

#include "QuillonSockets/Sockets.h"

using namespace std::chrono_literals;

TEST(SocketSignals, ASignalDoesNotEndAWait) {
  TQuillonTCPSocket Socket;
  Socket.CreateSocket();
  Socket.FLocalHost = "127.0.0.1";
  Socket.Bind();
  Socket.Listen();
  struct sigaction Action {};
  struct sigaction Former {};
  Action.sa_handler = [](int) {};
  sigaction(SIGUSR1, &Action, &Former);
  const auto Begin = std::chrono::steady_clock::now();
  std::atomic<bool> IsOver = false;
  const auto Signals = std::async(std::launch::async, [&, Thread = pthread_self()] {
    while (!IsOver) {
      pthread_kill(Thread, SIGUSR1);
      std::this_thread::sleep_for(2ms);
    }
  });
  EXPECT_FALSE(Socket.Poll(100, ssmRead));
  IsOver = true;
  Signals.wait();
  sigaction(SIGUSR1, &Former, nullptr);
  EXPECT_GE(std::chrono::steady_clock::now() - Begin, 99ms);
}
