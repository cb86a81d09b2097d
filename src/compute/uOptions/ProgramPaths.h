#pragma once

#include <string>

class TQuillonAbstractPreferences;

/// Folders and files that the product's programs share. A path in a folder that this user or machine lacks is empty.
struct TVELProgramPaths {
  std::string FBinaryFolder;
  std::string FCommonDataFolder;
  std::string FUserDataFolder;
  std::string FOptionsFolder;
  std::string FSamplesFolder;
  std::string FSymbolsFolder;
  std::string FKeysFolder;
  std::string FScriptsFolder;
  std::string FCalendarsFolder;
  std::string FSecurityFolder;
  std::string FConfigFile;
  std::string FProgramFile;
  std::string FProductLanguage;
  bool FNoUpdates = false;
  bool FNoServerManage = false;
  bool FSiteFileLocal = false;  ///< the site file lies with the user, not with the machine
  std::string FSiteFile;
  std::string FPrintFormsFile;
  std::string FPrintFormsTemplate;
  std::string FHtmlFolder;
  std::string FHtmlFormsFile;
  std::string FHtmlFormsTemplate;
  std::string FCommonHtmlFolder;
  std::string FStatisticsFolder;
  std::string FColorsFile;
  std::string FLogoFile;
  std::string FOptionsFile;
  std::string FMessagesFile;
  std::string FServerListFile;
  std::string FLoginFile;
  std::string FProductVersion;
};

namespace uOptions {

inline constexpr const char* BackupFolderName = "_backup";
inline constexpr const char* SandboxFolderName = "sandbox";
inline constexpr const char* SecurityFolderName = "Security";

/// Where the paths come from. Settings that are absent or cannot be read give their defaults.
struct TPathSources {
  std::string CommonFolder;
  std::string UserFolder;
  std::string ProgramFolder;
  TQuillonAbstractPreferences* Machine = nullptr;
  TQuillonAbstractPreferences* User = nullptr;
};

TVELProgramPaths FillProgramPaths(const TPathSources& ASources);

/// The paths of the running program: filled at the first call, with the system's folders and settings.
const TVELProgramPaths& ProgramPaths();

/// Puts other paths in the place of the program's, for tests, as long as it lives.
class TProgramPathsReplacement {
 public:
  explicit TProgramPathsReplacement(const TVELProgramPaths& APaths);
  TProgramPathsReplacement(const TProgramPathsReplacement&) = delete;
  TProgramPathsReplacement& operator=(const TProgramPathsReplacement&) = delete;
  ~TProgramPathsReplacement();

 private:
  const TVELProgramPaths* FReplaced;
};

}  // namespace uOptions
