#include <gmock/gmock.h>

#include <cerrno>
#include <fstream>
#include <thread>

#include "QuillonLogs/Manager.h"
#include "TestFiles.h"

namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr const char* Upload = "Velmora.Upload";

class LogTest : public ::testing::Test {
 protected:
  LogTest() {
    FManager.FOnError = [this](const std::string& AMessage) { FErrors.push_back(AMessage); };
  }

  void Configure(const std::string& ALogs, const std::string& ANamespace = Upload) {
    std::ofstream(FConfig) << "<Preferences><Logs>" << ALogs << "</Logs><Namespaces><" << ANamespace
                           << " Value=\"\"/></Namespaces></Preferences>";
    FManager.SelfConfiguration(FConfig);
  }
  void Add(TQuillonLogEventType AType, std::string_view AText) {
    FManager.AddEntry({AType, AText, "VELMORA.upload", TQuillonDateTime::Create(2026, 8, 1, 7, 45, 9), "web"});
  }
  /// The lines of the one text log.
  std::string Text() const {
    for (const std::string& Name : FFolder.Names()) {
      if (Name.starts_with("text-")) {
        return QuillonIO::ReadWholeFile(FFolder.Path(Name));
      }
    }
    return "no file";
  }
  std::string TextLog(const std::string& AValues = "") const {
    return "<TextLog><FileName Value=\"" + FFolder.Path("text.log") + "\"/>" + AValues + "</TextLog>";
  }

  TemporaryFolder FFolder;
  std::string FConfig = FFolder.Path("log.config");
  TQuillonLogManager FManager;
  std::vector<std::string> FErrors;
};

TEST_F(LogTest, EachRunHasATextFileOfItsOwn) {
  Configure(TextLog());
  Add(letSuccess, "Two\r\nlines");
  Add(letDebugInfo, "not shown");
  FManager.AddEntry(letInfo, "elsewhere", "Velmora");
  EXPECT_EQ(Text(), "");
  FManager.ClearLogs();
  EXPECT_EQ(Text(), "01.08.2026 07:45.09 - [VELMORA.upload] [web] [SUCCESS] Two lines\n");
  EXPECT_THAT(FErrors, IsEmpty());
}

TEST_F(LogTest, NothingIsLoggedWithoutANamespaceOrAConfiguration) {
  FManager.SelfConfiguration(FConfig);
  Add(letError, "nobody hears");
  EXPECT_THAT(FFolder.Names(), IsEmpty());
  Configure(TextLog("<BufferLimit Value=\"1\"/>"), "Other");
  EXPECT_EQ(FManager.GetNamespace(0), "Other");
  Add(letError, "nobody hears");
  EXPECT_EQ(Text(), "");
  FManager.AddNamespace(Upload);
  Add(letError, "heard");
  EXPECT_THAT(Text(), EndsWith("[ERROR] heard\n"));
  FManager.ClearNamespaces();
  Add(letError, "nobody hears");
  EXPECT_THAT(Text(), EndsWith("[ERROR] heard\n"));
}

TEST_F(LogTest, TheLimitIsToldOnce) {
  Configure(TextLog("<BufferLimit Value=\"2\"/><EntryLimit Value=\"2\"/><ShowDebugInfo Value=\"1\"/>"));
  Add(letDebugInfo, "1");
  EXPECT_EQ(Text(), "");
  Add(letAuditFailure, "2");
  EXPECT_THAT(Text(), EndsWith("[AUDIT FAILURE] 2\n"));
  Add(letInfo, "3");
  Add(letInfo, "4");
  FManager.ClearLogs();
  EXPECT_THAT(Text(), EndsWith("[DEBUG INFO] 1\n01.08.2026 07:45.09 - [VELMORA.upload] [web] [AUDIT FAILURE] 2\n"
                               "*** Log limit reached ***\n"));
}

TEST_F(LogTest, ATableIsContinuedByTheNextRun) {
  const std::string File = FFolder.Path("log.csv");
  for (const char* Text : {"first", "a;\"b\""}) {
    TQuillonLogManager Manager;
    Manager.AddNamespace(Upload);
    Manager.AddLog(std::make_unique<TQuillonCSVLog>(File, false, 1));
    Manager.AddEntry({letWarning, Text, Upload, TQuillonDateTime::Create(2026, 8, 1, 7, 45, 9), ""});
    Manager.ClearLogs();
  }
  EXPECT_EQ(QuillonIO::ReadWholeFile(File),
            "\xEF\xBB\xBF"
            "01.08.2026;07:45:09;Velmora.Upload;;WARNING;first\r\n*** Log limit reached ***\r\n"
            "01.08.2026;07:45:09;Velmora.Upload;;WARNING;\"a;\"\"b\"\"\"\r\n*** Log limit reached ***");
}

TEST_F(LogTest, LinesGoToTheOutput) {
  Configure("<ConsoleLog/>");
  ::testing::internal::CaptureStdout();
  Add(letInfo, "seen");
  EXPECT_THAT(::testing::internal::GetCapturedStdout(),
              ::testing::StartsWith("01.08.2026 07:45.09 - [VELMORA.upload] [web] [INFO] seen"));
}

TEST_F(LogTest, AFailureIsToldOnceAndTheOtherLogsGoOn) {
  FailingFiles Files;
  const Platform::FilesReplacement Replacement(Files);
  Configure(TextLog("<BufferLimit Value=\"1\"/>") + "<CSVLog/>");
  EXPECT_THAT(FErrors, ElementsAre(HasSubstr("FileName")));
  EXPECT_EQ(FManager.GetLog(1), nullptr);
  FErrors.clear();

  TQuillonLogManager Manager;
  Manager.FOnError = FManager.FOnError;
  FManager.ClearLogs();
  Manager.AddNamespace(Upload);
  Manager.AddLog(std::make_unique<TQuillonTextLog>(FFolder.Path("full.log"), 1, false, 0));
  Manager.AddLog(std::make_unique<TQuillonCSVLog>(FFolder.Path("log.csv"), false, 0));
  Files.FailFrom(1, ENOSPC, 1);
  Manager.AddEntry(letInfo, "one", Upload);
  Manager.AddEntry(letInfo, "two", Upload);
  Manager.ClearLogs();
  EXPECT_THAT(FErrors, SizeIs(1));
  EXPECT_THAT(QuillonIO::ReadWholeFile(FFolder.Path("log.csv")), HasSubstr("two"));
}

TEST_F(LogTest, ADamagedConfigurationIsToldAndNothingElse) {
  std::ofstream(FConfig) << "<Preferences>";
  FManager.SelfConfiguration(FConfig);
  EXPECT_THAT(FErrors, ElementsAre(HasSubstr(FConfig)));
  EXPECT_EQ(FManager.GetLog(0), nullptr);
}

TEST_F(LogTest, ThreadsDoNotMixTheirLines) {
  Configure(TextLog("<BufferLimit Value=\"3\"/>"));
  std::vector<std::thread> Threads;
  for (int Thread = 0; Thread < 4; ++Thread) {
    Threads.emplace_back([this] {
      for (int Entry = 0; Entry < 50; ++Entry) {
        Add(letInfo, "entry");
      }
    });
  }
  for (std::thread& Thread : Threads) {
    Thread.join();
  }
  FManager.ClearLogs();
  const std::string Line = "01.08.2026 07:45.09 - [VELMORA.upload] [web] [INFO] entry\n";
  std::string Expected;
  for (int Entry = 0; Entry < 200; ++Entry) {
    Expected += Line;
  }
  EXPECT_EQ(Text(), Expected);
}

}  // namespace
