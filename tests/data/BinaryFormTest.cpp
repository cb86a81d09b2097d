#include <gtest/gtest.h>

#include <array>

#include "QuillonDataObjects/BinReader.h"
#include "QuillonDataObjects/Content.h"
#include "QuillonDataObjects/Snapshot.h"
#include "QuillonStreams/Writer.h"
#include "QuillonZlib.h"
#include "core/TestFiles.h"
#include "data/TestObjects.h"

namespace {

using QuillonDataObjects::CreateStorage;
using TStore = TQuillonDataHandle<TTestStorage>;

std::string BinaryOf(const TTestStorage& AStore) {
  TQuillonMemoryStream Stream;
  AStore.SaveToBinStream(Stream);
  return Stream.TakeContent();
}

void Read(TTestStorage& AStore, std::string AContent) {
  TQuillonMemoryStream Stream(std::move(AContent));
  AStore.LoadFromBinStream(Stream);
}

/// A store with a value in every row, and references ahead of their targets and behind them.
TStore NewStore() {
  TStore Store = CreateStorage<TTestStorage>();
  Store->FTitle = "Ä🎓";
  TTestItem* const A = Store->AddItem("a");
  TTestItem* const B = Store->AddItem("b");
  A->FFlag = true;
  A->FSmall = 200;
  A->FNumber = -5;
  A->FLarge = -(std::int64_t{1} << 40);
  A->FWeight = 0.1;
  A->FWhen = 46'000.25;
  A->FOther = QuillonGuid::Parse("{00112233-4455-6677-8899-AABBCCDDEEFF}");
  A->FNumbers = {1, -2, 3};
  A->FLines = {"", "x"};
  A->FPicture.Image = std::string("\0\1", 2);
  A->FFriend = B;
  B->FFriend = A;
  Store->FFavourite = B;
  Store->FFriends.Add(B);
  Store->FFriends.Add(A);
  return Store;
}

TEST(BinaryForm, HoldsTheRowsInTheirOrderAndNothingElse) {
  const TStore Store = NewStore();
  TTestItem& Item = *static_cast<TTestItem*>(Store->FItems.GetItem(0));
  Item.FVersion = 3;
  Item.FChanged = Item.FCreated = 2;
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter Writer(Stream);
  Writer.WriteInt64(3);
  Writer.WriteDouble(2);
  Writer.WriteString("");
  Writer.WriteDouble(2);
  Writer.WriteString("");
  Writer.WriteString("a");
  const std::string Content = QuillonDataObjects::WriteContent(Item);
  EXPECT_EQ(Content.substr(0, Stream.Content().size()), Stream.Content());
  const std::string Tail("\x33\x22\x11\x00\x55\x44\x77\x66\x88\x99\xAA\xBB\xCC\xDD\xEE\xFF", 16);
  EXPECT_NE(Content.find(Tail), std::string::npos) << "the first three fields of a GUID have their lowest byte first";
}

TEST(BinaryForm, ComesBackFromEachOfItsForms) {
  const TemporaryFolder Folder;
  const TStore Store = NewStore();
  Store->FFileFormat = ffBinary;
  Store->ChangeLog().FUserName = TQuillonUserName("Anna");
  const std::string Document = Store->SaveToXML();
  const auto Expect = [&](const char* AWhat, const auto& ALoad) {
    const TStore Copy = CreateStorage<TTestStorage>();
    Copy->AddItem("was there before");
    ALoad(*Copy);
    EXPECT_EQ(Copy->SaveToXML(), Document) << AWhat;
    EXPECT_EQ(BinaryOf(*Copy), BinaryOf(*Store)) << AWhat;
    EXPECT_FALSE(Copy->FModified) << AWhat;
  };
  const std::string FileName = Folder.Path("a/store");
  Store->SaveToFile(FileName);
  Expect("file", [&](TTestStorage& ACopy) {
    ACopy.FFileFormat = ffBinary;
    ACopy.LoadFromFile(FileName);
  });
  Store->SaveToBinFile(Folder.Path("b"));
  Expect("binary file", [&](TTestStorage& ACopy) { ACopy.LoadFromBinFile(Folder.Path("b")); });
  TQuillonMemoryStream Stream;
  Stream.Write("head");
  Store->SaveToZIPStream(Stream);
  Stream.Write("tail");
  Expect("compressed", [&](TTestStorage& ACopy) {
    Stream.Seek(4, TQuillonSeekOrigin::Begin);
    ACopy.LoadFromZIPStream(Stream);
    EXPECT_EQ(Stream.Size() - Stream.Position(), 4);
  });
  TQuillonDataSnapshot Snapshot(*Store);
  Snapshot.SaveToFile();
  EXPECT_EQ(Snapshot.FileName(), FileName + "." + QuillonGuid::Braced(Snapshot.FID) + ".snapshot");
  Expect("snapshot", [&](TTestStorage& ACopy) { ACopy.LoadFromSnapshot(Snapshot.FileName()); });
  Snapshot.DeleteFile();
  EXPECT_FALSE(std::filesystem::exists(Snapshot.FileName()));
  Snapshot.LoadFromFile();
  EXPECT_EQ(Store->SaveToXML(), Document);
  Store->FModified = true;
  EXPECT_THROW(Store->SaveToSnapshot(FileName + "/x"), EQuillonException);
  EXPECT_TRUE(Store->FModified) << "a snapshot that failed has kept nothing";
}

TEST(BinaryForm, OverwritesWhatIsThereAndLeavesTheRest) {
  const TStore Store = NewStore();
  const TStore Other = CreateStorage<TTestStorage>();
  Read(*Other, BinaryOf(*Store));
  auto* const Item = static_cast<TTestItem*>(Other->FItems.GetItem(0));
  Item->FName = "changed";
  Other->AddItem("own");
  Store->AddItem("new");
  Store->Overwrite(*Other);
  EXPECT_EQ(NamesOf(Other->FItems), "abownnew");
  EXPECT_EQ(Other->FItems.GetItem(0), Item) << "updated in place";
  EXPECT_EQ(NamesOf(Other->FFriends), "ba");

  Other->FPart.Take(Other->NewItem("old part"), *Other);
  TTestItem& Own = *Other->FItems.GetItem(2);
  Own.FFriend = Other->FPart.Get();
  Store->FPart.Take(Store->NewItem("new part"), *Store);
  Store->Overwrite(*Other);
  EXPECT_EQ(Other->FPart->FName, "new part");
  EXPECT_EQ(Own.FFriend, nullptr) << "the part before has gone";
}

TEST(BinaryForm, RefusesWhatCannotBe) {
  const TStore Store = NewStore();
  const std::string Whole = BinaryOf(*Store);
  for (std::size_t Size = 0; Size < Whole.size(); ++Size) {
    EXPECT_THROW(Read(*CreateStorage<TTestStorage>(), Whole.substr(0, Size)), EQuillonReaderError) << Size;
  }
  const auto Replaced = [&](std::string_view AFrom, std::string_view ATo) {
    std::string Content = Whole;
    return Content.replace(Content.find(AFrom), AFrom.size(), ATo);
  };
  using namespace std::string_view_literals;
  constexpr std::array Damages = {
      std::pair("T\0e\0s\0t\0I\0"sv, "T\0e\0s\0t\0X\0"sv),                    // an unknown class
      std::pair("\x08\0\0\0T\0e\0s\0"sv, "\0\0\0\0T\0e\0s\0"sv),              // none
      std::pair("\3\0\0\0\1\0\0\0\xFE"sv, "\xFF\xFF\xFF\x7F\1\0\0\0\xFE"sv),  // more numbers than come
      std::pair("\3\0\0\0\1\0\0\0\xFE"sv, "\xFF\xFF\xFF\xFF\1\0\0\0\xFE"sv),  // less than none
  };
  for (const auto& [From, To] : Damages) {
    const TStore Copy = CreateStorage<TTestStorage>();
    EXPECT_THROW(Read(*Copy, Replaced(From, To)), EQuillonException);
    Read(*Copy, Whole);
    EXPECT_EQ(Copy->SaveToXML(), Store->SaveToXML()) << "the next load starts afresh";
  }
  std::string NotADay = Whole;
  const std::string Moment("\0\0\0\0\x08\x76\xE6\x40", 8);  // 46,000.25
  ASSERT_NE(NotADay.find(Moment), std::string::npos);
  NotADay.replace(NotADay.find(Moment), Moment.size(), "\0\0\0\0\0\0\xF8\x7F"sv);
  EXPECT_THROW(Read(*CreateStorage<TTestStorage>(), NotADay), EQuillonDataObjectReaderError);
}

TEST(BinaryForm, TakesDamagedZlibDataForWhatTheyAre) {
  const TStore Store = NewStore();
  TQuillonMemoryStream Stream;
  Store->SaveToZIPStream(Stream);
  int Harmless = 0;
  for (std::size_t Place = 0; Place < Stream.Content().size(); ++Place) {
    std::string Damaged = Stream.Content();
    Damaged[Place] = static_cast<char>(Damaged[Place] ^ 0x10);
    TQuillonMemoryStream Input(Damaged);
    const TStore Copy = CreateStorage<TTestStorage>();
    try {
      Copy->LoadFromZIPStream(Input);
      EXPECT_EQ(BinaryOf(*Copy), BinaryOf(*Store)) << Place;
      ++Harmless;
    } catch (const EQuillonException&) {
      continue;
    }
  }
  EXPECT_LT(Harmless, 20) << "bits that mean nothing are few";

  TQuillonMemoryStream Longer;
  TQuillonZCompressionStream Packed(Longer);
  Packed.Write(BinaryOf(*Store) + '\0');
  Packed.Finish();
  Longer.Seek(0, TQuillonSeekOrigin::Begin);
  EXPECT_THROW(CreateStorage<TTestStorage>()->LoadFromZIPStream(Longer), EQuillonDataObjectReaderError);
}

}  // namespace
