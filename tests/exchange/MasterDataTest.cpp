#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OcfExport.h"
#include "QuillonDateTime.h"
#include "TestPlatform.h"

using testing::ElementsAre;
using testing::Key;
using testing::Pair;

namespace {

/// A local zone for the length of a test.
class MasterData : public testing::Test {
 protected:
  void SetUp() override {
    if (!SetZone("Europe/Berlin")) {
      GTEST_SKIP() << "this system's zone cannot be changed for a process";
    }
  }
  void TearDown() override { SetZone("UTC"); }

  static bool SetZone(const char* AName) {
    const bool IsSet = TestPlatform::SetLocalZone(AName);
    QuillonDateTime::ForgetLocalOffsets();
    return IsSet;
  }

  TOcfExport Export;
};

TEST_F(MasterData, AnEmptyPlanGivesTheManifestAlone) {
  EXPECT_THAT(Export.Run(Document(Settings())),
              ElementsAre(Pair("_Manifest.csv", "ValidFrom;\r\nValidTo;1899-12-31T00:00:00.000+01:00")));
}

TEST_F(MasterData, TheManifestEndsOnTheDayAfterTheLastValidOne) {
  const std::string Year = "<ValidFrom>2026-03-29</ValidFrom><ValidTo>2026-10-24</ValidTo>";
  EXPECT_EQ(Export.Run(Document(Settings(Year)))["_Manifest.csv"],
            "ValidFrom;2026-03-29T00:00:00.000+01:00\r\nValidTo;2026-10-25T00:00:00.000+02:00");
  if (!SetZone("Asia/Kolkata")) {
    GTEST_SKIP() << "this system's zone cannot be changed for a process";
  }
  EXPECT_EQ(Export.Run(Document(Settings(Year)))["_Manifest.csv"],
            "ValidFrom;2026-03-29T00:00:00.000+05:30\r\nValidTo;2026-10-25T00:00:00.000+05:30");
  if (!SetZone("America/St_Johns")) {
    GTEST_SKIP() << "this system's zone cannot be changed for a process";
  }
  EXPECT_EQ(Export.Run(Document(Settings(Year)))["_Manifest.csv"],
            "ValidFrom;2026-03-29T00:00:00.000-02:30\r\nValidTo;2026-10-25T00:00:00.000-02:30");
}

TEST_F(MasterData, RoomsTellColourFrameAndDepartments) {
  const std::string Rooms =
      Item("Room", "01",
           "<Code>A;B</Code><Name>say \"hi\"</Name><Color>8388863</Color><Comments>one\r\ntwo &#13;</Comments>" +
               List("Groups", Reference("Item", "Group", "11") + Reference("Item", "Group", "12") +
                                  Reference("Item", "Group", "11"))) +
      Item("Room", "02",
           "<Code>ÄÖ</Code><Color>-2147483633</Color><Capacity>30</Capacity>" +
               Reference("TimeFrame", "TimeFrame", "21")) +
      Item("Room", "03", "<Code/><Color>-16777203</Color>") +
      Item("Room", "04", "<Code>x</Code><Color>-2147483393</Color>");
  EXPECT_EQ(Export.Run(Document(Settings() + List("Rooms", Rooms)))["Rooms.csv"],
            "Id;Code;Name;Color;Notes;Capacity;TimeFrameId;DepartmentIdList\r\n" + Id("01") +
                ";\"A;B\";\"say \"\"hi\"\"\";#ff0080;\"one\ntwo \r\";0;" + Id("f1") + ";\"[\"\"" + Id("11") +
                "\"\",\"\"" + Id("12") + "\"\"]\"\r\n" + Id("02") + ";ÄÖ;;#f0f0f0;;30;" + Id("21") + ";\r\n" +
                Id("03") + ";;;#0078d7;;0;" + Id("f1") + ";\r\n" + Id("04") + ";x;;#000000;;0;" + Id("f1") + ";");
}

TEST_F(MasterData, TheStandardFrameComesFirstAndTwiceIfListed) {
  const std::string Rows = List("Rows", Item("TimeFrameRow", "31",
                                             "<Name>1 \"a\"\\</Name><Start>1899-12-30T07:45:00.000Z</Start>"
                                             "<End>1899-12-31T00:00:00.000Z</End>") +
                                            Item("TimeFrameRow", "32", "<Start>1899-12-30T00:00:00.000Z</Start>"));
  const std::string Frame =
      "<LessonsPerDay>8</LessonsPerDay><MinutesPerHour>45</MinutesPerHour><UnitsPerHour>1"
      "</UnitsPerHour><FirstHour>8</FirstHour><MorningLessonTo>6</MorningLessonTo>";
  const std::string Listed = Item("TimeFrame", "F1", "<Code>Std</Code>" + Frame + Rows) +
                             Item("TimeFrame", "41", "<Code>B</Code><Name>x</Name>" + Frame);
  const std::string Week = ";Saturday;Saturday, Sunday, Monday;";
  const std::string Standard =
      Id("f1") + ";Std;" + Week +
      R"("[{""Label"":""1 \""a\""\\"",""StartTime"":""1899-12-30T07:45:00.000+01:00"",""EndTime"":)"
      R"(""1899-12-31T00:00:00.000+01:00""},{""Label"":"""",""StartTime"":"""",""EndTime"":""""}]")";
  EXPECT_EQ(Export.Run(Document(Settings("<Weekend>1</Weekend><WeekStart>6</WeekStart>", Rows) +
                                List("TimeFrame", Listed)))["TimeFrames.csv"],
            "Id;Code;Description;StartOfWeek;ScopeOfWeek;TimeSlots\r\n" + Standard + "\r\n" + Standard + "\r\n" +
                Id("41") + ";B;x" + Week);
}

TEST_F(MasterData, ASetReplacesTheEarlierOneAndAnAbortedJobLeavesIt) {
  const std::string Groups = Document(Settings() + List("Groups", Item("Group", "01", "<Code>G</Code>")));
  Export.Run(Groups);
  EXPECT_THAT(Export.Run(Document(Settings())), ElementsAre(Key("_Manifest.csv")));
  const auto Writer = Export.Open(Groups);
  Writer->WriteManifest();
  Writer->WriteDepartments();
  Writer->Abort();
  Writer->WriteAll();
  EXPECT_THAT(Export.Files(), ElementsAre(Key("_Manifest.csv")));
}

TEST_F(MasterData, ALongIdListHoldsEachIdentifierOnce) {
  uOstrel::TIdList Ids;
  for (int Round = 0; Round < 2; ++Round) {
    for (std::uint8_t I = 1; I < 100; ++I) {
      TGUID Guid;
      Guid.Bytes[15] = I;
      Ids.Add(Guid);
    }
    Ids.Add(TGUID{});
  }
  EXPECT_EQ(Ids.Text().size(), 99 * (QuillonGuid::PlainLength + 3) + 1);
}

}  // namespace
