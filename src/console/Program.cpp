#include "Program.h"

#include <exception>
#include <limits>
#include <ratio>
#include <utility>

#include "QuillonNumbers.h"
#include "QuillonText.h"
#include "QuillonTypes.h"

namespace {

constexpr std::string_view ServerProvider = "Server";
constexpr std::string_view FileProvider = "File";

/// The port is a whole number of 32 bits of which the lower 16 count.
std::uint16_t ParsePort(std::string_view AText) {
  using TLimits = std::numeric_limits<std::int32_t>;
  try {
    return static_cast<std::uint16_t>(QuillonNumbers::ParseInteger(AText, TLimits::min(), TLimits::max()));
  } catch (const EQuillonConvertError&) {
    throw EQuillonConvertError("\"" + std::string(AText) + "\" is no valid port number");
  }
}

}  // namespace

TProgram::TProgram(TCommandLine ACommandLine, TJobs& AJobs, TLineSink AnOutput)
    : FCommandLine(std::move(ACommandLine)),
      FJobs(AJobs),
      FOutput(std::move(AnOutput)),
      FIsMinimal(FCommandLine.FindSwitch("minimal-display")),
      Stopwatch(std::chrono::steady_clock::now()) {}

int TProgram::Run() {
  // Without a banner there is no place for the lines of a job: a job whose lines nobody gets is not started.
  const bool IsDone = Attempt(&TProgram::ShowBanner) && Attempt(&TProgram::Dispatch);
  const bool IsReported = Attempt(&TProgram::ReportElapsedTime);
  return IsDone && IsReported ? 0 : 1;
}

bool TProgram::Attempt(void (TProgram::*AStep)()) {
  try {
    (this->*AStep)();
    return true;
  } catch (const std::exception& Error) {
    ReportError(Error.what());
  } catch (...) {
    ReportError("Unknown error");
  }
  return false;
}

void TProgram::ReportError(std::string_view AMessage) {
  try {
    FOutput("");
    FOutput("[Error] " + Program::OneLine(AMessage));
  } catch (...) {
    // An output that fails here has no other place to say so; the exit code tells it.
    return;
  }
}

void TProgram::ShowBanner() {
  if (!FIsMinimal) {
    FOutput("VELMORA 6 CONSOLE");
    FOutput("");
  }
  Stopwatch = std::chrono::steady_clock::now();
}

void TProgram::ReportElapsedTime() {
  using TTicks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
  const auto Elapsed = std::chrono::duration_cast<TTicks>(std::chrono::steady_clock::now() - Stopwatch);
  if (!FIsMinimal) {
    FOutput("");
    FOutput("Time elapsed: " + Program::ElapsedText(Elapsed.count()) + ".");
    FOutput("");
  }
}

void TProgram::Dispatch() {
  const auto Command = FCommandLine.Command();
  if (Command == "export") {
    DispatchExport();
  } else if (Command == "import") {
    DispatchImport();
  } else if (Command == "newguids") {
    if (!FCommandLine.FindOption("f", ConfigFileName)) {
      throw EQuillonException("Option -f is missing");
    }
    FJobs.TransformFile(ConfigFileName);
  } else {
    throw EQuillonException("Command import, export or newguids is missing");
  }
}

void TProgram::DispatchExport() {
  if (!FCommandLine.FindOption("s", SourceValue)) {
    DispatchUpload();
    return;
  }
  auto Configuration = std::make_unique<TOcfConfiguration>();
  auto& Options = Configuration->FOcfExport;
  if (QuillonText::EqualsIgnoreCase(SourceValue, ServerProvider)) {
    Options.FSourceProvider = ServerProvider;
    ReadServerOptions(Options);
  } else if (QuillonText::EqualsIgnoreCase(SourceValue, FileProvider)) {
    Options.FSourceProvider = FileProvider;
    ReadText("fn", Options.FSourceFileName);
  } else {
    return;
  }
  ReadText("o", Options.FTargetFolderName);
  FJobs.ExportToOcf(std::move(Configuration));
}

void TProgram::DispatchUpload() {
  if (!FCommandLine.FindOption("c", ConfigFileName)) {
    throw EQuillonException("Option -c is missing");
  }
  if (!FCommandLine.FindOption("p", ProviderValue) || QuillonText::EqualsIgnoreCase(ProviderValue, "ocf")) {
    FJobs.ExportToOcf(ConfigFileName);
  } else if (QuillonText::EqualsIgnoreCase(ProviderValue, "sdui")) {
    FJobs.UploadToSdui(ConfigFileName);
  } else if (QuillonText::EqualsIgnoreCase(ProviderValue, "iserv")) {
    FJobs.UploadToIServ(ConfigFileName);
  } else {
    throw EQuillonException("Provider " + ProviderValue + " not suppported");
  }
}

void TProgram::DispatchImport() {
  if (!FCommandLine.FindOption("s", SourceValue)) {
    if (!FCommandLine.FindOption("c", ConfigFileName)) {
      throw EQuillonException("Option -c is missing");
    }
    FJobs.ImportFromOcf(ConfigFileName);
    return;
  }
  auto Configuration = std::make_unique<TOcfConfiguration>();
  auto& Options = Configuration->FOcfImport;
  // The choice rests on the provider, which no import reads: an import with -s ends without a job.
  if (QuillonText::EqualsIgnoreCase(ProviderValue, ServerProvider)) {
    Options.FTargetProvider = ServerProvider;
    ReadServerOptions(Options);
  } else if (QuillonText::EqualsIgnoreCase(ProviderValue, FileProvider)) {
    Options.FTargetProvider = FileProvider;
    ReadText("fn", Options.FTargetFileName);
  } else {
    return;
  }
  ReadText("i", Options.FSourceFolderName);
  FJobs.ImportFromOcf(std::move(Configuration));
}

void TProgram::ReadServerOptions(TOcfOptions& AnOptions) {
  ReadText("sn", AnOptions.FServerName);
  if (FCommandLine.FindOption("sp", OptionValue)) {
    AnOptions.FServerPort = ParsePort(OptionValue);
  }
  ReadText("un", AnOptions.FServerUserName);
  ReadText("up", AnOptions.FServerPassword);
  ReadText("sf", AnOptions.FServerFileId);
}

void TProgram::ReadText(std::string_view AName, std::string& ATarget) {
  if (FCommandLine.FindOption(AName, OptionValue)) {
    ATarget = OptionValue;
  }
}

namespace Program {

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

std::string OneLine(std::string_view AText) {
  constexpr unsigned char Delete = 0x7F;
  std::string Line;
  Line.reserve(AText.size());
  bool IsInBreak = false;
  for (const char C : AText) {
    const auto Byte = static_cast<unsigned char>(C);
    const bool IsControl = Byte < ' ' || Byte == Delete;
    if (!IsControl) {
      Line.push_back(C);
    } else if (!IsInBreak) {
      Line.push_back(' ');
    }
    IsInBreak = IsControl;
  }
  return Line;
}

}  // namespace Program
