#pragma once

#include <string>

#include "Configuration.h"
#include "JobOptions.h"

struct TSduiOptions : TVELSourceOptions {};

struct TSduiExportOptions : TSduiOptions {
  std::string FSduiPin;  ///< access code of the school
  std::string FSduiUrl;  ///< address of the service; empty for the one that the program was built with
};

struct TSduiConfiguration {
  TSduiExportOptions FSduiExport;
};

struct TIServOptions : TVELSourceOptions {};

struct TIServExportOptions : TIServOptions {
  std::string FIServUrl;  ///< address of the school's server
  std::string FIServApiToken;
};

struct TIServConfiguration {
  TIServExportOptions FIServExport;
};

extern template std::unique_ptr<TSduiConfiguration> LoadConfiguration(const std::string& AFileName);
extern template std::unique_ptr<TIServConfiguration> LoadConfiguration(const std::string& AFileName);
