#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "QuillonDataObjects/ChangeLog.h"
#include "QuillonIO.h"
#include "data/PlainContent.h"
#include "data/TestObjects.h"

using QuillonDataObjects::Create;
using QuillonDataObjects::CreateStorage;
using QuillonDataObjects::Free;

namespace {

using TStorage = TQuillonDataHandle<TTestStorage>;

std::string BytesOf(TTestStorage& AStorage) {
  TQuillonMemoryStream Stream;
  AStorage.SaveToBinStream(Stream);
  return Stream.TakeContent();
}

/// Two copies of a storage with items of one letter each; the first one's user is at work.
struct TCopies {
  explicit TCopies(const std::string& ANames) {
    for (const char Name : ANames) {
      A->AddItem(std::string(1, Name));
    }
    TQuillonMemoryStream Stream(BytesOf(*A));
    B->LoadFromBinStream(Stream);
    A->ChangeLog().FUserName = TQuillonUserName("ann");
    B->ChangeLog().FUserName = TQuillonUserName("bob");
    A->ChangeLog().Activate();
  }

  TQuillonDataChangeLog& Log() const { return A->ChangeLog(); }
  /// The kinds of what was recorded, a letter each: clearances are K, moves V.
  std::string Kinds() const {
    std::string Kinds;
    for (int I = 0; I < Log().Count(); ++I) {
      Kinds += "CMRIDKV"[static_cast<std::size_t>(Log().GetOperation(I).FKind)];
    }
    return Kinds;
  }
  /// The log on its way: it goes as bytes.
  TQuillonDataChangeLog& Sent() {
    TQuillonMemoryStream Stream;
    Log().SaveToStream(Stream);
    Stream.Seek(0, TQuillonSeekOrigin::Begin);
    FSent.Clear();
    FSent.LoadFromStream(Stream);
    return FSent;
  }
  /// Plays the log back on the second copy. @return the conflict; empty for none
  std::string Play() {
    const std::string Before = B->SaveToXML() + BytesOf(*B);
    const bool WasModified = B->FModified;
    try {
      Sent().Playback(*B);
      return {};
    } catch (const EQuillonDataConflict& Conflict) {
      EXPECT_EQ(B->SaveToXML() + BytesOf(*B), Before);
      EXPECT_EQ(B->FModified, WasModified);
      EXPECT_FALSE(B->ChangeLog().IsLocked());
      EXPECT_FALSE(B->IsIn(TQuillonDataStorageState::dssPlayback));
      return std::to_string(Conflict.FConflictType) + Conflict.what();
    }
  }

  TStorage A = CreateStorage<TTestStorage>();
  TStorage B = CreateStorage<TTestStorage>();

 private:
  TQuillonDataChangeLog FSent;
};

TTestItem& ItemOf(TTestStorage& AStorage, int AnIndex) { return *AStorage.FItems.GetItem(AnIndex); }

void Count(TTestItem& AnItem) { AnItem.Set(AnItem.FNumber, AnItem.FNumber + 1); }

int ByName(const TQuillonDataObject& A, const TQuillonDataObject& B) {
  return static_cast<const TTestItem&>(A).FName.compare(static_cast<const TTestItem&>(B).FName);
}

struct TSession {
  void (*Act)(TTestStorage&);
  const char* Kinds;
};

const TSession Sessions[] = {
    {[](TTestStorage&) {}, ""},
    {[](TTestStorage& S) {
       auto* const Item = S.NewItem("x");
       Count(*Item);
       Free(Item);
     },
     ""},
    {[](TTestStorage& S) { Count(ItemOf(S, 0)), Count(ItemOf(S, 1)), Count(ItemOf(S, 0)); }, "MMM"},
    {[](TTestStorage& S) { Count(ItemOf(S, 0)), Count(ItemOf(S, 0)), Count(ItemOf(S, 0)); }, "M"},
    {[](TTestStorage& S) {
       auto* const Item = S.NewItem("");
       Item->Set(Item->FName, "x");
       Item->Set(Item->FFriend, &ItemOf(S, 1));
       S.FItems.Insert(1, Item);
       Count(*Item);
     },
     "CIM"},
    {[](TTestStorage& S) {
       auto* const Late = S.NewItem("");
       Late->Set(Late->FName, "late");
       auto* const Item = S.AddItem("x");
       Item->Set(Item->FFriend, Late);
       S.FItems.Add(Late);
     },
     "CCIMI"},
    {[](TTestStorage& S) { S.FItems.Delete(1), S.FItems.Remove(&ItemOf(S, 1)), S.FItems.Delete(TGUID{}); }, "DD"},
    {[](TTestStorage& S) { S.FOthers.Insert(0, S.FItems.Extract(2)), Count(*S.FOthers.GetItem(0)); }, "DIM"},
    {[](TTestStorage& S) { Free(S.FItems.Extract(2)); }, "DR"},
    {[](TTestStorage& S) { Count(ItemOf(S, 2)), Free(S.FItems.Extract(2)); }, "MDR"},
    {[](TTestStorage& S) { S.FItems.Insert(0, &ItemOf(S, 2)), S.FItems.Add(nullptr), S.FItems.Exchange(1, 1); }, ""},
    {[](TTestStorage& S) { S.FItems.Move(0, 3), S.FItems.Exchange(1, 3), S.FItems.MoveToPrevIndex(2); }, "VVVV"},
    {[](TTestStorage& S) { S.FItems.Move(0, 3), S.FItems.Sort(ByName), S.FItems.Clear(); }, "VVVVVVVK"},
    {[](TTestStorage& S) { S.FOthers.MergeEx(S.FItems), S.FItems.Assign(S.FOthers); }, "DIDIDIDIKCIMCIMCIMCIM"},
    {[](TTestStorage& S) { S.FFriends.AddAll(S.FItems), S.FFriends.Assign(S.FOthers); }, "IIIIDDDD"},
    {[](TTestStorage& S) {
       const TGUID ID = ItemOf(S, 0).ID();
       S.FItems.Delete(0);
       auto* const Again = Create<TTestItem>(&S, ID);
       Again->Set(Again->FName, "again");
       S.FOthers.Add(Again);
     },
     "DCI"},
    {[](TTestStorage& S) { S.FTwins2.Add(Create<TTestTwin<2>>(&S)), S.FTwins1.Add(Create<TTestTwin<1>>(&S)); }, "CICI"},
    {[](TTestStorage& S) {
       const auto Other = CreateStorage<TTestStorage>();
       Other->AddItem("o");
       S.FOthers.MergeEx(Other->FItems);
       auto* const Free = Create<TTestItem>(nullptr);
       Free->FName = "f";
       S.FOthers.Add(Free);
     },
     "CICI"},
    {[](TTestStorage& S) {
       S.FItems.FRefused = "x";
       EXPECT_THROW(S.AddItem("x"), EQuillonException);
       TTestList OfTheProgram(&S);
       OfTheProgram.Add(&ItemOf(S, 0));
       S.LockChangeTracking();
     },
     "C"},
};

}  // namespace

TEST(ChangeLog, ASessionIsRecordedAndPlayedBack) {
  for (const TSession& Session : Sessions) {
    TCopies Copies("abcd");
    Session.Act(*Copies.A);
    EXPECT_EQ(Copies.Kinds(), Session.Kinds);
    EXPECT_EQ(Copies.Play(), "") << Session.Kinds;
    EXPECT_EQ(PlainContent(*Copies.B), PlainContent(*Copies.A)) << Session.Kinds;
    EXPECT_EQ(Copies.B->FModified, !Copies.Log().IsEmpty());
    EXPECT_TRUE(Copies.B->ChangeLog().IsEmpty());
  }
  EXPECT_EQ(TTestItem::Alive, 0);
}

TEST(ChangeLog, RecordsWhileActiveAndNotLocked) {
  TCopies Copies("ab");
  Copies.Log().Lock();
  Count(ItemOf(*Copies.A, 0));
  Copies.Log().Unlock();
  Copies.Log().Unlock();
  EXPECT_TRUE(Copies.Log().IsEmpty());
  Count(ItemOf(*Copies.A, 0)), Count(ItemOf(*Copies.A, 0));
  EXPECT_EQ(Copies.Log().GetOperation(0).FObjectVersion, 2) << "each change of a burst counts";
  EXPECT_EQ(Copies.Log().GetOperation(0).FUserName, "ann");
  EXPECT_THROW(Copies.Log().GetOperation(1), EQuillonCollectionError);
  Copies.Log().Deactivate();
  Count(ItemOf(*Copies.A, 0));
  EXPECT_TRUE(Copies.Log().IsEmpty());
  EXPECT_EQ(ItemOf(*Copies.A, 0).FVersion, 2);
}

// What another user has done meanwhile, and what it makes of a log.
TEST(ChangeLog, StaleOperationsAreConflicts) {
  struct TCase {
    std::function<void(TTestStorage&)> Mine;
    std::function<void(TTestStorage&)> Others;
    std::string Conflict;  ///< "%" stands for the first item's name
  };
  const auto ChangeFirst = [](TTestStorage& S) { Count(ItemOf(S, 0)); };
  const auto DeleteFirst = [](TTestStorage& S) { S.FItems.Delete(0); };
  const auto AddLast = [](TTestStorage& S) { S.AddItem("x"); };
  const auto Dependent = [](TTestStorage& S) { S.FItems.FItemsAreIndependent = false; };
  const std::string Gone = "% existiert nicht mehr in der Zieldatenmenge";
  const std::string Stale = " wurde bereits von Benutzer \"bob\" modifiziert.";
  const std::vector<TCase> Cases = {
      {ChangeFirst, ChangeFirst, "2\"%\"" + Stale},
      {ChangeFirst, DeleteFirst, "0" + Gone},
      {[](TTestStorage& S) { S.AddItem("y"), Free(S.FItems.Extract(0)); }, ChangeFirst, "2\"%\"" + Stale},
      {[](TTestStorage& S) { S.FFriends.Add(&ItemOf(S, 0)); }, DeleteFirst, "0" + Gone},
      {[](TTestStorage& S) { S.FItems.Move(0, 1); }, DeleteFirst, "0" + Gone},
      {[](TTestStorage& S) { S.FItems.Move(0, 1); }, [](TTestStorage& S) { S.FOthers.Add(S.FItems.Extract(0)); }, ""},
      {DeleteFirst, [](TTestStorage& S) { S.FOthers.Add(S.FItems.Extract(0)); }, ""},
      {ChangeFirst, [](TTestStorage& S) { Count(ItemOf(S, 1)); }, ""},
      {AddLast, AddLast, ""},
      {AddLast,
       [&](TTestStorage& S) {
         Dependent(S), AddLast(S);
         S.FItems.FChangedBy = S.ChangeLog().FUserName;
       },
       "3\"TQuillonDataList (ID: #)\"" + Stale},
      {AddLast, Dependent, ""},
      {AddLast, [](TTestStorage& S) { S.FItems.SetID(TGUID{{1}}); },
       "1TQuillonDataList (ID: #) existiert nicht mehr in der Zieldatenmenge"},
  };
  for (std::size_t I = 0; I < Cases.size(); ++I) {
    TCopies Copies("ab");
    const std::string First = ItemOf(*Copies.A, 0).GetDisplayName();
    Copies.B->ChangeLog().Activate();
    Cases[I].Mine(*Copies.A);
    Cases[I].Others(*Copies.B);
    std::string Expected = Cases[I].Conflict;
    if (const std::size_t Place = Expected.find('%'); Place != std::string::npos) {
      Expected.replace(Place, 1, First);
    }
    if (const std::size_t Place = Expected.find('#'); Place != std::string::npos) {
      Expected.replace(Place, 1, QuillonGuid::Braced(Copies.A->FItems.ID()));
    }
    const int Recorded = Copies.B->ChangeLog().Count();
    EXPECT_EQ(Copies.Play(), Expected) << "case " << I;
    EXPECT_EQ(Copies.B->ChangeLog().Count(), Recorded) << "case " << I;
  }
}

TEST(ChangeLog, PlayingBackTwiceIsAConflictOnlyForWhatHasChanged) {
  TCopies Copies("ab");
  Free(Copies.A->FItems.Extract(1));
  Copies.A->FOthers.Add(Copies.A->NewItem("x"));
  EXPECT_EQ(Copies.Play(), "");
  Copies.Log().DropLast(), Copies.Log().DropLast(), Copies.Log().DropLast();
  EXPECT_EQ(Copies.Kinds(), "D");
  EXPECT_EQ(Copies.Play().front(), '0') << "what is deleted is not there to be deleted";
  Copies.Log().Clear();
  Count(ItemOf(*Copies.A, 0));
  EXPECT_EQ(Copies.Play(), "");
  EXPECT_EQ(ItemOf(*Copies.B, 0).FChangedBy.Text(), "ann");
  EXPECT_EQ(Copies.Play().substr(0, 2), "2\"");
}

TEST(ChangeLog, AnUnknownClassEndsThePlayback) {
  TCopies Copies("a");
  Copies.A->NewItem("x");
  TQuillonMemoryStream Stream;
  Copies.Log().SaveToStream(Stream);
  std::string Bytes = Stream.TakeContent();
  const std::string Tag("\x08\0\0\0T\0e\0s\0t\0I\0t\0e\0m\0", 20);
  Bytes.replace(Bytes.find(Tag), Tag.size(), std::string(4, '\0'));
  TQuillonMemoryStream Damaged(Bytes);
  TQuillonDataChangeLog Log;
  Log.LoadFromStream(Damaged);
  try {
    Log.Playback(*Copies.B);
    FAIL();
  } catch (const EQuillonDataObjectReaderError& Error) {
    EXPECT_STREQ(Error.what(), "Klasse \"\" wurde nicht registriert.");
  }
  EXPECT_EQ(NamesOf(Copies.B->FItems), "a");
}

TEST(ChangeLog, MergingAndLoadingKeepTheLimit) {
  TCopies Copies("abcde");
  for (int I = 0; I < 5; ++I) {
    Count(ItemOf(*Copies.A, I));
  }
  TQuillonDataChangeLog Log("carl");
  Log.FOperationLimit = 10;
  Log.Add(nullptr), Log.Add(&Copies.Log()), Log.Add(&Copies.Log());
  EXPECT_EQ(Log.Count(), 10);
  EXPECT_EQ(Log.GetOperation(9), Copies.Log().GetOperation(4));
  Log.Add(&Copies.Sent());
  EXPECT_EQ(Log.Count(), 0);
  EXPECT_TRUE(Log.HasTooMuchChanges());
  EXPECT_THROW(Log.Playback(*Copies.B), EQuillonDataConflict);
  Copies.Log().Add(&Log);
  EXPECT_TRUE(Copies.Sent().HasTooMuchChanges());
  EXPECT_EQ(Copies.Play(), "5Die Zahl der abzugleichenden Änderungen ist zu groß");
  Log.Clear();
  EXPECT_FALSE(Log.HasTooMuchChanges());
  EXPECT_FALSE(Log.Playback(*Copies.B));
}

TEST(ChangeLog, AForeignLogIsReadWholeOrNotAtAll) {
  const std::string Name("\x01\0\0\0u\0", 6);
  const std::string Guid(16, '\x07');
  const std::string Version("\x02\0\0\0\0\0\0\0", 8);
  const auto Load = [](TQuillonDataChangeLog& ALog, const std::string& AContent) {
    TQuillonMemoryStream Stream(AContent);
    ALog.LoadFromStream(Stream);
  };
  const std::string Release = "\x02" + Name + Guid + Name + Version;
  const std::string Strange = "\xFE" + Name + Guid + Name + Version;
  TQuillonDataChangeLog Log;
  Load(Log, std::string("\0\2\0\0\0", 5) + Release + Strange);
  ASSERT_EQ(Log.Count(), 2);
  EXPECT_EQ(Log.GetOperation(0).FObjectDisplayName, "u");
  EXPECT_EQ(Log.GetOperation(0).FObjectVersion, 2);
  EXPECT_EQ(Log.GetOperation(1).FKind, TQuillonDataOperationKind::Clearance);
  EXPECT_EQ(Log.GetOperation(1).FListID.Bytes[0], 7);
  for (const std::string& Damaged :
       {std::string("\0\xFF\xFF\xFF\xFF", 5), std::string("\0\xFF\xFF\xFF\x7F", 5) + Release,
        std::string("\0\1\0\0\0", 5) + Release.substr(1), std::string()}) {
    EXPECT_THROW(Load(Log, Damaged), EQuillonReaderError);
    EXPECT_EQ(Log.Count(), 2);
  }
}
