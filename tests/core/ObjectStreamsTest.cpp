#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/TestObjects.h"

namespace {

using TNodePtr = std::shared_ptr<TestNode>;

class ObjectStreams : public testing::Test {
 protected:
  ObjectStreams() { TQuillonClassRegistry::Instance().AddClass(TestNode::Class()); }

  /// The node's graph as bytes.
  static std::string Write(const TQuillonPersistent& AnObject) {
    TQuillonMemoryStream Stream;
    TQuillonStreamWriter Writer(Stream);
    TQuillonObjectWriter(Writer).WriteObject(&AnObject);
    return Stream.TakeContent();
  }
  static TNodePtr Read(std::string ABytes) {
    TQuillonMemoryStream Stream(std::move(ABytes));
    TQuillonStreamReader Reader(Stream, 16);
    return TQuillonObjectReader(Reader).ReadObject<TestNode>();
  }
  /// A node with an own name whose fields for other nodes hold the handles.
  static std::string Node(std::int32_t AHandle, std::string_view AClassName, std::string_view ALeft,
                          std::string_view ARight) {
    TQuillonMemoryStream Stream;
    TQuillonStreamWriter Writer(Stream);
    Writer.WriteLongInt(AHandle);
    Writer.WriteString(AClassName);
    Writer.WriteString("");
    Writer.WriteSmallInt(0);
    Writer.WriteDouble(0);
    Writer.WriteSignature(ALeft);
    Writer.WriteSignature(ARight);
    Writer.WriteLongInt(0);
    return Stream.TakeContent();
  }
};

enum class TDay { Monday, Tuesday, Sunday };

constexpr std::array<std::string_view, 3> EnumNames(TDay /*ADay*/) { return {"dayMo", "dayTu", "daySu"}; }

/// One field of each kind that is no plain number.
class TestKinds final : public TQuillonPersistent {
 public:
  const TQuillonPersistentClass& PersistentClass() const override {
    using QuillonStreams::Published;
    static const TQuillonPersistentClass Class{
        "TKinds",
        nullptr,
        {Published<&TestKinds::IsOpen>(), Published<&TestKinds::Day>(), Published<&TestKinds::Days>(),
         Published<&TestKinds::Extended>(), Published<&TestKinds::Comp>(), Published<&TestKinds::Currency>(),
         Published<&TestKinds::DateTime>(), Published<&TestKinds::Guid>()}};
    return Class;
  }

  bool IsOpen = false;
  TDay Day = TDay::Monday;
  std::set<TDay> Days;
  TExtended Extended;
  TComp Comp;
  TCurrency Currency;
  TQuillonDateTime DateTime;
  TGUID Guid;
};

const std::string None(4, '\0');
const std::string One = {1, 0, 0, 0};

}  // namespace

TEST_F(ObjectStreams, SharedAndCyclicReferencesComeBackAsOneObject) {
  const auto Root = std::make_shared<TestNode>();
  Root->Name = "Wurzel";
  Root->Place.Y = 0.5;
  Root->Left = std::make_shared<TestNode>();
  const std::size_t Single = Write(*Root).size();
  Root->Right = Root->Left;
  Root->Left->Up = Root;
  EXPECT_EQ(Write(*Root).size(), Single);

  const auto Copy = std::dynamic_pointer_cast<TestNode>(Root->Clone());
  ASSERT_NE(Copy, nullptr);
  EXPECT_EQ(Copy->Name, "Wurzel");
  EXPECT_EQ(Copy->Place.Y, 0.5);
  EXPECT_EQ(Copy->Left, Copy->Right);
  EXPECT_NE(Copy->Left, Root->Left);
  EXPECT_EQ(Copy->Left->Up.lock(), Copy);
  EXPECT_TRUE(Copy->HasSameContent(*Root));
  Copy->Right = std::make_shared<TestNode>();
  EXPECT_FALSE(Copy->HasSameContent(*Root));

  Root->Left->Up.reset();
  TQuillonMemoryStream Stream("ahead");
  Stream.Seek(0, TQuillonSeekOrigin::End);
  Root->SaveToStream(Stream);
  Stream.Write("behind");
  Stream.Seek(5, TQuillonSeekOrigin::Begin);
  TestNode Loaded;
  Loaded.LoadFromStream(Stream);
  EXPECT_EQ(Loaded.Name, "Wurzel");
  EXPECT_EQ(QuillonIO::ReadWholeFile(Stream), "behind");
}

TEST_F(ObjectStreams, EachKindOfPropertyHasItsForm) {
  TestKinds Given;
  Given.IsOpen = true;
  Given.Day = TDay::Tuesday;
  Given.Days = {TDay::Sunday, TDay::Monday};
  Given.Extended.Value = 0.1;
  Given.Comp.Value = -3;
  Given.Currency = TCurrency::Of(12.34565);
  Given.DateTime = 0.75;
  Given.Guid = QuillonGuid::Parse("{00112233-4455-6677-8899-AABBCCDDEEFF}");
  TQuillonMemoryStream Stream;
  Given.SaveToStream(Stream);
  Stream.Seek(0, TQuillonSeekOrigin::Begin);
  TQuillonStreamReader Reader(Stream);
  EXPECT_EQ(Reader.ReadString(), "True");
  EXPECT_EQ(Reader.ReadString(), "dayTu");
  EXPECT_EQ(Reader.ReadString(), "dayMo,daySu");
  EXPECT_EQ(Reader.ReadExtended(), 0.1);
  EXPECT_EQ(Reader.ReadComp(), -3);
  EXPECT_EQ(Reader.ReadCurrency(), 123'456) << "half way: the even one";
  EXPECT_THROW(TCurrency::Of(1e18), EQuillonConvertError);
  for (const bool IsZipped : {false, true}) {
    Stream.Clear();
    (Given.*(IsZipped ? &TestKinds::SaveToZipStream : &TestKinds::SaveToStream))(Stream);
    Stream.Write("behind");
    Stream.Seek(0, TQuillonSeekOrigin::Begin);
    TestKinds Read;
    (Read.*(IsZipped ? &TestKinds::LoadFromZipStream : &TestKinds::LoadFromStream))(Stream);
    EXPECT_TRUE(Read.HasSameContent(Given) && Read.Days == Given.Days);
    EXPECT_EQ(QuillonIO::ReadWholeFile(Stream), "behind");
  }
  using TTexts = std::vector<std::string>;
  for (const TTexts& Texts : {TTexts{"true"}, TTexts{"False", "dayWe"}, TTexts{"False", "daySu", "dayMo,,daySu"}}) {
    TQuillonMemoryStream Unknown;
    TQuillonStreamWriter Writer(Unknown);
    std::ranges::for_each(Texts, [&](const std::string& AText) { Writer.WriteString(AText); });
    Unknown.Seek(0, TQuillonSeekOrigin::Begin);
    EXPECT_THROW(TestKinds().LoadFromStream(Unknown), EQuillonConvertError) << Texts.back();
  }
  Given.Day = static_cast<TDay>(3);
  EXPECT_THROW(Given.SaveToStream(Stream), EQuillonConvertError);
}

TEST_F(ObjectStreams, AnObjectWithoutAHandleIsItsContentAlone) {
  TestNode Given;
  Given.Name = "Knoten";
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter Writer(Stream);
  EXPECT_THROW(Writer.WriteObjectProperties(nullptr), EQuillonPersistentError);
  Writer.WriteObjectProperties(&Given);
  Writer.WriteObjectProperties(&Given);
  Writer.WriteObject(&Given);
  Stream.Seek(0, TQuillonSeekOrigin::Begin);
  TQuillonStreamReader Reader(Stream);
  EXPECT_TRUE(Reader.ReadObjectProperties(nullptr, TestNode::Class())->HasSameContent(Given));
  const auto Present = std::make_shared<TestNode>();
  EXPECT_EQ(Reader.ReadObjectProperties(Present, TestNode::Class()), Present);
  EXPECT_EQ(Present->Name, "Knoten");
  EXPECT_TRUE(Reader.ReadObject()->HasSameContent(Given));

  auto& Registry = TQuillonClassRegistry::Instance();
  EXPECT_TRUE(Registry.ContainsClass(TestNode::Class()));
  Registry.RemoveClass(TestNode::Class());
  EXPECT_FALSE(Registry.ContainsClass(TestNode::Class()));
  EXPECT_THROW(Given.Clone(), EQuillonPersistentError);
}

TEST_F(ObjectStreams, WhatIsNoGraphIsRefused) {
  const auto Error = [](const std::string& ABytes) -> std::string {
    try {
      Read(ABytes);
      return "none";
    } catch (const EQuillonException& Refusal) {
      return Refusal.what();
    }
  };
  const std::string Short = "Es konnten nicht alle Daten gelesen werden.";
  const std::string Deep = "Die Objekte sind zu tief geschachtelt.";
  EXPECT_EQ(Error(None), "none");
  EXPECT_EQ(Error(Node(1, "", None, None)), "Kein Klassenname gefunden.");
  EXPECT_EQ(Error(Node(1, "TPlace", None, None)), "Klasse \"TPlace\" wurde nicht registriert.");
  EXPECT_EQ(Error(Node(1, "TNode", None, One)), Short) << "holds itself";
  const std::string Whole = Node(-7, "TNode", None, Node(2, "TNode", None, None));
  EXPECT_EQ(Error(Whole), "none");
  for (std::size_t Size = 0; Size < Whole.size(); ++Size) {
    EXPECT_EQ(Error(Whole.substr(0, Size)), Short) << Size;
  }
  std::string Nested = Node(1, "TNode", None, None);
  for (std::int32_t Handle = 2; Handle <= 300; ++Handle) {
    Nested = Node(Handle, "TNode", Nested, None);
  }
  EXPECT_EQ(Error(Nested), Deep);
  TQuillonMemoryStream Row;
  for (std::int32_t Handle = 1; Handle <= 300; ++Handle) {
    const std::string Before = {static_cast<char>((Handle - 1) & 0xFF), static_cast<char>((Handle - 1) >> 8), 0, 0};
    Row.Write(Node(Handle, "TNode", Before, None));
  }
  Row.Seek(0, TQuillonSeekOrigin::Begin);
  TQuillonStreamReader Reader(Row);
  TQuillonObjectReader ObjectReader(Reader);
  EXPECT_THROW(
      while (Reader.CanRead()) { ObjectReader.ReadObject(); }, EQuillonPersistentError)
      << "each holds the one before it";
  EXPECT_THROW(TestPlace().Clone(), EQuillonPersistentError);
}
