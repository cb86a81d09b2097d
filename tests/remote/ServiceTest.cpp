#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <thread>

#include "QuillonRemoteServices/StorageService.h"
#include "QuillonRemoteServices/WorkspaceService.h"
#include "remote/MemoryChannel.h"
#include "remote/ScriptedServer.h"

namespace {

using namespace std::literals;
using testing::ElementsAre;

const TGUID File = QuillonGuid::Parse("{00112233-4455-6677-8899-AABBCCDDEEFF}");
const std::string FileBytes = Hex("33221100 5544 7766 8899AABBCCDDEEFF");
const std::string Granted = Hex("00") + FileBytes + Hex("00");
const std::string GoOn = Hex("00 00");

using TBlock = std::shared_ptr<TQuillonMemoryStream>;

template <class TContent>
TBlock Packed(TContent& AContent) {
  auto Block = std::make_shared<TQuillonMemoryStream>();
  if constexpr (std::derived_from<TContent, TQuillonDataStorage>) {
    AContent.SaveToZIPStream(*Block);
  } else {
    AContent.SaveToZipStream(*Block);
  }
  return Block;
}

/// The server's side of a good call: the response with the block, if there is one.
std::string Answer(const TBlock& ABlock = {}) {
  TQuillonRemoteResponse Response;
  if (ABlock != nullptr) {
    Response.FParamsQueue.PushBinary(ABlock);
  }
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter(Stream).WriteObjectProperties(&Response);
  return GoOn + Stream.TakeContent();
}

/// "no" as the message of the code.
std::string Refusal(std::uint8_t ACode) {
  return GoOn + static_cast<char>(ACode) + Hex("00 02000000 6E00 6F00 00000000");
}

std::string BlockBytes(const TBlock& ABlock) {
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter(Stream).WriteBinary(*ABlock);
  return Stream.TakeContent();
}

TQuillonDataHandle<TQuillonRemoteWorkspace> NewWorkspace() {
  QuillonRemoteWorkspaces::RegisterClasses(TQuillonDataClassRegistry::Instance());
  return QuillonDataObjects::CreateStorage<TQuillonRemoteWorkspace>();
}

TQuillonRemoteWorkspaceTenant& AddTenant(TQuillonRemoteWorkspace& AWorkspace, const std::string& AName) {
  auto* const Tenant = QuillonDataObjects::Create<TQuillonRemoteWorkspaceTenant>(&AWorkspace);
  Tenant->Set(Tenant->FName, AName);
  AWorkspace.FTenants.Add(Tenant);
  return *Tenant;
}

/// A proxy of each service on a client that is logged in.
class ServiceTest : public testing::Test {
 protected:
  ServiceTest() {
    FChannel.FAnswers = Granted;
    FClient.Login();
    FChannel.FSent.clear();
    AddTenant(*FServers, "Ost");
  }

  /// Lets the server give the answer to what is done. @return what is sent within the session
  template <class TWork>
  std::string SentFor(const std::string& AnAnswer, const TWork& AWork) {
    FChannel.FAnswers = AnAnswer;
    FChannel.FSent.clear();
    AWork();
    EXPECT_TRUE(FChannel.FAnswers.empty());
    const std::string Call = Hex("03") + FileBytes;
    EXPECT_TRUE(FChannel.FSent.starts_with(Call) && FChannel.FSent.ends_with('\0'));
    return FChannel.FSent.substr(Call.size(), FChannel.FSent.size() - Call.size() - 1);
  }
  std::string Content(TQuillonRemoteWorkspace& AWorkspace) {
    TQuillonMemoryStream Stream;
    AWorkspace.SaveToBinStream(Stream);
    return Stream.TakeContent();
  }
  TQuillonRemoteStorageSynchronizeResult Synchronize() { return FStorage.Synchronize(FMessage); }
  void GoOnline() {
    SentFor(Answer(Packed(*FServers)), [&] { FStorage.Load(File, "Plan"); });
    FServers->ChangeLog().Activate();
  }

  TMemoryChannel FChannel;
  TQuillonRemoteClient FClient{&FChannel};
  const TQuillonDataHandle<TQuillonRemoteWorkspace> FServers = NewWorkspace();  ///< what the server has
  const TQuillonDataHandle<TQuillonRemoteWorkspace> FCopy = NewWorkspace();
  TQuillonRemoteStorageServiceProxy FStorage{FClient, *FCopy};
  TQuillonRemoteWorkspaceServiceProxy FWorkspace{FClient, *FCopy};
  std::string FMessage;
};

TEST_F(ServiceTest, AFileIsFetchedAndStoredWhole) {
  std::vector<int> Steps;
  FStorage.FBeforeStreaming = [&] { Steps.push_back(FStorage.Operation()); };
  FStorage.FAfterStreaming = [&] { Steps.push_back(-FStorage.Operation()); };
  std::int64_t Moved = 0;
  FStorage.FOnStreaming = [&](std::int64_t APosition, std::int64_t, bool&) { Moved = APosition; };
  const TBlock Block = Packed(*FServers);
  EXPECT_EQ(SentFor(Answer(Block), [&] { FStorage.Load(File, "Plan"); }), Hex("0400 0100 01000000 14") + FileBytes);
  EXPECT_EQ(Content(*FCopy), Content(*FServers));
  EXPECT_EQ(Moved, Block->Size());
  EXPECT_TRUE(FStorage.Status() == ssOnline && FStorage.FFileName == "Plan" && FCopy->ChangeLog().IsRecording());

  AddTenant(*FCopy, "West");
  const TBlock Stored = Packed(*FCopy);
  EXPECT_EQ(SentFor(Answer(), [&] { FStorage.Store(); }),
            Hex("0400 0300 02000000 14") + FileBytes + Hex("01") + BlockBytes(Stored));
  EXPECT_TRUE(FCopy->ChangeLog().IsEmpty() && FCopy->ChangeLog().IsActive());
  EXPECT_THAT(Steps, ElementsAre(soLoad, -soLoad, soStore, -soStore));
  EXPECT_EQ(FStorage.Operation(), soNone);

  FStorage.Close();
  EXPECT_TRUE(FStorage.Status() == ssOffline && FCopy->FTenants.IsEmpty() && !FCopy->ChangeLog().IsActive());
}

TEST_F(ServiceTest, WhatTheServerRefusesIsAnErrorOfTheService) {
  std::vector<std::string> Errors;
  FStorage.FOnError = [&](const std::exception& AnError) { Errors.emplace_back(AnError.what()); };
  const auto Load = [&] { FStorage.Load(File, "Plan"); };
  try {
    SentFor(Refusal(5), Load);
    ADD_FAILURE() << "no error";
  } catch (const EQuillonRemoteStorageServiceError& Error) {
    EXPECT_EQ(Error.ErrorCode(), 5);
    EXPECT_STREQ(Error.what(), "no");
  }
  EXPECT_THROW(SentFor(Refusal(9), [&] { FWorkspace.Store(); }), EQuillonRemoteWorkspaceServiceError);
  EXPECT_THROW(SentFor(Answer(), Load), EQuillonRemoteStorageServiceError) << "no plan in it";
  EXPECT_THROW(SentFor(GoOn + Hex("0000 01000000 0A 07"), Load), EQuillonConvertError) << "a number for a plan";
  EXPECT_THROW(SentFor(GoOn + Hex("0000 01000000 01 02000000 7801"), Load), EQuillonException) << "half a plan";
  EXPECT_EQ(Errors.size(), 4U);
  EXPECT_TRUE(FStorage.Status() == ssOffline && FStorage.FFileID.IsZero() && FStorage.Operation() == soNone);
}

TEST_F(ServiceTest, CopiesAreBroughtTogetherByTheirChanges) {
  FChannel.FSent.clear();
  EXPECT_EQ(Synchronize(), ssrNoNewData);
  FStorage.Close();
  EXPECT_EQ(FChannel.FSent, "") << "offline";
  GoOnline();

  auto Result = ssrConflict;
  const auto Run = [&] { Result = Synchronize(); };
  TQuillonDataChangeLog Nothing;
  const std::string Ask = Hex("0400 0200 01000000 14") + FileBytes;
  EXPECT_EQ(SentFor(Answer(Packed(Nothing)), Run), Ask);
  EXPECT_EQ(Result, ssrNoNewData);
  EXPECT_EQ(SentFor(Refusal(7), Run), Ask);
  EXPECT_EQ(Result, ssrNoNewData);
  SentFor(Refusal(4), Run);
  EXPECT_TRUE(Result == ssrChangeLogOutOfSync && FMessage == "no");

  AddTenant(*FServers, "Nord");
  SentFor(Answer(Packed(FServers->ChangeLog())), Run);
  EXPECT_EQ(Result, ssrNewData);
  ASSERT_EQ(FCopy->FTenants.Count(), 2);
  EXPECT_EQ(FCopy->FTenants.GetItem(1)->FName, "Nord");
  EXPECT_TRUE(FMessage.empty() && FStorage.ServerChangeLog().IsEmpty() && FCopy->ChangeLog().IsEmpty());

  AddTenant(*FCopy, "West");
  const TBlock Local = Packed(FCopy->ChangeLog());
  const std::string Send = Hex("0400 0400 02000000 14") + FileBytes + Hex("01") + BlockBytes(Local);
  EXPECT_EQ(SentFor(Refusal(8), Run), Send);
  EXPECT_TRUE(Result == ssrConflict && FMessage == "no");
  SentFor(Refusal(4), Run);
  EXPECT_EQ(Result, ssrChangeLogOutOfSync);
  EXPECT_EQ(SentFor(Answer(), Run), Send);
  EXPECT_TRUE(Result == ssrNoNewData && FCopy->ChangeLog().IsEmpty());
}

TEST_F(ServiceTest, ChangesThatAreLostOrDoNotFitAreNotPassedOver) {
  GoOnline();
  auto Result = ssrConflict;
  const auto Run = [&] { Result = Synchronize(); };
  TQuillonDataChangeLog Lost;
  Lost.Spoil();
  SentFor(Answer(Packed(Lost)), Run);
  EXPECT_EQ(Result, ssrChangeLogOutOfSync);
  FCopy->ChangeLog().Spoil();
  EXPECT_TRUE(SentFor(Refusal(4), Run).starts_with(Hex("0400 0400"))) << "the server must not think that all is well";

  GoOnline();
  FServers->ChangeLog().Clear();
  FServers->FTenants.GetItem(0)->Change();
  const TBlock Changes = Packed(FServers->ChangeLog());
  FCopy->FTenants.Clear();
  FCopy->ChangeLog().Clear();
  SentFor(Answer(Changes), Run);
  EXPECT_EQ(Result, ssrConflict);
  EXPECT_THAT(FMessage, testing::HasSubstr("existiert nicht mehr"));
  EXPECT_FALSE(FStorage.ServerChangeLog().IsEmpty());
}

TEST_F(ServiceTest, AnAnswerToARequestWithoutItsValuesConfirmsNothing) {
  GoOnline();
  AddTenant(*FCopy, "West");
  FClient.FPassword = "a";
  // The session is lost behind the request; the server takes what comes after the login for good.
  const std::string Lost = Hex("00 04") + Granted + Answer();
  for (const std::function<void()>& Work :
       {std::function([&] { FStorage.Store(); }), std::function([&] { Synchronize(); }),
        std::function([&] { FWorkspace.ChangePassword("a", "b"); })}) {
    EXPECT_THROW(SentFor(Lost, Work), EQuillonRemoteError);
  }
  EXPECT_FALSE(FCopy->ChangeLog().IsEmpty());
  EXPECT_EQ(FClient.FPassword, "a");
}

TEST_F(ServiceTest, FurtherOperationsTakeTheirValues) {
  TQuillonRemoteParamsQueue Values;
  Values.PushByte(7);
  std::unique_ptr<TQuillonRemoteParamsQueue> Back;
  EXPECT_EQ(SentFor(GoOn + Hex("0000 01000000 0A 09"), [&] { Back = FStorage.CustomCall(File, Values); }),
            Hex("0400 0500 02000000 14") + FileBytes + Hex("0A 07"));
  EXPECT_TRUE(Values.IsEmpty() && Back->PopByte() == 9);
  EXPECT_EQ(SentFor(Answer(), [&] { FStorage.CustomCallNB(File, Values); }), Hex("0400 0600 01000000 14") + FileBytes);
  EXPECT_EQ(SentFor(Answer(), [&] { FWorkspace.ChangePassword("a", "b"); }),
            Hex("0300 0500 02000000 12 01000000 6100 12 01000000 6200"));
  EXPECT_EQ(FClient.FPassword, "b");
  EXPECT_EQ(SentFor(Answer(Packed(*FServers)), [&] { FWorkspace.Load(); }), Hex("0300 0100 00000000"));
  EXPECT_EQ(Content(*FCopy), Content(*FServers));
  EXPECT_EQ(SentFor(Answer(), [&] { FWorkspace.Store(); }), Hex("0300 0300 01000000 01") + BlockBytes(Packed(*FCopy)));
  AddTenant(*FCopy, "West");
  const TBlock Local = Packed(FCopy->ChangeLog());
  EXPECT_EQ(SentFor(Answer(), [&] { FWorkspace.Synchronize(FMessage); }),
            Hex("0300 0400 01000000 01") + BlockBytes(Local));
}

/// Polls a server over TCP, soon and often.
class PollingTest : public testing::Test {
 protected:
  PollingTest() {
    FChannel.SetHost("127.0.0.1");
    FChannel.SetPort(FServer.Port());
    FService.FServerPolling = true;
    FService.FServerPollingInterval = 1;
  }

  /// Waits for a poll to bring about what the condition asks the gathered changes for.
  template <class TCondition>
  void Await(const TCondition& ACondition) {
    const auto Begin = std::chrono::steady_clock::now();
    const auto Holds = [&] {
      const TQuillonRemoteClientLock Lock(FClient);
      return ACondition(FService.ServerChangeLog());
    };
    while (!Holds() && std::chrono::steady_clock::now() - Begin < 20s) {
      std::this_thread::sleep_for(1ms);
    }
    EXPECT_TRUE(Holds());
    std::this_thread::sleep_for(50ms);
  }

  TScriptedServer FServer;
  TQuillonTCPRemoteChannel FChannel;
  TQuillonRemoteClient FClient{&FChannel};
  const TQuillonDataHandle<TQuillonRemoteWorkspace> FCopy = NewWorkspace();
  TQuillonRemoteWorkspaceServiceProxy FService{FClient, *FCopy};

  const std::string Call = Hex("03") + FileBytes;
  const std::string LoginBytes = Hex("01 00000000 00000000 00000000");
  const std::string LoadBytes = Hex("0300 0100 00000000");
  const std::string PollBytes = Hex("0300 0200 00000000");
};

TEST_F(PollingTest, ChangesAreGatheredUntilACloseThatWaitsForNoServer) {
  const auto Servers = NewWorkspace();
  const std::string Loaded = Answer(Packed(*Servers)).substr(1);
  Servers->ChangeLog().Activate();
  AddTenant(*Servers, "Ost");
  const std::string Changed = Answer(Packed(Servers->ChangeLog())).substr(1);
  FServer.Play({{{{LoginBytes, Granted}, {Call, "\0"s}, {LoadBytes, Loaded}, {"\0"s, {}}}},
                {{{Call, "\0"s}, {PollBytes, Changed}, {"\0"s, {}}}},
                {{{Call, "\0"s}, {PollBytes, {}}}}});
  FService.Load();
  Await([](const TQuillonDataChangeLog& AGathered) { return !AGathered.IsEmpty(); });
  const auto BeginOfClose = std::chrono::steady_clock::now();
  FService.Close();
  EXPECT_LT(std::chrono::steady_clock::now() - BeginOfClose, 5s) << "the server is silent";
  FServer.End();
  EXPECT_TRUE(FService.ServerChangeLog().IsEmpty() && FService.Status() == wsOffline);
}

TEST_F(PollingTest, NothingIsAskedForOnceChangesWereDropped) {
  TQuillonDataChangeLog Lost;
  Lost.Spoil();
  FServer.Play(
      {{{{LoginBytes, Granted}, {Call, "\0"s}, {LoadBytes, Answer(Packed(*NewWorkspace())).substr(1)}, {"\0"s, {}}}},
       {{{Call, "\0"s}, {PollBytes, Answer(Packed(Lost)).substr(1)}, {"\0"s, {}}}}});
  FService.Load();
  Await([](const TQuillonDataChangeLog& AGathered) { return AGathered.HasTooMuchChanges(); });
  FServer.End();
}

}  // namespace
