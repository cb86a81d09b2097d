#include "CommandLine.h"
#include "Globals.h"
#include "Jobs.h"
#include "Program.h"
#include "QuillonLogs/Manager.h"
#include "platform/Console.h"
#include "platform/Paths.h"

int main(int ACount, char** AValues) {
  Platform::TConsole Console;
  const QuillonLogs::TProgramLog Log;
  // Never freed: they live until the process ends, and to free a plan object by object takes a tenth of a run.
  static TVELGlobals& Globals = *new TVELGlobals;
  const TLineSink Output = [&Console](std::string_view ALine) { Console.WriteLine(ALine); };
  TExchangeJobs Jobs(Globals, Output);
  TProgram Program(TCommandLine(Console.Arguments(ACount, AValues), Platform::PathsBeginWithSlash()), Jobs, Output);
  return Program.Run();
}
