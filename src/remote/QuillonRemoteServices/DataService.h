#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "QuillonDataObjects/Storage.h"
#include "QuillonRemoting/Client.h"

/// What a proxy is busy with. That of the workspace knows the first four.
enum TQuillonRemoteStorageOperation : std::uint8_t {
  soNone,
  soLoad,
  soStore,
  soSynchronize,
  soCustomCall,
  soCustomCallNB
};
using TQuillonRemoteWorkspaceOperation = TQuillonRemoteStorageOperation;
inline constexpr TQuillonRemoteWorkspaceOperation woNone = soNone;
inline constexpr TQuillonRemoteWorkspaceOperation woLoad = soLoad;
inline constexpr TQuillonRemoteWorkspaceOperation woStore = soStore;
inline constexpr TQuillonRemoteWorkspaceOperation woSynchronize = soSynchronize;

/// Whether a proxy's storage is a copy of what the server has.
enum TQuillonRemoteStorageStatus : std::uint8_t { ssOffline, ssOnline };
using TQuillonRemoteWorkspaceStatus = TQuillonRemoteStorageStatus;
inline constexpr TQuillonRemoteWorkspaceStatus wsOffline = ssOffline;
inline constexpr TQuillonRemoteWorkspaceStatus wsOnline = ssOnline;

enum TQuillonRemoteStorageSynchronizeResult : std::uint8_t {
  ssrNoNewData,
  ssrNewData,            ///< the storage has the changes of others now
  ssrConflict,           ///< the server refused the local changes, or those of others do not fit; they stay in the log
  ssrChangeLogOutOfSync  ///< the copy cannot be brought up to date: it has to be loaded again
};
using TQuillonRemoteWorkspaceSynchronizeResult = TQuillonRemoteStorageSynchronizeResult;

/// A storage of which the server has the master copy, fetched and stored whole and kept up to date by change logs. One
/// thread at a time works with a proxy; from the request to the last look at its answer it holds the client.
///
/// A transfer that fails raises what the client raises, a server that refuses the error of the service, and content
/// that cannot be read what the storage raises, which then holds what was read so far. The status stays.
class TQuillonRemoteDataServiceProxy : public TQuillonRemoteServiceProxy {
 public:
  /// The code of an answer that says that the copy and the server's have no common past.
  static constexpr std::uint16_t OutOfSync = 4;

  TQuillonRemoteStorageOperation Operation() const { return FOperation; }
  TQuillonRemoteStorageStatus Status() const { return FStatus; }
  /// Changes of others that the storage does not have yet.
  const TQuillonDataChangeLog& ServerChangeLog() const { return FServerChangeLog; }

  /// Ends the work on the copy and empties it; does nothing offline. Nothing is sent.
  void Close();

  /// Sends what was changed here and takes over what others have changed. A local log that has dropped changes goes out
  /// too, for the server to refuse; one that the server has dropped changes of is out of sync as well.
  /// @param[out] AConflictMessage the server's words where it refuses, or those of the conflict with what others did;
  ///   their changes stay in the server's log then, and the storage as it was
  /// @throws what else playing back raises
  TQuillonRemoteStorageSynchronizeResult Synchronize(std::string& AConflictMessage);

  /// Around each operation, the client not held; after one that failed, too.
  std::function<void()> FBeforeStreaming;
  std::function<void()> FAfterStreaming;
  /// Of a request and of its answer.
  TQuillonStreamProgressEvent FOnStreaming;
  /// Gets the error of an operation ahead of its caller. Nobody else hears of an error of the polling, in whose thread
  /// it is called then.
  std::function<void(const std::exception& AnError)> FOnError;

 protected:
  using TFile = std::optional<TGUID>;
  using TBlock = std::shared_ptr<TQuillonMemoryStream>;

  /// The operations that the services share; a service's further ones follow.
  enum TCall : std::uint16_t { Load = 1, GetChanges, Store, SendChanges, FirstOfService };

  /// @param AClient and AStorage must outlive this
  TQuillonRemoteDataServiceProxy(TQuillonRemoteClient& AClient, std::uint16_t AServiceID, TQuillonDataStorage& AStorage)
      : TQuillonRemoteServiceProxy(AClient, AServiceID), FStorage(AStorage) {}

  virtual void DoAfterStreaming();
  virtual void DoBeforeStreaming();
  virtual void DoStreaming(std::int64_t APosition, std::int64_t ATotal, bool& DoAbort);

  /// The file that this proxy is for; none where the server has but one.
  virtual TFile CurrentFile() const { return {}; }
  /// The storage is online from now on.
  virtual void StartServerPolling() {}
  virtual void StopServerPolling() {}
  /// Raises the error of the service.
  [[noreturn]] virtual void Refuse(const std::string& AMessage, std::uint16_t AnErrorCode) const = 0;

  /// @param ATake is called once the storage is the server's, the client still held
  void LoadFile(const TFile& AFile, const std::function<void()>& ATake = {});
  void StoreFile(const TFile& AFile, const std::function<void()>& ATake = {});

  /// Does the work of an operation with the client held, and tells about it.
  void Perform(TQuillonRemoteStorageOperation AnOperation, const std::function<void()>& AWork);
  /// Makes the client's request one of this service, without any values but the file.
  TQuillonRemoteRequest& NewRequest(std::uint16_t ACall, const TFile& AFile);
  /// Calls with the request; the answer lies in the client.
  void Call();
  /// @throws the error of the service where the answer is one
  void RequireSuccess() const;
  /// For requests that bring something to the server: its answer to one that went out again, empty, is worth nothing.
  /// @throws the error of the service then
  void RequireSent() const;
  /// The server's changes join those that are here.
  void TakeServerChanges();

  TQuillonDataStorage& FStorage;
  TQuillonDataChangeLog FServerChangeLog;  ///< used with the client held

 private:
  /// The storage is what the server has.
  void GoOnline(const std::function<void()>& ATake);
  /// Sends the local changes, if any, and asks for those of others.
  TQuillonRemoteStorageSynchronizeResult Exchange(std::string& AConflictMessage);

  TQuillonRemoteStorageOperation FOperation = soNone;
  TQuillonRemoteStorageStatus FStatus = ssOffline;
};
