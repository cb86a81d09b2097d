#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "QuillonFileSystem.h"
#include "exchange/FileSets.h"

namespace {

using testing::UnorderedElementsAre;
using PosixFileSets = FileSets;

TEST_F(PosixFileSets, PermissionsStayAndReadersAreNotWaitedFor) {
  Write("one", {"mark", "b"});
  const TQuillonFileStream Reader(FFolder.Path("b"), fomOpenRead, famShareExclusive);
  chmod(FFolder.Path("b").c_str(), 0604);
  Write("two", {"mark", "b"});
  EXPECT_EQ(Content("b"), "two");
  EXPECT_EQ(std::filesystem::status(FFolder.Path("b")).permissions(), std::filesystem::perms(0604));
}

TEST_F(PosixFileSets, LinksStayAndDevicesAreWrittenTo) {
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

TEST_F(PosixFileSets, TheLockIsAPlainFileThatEveryUserCanWaitFor) {
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

}  // namespace
