#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <utility>

#include "Growth.h"
#include "compute/PlanFixture.h"
#include "platform/Clock.h"
#include "uJSONExport/JSONExport.h"
#include "uJSONExport/UserData.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Besitzer.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Gebaeude.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// Shows one moment, in a zone an hour east of UTC.
class TStoppedClock final : public Platform::Clock {
 public:
  explicit TStoppedClock(std::string_view AText) : FLocal(At(AText).ToUnixTime()) {}
  std::int64_t UtcMilliseconds() override { return (FLocal - Hour) * 1000; }
  int OffsetAt(std::int64_t /*AnInstant*/) override { return Hour; }

 private:
  static constexpr int Hour = 3600;
  std::int64_t FLocal;
};

/// Ada teaches class 5a maths in room R1 of building B, on Mondays. Bob, 5b, R2, Ph and building C are there besides.
class Publication : public testing::Test {
 protected:
  Publication() {
    Plan.Settings().FGueltigVon = At("2026-08-03");
    Plan.Settings().FGueltigBis = At("2026-08-30");
    Lesson.FFach = &Maths;
    Lesson.FKlassen.Add(&Class);
    Monday.FLehrer.Add(&Ada);
    Monday.FRaeume.Add(&Room);
    Room.FGebaeude = &Building;
    Named<TVELGebaeude>(Plan->FGebaeude, "C");
    Export.XMLTypes = {xmlLessons, xmlChanges, xmlAbsences};
    Export.DataTypes = {dtAlle};
  }

  template <class T>
  T& Named(TQuillonDataList& AList, const char* ACode) {
    T& Object = Plan.Add<T>(AList);
    Object.FKuerzel = ACode;
    return Object;
  }

  static std::string Id(const TVELDataObject& AnObject) { return QuillonGuid::Plain(AnObject.ID()); }

  TVELVertretung& Substitution(const char* ADay) {
    auto& Change = Plan.Change<TVELVertretung>(Span(std::string(ADay) + "T08:00", std::string(ADay) + "T08:45"));
    Change.FATermin = &Monday;
    Change.FAenderungsstatus = aePublished;
    Change.FVertretungsmerkmal = vmAenderung;
    Change.FModified = At("2026-08-01T12:34:56");
    return Change;
  }

  /// The text of the document of the whole school, as it is saved.
  std::string Saved() {
    TQuillonMemoryStream Stream;
    Export.SaveJSONToStream(Stream);
    return Stream.Content();
  }
  /// "result" of the document with dates.
  json Dated(const char* AStart = "2026-08-17", const char* AFinish = "2026-08-30") {
    return json::parse("{" + Export.CreateJSONText(At(AStart), At(AFinish)) + "}")["result"];
  }
  json Lessons() { return Dated()["displaySchedule"].value("lessonTimes", json::array()); }
  static std::vector<std::string> Codes(const json& AResult, const char* AList) {
    std::vector<std::string> Codes;
    for (const json& Item : AResult.value(AList, json::array())) {
      Codes.push_back(Item.value("code", "?"));
    }
    return Codes;
  }

  TStoppedClock Clock{"2026-08-20T13:05"};
  Platform::ClockReplacement Replacement{Clock};
  TPlanFixture Plan{"2026-08-03", "2026-08-30"};
  TVELLehrer& Ada = Named<TVELLehrer>(Plan->FLehrer, "Ada");
  TVELLehrer& Bob = Named<TVELLehrer>(Plan->FLehrer, "Bob");
  TVELKlasse& Class = Named<TVELKlasse>(Plan->FKlassen, "5a");
  TVELKlasse& Other = Named<TVELKlasse>(Plan->FKlassen, "5b");
  TVELRaum& Room = Named<TVELRaum>(Plan->FRaeume, "R1");
  TVELRaum& OtherRoom = Named<TVELRaum>(Plan->FRaeume, "R2");
  TVELFach& Maths = Named<TVELFach>(Plan->FFaecher, "Ma");
  TVELFach& Physics = Named<TVELFach>(Plan->FFaecher, "Ph");
  TVELGebaeude& Building = Named<TVELGebaeude>(Plan->FGebaeude, "B");
  TVELVeranstaltung& Lesson = Plan.Lesson();
  TVELTermin& Monday = Plan.Weekly(Lesson, velMonday);
  TVELJSONExport Export{*Plan};
};

TEST_F(Publication, IsOneLineWithTheTimetableOfAllWeeks) {
  Plan->FBesitzer->FName1 = "A \"B\"";
  Plan->FBesitzer->FName3 = "C\\D";
  Export.AlleWochen = true;
  Plan->FFileVersion = 7;
  const std::string Text = Saved();
  EXPECT_THAT(Text, testing::StartsWith("\xEF\xBB\xBF"
                                        R"({"about":{"eTag":"7","schemaVersion":"0","server":"Velmora",)"
                                        R"("serverVersion":"Version 6.0.0.0","serverTimeStamp":"20260820 1305",)"
                                        R"("ownerName":"A \"B\", C\\D"},"result":{"teacherAbsenceReasons":[],)"
                                        R"("classAbsenceReasons":[],"roomAbsenceReasons":[],"timeframes":[{)"));
  EXPECT_THAT(Text, testing::EndsWith("}}\r\n"));
  EXPECT_THAT(Text, HasSubstr(R"("firstLesson":"2026-08-03T08:00:00.000Z","displaySchedule":{"scheduleID":)"));
  EXPECT_THAT(Text, HasSubstr(R"("lessonTimes":[{"courseTitle":"Ma","lessonRef":")" + Id(Monday) +
                              R"(","courseRef":")" + Id(Lesson) +
                              R"(","weekday":"1","startTime":"0800","endTime":"0845","subjectCode":"Ma",)"
                              R"("classCodes":["5a"],"teacherCodes":["Ada"],"roomCodes":["R1"],)"
                              R"("buildingCodes":["B"]}],"eventTimes":[]},"courses":[{"id":)"));
  const json Result = json::parse(Text.substr(3))["result"];
  for (const auto& [List, Wanted] :
       std::initializer_list<std::pair<const char*, std::vector<std::string>>>{{"teachers", {"Ada"}},
                                                                               {"rooms", {"R1"}},
                                                                               {"subjects", {"Ma"}},
                                                                               {"classes", {"5a"}},
                                                                               {"buildings", {"B", "C"}},
                                                                               {"students", {}},
                                                                               {"teams", {}}}) {
    EXPECT_EQ(Codes(Result, List), Wanted) << List;
  }
  EXPECT_EQ(Export.ETag, 7);
  EXPECT_EQ(Export.GetJSONText(), "");
}

TEST_F(Publication, WritesTextsWithTheirEscapesAndLeavesOutWhatIsAbsent) {
  TQuillonJSONObject Node;
  TVELJSONExport::AddNode(Node, "a", "tab\tline\nform\freturn\rquote\"back\\\v\xC3\xA4/");
  TVELJSONExport::AddNode(Node, "b", "");
  TVELJSONExport::AddNode(Node, "c", "\r");
  TVELJSONExport::AddNumber(Node, "d", -1, -1);
  TVELJSONExport::AddNumber(Node, "e", 0, -1);
  TVELJSONExport::AddBoolean(Node, "f", false, false);
  TVELJSONExport::AddBoolean(Node, "g", false, true);
  TVELJSONExport::AddDateTime(Node, "h", 0, 0);
  TVELJSONExport::AddDateTime(Node, "i", At("2026-08-03T07:05:09"), 0);
  EXPECT_EQ(Node.ToString(), R"({"a":"tab\tline\nform\rreturnquote\"back\\)"
                             "\v\xC3\xA4/"
                             R"(","e":0,"g":false,"i":"20260803070509"})");
  Ada.FKuerzel = "A\x01\v";
  const json Result = Dated();
  EXPECT_EQ(Result["teachers"][0]["code"], "A") << "a document is always JSON";
  EXPECT_EQ(Result["displaySchedule"]["lessonTimes"][0]["teacherCodes"], json({"A"}));
}

TEST_F(Publication, KeepsItsRangeWithinThePlan) {
  for (const auto& [Start, Finish, WantedStart, WantedFinish] :
       {std::array{"2026-08-27", "2026-08-28", "2026-08-10", "2026-08-28"},
        {"2026-08-10", "2026-09-01", "2026-08-03", "2026-08-30"},
        {"0000-00-00", "0000-00-00", "2026-08-03", "2026-08-30"}}) {
    Export.CreateJSONData(At(Start), At(Finish));
    EXPECT_EQ(Show(Export.Start), WantedStart) << Start;
    EXPECT_EQ(Show(Export.Finish), WantedFinish) << Finish;
  }
}

TEST_F(Publication, TellsWhatASubstitutionChanges) {
  auto& Change = Substitution("2026-08-10");
  Change.FNeu.Add(&Bob);
  Change.FNeuesFach = &Physics;
  Change.FInformation = "Bitte leise";
  Change.FFehlzeit = &Plan.Absence<TVELLehrerfehlzeit>(Ada, Span("2026-08-10", "2026-08-11"));
  const json Items = Lessons();
  ASSERT_EQ(Items.size(), 2U);
  const json& Plain = Items[0];
  EXPECT_EQ(Plain["dates"], json::parse(R"(["20260803","20260817","20260824"])"));
  EXPECT_FALSE(Plain.contains("weekday") || Plain.contains("changes"));
  const json& Changed = Items[1];
  EXPECT_EQ(Changed["dates"], json::parse(R"(["20260810"])"));
  EXPECT_EQ(Changed["newSubjectCode"], "Ph");
  EXPECT_EQ(Changed["changes"], json::parse(R"j({"caption":"Vertreten","changeType":0,"newTeacherCodes":["Bob"],
      "absentTeacherCodes":["Ada"],"reasonType":"teacherAbsence","information":"Bitte leise",
      "lessonTitle":"+Ph (Ma)","modified":"20260801123456"})j"));
  Plan.Settings().FFehlgruendeAnzeigen = paAbsent;
  Export.Art = Export.Information = false;
  const json Hidden = Lessons()[1]["changes"];
  EXPECT_EQ(Hidden["reasonCode"], "abwesend");
  EXPECT_FALSE(Hidden.contains("caption") || Hidden.contains("information"));
  EXPECT_FALSE(Dated().contains("teacherAbsenceReasons"));
}

TEST_F(Publication, NumbersKindsOfChangesAndSaysWhatIsCancelled) {
  struct TCase {
    TVELVertretungsmerkmal Feature;
    TVELFehlstellengrund Reason;
    int Type;
    const char* Cancelled;
  };
  for (const TCase& Case : {TCase{vmFaelltAus, vaKein, 0, "lessonCancelled"},
                            {vmKlasseFrei, vaKein, 0, "classFree"},
                            {vmEntfaellt, vaKein, 0, "substititonCancelled"},
                            {vmKlasseFehlt, vaKein, 8, ""},
                            {vmWeggezogen, vaKein, 0, "movedAway"},
                            {vmEntfaellt, vaWeggezogen, 0, "movedAway"}}) {
    auto& Change = Substitution("2026-08-10");
    Change.FVertretungsmerkmal = Case.Feature;
    Change.FFehlstellengrund = Case.Reason;
    Change.FVertretungsentfall = &Plan.Add<TVELVertretungsentfall>(Plan->FVerzeichnisse->FVertretungsentfaelle);
    Change.FVertretungsentfall->FKuerzel = "HIT";
    Change.FNeuesTerminDatum = At("2026-08-12T09:00");
    const json Changes = Lessons()[1]["changes"];
    EXPECT_EQ(Changes["changeType"], Case.Type) << Case.Feature;
    EXPECT_EQ(Changes.value("cancelled", ""), Case.Cancelled) << Case.Feature;
    EXPECT_EQ(Changes.contains("cancelReasonCode"), *Case.Cancelled != '\0') << Case.Feature;
    EXPECT_EQ(Changes.value("newDate", ""), Case.Feature == vmWeggezogen ? "20260812" : "") << Case.Feature;
    Plan->FAenderungen.Remove(&Change);
  }
}

TEST_F(Publication, ShowsAMessageOnEachSchoolDay) {
  auto& Message = Plan.Change<TVELMitteilung>(Span("2026-08-14", "2026-08-17"));
  Message.FAlleKlassen = true;
  Message.FMitteilung = "Fototermin";
  std::vector<std::string> Days;
  for (const json& Item : Lessons()) {
    if (Item.contains("changes")) {
      Days.push_back(Item["dates"][0].get<std::string>() + " " + Item["startTime"].get<std::string>() + "-" +
                     Item["endTime"].get<std::string>());
      EXPECT_EQ(Item["changes"]["changeType"], 4);
      EXPECT_FALSE(Item.contains("classCodes") || Item.contains("lessonRef") || Item.contains("courseRef"));
    }
  }
  EXPECT_THAT(Days, ElementsAre("20260814 0000-2400", "20260817 0000-2400"));
}

TEST_F(Publication, KeepsWhatIsNotPublicToItself) {
  Ada.FNachname = "Lovelace";
  Lesson.FSchueler.Add(&Named<TVELSchueler>(Plan->FSchueler, "Pupil"));
  Plan.Absence<TVELLehrerfehlzeit>(Ada, Span("2026-08-10", "2026-08-11")).FNotPublic = true;
  Plan.Absence<TVELLehrerfehlzeit>(Ada, Span("2026-08-17", "2026-08-18")).FBemerkung = "Tagung";
  Export.NoTeacher = true;
  const json Result = Dated();
  ASSERT_EQ(Result["teacherAbsences"].size(), 1U);
  EXPECT_EQ(Result["teacherAbsences"][0]["note"], "Tagung");
  EXPECT_EQ(Result["teacherAbsences"][0]["teacherRef"], Id(Ada));
  EXPECT_FALSE(Result["teachers"][0].contains("lastName"));
  EXPECT_FALSE(Result.contains("students"));
  EXPECT_EQ(Result["displaySchedule"]["lessonTimes"][0]["dates"], json::parse(R"(["20260803","20260810","20260824"])"));

  Export.StudentNames = true;
  Export.Planobjekt = &Ada;
  const json Own = Dated();
  EXPECT_EQ(Own["courses"][0]["studentRefs"][0], Own["students"][0]["id"]);
}

TEST_F(Publication, LeavesOpenAbsencesAwayWhereTheyAreNotAskedFor) {
  Plan.Absence<TVELLehrerfehlzeit>(Ada, Span("2026-08-10", "2026-08-11"));
  const auto Missing = [&] {
    json Codes = json::array();
    for (const json& Item : Lessons()) {
      Codes.push_back(Item.contains("changes"));
    }
    return Codes;
  };
  EXPECT_EQ(Missing(), json({false, true}));
  Export.OffeneFehlzeiten = false;
  EXPECT_EQ(Missing(), json({false, false}));
}

TEST_F(Publication, FollowsTheProfilesOfItsReaders) {
  TVELJSONUserData User;
  Export.UserData = &User;
  struct TCase {
    int Policy;
    const char* Flags;
  };
  // Admin, teacher names, only substitutions, all substitutions, all lessons, open absences, filtering.
  for (const TCase& Case : {TCase{3, "......F"},
                            {4, "......F"},
                            {10, "..sS..."},
                            {2, "....L.."},
                            {5, "....LO."},
                            {14, "...SLO."},
                            {12, "....L.."},
                            {9, "An..LO."}}) {
    User.UserPolicies = {Case.Policy};
    Export.CreateJSONData(0, 0);
    std::string Flags;
    for (const auto& [Flag, Letter] : {std::pair{Export.Admin, 'A'},
                                       {!Export.NoTeacher, 'n'},
                                       {Export.SubstitutionsOnly, 's'},
                                       {Export.AllSubstitutions, 'S'},
                                       {Export.AllLessons, 'L'},
                                       {Export.OffeneFehlzeiten, 'O'},
                                       {Export.Filtering, 'F'}}) {
      Flags.push_back(Flag ? Letter : '.');
    }
    EXPECT_EQ(Flags, Case.Flags) << Case.Policy;
  }
  User.UserPolicies = {4};
  User.UserProfils = {&Other};
  User.TeacherNamesPolicy = 2;
  EXPECT_THAT(Lessons(), IsEmpty());
  EXPECT_FALSE(Export.NoTeacher);
  EXPECT_THAT(Codes(Dated(), "classes"), ElementsAre("5b"));
  User.UserProfils = {&Class};
  EXPECT_EQ(Lessons().size(), 1U);
}

TEST_F(Publication, TellsWhoTheReaderIs) {
  auto& Student = Named<TVELSchueler>(Plan->FSchueler, "Pupil");
  Student.FSchuelerNr = "17";
  Student.FKlasse = &Class;
  TVELJSONUserData User;
  const auto Written = [&] {
    TQuillonJSONObject Node;
    User.Write_User(Node);
    return Node.ToString();
  };
  EXPECT_EQ(Written(), "{}");
  User.UserPolicies = {3};
  User.UserProfils = {&Student};
  User.LogButtonPolicy = 2;
  const std::string Home = R"("homeId":")" + Id(Student) + R"(","homeType":"student")";
  EXPECT_EQ(Written(), R"({"user":{"profile":"student",)" + Home +
                           R"(,"policy":3,"logbutton":true,"studentNo":"17","classCode":"5a"}})");
  User.UserPolicies = {3, 0};
  EXPECT_EQ(Written(), R"({"users":[{"profile":"student",)" + Home +
                           R"(,"studentNo":"17","classCode":"5a"},{"profile":"guest"}]})");
}

TEST_F(Publication, FoldsTheDatesOfASupervision) {
  for (const char* const Start : {"08:00", "09:05"}) {
    auto& Row = Plan.Add<TVELZeitrahmenzeile>(Plan.Settings().FZeitrahmen->FZeilen);
    Row.FStart = uDataUtils::TimeOf(At("2026-01-01T" + std::string(Start)));
    Row.FEnde = Row.FStart + 45.0 / 1440;
  }
  auto& Yard = Named<TVELAufsichtsbereich>(Plan->FAufsichtsbereiche, "Hof");
  auto& Duty = Plan.Add<TVELAufsicht>(Yard.FAufsichten);
  Duty.FWochentag = velSunday;
  Duty.FStart = At("2020-01-05T08:45");
  Duty.FEnde = At("2020-01-05T09:05");
  Duty.SetLehrer(&Ada);
  auto& Change = Plan.Change<TVELAufsichtsVertretung>(Span("2026-08-16T08:45", "2026-08-16T09:05"));
  Change.FATermin = &Duty;
  Change.FNeu.Add(&Bob);
  Change.FAenderungsstatus = aePublished;
  const json Items = Dated()["displaySchedule"]["supervisionTimes"];
  ASSERT_EQ(Items.size(), 2U);
  EXPECT_EQ(Items[0], json({{"dates", {"20260809", "20260823", "20260830"}},
                            {"startTime", "0845"},
                            {"endTime", "0905"},
                            {"supervisionTitle", "Hof"},
                            {"supervisionRef", Id(Duty)},
                            {"areaCode", "Hof"},
                            {"teacherCodes", {"Ada"}}}));
  EXPECT_EQ(Items[1]["supervisionTitle"], "(Hof) +Bob");
  EXPECT_EQ(Items[1]["changes"],
            json::parse(R"({"changeType":5,"newTeacherCodes":["Bob"],"absentTeacherCodes":["Ada"]})"));
  Export.Planobjekt = &Bob;
  EXPECT_EQ(Dated()["displaySchedule"]["supervisionTimes"][0]["supervisionTitle"], "(Hof)+Bob");
  Export.AlleWochen = true;
  EXPECT_THAT(Saved(), HasSubstr(R"("supervisionTimes":[{"weekday":0,"startTime":"0845")"));
}

TEST_F(Publication, ShowsOnlyWhatBelongsToTheChosenTeams) {
  auto& Team = Named<TVELTeam>(Plan->FTeams, "T");
  Named<TVELTeam>(Plan->FTeams, "U");
  Ada.FTeams.Add(&Team);
  Room.FTeams.Add(&Team);
  Export.Auswahl.Append(&Team);
  const json Result = Dated();
  EXPECT_EQ(Result["displaySchedule"]["lessonTimes"].size(), 1U);
  EXPECT_THAT(Codes(Result, "teachers"), ElementsAre("Ada"));
  EXPECT_THAT(Codes(Result, "rooms"), ElementsAre("R1"));
  EXPECT_THAT(Codes(Result, "classes"), IsEmpty());
  EXPECT_THAT(Codes(Result, "teams"), ElementsAre("T", "U"));
  Ada.FNichtVerfuegbar = true;
  EXPECT_THAT(Lessons(), IsEmpty());
}

TEST_F(Publication, ListsSubstitutionsWithoutTheTimetable) {
  Export.XMLTypes = {xmlChanges};
  Export.AllSubstitutions = true;
  Substitution("2026-08-10").FNeu.Add(&Bob);
  EXPECT_EQ(Lessons().size(), 1U);
  Export.AllSubstitutions = false;
  EXPECT_THAT(Lessons(), IsEmpty());
}

TEST_F(Publication, GrowsWithWhatItTellsOfOneAppointment) {
  Export.XMLTypes = {xmlLessons, xmlChanges};
  const auto FillUp = [](const TQuillonDataList& AList, int ASize, const auto& AnAdd) {
    while (AList.Count() < ASize) {
      AnAdd();
    }
  };
  EXPECT_LT(Growth(800,
                   [&](int ASize) {
                     FillUp(Plan->FAenderungen, ASize, [&] { Substitution("2026-08-24").FNeu.Add(&Bob); });
                     return Seconds([&] { Dated(); });
                   }),
            QuadraticGrowth)
      << "changes of one day";
  Plan->FAenderungen.Clear();
  EXPECT_LT(Growth(500,
                   [&](int ASize) {
                     FillUp(Plan->FLehrer, ASize,
                            [&] { Monday.FLehrer.Append(&Named<TVELLehrer>(Plan->FLehrer, "T")); });
                     return Seconds([&] { Saved(); });
                   }),
            QuadraticGrowth)
      << "teachers of one appointment";
}

}  // namespace
