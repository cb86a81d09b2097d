#pragma once

#include <gtest/gtest.h>

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
  /// Waits for the end of the script, behind which nobody has connected.
  void End() {
    FPlayed.get();
    EXPECT_FALSE(FSocket.Poll(0, ssmRead));
  }

 private:
  void PlayConnection(const TConnection& AConnection) {
    const auto Peer = FSocket.Accept();
    TQuillonTCPSocketReader Reader(*Peer);
    Reader.FStallLimit = Long;
    std::string Bytes;
    for (const TStep& Step : AConnection.Steps) {
      Bytes.resize(Step.Awaited.size());
      Bytes.resize(Reader.Read(Bytes));
      EXPECT_EQ(Bytes, Step.Awaited);
      TQuillonTCPSocketWriter(*Peer).WriteSignature(Step.Answer);
    }
    if (!AConnection.IsCut) {
      Bytes.resize(100);
      try {
        EXPECT_EQ(Reader.Read(Bytes), 0U) << "more is sent than awaited";
      } catch (const EQuillonSocketError&) {  // NOLINT(bugprone-empty-catch): a client may cut the connection, too
      }
    }
  }

  TQuillonTCPSocket FSocket;
  std::future<void> FPlayed;
};
