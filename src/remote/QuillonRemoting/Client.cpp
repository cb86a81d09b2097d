#include "QuillonRemoting/Client.h"

#include <array>
#include <mutex>

#include "QuillonLogs/Manager.h"
#include "QuillonRemoting/Exchange.h"

namespace {

constexpr std::uint16_t GeneralError = 255;
constexpr const char* GeneralErrorText = "Unbekannter Fehler.";

/// What an answer to a login means that does not grant it.
struct TRefusal {
  std::uint8_t Status;
  const char* Entry;
  const char* Text;
};

constexpr std::array<TRefusal, 2> Refusals = {
    {{rsClientTooOld, "Client too old. Please update your client.",
      "Die Client-Version ist nicht kompatibel mit der Server-Version. Bitte aktualisieren Sie Ihren Client."},
     {rsServerTooOld, "Server too old. Please update your server.",
      "Die Server-Version ist nicht kompatibel mit der Client-Version. Bitte aktualisieren Sie Ihren Server."}}};
constexpr TRefusal OtherRefusal = {
    0, "Login not successfull",
    "Login konnte nicht erfolgreich ausgeführt werden. Möglicherweise ist der Benutzername oder das Kennwort falsch."};

void Log(TQuillonLogEventType AnEventType, std::string_view AText) {
  QuillonLogs::TheLog().AddEntry(AnEventType, AText, QuillonRemoting::LogNamespace);
}

void Log(TQuillonLogEventType AnEventType, const TGUID& ASessionID, std::string_view AText) {
  Log(AnEventType, QuillonGuid::Braced(ASessionID).append(" ").append(AText));
}

[[noreturn]] void RefuseLogin(std::uint8_t AStatus) {
  const TRefusal* Refusal = &OtherRefusal;
  for (const TRefusal& Each : Refusals) {
    if (Each.Status == AStatus) {
      Refusal = &Each;
    }
  }
  Log(letError, Refusal->Entry);
  throw EQuillonRemoteError(Refusal->Text, AStatus);
}

/// Tells a handler of the blocks that are moved. The waits of the connection below tell it the same again, so that it
/// can end what has come to a halt.
class TProgress {
 public:
  TProgress(const TQuillonStreamProgressEvent& AHandler, TQuillonStreamProgressEvent& AnOfBlocks,
            TQuillonStreamProgressEvent& AnOfConnection)
      : FHandler(AHandler), FOfConnection(AnOfConnection) {
    if (FHandler) {
      AnOfBlocks = [this](std::int64_t APosition, std::int64_t ATotal, bool& DoAbort) {
        FPosition = APosition;
        FTotal = ATotal;
        FHandler(FPosition, FTotal, DoAbort);
      };
      FOfConnection = [this](std::int64_t /*APosition*/, std::int64_t /*ATotal*/, bool& DoAbort) {
        FHandler(FPosition, FTotal, DoAbort);
      };
    }
  }
  TProgress(const TProgress&) = delete;
  TProgress& operator=(const TProgress&) = delete;
  ~TProgress() { FOfConnection = nullptr; }

 private:
  const TQuillonStreamProgressEvent& FHandler;
  TQuillonStreamProgressEvent& FOfConnection;
  std::int64_t FPosition = 0;
  std::int64_t FTotal = 0;
};

void RegisterClasses() {
  static const bool IsDone = (QuillonRemoteWorkspaces::RegisterUserWorkspaceClasses(), true);
  static_cast<void>(IsDone);
}

}  // namespace

TQuillonRemoteClient::TQuillonRemoteClient(TQuillonRemoteChannel* AChannel)
    : FChannel(AChannel), FKeepAlive([this] { return KeepAliveOnTimer(); }, [this] { Abort(); }) {
  RegisterClasses();
}

TGUID TQuillonRemoteClient::SessionID() const {
  const std::lock_guard<std::mutex> Guard(FSessionLock);
  return FSessionID;
}

void TQuillonRemoteClient::SetSessionID(const TGUID& AValue) {
  const std::lock_guard<std::mutex> Guard(FSessionLock);
  FSessionID = AValue;
}

template <class TWork>
void TQuillonRemoteClient::Converse(const TWork& AWork) {
  const TQuillonRemoteKeepAlive::TPause Pause(FKeepAlive);
  TQuillonRemoteExchange::Run(*FChannel, AWork);
}

/// As Converse, as many times as the handler of errors wants.
template <class TWork>
void TQuillonRemoteClient::Attempt(const TWork& AWork) {
  for (;;) {
    try {
      Converse(AWork);
      return;
    } catch (const std::exception& Error) {
      TQuillonRemoteClientAction Action = caRaiseException;
      DoError(Error, Action);
      if (Action == caRaiseException) {
        throw;
      }
    }
  }
}

void TQuillonRemoteClient::Login() {
  const TQuillonRemoteClientLock Guard(*this);
  if (FChannel != nullptr && !IsLoggedIn()) {
    Attempt([this](TQuillonRemoteExchange& AnExchange) { LogIn(AnExchange); });
  }
}

void TQuillonRemoteClient::LogIn(TQuillonRemoteExchange& AnExchange) {
  FUserWorkspace.Clear();
  TQuillonWriter& Writer = AnExchange.Writer();
  Writer.WriteByte(rcLogin);
  Writer.WriteString(FVersion);
  Writer.WriteString(FUserName);
  Writer.WriteString(FPassword);
  if (const std::uint8_t Status = AnExchange.ReadStatus(); Status != rsSuccess) {
    RefuseLogin(Status);
  }
  ReadSession(AnExchange);
  DoLogin();
}

/// The session holds once all has come that belongs to it.
void TQuillonRemoteClient::ReadSession(TQuillonRemoteExchange& AnExchange) {
  FChannel->LimitReply(QuillonRemoting::LoginReplyLimit);
  TQuillonObjectReader Reader(AnExchange.Reader());
  const TGUID Session = Reader.ReadGuid();
  const bool HasProfile = Reader.ReadBoolean();
  if (HasProfile) {
    FUserWorkspace.ReadProperties(Reader);
  }
  FChannel->LimitReply(QuillonRemoting::ReceiveLimit);
  if (Session.IsZero()) {
    FUserWorkspace.Clear();
    throw EQuillonRemoteError(GeneralErrorText, GeneralError);
  }
  SetSessionID(Session);
  Log(letSuccess, Session, "Login successfull");
  Log(letInfo, Session, HasProfile ? "User profile available" : "User profile not available");
}

void TQuillonRemoteClient::Logoff() {
  const TQuillonRemoteClientLock Guard(*this);
  const TGUID Session = SessionID();
  if (FChannel == nullptr || Session.IsZero()) {
    return;
  }
  Converse([&](TQuillonRemoteExchange& AnExchange) {
    const bool IsDone = AnExchange.Ask(rcLogoff, Session) == rsSuccess;
    SetSessionID({});
    Log(IsDone ? letSuccess : letError, Session, IsDone ? "Logoff successfull" : "Logoff not successfull");
  });
}

void TQuillonRemoteClient::Call() {
  const TQuillonRemoteClientLock Guard(*this);
  Call(FRequest, FResponse);
}

std::unique_ptr<TQuillonRemoteResponse> TQuillonRemoteClient::Call(TQuillonRemoteRequest& ARequest) {
  const TQuillonRemoteClientLock Guard(*this);
  auto Response = std::make_unique<TQuillonRemoteResponse>();
  Call(ARequest, *Response);
  return Response;
}

void TQuillonRemoteClient::Call(TQuillonRemoteRequest& ARequest, TQuillonRemoteResponse& AResponse) {
  AResponse.Clear();
  if (FChannel == nullptr) {
    return;
  }
  Attempt([&](TQuillonRemoteExchange& AnExchange) {
    int Logins = 0;
    do {
      if (!IsLoggedIn()) {
        if (++Logins > QuillonRemoting::MaxLogins) {
          throw EQuillonRemoteError(GeneralErrorText, GeneralError);
        }
        LogIn(AnExchange);
      }
    } while (!CallInSession(AnExchange, ARequest, AResponse));
  });
}

/// @return false if the server does not know the session, which is none any more then
bool TQuillonRemoteClient::CallInSession(TQuillonRemoteExchange& AnExchange, TQuillonRemoteRequest& ARequest,
                                         TQuillonRemoteResponse& AResponse) {
  const TGUID Session = SessionID();
  const std::string Service = std::to_string(ARequest.FServiceID);
  Log(letInfo, Session,
      "Request " + Service + "." + std::to_string(ARequest.FID) + " with " +
          std::to_string(ARequest.FParamsQueue.Count()) + " params");
  std::uint8_t Status = AnExchange.Ask(rcCall, Session);
  if (Status == rsSuccess) {
    TQuillonObjectWriter Writer(AnExchange.Writer());
    const TProgress Progress(FOnProgress, Writer.FOnProgress, AnExchange.Writer().FOnProgress);
    ARequest.FSentCount = ARequest.FParamsQueue.Count();
    ARequest.WriteProperties(Writer);
    Status = AnExchange.ReadStatus();
  }
  switch (Status) {
    case rsSuccess: {
      TQuillonObjectReader Reader(AnExchange.Reader());
      const TProgress Progress(FOnProgress, Reader.FOnProgress, AnExchange.Reader().FOnProgress);
      AResponse.ReadProperties(Reader);
      Log(letInfo, Session, "Response with " + std::to_string(AResponse.FParamsQueue.Count()) + " params");
      return true;
    }
    case rsServiceNotAvailable:
      Log(letError, Session, "Service " + Service + " not available");
      throw EQuillonRemoteError("Service wurde nicht gefunden.", Status);
    case rsSessionNotAvailable:
      SetSessionID({});
      Log(letWarning, Session, "Session not available");
      return false;
    default:
      throw EQuillonRemoteError(GeneralErrorText, GeneralError);
  }
}

void TQuillonRemoteClient::Ping() {
  if (FChannel == nullptr || FChannel->IsOpen()) {
    return;
  }
  TQuillonRemoteExchange::Run(*FChannel, [](TQuillonRemoteExchange& AnExchange) {
    AnExchange.Writer().WriteByte(rcPing);
    if (const std::uint8_t Status = AnExchange.ReadStatus(); Status != rsSuccess) {
      Log(letError, "Ping not successfull");
      throw EQuillonRemoteError("Ping not successfull", Status);
    }
    Log(letSuccess, "Ping successfull");
  });
}

void TQuillonRemoteClient::ForceKeepAlive() {
  if (!SendKeepAlive()) {
    SetKeepAlive(false);
  }
}

/// @return false if the server refuses
bool TQuillonRemoteClient::SendKeepAlive() {
  const TGUID Session = SessionID();
  bool IsDone = true;
  if (FChannel != nullptr && !Session.IsZero() && !FChannel->IsOpen()) {
    TQuillonRemoteExchange::Run(*FChannel, [&](TQuillonRemoteExchange& AnExchange) {
      IsDone = AnExchange.Ask(rcKeepAlive, Session) == rsSuccess;
      Log(IsDone ? letSuccess : letError, Session, IsDone ? "KeepAlive successfull" : "KeepAlive not successfull");
    });
  }
  return IsDone;
}

bool TQuillonRemoteClient::KeepAliveOnTimer() {
  try {
    return SendKeepAlive();
  } catch (const std::exception& Error) {
    Log(letError, Error.what());
    return true;
  }
}

void TQuillonRemoteClient::DoError(const std::exception& AnError, TQuillonRemoteClientAction& AnAction) {
  if (FOnError) {
    FOnError(AnError, AnAction);
  }
}

void TQuillonRemoteClient::DoLogin() {
  if (FOnLogin) {
    FOnLogin();
  }
}
