#include <string>
#include <vector>

#include "Globals.h"
#include "HostJobs.h"
#include "Program.h"
#include "QuillonLogs/Manager.h"
#include "Run.h"
#include "platform/Console.h"
#include "platform/Paths.h"

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
  return TConsoleRun(Output, IsMinimal)
      .Run([&] { HostJobs::Run(Words, Globals, Output); },
           [&](int AnExitCode, const std::string& AnError) { Globals.Report().Finish(AnExitCode, AnError); });
}
