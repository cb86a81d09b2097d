#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <thread>

#include "QuillonFileReplacement.h"
#include "QuillonFileSystem.h"
#include "core/TestFiles.h"

namespace {

using testing::HasSubstr;
using TCall = Platform::WatchedFiles::Call;

class ReplaceFile : public testing::Test {
 protected:
  mode_t Permissions(const std::string& AName) const {
    struct stat Info {};
    EXPECT_EQ(stat(FFolder.Path(AName).c_str(), &Info), 0);
    return Info.st_mode & 07777;
  }

  TemporaryFolder FFolder;
  const std::string FName = FFolder.Path("plan.data");
  const std::string FOld = "the old content";
  const std::string FNew = std::string(3 * 1024 * 1024 + 17, 'n');
};

}  // namespace

TEST_F(ReplaceFile, PutsNewContentInThePlaceOfOld) {
  QuillonIO::ReplaceFile(FName, FOld);
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), FOld);
  QuillonIO::ReplaceFile(FName, FNew);
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), FNew);
  QuillonIO::ReplaceFile(FName, "");
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), "");
  EXPECT_EQ(FFolder.Names(), std::vector<std::string>{"plan.data"});
}

TEST_F(ReplaceFile, LeavesTheOldFileWhenItsContentFails) {
  QuillonIO::ReplaceFile(FName, FOld);
  const auto Fail = [&](const TQuillonContentSink& ASink) {
    ASink(FNew);
    throw EQuillonException("no more of it");
  };
  EXPECT_THROW(QuillonIO::ReplaceFile(FName, Fail), EQuillonException);
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), FOld);
  EXPECT_EQ(FFolder.Names().size(), 1U);
}

TEST_F(ReplaceFile, KeepsPermissionsOfTheOldAndGivesUsualOnesToANewFile) {
  const mode_t Mask = umask(027);
  QuillonIO::ReplaceFile(FName, FOld);
  umask(Mask);
  EXPECT_EQ(Permissions("plan.data"), 0640U);
  chmod(FName.c_str(), 0604);
  QuillonIO::ReplaceFile(FName, FNew);
  EXPECT_EQ(Permissions("plan.data"), 0604U);
}

TEST_F(ReplaceFile, ALinkStaysALinkToTheReplacedFile) {
  TQuillonFileSystem::CreateDirectory(FFolder.Path("real"));
  QuillonIO::ReplaceFile(FFolder.Path("real/plan.data"), FOld);
  ASSERT_EQ(symlink("real/plan.data", FFolder.Path("middle").c_str()), 0);
  ASSERT_EQ(symlink("middle", FName.c_str()), 0);
  ASSERT_EQ(symlink("real/new.data", FFolder.Path("dangling").c_str()), 0);
  ASSERT_EQ(symlink("circle", FFolder.Path("circle").c_str()), 0);

  QuillonIO::ReplaceFile(FName, FNew);
  QuillonIO::ReplaceFile(FFolder.Path("dangling"), "created");
  EXPECT_EQ(QuillonIO::ReadWholeFile(FFolder.Path("real/plan.data")), FNew);
  EXPECT_EQ(QuillonIO::ReadWholeFile(FFolder.Path("real/new.data")), "created");
  for (const char* Link : {"plan.data", "middle", "dangling"}) {
    struct stat Info {};
    lstat(FFolder.Path(Link).c_str(), &Info);
    EXPECT_TRUE(S_ISLNK(Info.st_mode)) << Link;
  }
  EXPECT_THROW(QuillonIO::ReplaceFile(FFolder.Path("circle"), "x"), EQuillonFileHandleError);
}

TEST_F(ReplaceFile, WhateverCallFailsLeavesTheOldOrTheNewFileAlone) {
  for (const int ErrorCode : {ENOSPC, EIO}) {
    for (const int UnnamedRefusal : {0, ENOTSUP}) {
      int Failures = 0;
      bool IsThrough = false;
      for (int Call = 1; !IsThrough; ++Call) {
        SCOPED_TRACE(Call);
        ASSERT_LT(Call, 100);
        QuillonIO::ReplaceFile(FName, FOld);
        try {
          FailingFiles Files;
          const Platform::FilesReplacement Replacement(Files);
          Files.Refuse(TCall::OpenUnnamed, UnnamedRefusal);
          Files.FailFrom(Call, ErrorCode, 1);
          QuillonIO::ReplaceFile(FName, FNew);
          IsThrough = Files.Calls() < Call;
          EXPECT_TRUE(IsThrough) << "a failed call was not told";
        } catch (const EQuillonFileHandleError& Error) {
          ++Failures;
          EXPECT_EQ(Error.ErrorCode(), ErrorCode);
          EXPECT_THAT(Error.what(), HasSubstr(FName));
        }
        const std::string Content = QuillonIO::ReadWholeFile(FName);
        EXPECT_TRUE(Content == FOld || Content == FNew);
        EXPECT_EQ(FFolder.Names(), std::vector<std::string>{"plan.data"});
      }
      EXPECT_GE(Failures,
                10);  // links, old file, new file, attributes, four blocks, flush, rename, flush of the folder
    }
  }
}

TEST_F(ReplaceFile, AHeldFileIsTheNewOneWithoutAMomentBetween) {
  QuillonIO::ReplaceFile(FName, FOld);
  const auto Held = QuillonIO::HoldFile(FName);
  QuillonIO::ReplaceFile(*Held, FNew);
  EXPECT_THROW(QuillonIO::HoldFile(FName, std::chrono::milliseconds(60)), EQuillonFileInUseError);
  try {
    QuillonIO::ReplaceFile(FName, FOld, std::chrono::milliseconds(0));
    FAIL();
  } catch (const EQuillonFileInUseError& Error) {
    EXPECT_THAT(Error.what(), HasSubstr("File is in use by another program: " + FName));
  }
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), FNew);
  // Who waits gets the file that stands there then, not the one that it saw at first.
  std::thread Waiter([&] { QuillonIO::ReplaceFile(*QuillonIO::HoldFile(FName), "of the waiter"); });
  std::this_thread::sleep_for(std::chrono::milliseconds(120));
  QuillonIO::ReplaceFile(*Held, FOld);
  Held->Close();
  Waiter.join();
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), "of the waiter");
  TQuillonFileStream Reader(FName, fomOpenRead, famShareDenyWrite);
  EXPECT_THROW(QuillonIO::ReplaceFile(Reader, FNew), EQuillonFileHandleError);
}

TEST_F(ReplaceFile, WhatKilledProcessesLeftGoesAndForeignFilesStay) {
  const auto Hidden = [](const std::string& AGuid) { return ".velmora-" + AGuid + ".tmp"; };
  const std::string Guid = "b3c1f0a2-4d5e-4f60-8a71-92b3c4d5e6f7";
  const std::string Other = "c3c1f0a2-4d5e-4f60-8a71-92b3c4d5e6f7";
  std::vector<std::string> Stay = {"." + Guid + ".tmp", Hidden("z" + Guid.substr(1)), Hidden(Guid + "0"),
                                   Hidden(Other)};
  for (const std::string& Name : Stay) {
    TQuillonFileStream(FFolder.Path(Name), fomCreate, famShareDenyNone).Close();
  }
  TQuillonFileStream(FFolder.Path(Hidden(Guid)), fomCreate, famShareDenyNone).Close();
  const TQuillonFileStream InWork(FFolder.Path(Hidden(Other)), fomOpenReadWrite, famShareDenyWrite);
  QuillonIO::ReplaceFile(FName, FNew);
  Stay.emplace_back("plan.data");
  EXPECT_THAT(FFolder.Names(), testing::UnorderedElementsAreArray(Stay));
}

TEST_F(ReplaceFile, AKillLeavesNothingBehindTheNextSave) {
  std::minstd_rand Random(2);
  int LeftOvers = 0;
  for (int Round = 0; Round < 120; ++Round) {
    const int UnnamedRefusal = Round % 2 == 0 ? 0 : ENOTSUP;
    const int Signal = Round % 3 == 0 ? SIGTERM : SIGKILL;
    const pid_t Child = fork();
    if (Child == 0) {
      FailingFiles Files;
      const Platform::FilesReplacement Replacement(Files);
      Files.Refuse(TCall::OpenUnnamed, UnnamedRefusal);
      for (;;) {
        QuillonIO::ReplaceFile(FName, FOld);
        QuillonIO::ReplaceFile(FName, FNew);
      }
    }
    std::this_thread::sleep_for(std::chrono::microseconds(2'000 + Random() % 15'000));
    kill(Child, Signal);
    int Status = 0;
    ASSERT_EQ(waitpid(Child, &Status, 0), Child);
    EXPECT_TRUE(WIFSIGNALED(Status) && WTERMSIG(Status) == Signal);
    LeftOvers += FFolder.Names().size() > 1 ? 1 : 0;
    if (Signal == SIGTERM) {
      EXPECT_LE(FFolder.Names().size(), 1U) << "a told end leaves nothing";
    }
    if (TQuillonFileSystem::Exists(FName)) {
      const std::string Content = QuillonIO::ReadWholeFile(FName);
      EXPECT_TRUE(Content == FOld || Content == FNew);
    }
    QuillonIO::ReplaceFile(FName, FOld);
    EXPECT_EQ(FFolder.Names(), std::vector<std::string>{"plan.data"});
  }
  EXPECT_GT(LeftOvers, 0) << "no kill has met a file in the making";
}

/// Where a folder takes no file, or nothing may take the place of the old one.
class OverwriteFile : public ReplaceFile {
 protected:
  OverwriteFile() : FReplacement(FFiles) {
    setenv("XDG_STATE_HOME", FState.Path("").c_str(), 1);
    QuillonIO::ReplaceFile(FName, FOld);
    FFiles.Refuse(TCall::Rename, EBUSY);
    FFiles.Refuse(TCall::GiveName, EBUSY);
  }
  ~OverwriteFile() override { unsetenv("XDG_STATE_HOME"); }

  TemporaryFolder FState;
  FailingFiles FFiles;
  Platform::FilesReplacement FReplacement;
};

TEST_F(OverwriteFile, NeedsACompleteCopyFirst) {
  EXPECT_THROW(QuillonIO::ReplaceFile(FName, FNew), EQuillonFileHandleError) << "no copy can take its name either";
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), FOld);
  FFiles.Refuse(TCall::GiveName, 0);
  FFiles.Refuse(TCall::Rename, 0);
  FFiles.RefuseIn(FFolder.Path(""), EROFS);
  QuillonIO::ReplaceFile(FName, "short");
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), "short");
  EXPECT_TRUE(TQuillonFileSystem::IsDirectory(FState.Path("velmora")));
  EXPECT_TRUE(std::filesystem::is_empty(FState.Path("velmora")));
  // A full disk is no reason to put the old content at risk.
  FFiles.RefuseIn(FFolder.Path(""), ENOSPC);
  EXPECT_THROW(QuillonIO::ReplaceFile(FName, FNew), EQuillonFileHandleError);
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), "short");
}

TEST_F(OverwriteFile, WhateverCallFailsTheNewContentIsNamedOrTheOldIsThere) {
  FFiles.Refuse(TCall::GiveName, 0);
  FFiles.Refuse(TCall::Rename, 0);
  int Named = 0;
  bool IsThrough = false;
  for (int Call = 1; !IsThrough; ++Call) {
    SCOPED_TRACE(Call);
    ASSERT_LT(Call, 100);
    FFiles.RefuseIn("", 0);
    FFiles.FailFrom(1, EIO, 0);
    QuillonIO::ReplaceFile(FName, FOld);
    FFiles.RefuseIn(FFolder.Path(""), EROFS);
    FFiles.FailFrom(Call, EIO);
    std::string Error;
    try {
      QuillonIO::ReplaceFile(FName, FNew);
      IsThrough = true;
    } catch (const EQuillonFileHandleError& Failure) {
      Error = Failure.ErrorMsg();
    }
    FFiles.FailFrom(1, EIO, 0);
    const std::string Content = QuillonIO::ReadWholeFile(FName);
    if (const std::size_t Copy = Error.find("Kopie: "); Copy != std::string::npos) {
      ++Named;
      const std::string Path = Error.substr(Copy + 7, Error.size() - Copy - 8);
      EXPECT_EQ(QuillonIO::ReadWholeFile(Path), FNew);
      EXPECT_EQ(std::filesystem::status(Path).permissions(), std::filesystem::perms(0600));
      std::filesystem::remove(Path);
    } else {
      EXPECT_TRUE(Content == FNew || Content == FOld);
    }
    EXPECT_EQ(FFolder.Names(), std::vector<std::string>{"plan.data"});
  }
  EXPECT_GE(Named, 6);  // begin, four blocks, flush
  EXPECT_TRUE(std::filesystem::is_empty(FState.Path("velmora")));
}

TEST_F(OverwriteFile, ASignalWaitsForTheCompleteFileAndTheEndOfItsCopy) {
  FFiles.Refuse(TCall::GiveName, 0);
  FFiles.Refuse(TCall::Rename, 0);
  FFiles.RefuseIn(FFolder.Path(""), EROFS);
  std::minstd_rand Random(5);
  for (int Round = 0; Round < 40; ++Round) {
    const pid_t Child = fork();
    if (Child == 0) {
      constexpr unsigned LongestLife = 60;
      alarm(LongestLife);
      for (bool IsNew = false;; IsNew = !IsNew) {
        QuillonIO::ReplaceFile(FName, IsNew ? FNew : FOld);
      }
    }
    std::this_thread::sleep_for(std::chrono::microseconds(2'000 + Random() % 15'000));
    kill(Child, SIGTERM);
    int Status = 0;
    ASSERT_EQ(waitpid(Child, &Status, 0), Child);
    EXPECT_TRUE(WIFSIGNALED(Status) && WTERMSIG(Status) == SIGTERM);
    const std::string Content = QuillonIO::ReadWholeFile(FName);
    EXPECT_TRUE(Content == FOld || Content == FNew);
    const std::string Kept = FState.Path("velmora");
    EXPECT_TRUE(!TQuillonFileSystem::Exists(Kept) || std::filesystem::is_empty(Kept));
  }
}

TEST_F(ReplaceFile, ABackupIsACopyThatAppearsWhole) {
  const std::string Backup = FFolder.Path("plan.backup");
  QuillonIO::ReplaceFile(FName, FNew);
  chmod(FName.c_str(), 0640);
  for (const int UnnamedRefusal : {0, ENOTSUP}) {
    for (int Call = 1; !TQuillonFileSystem::Exists(Backup); ++Call) {
      ASSERT_LT(Call, 100);
      FailingFiles Files;
      const Platform::FilesReplacement Replacement(Files);
      Files.Refuse(TCall::OpenUnnamed, UnnamedRefusal);
      const auto Held = QuillonIO::HoldFile(FName);
      Files.FailFrom(Call, ENOSPC);
      try {
        QuillonIO::KeepBackup(*Held, Backup);
      } catch (const EQuillonFileHandleError&) {
        EXPECT_EQ(FFolder.Names().size(), TQuillonFileSystem::Exists(Backup) ? 2U : 1U);
      }
    }
    EXPECT_EQ(QuillonIO::ReadWholeFile(Backup), FNew);
    EXPECT_EQ(Permissions("plan.backup"), 0640U);
    EXPECT_EQ(std::filesystem::hard_link_count(Backup), 1U);
    QuillonIO::ReplaceFile(Backup, "the first of the day");
    QuillonIO::KeepBackup(*QuillonIO::HoldFile(FName), Backup);
    EXPECT_EQ(QuillonIO::ReadWholeFile(Backup), "the first of the day");
    std::filesystem::remove(Backup);
  }
}

TEST_F(ReplaceFile, AMoveToAnotherVolumeIsACopyAndNamesWhatIsMissing) {
  const std::string Moved = FFolder.Path("moved");
  QuillonIO::ReplaceFile(FName, FOld);
  FailingFiles Files;
  const Platform::FilesReplacement Replacement(Files);
  Files.FailFrom(1, EXDEV);
  EXPECT_THROW(TQuillonFileSystem::MoveFile(FName, Moved, false), EQuillonFileSystemError);
  EXPECT_EQ(FFolder.Names(), std::vector<std::string>{"plan.data"});
  Files.FailFrom(1, EXDEV, 1);
  TQuillonFileSystem::MoveFile(FName, Moved, false);
  EXPECT_EQ(QuillonIO::ReadWholeFile(Moved), FOld);
  EXPECT_EQ(FFolder.Names(), std::vector<std::string>{"moved"});
  try {
    TQuillonFileSystem::MoveFile(FName, Moved, true);
    FAIL();
  } catch (const EQuillonFileSystemError& Error) {
    EXPECT_THAT(Error.what(), HasSubstr(FName));
  }
}

TEST_F(ReplaceFile, DevicesAreWrittenToAndFoldersRefused) {
  // A device is everybody's: no lock keeps another one from it.
  const TQuillonFileStream Other("/dev/null", fomOpenWrite, famShareExclusive);
  QuillonIO::ReplaceFile("/dev/null", FNew);
  struct stat Info {};
  stat("/dev/null", &Info);
  EXPECT_TRUE(S_ISCHR(Info.st_mode));
  EXPECT_THROW(QuillonIO::ReplaceFile("/dev/full", FNew), EQuillonFileHandleError);
  EXPECT_THROW(QuillonIO::ReplaceFile(FFolder.Path(""), FNew), EQuillonFileHandleError);
  EXPECT_THROW(QuillonIO::ReplaceFile(FFolder.Path("missing/plan.data"), FNew), EQuillonFileHandleError);
  EXPECT_TRUE(FFolder.Names().empty());
}
