#include "Run.h"

#include <exception>
#include <new>
#include <ratio>
#include <utility>

#include "QuillonNumbers.h"
#include "QuillonText.h"

TConsoleRun::TConsoleRun(TLineSink AnOutput, bool AnIsMinimal)
    : FOutput(std::move(AnOutput)), FIsMinimal(AnIsMinimal), Stopwatch(std::chrono::steady_clock::now()) {}

int TConsoleRun::Run(const std::function<void()>& AJob, const TOnEnd& AnOnEnd) {
  // Without a banner there is no place for the lines of a job: a job whose lines nobody gets is not started.
  const bool IsDone = Attempt([this] { ShowBanner(); }) && Attempt(AJob);
  const bool IsTold = !AnOnEnd || Attempt([&] { AnOnEnd(IsDone ? 0 : 1, FError); });
  ShowError();
  const bool IsReported = Attempt([this] { ReportElapsedTime(); });
  return IsDone && IsTold && IsReported ? 0 : 1;
}

template <class TStep>
bool TConsoleRun::Attempt(const TStep& AStep) {
  try {
    AStep();
    return true;
  } catch (const std::bad_alloc&) {
    ReportError("Out of memory: the job needs more than this system, or a limit that is set for it, lets it have.");
  } catch (const std::exception& Error) {
    ReportError(Error.what());
  } catch (...) {
    ReportError("Unknown error");
  }
  return false;
}

void TConsoleRun::ReportError(std::string_view AMessage) {
  try {
    const std::string Text = QuillonText::OneLine(AMessage);
    FError = FError.empty() ? Text : FError + " (Then: " + Text + ")";
  } catch (...) {
    return;  // too little memory even for that; the exit code tells it
  }
}

void TConsoleRun::ShowError() {
  try {
    if (!FError.empty()) {
      FOutput("");
      FOutput("[Error] " + FError);
    }
  } catch (...) {
    // An output that fails here has no other place to say so; the exit code tells it.
    return;
  }
}

void TConsoleRun::ShowBanner() {
  if (!FIsMinimal) {
    FOutput("VELMORA 6 CONSOLE");
    FOutput("");
  }
  Stopwatch = std::chrono::steady_clock::now();
}

void TConsoleRun::ReportElapsedTime() {
  using TTicks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
  const auto Elapsed = std::chrono::duration_cast<TTicks>(std::chrono::steady_clock::now() - Stopwatch);
  if (!FIsMinimal) {
    FOutput("");
    FOutput("Time elapsed: " + ConsoleRun::ElapsedText(Elapsed.count()) + ".");
    FOutput("");
  }
}

namespace ConsoleRun {

std::string ElapsedText(std::int64_t ATicks) {
  constexpr std::int64_t TicksPerSecond = 10'000'000;
  constexpr std::int64_t SecondsPerMinute = 60;
  constexpr std::int64_t SecondsPerHour = 3'600;
  constexpr std::int64_t SecondsPerDay = 86'400;
  const std::int64_t Seconds = ATicks / TicksPerSecond;
  const std::int64_t Fraction = ATicks % TicksPerSecond;
  std::string Text;
  if (const std::int64_t Days = Seconds / SecondsPerDay; Days > 0) {
    QuillonNumbers::AppendInteger(Text, Days);
    Text.push_back('.');
  }
  QuillonNumbers::AppendPadded(Text, Seconds % SecondsPerDay / SecondsPerHour, 2);
  Text.push_back(':');
  QuillonNumbers::AppendPadded(Text, Seconds % SecondsPerHour / SecondsPerMinute, 2);
  Text.push_back(':');
  QuillonNumbers::AppendPadded(Text, Seconds % SecondsPerMinute, 2);
  if (Fraction != 0) {
    Text.push_back('.');
    QuillonNumbers::AppendPadded(Text, Fraction, 7);
  }
  return Text;
}

}  // namespace ConsoleRun
