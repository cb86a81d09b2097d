#pragma once

#include <memory>
#include <string>
#include <utility>

#include "QuillonRemoteServices/DataService.h"

/// A refusal of the service that keeps the files.
class EQuillonRemoteStorageServiceError : public EQuillonRemoteError {
 public:
  using EQuillonRemoteError::EQuillonRemoteError;
};

/// A file on the server, as the content of a storage.
class TQuillonRemoteStorageServiceProxy final : public TQuillonRemoteDataServiceProxy {
 public:
  static constexpr std::uint16_t ServiceID = 4;

  /// @param AClient and AStorage must outlive this
  TQuillonRemoteStorageServiceProxy(TQuillonRemoteClient& AClient, TQuillonDataStorage& AStorage)
      : TQuillonRemoteDataServiceProxy(AClient, ServiceID, AStorage) {}

  /// Makes the storage what the file is; the file is the proxy's then. Changes of the storage are recorded from here
  /// on.
  /// @param AFileName for people; the server knows files by their identifier
  /// @throws EQuillonRemoteStorageServiceError
  void Load(const TGUID& AFileID, std::string AFileName);
  void Load() { Load(FFileID, FFileName); }
  /// Makes the file what the storage is; the rest as with Load.
  /// @throws EQuillonRemoteStorageServiceError; the server may have the file all the same where its answer was lost
  void Store(const TGUID& AFileID, std::string AFileName);
  void Store() { Store(FFileID, FFileName); }

  /// Calls what the server does with a file in a way of its own; nothing of it is known here.
  /// @param ARequestParams is empty then
  /// @return what comes back
  /// @throws EQuillonRemoteStorageServiceError
  std::unique_ptr<TQuillonRemoteParamsQueue> CustomCall(const TGUID& AFileID,
                                                        TQuillonRemoteParamsQueue& ARequestParams);
  /// The same for calls during which the server lets others use the file.
  std::unique_ptr<TQuillonRemoteParamsQueue> CustomCallNB(const TGUID& AFileID,
                                                          TQuillonRemoteParamsQueue& ARequestParams);

  TGUID FFileID;
  std::string FFileName;

 protected:
  TFile CurrentFile() const override { return FFileID; }
  [[noreturn]] void Refuse(const std::string& AMessage, std::uint16_t AnErrorCode) const override {
    throw EQuillonRemoteStorageServiceError(AMessage, AnErrorCode);
  }

 private:
  std::unique_ptr<TQuillonRemoteParamsQueue> CallCustom(TQuillonRemoteStorageOperation AnOperation, std::uint16_t ACall,
                                                        const TGUID& AFileID,
                                                        TQuillonRemoteParamsQueue& ARequestParams);
};
