#include <gtest/gtest.h>

#include <chrono>

#include "QuillonFileSystem.h"
#include "core/TestFiles.h"
#include "data/TestObjects.h"

namespace {

using QuillonDataObjects::CreateStorage;

std::string NamesIn(const std::string& AFileName) {
  const auto Store = CreateStorage<TTestStorage>();
  Store->LoadFromFile(AFileName);
  return NamesOf(Store->FItems);
}

class HeldFile : public testing::Test {
 protected:
  HeldFile() {
    FStore->AddItem("a");
    FStore->SaveToFile(FFileName);
  }

  TemporaryFolder FFolder;
  const std::string FFileName = FFolder.Path("plan.velmora");
  TQuillonDataHandle<TTestStorage> FStore = CreateStorage<TTestStorage>();
};

TEST_F(HeldFile, KeepsOthersFromWritingAndIsSavedWhateverTheName) {
  FStore->OpenFile(FFileName, false);
  EXPECT_TRUE(FStore->HoldsFile());
  EXPECT_THROW(TQuillonFileStream(FFileName, fomOpenReadWrite, famShareDenyWrite), EQuillonFileHandleError);
  FStore->AddItem("b");
  FStore->SaveToFile(FFolder.Path("other"));
  EXPECT_EQ(FStore->FFileName, FFileName);
  EXPECT_EQ(NamesIn(FFileName), "ab");
  EXPECT_FALSE(TQuillonFileSystem::Exists(FFolder.Path("other")));
  // Replaced, and held again: the next change must not go to the file that is gone.
  EXPECT_THROW(TQuillonFileStream(FFileName, fomOpenReadWrite, famShareDenyWrite), EQuillonFileHandleError);
  FStore->AddItem("c");
  FStore->StoreFile();
  EXPECT_EQ(NamesIn(FFileName), "abc");
  FStore->CloseFile();
  TQuillonFileStream(FFileName, fomOpenReadWrite, famShareExclusive).Close();
  FStore->AddItem("d");
  FStore->StoreFile();
  EXPECT_EQ(NamesIn(FFileName), "abc") << "no file is held";
}

TEST_F(HeldFile, ExclusiveKeepsReadersOutToo) {
  const auto Other = CreateStorage<TTestStorage>();
  FStore->OpenFileToChange(FFileName);
  Other->LoadFromFile(FFileName);
  EXPECT_EQ(NamesOf(Other->FItems), "a") << "a load makes do with reading what another one may change";
  FStore->OpenFileExclusive(FFileName);
  FStore->StoreFile();
  EXPECT_THROW(Other->LoadFromFile(FFileName), EQuillonFileInUseError);
  EXPECT_THROW(Other->OpenFile(FFileName, true), EQuillonFileHandleError);
  EXPECT_THROW(Other->LoadFromFile(FFileName, std::chrono::milliseconds(150)), EQuillonFileHandleError);
  FStore->NewFile();
  EXPECT_FALSE(FStore->HoldsFile());
  Other->OpenFile(FFileName, true);
  EXPECT_EQ(NamesOf(Other->FItems), "a");
  const auto Second = CreateStorage<TTestStorage>();
  Second->OpenFile(FFileName, true);
  EXPECT_EQ(NamesOf(Second->FItems), "a") << "two may read";
  EXPECT_THROW(Second->StoreFile(), EQuillonFileHandleError);
  EXPECT_THROW(Second->SaveToFile(), EQuillonFileHandleError);
}

TEST_F(HeldFile, MayBeANewOneWhoseNameIsTakenOverOrNot) {
  const std::string Copy = FFolder.Path("deep/folder/copy");
  FStore->StoreFile(Copy, false);
  EXPECT_EQ(FStore->FFileName, FFileName);
  EXPECT_EQ(NamesIn(Copy), "a") << "others may read it";
  EXPECT_THROW(TQuillonFileStream(Copy, fomOpenReadWrite, famShareDenyWrite), EQuillonFileInUseError);
  FStore->FCreateBackups = true;
  FStore->StoreFile(Copy, true);
  FStore->StoreFile();
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(FFolder.Path("deep/folder")), {}), 1) << "a backup";
  FStore->StoreFile(FFolder.Path("taken"), true);
  EXPECT_EQ(FStore->FFileName, FFolder.Path("taken"));
  TQuillonFileStream(Copy, fomOpenReadWrite, famShareExclusive).Close();
}

TEST_F(HeldFile, AMissingOneIsPassedOver) {
  FStore->OpenFile(FFolder.Path("nothing"), false);
  FStore->OpenFileExclusive(FFolder.Path("nothing"));
  FStore->OpenFile("", true);
  FStore->LoadFromFile(FFolder.Path("nothing"), std::chrono::milliseconds(0));
  EXPECT_FALSE(FStore->HoldsFile());
  EXPECT_EQ(NamesOf(FStore->FItems), "a");
}

}  // namespace
