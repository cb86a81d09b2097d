#pragma once

#include <string>

#include "Synchronizer.h"
#include "UploadConfiguration.h"
#include "uUpload/Connection.h"
#include "uUpload/State.h"

/// What an IServ server answers when it refuses; the message is "[IServ] ...".
class EIServApiError : public EQuillonException {
 public:
  explicit EIServApiError(const std::string& AMessage);
  EIServApiError(int AStatusCode, const std::string& AStatusText);

  int FStatusCode = 0;
  std::string FStatusText;
};

/// Publishes the timetable on an IServ school server, unless the data file is the one that was sent last.
class TIServWriter : public TVELSynchronizer<TIServConfiguration> {
 public:
  /// Loads the configuration file.
  /// @throws EQuillonException as LoadConfiguration
  TIServWriter(TVELGlobals& AGlobals, const std::string& ACfgFileName, TQuillonHttpClient& AClient,
               TVELUploadState& AState);

  /// Makes the publication, and sends it if the data file has changed.
  /// @return whether it was sent
  /// @throws EIServApiError, EQuillonHttpError
  bool UploadVelFile();

 protected:
  const TIServExportOptions& Options() const override { return FConfiguration->FIServExport; }

 private:
  TVELUploadConnection FConnection;
  TVELUploadState& FState;
};

namespace uIServ {

/// The document that IServ gets of a plan: all its weeks, without dates.
std::string WritePublication(TVELPlan& APlan);

}  // namespace uIServ
