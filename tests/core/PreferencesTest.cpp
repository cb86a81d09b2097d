#include <gmock/gmock.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <thread>

#include "QuillonIO.h"
#include "QuillonXMLPreferences.h"
#include "QuillonXMLText.h"
#include "TestFiles.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* Console = R"(\Software\Tarnhill Systems\Velmora 6\Console)";

class PreferencesTest : public ::testing::Test {
 protected:
  std::string Content() const { return QuillonIO::ReadWholeFile(FFile); }
  void Put(std::string_view AContent) const { std::ofstream(FFile, std::ios::binary) << AContent; }
  std::string Stored(std::string_view AName) const {
    TQuillonXMLPreferences Preferences(FFile);
    return Preferences.OpenKey(Console, false) ? Preferences.ReadString(AName, "no value") : "no key";
  }

  TemporaryFolder FFolder;
  std::string FFile = FFolder.Path("preferences.xml");
};

TEST_F(PreferencesTest, AreElementsUnderTheirKeys) {
  {
    TQuillonXMLPreferences Preferences(FFile);
    EXPECT_FALSE(Preferences.OpenKey(Console, false));
    EXPECT_TRUE(Preferences.OpenKey(Console, true));
    Preferences.WriteString("fileversion.sdui", "a<b\n\x01");
    EXPECT_TRUE(Preferences.CreateKey("Other/Below"));
    EXPECT_THAT(Preferences.GetKeyNames(), ElementsAre("Other"));
    EXPECT_THAT(Preferences.GetValueNames(), ElementsAre("fileversion.sdui"));
    EXPECT_TRUE(Preferences.KeyExists("/software/TARNHILL systems"));
    EXPECT_FALSE(Preferences.OpenKey("missing", false));
    EXPECT_EQ(Preferences.ReadString("FILEVERSION.Sdui"), "a<b\n\uFFFD");
  }
  EXPECT_EQ(Content(),
            "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>\n"
            "<Preferences>\n  <Software>\n    <Tarnhill_x0020_Systems>\n      <Velmora_x0020_6>\n        <Console>\n"
            "          <fileversion.sdui Value=\"a&lt;b&#10;\uFFFD\" />\n          <Other>\n            <Below />\n"
            "          </Other>\n        </Console>\n      </Velmora_x0020_6>\n    </Tarnhill_x0020_Systems>\n"
            "  </Software>\n</Preferences>\n");
  EXPECT_EQ(Stored("fileversion.sdui"), "a<b\n\uFFFD");
}

TEST_F(PreferencesTest, ValuesOfEachKindComeBackAndAnythingElseIsTheDefault) {
  const TGUID ID = QuillonGuid::New();
  const auto Time = TQuillonDateTime::Create(2026, 8, 1, 7, 45);
  TQuillonXMLPreferences Preferences(FFile);
  Preferences.WriteInteger("i", -7);
  Preferences.WriteBoolean("b", true);
  Preferences.WriteChar("c", U'\u00e4');
  Preferences.WriteFloat("f", 0.25);
  Preferences.WriteDateTime("d", Time);
  Preferences.WriteGuid("g", ID);
  Preferences.WriteBinary("n", std::string_view("\0\xFF", 2));
  Preferences.FlushBuffer();
  const TQuillonXMLPreferences Again(FFile);
  EXPECT_EQ(Again.ReadInteger("i"), -7);
  EXPECT_TRUE(Again.ReadBoolean("b"));
  EXPECT_EQ(Again.ReadChar("c"), U'\u00e4');
  EXPECT_EQ(Again.ReadChar("i", U'?'), U'?');
  EXPECT_EQ(Again.ReadFloat("f"), 0.25);
  EXPECT_EQ(Again.ReadDateTime("d"), Time);
  EXPECT_EQ(Again.ReadGuid("g"), ID);
  EXPECT_EQ(Again.ReadBinary("n"), std::string_view("\0\xFF", 2));
  EXPECT_EQ(Again.ReadInteger("g", 5), 5);
  EXPECT_EQ(Again.ReadGuid("missing", ID), ID);
  EXPECT_THROW(Preferences.WriteString("", "x"), EQuillonException);
}

TEST_F(PreferencesTest, AmountsKeepFourDecimals) {
  TQuillonXMLPreferences Preferences(FFile);
  for (const auto& [Amount, Text] : std::vector<std::pair<std::int64_t, std::string>>{
           {125'000, "12.5"},
           {-1, "-0.0001"},
           {30'000, "3"},
           {std::numeric_limits<std::int64_t>::max(), "922337203685477.5807"},
           {std::numeric_limits<std::int64_t>::min(), "-922337203685477.5808"}}) {
    Preferences.WriteCurrency("a", Amount);
    EXPECT_EQ(Preferences.ReadString("a"), Text);
    EXPECT_EQ(Preferences.ReadCurrency("a"), Amount);
  }
  for (const char* None : {"", ".", "-", "1.2.3", "1.00001", "1.-5", "922337203685477.5808"}) {
    Preferences.WriteString("a", None);
    EXPECT_EQ(Preferences.ReadCurrency("a", 7), 7) << None;
  }
}

TEST_F(PreferencesTest, AFileThatWouldBeTooLargeToBeReadIsNotWritten) {
  Put("<Preferences><a Value=\"old\"/></Preferences>");
  {
    TQuillonXMLPreferences Preferences(FFile);
    Preferences.WriteString("a", std::string(std::size_t{17} << 20, 'x'));
    EXPECT_THROW(Preferences.FlushBuffer(), EQuillonException);
  }
  EXPECT_EQ(TQuillonXMLPreferences(FFile).ReadString("a"), "old");
}

TEST_F(PreferencesTest, NamesAreEscapedSoThatTheyComeBack) {
  for (const auto& [Name, Element] :
       std::vector<std::pair<std::string, std::string>>{{"Velmora 6", "Velmora_x0020_6"},
                                                        {"6", "_x0036_"},
                                                        {"a6-.ä", "a6-.ä"},
                                                        {"a:b", "a_x003A_b"},
                                                        {"_x0020_", "_x005F_x0020_"},
                                                        {"_x0041 ", "_x005F_x0041_x0020_"},
                                                        {"_x00", "_x00"},
                                                        {"x\U0010FFFFy", "x_xDBFF__xDFFF_y"}}) {
    EXPECT_EQ(QuillonXMLText::EscapeName(Name), Element);
    EXPECT_EQ(QuillonXMLText::UnescapeName(Element), Name);
  }
  EXPECT_EQ(QuillonXMLText::UnescapeName("_xD800_"), "_xD800_");
}

TEST_F(PreferencesTest, WhatTwoProgramsChangeIsAllKept) {
  TQuillonXMLPreferences A(FFile);
  TQuillonXMLPreferences B(FFile);
  A.OpenKey(Console, true);
  B.OpenKey(Console, true);
  A.WriteString("sdui", "1");
  A.WriteString("old", "1");
  A.FlushBuffer();
  B.WriteString("iserv", "2");
  B.FlushBuffer();
  EXPECT_EQ(B.ReadString("sdui"), "1");
  EXPECT_TRUE(B.DeleteValue("OLD"));
  EXPECT_FALSE(B.DeleteValue("OLD"));
  B.FlushBuffer();
  A.WriteString("sdui", "3");
  A.FlushBuffer();
  EXPECT_EQ(Stored("sdui"), "3");
  EXPECT_EQ(Stored("iserv"), "2");
  EXPECT_EQ(Stored("old"), "no value");
  EXPECT_TRUE(A.DeleteKey("/software"));
  A.FlushBuffer();
  EXPECT_EQ(Stored("iserv"), "no key");
}

TEST_F(PreferencesTest, ManyAtOnceLoseNothing) {
  constexpr int Programs = 4;
  constexpr int Rounds = 10;
  std::vector<std::thread> Threads;
  for (int Program = 0; Program < Programs; ++Program) {
    Threads.emplace_back([this, Program] {
      for (int Round = 0; Round < Rounds; ++Round) {
        TQuillonXMLPreferences Preferences(FFile);
        Preferences.WriteInteger("v" + std::to_string(Program * Rounds + Round), Round);
        Preferences.FlushBuffer();
      }
    });
  }
  for (std::thread& Thread : Threads) {
    Thread.join();
  }
  EXPECT_EQ(TQuillonXMLPreferences(FFile).GetValueNames().size(), std::size_t{Programs * Rounds});
  EXPECT_THAT(FFolder.Names(), ElementsAre("preferences.xml"));
}

TEST_F(PreferencesTest, AFailedFlushLeavesTheFileAndCanBeMadeAgain) {
  for (const bool IsThere : {true, false}) {
    FailingFiles Files;
    const Platform::FilesReplacement Replacement(Files);
    int Failures = 0;
    for (int Call = 1;; ++Call) {
      Files.FailFrom(1, 0, 0);
      std::filesystem::remove(FFile);
      if (IsThere) {
        Put("<Preferences><a Value=\"old\"/></Preferences>");
      }
      TQuillonXMLPreferences Preferences(FFile);
      Preferences.WriteString("a", "new");
      Files.FailFrom(Call, ENOSPC, 1);
      bool Failed = false;
      try {
        Preferences.FlushBuffer();
      } catch (const EQuillonException&) {
        Failed = true;
        ++Failures;
      }
      const bool Reached = Files.Calls() >= Call;
      Files.FailFrom(1, 0, 0);
      EXPECT_THAT(TQuillonXMLPreferences(FFile).ReadString("a", "none"),
                  ::testing::AnyOf("new", Failed ? (IsThere ? "old" : "none") : "new"));
      Preferences.FlushBuffer();
      EXPECT_EQ(TQuillonXMLPreferences(FFile).ReadString("a"), "new");
      if (!Reached) {
        break;
      }
    }
    EXPECT_GT(Failures, 2);
  }
}

TEST_F(PreferencesTest, ADamagedFileIsNamedAndLeftAlone) {
  std::string Deep = "<Preferences>";
  for (int Level = 0; Level < 100'000; ++Level) {
    Deep += "<a>";
  }
  for (int Level = 0; Level < 100'000; ++Level) {
    Deep += "</a>";
  }
  for (const std::string& Damaged :
       {std::string(), std::string("<Preferences><a>"), std::string("<Storage/>"), Deep + "</Preferences>"}) {
    Put(Damaged);
    try {
      const TQuillonXMLPreferences Preferences(FFile);
      ADD_FAILURE() << Damaged.substr(0, 40);
    } catch (const EQuillonException& Error) {
      EXPECT_THAT(Error.what(), HasSubstr(FFile));
    }
  }
  Put("<Preferences/>");
  TQuillonXMLPreferences Preferences(FFile);
  Preferences.WriteString("a", "b");
  Put("<Preferences>");
  EXPECT_THROW(Preferences.FlushBuffer(), EQuillonException);
  EXPECT_EQ(Content(), "<Preferences>");
  TQuillonXMLPreferences Fresh(FFile, true);
  Fresh.FlushBuffer();
  EXPECT_EQ(Content(), "<Preferences>");  // nothing was changed
  Fresh.WriteString("c", "d");
  Fresh.FlushBuffer();
  EXPECT_THAT(TQuillonXMLPreferences(FFile).GetValueNames(), ElementsAre("c"));
}

}  // namespace
