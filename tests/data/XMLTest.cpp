#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <functional>

#include "data/TestObjects.h"

namespace {

using QuillonDataObjects::CreateStorage;
using testing::HasSubstr;

constexpr const char* ID1 = "{00000000-0000-0000-0000-000000000001}";
constexpr const char* ID2 = "{00000000-0000-0000-0000-00000000000A}";

/// A document with one item that has the rows.
std::string WithItem(const std::string& ARows) {
  return "<Storage><Objects><Items><Item Class=\"TestItem\" ID=\"" + std::string(ID1) + "\"><Must/>" + ARows +
         "</Item></Items></Objects></Storage>";
}

std::string Reference(const std::string& ATag, const std::string& AnID, const std::string& AClass = "TestItem") {
  return "<" + ATag + " Class=\"" + AClass + "\" ID=\"" + AnID + "\"/>";
}

/// The error that a document ends in; empty if it loads.
std::string ErrorOf(const std::string& ADocument) {
  const auto Store = CreateStorage<TTestStorage>();
  try {
    Store->LoadFromXML(ADocument, "plan.velmora");
    return {};
  } catch (const EQuillonException& Error) {
    return Error.what();
  }
}

/// The rows of one item, saved; stamps left out.
std::string SavedRows(TTestStorage& AStore) {
  const std::string Document = AStore.SaveToXML();
  const std::size_t Begin = Document.find("\">\n") + 3;
  return Document.substr(Begin, Document.find("      </Item>") - Begin);
}

/// Loads an item with the rows and saves it again.
std::string LoadAndSave(const std::string& ARows) {
  const auto Store = CreateStorage<TTestStorage>();
  Store->LoadFromXML(WithItem(ARows), "test");
  return SavedRows(*Store);
}

/// What is left of a single row.
std::string Resaved(const std::string& ARow) {
  std::string Rows = LoadAndSave(ARow);
  for (const std::string_view Always :
       {"<Must/>\n", "<Small>0</Small>\n", "<Other>{00000000-0000-0000-0000-000000000000}</Other>\n"}) {
    if (const std::size_t Place = Rows.find(Always); Place != std::string::npos) {
      Rows.erase(Place, Always.size());
    }
  }
  Rows.erase(0, Rows.find_first_not_of(' '));
  Rows.erase(Rows.find_last_not_of(" \n") + 1);
  return Rows;
}

TEST(XML, WritesTheFormByteForByte) {
  const auto Store = CreateStorage<TTestStorage>();
  const TQuillonChangeTrackingLock Lock(*Store);
  Store->FCreated = Store->FChanged = QuillonDateTime::ParseDateTime("2026-08-01T07:45:00.250Z");
  auto* const Item = QuillonDataObjects::Create<TTestItem>(Store.get(), QuillonGuid::Parse(ID2));
  Store->FItems.Add(Item);
  Item->ResetStamps();
  Store->FItems.ResetStamps();
  Item->FName = " a&b<c>\"d'\r\n\t";
  Item->FFlag = true;
  Item->FFriend = Item;
  Item->FWeight = -0.25;
  Item->FDay = 46235;
  Item->FNumbers = {1, -2};
  Item->FLines = {"x y", "", "z\""};
  Item->FPicture.Image = std::string("\0\xFF", 2);
  EXPECT_EQ(Store->SaveToXML(),
            "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>\n"
            "<Storage>\n"
            "  <Changed>2026-08-01T07:45:00.250Z</Changed>\n"
            "  <Created>2026-08-01T07:45:00.250Z</Created>\n"
            "  <Objects>\n"
            "    <Items>\n"
            "      <Item Class=\"TestItem\" ID=\"{00000000-0000-0000-0000-00000000000A}\">\n"
            "        <Name> a&amp;b&lt;c&gt;\"d'&#13;\n\t</Name>\n"
            "        <Must/>\n"
            "        <Flag>1</Flag>\n"
            "        <Small>0</Small>\n"
            "        <Weight>-0.25</Weight>\n"
            "        <Day>2026-08-01</Day>\n"
            "        <Other>{00000000-0000-0000-0000-000000000000}</Other>\n"
            "        <Numbers>1;-2</Numbers>\n"
            "        <Lines>\"x y\",,\"z\"\"\"</Lines>\n"
            "        <Picture Size=\"2\">AP8=</Picture>\n"
            "        <Friend Class=\"TestItem\" ID=\"{00000000-0000-0000-0000-00000000000A}\"/>\n"
            "      </Item>\n"
            "    </Items>\n"
            "  </Objects>\n"
            "</Storage>\n");
}

TEST(XML, ReadsValuesAsTheyMayStand) {
  const std::vector<std::pair<std::string, std::string>> Cases = {
      {"", ""},
      {"<Number>7</Number><Weight>1</Weight><Name/><Flag>0</Flag><Large>0</Large>", ""},  // defaults vanish
      {"<Number>1</Number><Number>2</Number>", "<Number>1</Number>"},                     // the first match
      {"<Unknown><Number>3</Number></Unknown><Number>4</Number><More/>", "<Number>4</Number>"},
      {"<Flag>2</Flag>", "<Flag>1</Flag>"},
      {"<Flag>-1</Flag>", "<Flag>1</Flag>"},
      {"<Number>-2147483648</Number>", "<Number>-2147483648</Number>"},
      {"<Large>-9223372036854775808</Large>", "<Large>-9223372036854775808</Large>"},
      {"<Weight>1,5</Weight>", "<Weight>1.5</Weight>"},
      {"<Weight>0.1</Weight>", "<Weight>0.1</Weight>"},
      {"<Weight>123456789.012345</Weight>", "<Weight>123456789.012345</Weight>"},
      {"<When>2024</When>", "<When>2024-01-01T00:00:00.000Z</When>"},
      {"<When>2024-02</When>", "<When>2024-02-01T00:00:00.000Z</When>"},
      {"<When>2024-02-29</When>", "<When>2024-02-29T00:00:00.000Z</When>"},
      {"<When>2024-02-29T13:05</When>", "<When>2024-02-29T13:05:00.000Z</When>"},
      {"<When>2024-02-29T13:05:59.5+02:00</When>", "<When>2024-02-29T13:05:59.005Z</When>"},
      {"<When>2024-02-29 13:05:59.250Z</When>", "<When>2024-02-29T13:05:59.250Z</When>"},
      {"<When>0000-00-00T00:00:00.000Z</When>", ""},
      {"<Clock>07:45:00.000Z</Clock>", "<Clock>07:45:00.000Z</Clock>"},
      {"<Name>   </Name>", "<Name>   </Name>"},
      {"<Name>\r\n\t</Name>", "<Name>\n\t</Name>"},  // raw line ends are one line feed in XML
      {"<Name>a&#13;b</Name>", "<Name>a&#13;b</Name>"},
      {"<Name>a<!-- no -->b<![CDATA[<c>]]>d<x>y</x></Name>", "<Name>ab&lt;c&gt;d</Name>"},
      {"<Name> <![CDATA[x]]> <!-- c --> </Name>", "<Name> x  </Name>"},
      {"<Name>Ä€𝄞</Name>", "<Name>Ä€𝄞</Name>"},
      // No characters of XML, by number and as they are.
      {"<Name>a&#xFFFE;&#65535;&#xD800;&#xdfff;&#x110000;&#99999999999;&#0;b</Name>",
       "<Name>a\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDb</Name>"},
      {"<Name>\uFFFE&#1;\uFFFF\uFFFC&#xFFFD;&#x10FFFF;</Name>",
       "<Name>\uFFFD\uFFFD\uFFFD\uFFFC\uFFFD\U0010FFFF</Name>"},
      {"<Name><![CDATA[&#xD800;]]>&#xD800;<!-- &#0; --></Name>", "<Name>&amp;#xD800;\uFFFD</Name>"},
      {"<Numbers>1;2;-3</Numbers>", "<Numbers>1;2;-3</Numbers>"},
      {"<Numbers/><Lines/><Picture Size=\"0\"/>", ""},
      {"<Lines>a,\"b,c\", d ,\"\"</Lines>", "<Lines>a,\"b,c\",d,</Lines>"},
      {"<Lines>\"\"</Lines>", "<Lines>\"\"</Lines>"},
      {"<Picture Size=\"3\">AAEC</Picture>", "<Picture Size=\"3\">AAEC</Picture>"},
      {"<Picture>QQ==</Picture>", "<Picture Size=\"1\">QQ==</Picture>"},
  };
  for (const auto& [Row, Expected] : Cases) {
    EXPECT_EQ(Resaved(Row), Expected) << Row;
    EXPECT_EQ(Resaved(Expected), Expected) << Row;
  }
  if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr) {
    EXPECT_EQ(Resaved("<Weight>1.5</Weight>"), "<Weight>1.5</Weight>");
    std::setlocale(LC_NUMERIC, "C");
  }
}

TEST(XML, RefusesDamageAndSaysWhere) {
  const std::string Item = "Storage/Objects/Items/Item/";
  const auto InObjects = [](const std::string& AnItem) {
    return "<Storage><Objects><Items>" + AnItem + "</Items></Objects></Storage>";
  };
  const std::string OwnEntity = "<!DOCTYPE Storage [<!ENTITY own \"x\">]><Storage><Title>&own;</Title></Storage>";
  std::string InUtf32;
  for (const char C : OwnEntity) {
    InUtf32.append({C, '\0', '\0', '\0'});
  }
  const std::vector<std::pair<std::string, std::string>> Cases = {
      {"", "\"plan.velmora\" ist kein gültiges XML-Dokument"},
      {"no XML", "\"plan.velmora\""},
      {"<Storage>\n<Title>x</Titel>\n</Storage>", "Zeile 2"},
      {"<Storage>\r\n\r<Title>&#10;&#10;a\r\n\n</Titel>\n\n</Storage>\n", "(Zeile 5)"},
      {OwnEntity, "eigene Entitäten"},
      {InUtf32, "eigene Entitäten"},
      {"<Other/>", "\"Other\" statt \"Storage\""},
      {"<Storage/><Storage/>", "mehr als ein Dokumentelement"},
      {"<Storage><Title>\n\xC3</Title></Storage>", "ungültiges UTF-8 (Zeile 2)"},
      {"<Storage><Title>\xED\xA0\x80</Title></Storage>", "ungültiges UTF-8"},
      {"<Storage><Objects/></Storage>",
       "Knoten Storage/Objects/ konnte nicht gelesen werden: XML-Tag \"Items\" erwartet."},
      {InObjects("<Item/>"),
       "Knoten Storage/Objects/Items/ konnte nicht gelesen werden: XML-Attribut \"Class\" erwartet."},
      {InObjects("<Item Class=\"TestItem\"/>"),
       "Knoten " + Item + " konnte nicht gelesen werden: XML-Attribut \"ID\" erwartet."},
      {InObjects(Reference("Item", ID1)),
       "Knoten " + Item + " konnte nicht gelesen werden: XML-Tag \"Must\" erwartet."},
      {InObjects(Reference("Item", ID1, "Twin")), "Klasse \"Twin\" ist hier nicht erlaubt."},
      {InObjects(Reference("Item", "")), Item},
      {InObjects(Reference("Item", "{00000000-0000-0000-0000-00000000000G}")), Item},
      {InObjects(Reference("Item", "00000000-0000-0000-0000-000000000001")), Item},
      {WithItem("<Number/>"), Item + "Number/"},
      {WithItem("<Number>x</Number>"), Item + "Number/ konnte nicht gelesen werden: \"x\" ist"},
      {WithItem("<Number>1.5</Number>"), Item + "Number/"},
      {WithItem("<Number>2147483648</Number>"), Item + "Number/"},
      {WithItem("<Small>256</Small>"), Item + "Small/"},
      {WithItem("<Small>-1</Small>"), Item + "Small/"},
      {WithItem("<Large>9223372036854775808</Large>"), Item + "Large/"},
      {WithItem("<Weight>inf</Weight>"), Item + "Weight/"},
      {WithItem("<Weight>1.2.3</Weight>"), Item + "Weight/"},
      {WithItem("<When>yesterday</When>"), Item + "When/"},
      {WithItem("<When>2023-02-29</When>"), Item + "When/"},
      {WithItem("<When/>"), Item + "When/"},
      {WithItem("<Day>2024-13-01</Day>"), Item + "Day/"},
      {WithItem("<Clock>25:00:00.000Z</Clock>"), Item + "Clock/"},
      {WithItem("<Other>x</Other>"), Item + "Other/"},
      {WithItem("<Numbers>1;x</Numbers>"), Item + "Numbers/"},
      {WithItem("<Numbers>99999999999</Numbers>"), Item + "Numbers/"},
      {WithItem("<Picture Size=\"1\">?</Picture>"), Item + "Picture/"},
      {WithItem("<Friend/>"), "Knoten " + Item + " konnte nicht gelesen werden: XML-Attribut \"Class\" erwartet."},
      {WithItem(Reference("Friend", ID2, "Twin")),
       Item + "Friend/ konnte nicht gelesen werden: Klasse \"Twin\" ist hier"},
  };
  for (const auto& [Document, Expected] : Cases) {
    EXPECT_THAT(ErrorOf(Document), HasSubstr(Expected)) << Document;
  }
  EXPECT_EQ(TTestItem::Alive, 0);
  EXPECT_THAT(ErrorOf(InObjects(Reference("Item", ID1, ""))), testing::StartsWith("Kein Klassenname gefunden. ("));
  EXPECT_THAT(ErrorOf(InObjects(Reference("Item", ID1, "Nobody"))),
              testing::AllOf(testing::StartsWith("Klasse \"Nobody\" wurde nicht registriert. (Knoten Storage/"),
                             HasSubstr(std::string("ID \"") + ID1)));
  EXPECT_EQ(ErrorOf("<!DOCTYPE Storage SYSTEM \"plan.dtd\"><Storage/>"), "");
}

TEST(XML, WhatAFailedReadBeganIsGone) {
  const auto Store = CreateStorage<TTestStorage>();
  const std::string Good =
      "<Item Class=\"TestItem\" ID=\"" + std::string(ID1) + "\"><Must/>" + Reference("Friend", ID2) + "</Item>";
  EXPECT_THROW(Store->LoadFromXML("<Storage>" + Reference("Favourite", ID2) + "<Objects><Items>" + Good +
                                      Reference("Item", ID2) + "</Items></Objects></Storage>",
                                  "test"),
               EQuillonDataObjectReaderError);
  EXPECT_EQ(TTestItem::Alive, 1);
  EXPECT_EQ(Store->FFavourite, nullptr);
  EXPECT_EQ(Store->FItems.GetItem(0)->FFriend, nullptr);
}

TEST(XML, ADefaultObjectGoesWithItsReplacement) {
  const auto Store = CreateStorage<TTestStorage>();
  Store->FPart.Take(Store->NewItem("default"), *Store);
  const std::string Document =
      "<Storage><Part Class=\"TestItem\" ID=\"" + std::string(ID1) + "\"><Must/></Part></Storage>";
  for (int Round = 0; Round < 2; ++Round) {
    Store->LoadFromXML(Document, "test");
    EXPECT_EQ(TTestItem::Alive, 1);
    EXPECT_EQ(QuillonGuid::Braced(Store->FPart->ID()), ID1);
  }
}

TEST(XML, EveryPrefixOfADocumentIsRefused) {
  const std::string Document = WithItem("<Name>Ä&amp;</Name>" + Reference("Friend", ID2) + "<Lines>\"a\"</Lines>");
  EXPECT_EQ(ErrorOf(Document), "");
  for (std::size_t Length = 0; Length < Document.size(); ++Length) {
    EXPECT_NE(ErrorOf(Document.substr(0, Length)), "") << Length;
  }
}

TEST(XML, ReadsEveryEncodingOfUnicode) {
  const std::u16string Text16 = u"<?xml version=\"1.0\"?><Storage><Title>Ä\U0001D11E</Title></Storage>";
  std::string Little;
  std::string Big;
  for (const char16_t Unit : Text16) {
    const char Low = static_cast<char>(Unit & 0xFF);
    const char High = static_cast<char>(Unit >> 8);
    Little.append({Low, High});
    Big.append({High, Low});
  }
  const std::string Plain = "<Storage><Title>Ä𝄞</Title></Storage>";
  for (const std::string& Document :
       {Plain, "\xEF\xBB\xBF" + Plain, Little, Big, "\xFF\xFE" + Little, "\xFE\xFF" + Big}) {
    const auto Store = CreateStorage<TTestStorage>();
    Store->LoadFromXML(Document, "test");
    EXPECT_EQ(Store->FTitle, "Ä𝄞");
  }
  // Half a pair is no character: it must not come out as invalid UTF-8.
  Little.erase(Little.find("\x1E\xDD"), 2);
  const auto Store = CreateStorage<TTestStorage>();
  try {
    Store->LoadFromXML(Little, "test");
    EXPECT_EQ(ErrorOf(Store->SaveToXML()), "");
  } catch (const EQuillonDataObjectReaderError&) {
    SUCCEED();
  }
}

TEST(XML, DepthIsNoDanger) {
  constexpr std::size_t Levels = 1000000;
  std::string Document = "<Storage><Title>t</Title>";
  for (std::size_t I = 0; I < Levels; ++I) {
    Document += "<a>";
  }
  EXPECT_NE(ErrorOf(Document), "");
  for (std::size_t I = 0; I < Levels; ++I) {
    Document += "</a>";
  }
  EXPECT_EQ(ErrorOf(Document + "</Storage>"), "");
}

TEST(XML, ObjectsAreKnownByIdentity) {
  const std::string Full =
      "<Item Class=\"TestItem\" ID=\"" + std::string(ID1) + "\"><Must>m</Must><Name>a</Name></Item>";
  const auto List = [](const std::string& ATag, const std::string& AnItems) {
    return "<" + ATag + "><Items>" + AnItems + "</Items></" + ATag + ">";
  };
  {
    const auto Store = CreateStorage<TTestStorage>();
    Store->LoadFromXML("<Storage>" + Reference("Favourite", ID1) +
                           List("Objects", Full + "<Thing/>" + Full + "text<!-- -->") + List("Others", Full) +
                           List("Friends", Reference("Item", ID2) + Reference("Item", ID1)) +
                           List("Twins1", Reference("Item", ID1, "Twin")) +
                           List("Twins2", Reference("Item", ID1, "Twin")) + "</Storage>",
                       "test");
    EXPECT_EQ(Store->FFavourite, Store->FItems.GetItem(0));  // referred to ahead of its coming
    EXPECT_EQ(NamesOf(Store->FItems), "aa");
    EXPECT_EQ(Store->FOthers.GetItem(0), Store->FFavourite);
    EXPECT_EQ(Store->FFriends.GetItem(0)->FName, "");  // never comes
    EXPECT_EQ(Store->FFriends.GetItem(1), Store->FFavourite);
    EXPECT_EQ(
        ErrorOf("<Storage>" + List("Objects", Full) + List("Friends", Reference("Item", ID1, "Nobody")) + "</Storage>"),
        "")
        << "the class of what is known is not looked at";
    EXPECT_EQ(&Store->FTwins1.GetItem(0)->DataClass(), &TTestTwin<1>::Class());
    EXPECT_EQ(&Store->FTwins2.GetItem(0)->DataClass(), &TTestTwin<2>::Class());
    EXPECT_EQ(TTestItem::Alive, 2);

    const std::string Saved = Store->SaveToXML();
    Store->LoadFromXML(Saved, "test");
    EXPECT_EQ(Store->SaveToXML(), Saved);
    EXPECT_EQ(TTestItem::Alive, 2);
    Store->LoadFromXML("<Storage/>", "test");
    EXPECT_EQ(TTestItem::Alive, 0);
  }
}

TEST(XML, AListTakesTheStampsOfTheObjectItLiesIn) {
  const auto Store = CreateStorage<TTestStorage>();
  Store->LoadFromXML(
      "<Storage><Version>5</Version><ChangedBy>me</ChangedBy><Changed>2020-01-01</Changed>"
      "<Objects><Version>9</Version><ChangedBy>you</ChangedBy><Items>" +
          std::string("<Item Class=\"TestItem\" ID=\"") + ID1 + "\"><Must/></Item></Items></Objects></Storage>",
      "test");
  EXPECT_EQ(Store->FItems.FVersion, 5);
  EXPECT_EQ(Store->FItems.FChangedBy.Text(), "me");
  EXPECT_EQ(Store->FItems.FChanged, Store->FChanged);
  EXPECT_EQ(Store->FChanged, QuillonDateTime::ParseDate("2020-01-01"));
  // One that the file does not tell has none.
  EXPECT_EQ(Store->FOthers.FVersion, 0);
  EXPECT_EQ(Store->FOthers.FCreated, 0);
  // A fresh one is as old as its object, also one that a reader makes.
  const auto Fresh = CreateStorage<TTestStorage>();
  EXPECT_EQ(Fresh->FItems.FCreated, Fresh->FCreated);
  Fresh->LoadFromXML("<Storage>" + Reference("Favourite", ID1) + "</Storage>", "test");
  EXPECT_GT(Fresh->FFavourite->FCreated, 0);
}

}  // namespace
