#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>

#include "QuillonFileReplacement.h"
#include "QuillonFileSystem.h"
#include "core/TestFiles.h"
#include "platform/FileInfo.h"

namespace {

/// A path on any system, without the drive that a whole one begins with on some.
std::string WithSlashes(std::string APath) {
  std::ranges::replace(APath, '\\', '/');
  return APath.size() > 1 && APath[1] == ':' ? APath.substr(2) : APath;
}

}  // namespace

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

TEST(FilePath, ChangesAndComparesParts) {
  using Path = TQuillonFilePath;
  EXPECT_EQ(Path::ChangeDirectoryName("/a/plan.data", "/b/"), "/b/plan.data");
  EXPECT_EQ(WithSlashes(Path::ChangeFileName("/a/plan.data", "x")), "/a/x");
  EXPECT_EQ(Path::ForceExtension("plan.DATA", "data"), "plan.DATA");
  EXPECT_EQ(Path::ForceExtension("plan.data", "bak"), "plan.data.bak");
  EXPECT_EQ(Path::GetDisplayName("/a/"), "Unbenannt");
  EXPECT_EQ(WithSlashes(Path::GetFullPath("/a/./b/../c/")), "/a/c");
  EXPECT_EQ(Path::GetFullPath(""), "");
  EXPECT_EQ(WithSlashes(Path::GetRelativePath("/a/b/c", "/a/d")), "../b/c");
  EXPECT_TRUE(Path::IsPathEqual("/a/b/..", "/a"));
  EXPECT_EQ(Path::IsPathEqual("/a", "/A"), Platform::PathsIgnoreCase);
  EXPECT_EQ(Path::RemoveLeadingPathDelimiter("//a/b"), "a/b");
  EXPECT_EQ(Path::GetGuidFileName(TGUID{}, "p", ""), "p-{00000000-0000-0000-0000-000000000000}");
  EXPECT_NE(Path::GetTempFileName("p"), Path::GetTempFileName("p"));

  EXPECT_EQ(TQuillonUrlPath::Encode("a b/\xC3\xA4?%"), "a%20b/%C3%A4%3F%25");

  struct Place {
    const char* Path;
    const char* Folder;
    bool LiesIn;
  };
  for (const auto& [Whole, Folder, LiesIn] :
       {Place{"/a/b/c", "/a", true}, Place{"/a", "/", true}, Place{"/ab/c", "/a", false}, Place{"/a", "/a", false},
        Place{"/a/../b", "/a", false}, Place{"/", "/a", false}, Place{"/", "", false}}) {
    EXPECT_EQ(TQuillonFileSystem::IsFileInDirectory(Whole, Folder), LiesIn) << Whole << " " << Folder;
  }
}

TEST(FileSystem, CopiesAppearWholeOrNotAtAll) {
  const TemporaryFolder Folder;
  const std::string One = Folder.Path("ä.txt");
  const std::string Two = Folder.Path("two.txt");
  const std::string Content(1'000'000, 'x');
  QuillonIO::ReplaceFile(One, Content);
  std::int64_t Told = 0;
  EXPECT_TRUE(TQuillonFileSystem::CopyFileEx(One, Two, false, [&](std::int64_t ACopied, std::int64_t ASize) {
    EXPECT_TRUE(ACopied > Told && ACopied <= ASize);
    Told = ACopied;
    return true;
  }));
  EXPECT_EQ(Told, 1'000'000);
  EXPECT_EQ(QuillonIO::ReadWholeFile(Two), Content);

  QuillonIO::ReplaceFile(Two, "old");
  EXPECT_THROW(TQuillonFileSystem::CopyFile(One, Two, false), EQuillonFileSystemError);
  EXPECT_THROW(TQuillonFileSystem::CopyFile(Folder.Path("none"), Two, true), EQuillonFileSystemError);
  EXPECT_THROW(TQuillonFileSystem::CopyFile(One, Folder.Path(""), true), EQuillonException);
  EXPECT_FALSE(TQuillonFileSystem::CopyFileEx(One, Two, true, [](auto...) { return false; }));
  EXPECT_EQ(QuillonIO::ReadWholeFile(Two), "old");
  TQuillonFileSystem::CopyFile(One, Two, true);
  EXPECT_EQ(QuillonIO::ReadWholeFile(Two), Content);
  EXPECT_EQ(Folder.Names().size(), 2U);
  EXPECT_FALSE(TQuillonFileSystem::SameFile(One, Two));
  EXPECT_TRUE(TQuillonFileSystem::SameFile(Two, Folder.Path("./two.txt")));
}

TEST(FileSystem, FilesAreFoundByPatternAndAttributes) {
  const TemporaryFolder Folder;
  for (const char* Name : {"a.csv", "ä.csv", "ab.csv", ".b.csv", "c.txt"}) {
    QuillonIO::ReplaceFile(Folder.Path(Name), "");
  }
  TQuillonFileSystem::CreateDirectory(Folder.Path("d.csv"));
  TQuillonFileSystem::SetAttributes(Folder.Path("ab.csv"), {fattrReadOnly});
  // Hidden already where the dot hides it.
  TQuillonFileSystem::SetAttributes(Folder.Path(".b.csv"), {fattrHidden});
  struct Search {
    const char* Pattern;
    TQuillonFileAttributes Positive;
    TQuillonFileAttributes Negative;
    const char* Found;
  };
  for (const auto& [Pattern, Positive, Negative, Found] :
       {Search{"*.csv", {}, {fattrDirectory, fattrHidden}, "a.csv ab.csv ä.csv "},
        Search{"?.csv", {}, {}, "a.csv d.csv ä.csv "}, Search{"*.*", {fattrDirectory}, {}, "d.csv "},
        Search{"*b*", {}, {fattrHidden}, "ab.csv "}, Search{"*", {fattrReadOnly}, {}, "ab.csv "},
        Search{"", {}, {}, ""}, Search{"*.csv?", {}, {}, ""}, Search{".*", {fattrHidden}, {}, ".b.csv "}}) {
    std::string Names;
    for (const std::string& Path : TQuillonFileSystem::GetFiles(Folder.Path(""), Pattern, Positive, Negative)) {
      Names += TQuillonFilePath::GetFileName(Path) + " ";
    }
    EXPECT_EQ(Names, Found) << Pattern;
  }
  TQuillonFileSystem::SetAttributes(Folder.Path("ab.csv"), {fattrNormal});
  EXPECT_FALSE(TQuillonFileSystem::GetAttributes(Folder.Path("ab.csv")).Contains(fattrReadOnly));
  EXPECT_THROW(TQuillonFileSystem::GetFiles(Folder.Path("none")), EQuillonFileSystemError);
}

TEST(FileSystem, TimesAreSetAndReadInBothZones) {
  const TemporaryFolder Folder;
  const std::string Path = Folder.Path("plan");
  QuillonIO::ReplaceFile(Path, "");
  const auto Time = TQuillonDateTime::Create(1960, 8, 1, 7, 45, 0, 250);
  TQuillonFileSystem::SetLastWriteTime(Path, Time);
  TQuillonFileSystem::SetLastAccessTimeUtc(Path, Time);
  EXPECT_EQ(TQuillonFileSystem::GetLastWriteTime(Path).ToISO8601(), Time.ToISO8601());
  EXPECT_EQ(TQuillonFileSystem::GetLastAccessTimeUtc(Path).ToISO8601(), Time.ToISO8601());
  EXPECT_EQ(QuillonDateTime::InstantOfUtc(TQuillonFileSystem::GetLastWriteTimeUtc(Path)),
            QuillonDateTime::InstantOfLocal(Time));
  EXPECT_EQ(TQuillonFileVersion(Path).FBuildDateStamp.ToISO8601(), Time.ToISO8601());
  EXPECT_THROW(TQuillonFileVersion(Folder.Path("none")), EQuillonFileSystemError);
}

TEST(FileSystem, EntriesFollowWhatHappensToThem) {
  const TemporaryFolder Folder;
  TQuillonDirectory Outer(Folder.Path("outer"));
  EXPECT_FALSE(Outer.Exists());
  Outer.Create();
  EXPECT_TRUE(Outer.FAttributes.Contains(fattrDirectory));
  const TQuillonDirectory Inner = Outer.CreateSubdirectory("inner");
  QuillonIO::ReplaceFile(Inner.FFullName + "/one", "12345");
  TQuillonFile File(Inner.FFullName + "/one");
  EXPECT_EQ(File.FSize, 5);
  File.MoveTo(Outer.FFullName + "/two");
  EXPECT_TRUE(File.Exists() && File.Equals(TQuillonFile(Outer.FFullName + "/two")));
  EXPECT_EQ(Outer.GetFiles("t*"), std::vector{File.FFullName});

  EXPECT_THROW(Outer.Delete(false), EQuillonFileSystemError);
  EXPECT_THROW(TQuillonFileSystem::DeleteDirectory(File.FFullName, true), EQuillonFileSystemError);
  Outer.MoveTo(Folder.Path("moved"));
  // Where links are to be had, one that leads back harms nobody.
  std::error_code NoLinks;
  std::filesystem::create_directory_symlink(Outer.FFullName, Folder.Path("moved/inner/loop"), NoLinks);
  TQuillonFileSystem::ClearDirectory(Outer.FFullName + "/inner");
  EXPECT_EQ(Outer.GetFiles().size(), 2U);
  Outer.Delete(true);
  EXPECT_FALSE(Outer.Exists());
  EXPECT_TRUE(Folder.Names().empty());

  const TQuillonDriveInfo Drive(Folder.Path(""));
  EXPECT_TRUE(Drive.FTotalSize > 0 && Drive.FFreeSpace <= Drive.FTotalSize);
  EXPECT_TRUE(TQuillonFileSystem::PingDisk(Folder.Path("")));
}
