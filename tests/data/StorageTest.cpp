#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <set>
#include <sstream>

#include "core/TestFiles.h"
#include "data/TestObjects.h"

namespace {

using QuillonDataObjects::CreateStorage;

std::string ReadFile(const std::string& AFileName) {
  std::ostringstream Text;
  Text << std::ifstream(AFileName, std::ios::binary).rdbuf();
  return Text.str();
}

TEST(DataStorage, SavesLoadsAndTellsEachStep) {
  const TemporaryFolder Folder;
  const std::string FileName = Folder.Path("new/folder/plan.velmora");
  const auto Store = CreateStorage<TTestStorage>();
  TTestItem* const Item = Store->AddItem("a");
  EXPECT_TRUE(Store->FModified);
  EXPECT_EQ(Store->FFileVersion, 1);
  Item->Set(Item->FNumber, 7);  // is so already
  EXPECT_EQ(Store->FFileVersion, 1);
  Item->Set(Item->FNumber, 8);
  EXPECT_EQ(Store->FFileVersion, 2);
  {
    const TQuillonChangeTrackingLock Lock(*Store);
    Item->Set(Item->FNumber, 9);
  }
  Store->UnlockChangeTracking();  // one too many does no harm
  EXPECT_EQ(Store->FFileVersion, 2);
  EXPECT_FALSE(Store->HasStorage());
  const auto Last = CreateStorage<TTestStorage>();
  Last->FFileVersion = std::numeric_limits<std::int64_t>::max();
  Last->AddItem("z");
  EXPECT_EQ(Last->FFileVersion, std::numeric_limits<std::int64_t>::max());

  Store->SaveToFile("");
  EXPECT_EQ(Store->FHooks, "");
  Store->SaveToFile(FileName);
  EXPECT_EQ(Store->FHooks, "BeforeStore AfterStore ");
  EXPECT_EQ(Store->FFileName, FileName);
  EXPECT_FALSE(Store->FModified);
  Item->Set(Item->FNumber, 10);
  EXPECT_TRUE(Store->FModified);

  const auto Copy = CreateStorage<TTestStorage>();
  Copy->AddItem("was there before");
  Copy->LoadFromFile(FileName);
  EXPECT_EQ(Copy->FHooks, "BeforeLoad Clear AfterLoad ");
  EXPECT_EQ(Copy->FFileName, FileName);
  EXPECT_EQ(Copy->FFileVersion, 2);
  EXPECT_EQ(NamesOf(Copy->FItems), "a");
  EXPECT_EQ(Copy->FItems.GetItem(0)->FNumber, 9);
  EXPECT_EQ(Copy->FItems.GetItem(0)->ID(), Item->ID());
  Copy->SaveToFile(Folder.Path("copy"));
  Store->LoadFromFile(Folder.Path("copy"));
  EXPECT_EQ(Store->SaveToXML(), ReadFile(Folder.Path("copy")));

  Copy->LoadFromFile(FileName);
  Copy->FHooks.clear();
  Copy->LoadFromFile(Folder.Path("missing"));
  Copy->LoadFromFile("");
  EXPECT_EQ(Copy->FHooks, "");
  EXPECT_EQ(Copy->FFileName, FileName);
  EXPECT_EQ(NamesOf(Copy->FItems), "a");

  const TGUID Before = Copy->ID();
  Copy->NewFile();
  EXPECT_EQ(Copy->FHooks, "BeforeNewFile Clear AfterNewFile ");
  EXPECT_EQ(Copy->FFileName, "");
  EXPECT_NE(Copy->ID(), Before);
  EXPECT_EQ(Copy->FItems.Count(), 0);
}

TEST(DataStorage, MissingFilesComeFromTheTemplate) {
  const TemporaryFolder Folder;
  const auto Store = CreateStorage<TTestStorage>();
  Store->AddItem("t");
  Store->SaveToFile(Folder.Path("template"));
  const auto Fresh = CreateStorage<TTestStorage>();
  Fresh->FTemplate = Folder.Path("template");
  Fresh->LoadFromFile(Folder.Path("plan"));
  EXPECT_EQ(NamesOf(Fresh->FItems), "t");
  EXPECT_EQ(Fresh->FFileName, Folder.Path("plan"));
  EXPECT_EQ(Fresh->FLoadedName, Folder.Path("plan"));
  Fresh->LoadFromFile();
  EXPECT_EQ(Fresh->FFileName, Folder.Path("plan"));
  EXPECT_FALSE(std::filesystem::exists(Folder.Path("plan")));
}

TEST(DataStorage, BackupsKeepTheFirstStateOfADay) {
  const TemporaryFolder Folder;
  const std::string FileName = Folder.Path("plan.velmora");
  const auto Store = CreateStorage<TTestStorage>();
  Store->FCreateBackups = true;
  const auto SaveAs = [&](const char* ATitle) {
    Store->FTitle = ATitle;
    Store->SaveToFile(FileName);
    return Store->SaveToXML();
  };
  const std::string First = SaveAs("first");
  EXPECT_EQ(Folder.Names().size(), 1U);
  std::string Day;
  QuillonDateTime::AppendDate(Day, QuillonDateTime::Now());
  SaveAs("second");
  const std::string Third = SaveAs("third");
  const auto Names = Folder.Names();
  EXPECT_EQ(std::set<std::string>(Names.begin(), Names.end()),
            (std::set<std::string>{"plan.velmora", "plan." + Day + ".backup"}));
  EXPECT_EQ(ReadFile(Folder.Path("plan." + Day + ".backup")), First);
  EXPECT_EQ(ReadFile(FileName), Third);
  // Behind a link, the backup is of the file and not of the link.
  std::error_code Code;
  std::filesystem::create_symlink("plan.velmora", Folder.Path("link.velmora"), Code);
  if (Code) {
    GTEST_SKIP() << "links cannot be made here: " << Code.message();
  }
  Store->SaveToFile(Folder.Path("link.velmora"));
  SaveAs("fifth");
  EXPECT_EQ(ReadFile(Folder.Path("link." + Day + ".backup")), Third);
}

TEST(DataStorage, AFailedLoadLeavesTheFileAndUnlocksTheTracking) {
  const TemporaryFolder Folder;
  {
    // A folder is there, but cannot be read: the load has begun by then.
    const auto Store = CreateStorage<TTestStorage>();
    EXPECT_THROW(Store->LoadFromFile(Folder.Path("")), EQuillonFileHandleError);
    EXPECT_EQ(Store->FHooks, "BeforeLoad ");
    EXPECT_EQ(Store->FFileName, Folder.Path(""));
    EXPECT_FALSE(Store->IsChangeTrackingLocked());
  }
  const std::string FileName = Folder.Path("plan");
  std::ofstream(FileName, std::ios::binary) << "<Storage><Objects/></Storage>";
  const auto Store = CreateStorage<TTestStorage>();
  EXPECT_THROW(Store->LoadFromFile(FileName), EQuillonDataObjectReaderError);
  EXPECT_FALSE(Store->IsChangeTrackingLocked());
  EXPECT_EQ(Store->FFileName, FileName);
  EXPECT_EQ(ReadFile(FileName), "<Storage><Objects/></Storage>");
  EXPECT_THROW(Store->LoadFromFile(Folder.Path(".")), EQuillonException);
  // A document that cannot even be parsed leaves what is there.
  Store->AddItem("a");
  EXPECT_THROW(Store->LoadFromXML("<Storage>", "x"), EQuillonDataObjectReaderError);
  EXPECT_EQ(NamesOf(Store->FItems), "a");
}

}  // namespace
