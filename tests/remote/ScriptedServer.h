#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuillonSockets/SocketStreams.h"

/// The bytes of hexadecimal digits with blanks between them.
inline std::string Hex(std::string_view ADigits) {
  std::string Bytes;
  while (!ADigits.empty()) {
    if (ADigits.starts_with(' ')) {
      ADigits.remove_prefix(1);
    } else {
      Bytes += static_cast<char>(std::stoi(std::string(ADigits.substr(0, 2)), nullptr, 16));
      ADigits.remove_prefix(2);
    }
  }
  return Bytes;
}

/// A server that awaits given bytes and sends others for them, one connection behind the end of the other.
class TScriptedServer {
 public:
  /// Longer than anything here takes, unless it hangs.
  static constexpr std::int32_t Long = 20'000;

  struct TStep {
    std::string Awaited;
    std::string Answer;
  };
  struct TConnection {
    std::vector<TStep> Steps;
    bool IsCut = false;  ///< closed by the server, which else waits for the client to do so
  };

  TScriptedServer() {
    FSocket.FLocalHost = "127.0.0.1";
    FSocket.CreateSocket();
    FSocket.Bind();
    FSocket.Listen();
  }

  std::uint16_t Port() const { return FSocket.FLocalPort; }
  void Play(std::vector<TConnection> AScript) {
    FPlayed = std::async(std::launch::async, [this, Script = std::move(AScript)] {
      for (const TConnection& Connection : Script) {
        ASSERT_TRUE(FSocket.Poll(Long, ssmRead)) << "a connection is missing";
        PlayConnection(Connection);
      }
    });
  }
  /// Plays, until the end is wanted, whichever of the sequences begins with the byte that comes.
  void PlayAny(std::vector<std::vector<TStep>> ASequences) {
    FIsEndless = true;
    FPlayed = std::async(std::launch::async, [this, Sequences = std::move(ASequences)] {
      while (FIsEndless) {
        if (FSocket.Poll(20, ssmRead)) {
          const auto Peer = FSocket.Accept();
          for (std::string Begin = Read(*Peer, 1); !Begin.empty(); Begin = Read(*Peer, 1)) {
            for (const std::vector<TStep>& Steps : Sequences) {
              if (Steps.front().Awaited.starts_with(Begin)) {
                PlaySteps(*Peer, Steps, Begin);
              }
            }
          }
        }
      }
    });
  }
  /// Steps that the client has come through.
  int StepCount() const { return FStepCount; }
  /// Waits for the end of the script, behind which nobody has connected.
  void End() {
    const bool IsScript = !FIsEndless.exchange(false);
    FPlayed.get();
    EXPECT_FALSE(IsScript && FSocket.Poll(0, ssmRead));
  }

 private:
  /// @return less than asked for at the end; a client may cut the connection, too
  static std::string Read(TQuillonTCPSocket& APeer, std::size_t ACount) {
    TQuillonTCPSocketReader Reader(APeer);
    Reader.FStallLimit = Long;
    std::string Bytes(ACount, '\0');
    try {
      Bytes.resize(Reader.Read(Bytes));
    } catch (const EQuillonSocketError&) {
      Bytes.clear();
    }
    return Bytes;
  }

  /// @param ABegin what has been read of the first one
  void PlaySteps(TQuillonTCPSocket& APeer, const std::vector<TStep>& ASteps, std::string ABegin = {}) {
    for (const TStep& Step : ASteps) {
      EXPECT_EQ(ABegin + Read(APeer, Step.Awaited.size() - ABegin.size()), Step.Awaited);
      ++FStepCount;
      TQuillonTCPSocketWriter(APeer).WriteSignature(Step.Answer);
      ABegin.clear();
    }
  }

  void PlayConnection(const TConnection& AConnection) {
    const auto Peer = FSocket.Accept();
    PlaySteps(*Peer, AConnection.Steps);
    if (!AConnection.IsCut) {
      EXPECT_EQ(Read(*Peer, 100), "") << "more is sent than awaited";
    }
  }

  TQuillonTCPSocket FSocket;
  std::atomic<bool> FIsEndless = false;
  std::atomic<int> FStepCount = 0;
  std::future<void> FPlayed;
};
