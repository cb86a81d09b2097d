#include "HostJobs.h"

#include <array>
#include <string_view>

#include "uJSONExport/Publisher.h"

namespace HostJobs {

namespace {

constexpr std::string_view Usage = "Usage: velmora-host export|import|publish CONFIG.json [-minimal-display]";

void Export(const std::string& AConfigFileName, TVELGlobals& AGlobals, const TLineSink& AnOutput) {
  TExchangeJobs(AGlobals, AnOutput).ExportToOcf(TOcfConfigurationManager::LoadConfig(AConfigFileName));
}

void Import(const std::string& AConfigFileName, TVELGlobals& AGlobals, const TLineSink& AnOutput) {
  TExchangeJobs(AGlobals, AnOutput).ImportFromOcf(TOcfConfigurationManager::LoadConfig(AConfigFileName));
}

void Publish(const std::string& AConfigFileName, TVELGlobals& AGlobals, const TLineSink& AnOutput) {
  TVELJSONPublisher Publisher(AGlobals, AConfigFileName);
  AGlobals.Report().BeginStage("open");
  AnOutput("Open VELMORA file...");
  Publisher.LoadVelFile();
  AGlobals.TellPlan();
  AGlobals.Report().BeginStage("publish");
  AnOutput("Start Publication...");
  Publisher.Publish();
  AnOutput("Publication finished.");
}

struct TJob {
  std::string_view Name;
  void (*Run)(const std::string& AConfigFileName, TVELGlobals& AGlobals, const TLineSink& AnOutput);
};

constexpr std::array<TJob, 3> Jobs = {{{"export", Export}, {"import", Import}, {"publish", Publish}}};

}  // namespace

void Run(const std::vector<std::string>& AWords, TVELGlobals& AGlobals, const TLineSink& AnOutput) {
  for (const TJob& Job : Jobs) {
    if (AWords.size() == 2 && AWords.front() == Job.Name) {
      AGlobals.Report().FJob = Job.Name;
      AGlobals.Report().FSettings = AWords.back();
      Job.Run(AWords.back(), AGlobals, AnOutput);
      return;
    }
  }
  throw EQuillonException(std::string(Usage));
}

}  // namespace HostJobs
