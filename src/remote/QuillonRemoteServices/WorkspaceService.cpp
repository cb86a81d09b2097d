#include "QuillonRemoteServices/WorkspaceService.h"

#include <exception>

#include "QuillonLogs/Manager.h"

namespace {

enum TWorkspaceCall : std::uint16_t { ChangeOfPassword = 5 };

/// Milliseconds between two tries to get the client, or to end a poll.
constexpr std::uint32_t RetryInterval = 20;

}  // namespace

TQuillonRemoteWorkspaceServiceProxy::TQuillonRemoteWorkspaceServiceProxy(TQuillonRemoteClient& AClient,
                                                                         TQuillonRemoteWorkspace& AWorkspace)
    : TQuillonRemoteDataServiceProxy(AClient, ServiceID, AWorkspace) {
  FServerChangeLog.FOperationLimit = MaxGathered;
}

TQuillonRemoteWorkspaceServiceProxy::~TQuillonRemoteWorkspaceServiceProxy() {
  TQuillonRemoteWorkspaceServiceProxy::StopServerPolling();
}

void TQuillonRemoteWorkspaceServiceProxy::ChangePassword(const std::string& AnOldPassword,
                                                         const std::string& ANewPassword) {
  Perform(woNone, [&] {
    TQuillonRemoteParamsQueue& Params = NewRequest(ChangeOfPassword, {}).FParamsQueue;
    Params.PushString(AnOldPassword);
    Params.PushString(ANewPassword);
    Call();
    RequireSuccess();
    RequireSent();
    FRemoteClient.FPassword = ANewPassword;
  });
}

void TQuillonRemoteWorkspaceServiceProxy::StartServerPolling() {
  if (FServerPolling && FServerPollingThread == nullptr) {
    FServerPollingEvent.ResetEvent();
    FServerPollingThread = std::make_unique<TQuillonWorkerThread>([this](auto& ASender) { Poll(ASender); });
    FServerPollingThread->Start();
  }
}

void TQuillonRemoteWorkspaceServiceProxy::StopServerPolling() {
  if (FServerPollingThread == nullptr) {
    return;
  }
  FServerPollingThread->Terminate();
  FServerPollingEvent.SetEvent();
  while (FServerPollingThread->WaitFor(RetryInterval) == wrTimeout) {
    const std::lock_guard Guard(FCallLock);
    if (FIsCalling) {
      FRemoteClient.Abort();
    }
  }
  FServerPollingThread.reset();
}

void TQuillonRemoteWorkspaceServiceProxy::Poll(TQuillonWorkerThread& AThread) {
  while (FServerPollingEvent.WaitFor(FServerPollingInterval) == wrTimeout) {
    // Waiting for the client by its lock alone could not be ended.
    while (!FRemoteClient.TryLock()) {
      if (FServerPollingEvent.WaitFor(RetryInterval) != wrTimeout) {
        return;
      }
    }
    struct TCalling {
      TQuillonRemoteWorkspaceServiceProxy& Proxy;
      void Set(bool AValue) const {
        const std::lock_guard Guard(Proxy.FCallLock);
        Proxy.FIsCalling = AValue;
      }
      ~TCalling() {
        Set(false);
        Proxy.FRemoteClient.Unlock();
      }
    } const Calling{*this};
    Calling.Set(true);
    GatherChanges(AThread);
  }
}

void TQuillonRemoteWorkspaceServiceProxy::GatherChanges(TQuillonWorkerThread& AThread) {
  if (FServerChangeLog.HasTooMuchChanges()) {
    return;
  }
  try {
    NewRequest(GetChanges, {});
    FRemoteClient.Call();
    RequireSuccess();
    TakeServerChanges();
  } catch (const std::exception& Error) {
    if (!AThread.Terminated()) {
      // Without the words of the error: they may be the server's, which knows the password.
      QuillonLogs::TheLog().AddEntry(letWarning, "Polling not successfull", QuillonRemoting::LogNamespace);
      if (FOnError) {
        FOnError(Error);
      }
    }
  }
}
