#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "QuillonFileSystem.h"
#include "core/TestFiles.h"
#include "uOstrel/FileSet.h"

namespace {

using testing::HasSubstr;
using testing::UnorderedElementsAre;
using TCall = Platform::WatchedFiles::Call;

/// Sets of up to three files; each holds what the set is called.
class FileSet : public testing::Test {
 protected:
  void Write(const std::string& ASet, const std::vector<std::string>& ANames, std::chrono::milliseconds ATimeOut = {}) {
    uOstrel::TFileSet Set(FFolder.Path(""), {"a", "b", "c", "mark"}, "mark", ATimeOut);
    for (const std::string& Name : ANames) {
      Set.Begin(Name).Write(ASet);
      Set.End();
    }
    Set.Place();
  }
  std::string Content(const std::string& AName) const { return QuillonIO::ReadWholeFile(FFolder.Path(AName)); }

  TemporaryFolder FFolder;
};

TEST_F(FileSet, OfAnEarlierRunNothingStaysAndOfOthersEverything) {
  for (const char* Name : {"foreign", ".velmora-x.tmp"}) {
    TQuillonFileStream(FFolder.Path(Name), fomCreate, famShareDenyNone).Close();
  }
  Write("one", {"mark", "a", "b"});
  chmod(FFolder.Path("b").c_str(), 0604);
  TQuillonFileSystem::CreateDirectory(FFolder.Path("c"));
  const TQuillonFileStream Reader(FFolder.Path("b"), fomOpenRead, famShareExclusive);
  Write("two", {"mark", "b"});
  EXPECT_THAT(FFolder.Names(), UnorderedElementsAre("foreign", ".velmora-x.tmp", "mark", "b", "c"));
  EXPECT_EQ(Content("b") + Content("mark"), "twotwo");
  EXPECT_EQ(std::filesystem::status(FFolder.Path("b")).permissions(), std::filesystem::perms(0604));
  EXPECT_THROW(Write("three", {"mark", "c"}), EQuillonFileHandleError) << "a folder has the name";
  EXPECT_EQ(Content("b") + Content("mark"), "twotwo");
}

TEST_F(FileSet, LinksStayAndDevicesAreWrittenTo) {
  TQuillonFileSystem::CreateDirectory(FFolder.Path("real"));
  ASSERT_EQ(symlink("real/a", FFolder.Path("a").c_str()), 0);
  ASSERT_EQ(symlink("real/mark", FFolder.Path("mark").c_str()), 0);
  ASSERT_EQ(symlink("/dev/null", FFolder.Path("b").c_str()), 0);
  for (const char* Name : {"one", "two"}) {
    Write(Name, {"mark", "a", "b"});
    EXPECT_EQ(Content("real/a") + Content("real/mark") + Content("b"), std::string(Name) + Name);
  }
  EXPECT_THAT(FFolder.Names(), UnorderedElementsAre("real", "a", "b", "mark"));
  EXPECT_TRUE(std::filesystem::is_symlink(FFolder.Path("mark")));
}

TEST_F(FileSet, TheLockIsAPlainFileThatEveryUserCanWaitFor) {
  const std::string Lock = FFolder.Path(".velmora-lock");
  ASSERT_EQ(mkfifo(Lock.c_str(), 0600), 0);
  EXPECT_THROW(Write("one", {"mark"}), EQuillonFileHandleError) << "a pipe without a writer must not be waited for";
  TQuillonFileSystem::DeleteFile(Lock, true);
  ASSERT_EQ(symlink("elsewhere", Lock.c_str()), 0);
  EXPECT_THROW(Write("one", {"mark"}), EQuillonFileHandleError);
  EXPECT_THAT(FFolder.Names(), UnorderedElementsAre(".velmora-lock"));
  std::filesystem::remove(Lock);
  const mode_t Mask = umask(0077);
  const uOstrel::TFileSet Set(FFolder.Path(""), {}, "mark", {});
  umask(Mask);
  EXPECT_EQ(std::filesystem::status(Lock).permissions(), std::filesystem::perms(0644));
}

TEST_F(FileSet, WhateverCallFailsTheEarlierSetStaysOrIsToldToBeIncomplete) {
  for (const int UnnamedRefusal : {0, ENOTSUP}) {
    int Untouched = 0;
    int Mixed = 0;
    bool IsThrough = false;
    for (int Call = 1; !IsThrough; ++Call) {
      SCOPED_TRACE(Call);
      ASSERT_LT(Call, 100);
      Write("old", {"mark", "a", "b"});
      std::string Message;
      try {
        FailingFiles Files;
        const Platform::FilesReplacement Replacement(Files);
        Files.Refuse(TCall::OpenUnnamed, UnnamedRefusal);
        Files.FailFrom(Call, EIO, 1);
        Write("new", {"mark", "a", "c"});
        IsThrough = Files.Calls() < Call;
        EXPECT_EQ(Content("mark"), "new") << "a failed call that mattered was not told";
      } catch (const EQuillonException& Error) {
        Message = Error.what();
        EXPECT_THAT(Message, HasSubstr(std::filesystem::path(FFolder.Path("")).parent_path().string()));
      }
      const bool HasMark = TQuillonFileSystem::Exists(FFolder.Path("mark"));
      const bool IsMixed = Message.find("is incomplete") != std::string::npos;
      EXPECT_NE(HasMark, IsMixed);
      if (HasMark) {
        const std::string Set = Content("mark");
        EXPECT_EQ(Content("a"), Set);
        EXPECT_THAT(FFolder.Names(), UnorderedElementsAre("mark", "a", Set == "old" ? "b" : "c"));
        Untouched += Set == "old" ? 1 : 0;
      }
      Mixed += IsMixed ? 1 : 0;
    }
    EXPECT_GE(Untouched, 12);  // lock; links, open, attributes, write of each; flushes
    EXPECT_EQ(Mixed, 3);       // the renames
  }
}

TEST_F(FileSet, TheSecondOfTwoWaitsOrIsRefused) {
  std::optional<uOstrel::TFileSet> First(std::in_place, FFolder.Path(""), std::vector<std::string>{"a", "mark"}, "mark",
                                         std::chrono::milliseconds(0));
  EXPECT_THROW(Write("second", {"mark"}, std::chrono::milliseconds(60)), EQuillonFileInUseError);
  std::thread Second([&] { Write("second", {"mark", "b"}, std::chrono::seconds(20)); });
  First->Begin("a").Write("first");
  First->Begin("mark").Write("first");
  First->Place();
  First.reset();
  Second.join();
  EXPECT_EQ(Content("b") + Content("mark"), "secondsecond");
  EXPECT_THAT(FFolder.Names(), UnorderedElementsAre("mark", "b"));
}

}  // namespace
