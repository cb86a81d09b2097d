#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "OcfExport.h"
#include "QuillonDateTime.h"

using testing::ElementsAre;
using testing::Key;
using testing::Pair;

namespace {

/// A local zone for the length of a test.
class MasterData : public testing::Test {
 protected:
  void SetUp() override { SetZone("Europe/Berlin"); }
  void TearDown() override { SetZone("UTC"); }

  static void SetZone(const char* AName) {
    setenv("TZ", AName, 1);
    tzset();
    QuillonDateTime::ForgetLocalOffsets();
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
  SetZone("Asia/Kolkata");
  EXPECT_EQ(Export.Run(Document(Settings(Year)))["_Manifest.csv"],
            "ValidFrom;2026-03-29T00:00:00.000+05:30\r\nValidTo;2026-10-25T00:00:00.000+05:30");
  SetZone("America/St_Johns");
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

TEST_F(MasterData, PeopleTellGenderBirthdateAndRelations) {
  const std::string Body =
      List("Teacher",
           Item("Teacher", "01",
                "<Code>Mü</Code><Gender>1</Gender><DateOfBirth>1960-02-29</DateOfBirth>"
                "<Surname>Müller</Surname><Title>Dr.</Title>") +
               Item("Teacher", "02", "<Code>Be</Code><Gender>7</Gender><DateOfBirth>1899-01-02</DateOfBirth>")) +
      List("Students",
           Item("Student", "03", "<Code>s</Code><Gender>2</Gender>" + Reference("Tutor", "Teacher", "01"))) +
      List("Classes", Item("Class", "04",
                           "<Code>5a</Code>" + Reference("Teacher2", "Teacher", "02") +
                               List("Students", Reference("Item", "Student", "03"))));
  auto Files = Export.Run(Document(Settings() + Body));
  EXPECT_EQ(
      Files["Teachers.csv"],
      "Id;Code;LastName;MiddleName;FirstName;Salutation;Gender;Birthdate;EmailAddress;MobileNumber;TeacherNo;Color;"
      "Notes;TimeFrameId;DepartmentIdList\r\n" +
          Id("01") + ";Mü;Müller;;;Dr.;Male;1960-02-29;;;;;;" + Id("f1") + ";\r\n" + Id("02") +
          ";Be;;;;;;1899-01-02;;;;;;" + Id("f1") + ";");
  EXPECT_EQ(Files["Students.csv"],
            "Id;Code;LastName;MiddleName;FirstName;Gender;Birthdate;EmailAddress;MobileNumber;Locality;PostalCode;"
            "AddressLines;TutorId;Notes\r\n" +
                Id("03") + ";s;;;;Female;;;;;;;" + Id("01") + ";");
  EXPECT_EQ(Files["SchoolClasses.csv"],
            "Id;Code;Description;Notes;Color;SchoolClassNo;Teacher1Id;Teacher2Id;DepartmentId;RoomId;TimeFrameId;"
            "StudentIdList\r\n" +
                Id("04") + ";5a;;;;;;" + Id("02") + ";;;" + Id("f1") + ";\"[\"\"" + Id("03") + "\"\"]\"");
  // python3 -c 'import uuid; print(uuid.uuid5(uuid.NAMESPACE_OID, "{...04}{...03}"))', braced and in upper case
  EXPECT_EQ(Files["StudentSchoolClassAttendances.csv"],
            "Id;StudentId;SchoolCLassId\r\n10cc97fd-4cfd-5375-8c4d-dc990541db4a;" + Id("03") + ";" + Id("04"));
}

TEST_F(MasterData, AbsencesOfOneKindLeaveTheOtherFilesWithTheirHeaders) {
  const auto Absence = [](std::string_view AnID, std::string_view ADay) {
    return Item("RoomUnavailableTime", AnID,
                "<Start>" + std::string(ADay) + "T08:00:00.000Z</Start><Comment>c</Comment>" +
                    Reference("AbsenceReason", "RoomUnavailableReason", "51") + Reference("Room", "Room", "61"));
  };
  auto Files = Export.Run(
      Document(Settings() + List("AbsenceTimes", Absence("01", "2026-09-01") + Absence("02", "2026-12-01"))));
  const std::string Columns = "StartTimepoint;EndTimepoint;ReasonId;Description";
  EXPECT_EQ(Files["TeacherAbsences.csv"], "Id;TeacherId;" + Columns);
  EXPECT_EQ(Files["SchoolClassAbsences.csv"], "Id;SchoolClassId;" + Columns);
  EXPECT_EQ(Files["RoomAbsences.csv"], "Id;RoomId;" + Columns + "\r\n" + Id("02") + ";" + Id("61") +
                                           ";2026-12-01T08:00:00.000+01:00;;" + Id("51") + ";c\r\n" + Id("01") + ";" +
                                           Id("61") + ";2026-09-01T08:00:00.000+02:00;;" + Id("51") + ";c");
}

TEST_F(MasterData, HolidaysAreTheEntriesFreeOfLessons) {
  const std::string Entries = Item("CalendarEvent", "01",
                                   "<Start>2026-12-23T00:00:00.000Z</Start><End>2027-01-06T12:30:00.500Z"
                                   "</End><Display>W</Display><Description>\"a b\",c</Description>") +
                              Item("CalendarEvent", "02", "<FreePeriod>0</FreePeriod>");
  EXPECT_EQ(
      Export.Run(Document(Settings() + "<Calendar Class=\"Calendar\" ID=\"{00000000-0000-0000-0000-0000000000E0}\">" +
                          List("Entries", Entries) + "</Calendar>"))["Holidays.csv"],
      "Id;Title;Description;TemporalExpressions\r\n" + Id("01") +
          ";W;\"a b\r\nc\";\"[{\"\"_type\"\":\"\"OneTime\"\",\"\"Operation\"\":\"\"Include\"\",\"\"StartTimepoint\"\":"
          "\"\"2026-12-23T00:00:00.000+01:00\"\",\"\"EndTimepoint\"\":\"\"2027-01-06T12:30:00.500+01:00\"\"}]\"");
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
