#include <gmock/gmock.h>

#include <future>
#include <thread>

#include "QuillonFileReplacement.h"
#include "QuillonFileSystem.h"
#include "QuillonGuid.h"
#include "core/TestFiles.h"
#include "platform/windows/WindowsCalls.h"

namespace {

using testing::ElementsAre;
using TPath = TQuillonFilePath;

/// A program that leaves others fewer rights than ours do.
WindowsCalls::THandle OpenByOther(const std::string& APath, DWORD AShareMode) {
  return WindowsCalls::OwnedFile(::CreateFileW(WindowsCalls::WidePath(APath).c_str(), GENERIC_READ, AShareMode, nullptr,
                                               OPEN_EXISTING, 0, nullptr));
}

class WindowsFiles : public testing::Test {
 protected:
  WindowsFiles() { QuillonIO::ReplaceFile(FName, "old"); }
  std::string Content() const { return QuillonIO::ReadWholeFile(FName); }

  TemporaryFolder FFolder;
  const std::string FName = FFolder.Path("plan.data");
};

TEST(WindowsPaths, DrivesSharesAndBothDelimiters) {
  for (const auto& [Path, Root] :
       std::vector<std::pair<const char*, const char*>>{{R"(C:\)", R"(C:\)"},
                                                        {R"(C:\a\b.txt)", R"(C:\)"},
                                                        {"C:/a", "C:/"},
                                                        {"C:a", "C:"},
                                                        {R"(\a)", R"(\)"},
                                                        {R"(\\server\share\a)", R"(\\server\share\)"},
                                                        {R"(\\server\share)", R"(\\server\share)"},
                                                        {R"(\\?\C:\a)", R"(\\?\C:\)"},
                                                        {R"(\\?\unc\server\share\a)", R"(\\?\unc\server\share\)"},
                                                        {R"(\\?\UNC\server\share\a)", R"(\\?\UNC\server\share\)"},
                                                        {"a\\b", ""},
                                                        {"", ""}}) {
    EXPECT_EQ(std::string(Path).substr(0, Platform::RootLength(Path)), Root) << Path;
    EXPECT_EQ(TPath::IsPathRooted(Path), *Root != '\0') << Path;
  }
  EXPECT_EQ(TPath::Combine("a", "b"), R"(a\b)");
  EXPECT_EQ(TPath::Combine("a/", "b"), "a/b");
  EXPECT_EQ(TPath::Combine("a", R"(D:\b)"), R"(D:\b)");
  EXPECT_EQ(TPath::GetDirectoryName(R"(C:\a)"), R"(C:\)");
  EXPECT_EQ(TPath::GetFullPath(R"(\\server\share\a/..\..\b\)"), R"(\\server\share\b)");
  EXPECT_EQ(TPath::GetFullPath(R"(C:\a\..\b)"), R"(C:\b)");
  EXPECT_TRUE(TQuillonFileSystem::IsFileInDirectory(R"(\\server\share\a)", R"(\\SERVER\share)"));
  EXPECT_EQ(TPath::GetRelativePath(R"(\\server\share\a\b)", R"(\\server\share\c)"), R"(..\a\b)");
  EXPECT_EQ(TPath::GetRelativePath(R"(\\server\share\a)", R"(\\server\other\a)"), R"(\\server\share\a)");
  EXPECT_EQ(TPath::GetFileNameWithoutExtension(R"(a.b\c/plan.data)"), "plan");
  EXPECT_TRUE(TPath::IsRoot("C:") && TPath::IsRoot(R"(\\server\share\)"));
  EXPECT_FALSE(TPath::IsRoot(R"(\\server\share\a)"));
}

TEST_F(WindowsFiles, APathTooShortForAFolderIsNotForced) {
  for (const char* Short : {"", "C:", "C:\\", "ab", "ab\\"}) {
    TQuillonFileSystem::ForceDirectory(Short);
  }
  EXPECT_FALSE(TQuillonFileSystem::Exists("ab"));
}

TEST_F(WindowsFiles, NamesOfAnyLengthAndLetters) {
  std::string Deep = FFolder.Path("");
  for (int I = 0; I < 8; ++I) {
    Deep = TPath::Combine(Deep, std::string(50, 'x') + "-\u00e4\u4e2d\U0001F600");
  }
  const std::string Name = TPath::Combine(Deep, "plan.data");
  TQuillonFileSystem::ForceDirectory(Deep);
  QuillonIO::ReplaceFile(Name, "first");
  QuillonIO::ReplaceFile(Name, "second");
  EXPECT_EQ(QuillonIO::ReadWholeFile(Name), "second");
  EXPECT_THAT(Platform::Files().NamesIn(Deep), testing::UnorderedElementsAre(".", "..", "plan.data"));
  TQuillonFileSystem::DeleteFile(Name);
  EXPECT_FALSE(TQuillonFileSystem::Exists(Name));
  EXPECT_THROW(TQuillonFileSystem::DeleteDirectory(TPath::GetDirectoryName(Deep)), EQuillonFileSystemError);
  TQuillonFileSystem::ClearDirectory(FFolder.Path(""));
  EXPECT_TRUE(FFolder.Names().empty());
  EXPECT_FALSE(TQuillonFileSystem::Exists("\xff"));
  EXPECT_THROW(TQuillonFileStream("\xff", fomCreate, famShareDenyNone), EQuillonFileHandleError);
}

TEST_F(WindowsFiles, WhatIsNoFileIsNotTakenForOne) {
  EXPECT_EQ(Platform::Files().Look("nul"), Platform::EntryKind::Other);
  EXPECT_EQ(Platform::Files().Look(R"(\\.\pipe\velmora)"), Platform::EntryKind::Other);
  EXPECT_EQ(Platform::Files().Look(FFolder.Path("")), Platform::EntryKind::Directory);
  try {
    const TQuillonFileStream Stream(FFolder.Path(""), fomOpenRead, famShareDenyNone);
    FAIL();
  } catch (const EQuillonFileHandleError& Error) {
    EXPECT_FALSE(Platform::IsAccessDenied(Error.ErrorCode()));
  }
}

TEST_F(WindowsFiles, ShareModesHoldBetweenAllPrograms) {
  struct TCase {
    TQuillonFileOpenMode Mode;
    TQuillonFileAccessMode Access;
    bool IsReadable;
    bool IsWriteable;
  };
  for (const TCase& Case :
       {TCase{fomOpenRead, famShareExclusive, false, false}, TCase{fomOpenReadWrite, famShareDenyWrite, true, false},
        TCase{fomOpenReadWrite, famShareDenyNone, true, true}}) {
    const TQuillonFileStream Held(FName, Case.Mode, Case.Access);
    const auto IsOpenFor = [this](TQuillonFileOpenMode AMode) {
      try {
        const TQuillonFileStream Other(FName, AMode, famShareDenyNone);
        return true;
      } catch (const EQuillonFileInUseError&) {
        return false;
      }
    };
    EXPECT_EQ(IsOpenFor(fomOpenRead), Case.IsReadable) << Case.Access;
    EXPECT_EQ(IsOpenFor(fomOpenReadWrite), Case.IsWriteable) << Case.Access;
    EXPECT_EQ(OpenByOther(FName, FILE_SHARE_READ | FILE_SHARE_WRITE) != nullptr, Case.IsReadable) << Case.Access;
  }
}

TEST_F(WindowsFiles, WritersGetAlongThatDenyReading) {
  const TQuillonFileStream Held(FName, fomOpenWrite, famShareDenyRead);
  EXPECT_NO_THROW(TQuillonFileStream(FName, fomOpenWrite, famShareDenyRead));
  EXPECT_THROW(TQuillonFileStream(FName, fomOpenRead, famShareDenyNone), EQuillonFileInUseError);
}

TEST_F(WindowsFiles, AHeldFileIsReplacedAndStaysHeld) {
  const auto Held = QuillonIO::HoldFile(FName);
  QuillonIO::ReplaceFile(*Held, "new");
  EXPECT_THROW(QuillonIO::HoldFile(FName, std::chrono::milliseconds(60)), EQuillonFileInUseError);
  EXPECT_EQ(Content(), "new");
  QuillonIO::ReplaceFile(*Held, "newer");
  Held->Close();
  EXPECT_EQ(Content(), "newer");
  EXPECT_EQ(FFolder.Names(), std::vector<std::string>{"plan.data"});
}

TEST_F(WindowsFiles, AFileIsThereAtEveryMomentOfItsReplacement) {
  const auto Move = [](const std::string& APath, const std::string& ANewPath) {
    return ::MoveFileW(WindowsCalls::WidePath(APath).c_str(), WindowsCalls::WidePath(ANewPath).c_str()) != 0;
  };
  const std::string Aside = FName + "." + QuillonGuid::Plain(QuillonGuid::New()) + ".old";
  for (const bool IsLookedFor : {true, false}) {
    ASSERT_TRUE(Move(FName, Aside));
    const auto Replacement = std::async(std::launch::async, [&] {
      ::Sleep(100);
      Move(Aside, FName);
    });
    if (IsLookedFor) {
      EXPECT_TRUE(TQuillonFileSystem::Exists(FName));
    }
    EXPECT_EQ(Content(), "old");
  }
  // Nobody waits for a file of a like name that no program of ours has moved.
  ASSERT_TRUE(Move(FName, FName + ".2025.old"));
  const auto Start = ::GetTickCount64();
  EXPECT_FALSE(TQuillonFileSystem::Exists(FName));
  EXPECT_LT(::GetTickCount64() - Start, 300);
}

TEST_F(WindowsFiles, WhoLooksAtAFileForAMomentIsWaitedForAndWhoStaysIsWrittenBeside) {
  auto Scanner = OpenByOther(FName, FILE_SHARE_READ | FILE_SHARE_WRITE);
  const auto Gone = std::async(std::launch::async, [&Scanner] {
    std::this_thread::sleep_for(std::chrono::milliseconds(120));
    Scanner.reset();
  });
  Platform::Files().Rename(FName, FFolder.Path("moved"), true);
  Gone.wait();
  EXPECT_EQ(FFolder.Names(), std::vector<std::string>{"moved"});
  QuillonIO::ReplaceFile(FName, "old");
  {
    const auto Viewer = OpenByOther(FName, FILE_SHARE_READ | FILE_SHARE_WRITE);
    QuillonIO::ReplaceFile(FName, "overwritten");
  }
  EXPECT_EQ(Content(), "overwritten");
  const auto Hider = OpenByOther(FName, 0);
  EXPECT_THROW(QuillonIO::ReplaceFile(FName, "x", std::chrono::milliseconds(60)), EQuillonFileInUseError);
  EXPECT_THAT(FFolder.Names(), testing::UnorderedElementsAre("moved", "plan.data"));
}

TEST_F(WindowsFiles, AttributesStayAndAReadOnlyFileIsRefused) {
  const std::wstring Path = WindowsCalls::WidePath(FName);
  ASSERT_NE(::SetFileAttributesW(Path.c_str(), FILE_ATTRIBUTE_HIDDEN), 0);
  QuillonIO::ReplaceFile(FName, "new");
  EXPECT_NE(::GetFileAttributesW(Path.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0U);
  ASSERT_NE(::SetFileAttributesW(Path.c_str(), FILE_ATTRIBUTE_READONLY), 0);
  EXPECT_THROW(QuillonIO::ReplaceFile(FName, "x"), EQuillonFileHandleError);
  EXPECT_EQ(Content(), "new");
  ::SetFileAttributesW(Path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

}  // namespace
