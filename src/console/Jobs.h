#pragma once

#include "Globals.h"
#include "Program.h"

/// The jobs of this program on the global objects.
class TExchangeJobs : public TJobs {
 public:
  /// @param AnOutput receives the jobs' progress lines
  TExchangeJobs(TVELGlobals& AGlobals, TLineSink AnOutput);

  void ExportToOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) override;
  void ExportToOcf(const std::string& AConfigFileName) override;
  void UploadToSdui(const std::string& AConfigFileName) override;
  void UploadToIServ(const std::string& AConfigFileName) override;
  void ImportFromOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) override;
  void ImportFromOcf(const std::string& AConfigFileName) override;
  void TransformFile(const std::string& AFileName) override;
  void RunNothing(const std::string& AnOption, const std::string& AValue) override;
  void Finish(int AnExitCode, const std::string& AnError) override;

 private:
  /// A stage of the job begins, with its line.
  void Say(std::string_view AStage, std::string_view ALine);
  template <class TConfiguration>
  void RunExport(TConfiguration&& AConfiguration);
  template <class TWriter>
  void RunUpload(const std::string& AConfigFileName, const std::string& AService);
  template <class TConfiguration>
  void RunImport(TConfiguration&& AConfiguration);

  TVELGlobals& FGlobals;
  TLineSink FOutput;
};
