#include "QuillonRemoteServices/DataService.h"

#include <exception>
#include <utility>

#include "QuillonDataObjects/Conflict.h"

void TQuillonRemoteDataServiceProxy::DoAfterStreaming() {
  if (FAfterStreaming) {
    FAfterStreaming();
  }
}

void TQuillonRemoteDataServiceProxy::DoBeforeStreaming() {
  if (FBeforeStreaming) {
    FBeforeStreaming();
  }
}

void TQuillonRemoteDataServiceProxy::DoStreaming(std::int64_t APosition, std::int64_t ATotal, bool& DoAbort) {
  if (FOnStreaming) {
    FOnStreaming(APosition, ATotal, DoAbort);
  }
}

void TQuillonRemoteDataServiceProxy::Perform(TQuillonRemoteStorageOperation AnOperation,
                                             const std::function<void()>& AWork) {
  struct TBusy {
    TQuillonRemoteStorageOperation& Operation;
    ~TBusy() { Operation = soNone; }
  } const Busy{FOperation};
  FOperation = AnOperation;
  DoBeforeStreaming();
  try {
    const TQuillonRemoteClientLock Lock(FRemoteClient);
    AWork();
  } catch (const std::exception& Error) {
    if (FOnError) {
      FOnError(Error);
    }
    DoAfterStreaming();
    throw;
  }
  DoAfterStreaming();
}

TQuillonRemoteRequest& TQuillonRemoteDataServiceProxy::NewRequest(std::uint16_t ACall, const TFile& AFile) {
  TQuillonRemoteRequest& Request = FRemoteClient.FRequest;
  Request.Clear();
  Request.FServiceID = FServiceID;
  Request.FID = ACall;
  if (AFile.has_value()) {
    Request.FParamsQueue.PushGuid(*AFile);
  }
  return Request;
}

void TQuillonRemoteDataServiceProxy::Call() {
  struct TProgress {
    TQuillonStreamProgressEvent& Event;
    ~TProgress() { Event = nullptr; }
  } const Progress{FRemoteClient.FOnProgress};
  FRemoteClient.FOnProgress = [this](std::int64_t APosition, std::int64_t ATotal, bool& DoAbort) {
    DoStreaming(APosition, ATotal, DoAbort);
  };
  FRemoteClient.Call();
}

void TQuillonRemoteDataServiceProxy::RequireSuccess() const {
  const TQuillonRemoteResponse& Response = FRemoteClient.FResponse;
  if (Response.HasError()) {
    Refuse(Response.FErrorMessage, Response.FErrorCode);
  }
}

void TQuillonRemoteDataServiceProxy::RequireSent() const {
  if (FRemoteClient.FRequest.FSentCount == 0) {
    Refuse("Der Server hat die Sitzung verloren, ehe er die Daten angenommen hat.", 0);
  }
}

void TQuillonRemoteDataServiceProxy::GoOnline(const std::function<void()>& ATake) {
  FStorage.ChangeLog().Clear();
  FStorage.ChangeLog().Activate();
  FServerChangeLog.Clear();
  if (ATake) {
    ATake();
  }
  FStatus = ssOnline;
}

void TQuillonRemoteDataServiceProxy::LoadFile(const TFile& AFile, const std::function<void()>& ATake) {
  Perform(soLoad, [&] {
    NewRequest(TCall::Load, AFile);
    Call();
    RequireSuccess();
    const TBlock Content = FRemoteClient.FResponse.FParamsQueue.PopBinary();
    if (Content == nullptr) {
      Refuse("Die Antwort des Servers ist leer.", 0);
    }
    FStorage.LoadFromZIPStream(*Content);
    GoOnline(ATake);
  });
  StartServerPolling();
}

void TQuillonRemoteDataServiceProxy::StoreFile(const TFile& AFile, const std::function<void()>& ATake) {
  Perform(soStore, [&] {
    auto Content = std::make_shared<TQuillonMemoryStream>();
    FStorage.SaveToZIPStream(*Content);
    NewRequest(TCall::Store, AFile).FParamsQueue.PushBinary(std::move(Content));
    Call();
    RequireSuccess();
    RequireSent();
    GoOnline(ATake);
  });
  StartServerPolling();
}

void TQuillonRemoteDataServiceProxy::Close() {
  if (FStatus == ssOffline) {
    return;
  }
  StopServerPolling();
  FServerChangeLog.Clear();
  FStorage.ChangeLog().Deactivate();
  FStorage.Clear();
  FStatus = ssOffline;
}

TQuillonRemoteStorageSynchronizeResult TQuillonRemoteDataServiceProxy::Synchronize(std::string& AConflictMessage) {
  AConflictMessage.clear();
  auto Result = ssrNoNewData;
  if (FStatus == ssOnline) {
    Perform(soSynchronize, [&] { Result = Exchange(AConflictMessage); });
  }
  return Result;
}

TQuillonRemoteStorageSynchronizeResult TQuillonRemoteDataServiceProxy::Exchange(std::string& AConflictMessage) {
  TQuillonDataChangeLog& Log = FStorage.ChangeLog();
  const TQuillonDataChangeLogLock Locked(&Log);
  const bool DoSend = !Log.IsEmpty() || Log.HasTooMuchChanges();
  TQuillonRemoteRequest& Request = NewRequest(DoSend ? TCall::SendChanges : TCall::GetChanges, CurrentFile());
  if (DoSend) {
    auto Changes = std::make_shared<TQuillonMemoryStream>();
    Log.SaveToZipStream(*Changes);
    Request.FParamsQueue.PushBinary(std::move(Changes));
  }
  Call();
  const TQuillonRemoteResponse& Response = FRemoteClient.FResponse;
  if (Response.FErrorCode == OutOfSync || (Response.HasError() && DoSend)) {
    AConflictMessage = Response.FErrorMessage;
    return Response.FErrorCode == OutOfSync ? ssrChangeLogOutOfSync : ssrConflict;
  }
  if (Response.HasError()) {
    return ssrNoNewData;
  }
  if (DoSend) {
    RequireSent();
    Log.Clear();
  }
  TakeServerChanges();
  if (FServerChangeLog.HasTooMuchChanges()) {
    return ssrChangeLogOutOfSync;
  }
  if (FServerChangeLog.IsEmpty()) {
    return ssrNoNewData;
  }
  try {
    FServerChangeLog.Playback(FStorage);
  } catch (const EQuillonDataConflict& Conflict) {
    AConflictMessage = Conflict.what();
    return Conflict.FConflictType == ctTooMuchChanges ? ssrChangeLogOutOfSync : ssrConflict;
  }
  FServerChangeLog.Clear();
  return ssrNewData;
}

void TQuillonRemoteDataServiceProxy::TakeServerChanges() {
  if (const TBlock Changes = FRemoteClient.FResponse.FParamsQueue.PopBinary()) {
    FServerChangeLog.LoadFromZipStream(*Changes);
  }
}
