#include <gmock/gmock.h>

#include <atomic>
#include <future>

#include "QuillonLogs/Manager.h"
#include "QuillonSockets/SocketStreams.h"
#include "QuillonSockets/Utils.h"

namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Lt;
using TSocket = std::unique_ptr<TQuillonTCPSocket>;

/// Longer than anything here takes, unless it hangs: the bound of all waits.
constexpr std::int32_t Long = 20'000;

TSocket NewSocket() {
  auto Socket = std::make_unique<TQuillonTCPSocket>();
  Socket->CreateSocket();
  Socket->FRemoteHost = Socket->FLocalHost = "127.0.0.1";
  return Socket;
}

template <class TCall>
std::string ErrorOf(TCall ACall) {
  try {
    ACall();
    return "no error";
  } catch (const EQuillonSocketError& Error) {
    return Error.ErrorMsg();
  }
}

/// Two ends of one connection.
class SocketTest : public testing::Test {
 protected:
  SocketTest() {
    FServer->Bind();
    FServer->Listen();
    FNear->FRemotePort = FServer->FLocalPort;
    FNear->Connect();
    EXPECT_TRUE(FServer->Poll(Long, ssmRead));
    FFar = FServer->Accept();
  }

  TSocket FServer = NewSocket();
  TSocket FNear = NewSocket();
  TSocket FFar;
};

TEST_F(SocketTest, ValuesComeAsTheyWereSent) {
  EXPECT_EQ(FNear->FLocalPort, FFar->FRemotePort);
  const std::string Block(std::size_t{8} << 20, 'x');
  for (const std::size_t BufferSize : {0U, 7U, 4096U}) {
    const auto Sent = std::async(std::launch::async, [&] {
      TQuillonTCPSocketWriter Writer(*FFar, BufferSize);
      Writer.WriteWord(0xABCD);
      Writer.WriteString("Käthe");
      Writer.WriteBinary(Block);
      Writer.WriteLongInt(-2);
      Writer.FlushBuffer();
    });
    TQuillonTCPSocketReader Reader(*FNear, BufferSize);
    EXPECT_EQ(Reader.ReadWord(), 0xABCD);
    EXPECT_EQ(Reader.ReadString(), "Käthe");
    EXPECT_EQ(Reader.ReadBinary(), Block);
    EXPECT_TRUE(FNear->Poll(Long, ssmRead) && Reader.CanRead());
    EXPECT_EQ(Reader.ReadLongInt(), -2);
    EXPECT_FALSE(Reader.CanRead());
  }
  FFar->Send("abc");
  FFar->CloseSocket(tssdSend);
  TQuillonTCPSocketReader Reader(*FNear, 16);
  EXPECT_THROW(Reader.ReadInt64(), EQuillonReaderError);
  FNear->CloseSocket();
  EXPECT_EQ(Reader.Read({}), 0U);
  EXPECT_EQ(ErrorOf([&] { Reader.ReadByte(); }), "Socket operation on nonsocket");
}

TEST_F(SocketTest, TimeOutsAskTheProgressAndOnlyAStallEnds) {
  TQuillonTCPSocketReader Reader(*FNear);
  TQuillonTCPSocketWriter Writer(*FNear);
  const std::string Much(std::size_t{64} << 20, 'x');
  std::string Bytes(4, '\0');
  Reader.FTimeOut = Writer.FTimeOut = 5;
  int Calls = 0;
  std::int64_t Position = -1;
  Reader.FOnProgress = Writer.FOnProgress = [&](std::int64_t APosition, std::int64_t, bool& DoAbort) {
    Position = APosition;
    if (++Calls == 2) {
      FFar->Send("a");
    }
    DoAbort = Calls == 20;
  };
  EXPECT_THROW(Reader.Read(Bytes), EQuillonStreamAbort);
  EXPECT_EQ(Position, 1);
  Calls = -100'000;
  Reader.FStallLimit = Writer.FStallLimit = 60;
  FFar->Send("bc");
  EXPECT_EQ(Reader.Read(Bytes), 2U);
  EXPECT_THAT(Writer.Write(Much), AllOf(Lt(Much.size()), testing::Gt(0U)));
}

TEST_F(SocketTest, AnotherThreadEndsWhatWaits) {
  const std::string Much(std::size_t{64} << 20, 'x');
  std::atomic<int> Waiting = 0;
  const auto Wait = [&](auto ACall) {
    return std::async(std::launch::async, [&Waiting, ACall] {
      ++Waiting;
      EXPECT_THROW(ACall(), EQuillonException);
    });
  };
  // Those that wait for Accept; the next one is not answered.
  std::vector<TSocket> Queue(QuillonSockets::Backlog + 2);
  for (TSocket& Socket : Queue) {
    Socket = NewSocket();
    Socket->FRemotePort = FServer->FLocalPort;
    if (&Socket != &Queue.back()) {
      Socket->Connect();
    }
  }
  const auto Connect = Wait([&] { Queue.back()->Connect(); });
  const auto Read = Wait([&] { TQuillonTCPSocketReader(*Queue.front()).ReadByte(); });
  const auto Write = Wait([&] { TQuillonTCPSocketWriter(*FFar).WriteBinary(Much); });
  const TSocket Second = NewSocket();
  Second->Bind();
  Second->Listen();
  const auto Accept = Wait([&] { Second->Accept(); });
  while (Waiting < 4) {
    std::this_thread::sleep_for(1ms);
  }
  std::this_thread::sleep_for(30ms);
  Queue.back()->CloseSocket();
  EXPECT_EQ(Connect.wait_for(20s), std::future_status::ready);
  Second->CloseSocket();
  EXPECT_EQ(Accept.wait_for(20s), std::future_status::ready);
  FFar->CloseSocket(tssdReceive);
  EXPECT_EQ(Write.wait_for(20s), std::future_status::ready);
  Queue.front()->CloseSocket(tssdBoth);
  EXPECT_EQ(Read.wait_for(20s), std::future_status::ready);
  EXPECT_EQ(Queue.front()->Socket(), Platform::NoSocket);
}

TEST_F(SocketTest, WhatWaitsIsCountedAndDropped) {
  EXPECT_FALSE(FNear->Poll(0, ssmRead));
  EXPECT_TRUE(FNear->Poll(0, ssmWrite));
  FFar->Send(std::string(100'000, 'x'));
  ASSERT_TRUE(FNear->Poll(Long, ssmRead));
  EXPECT_GT(FNear->Available(), 0U);
  FNear->Purge();
  EXPECT_EQ(FNear->Available(), 0U);
  FFar->CloseSocket();
  FFar->CloseSocket();
  FNear->Purge();
  std::string Byte(1, '\0');
  EXPECT_EQ(FNear->Recv(Byte), 0U);
  // The first one is answered by a reset, and no signal ends the process.
  EXPECT_EQ(ErrorOf([&] {
              for (int I = 0; I < 1000; ++I) {
                FNear->Send("x");
                std::this_thread::sleep_for(1ms);
              }
            }),
            "Connection reset by peer");
}

TEST_F(SocketTest, OptionsHold) {
  for (const bool Value : {true, false}) {
    FNear->EnableNoDelay(Value);
    EXPECT_EQ(FNear->IsNoDelay(), Value);
  }
  FNear->SetSendTimeOut(1'500);
  FNear->SetRecvTimeOut(50);
  EXPECT_EQ(FNear->SendTimeOut(), 1'500);
  std::string Byte(1, '\0');
  const auto Begin = std::chrono::steady_clock::now();
  EXPECT_EQ(ErrorOf([&] { FNear->Recv(Byte); }), "Connection timed out");
  EXPECT_GE(std::chrono::steady_clock::now() - Begin, 45ms);
  FNear->SetSendBufferSize(65'536);
  FNear->SetRecvBufferSize(131'072);
  EXPECT_GE(FNear->SendBufferSize(), 65'536);
  EXPECT_GE(FNear->RecvBufferSize(), 131'072);
}

TEST_F(SocketTest, FailuresHaveTheLayersTexts) {
  const TSocket Second = NewSocket();
  Second->FLocalPort = FServer->FLocalPort;
  EXPECT_EQ(ErrorOf([&] { Second->Bind(); }), "Address already in use");
  EXPECT_EQ(ErrorOf([&] { FNear->Connect(); }), "Socket is already connected");
  Second->FRemotePort = FServer->FLocalPort;
  FServer->CloseSocket();
  EXPECT_EQ(ErrorOf([&] { Second->Connect(); }), "Connection refused");
  EXPECT_EQ(ErrorOf([&] { FServer->Listen(); }), "Socket operation on nonsocket");
  for (const char* Unknown : {"school.invalid", "", "127.0.0.256"}) {
    EXPECT_EQ(TQuillonSocketUtils::GetAddress(Unknown), 0xFFFFFFFF);
    Second->FRemoteHost = Unknown;
    EXPECT_EQ(ErrorOf([&] { Second->Connect(); }), "Host not found");
  }
  EXPECT_STREQ(EQuillonSocketError(4711).what(), "Other WinSock error (4711)");
}

/// Keeps what it is told: namespace, handle, text.
class TKeptLog : public TQuillonAbstractLog {
 public:
  explicit TKeptLog(std::vector<std::string>& ALines) : TQuillonAbstractLog(false, 0), FLines(ALines) {}

 protected:
  void Write(const TQuillonLogEntry& AnEntry) override {
    FLines.push_back(std::string(AnEntry.Namespace) + " " + std::string(AnEntry.User) + " " +
                     std::string(AnEntry.EventText));
  }
  void WriteNote(std::string_view /*ANote*/) override {}

 private:
  std::vector<std::string>& FLines;
};

TEST_F(SocketTest, StepsAreLogged) {
  std::vector<std::string> Lines;
  TQuillonLogManager& Log = QuillonLogs::TheLog();
  Log.AddLog(std::make_unique<TKeptLog>(Lines));
  for (const char* Name : {"Quillon.System.Sockets", "Quillon.System.Sockets.Send", "Quillon.System.Sockets.Recv"}) {
    Log.AddNamespace(Name);
  }
  FNear->CloseSocket();
  const TSocket Other = NewSocket();
  Other->Bind();
  Other->Listen();
  const TSocket Client = NewSocket();
  Client->FRemotePort = FServer->FLocalPort;
  Client->Connect();
  const TSocket Peer = FServer->Accept();
  Client->Send("abc");
  std::string Bytes(5, '\0');
  Peer->Recv(Bytes);
  const auto Line = [](const TQuillonTCPSocket& ASocket, const std::string& AText, const char* ANamespace = "") {
    return "Quillon.System.Sockets" + std::string(ANamespace) + " " + std::to_string(ASocket.Socket()) + " " + AText;
  };
  EXPECT_THAT(Lines, testing::IsSupersetOf(
                         {Line(*Other, "Socket on 127.0.0.1:" + std::to_string(Other->FLocalPort) + " binded"),
                          Line(*Other, "Socket is listening..."), Line(*Client, "Socket created"),
                          Line(*Client, "Socket connected"),
                          Line(*FServer, "New Socket (" + std::to_string(Peer->Socket()) +
                                             ") on 127.0.0.1:" + std::to_string(Client->FLocalPort) + " accepted"),
                          Line(*Client, "3 Bytes data send", ".Send"), Line(*Peer, "3 Bytes data recieved", ".Recv")}));
  EXPECT_THAT(Lines, Contains(HasSubstr("Socket closed")));
  Log.ClearLogs();
  Log.ClearNamespaces();
}

/// The system's sockets, one call of which fails; knows how many are open.
class TFailingSockets final : public Platform::SocketLayer {
  using THandle = Platform::SocketHandle;

 public:
  explicit TFailingSockets(int ACallsBefore) : FLeft(ACallsBefore) {}

  Platform::SocketLayerInfo StartUp() override { return FSystem.StartUp(); }
  std::uint32_t LastError() override { return FSystem.LastError(); }
  Platform::SocketFault FaultOf(std::uint32_t ACode) override { return FSystem.FaultOf(ACode); }
  THandle Create(Platform::SocketType AType, Platform::SocketProtocol AProtocol) override {
    const THandle Created = Next().Create(AType, AProtocol);
    ++Open;
    return Created;
  }
  void Close(THandle ASocket) noexcept override {
    --Open;
    FSystem.Close(ASocket);
  }
  void Shutdown(THandle ASocket, Platform::SocketDirection AHow) override { Next().Shutdown(ASocket, AHow); }
  void Bind(THandle ASocket, Platform::SocketAddress AnAddress) override { Next().Bind(ASocket, AnAddress); }
  void BeginConnect(THandle ASocket, Platform::SocketAddress AnAddress) override {
    Next().BeginConnect(ASocket, AnAddress);
  }
  void EndConnect(THandle ASocket, Platform::SocketAddress AnAddress) override {
    Next().EndConnect(ASocket, AnAddress);
  }
  void Listen(THandle ASocket, int ABacklog) override { Next().Listen(ASocket, ABacklog); }
  THandle Accept(THandle ASocket, Platform::SocketAddress& APeer) override {
    const THandle Accepted = Next().Accept(ASocket, APeer);
    ++Open;
    return Accepted;
  }
  Platform::SocketAddress LocalAddress(THandle ASocket) override { return Next().LocalAddress(ASocket); }
  std::size_t Recv(THandle ASocket, std::span<char> ABuffer) override { return Next().Recv(ASocket, ABuffer); }
  std::size_t Send(THandle ASocket, std::string_view ABytes, bool DoWait) override {
    return Next().Send(ASocket, ABytes.substr(0, 3), DoWait);
  }
  bool Poll(THandle ASocket, Platform::SocketReadiness AReadiness, std::int32_t ATimeOut) override {
    return Next().Poll(ASocket, AReadiness, ATimeOut);
  }
  std::size_t Available(THandle ASocket) override { return Next().Available(ASocket); }
  std::int32_t Option(THandle ASocket, Platform::SocketOption AnOption) override {
    return Next().Option(ASocket, AnOption);
  }
  void SetOption(THandle ASocket, Platform::SocketOption AnOption, std::int32_t AValue) override {
    Next().SetOption(ASocket, AnOption, AValue);
  }
  std::optional<std::uint32_t> ParseHost(const std::string& AText) override { return FSystem.ParseHost(AText); }
  std::vector<std::uint32_t> HostsOf(const std::string& AName) override { return FSystem.HostsOf(AName); }
  std::string HostName() override { return FSystem.HostName(); }
  std::vector<Platform::NetworkInterface> Interfaces() override { return FSystem.Interfaces(); }

  int Open = 0;

 private:
  Platform::SocketLayer& Next() {
    if (FLeft-- == 0) {
      throw EQuillonSocketError(EIO);
    }
    return FSystem;
  }

  Platform::SocketLayer& FSystem = Platform::Sockets();
  int FLeft;
};

TEST(SocketFailures, WhateverCallFailsNothingStaysOpen) {
  const auto Converse = [] {
    const TSocket Server = NewSocket();
    Server->Bind();
    Server->Listen();
    const TSocket Client = NewSocket();
    Client->FRemotePort = Server->FLocalPort;
    Client->EnableNoDelay(true);
    Client->Connect();
    const TSocket Peer = Server->Accept();
    TQuillonTCPSocketWriter(*Client).WriteString("piece by piece");
    EXPECT_EQ(TQuillonTCPSocketReader(*Peer).ReadString(), "piece by piece");
    Client->CloseSocket(tssdBoth);
  };
  std::string Error;
  int Calls = 0;
  for (; Error != "no error"; ++Calls) {
    TFailingSockets Sockets(Calls);
    const Platform::SocketsReplacement Replacement(Sockets);
    Error = ErrorOf(Converse);
    EXPECT_EQ(Sockets.Open, 0) << Calls;
    EXPECT_THAT(Error, testing::AnyOf("Other WinSock error (5)", "no error"));
  }
  EXPECT_GT(Calls, 30);
}

TEST(SocketUtils, AddressesAndSums) {
  EXPECT_EQ(TQuillonSocketUtils::GetAddress("127.0.0.1"), 0x7F000001U);
  EXPECT_EQ(TQuillonSocketUtils::GetAddress("localhost"), 0x7F000001U);
  for (const std::string& Address : TQuillonSocketUtils::GetHostAddressList()) {
    EXPECT_TRUE(TQuillonSocketUtils::IsValidAdress(Address)) << Address;
  }
  EXPECT_TRUE(TQuillonSocketUtils::IsValidAdress(TQuillonSocketUtils::GetLocalBroadcastAddress()));
  EXPECT_FALSE(TQuillonSocketUtils::IsValidAdress("localhost"));
  EXPECT_NE(TQuillonSocketUtils::GetHostName(), "");
  // The example of RFC 1071, whose sum is DDF2.
  const std::string Example("\x00\x01\xf2\x03\xf4\xf5\xf6\xf7", 8);
  EXPECT_EQ(TQuillonSocketUtils::CheckSum(Example), 0x220D);
  EXPECT_EQ(TQuillonSocketUtils::CheckSum("a"), 0x9EFF);
  EXPECT_EQ(TQuillonSocketUtils::CheckSum(""), 0xFFFF);
  EXPECT_GT(TQuillonSocketLibrary::Start().MaxSockets(), 0U);
}

}  // namespace
