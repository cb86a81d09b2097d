#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "QuillonClasses/ArrayList.h"
#include "QuillonClasses/Arrays.h"
#include "QuillonClasses/Lines.h"
#include "QuillonMaps.h"

namespace {

template <class TBox, class TValue>
std::shared_ptr<TBox> Box(TValue AValue) {
  return std::make_shared<TBox>(std::move(AValue));
}

TQuillonItem Number(std::int32_t AValue) { return Box<TQuillonLongInt>(AValue); }

std::string TextOf(const TQuillonItem& AnItem) {
  const auto* const Found = dynamic_cast<const TQuillonLongInt*>(AnItem.get());
  return Found == nullptr ? "-" : std::to_string(Found->FValue);
}

/// The numbers in a row, "-" for null.
std::string Row(const TQuillonAbstractCollection& ACollection) {
  std::string Text;
  for (const TQuillonItem& Item : ACollection.Items()) {
    Text += TextOf(Item);
  }
  return Text;
}

std::unique_ptr<TQuillonArrayList> List(const std::vector<int>& AValues) {
  auto Made = std::make_unique<TQuillonArrayList>();
  for (const int Value : AValues) {
    Made->Add(Value < 0 ? nullptr : Number(Value));
  }
  return Made;
}

/// What comes until nothing comes.
std::string Drained(TQuillonLine& ALine) {
  std::string Text;
  while (!ALine.IsEmpty()) {
    Text += TextOf(ALine.Pop());
  }
  return Text + TextOf(ALine.Pop());
}

int ByLastDigit(const TQuillonPersistent& A, const TQuillonPersistent& B) {
  const auto Digit = [](const TQuillonPersistent& AnItem) {
    return dynamic_cast<const TQuillonLongInt&>(AnItem).FValue % 10;
  };
  return Digit(A) - Digit(B);
}

/// The content of an object of the class, from bytes.
template <class TObject>
std::string ErrorOf(const std::function<void(TQuillonWriter&)>& AWrite) {
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter Writer(Stream);
  AWrite(Writer);
  Stream.Seek(0, TQuillonSeekOrigin::Begin);
  try {
    TObject().LoadFromStream(Stream);
    return "";
  } catch (const EQuillonException& Error) {
    return Error.what();
  }
}

class Collections : public testing::Test {
 protected:
  Collections() { QuillonClasses::RegisterClasses(); }
};

}  // namespace

TEST_F(Collections, ABoxHasTheHashAndTheEqualityOfItsValue) {
  const TGUID Guid = QuillonGuid::Parse("{00112233-4455-6677-8899-AABBCCDDEEFF}");
  struct TCase {
    TQuillonItem Box;
    std::int32_t Hash;
  };
  const std::vector<TCase> Cases = {
      {Box<TQuillonBoolean>(true), 1},
      {Box<TQuillonChar>(u'€'), 0x20AC},
      {Box<TQuillonShortInt>(std::int8_t{-2}), -2},
      {Box<TQuillonSmallInt>(std::int16_t{-2}), -2},
      {Box<TQuillonLongInt>(-2), -2},
      {Box<TQuillonByte>(std::uint8_t{200}), 200},
      {Box<TQuillonWord>(std::uint16_t{60'000}), 60'000},
      {Box<TQuillonLongWord>(0xFFFF'FFFEU), -2},
      {Box<TQuillonInt64>(0x0000'0003'0000'0005), 6},
      {Box<TQuillonSingle>(-2.5F), -2},
      {Box<TQuillonDouble>(4'294'967'298.75), 2},
      {Box<TQuillonDouble>(std::numeric_limits<double>::infinity()), 0},
      {Box<TQuillonExtended>(TExtended{7.5}), 7},
      {Box<TQuillonCurrency>(TCurrency::Of(-7.5)), -7},
      {Box<TQuillonBoxedDateTime>(TQuillonDateTime(45'000.5)), 45'000},
      {Box<TQuillonString>(std::string()), 0},
      {Box<TQuillonString>(std::string("abcd")), 0x61 << 12 | 0x62 << 4},
      {Box<TQuillonUtf8String>(std::string("€")), 0xAC},
      {Box<TQuillonString>(std::string(20, 'a')), 102109184},
      {Box<TQuillonGuid>(Guid), 5371408},
      {Box<TQuillonReference>(Number(7)), 7},
  };
  for (const TCase& Case : Cases) {
    const std::string& Name = Case.Box->PersistentClass().Name;
    EXPECT_EQ(Case.Box->GetHashCode(), Case.Hash) << Name;
    const TQuillonItem Copy = Case.Box->Clone();
    EXPECT_TRUE(Copy->Equals(*Case.Box) && Case.Box->Equals(*Copy)) << Name;
    for (const TCase& Other : Cases) {
      EXPECT_EQ(Case.Box->Equals(*Other.Box), &Case == &Other) << Name;
    }
  }

  const auto Stream = std::make_shared<TQuillonMemoryStream>("abc");
  TQuillonBinary Binary(Stream);
  EXPECT_TRUE(Binary.Equals(TQuillonBinary(Stream)));
  const auto Copy = std::dynamic_pointer_cast<TQuillonBinary>(Binary.Clone());
  EXPECT_EQ(Copy->FStream->Content(), "abc");
  EXPECT_FALSE(Binary.Equals(*Copy)) << "the same bytes in another stream";
  TQuillonLongInt Target;
  Target.Assign(*Number(3));
  EXPECT_EQ(Target.FValue, 3);
  EXPECT_THROW(Target.Assign(Binary), EQuillonAssignError);
}

TEST_F(Collections, AListKeepsItsOrder) {
  const auto Items = List({1, 2, 3});
  Items->Insert(3, Number(4));
  EXPECT_THROW(Items->Insert(5, Number(5)), EQuillonCollectionError);
  Items->Move(0, 2);
  EXPECT_EQ(Row(*Items), "2314");
  Items->Move(0, 3);
  EXPECT_EQ(Row(*Items), "3142");
  EXPECT_THROW(Items->Move(0, 4), EQuillonCollectionError);
  Items->Exchange(0, 3);
  Items->SetItem(1, nullptr);
  Items->Add(Number(2));
  EXPECT_EQ(Row(*Items), "2-432");
  EXPECT_EQ(Items->IndexOf(nullptr), 1);
  EXPECT_EQ(Items->LastIndexOf(Number(2).get()), 4);
  EXPECT_EQ(Items->IndexOf(Number(7).get()), -1);
  EXPECT_EQ(TextOf(Items->Remove(Number(2).get())), "2");
  Items->Pack();
  EXPECT_EQ(Row(*Items), "432");
  EXPECT_EQ(Items->Remove(Number(9).get()), nullptr);

  TQuillonArrayList Copy;
  Copy.Assign(*Items);
  EXPECT_EQ(Row(Copy), "432");
  EXPECT_NE(Copy.GetItem(0), Items->GetItem(0));
  Copy.RetainAll(*List({2, 4}));
  Copy.MoveAll(*Items);
  Copy.RemoveAll(*List({3}));
  EXPECT_EQ(Row(Copy), "4242");
  EXPECT_TRUE(Items->IsEmpty() && Copy.ContainsAll(*List({2, 2, 4})) && !Copy.ContainsAll(*List({5})));
  try {
    Copy.GetItem(4);
    FAIL();
  } catch (const EQuillonCollectionError& Error) {
    EXPECT_STREQ(Error.what(), "Listenindex überschreitet das Maximum (4)");
  }
  EXPECT_THROW(Copy.SetCapacity(3), EQuillonCollectionError);
  EXPECT_THROW(Copy.SetCapacity(0x800'0000), EQuillonCollectionError);
  Copy.SetCapacity(0x7FF'FFFF);
}

TEST_F(Collections, ASortedListPutsEachItemInItsPlace) {
  const auto Items = List({15, 3, 21, 9, 13});
  Items->FOnCompare = ByLastDigit;
  Items->SetSorted(true);
  EXPECT_EQ(TextOf(Items->GetItem(0)) + TextOf(Items->GetItem(3)), "2115");
  std::int32_t Index = 0;
  EXPECT_TRUE(Items->Add(Number(31), Index));
  EXPECT_EQ(Index, 0) << "before those that are equal";
  Items->FDuplicates = dupIgnore;
  EXPECT_FALSE(Items->Add(Number(49), Index));
  EXPECT_EQ(Index, 5);
  EXPECT_TRUE(Items->Add(nullptr, Index));
  EXPECT_EQ(Index, 0);
  Items->FDuplicates = dupError;
  EXPECT_THROW(Items->Add(Number(15)), EQuillonCollectionError);
  EXPECT_EQ(Items->Count(), 7);
}

TEST_F(Collections, AStackGivesTheLastAndAQueueTheFirst) {
  TQuillonStack Stack;
  TQuillonQueue Queue;
  for (const int Value : {1, 2, 3}) {
    Stack.Push(Number(Value));
    Queue.Push(Number(Value));
  }
  EXPECT_EQ(Drained(*std::dynamic_pointer_cast<TQuillonQueue>(Queue.Clone())), "123-");
  Queue.Remove(Number(2).get());
  EXPECT_EQ(TextOf(Queue.Peek()), "1");
  EXPECT_EQ(Drained(Queue), "13-");
  EXPECT_EQ(TextOf(Stack.Peek()), "3");
  EXPECT_EQ(Drained(Stack), "321-");
}

TEST_F(Collections, AMapFindsWhatEqualsItsKey) {
  TQuillonHashMap Map(0);
  EXPECT_EQ(Map.Table().Threshold(), 1);
  EXPECT_EQ(Map.Get("Anna"), nullptr);
  const TQuillonItem Key = TQuillonHashMap::Box("Anna");
  EXPECT_EQ(Map.Put(Key, Number(1)), nullptr);
  EXPECT_EQ(Map.Table().BucketCount(), 2);
  EXPECT_EQ(TextOf(Map.Put("Anna", Number(2))), "1");
  EXPECT_EQ(TQuillonHashIterator(Map.Table()).Next().Key, Key) << "the first key stays";
  const TGUID Guid = QuillonGuid::New();
  Map.Put(5, Number(5));
  Map.Put(Guid, Number(6));
  Map.Put(TQuillonItem(), Number(7));
  EXPECT_EQ(TextOf(Map.Get("Anna")) + TextOf(Map.Get(5)) + TextOf(Map.Get(Guid)) + TextOf(Map.Get(TQuillonItem())),
            "2567");
  EXPECT_TRUE(Map.ContainsItem(Number(6).get()) && !Map.ContainsItem(Number(1).get()) && !Map.ContainsKey(6));
  const auto Copy = std::dynamic_pointer_cast<TQuillonHashMap>(Map.Clone());
  EXPECT_TRUE(Copy->HasSameContent(Map));
  EXPECT_EQ(TextOf(Copy->Get(Guid)), "6");

  TQuillonHashIterator Iterator(Map.Table());
  EXPECT_THROW(Iterator.Remove(), EQuillonCollectionError);
  for (int Left = Map.Count(); Left > 0; --Left) {
    const TQuillonItem Item = Iterator.Next().Item;
    EXPECT_EQ(Iterator.Remove(), Item);
    EXPECT_THROW(Iterator.Remove(), EQuillonCollectionError);
  }
  EXPECT_FALSE(Iterator.HasNext());
  EXPECT_TRUE(Map.IsEmpty());
  EXPECT_EQ(Map.Remove("Anna"), nullptr);
  EXPECT_THROW(TQuillonHashMap(-1), EQuillonMapError);
  EXPECT_THROW(TQuillonHashMap(1, 0), EQuillonMapError);
}

TEST_F(Collections, ATableGrowsAndComesBackWithItsChains) {
  TQuillonHashSet Set;
  for (const int Value : {3, 35, 19, 16, 0}) {
    EXPECT_TRUE(Set.Add(Number(Value)));
  }
  EXPECT_FALSE(Set.Add(Number(35)));
  EXPECT_EQ(Row(Set), "01619353") << "by the chain, the last one first";
  for (const int Value : {1, 2, 4, 5, 6, 7, 8}) {
    EXPECT_EQ(Set.Table().BucketCount(), 16) << Set.Count();
    Set.Add(Number(Value));
  }
  EXPECT_EQ(Set.Table().BucketCount(), 32);
  EXPECT_EQ(Row(*std::dynamic_pointer_cast<TQuillonHashSet>(Set.Clone())), Row(Set));
  EXPECT_EQ(TextOf(Set.Remove(Number(19).get())), "19");
  EXPECT_FALSE(Set.Contains(Number(19).get()));
}

TEST_F(Collections, ANamedValueKeepsItsClass) {
  TQuillonPropertyList Values;
  Values.Add<TQuillonLongInt>("Anzahl", 3);
  Values.Add<TQuillonString>("Name", "Anna");
  Values.Add<TQuillonReference>("Objekt", Number(4));
  const auto Copy = std::dynamic_pointer_cast<TQuillonPropertyList>(Values.Clone());
  EXPECT_EQ(Copy->Get<TQuillonLongInt>("Anzahl"), 3);
  EXPECT_EQ(Copy->Get<TQuillonString>("Name"), "Anna");
  EXPECT_EQ(TextOf(Copy->Get<TQuillonReference>("Objekt")), "4");
  EXPECT_THROW(Copy->Get<TQuillonInt64>("Anzahl"), EQuillonConvertError);
  EXPECT_THROW(Copy->Get<TQuillonLongInt>("anzahl"), EQuillonConvertError);
  Copy->Remove("Name");
  EXPECT_TRUE(Copy->Exists("Anzahl") && !Copy->Exists("Name"));
}

TEST_F(Collections, ArraysAndMatricesKeepTheirSizes) {
  TQuillonIntegerArray Array;
  std::vector<std::int32_t> Capacities;
  for (std::int32_t Value = 0; Value < 80; ++Value) {
    Array.Add(Value % 10);
    if (Capacities.empty() || Capacities.back() != Array.Capacity()) {
      Capacities.push_back(Array.Capacity());
    }
  }
  EXPECT_THAT(Capacities, testing::ElementsAre(4, 8, 12, 28, 44, 60, 76, 95));
  Array.Delete(0);
  Array.Insert(2, 0);
  EXPECT_EQ(Array.IndexOf(0), 2);
  EXPECT_EQ(Array.LastIndexOf(0), 70);
  EXPECT_EQ(Array.LastIndexOf(10), -1);
  EXPECT_THROW(Array.Delete(80), EQuillonCollectionError);
  EXPECT_THROW(Array.SetCapacity(79), EQuillonIntegerArrayError);
  EXPECT_TRUE(Array.Clone()->HasSameContent(Array));

  TQuillonMatrix Matrix(2, 3);
  Matrix.SetItem(1, 2, Number(7));
  Matrix.ChangeDimension(3, 4);
  const auto Copy = std::dynamic_pointer_cast<TQuillonMatrix>(Matrix.Clone());
  EXPECT_EQ(TextOf(Copy->GetItem(1, 2)) + TextOf(Copy->GetItem(2, 3)), "7-");
  TQuillonLongWordMatrix Numbers(2, 2);
  Numbers.Fill(3);
  Numbers.ChangeDimension(1, 3);
  EXPECT_EQ(Numbers.GetValue(0, 1) * 10 + Numbers.GetValue(0, 2), 30U);
  for (const auto& [Row, Col] : {std::pair(1, 0), std::pair(0, 3), std::pair(-1, 0)}) {
    EXPECT_THROW(Numbers.SetValue(Row, Col, 1), std::out_of_range);
  }
}

TEST_F(Collections, SizesThatAStreamInventsTakeNoMemory) {
  constexpr std::int32_t Huge = std::numeric_limits<std::int32_t>::max();
  using W = TQuillonWriter;
  const std::string Short = "Es konnten nicht alle Daten gelesen werden.";
  const auto Numbers = [](const std::vector<std::int32_t>& AValues) {
    return
        [=](W& AWriter) { std::ranges::for_each(AValues, [&](std::int32_t AValue) { AWriter.WriteLongInt(AValue); }); };
  };
  const auto Table = [](std::int32_t ABucketCount, double ALoadFactor, std::int32_t ACount) {
    return [=](W& AWriter) {
      AWriter.WriteLongInt(ABucketCount);
      AWriter.WriteDouble(ALoadFactor);
      AWriter.WriteLongInt(ACount);
    };
  };
  EXPECT_EQ(ErrorOf<TQuillonArrayList>(Numbers({Huge})), Short);
  EXPECT_EQ(ErrorOf<TQuillonStack>(Numbers({-1})), Short);
  EXPECT_EQ(ErrorOf<TQuillonIntegerArray>(Numbers({0x7FF'FFFF, 0})), "");
  EXPECT_EQ(ErrorOf<TQuillonIntegerArray>(Numbers({0, 1, 7})), "Kapazität der Liste ist erschöpft (0)");
  EXPECT_EQ(ErrorOf<TQuillonMatrix>(Numbers({Huge, Huge})), Short);
  EXPECT_EQ(ErrorOf<TQuillonLongWordMatrix>(Numbers({Huge, 0})), "");
  EXPECT_EQ(ErrorOf<TQuillonHashMap>(Table(Huge, 0.75, 0)), "");
  EXPECT_EQ(ErrorOf<TQuillonHashSet>(Table(16, 0.75, Huge)), Short);
  EXPECT_EQ(ErrorOf<TQuillonHashSet>(Table(-1, 0.75, 0)), Short);
  for (const double Factor : {0.0, -1.0, 1e-9, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(ErrorOf<TQuillonHashMap>(Table(16, Factor, 0)), Short) << Factor;
  }
}
