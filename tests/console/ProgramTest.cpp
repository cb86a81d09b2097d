#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Program.h"
#include "QuillonTypes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

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
std::string JobOf(std::vector<std::string> AnArguments, std::string AProvider = {}) {
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

TEST(Program, ExportsWithSettingsFromTheCommandLine) {
  EXPECT_EQ(JobOf({"export", "-s", "file", "-fn", "plan.velmora", "-o", "out"}),
            "export File /@localhost:111 from plan.velmora to out");
  EXPECT_EQ(JobOf({"export", "-s", "FILE"}), "export File /@localhost:111 from  to ");
  EXPECT_EQ(JobOf({"export", "-s", "server", "-sn", "host", "-sp", "9000", "-un", "me", "-up", "pw", "-sf", "{id}",
                   "-fn", "unread", "-o", "out"}),
            "export Server me/pw@host:9000{id} from  to out");
  EXPECT_EQ(JobOf({"export", "-S", "SERVER", "-SN", "host"}), "export Server /@host:111 from  to ");
  EXPECT_EQ(JobOf({"export", "-s", "ftp"}), "");
  EXPECT_EQ(JobOf({"export", "-sn", "host", "-s", "server", "-sp", "9000"}), "");
}

TEST(Program, CutsThePortToSixteenBits) {
  const auto JobAtPort = [](const std::string& APort) { return JobOf({"export", "-s", "server", "-sp:" + APort}); };
  EXPECT_EQ(JobAtPort("65537"), "export Server /@localhost:1 from  to ");
  EXPECT_EQ(JobAtPort("-1"), "export Server /@localhost:65535 from  to ");
  EXPECT_EQ(JobAtPort("abc"), "[Error] \"abc\" is no valid port number");
  EXPECT_EQ(JobAtPort("80x"), "[Error] \"80x\" is no valid port number");
  EXPECT_EQ(JobAtPort("99999999999"), "[Error] \"99999999999\" is no valid port number");
  EXPECT_EQ(JobAtPort(""), "[Error] \"\" is no valid port number");
}

TEST(Program, ChoosesTheJobOfAConfigurationFileByItsProvider) {
  EXPECT_EQ(JobOf({"export", "-c", "cfg.json"}), "export by cfg.json");
  EXPECT_EQ(JobOf({"export", "-c", "cfg.json", "-p", "Ocf"}), "export by cfg.json");
  EXPECT_EQ(JobOf({"export", "/c:cfg.json", "/p:SDUI"}), "sdui by cfg.json");
  EXPECT_EQ(JobOf({"export", "-p", "iServ", "-c"}), "iserv by ");
  EXPECT_EQ(JobOf({"export", "-c", "cfg.json", "-p", "xyz"}), "[Error] Provider xyz not suppported");
  EXPECT_EQ(JobOf({"export", "-c", "cfg.json", "-p"}), "[Error] Provider  not suppported");
  EXPECT_EQ(JobOf({"export", "-p", "sdui"}), "[Error] Option -c is missing");
}

TEST(Program, ImportsByConfigurationFileOnly) {
  EXPECT_EQ(JobOf({"import", "-c", "cfg.json"}), "import by cfg.json");
  EXPECT_EQ(JobOf({"import"}), "[Error] Option -c is missing");
  EXPECT_EQ(JobOf({"import", "-s", "file", "-fn", "x.vel", "-i", "folder"}), "");
  EXPECT_EQ(JobOf({"import", "-s", "server", "-p", "server", "-i", "folder"}), "");
}

TEST(Program, ImportsWithSettingsWhereAProviderIsKnown) {
  EXPECT_EQ(JobOf({"import", "-s", "x", "-fn", "x.vel", "-i", "folder"}, "FILE"),
            "import File /@localhost:111 from folder to x.vel");
  EXPECT_EQ(JobOf({"import", "-s", "x", "-sn", "host", "-sp", "1", "-un", "me", "-up", "pw", "-sf", "{id}", "-i", "in"},
                  "server"),
            "import Server me/pw@host:1{id} from in to ");
}

TEST(Program, TransformsAFileAndKnowsNoOtherCommand) {
  EXPECT_EQ(JobOf({"newguids", "-f", "/srv/plan.velmora"}), "newguids /srv/plan.velmora");
  EXPECT_EQ(JobOf({"newguids", "-fn", "x"}), "newguids n");
  EXPECT_EQ(JobOf({"newguids"}), "[Error] Option -f is missing");
  for (const auto* Command : {"EXPORT", "exports", "", "help"}) {
    EXPECT_EQ(JobOf({Command, "-c", "x"}), "[Error] Command import, export or newguids is missing") << Command;
  }
}

TEST(Program, FramesARunWithBannerAndElapsedTime) {
  const std::string Elapsed = "Time elapsed: [0-9][0-9]:[0-9][0-9]:[0-9][0-9](\\.[0-9]+)?\\.";
  EXPECT_THAT(TRun({"export", "-s", "ftp"}).Lines, ElementsAre("VELMORA 6 CONSOLE", "", "", MatchesRegex(Elapsed), ""));
  EXPECT_THAT(TRun({}).Lines,
              ElementsAre("VELMORA 6 CONSOLE", "", "", "[Error] Command import, export or newguids is missing", "",
                          MatchesRegex(Elapsed), ""));
  EXPECT_THAT(TRun({"-minimal-display"}).Lines,
              ElementsAre("", "[Error] Command import, export or newguids is missing"));
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
