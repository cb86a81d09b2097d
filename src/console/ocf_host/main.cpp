#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Globals.h"
#include "Jobs.h"
#include "OcfConfiguration.h"
#include "Program.h"
#include "QuillonLogs/Manager.h"
#include "QuillonTypes.h"
#include "Run.h"
#include "platform/Console.h"
#include "platform/Paths.h"

namespace {

constexpr std::string_view Usage = "Usage: velmora-ocf-host export|import CONFIG.json [-minimal-display]";

/// @param AWords the arguments without the switch: the job and its configuration file
void RunJob(const std::vector<std::string>& AWords, TJobs& AJobs) {
  const bool IsExport = !AWords.empty() && AWords.front() == "export";
  const bool IsImport = !AWords.empty() && AWords.front() == "import";
  if (AWords.size() != 2 || !(IsExport || IsImport)) {
    throw EQuillonException(std::string(Usage));
  }
  std::unique_ptr<TOcfConfiguration> Configuration = TOcfConfigurationManager::LoadConfig(AWords.back());
  if (IsExport) {
    AJobs.ExportToOcf(std::move(Configuration));
  } else {
    AJobs.ImportFromOcf(std::move(Configuration));
  }
}

}  // namespace

/// Runs an OCF job with the settings of a configuration file, which the console's own command line has no way to.
int main(int ACount, char** AValues) {
  Platform::TConsole Console;
  const QuillonLogs::TProgramLog Log;
  static TVELGlobals& Globals = *new TVELGlobals;  // never freed, as in the console
  const TLineSink Output = [&Console](std::string_view ALine) { Console.WriteLine(ALine); };
  std::vector<std::string> Words = Console.Arguments(ACount, AValues);
  const auto AsksForMinimum = [](const std::vector<std::string>& AWords) {
    return TCommandLine(AWords, Platform::PathsBeginWithSlash()).FindSwitch(MinimalDisplay);
  };
  const bool IsMinimal = AsksForMinimum(Words);
  std::erase_if(Words, [&](const std::string& AWord) { return AsksForMinimum({AWord}); });
  TExchangeJobs Jobs(Globals.Plan(), Output);
  return TConsoleRun(Output, IsMinimal).Run([&] { RunJob(Words, Jobs); });
}
