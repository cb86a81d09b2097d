#include <gmock/gmock.h>

#include <cerrno>
#include <thread>

#include "QuillonFileSystem.h"
#include "TestPlatform.h"
#include "exchange/FileSets.h"

namespace {

using testing::HasSubstr;
using testing::UnorderedElementsAre;
using TCall = Platform::WatchedFiles::Call;

TEST_F(FileSets, OfAnEarlierRunNothingStaysAndOfOthersEverything) {
  for (const char* Name : {"foreign", ".velmora-x.tmp"}) {
    TQuillonFileStream(FFolder.Path(Name), fomCreate, famShareDenyNone).Close();
  }
  Write("one", {"mark", "a", "b"});
  TQuillonFileSystem::CreateDirectory(FFolder.Path("c"));
  Write("two", {"mark", "b"});
  EXPECT_THAT(FFolder.Names(), UnorderedElementsAre("foreign", ".velmora-x.tmp", "mark", "b", "c"));
  EXPECT_EQ(Content("b") + Content("mark"), "twotwo");
  EXPECT_THROW(Write("three", {"mark", "c"}), EQuillonFileHandleError) << "a folder has the name";
  EXPECT_EQ(Content("b") + Content("mark"), "twotwo");
}

TEST_F(FileSets, WhateverCallFailsTheEarlierSetStaysOrIsToldToBeIncomplete) {
  for (const int UnnamedRefusal : {0, TestPlatform::UnsupportedError}) {
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

TEST_F(FileSets, TheSecondOfTwoWaitsOrIsRefused) {
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
