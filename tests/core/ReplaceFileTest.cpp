#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "QuillonFileSystem.h"
#include "QuillonIO.h"
#include "core/TestFiles.h"

namespace {

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
    int Failures = 0;
    bool IsThrough = false;
    for (int Call = 1; !IsThrough; ++Call) {
      SCOPED_TRACE(Call);
      ASSERT_LT(Call, 100);
      QuillonIO::ReplaceFile(FName, FOld);
      try {
        FailingFiles Files;
        const Platform::FilesReplacement Replacement(Files);
        Files.FailFrom(Call, ErrorCode, 1);
        QuillonIO::ReplaceFile(FName, FNew);
        IsThrough = Files.Calls() < Call;
        EXPECT_TRUE(IsThrough) << "a failed call was not told";
      } catch (const EQuillonFileHandleError& Error) {
        ++Failures;
        EXPECT_EQ(Error.ErrorCode(), ErrorCode);
        EXPECT_THAT(Error.what(), testing::HasSubstr(FName));
      }
      const std::string Content = QuillonIO::ReadWholeFile(FName);
      EXPECT_TRUE(Content == FOld || Content == FNew);
      EXPECT_EQ(FFolder.Names(), std::vector<std::string>{"plan.data"});
    }
    EXPECT_GE(Failures, 8);  // open, attributes, four blocks, flush, close, rename, flush of the folder
  }
}

TEST_F(ReplaceFile, WritesInPlaceWhereNothingMayTakeThePlace) {
  QuillonIO::ReplaceFile(FName, FNew);
  FailingFiles Files;
  const Platform::FilesReplacement Replacement(Files);
  Files.RefuseNewFiles(EROFS);
  QuillonIO::ReplaceFile(FName, FOld);
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), FOld);
  Files.RefuseNewFiles(0);
  Files.RefuseRenaming(EBUSY);
  QuillonIO::ReplaceFile(FName, "short");
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), "short");
  EXPECT_EQ(FFolder.Names(), std::vector<std::string>{"plan.data"});
  // A full disk is no reason to put the old content at risk.
  Files.RefuseNewFiles(ENOSPC);
  EXPECT_THROW(QuillonIO::ReplaceFile(FName, FNew), EQuillonFileHandleError);
  EXPECT_EQ(QuillonIO::ReadWholeFile(FName), "short");
}

TEST_F(ReplaceFile, DevicesAreWrittenToAndFoldersRefused) {
  QuillonIO::ReplaceFile("/dev/null", FNew);
  struct stat Info {};
  stat("/dev/null", &Info);
  EXPECT_TRUE(S_ISCHR(Info.st_mode));
  EXPECT_THROW(QuillonIO::ReplaceFile("/dev/full", FNew), EQuillonFileHandleError);
  EXPECT_THROW(QuillonIO::ReplaceFile(FFolder.Path(""), FNew), EQuillonFileHandleError);
  EXPECT_THROW(QuillonIO::ReplaceFile(FFolder.Path("missing/plan.data"), FNew), EQuillonFileHandleError);
  EXPECT_TRUE(FFolder.Names().empty());
}
