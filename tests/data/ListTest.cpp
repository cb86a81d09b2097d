#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <thread>

#include "QuillonClasses/QuickSort.h"
#include "data/TestObjects.h"

namespace {

using QuillonDataObjects::CreateStorage;

int CompareNames(const TQuillonDataObject& A, const TQuillonDataObject& B) {
  return static_cast<const TTestItem&>(A).FName.compare(static_cast<const TTestItem&>(B).FName);
}

/// A storage whose list holds items named by the letters.
struct TLetters {
  explicit TLetters(const std::string& ALetters) {
    for (const char Letter : ALetters) {
      Store->AddItem(std::string(1, Letter));
    }
    List.FLog.clear();
  }
  TTestItem* operator[](int AnIndex) const { return List.GetItem(AnIndex); }

  TQuillonDataHandle<TTestStorage> Store = CreateStorage<TTestStorage>();
  TTestList& List = Store->FItems;
};

TEST(DataList, HooksFrameEveryChange) {
  struct TCase {
    std::function<void(TLetters&)> Act;
    std::string Names;
    std::string Log;
  };
  const TCase Cases[] = {
      {[](TLetters& L) { L.List.Add(L.Store->NewItem("x")); }, "abcdx", "BeforeInsert-1/4 AfterInsert4/5 Change/5 "},
      {[](TLetters& L) { L.List.Insert(1, L.Store->NewItem("x")); }, "axbcd",
       "BeforeInsert1/4 AfterInsert1/5 Change/5 "},
      {[](TLetters& L) { L.List.Delete(1); }, "acd", "BeforeDelete1/4 AfterDelete1/3 Change/3 "},
      {[](TLetters& L) { L.List.Extract(2); }, "abd", "BeforeExtract2/4 AfterExtract2/3 Change/3 "},
      {[](TLetters& L) { L.List.Move(0, 2); }, "bcad", "BeforeMove0/4 AfterMove2/4 Change/4 "},
      {[](TLetters& L) { L.List.Move(3, 1); }, "adbc", "BeforeMove3/4 AfterMove1/4 Change/4 "},
      {[](TLetters& L) { L.List.MoveToFirstIndex(2); }, "cabd", "BeforeMove2/4 AfterMove0/4 Change/4 "},
      {[](TLetters& L) { L.List.MoveToLastIndex(0); }, "bcda", "BeforeMove0/4 AfterMove3/4 Change/4 "},
      {[](TLetters& L) { L.List.Clear(), L.List.Clear(); }, "",
       "BeforeClear/4 AfterClear/0 Change/0 BeforeClear/0 AfterClear/0 Change/0 "},
      {[](TLetters& L) { L.List.Exchange(0, 3); }, "dbca",
       "BeforeMove0/4 AfterMove2/4 Change/4 BeforeMove3/4 AfterMove0/4 Change/4 "},
      // What readers do is told by nobody, and so is what changes nothing.
      {[](TLetters& L) { L.List.Append(L.Store->NewItem("x")); }, "abcdx", ""},
      {[](TLetters& L) { L.List.Add(nullptr); }, "abcd", ""},
      {[](TLetters& L) { L.List.Insert(0, L[2]); }, "abcd", ""},
      {[](TLetters& L) { L.List.Merge(L[2]); }, "abcd", ""},
      {[](TLetters& L) { L.List.Exchange(2, 2); }, "abcd", ""},
      {[](TLetters& L) { L.List.Delete(QuillonGuid::New()); }, "abcd", ""},
      {[](TLetters& L) { L.List.Remove(L.Store->NewItem("x")); }, "abcd", ""},
      {[](TLetters& L) { L.List.SetCompare(CompareNames), L.List.Sort(); }, "abcd", ""},
  };
  for (const TCase& Case : Cases) {
    TLetters Letters("abcd");
    Case.Act(Letters);
    EXPECT_EQ(NamesOf(Letters.List), Case.Names);
    EXPECT_EQ(Letters.List.FLog, Case.Log) << Case.Names;
  }
  EXPECT_EQ(TTestItem::Alive, 0);
}

TEST(DataList, AChangeBelongsToTheUserUnlessItIsPartOfAnOperation) {
  TLetters Letters("ab");
  Letters.Store->ChangeLog().FUserName = TQuillonUserName("me");
  Letters[0]->Set(Letters[0]->FNumber, 1);
  EXPECT_EQ(Letters[0]->FChangedBy.Text(), "me");
  EXPECT_EQ(Letters.List.FChangedBy.Text(), "me");
  Letters.List.FChangedBy = TQuillonUserName("somebody");
  Letters.List.Delete(1);
  EXPECT_EQ(Letters.List.FChangedBy.Text(), "somebody");
  TTestItem* const Refused = Letters.Store->NewItem("r");
  Letters.List.FRefused = "r";
  EXPECT_THROW(Letters.List.Add(Refused), EQuillonException);
  EXPECT_FALSE(Letters.Store->ChangeLog().IsLocked());
  EXPECT_EQ(NamesOf(Letters.List), "a");
  EXPECT_EQ(Refused->FOwner, Letters.Store.get());
  Letters.Store->FOthers.Add(Refused);
  Letters.Store->FOthers.Clear();
  EXPECT_EQ(TTestItem::Alive, 1) << "nobody else holds what was refused";
}

TEST(DataList, WhatIsRefusedGoesBackToWhereItWas) {
  const auto Store = CreateStorage<TTestStorage>();
  const auto Other = CreateStorage<TTestStorage>();
  Store->FOthers.FRefused = "r";
  Store->ChangeLog().Activate();
  TTestItem* const Free = QuillonDataObjects::Create<TTestItem>(nullptr);
  Free->FName = "r";
  TTestItem* const Foreign = Other->NewItem("r");
  Other->ChangeLog().Activate();
  for (TTestItem* Item : {Free, Foreign}) {
    TQuillonDataAbstractObject* const Owner = Item->FOwner;
    EXPECT_THROW(Store->FOthers.Add(Item), EQuillonException);
    EXPECT_EQ(Item->FOwner, Owner);
    EXPECT_EQ(Store->Registry().GetObject(Item->ID(), TTestItem::Class()), nullptr);
  }
  EXPECT_EQ(Other->Registry().GetObject(Foreign->ID(), TTestItem::Class()), Foreign);
  EXPECT_TRUE(Store->ChangeLog().IsEmpty() && Other->ChangeLog().IsEmpty());
  QuillonDataObjects::Free(Free);
}

TEST(DataList, EmptyPlacesAreNoItems) {
  TLetters Letters("cab");
  TTestStorage& Store = *Letters.Store;
  Letters.List.SetItem(1, nullptr);
  Letters.List.Sort(CompareNames);
  EXPECT_EQ(Letters.List.GetItem(2), nullptr);
  Letters.List.SortBy(CompareNames);
  TTestList Others(&Store);
  Others.Assign(Letters.List);
  EXPECT_EQ(NamesOf(Others), "bc");
  EXPECT_TRUE(Others.AddAll(Letters.List));
  EXPECT_FALSE(Others.Merge(Letters.List));
  EXPECT_FALSE(Others.Import(Letters.List));
  EXPECT_EQ(Store.FOthers.MergeEx(Letters.List), 2);
  EXPECT_EQ(Letters.List.Count(), 1);
  EXPECT_FALSE(Others.ContainsAll(Letters.List));
  EXPECT_NE(Store.SaveToXML(), "");
  Letters.List.Delete(0);
  EXPECT_TRUE(Letters.List.IsEmpty());
}

TEST(DataList, ListsWithoutOwnerTakeCopyAndFree) {
  {
    TLetters Letters("ab");
    TTestList References;
    References.Assign(Letters.List);
    EXPECT_EQ(References.GetItem(0), Letters[0]);
    EXPECT_EQ(NamesOf(References), "ab");
    TTestList Owned(nullptr, TQuillonDataList::TItems::Owned);
    Owned.Assign(Letters.List);
    EXPECT_EQ(NamesOf(Owned), "ab");
    EXPECT_EQ(Owned.GetItem(0)->FOwner, &Owned);
    EXPECT_EQ(TTestItem::Alive, 4);
  }
  EXPECT_EQ(TTestItem::Alive, 0);
}

TEST(DataList, IsKnownByItsIdentityOnceThatIsAskedOrTold) {
  const auto Store = CreateStorage<TTestStorage>();
  TQuillonDataObjectRegistry& Registry = Store->Registry();
  const TGUID Told = QuillonGuid::New();
  Store->FItems.SetID(Told);
  EXPECT_EQ(Registry.GetList(Told), &Store->FItems);
  const TGUID Asked = std::as_const(Store->FOthers).ID();
  EXPECT_EQ(Registry.GetList(Asked), &Store->FOthers);
  Store->FItems.SetID(QuillonGuid::New());
  EXPECT_EQ(Registry.GetList(Told), nullptr);
  TGUID Gone;
  {
    TTestList List(Store.get());
    Gone = List.ID();
    EXPECT_EQ(Registry.GetList(Gone), &List);
  }
  EXPECT_EQ(Registry.GetList(Gone), nullptr);
  EXPECT_EQ(Registry.Objects().size(), Registry.Count());
}

TEST(DataList, SeveralReadersMayAskForIdentities) {
  const auto Store = CreateStorage<TTestStorage>();
  std::vector<std::unique_ptr<TTestList>> Lists;
  for (int I = 0; I < 1000; ++I) {
    Lists.push_back(std::make_unique<TTestList>(Store.get()));
  }
  std::vector<std::vector<TGUID>> Seen(4);
  std::vector<std::thread> Readers;
  for (auto& Own : Seen) {
    Readers.emplace_back([&Lists, &Own] {
      for (const auto& List : Lists) {
        Own.push_back(List->ID());
      }
    });
  }
  std::ranges::for_each(Readers, &std::thread::join);
  EXPECT_TRUE(std::ranges::all_of(Seen, [&](const auto& AnOwn) { return AnOwn == Seen.front(); }));
}

TEST(DataList, PlacesOutsideAreRefused) {
  TLetters Letters("ab");
  for (const int Index : {-1, 2, INT32_MAX, INT32_MIN}) {
    EXPECT_THROW(Letters.List.GetItem(Index), EQuillonCollectionError);
    EXPECT_THROW(Letters.List.Delete(Index), EQuillonCollectionError);
    EXPECT_THROW(Letters.List.Extract(Index), EQuillonCollectionError);
    EXPECT_THROW(Letters.List.Move(0, Index), EQuillonCollectionError);
    EXPECT_THROW(Letters.List.Move(Index, 0), EQuillonCollectionError);
  }
  TTestItem* const Item = Letters.Store->NewItem("x");
  EXPECT_THROW(Letters.List.Insert(3, Item), EQuillonCollectionError);
  EXPECT_THROW(Letters.List.Exchange(0, 2), EQuillonCollectionError);
  EXPECT_EQ(NamesOf(Letters.List), "ab");
}

TEST(DataList, SetOperationsGoByIdentity) {
  TLetters Letters("abcd");
  TTestStorage& Store = *Letters.Store;
  TTestList References(&Store);
  References.Add(Letters[1]);
  References.Add(Letters[1]);  // doubles are kept here
  References.Add(Letters[3]);
  EXPECT_EQ(NamesOf(References), "bbd");
  EXPECT_TRUE(Letters.List.ContainsAll(References));
  EXPECT_FALSE(References.ContainsAll(Letters.List));
  EXPECT_FALSE(References.Contains(static_cast<const TQuillonDataObject*>(nullptr)));
  EXPECT_EQ(References.IndexOf(Letters[0]), -1);
  EXPECT_EQ(References.Find(Letters[3]->ID()), Letters[3]);
  EXPECT_TRUE(References.Merge(Letters.List));
  EXPECT_FALSE(References.Merge(Letters.List));
  EXPECT_EQ(NamesOf(References), "bbdac");
  EXPECT_TRUE(References.AddAll(References));
  EXPECT_EQ(NamesOf(References), "bbdacbbdac");
  TTestList Wanted(&Store);
  EXPECT_TRUE(Wanted.InsertAll(0, Letters.List));
  EXPECT_EQ(NamesOf(Wanted), "abcd");
  Wanted.Delete(0);
  EXPECT_TRUE(References.RetainAll(Wanted));
  EXPECT_EQ(NamesOf(References), "bbdcbbdc");
  Wanted.Delete(0);
  EXPECT_TRUE(References.RemoveAll(Wanted));
  EXPECT_FALSE(References.RemoveAll(Wanted));
  EXPECT_EQ(NamesOf(References), "bbbb");
  References.Assign(Letters.List);
  EXPECT_EQ(NamesOf(References), "bbbbacd");  // what both have stays as it stands
  EXPECT_TRUE(References.Holds(Letters[1]));
  References.RemoveObject(Letters[1]);
  EXPECT_EQ(NamesOf(References), "acd");
  EXPECT_FALSE(References.Holds(Letters[1]));
}

TEST(DataList, ItemsMoveByThemselvesAndAreEqualByIdentity) {
  TLetters Here("abc");
  TLetters There("x");
  TTestItem* const Item = Here[1];
  Here.List.MoveToNextIndex(Item);
  EXPECT_EQ(NamesOf(Here.List), "acb");
  Here.List.MoveToNextIndex(Item);  // the last one stays
  Here.List.MoveToPrevIndex(Item);
  Here.List.MoveToPrevIndex(Item);
  Here.List.MoveToPrevIndex(Item);
  Here.List.MoveToLastIndex(Here[1]);
  Here.List.MoveToFirstIndex(There[0]);  // not in the list
  EXPECT_EQ(NamesOf(Here.List), "bca");

  const TTestItem* const Twin = QuillonDataObjects::Create<TTestItem>(There.Store.get(), Item->ID());
  EXPECT_TRUE(Twin->Equals(*Item) && Twin->GetHashCode() == Item->GetHashCode());
  EXPECT_FALSE(Twin->Equals(*Here[1]) || Item->Equals(Here.List));
  EXPECT_EQ(Item->GetPrivateClassName(), "TTestItem");
  EXPECT_TRUE(Here.Store->Registry().ContainsObject(*Item));
  EXPECT_FALSE(Here.Store->Registry().ContainsObject(*Twin));
  EXPECT_EQ(Here.Store->Registry().GetObject(Item->ID()), Item);
  EXPECT_EQ(Here.List.GetCommonItemBaseClass(), &TQuillonDataObject::Class());
  EXPECT_EQ(TTestList().GetCommonItemBaseClass(), nullptr);

  auto& Classes = TQuillonDataClassRegistry::Instance();
  Classes.AddClasses<TTestTwin<3>, TTestTwin<4>>();
  Classes.RemoveClass(TTestTwin<3>::Class());
  Classes.RemoveClass(TTestTwin<3>::Class());
  EXPECT_TRUE(Classes.ContainsClass(TTestTwin<4>::Class()) && !Classes.ContainsClass(TTestTwin<3>::Class()));
  EXPECT_EQ(Classes.GetClass("Twin")->Tag(), "Twin");
  EXPECT_EQ(Classes.GetClass("twin"), nullptr);
}

TEST(DataList, OwningListsMoveImportAndCopy) {
  TLetters Here("abc");
  TLetters There("xyz");
  There.List.Add(QuillonDataObjects::Create<TTestItem>(There.Store.get(), Here[1]->ID()));
  There[3]->FName = "B";

  EXPECT_TRUE(Here.List.Import(There.List));
  EXPECT_EQ(NamesOf(Here.List), "aBcxyz");
  EXPECT_EQ(Here[3]->ID(), There[0]->ID());
  EXPECT_EQ(Here[3]->Storage(), Here.Store.get());
  EXPECT_FALSE(Here.List.Import(There.List));

  Here.List.Assign(There.List);
  EXPECT_EQ(NamesOf(Here.List), "xyzB");
  EXPECT_FALSE(Here.List.ContainsAll(There.List));  // copies have identities of their own

  Here.Store->FOthers.Add(Here[0]);  // held by both lists from now on
  Here.Store->FOthers.Add(Here.Store->NewItem("q"));
  EXPECT_EQ(Here.List.MergeEx(Here.Store->FOthers), 1);
  EXPECT_EQ(NamesOf(Here.List), "xyzBq");
  EXPECT_EQ(NamesOf(Here.Store->FOthers), "x");
  EXPECT_EQ(Here[4]->FOwner, &Here.List);
}

TEST(DataList, WhatMovesToAnotherStorageIsKnownThere) {
  auto There = QuillonDataObjects::CreateStorage<TTestStorage>();
  TGUID Freed;
  {
    auto Here = QuillonDataObjects::CreateStorage<TTestStorage>();
    TTestItem* const Item = Here->AddItem("a");
    EXPECT_EQ(There->FItems.MergeEx(Here->FItems), 1);
    EXPECT_EQ(Here->Registry().GetObject(Item->ID(), TTestItem::Class()), nullptr);
    EXPECT_EQ(There->Registry().GetObject(Item->ID(), TTestItem::Class()), Item);

    TTestList Outside(nullptr, TQuillonDataList::TItems::Owned);
    Outside.Add(Here->FItems.Extract(Here->FItems.IndexOf(Here->AddItem("b"))));
    Freed = Outside.GetItem(0)->ID();
    EXPECT_EQ(Here->Registry().GetObject(Freed, TTestItem::Class()), nullptr);
    There->FItems.MergeEx(Outside);
    Outside.Add(There->FItems.Extract(1));
  }
  EXPECT_EQ(There->Registry().GetObject(Freed, TTestItem::Class()), nullptr);
  There->FItems.Clear();
  EXPECT_EQ(There->Registry().Count(), 0);
}

TEST(DataList, SortedListsTakeItemsInOrder) {
  TLetters Letters("dacb");
  Letters.List.SetCompare(CompareNames);
  Letters.List.SetSorted(true);
  EXPECT_EQ(NamesOf(Letters.List), "abcd");
  EXPECT_EQ(Letters.List.FLog, "");
  for (const char* Name : {"e", "A", "bb", "c"}) {
    Letters.Store->AddItem(Name);
  }
  EXPECT_EQ(NamesOf(Letters.List), "Aabbbccde");
  Letters.List.FLog.clear();
  Letters.List.Sort([](const TQuillonDataObject& A, const TQuillonDataObject& B) { return CompareNames(B, A); });
  EXPECT_EQ(NamesOf(Letters.List), "edccbbbaA");
  EXPECT_NE(Letters.List.FLog.find("BeforeMove"), std::string::npos);  // this one tells of every step
}

/// The algorithm as it is told, with both parts by recursion.
void SortAsTold(std::vector<int>& AnItems, int AStart, int AnEnd, const std::function<int(int, int)>& ACompare) {
  const auto At = [&](int AnIndex) -> int& { return AnItems.at(static_cast<std::size_t>(AnIndex)); };
  int Left = 0;
  do {
    Left = AStart;
    int Right = AnEnd;
    int Pivot = (AStart + AnEnd) / 2;
    do {
      while (ACompare(At(Left), At(Pivot)) < 0) {
        ++Left;
      }
      while (ACompare(At(Right), At(Pivot)) > 0) {
        --Right;
      }
      if (Left <= Right) {
        std::swap(At(Left), At(Right));
        if (Pivot == Left) {
          Pivot = Right;
        } else if (Pivot == Right) {
          Pivot = Left;
        }
        ++Left;
        --Right;
      }
    } while (Left <= Right);
    if (AStart < Right) {
      SortAsTold(AnItems, AStart, Right, ACompare);
    }
    AStart = Left;
  } while (Left < AnEnd);
}

TEST(QuickSort, ExchangesAsToldWhateverTheOrder) {
  // Items are told apart by more than the order sees; the second order is not transitive.
  const std::function<int(int, int)> Orders[] = {
      [](int A, int B) { return A / 8 - B / 8; },
      [](int A, int B) { return A % 3 == B % 3 ? 0 : ((A % 3 + 1) % 3 == B % 3 ? -1 : 1); }};
  std::mt19937 Random(1);
  for (const auto& Order : Orders) {
    for (int Round = 0; Round < 3000; ++Round) {
      std::vector<int> Expected(std::uniform_int_distribution<std::size_t>(2, 40)(Random));
      for (int& Item : Expected) {
        Item = std::uniform_int_distribution<int>(0, 99)(Random);
      }
      std::vector<int> Items = Expected;
      SortAsTold(Expected, 0, static_cast<int>(Expected.size()) - 1, Order);
      const auto At = [&](int AnIndex) -> int& { return Items.at(static_cast<std::size_t>(AnIndex)); };
      QuillonClasses::QuickSort(
          0, static_cast<int>(Items.size()) - 1, [&](int A, int B) { return Order(At(A), At(B)); },
          [&](int A, int B) { std::swap(At(A), At(B)); });
      ASSERT_EQ(Items, Expected);
    }
  }
}

TEST(QuickSort, StaysFlatOnInputsMadeToBeDeep) {
  const auto DepthOf = [](std::vector<int> AnItems) {
    const auto At = [&](int AnIndex) -> int& { return AnItems[static_cast<std::size_t>(AnIndex)]; };
    std::uintptr_t Low = UINTPTR_MAX;
    std::uintptr_t High = 0;
    QuillonClasses::QuickSort(
        0, static_cast<int>(AnItems.size()) - 1,
        [&](int A, int B) {
          const char Here = 0;
          Low = std::min(Low, reinterpret_cast<std::uintptr_t>(&Here));
          High = std::max(High, reinterpret_cast<std::uintptr_t>(&Here));
          return At(A) - At(B);
        },
        [&](int A, int B) { std::swap(At(A), At(B)); });
    EXPECT_TRUE(std::is_sorted(AnItems.begin(), AnItems.end()));
    return High - Low;
  };
  constexpr int Many = 100000;
  constexpr std::uintptr_t Limit = 64 * 1024;
  std::vector<int> Equal(Many, 1);
  std::vector<int> Falling(Many);
  std::vector<int> OrganPipe(Many / 10);
  for (int I = 0; I < Many; ++I) {
    Falling[static_cast<std::size_t>(I)] = Many - I;
  }
  for (int I = 0; I < Many / 10; ++I) {
    OrganPipe[static_cast<std::size_t>(I)] = std::min(I, Many / 10 - I);
  }
  EXPECT_LT(DepthOf(Equal), Limit);
  EXPECT_LT(DepthOf(Falling), Limit);
  EXPECT_LT(DepthOf(OrganPipe), Limit);
}

TEST(DataHolder, AnObjectIsFreedOnceByTheLastWhoHoldsIt) {
  {
    TLetters Letters("ab");
    TTestStorage& Store = *Letters.Store;
    Store.FOthers.Add(Letters[0]);
    Store.FPart.Take(Letters[0], Store);
    TTestItem* const Shared = Letters[0];
    EXPECT_EQ(Shared->FOwner, &Store);
    Letters.List.Delete(0);
    EXPECT_EQ(Shared->FOwner, &Store);
    Store.FPart.Take(nullptr, Store);
    EXPECT_EQ(Shared->FOwner, &Store.FOthers) << "who holds it still";
    Store.FPart.Take(Shared, Store);
    Store.FOthers.Clear();
    EXPECT_EQ(TTestItem::Alive, 2);
    Store.FPart.Take(nullptr, Store);
    EXPECT_EQ(TTestItem::Alive, 1);

    TTestItem* const Taken = Letters[0];
    Taken->Extract();
    EXPECT_TRUE(Letters.List.IsEmpty());
    EXPECT_EQ(Taken->FOwner, &Store);
    EXPECT_EQ(Store.Registry().GetObject(Taken->ID(), TTestItem::Class()), Taken);
    Store.FOthers.Add(Taken);
    Store.FOthers.Add(Taken);
    Store.NewItem("held by nobody");
    Letters.List.Add(Store.NewItem("c"));
    Letters.List.SetItem(0, Taken);
    EXPECT_EQ(TTestItem::Alive, 2);
    Store.Clear();
    EXPECT_EQ(TTestItem::Alive, 0);
    Store.NewItem("still held by nobody");
    Store.FFriends.Add(Store.NewItem("only referred to"));
  }
  EXPECT_EQ(TTestItem::Alive, 0);
}

TEST(ObjectRegistry, FindsWhatAMapFinds) {
  const auto Store = CreateStorage<TTestStorage>();
  const TQuillonDataClass* const Classes[] = {&TTestItem::Class(), &TTestTwin<1>::Class(), &TTestTwin<2>::Class()};
  std::vector<TGUID> IDs(400);
  for (TGUID& ID : IDs) {
    ID = QuillonGuid::New();
  }
  std::multimap<TGUID, TQuillonDataObject*> Expected;
  std::mt19937 Random(5);
  const auto Pick = [&](std::size_t ACount) {
    return std::uniform_int_distribution<std::size_t>(0, ACount - 1)(Random);
  };
  for (int Round = 0; Round < 6000; ++Round) {
    const TGUID& ID = IDs[Pick(IDs.size())];
    const auto Found = Expected.find(ID);
    if (Found != Expected.end() && Pick(5) < (Round % 2000 < 1000 ? 2U : 4U)) {
      if (Pick(2) == 0) {
        QuillonDataObjects::Free(Found->second);
      } else {
        Found->second->SetID(QuillonGuid::New());  // leaves the place, stays with the storage
      }
      Expected.erase(Found);
    } else if (const TQuillonDataClass& Class = *Classes[Pick(3)]; Store->Registry().GetObject(ID, Class) == nullptr) {
      Expected.emplace(ID, Class.Create(Store.get(), ID));
    } else {
      Class.Create(Store.get(), ID);  // a double is never found, and ends with the storage
    }
    const TGUID& Asked = IDs[Pick(IDs.size())];
    const auto [Begin, End] = Expected.equal_range(Asked);
    for (const TQuillonDataClass* Class : Classes) {
      TQuillonDataAbstractObject* const Object = Store->Registry().GetObject(Asked, *Class);
      const auto IsIt = [&](const auto& AnEntry) { return AnEntry.second == Object; };
      const auto IsOfClass = [&](const auto& AnEntry) { return &AnEntry.second->DataClass() == Class; };
      if (Object == nullptr) {
        ASSERT_TRUE(std::none_of(Begin, End, IsOfClass));
      } else {
        ASSERT_TRUE(std::any_of(Begin, End, IsIt) && &Object->DataClass() == Class);
      }
    }
  }
}

}  // namespace
