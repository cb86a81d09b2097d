#include <vector>

#include "Fuzz.h"
#include "Program.h"
#include "QuillonNumbers.h"

namespace {

using TArguments = std::vector<std::string>;

/// Takes down which jobs are asked for, with what settings, each as the command line that asks for it in full.
class TRecordingJobs final : public TJobs {
 public:
  void ExportToOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) override {
    const TOcfExportOptions& Options = AConfiguration->FOcfExport;
    const bool IsServer = Options.FSourceProvider == "Server";
    TArguments Asked = {"export", "-s:" + Options.FSourceProvider, "-o:" + Options.FTargetFolderName};
    if (IsServer) {
      std::string Port;
      QuillonNumbers::AppendInteger(Port, Options.FServerPort);
      Asked.insert(Asked.end(), {"-sn:" + Options.FServerName, "-sp:" + Port, "-un:" + Options.FServerUserName,
                                 "-up:" + Options.FServerPassword, "-sf:" + Options.FServerFileId});
    } else {
      Asked.push_back("-fn:" + Options.FSourceFileName);
    }
    Jobs.push_back(Asked);
  }
  void ExportToOcf(const std::string& AConfigFileName) override { Jobs.push_back({"export", "-c:" + AConfigFileName}); }
  void UploadToSdui(const std::string& AConfigFileName) override {
    Jobs.push_back({"export", "-c:" + AConfigFileName, "-p:sdui"});
  }
  void UploadToIServ(const std::string& AConfigFileName) override {
    Jobs.push_back({"export", "-c:" + AConfigFileName, "-p:iserv"});
  }
  void ImportFromOcf(std::unique_ptr<TOcfConfiguration> /*AConfiguration*/) override {
    Fuzz::Require(false, "an import with -s has a job");
  }
  void ImportFromOcf(const std::string& AConfigFileName) override {
    Jobs.push_back({"import", "-c:" + AConfigFileName});
  }
  void TransformFile(const std::string& AFileName) override { Jobs.push_back({"newguids", "-f:" + AFileName}); }

  std::vector<TArguments> Jobs;
};

/// Runs the program. @return the jobs that it asked for
std::vector<TArguments> JobsOf(const TArguments& AnArguments, bool APathsBeginWithSlash) {
  TRecordingJobs Jobs;
  int Errors = 0;
  const TLineSink Output = [&Errors](std::string_view ALine) {
    Fuzz::Require(ALine.find_first_of("\r\n") == std::string_view::npos, "a line of output has several lines");
    Errors += ALine.starts_with("[Error] ") ? 1 : 0;
  };
  const int ExitCode = TProgram(TCommandLine(AnArguments, APathsBeginWithSlash), Jobs, Output).Run();
  Fuzz::Require(ExitCode == Errors && ExitCode <= 1, "exit code and error lines differ");
  Fuzz::Require(Jobs.Jobs.size() + static_cast<std::size_t>(ExitCode) <= 1, "more than one job, or a job and an error");
  return Jobs.Jobs;
}

/// Gives each option with a free text a value that no other one has.
TArguments Distinct(TArguments AnArguments) {
  for (std::string& Argument : AnArguments) {
    const std::string Name = Argument.substr(0, Argument.find(':'));
    for (const char* Free : {"-sn", "-un", "-up", "-sf", "-fn", "-o", "-c", "-f"}) {
      Argument += Name == Free ? Name : "";
    }
  }
  return AnArguments;
}

}  // namespace

/// Runs the program with the lines as arguments; the first one tells whether paths begin with a slash. It asks for one
/// job, or none; a command line with its settings, or
/// with distinct ones, written out in full asks for the same.
void Fuzz::Run(std::string_view AnInput) {
  const bool PathsBeginWithSlash = TakeLine(AnInput) == "/";
  TArguments Arguments;
  while (!AnInput.empty()) {
    Arguments.emplace_back(TakeLine(AnInput));
  }
  const auto Jobs = JobsOf(Arguments, PathsBeginWithSlash);
  for (const TArguments& Asked : Jobs) {
    for (const TArguments& Full : {Asked, Distinct(Asked)}) {
      Require(JobsOf(Full, PathsBeginWithSlash) == std::vector<TArguments>{Full},
              "a full command line asks for another job");
    }
  }
}
