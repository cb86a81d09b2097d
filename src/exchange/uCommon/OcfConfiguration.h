#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Settings that every OCF job has: the data server and the file there.
struct TOcfOptions {
  std::string FServerName = "localhost";
  std::uint16_t FServerPort = 111;
  std::string FServerUserName;
  std::string FServerPassword;
  std::string FServerFileId;  ///< GUID with braces; empty means the all-zero GUID
  std::string FFileName;      ///< part of the file format, read by no job
};

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

class TOcfConfigurationManager {
 public:
  TOcfConfigurationManager() = delete;

  /// Reads the member "Velmora" of a JSON file. Keys that are missing leave the defaults, unknown ones are ignored.
  /// @throws EQuillonException for a value of another JSON type than its key takes, naming key and file, and for a
  ///         file that cannot be read or holds no such settings
  static std::unique_ptr<TOcfConfiguration> LoadConfig(const std::string& AFileName);
};
