#include "Measure.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "platform/WatchedFiles.h"

namespace Bench {

namespace {

struct TReport {
  double Seconds = 0;
  double DiskSeconds = 0;
  std::uint64_t Value = 0;
};

using TClock = std::chrono::steady_clock;

double SecondsSince(TClock::time_point AStart) { return std::chrono::duration<double>(TClock::now() - AStart).count(); }

/// When the job of this process began.
TClock::time_point JobStart;

/// What the job of this process has waited for the disk.
double DiskSeconds = 0;

/// Adds up how long calls wait for the disk.
class TDiskWatch final : public Platform::WatchedFiles {
  void Around(Call ACall, const std::function<void()>& ARun) override {
    const bool IsWait =
        ACall == Call::Flush || ACall == Call::EndFlush || ACall == Call::FlushSystem || ACall == Call::FlushDirectory;
    const auto Start = TClock::now();
    ARun();
    DiskSeconds += IsWait ? SecondsSince(Start) : 0;
  }
};

[[noreturn]] void RunChild(const std::function<std::uint64_t()>& AJob, int AnOutput) {
  int ExitCode = 1;
  try {
    TDiskWatch Watch;
    const Platform::FilesReplacement Replacement(Watch);
    TReport Report;
    StartClock();
    Report.Value = AJob();
    Report.Seconds = SecondsSince(JobStart) - DiskSeconds;
    Report.DiskSeconds = DiskSeconds;
    // Less than a pipe takes at once.
    ExitCode = write(AnOutput, &Report, sizeof(Report)) == static_cast<ssize_t>(sizeof(Report)) ? 0 : 1;
  } catch (const std::exception& Error) {
    std::cerr << "[Error] " << Error.what() << "\n";
  }
  _exit(ExitCode);
}

/// The memory of the process is its whole peak here.
TResult MeasureWhole(const std::function<std::uint64_t()>& AJob) {
  std::array<int, 2> Pipe{};
  if (pipe(Pipe.data()) != 0) {
    throw std::runtime_error("a pipe cannot be made");
  }
  std::cout.flush();
  const pid_t Child = fork();
  if (Child < 0) {
    throw std::runtime_error("a process cannot be started");
  }
  if (Child == 0) {
    close(Pipe[0]);
    RunChild(AJob, Pipe[1]);
  }
  close(Pipe[1]);
  TReport Report;
  const bool IsWhole = read(Pipe[0], &Report, sizeof(Report)) == static_cast<ssize_t>(sizeof(Report));
  close(Pipe[0]);
  int Status = 0;
  rusage Usage{};
  if (wait4(Child, &Status, 0, &Usage) != Child || !WIFEXITED(Status) || WEXITSTATUS(Status) != 0 || !IsWhole) {
    throw std::runtime_error("a measured job has failed");
  }
  constexpr std::uint64_t Kilobyte = 1024;
  return {Report.Seconds, Report.DiskSeconds, Report.Value, static_cast<std::uint64_t>(Usage.ru_maxrss) * Kilobyte};
}

}  // namespace

void StartClock() {
  DiskSeconds = 0;
  JobStart = TClock::now();
}

TResult Measure(const std::function<std::uint64_t()>& AJob) {
  const TResult Idle = MeasureWhole([] { return std::uint64_t{0}; });
  TResult Result = MeasureWhole(AJob);
  Result.PeakBytes -= std::min(Result.PeakBytes, Idle.PeakBytes);
  return Result;
}

}  // namespace Bench
