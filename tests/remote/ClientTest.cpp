#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <functional>
#include <thread>

#include "QuillonLogs/Manager.h"
#include "QuillonRemoting/Client.h"
#include "remote/MemoryChannel.h"
#include "remote/ScriptedServer.h"

namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using TConnection = TScriptedServer::TConnection;
using TStep = TScriptedServer::TStep;
using TClock = std::chrono::steady_clock;

constexpr std::string_view SessionText = "{00112233-4455-6677-8899-AABBCCDDEEFF}";
const std::string Session = Hex("33221100 5544 7766 8899AABBCCDDEEFF");
const std::string Success(1, '\0');
const std::string Lost = Hex("04");
const std::string End(1, '\0');

const std::string LoginBytes = Hex("01 03000000 3600 2E00 3000 02000000 6A00 6F00 03000000 E400 6200 6300");
const std::string Granted = Success + Session + Hex("00");
const std::string KeepAliveBytes = Hex("04") + Session;
const std::string CallBytes = Hex("03") + Session;
const std::string RequestBytes = Hex("0400 0200 01000000 0A 07");
const std::string ConsumedBytes = Hex("0400 0200 00000000");
const std::string ResponseBytes = Hex("0000 01000000 12 01000000 6200");

class TKeptLog : public TQuillonAbstractLog {
 public:
  explicit TKeptLog(std::vector<std::string>& ALines) : TQuillonAbstractLog(true, 0), FLines(ALines) {}

 protected:
  void Write(const TQuillonLogEntry& AnEntry) override { FLines.emplace_back(AnEntry.EventText); }
  void WriteNote(std::string_view /*ANote*/) override {}

 private:
  std::vector<std::string>& FLines;
};

/// A client with its log.
class TClient : public TQuillonRemoteClient {
 public:
  explicit TClient(TQuillonRemoteChannel* AChannel) : TQuillonRemoteClient(AChannel) {
    FVersion = "6.0";
    FUserName = "jo";
    FPassword = "äbc";
    FRequest.FServiceID = 4;
    QuillonLogs::TheLog().AddLog(std::make_unique<TKeptLog>(FLines));
    QuillonLogs::TheLog().AddNamespace("Quillon.System.Remoting");
  }
  TClient(const TClient&) = delete;
  TClient& operator=(const TClient&) = delete;
  ~TClient() override {
    QuillonLogs::TheLog().ClearLogs();
    QuillonLogs::TheLog().ClearNamespaces();
    for (const std::string& Line : FLines) {
      EXPECT_THAT(Line, Not(HasSubstr(FPassword)));
    }
  }

  void CallWithByte() {
    FRequest.Clear();
    FRequest.FID = 2;
    FRequest.FParamsQueue.PushByte(7);
    Call();
  }

  std::vector<std::string> FLines;
};

class ClientTest : public testing::Test {
 protected:
  ClientTest() {
    FChannel.SetHost("127.0.0.1");
    FChannel.SetPort(FServer.Port());
  }
  /// The code of the error that a call ends with, none for no error; tells its text.
  std::uint16_t CodeOf(const std::function<void()>& ACall) {
    try {
      ACall();
      return 0;
    } catch (const EQuillonRemoteError& Error) {
      FText = Error.what();
      return Error.ErrorCode();
    }
  }

  TScriptedServer FServer;
  TQuillonTCPRemoteChannel FChannel;
  TClient FClient{&FChannel};
  std::string FText;
};

using ClientThreadTest = ClientTest;

TEST_F(ClientTest, ASessionGoesFromLoginToLogoff) {
  TQuillonMemoryStream Profile;
  TQuillonRemoteUserWorkspace Workspace;
  Workspace.FUserName = "jo";
  TQuillonStreamWriter(Profile).WriteObjectProperties(&Workspace);
  FServer.Play({{{{LoginBytes, Success + Session + Hex("01") + Profile.Content()}, {End, {}}}},
                {{{CallBytes, Success}, {RequestBytes, Success + ResponseBytes}, {End, {}}}},
                {{{Hex("05"), Success}, {End, {}}}},
                {{{KeepAliveBytes, Success}, {End, {}}}},
                {{{Hex("02") + Session, Hex("09")}, {End, {}}}}});
  FClient.Logoff();
  FClient.ForceKeepAlive();
  int Logins = 0;
  FClient.FOnLogin = [&] { ++Logins; };
  FClient.Login();
  FClient.Login();
  EXPECT_EQ(QuillonGuid::Braced(FClient.SessionID()), SessionText);
  EXPECT_EQ(FClient.FUserWorkspace.FUserName, "jo");
  FClient.CallWithByte();
  EXPECT_EQ(FClient.FResponse.FParamsQueue.PopString(), "b");
  FClient.Ping();
  FClient.ForceKeepAlive();
  FClient.Logoff();
  FClient.Logoff();
  FServer.End();
  EXPECT_TRUE(!FClient.IsLoggedIn() && !FChannel.IsOpen() && Logins == 1);
  const auto Line = [](const char* AText) { return std::string(SessionText) + " " + AText; };
  EXPECT_THAT(FClient.FLines,
              ElementsAre(Line("Login successfull"), Line("User profile available"), Line("Request 4.2 with 1 params"),
                          Line("Response with 1 params"), "Ping successfull", Line("KeepAlive successfull"),
                          Line("Logoff not successfull")));
}

TEST_F(ClientTest, WhatTheServerRefusesHasItsTextAndCode) {
  struct TCase {
    std::uint8_t Status;
    std::uint16_t Code;
    const char* Text;
    const char* Entry;
  };
  const char* const Refused =
      "Login konnte nicht erfolgreich ausgeführt werden. Möglicherweise ist der Benutzername oder das Kennwort falsch.";
  for (const TCase& Each :
       {TCase{4, 4, Refused, "Login not successfull"}, TCase{5, 5, Refused, "Login not successfull"},
        TCase{6, 6,
              "Die Client-Version ist nicht kompatibel mit der Server-Version. Bitte aktualisieren Sie Ihren Client.",
              "Client too old. Please update your client."},
        TCase{7, 7,
              "Die Server-Version ist nicht kompatibel mit der Client-Version. Bitte aktualisieren Sie Ihren Server.",
              "Server too old. Please update your server."}}) {
    FServer.Play({{{{LoginBytes, std::string(1, static_cast<char>(Each.Status))}, {End, {}}}}});
    EXPECT_EQ(CodeOf([&] { FClient.Login(); }), Each.Code);
    EXPECT_EQ(FText, Each.Text);
    EXPECT_EQ(FClient.FLines.back(), Each.Entry);
    FServer.End();
  }
  FServer.Play({{{{Hex("05"), Hex("08")}, {End, {}}}}, {{{LoginBytes, Granted}, {End, {}}}}});
  EXPECT_EQ(CodeOf([&] { FClient.Ping(); }), 8);
  EXPECT_EQ(FText, "Ping not successfull");
  FClient.Login();
  FServer.End();
  for (const TCase& Each : {TCase{3, 3, "Service wurde nicht gefunden.", "Service 4 not available"},
                            TCase{7, 255, "Unbekannter Fehler.", "Request 4.2 with 1 params"}}) {
    const std::string Status(1, static_cast<char>(Each.Status));
    FServer.Play({{{{CallBytes, Status}, {End, {}}}}, {{{CallBytes, Success}, {RequestBytes, Status}, {End, {}}}}});
    for (int Phase = 0; Phase < 2; ++Phase) {
      EXPECT_EQ(CodeOf([&] { FClient.CallWithByte(); }), Each.Code);
      EXPECT_EQ(FText, Each.Text);
      EXPECT_THAT(FClient.FLines.back(), HasSubstr(Each.Entry));
      EXPECT_TRUE(FClient.IsLoggedIn());
    }
    FServer.End();
  }
}

TEST_F(ClientTest, ALostSessionIsReplacedOnTheSameConnection) {
  const TStep Login = {LoginBytes, Granted};
  const TStep Response = {RequestBytes, Success + ResponseBytes};
  FServer.Play({{{Login, {CallBytes, Success}, Response, {End, {}}}},
                {{{CallBytes, Lost}, Login, {CallBytes, Success}, Response, {End, {}}}},
                {{{CallBytes, Success},
                  {RequestBytes, Lost},
                  Login,
                  {CallBytes, Success},
                  {ConsumedBytes, Success + ResponseBytes},
                  {End, {}}}}});
  for (int Call = 0; Call < 3; ++Call) {
    FClient.CallWithByte();
    EXPECT_EQ(FClient.FResponse.FParamsQueue.PopString(), "b");
  }
  FServer.End();
  for (const char* Entry : {"User profile not available", "Session not available"}) {
    EXPECT_THAT(FClient.FLines, Contains(std::string(SessionText) + " " + Entry));
  }
  std::vector<TStep> Steps = {{CallBytes, Lost}};
  for (int Count = 0; Count < QuillonRemoting::MaxLogins; ++Count) {
    Steps.insert(Steps.end(), {Login, {CallBytes, Lost}});
  }
  Steps.push_back({End, {}});
  FServer.Play({{Steps}});
  EXPECT_EQ(CodeOf([&] { FClient.CallWithByte(); }), 255);
  EXPECT_FALSE(FClient.IsLoggedIn());
  FServer.End();
}

TEST_F(ClientTest, ACutReplyLeavesNothingOfAnyResponse) {
  const std::string Reply = Success + Hex("0500 01000000 6E00 01000000 12 01000000 6200");
  std::vector<TConnection> Script = {{{{LoginBytes, Granted}, {End, {}}}}};
  for (std::size_t Size = 0; Size < Reply.size(); ++Size) {
    Script.push_back({{{CallBytes, Success}, {RequestBytes, Reply.substr(0, Size)}}, true});
  }
  Script.push_back({{{CallBytes, Success}, {RequestBytes, Reply}, {End, {}}}});
  FServer.Play(Script);
  FClient.Login();
  std::size_t Failures = 0;
  FClient.FOnError = [&](const std::exception& Error, TQuillonRemoteClientAction& AnAction) {
    EXPECT_STREQ(Error.what(), "Es konnten nicht alle Daten gelesen werden.");
    EXPECT_EQ(AnAction, caRaiseException);
    ++Failures;
  };
  while (Failures < Reply.size()) {
    FClient.FResponse.FErrorCode = 1;
    FClient.FResponse.FParamsQueue.PushByte(1);
    EXPECT_THROW(FClient.CallWithByte(), EQuillonReaderError);
    EXPECT_TRUE(FClient.FResponse.HasNoError() && FClient.FResponse.FParamsQueue.IsEmpty());
  }
  FClient.CallWithByte();
  EXPECT_TRUE(FClient.FResponse.FErrorCode == 5 && FClient.FResponse.FErrorMessage == "n");
  EXPECT_THAT(FClient.FLines, Each(Not(HasSubstr("Socket"))));
  FServer.End();
}

TEST_F(ClientTest, AHandlerMayRetryAndAnotherSeesTheBlocks) {
  const std::string Block(150'000, 'x');
  const std::string Size = Hex("F0490200");
  const std::string Request = Hex("0400 0200 01000000 01") + Size + Block;
  FServer.Play({{{{LoginBytes, Hex("05")}, {End, {}}}},
                {{{LoginBytes, {}}}, true},
                {{{LoginBytes, Granted}, {CallBytes, {}}}, true},
                {{{CallBytes, Success}, {Request, Success + Hex("0000 01000000 01") + Size + Block}, {End, {}}}}});
  int Failures = 0;
  FClient.FOnError = [&](const std::exception& /*AnError*/, TQuillonRemoteClientAction& AnAction) {
    ++Failures;
    AnAction = caRetry;
  };
  std::vector<std::int64_t> Positions;
  FClient.FOnProgress = [&](std::int64_t APosition, std::int64_t /*ATotal*/, bool& /*DoAbort*/) {
    if (APosition > 0 && (Positions.empty() || Positions.back() != APosition)) {
      Positions.push_back(APosition);
    }
  };
  TQuillonRemoteRequest Own(4);
  Own.FID = 2;
  Own.FParamsQueue.PushBinary(std::make_shared<TQuillonMemoryStream>(Block));
  FClient.FResponse.FErrorMessage = "mine";
  const auto Response = FClient.Call(Own);
  EXPECT_TRUE(Response->FParamsQueue.PopBinary()->Content() == Block);
  EXPECT_EQ(FClient.FResponse.FErrorMessage, "mine");
  EXPECT_EQ(Failures, 3);
  EXPECT_THAT(Positions, ElementsAre(65'536, 131'072, 150'000, 65'536, 131'072, 150'000));
  FServer.End();
}

TEST(ClientFailureTest, EachCallOfTheChannelMayFail) {
  const std::string Answers = Granted + Success + Success + ResponseBytes + Success;
  std::string Sent;
  for (const std::string& Part : {LoginBytes, End, CallBytes, RequestBytes, End, Hex("02"), Session, End}) {
    Sent += Part;
  }
  bool HasFailed = true;
  int Done = 0;
  for (int Calls = 0; HasFailed; ++Calls) {
    TMemoryChannel Channel;
    TClient Client(&Channel);
    Channel.FAnswers = Answers;
    Channel.FCallsBeforeFailure = Calls;
    Done = 0;
    HasFailed = false;
    try {
      Client.Login();
      ++Done;
      Client.CallWithByte();
      ++Done;
      EXPECT_EQ(Client.FResponse.FParamsQueue.Count(), 1U);
      Client.Logoff();
      ++Done;
    } catch (const EQuillonException&) {
      HasFailed = true;
      EXPECT_EQ(Client.FResponse.FParamsQueue.Count(), Done == 2 ? 1U : 0U);
      EXPECT_EQ(Client.IsLoggedIn(), Done > 0);
      // A request that was not sent whole is still there.
      EXPECT_TRUE(Done != 1 ||
                  Client.FRequest.FParamsQueue.IsEmpty() == (Channel.FSent.find(RequestBytes) != std::string::npos));
    }
    EXPECT_FALSE(Channel.IsOpen());
    EXPECT_THAT(Channel.FConnections, testing::AnyOf("", "()", "()()", "()()()"));
    // A failure of the end of a good exchange, which is a call in vain, is logged and ends nothing.
    HasFailed = HasFailed || Channel.FCallsBeforeFailure < 0;
    if (!HasFailed) {
      EXPECT_EQ(Channel.FSent, Sent);
    }
  }
  EXPECT_EQ(Done, 3);
  TQuillonRemoteClient Nowhere(nullptr);
  Nowhere.Login();
  Nowhere.Ping();
  Nowhere.Call();
  EXPECT_TRUE(Nowhere.FResponse.HasNoError() && Nowhere.FResponse.FParamsQueue.IsEmpty());
}

TEST_F(ClientThreadTest, TheTimerKeepsTheSessionUntilItIsRefused) {
  const TConnection Kept = {{{KeepAliveBytes, Success}, {End, {}}}};
  FServer.Play({{{{LoginBytes, Granted}, {End, {}}}},
                Kept,
                {{{KeepAliveBytes, {}}}, true},
                Kept,
                {{{KeepAliveBytes, Lost}, {End, {}}}}});
  EXPECT_EQ(FClient.KeepAliveInterval(), 5'000U);
  FClient.SetKeepAliveInterval(10);
  FClient.SetKeepAlive(true);
  FClient.Login();
  FServer.End();
  const auto Until = TClock::now() + 20s;
  while (FClient.KeepAlive() && TClock::now() < Until) {
    std::this_thread::sleep_for(1ms);
  }
  EXPECT_FALSE(FClient.KeepAlive());
  EXPECT_TRUE(FClient.IsLoggedIn());
  EXPECT_EQ(FClient.FLines.back(), std::string(SessionText) + " KeepAlive not successfull");
  FServer.Play({Kept, {{{KeepAliveBytes, Lost}, {End, {}}}}});
  FClient.SetKeepAlive(true);
  FServer.End();
}

TEST_F(ClientThreadTest, NothingWaitsLongForASilentServer) {
  FServer.PlayAny({{{LoginBytes, Granted}},
                   {{CallBytes, Success}, {RequestBytes, Success + ResponseBytes}},
                   {{KeepAliveBytes, {}}},
                   {{End, {}}}});
  auto Client = std::make_unique<TClient>(&FChannel);
  Client->Login();
  Client->SetKeepAliveInterval(1);
  for (const std::function<void()>& Action :
       {std::function([&] { Client->CallWithByte(); }), std::function([&] { Client->SetKeepAliveInterval(2); }),
        std::function([&] { Client->SetKeepAlive(false); }), std::function([&] { Client.reset(); })}) {
    Client->SetKeepAlive(true);
    while (!FChannel.IsOpen()) {
      std::this_thread::sleep_for(1ms);
    }
    const auto Begin = TClock::now();
    Action();
    EXPECT_LT(TClock::now() - Begin, 5s);
  }
  FServer.End();
}

TEST_F(ClientThreadTest, CallsOfManyThreadsAndTheTimerDoNotMix) {
  FServer.PlayAny({{{LoginBytes, Granted}},
                   {{CallBytes, Success}, {RequestBytes, Success + ResponseBytes}},
                   {{KeepAliveBytes, Success}},
                   {{End, {}}}});
  FClient.SetKeepAliveInterval(1);
  FClient.SetKeepAlive(true);
  std::array<std::future<void>, 3> Threads;
  for (std::size_t Thread = 0; Thread < Threads.size(); ++Thread) {
    Threads.at(Thread) = std::async(std::launch::async, [&, Thread] {
      for (int Count = 0; Count < 30; ++Count) {
        if (Thread == 2) {
          FClient.SetKeepAlive(Count % 3 != 0);
          FClient.ForceKeepAlive();
          std::this_thread::sleep_for(2ms);
        } else {
          const TQuillonRemoteClientLock Lock(FClient);
          FClient.CallWithByte();
          EXPECT_EQ(FClient.FResponse.FParamsQueue.PopString(), "b");
        }
      }
    });
  }
  for (std::future<void>& Thread : Threads) {
    Thread.get();
  }
  EXPECT_TRUE(FClient.IsLoggedIn() && FClient.KeepAlive());
  FClient.SetKeepAlive(false);
  FServer.End();
}

}  // namespace
