#include <array>

#include "Fuzz.h"
#include "QuillonRemoting/Client.h"
#include "QuillonValues.h"
#include "remote/MemoryChannel.h"

namespace {

constexpr std::string_view Password = "a password that nobody else knows";

/// What is done with the server, and whether there is a session before.
struct TExchange {
  void (*Run)(TQuillonRemoteClient& AClient);
  bool HasSession;
};

constexpr auto Call = [](TQuillonRemoteClient& AClient) { AClient.Call(); };
constexpr std::array<TExchange, 6> Exchanges = {{
    {[](TQuillonRemoteClient& AClient) { AClient.Login(); }, false},
    {[](TQuillonRemoteClient& AClient) { AClient.Logoff(); }, true},
    {Call, true},
    {Call, false},
    {[](TQuillonRemoteClient& AClient) { AClient.ForceKeepAlive(); }, true},
    {[](TQuillonRemoteClient& AClient) { AClient.Ping(); }, false},
}};

std::string Written(const TQuillonPersistent& AnObject) {
  TQuillonMemoryStream Stream;
  AnObject.SaveToStream(Stream);
  return Stream.TakeContent();
}

/// @param AContent the bytes of an object, which are the same once they have been read and written
template <class TObject>
void RequireRest(const std::string& AContent, const std::string& AWhat) {
  TQuillonMemoryStream Stream(AContent);
  TObject Object;
  Object.LoadFromStream(Stream);
  Fuzz::Require(Written(Object) == AContent, AWhat + " is another one after writing and reading");
}

void LogIn(TMemoryChannel& AChannel, TQuillonRemoteClient& AClient) {
  const std::string Granted = std::string(1, rsSuccess) + std::string(16, 's') + std::string(1, '\0');
  AChannel.FAnswers = Granted;
  AClient.Login();
}

void RequireSound(TQuillonRemoteClient& AClient, const TExchange& AnExchange, bool IsAccepted) {
  if (!AClient.IsLoggedIn()) {
    Fuzz::Require(Written(AClient.FUserWorkspace) == Written(TQuillonRemoteUserWorkspace()) || AnExchange.HasSession,
                  "a profile without a session");
  }
  Fuzz::Require(IsAccepted || Written(AClient.FResponse) == Written(TQuillonRemoteResponse()),
                "something of a response that failed is left");
  if (AnExchange.Run == +Call && IsAccepted) {
    Fuzz::Require(AClient.IsLoggedIn(), "a response without a session");
  }
  RequireRest<TQuillonRemoteUserWorkspace>(Written(AClient.FUserWorkspace), "the profile");
  RequireRest<TQuillonRemoteResponse>(Written(AClient.FResponse), "the response");
}

}  // namespace

/// Has an exchange with a server of these answers, behind a byte for what is done: what it gives is there whole or not
/// at all.
void Fuzz::Run(std::string_view AnInput) {
  static const bool IsReady = [] {
    QuillonValues::RegisterClasses();
    return true;
  }();
  if (!IsReady || AnInput.empty()) {
    return;
  }
  const TExchange& Exchange = Exchanges[static_cast<std::uint8_t>(AnInput.front()) % Exchanges.size()];
  TMemoryChannel Channel;
  TQuillonRemoteClient Client(&Channel);
  Client.FPassword = Password;
  Client.FRequest.FParamsQueue.PushString("x");
  if (Exchange.HasSession) {
    LogIn(Channel, Client);
  }
  Channel.FAnswers = AnInput.substr(1);
  bool IsAccepted = false;
  try {
    Exchange.Run(Client);
    IsAccepted = true;
  } catch (const EQuillonException& Error) {
    Require(std::string_view(Error.what()).find(Password) == std::string_view::npos, "a secret is told");
  }
  Require(!Channel.IsOpen() && Channel.FConnections == (Exchange.HasSession ? "()()" : "()"),
          "a connection is left open, or there is one too many");
  Require(Channel.FSent.size() < 4'000, "a server is asked for ever");
  RequireSound(Client, Exchange, IsAccepted);
}
