#include "CommandLine.h"
#include "Jobs.h"
#include "Program.h"
#include "platform/Console.h"
#include "platform/Paths.h"

int main(int ACount, char** AValues) {
  Platform::TConsole Console;
  TExchangeJobs Jobs;
  TProgram Program(TCommandLine(Console.Arguments(ACount, AValues), Platform::PathsBeginWithSlash()), Jobs,
                   [&Console](std::string_view ALine) { Console.WriteLine(ALine); });
  return Program.Run();
}
