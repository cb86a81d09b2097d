#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

/// Takes one line of output, without its line break; raises what keeps the line from being written.
using TLineSink = std::function<void(std::string_view)>;

/// The frame of a run: banner, job, time; and the one place that handles exceptions.
class TConsoleRun {
 public:
  /// @param AnIsMinimal leaves out the banner and the time
  TConsoleRun(TLineSink AnOutput, bool AnIsMinimal);

  /// Is told how the job has ended: the exit code so far, and the text of the error line, if there is one.
  using TOnEnd = std::function<void(int AnExitCode, const std::string& AnError)>;

  /// Never throws: any failure, one of the output or of AnOnEnd included, becomes the error line and the exit code.
  /// @return the process exit code, 0 or 1
  int Run(const std::function<void()>& AJob, const TOnEnd& AnOnEnd = {});

 private:
  void ShowBanner();
  void ReportElapsedTime();
  /// Runs a step and turns what it throws into the error line.
  /// @return whether the step ended without an exception
  template <class TStep>
  bool Attempt(const TStep& AStep);
  void ReportError(std::string_view AMessage);
  void ShowError();

  TLineSink FOutput;
  bool FIsMinimal;
  std::string FError;
  std::chrono::steady_clock::time_point Stopwatch;
};

namespace ConsoleRun {

/// A duration as "hh:nn:ss", with "d." ahead for whole days and ".fffffff" behind for a part of a second.
/// @param ATicks units of 100 nanoseconds, not negative
std::string ElapsedText(std::int64_t ATicks);

}  // namespace ConsoleRun
