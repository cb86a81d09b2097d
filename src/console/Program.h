#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "CommandLine.h"
#include "OcfConfiguration.h"
#include "Run.h"

/// Switch that leaves out the banner and the time.
inline constexpr std::string_view MinimalDisplay = "minimal-display";

/// The jobs that a command line can ask for. Each prints its own progress lines and raises an exception on failure.
class TJobs {
 public:
  TJobs() = default;
  TJobs(const TJobs&) = delete;
  TJobs& operator=(const TJobs&) = delete;
  virtual ~TJobs() = default;

  virtual void ExportToOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) = 0;
  virtual void ExportToOcf(const std::string& AConfigFileName) = 0;
  virtual void UploadToSdui(const std::string& AConfigFileName) = 0;
  virtual void UploadToIServ(const std::string& AConfigFileName) = 0;
  virtual void ImportFromOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) = 0;
  virtual void ImportFromOcf(const std::string& AConfigFileName) = 0;
  /// Gives all objects of a data file new identifiers.
  virtual void TransformFile(const std::string& AFileName) = 0;

  /// The command line asks for no job. @param AnOption whose value is none of its own
  virtual void RunNothing(const std::string& /*AnOption*/, const std::string& /*AValue*/) {}
  /// Behind the job, whatever became of it.
  virtual void Finish(int /*AnExitCode*/, const std::string& /*AnError*/) {}
};

/// One run of the program: reads the command line, does the one job it asks for, and reports.
class TProgram {
 public:
  /// @param AnOutput receives every line of the run, the jobs' own lines excepted
  TProgram(TCommandLine ACommandLine, TJobs& AJobs, TLineSink AnOutput);

  /// Never throws: any failure, one of the output included, becomes the error line and the exit code.
  /// @return the process exit code, 0 or 1
  int Run();

  /// Value of `-p`. Only `export` reads it; the choice that `import -s` makes rests on it all the same.
  std::string ProviderValue;

 private:
  void Dispatch();
  void DispatchExport();
  void DispatchImport();
  void DispatchUpload();
  void ReadServerOptions(TOcfOptions& AnOptions);
  void ReadText(std::string_view AName, std::string& ATarget);

  TCommandLine FCommandLine;
  TJobs& FJobs;
  TConsoleRun FRun;
  std::string ConfigFileName;
  std::string SourceValue;
  std::string OptionValue;
};
