#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "CommandLine.h"
#include "OcfConfiguration.h"

/// Takes one line of output, without its line break; raises what keeps the line from being written.
using TLineSink = std::function<void(std::string_view)>;

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
  void ShowBanner();
  void Dispatch();
  void DispatchExport();
  void DispatchImport();
  void DispatchUpload();
  void ReadServerOptions(TOcfOptions& AnOptions);
  void ReadText(std::string_view AName, std::string& ATarget);
  void ReportElapsedTime();

  /// The one place that handles exceptions: runs a step and turns what it throws into the error line.
  /// @return whether the step ended without an exception
  bool Attempt(void (TProgram::*AStep)());
  void ReportError(std::string_view AMessage);

  TCommandLine FCommandLine;
  TJobs& FJobs;
  TLineSink FOutput;
  bool FIsMinimal;
  std::chrono::steady_clock::time_point Stopwatch;
  std::string ConfigFileName;
  std::string SourceValue;
  std::string OptionValue;
};

namespace Program {

/// A duration as "hh:nn:ss", with "d." ahead for whole days and ".fffffff" behind for a part of a second.
/// @param ATicks units of 100 nanoseconds, not negative
std::string ElapsedText(std::int64_t ATicks);

/// The text with each run of control characters, line breaks among them, turned into one blank.
std::string OneLine(std::string_view AText);

}  // namespace Program
