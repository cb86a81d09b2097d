#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <filesystem>

#include "QuillonFileReplacement.h"
#include "QuillonFileSystem.h"
#include "core/TestFiles.h"

TEST(FilePath, StampsStandBetweenNameAndExtension) {
  const auto Time = TQuillonDateTime::Create(2026, 8, 1, 7, 45, 0);
  EXPECT_EQ(TQuillonFilePath::GetDateStampedFileName("logs/plan.txt", TQuillonDate(Time)), "logs/plan-02026-08-01.txt");
  EXPECT_EQ(TQuillonFilePath::GetTimeStampedFileName("v1.2/plan", Time), "v1.2/plan-02026-08-01-Sa-07-45-00");
  EXPECT_EQ(TQuillonFilePath::GetTimeStampedFileName("plan.txt").size(),
            std::string("plan-02026-08-01-Sa-07-45-00.txt").size());
}

TEST(FileSystem, FoldersAreForcedOnceAndForAll) {
  const TemporaryFolder Folder;
  const std::string Deep = Folder.Path("a/b/c");
  TQuillonFileSystem::ForceDirectory(Deep + "/");
  TQuillonFileSystem::ForceDirectory(Deep);
  EXPECT_TRUE(TQuillonFileSystem::IsDirectory(Deep));
  EXPECT_FALSE(TQuillonFileSystem::IsFile(Deep));
  TQuillonFileSystem::ForceDirectory("/");
  TQuillonFileSystem::ForceDirectory("");
  EXPECT_THROW(TQuillonFileSystem::CreateDirectory(Deep), EQuillonFileSystemError);
  QuillonIO::ReplaceFile(Folder.Path("file"), "");
  EXPECT_THROW(TQuillonFileSystem::ForceDirectory(Folder.Path("file/sub")), EQuillonFileSystemError);
  std::string Endless = Folder.Path("file");
  for (int I = 0; I < 400'000; ++I) {
    Endless += "/a";
  }
  EXPECT_THROW(TQuillonFileSystem::ForceDirectory(Endless), EQuillonFileSystemError);

  const auto Before = std::filesystem::current_path();
  std::filesystem::current_path(Folder.Path(""));
  TQuillonFileSystem::ForceDirectory("out");
  std::filesystem::current_path(Before);
  EXPECT_TRUE(TQuillonFileSystem::IsDirectory(Folder.Path("out")));
}

TEST(FileSystem, FilesAreMovedAndDeleted) {
  const TemporaryFolder Folder;
  const std::string One = Folder.Path("one.txt");
  const std::string Two = Folder.Path("two.txt");
  QuillonIO::ReplaceFile(One, "first");
  QuillonIO::ReplaceFile(Two, "second");
  EXPECT_EQ(TQuillonFileSystem::GetSize(Two), 6);
  EXPECT_THROW(TQuillonFileSystem::MoveFile(One, Two, false), EQuillonFileSystemError);
  EXPECT_EQ(QuillonIO::ReadWholeFile(Two), "second");
  TQuillonFileSystem::MoveFile(One, Two, true);
  EXPECT_FALSE(TQuillonFileSystem::Exists(One));
  TQuillonFileSystem::MoveFile(Two, One, false);
  EXPECT_EQ(QuillonIO::ReadWholeFile(One), "first");
  EXPECT_FALSE(TQuillonFileSystem::Exists(Two));

  EXPECT_EQ(TQuillonFileSystem::MakeFileNameUnique(Two), Two);
  EXPECT_EQ(TQuillonFileSystem::MakeFileNameUnique(One), Folder.Path("one (1).txt"));
  QuillonIO::ReplaceFile(Folder.Path("one (1).txt"), "");
  EXPECT_EQ(TQuillonFileSystem::MakeFileNameUnique(One), Folder.Path("one (2).txt"));

  TQuillonFileSystem::DeleteFile(One);
  TQuillonFileSystem::DeleteFile(One, true);
  EXPECT_THROW(TQuillonFileSystem::DeleteFile(One), EQuillonFileSystemError);
  EXPECT_THROW(TQuillonFileSystem::GetSize(One), EQuillonFileSystemError);
  const auto Start = std::chrono::steady_clock::now();
  EXPECT_THROW(TQuillonFileSystem::DeleteFile(One, false, std::chrono::milliseconds(150)), EQuillonFileSystemError);
  EXPECT_GE(std::chrono::steady_clock::now() - Start, std::chrono::milliseconds(150));
}
