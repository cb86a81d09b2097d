#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "QuillonRemoteServices/DataService.h"
#include "QuillonRemoteWorkspaces/Workspace.h"
#include "QuillonSynchronization/Threads.h"

/// A refusal of the service that keeps the workspace.
class EQuillonRemoteWorkspaceServiceError : public EQuillonRemoteError {
 public:
  using EQuillonRemoteError::EQuillonRemoteError;
};

/// The server's workspace, and one's own password in it. While the copy is online, a thread asks the server for changes
/// again and again, if it is to, and gathers them for the next Synchronize.
class TQuillonRemoteWorkspaceServiceProxy final : public TQuillonRemoteDataServiceProxy {
 public:
  static constexpr std::uint16_t ServiceID = 3;
  /// Milliseconds between two times of asking.
  static constexpr std::uint32_t PollingInterval = 10'000;
  /// Changes that are gathered; with more the copy is out of sync.
  static constexpr std::int32_t MaxGathered = 100'000;

  /// @param AClient and AWorkspace must outlive this
  TQuillonRemoteWorkspaceServiceProxy(TQuillonRemoteClient& AClient, TQuillonRemoteWorkspace& AWorkspace);
  TQuillonRemoteWorkspaceServiceProxy(const TQuillonRemoteWorkspaceServiceProxy&) = delete;
  TQuillonRemoteWorkspaceServiceProxy& operator=(const TQuillonRemoteWorkspaceServiceProxy&) = delete;
  /// Cuts the connection of a poll that is under way, as Close does, and so does not wait for the server.
  ~TQuillonRemoteWorkspaceServiceProxy() override;

  /// Makes the copy what the workspace is. Changes of the copy are recorded from here on.
  /// @throws EQuillonRemoteWorkspaceServiceError
  void Load() { LoadFile({}); }
  /// Makes the workspace what the copy is.
  /// @throws EQuillonRemoteWorkspaceServiceError
  void Store() { StoreFile({}); }
  /// The client logs in with the new password from then on.
  /// @throws EQuillonRemoteWorkspaceServiceError
  void ChangePassword(const std::string& AnOldPassword, const std::string& ANewPassword);

  bool FServerPolling = false;                             ///< looked at when the copy goes online
  std::uint32_t FServerPollingInterval = PollingInterval;  ///< milliseconds

 protected:
  void StartServerPolling() override;
  void StopServerPolling() override;
  [[noreturn]] void Refuse(const std::string& AMessage, std::uint16_t AnErrorCode) const override {
    throw EQuillonRemoteWorkspaceServiceError(AMessage, AnErrorCode);
  }

 private:
  void Poll(TQuillonWorkerThread& AThread);
  void GatherChanges(TQuillonWorkerThread& AThread);

  TQuillonEvent FServerPollingEvent{true, false};  ///< ends the thread's waits
  std::mutex FCallLock;                            ///< for the next: who has it knows whose the connection is
  bool FIsCalling = false;                         ///< the thread has the client
  std::unique_ptr<TQuillonWorkerThread> FServerPollingThread;
};
