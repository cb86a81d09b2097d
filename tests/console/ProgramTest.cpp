#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "Program.h"
#include "QuillonTypes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Writes down which job ran with which settings.
class TRecordingJobs : public TJobs {
 public:
  std::vector<std::string> FRuns;
  std::string FFailure;

  void ExportToOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) override {
    const auto& Options = AConfiguration->FOcfExport;
    Record("export " + Options.FSourceProvider + " " + Server(Options) + " from " + Options.FSourceFileName + " to " +
           Options.FTargetFolderName);
  }
  void ExportToOcf(const std::string& AConfigFileName) override { Record("export by " + AConfigFileName); }
  void UploadToSdui(const std::string& AConfigFileName) override { Record("sdui by " + AConfigFileName); }
  void UploadToIServ(const std::string& AConfigFileName) override { Record("iserv by " + AConfigFileName); }
  void ImportFromOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) override {
    const auto& Options = AConfiguration->FOcfImport;
    Record("import " + Options.FTargetProvider + " " + Server(Options) + " from " + Options.FSourceFolderName + " to " +
           Options.FTargetFileName);
  }
  void ImportFromOcf(const std::string& AConfigFileName) override { Record("import by " + AConfigFileName); }
  void TransformFile(const std::string& AFileName) override { Record("newguids " + AFileName); }

 private:
  static std::string Server(const TOcfOptions& AnOptions) {
    return AnOptions.FServerUserName + "/" + AnOptions.FServerPassword + "@" + AnOptions.FServerName + ":" +
           std::to_string(AnOptions.FServerPort) + AnOptions.FServerFileId;
  }
  void Record(std::string ARun) {
    FRuns.push_back(std::move(ARun));
    if (!FFailure.empty()) {
      throw EQuillonException(FFailure);
    }
  }
};

/// One run with recording jobs, and what came of it.
struct TRun {
  TRecordingJobs Jobs;
  std::vector<std::string> Lines;
  int ExitCode = -1;

  explicit TRun(std::vector<std::string> AnArguments, std::string AProvider = {}, std::string AFailure = {}) {
    Jobs.FFailure = std::move(AFailure);
    TProgram Program(TCommandLine(std::move(AnArguments), true), Jobs,
                     [this](std::string_view ALine) { Lines.emplace_back(ALine); });
    Program.ProviderValue = std::move(AProvider);
    ExitCode = Program.Run();
  }
};

/// The job that the arguments lead to; "" for a run that does nothing, the error's text for one that fails.
std::string JobOf(std::vector<std::string> AnArguments, std::string AProvider) {
  AnArguments.emplace_back("-minimal-display");
  const TRun Run(std::move(AnArguments), std::move(AProvider));
  EXPECT_EQ(Run.ExitCode, Run.Lines.empty() ? 0 : 1);
  if (!Run.Lines.empty()) {
    EXPECT_THAT(Run.Jobs.FRuns, IsEmpty());
    return Run.Lines.back();
  }
  EXPECT_LE(Run.Jobs.FRuns.size(), 1U);
  return Run.Jobs.FRuns.empty() ? "" : Run.Jobs.FRuns.front();
}

struct TCall {
  const char* Arguments;
  const char* Job;
  const char* Provider = "";
};

/// What a line of arguments, divided by blanks, leads to.
constexpr TCall Calls[] = {
    {"export -s file -fn plan.velmora -o out", "export File /@localhost:111 from plan.velmora to out"},
    {"export -s FILE", "export File /@localhost:111 from  to "},
    {"export -s server -sn host -sp 9000 -un me -up pw -sf {id} -fn unread -o out",
     "export Server me/pw@host:9000{id} from  to out"},
    {"export -S SERVER -SN host", "export Server /@host:111 from  to "},
    {"export -s ftp", ""},
    {"export -sn host -s server -sp 9000", ""},
    // The port is cut to sixteen bits.
    {"export -s server -sp:65537", "export Server /@localhost:1 from  to "},
    {"export -s server -sp:-1", "export Server /@localhost:65535 from  to "},
    {"export -s server -sp:abc", "[Error] \"abc\" is no valid port number"},
    {"export -s server -sp:80x", "[Error] \"80x\" is no valid port number"},
    {"export -s server -sp:99999999999", "[Error] \"99999999999\" is no valid port number"},
    {"export -s server -sp:", "[Error] \"\" is no valid port number"},
    // The provider chooses the job of a configuration file.
    {"export -c cfg.json", "export by cfg.json"},
    {"export -c cfg.json -p Ocf", "export by cfg.json"},
    {"export /c:cfg.json /p:SDUI", "sdui by cfg.json"},
    {"export -p iServ -c", "iserv by "},
    {"export -c cfg.json -p xyz", "[Error] Provider xyz not suppported"},
    {"export -c cfg.json -p", "[Error] Provider  not suppported"},
    {"export -p sdui", "[Error] Option -c is missing"},
    // An import takes settings from the command line only where a provider is known.
    {"import -c cfg.json", "import by cfg.json"},
    {"import", "[Error] Option -c is missing"},
    {"import -s file -fn x.vel -i folder", ""},
    {"import -s server -p server -i folder", ""},
    {"import -s x -fn x.vel -i folder", "import File /@localhost:111 from folder to x.vel", "FILE"},
    {"import -s x -sn host -sp 1 -un me -up pw -sf {id} -i in", "import Server me/pw@host:1{id} from in to ", "server"},
    {"newguids -f /srv/plan.velmora", "newguids /srv/plan.velmora"},
    {"newguids -fn x", "newguids n"},
    {"newguids", "[Error] Option -f is missing"},
    {"EXPORT -c x", "[Error] Command import, export or newguids is missing"},
    {"exports -c x", "[Error] Command import, export or newguids is missing"},
    {" -c x", "[Error] Command import, export or newguids is missing"},
    {"help -c x", "[Error] Command import, export or newguids is missing"},
};

TEST(Program, DoesTheOneJobThatItsArgumentsAskFor) {
  for (const TCall& Call : Calls) {
    std::vector<std::string> Arguments;
    std::istringstream Line(Call.Arguments);
    for (std::string Argument; std::getline(Line, Argument, ' ');) {
      Arguments.push_back(Argument);
    }
    EXPECT_EQ(JobOf(Arguments, Call.Provider), Call.Job) << Call.Arguments;
  }
}

TEST(Program, ReportsWhatAJobRaisesOnOneLine) {
  const TRun Run({"import", "-c", "x", "-minimal-display"}, {}, "Systemfehler (Fehlercode: 2).\r\nNo such file\n\x1b");
  EXPECT_THAT(Run.Lines, ElementsAre("", "[Error] Systemfehler (Fehlercode: 2). No such file "));
  EXPECT_EQ(Run.ExitCode, 1);
}

TEST(Program, EndsWithOneWhenAnyLineIsRefused) {
  const std::size_t LinesOfAFailedRun = TRun({"newguids"}).Lines.size();
  for (std::size_t Refused = 0; Refused < LinesOfAFailedRun; ++Refused) {
    TRecordingJobs Jobs;
    std::size_t Count = 0;
    TProgram Program(TCommandLine({"newguids"}, true), Jobs, [&](std::string_view) {
      if (Count++ >= Refused) {
        throw EQuillonException("No space left on device");
      }
    });
    EXPECT_EQ(Program.Run(), 1) << Refused;
    EXPECT_LE(Count, LinesOfAFailedRun + 1) << Refused;
  }

  TRecordingJobs Jobs;
  TProgram Program(TCommandLine({"newguids", "-f", "x"}, true), Jobs,
                   [](std::string_view) -> void { throw EQuillonException("Broken pipe"); });
  EXPECT_EQ(Program.Run(), 1);
  EXPECT_THAT(Jobs.FRuns, IsEmpty()) << "nothing is changed for a caller who hears nothing";
}

TEST(Program, TellsElapsedTime) {
  constexpr std::int64_t Second = 10'000'000;
  EXPECT_EQ(ConsoleRun::ElapsedText(0), "00:00:00");
  EXPECT_EQ(ConsoleRun::ElapsedText(1), "00:00:00.0000001");
  EXPECT_EQ(ConsoleRun::ElapsedText(35 * Second / 10), "00:00:03.5000000");
  EXPECT_EQ(ConsoleRun::ElapsedText(86'399 * Second), "23:59:59");
  EXPECT_EQ(ConsoleRun::ElapsedText((26 * 3'600 + 61) * Second), "1.02:01:01");
  EXPECT_EQ(ConsoleRun::ElapsedText(123 * 86'400 * Second + 5), "123.00:00:00.0000005");
}

}  // namespace
