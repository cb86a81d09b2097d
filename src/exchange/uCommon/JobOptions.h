#pragma once

#include <cstdint>
#include <string>

/// Settings that every exchange job has: the data server and the file there.
struct TVELServerOptions {
  std::string FServerName = "localhost";
  std::uint16_t FServerPort = 111;
  std::string FServerUserName;
  std::string FServerPassword;
  std::string FServerFileId;    ///< GUID with braces; empty means the all-zero GUID
  std::string FFileName;        ///< part of the file format, read by no job
  std::string FReportFileName;  ///< the run's report for other programs; empty for none
};

/// Settings of a job that reads a data file.
struct TVELSourceOptions : TVELServerOptions {
  std::string FSourceFileName;  ///< local data file
  std::string FSourceProvider;  ///< "Server" for the data server, anything else for a local file
};
