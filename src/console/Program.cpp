#include "Program.h"

#include <limits>
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
      FRun(std::move(AnOutput), FCommandLine.FindSwitch(MinimalDisplay)) {}

int TProgram::Run() {
  return FRun.Run([this] { Dispatch(); },
                  [this](int AnExitCode, const std::string& AnError) { FJobs.Finish(AnExitCode, AnError); });
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
    FJobs.RunNothing("-s", SourceValue);
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
    FJobs.RunNothing("-p", ProviderValue);
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
