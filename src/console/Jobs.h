#pragma once

#include "Program.h"

/// The jobs of this program. One that does not exist yet raises a sentence that says so.
class TExchangeJobs : public TJobs {
 public:
  void ExportToOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) override;
  void ExportToOcf(const std::string& AConfigFileName) override;
  void UploadToSdui(const std::string& AConfigFileName) override;
  void UploadToIServ(const std::string& AConfigFileName) override;
  void ImportFromOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) override;
  void ImportFromOcf(const std::string& AConfigFileName) override;
  void TransformFile(const std::string& AFileName) override;
};
