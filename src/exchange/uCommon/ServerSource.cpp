#include "ServerSource.h"

#include <exception>
#include <string>

#include "QuillonGuid.h"
#include "QuillonText.h"
#include "Secrets.h"

namespace {

constexpr std::string_view PolicyName = "Velmora.Login";
/// The lowest value of the policy that lets a user work on a file.
constexpr std::int8_t LeastAccess = 2;

constexpr std::string_view IsConfirmed = " (The data server has confirmed that it stored the file.)";
constexpr std::string_view IsNotConfirmed = " (The data server has not confirmed that it stored the file.)";

/// A user lacks the right to do something with the file.
class EAccessError : public EQuillonException {
 public:
  /// @param AVerb what the user wants to do
  explicit EAccessError(std::string_view AVerb)
      : EQuillonException("Cannot " + std::string(AVerb) + " Velmora file. No access rights.") {}
};

TGUID FileID(const std::string& AText) {
  const auto ID = QuillonGuid::TryParse(AText);
  if (!ID && !AText.empty()) {
    throw EQuillonException(QuillonText::Quoted(AText) +
                            " ist keine gültige GUID. (The file on the data server: serverFileId, or -sf)");
  }
  return ID.value_or(TGUID{});
}

/// A session on the data server for the file that the settings name.
class TSession {
 public:
  TSession(TVELGlobals& AGlobals, const TVELServerOptions& AnOptions)
      : FGlobals(AGlobals),
        FFileID(FileID(AnOptions.FServerFileId)),
        FServer(AnOptions.FServerName + ":" + std::to_string(AnOptions.FServerPort)) {
    FSecrets.Hide(AnOptions.FServerPassword);
    FGlobals.RemoteChannel().SetHost(AnOptions.FServerName);
    FGlobals.RemoteChannel().SetPort(AnOptions.FServerPort);
    FGlobals.RemoteClient().FUserName = AnOptions.FServerUserName;
    FGlobals.RemoteClient().FPassword = AnOptions.FServerPassword;
  }

  void Login() {
    Guarded([&] { FGlobals.RemoteClient().Login(); });
  }

  /// @param AVerb what the user wants to do with the file
  void RequireAccess(std::string_view AVerb) {
    if (FGlobals.RemoteClient().FUserWorkspace.GetPolicyValue(FFileID, PolicyName) < LeastAccess) {
      throw EAccessError(AVerb);
    }
  }

  void Load() {
    Guarded([&] { FGlobals.StorageService().Load(FFileID, ""); });
  }
  void Store() {
    Guarded([&] { FGlobals.StorageService().Store(FFileID, ""); });
  }

  void Logoff() { FGlobals.RemoteClient().Logoff(); }

 private:
  /// Does what brings texts of the server: what it says, or has put into a profile or a plan, may be the password.
  template <class TWork>
  void Guarded(const TWork& AWork) {
    try {
      AWork();
    } catch (const EQuillonSocketError& Error) {
      throw EQuillonException(Error.what() + (" (Data server " + QuillonText::Quoted(FServer) + ")"));
    } catch (const EQuillonRemoteStorageServiceError& Error) {
      const std::string Text = FSecrets.Clean(Error.what());
      const bool IsEmpty = Text.find_first_not_of(' ') == std::string::npos;
      throw EQuillonRemoteStorageServiceError(
          IsEmpty ? "The data server has refused without a reason (code " + std::to_string(Error.ErrorCode()) + ")."
                  : Text,
          Error.ErrorCode());
    } catch (const EQuillonRemoteError&) {
      throw;
    } catch (const EQuillonException& Error) {
      throw EQuillonException(FSecrets.Clean(Error.what()));
    }
  }

  TVELGlobals& FGlobals;
  const TGUID FFileID;
  const std::string FServer;  ///< for people
  TVELSecrets FSecrets;
};

}  // namespace

namespace ServerSource {

bool IsServer(std::string_view AProvider) { return QuillonText::EqualsIgnoreCase(AProvider, "Server"); }

std::string PlaceOf(std::string_view AProvider, const TVELServerOptions& AnOptions, const std::string& AFileName) {
  return IsServer(AProvider)
             ? AnOptions.FServerName + ":" + std::to_string(AnOptions.FServerPort) + " " + AnOptions.FServerFileId
             : AFileName;
}

void Load(TVELGlobals& AGlobals, const TVELServerOptions& AnOptions) {
  TSession Session(AGlobals, AnOptions);
  Session.Login();
  Session.RequireAccess("open");
  Session.Load();
  Session.Logoff();
}

void Store(TVELGlobals& AGlobals, const TVELServerOptions& AnOptions) {
  TSession Session(AGlobals, AnOptions);
  std::string_view Outcome = IsNotConfirmed;
  try {
    Session.Login();
    Session.RequireAccess("store");
    Session.Store();
    Outcome = IsConfirmed;
    Session.Logoff();
  } catch (const EAccessError&) {
    throw;
  } catch (const std::exception& Error) {
    throw EQuillonException(Error.what() + std::string(Outcome));
  }
}

}  // namespace ServerSource
