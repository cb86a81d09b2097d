#pragma once

#include <string>
#include <string_view>

#include "Synchronizer.h"
#include "uJSONExport/JsonConfiguration.h"
#include "uJSONExport/UserData.h"

/// Publishes a plan: writes its JSON document to a file.
class TVELJSONPublisher : public TVELSynchronizer<TJsonConfiguration> {
 public:
  /// @throws EQuillonException as LoadConfiguration, and for settings that name no file to write, or the data file
  TVELJSONPublisher(TVELGlobals& AGlobals, const std::string& ACfgFileName);

  /// Replaces the file whole or not at all, see QuillonIO::ReplaceFile. Does nothing once Abort was called.
  /// @throws EQuillonException for settings that name an object which the plan does not have, naming their key; and
  ///         what the replacement raises
  void Publish();

 protected:
  const TVELSourceOptions& Options() const override { return Settings(); }

 private:
  const TJsonExportOptions& Settings() const { return FConfiguration->FJsonExport; }
  [[noreturn]] void ThrowWrong(const std::string& AKey, std::string_view AWanted) const;
  TVELPlanobjekt* FindObject(const TJsonObjectName& AName, const std::string& AKey) const;
  void TakeSettings(TVELJSONExport& AnExport, TVELJSONUserData& AUser) const;
  void TakeObjects(TVELJSONExport& AnExport, TVELJSONUserData& AUser) const;
  std::string Document() const;

  std::string FCfgFileName;
};
