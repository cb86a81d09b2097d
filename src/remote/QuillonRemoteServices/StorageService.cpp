#include "QuillonRemoteServices/StorageService.h"

namespace {

enum TStorageCall : std::uint16_t { Custom = 5, CustomNoBlock };

}  // namespace

void TQuillonRemoteStorageServiceProxy::Load(const TGUID& AFileID, std::string AFileName) {
  LoadFile(AFileID, [&] {
    FFileID = AFileID;
    FFileName = std::move(AFileName);
  });
}

void TQuillonRemoteStorageServiceProxy::Store(const TGUID& AFileID, std::string AFileName) {
  StoreFile(AFileID, [&] {
    FFileID = AFileID;
    FFileName = std::move(AFileName);
  });
}

std::unique_ptr<TQuillonRemoteParamsQueue> TQuillonRemoteStorageServiceProxy::CustomCall(
    const TGUID& AFileID, TQuillonRemoteParamsQueue& ARequestParams) {
  return CallCustom(soCustomCall, Custom, AFileID, ARequestParams);
}

std::unique_ptr<TQuillonRemoteParamsQueue> TQuillonRemoteStorageServiceProxy::CustomCallNB(
    const TGUID& AFileID, TQuillonRemoteParamsQueue& ARequestParams) {
  return CallCustom(soCustomCallNB, CustomNoBlock, AFileID, ARequestParams);
}

std::unique_ptr<TQuillonRemoteParamsQueue> TQuillonRemoteStorageServiceProxy::CallCustom(
    TQuillonRemoteStorageOperation AnOperation, std::uint16_t ACall, const TGUID& AFileID,
    TQuillonRemoteParamsQueue& ARequestParams) {
  std::unique_ptr<TQuillonRemoteParamsQueue> Answer;
  Perform(AnOperation, [&] {
    NewRequest(ACall, AFileID).FParamsQueue.PushQueue(ARequestParams);
    Call();
    RequireSuccess();
    Answer = FRemoteClient.FResponse.FParamsQueue.PopQueue();
  });
  return Answer;
}
