#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Configuration.h"
#include "JobOptions.h"

struct TOcfOptions : TVELServerOptions {};

struct TOcfExportFile {
  std::string FName;
};

struct TOcfImportFile {
  std::string FName;
};

struct TOcfExportOptions : TOcfOptions {
  std::vector<TOcfExportFile> FFiles;  ///< part of the file format, read by no job
  bool FOnlyScheduledCourses = true;
  bool FOnlyScheduledLessons = true;
  std::string FSourceFileName;    ///< local data file to export
  std::string FSourceProvider;    ///< "Server" for the data server, anything else for a local file
  std::string FTargetFolderName;  ///< folder that receives the OCF file set
};

struct TOcfImportOptions : TOcfOptions {
  std::vector<TOcfImportFile> FFiles;  ///< part of the file format, read by no job
  std::string FSourceFolderName;       ///< folder that holds the OCF file set
  std::string FTargetFileName;         ///< local data file to be opened and saved
  std::string FTargetProvider;         ///< "Server" for the data server, anything else for a local file
};

struct TOcfConfiguration {
  TOcfExportOptions FOcfExport;
  TOcfImportOptions FOcfImport;
};

extern template std::unique_ptr<TOcfConfiguration> LoadConfiguration(const std::string& AFileName);

class TOcfConfigurationManager {
 public:
  TOcfConfigurationManager() = delete;

  /// As LoadConfiguration.
  static std::unique_ptr<TOcfConfiguration> LoadConfig(const std::string& AFileName) {
    return LoadConfiguration<TOcfConfiguration>(AFileName);
  }
};
