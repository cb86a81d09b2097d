#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "core/TestFiles.h"
#include "data/TestObjects.h"

namespace {

using QuillonDataObjects::CreateStorage;

template <class TCondition>
bool Comes(const TCondition& ACondition) {
  const auto End = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!ACondition()) {
    if (std::chrono::steady_clock::now() > End) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

std::string NamesIn(const std::string& AFileName) {
  const auto Store = CreateStorage<TTestStorage>();
  Store->LoadFromFile(AFileName);
  return NamesOf(Store->FItems);
}

TEST(BackgroundSaver, SavesWhileOthersWriteAndReadAndOnceForManySignals) {
  const TemporaryFolder Folder;
  const auto Store = CreateStorage<TTestStorage>();
  Store->FFileName = Folder.Path("plan");
  std::string Names;
  for (int I = 0; I < 50; ++I) {
    Store->BeginWrite();
    Store->AddItem("x");
    Names += "x";
    Store->EndWrite();
    Store->SignalBackgroundSaver();
    Store->BeginRead();
    EXPECT_EQ(NamesOf(Store->FItems), Names);
    Store->EndRead();
  }
  EXPECT_TRUE(Comes([&] { return std::filesystem::exists(Store->FFileName) && NamesIn(Store->FFileName) == Names; }));
  EXPECT_TRUE(Comes([&] { return Store->LastBackgroundSave() == TQuillonBackgroundSave::Succeeded; }));
  EXPECT_FALSE(Store->FModified);
}

TEST(BackgroundSaver, TellsOfAFailureAndGoesOn) {
  const TemporaryFolder Folder;
  const std::string Blocked = Folder.Path("blocked");
  std::ofstream(Blocked) << "no folder";
  const auto Store = CreateStorage<TTestStorage>();
  EXPECT_EQ(Store->LastBackgroundSave(), TQuillonBackgroundSave::None);
  Store->AddItem("a");
  Store->SignalBackgroundSaver();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_TRUE(Store->FModified) << "a storage without a file has not been saved";
  Store->BeginWrite();
  Store->FFileName = Blocked + "/plan";
  Store->EndWrite();
  Store->SignalBackgroundSaver();
  EXPECT_TRUE(Comes([&] { return Store->LastBackgroundSave() == TQuillonBackgroundSave::Failed; }));
  EXPECT_TRUE(Store->FModified);
  Store->BeginWrite();
  Store->FFileName = Folder.Path("plan");
  Store->EndWrite();
  Store->SignalBackgroundSaver();
  EXPECT_TRUE(Comes([&] { return Store->LastBackgroundSave() == TQuillonBackgroundSave::Succeeded; }));
  EXPECT_EQ(NamesIn(Folder.Path("plan")), "a");
}

TEST(BackgroundSaver, SavesAFileThatIsHeldAndStopsWhileSomebodyWrites) {
  const TemporaryFolder Folder;
  const std::string FileName = Folder.Path("plan");
  auto Store = CreateStorage<TTestStorage>();
  Store->AddItem("a");
  Store->SaveToFile(FileName);
  Store->OpenFile(FileName, false);
  Store->BeginWrite();
  Store->AddItem("b");
  Store->EndWrite();
  Store->SignalBackgroundSaver();
  EXPECT_TRUE(Comes([&] { return Store->LastBackgroundSave() == TQuillonBackgroundSave::Succeeded; }));
  Store->StopBackgroundSaver();
  EXPECT_EQ(NamesIn(FileName), "ab");
  EXPECT_TRUE(Store->HoldsFile());
  Store->BeginWrite();
  Store->SignalBackgroundSaver();
  Store.reset();
  EXPECT_EQ(NamesIn(FileName), "ab");
}

}  // namespace
