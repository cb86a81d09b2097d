#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "Synchronizer.h"
#include "UploadConfiguration.h"
#include "uUpload/Connection.h"
#include "uUpload/State.h"

/// What the Sdui service answers when it refuses; the message is "[Sdui] ...".
class ESduiApiError : public EQuillonException {
 public:
  explicit ESduiApiError(const std::string& AMessage);
  ESduiApiError(int AStatusCode, const std::string& AStatusText);
  /// Takes the status text from "meta.errors" of the answer: a line for each of its texts.
  ESduiApiError(int AStatusCode, const nlohmann::json& AJson);

  int FStatusCode = 0;
  std::string FStatusText;
};

/// Sends the data file, as XML, to the Sdui platform, unless it is the one that was sent last.
class TSduiWriter : public TVELSynchronizer<TSduiConfiguration> {
 public:
  /// Loads the configuration file.
  /// @throws EQuillonException as LoadConfiguration
  TSduiWriter(TVELGlobals& AGlobals, const std::string& ACfgFileName, TQuillonHttpClient& AClient,
              TVELUploadState& AState);

  /// Logs in with the access code of the school.
  /// @return the token of the session; empty where the service answers with something else than its own form
  /// @throws ESduiApiError, EQuillonHttpError
  std::string GetToken();
  /// Logs in, and sends the file if it has changed.
  /// @return whether it was sent
  /// @throws ESduiApiError, EQuillonHttpError
  bool UploadVelFile();

 protected:
  const TSduiExportOptions& Options() const override { return FConfiguration->FSduiExport; }

 private:
  /// @throws ESduiApiError where neither the settings nor the program have an address
  std::string AddressOf(std::string_view APath) const;
  /// @throws ESduiApiError for an answer that is the service's own and no success
  void Check(const TQuillonHttpResponse& AResponse) const;

  TVELUploadConnection FConnection;
  TVELUploadState& FState;
};
