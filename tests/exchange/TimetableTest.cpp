#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "OcfExport.h"
#include "QuillonIO.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

using TRow = std::map<std::string, std::string>;

/// The records of a file, by column.
std::vector<TRow> Records(const std::string& AFile) {
  TQuillonMemoryStream Stream;
  Stream.Write(AFile);
  Stream.Seek(0, TQuillonSeekOrigin::Begin);
  TQuillonCSVReader Reader(Stream, false, 4096);
  const TQuillonCSVLine Names = Reader.ReadLine().value_or(TQuillonCSVLine());
  std::vector<TRow> Found;
  while (const auto Line = Reader.ReadLine()) {
    TRow& Row = Found.emplace_back();
    for (std::size_t I = 0; I < Names.size(); ++I) {
      Row[Names[I]] = I < Line->size() ? (*Line)[I] : "";
    }
  }
  return Found;
}

/// One cell of each record, by the last two digits of the identifier.
std::map<std::string, std::string> Cells(const std::string& AFile, const std::string& AColumn) {
  std::map<std::string, std::string> Found;
  for (const TRow& Row : Records(AFile)) {
    Found[Row.at("Id").substr(34)] = Row.at(AColumn);
  }
  return Found;
}

std::string Ids(const std::vector<std::string>& AnIds) {
  std::string Text;
  for (const std::string& AnID : AnIds) {
    Text += (Text.empty() ? "[\"" : ",\"") + Id(AnID) + "\"";
  }
  return Text + "]";
}

std::string Occurrence(const std::string& AStart, const std::string& AFinish) {
  return R"({"_type":"OneTime","Operation":"Include","StartTimepoint":")" + AStart +
         R"(:00.000+00:00","EndTimepoint":")" + AFinish + R"(:00.000+00:00"})";
}

/// Two weeks from Monday, 3 August 2026, and the timetable from the Wednesday before them on.
const std::string Fortnight =
    "<ValidFrom>2026-08-03</ValidFrom><ValidTo>2026-08-16</ValidTo>"
    "<TimetablePeriodFrom>2026-07-29</TimetablePeriodFrom><TimetablePeriodTo>2027-07-01</TimetablePeriodTo>";

std::string Weeks(std::initializer_list<int> AWeeks) {
  std::string Text(56, '0');
  for (const int Week : AWeeks) {
    Text[static_cast<std::size_t>(Week - 1)] = '1';
  }
  return "<Weeks>" + Text + "</Weeks>";
}

/// An appointment from 8:00 to 8:45 on a day, 0 for an unscheduled one.
std::string Appointment(std::string_view AnID, int ADay, const std::string& AMore = "") {
  return Item("Time", AnID,
              (ADay == 0 ? std::string()
                         : "<Start>2026-01-05T08:00:00.000Z</Start><End>2026-01-05T08:45:00.000Z</End><Weekday>" +
                               std::to_string(ADay) + "</Weekday>") +
                  "<SetDuration>1</SetDuration>" + AMore);
}

std::string Course(std::string_view AnID, const std::string& AnAppointments, const std::string& AMore = "") {
  return Item("Event", AnID, AMore + List("Times", AnAppointments));
}

const std::string OfSubject = Reference("Subject", "Subject", "51");

/// Subject 51, classes 61 and 62, teachers 71 and 72, rooms 81 and 82, student 91 of class 61.
std::string MasterData() {
  const auto Coded = [](std::string_view AClass, std::string_view AnID, const std::string& AMore = "") {
    return Item(AClass, AnID, "<Code>" + std::string(AnID) + "</Code>" + AMore);
  };
  return List("Subjects", Coded("Subject", "51")) +
         List("Classes",
              Coded("Class", "61", List("Students", Reference("Item", "Student", "91"))) + Coded("Class", "62")) +
         List("Teacher", Coded("Teacher", "71", "<Gender>0</Gender>") + Coded("Teacher", "72", "<Gender>0</Gender>")) +
         List("Rooms", Coded("Room", "81") + Coded("Room", "82"));
}

const std::string Students = List("Students", Item("Student", "91", "<Code>91</Code><Gender>0</Gender>"));

std::string Document(const std::string& ACourses, const std::string& AChanges, const std::string& AMore = "") {
  return ::Document(List("Changes", AChanges) + Settings(Fortnight) + MasterData() + List("Events", ACourses) + AMore);
}

/// A change on 10 August 2026 from 8:00 to 8:45, finished.
std::string Change(std::string_view AClass, std::string_view AnID, const std::string& AMore,
                   const std::string& AState = "1") {
  return Item(AClass, AnID,
              "<Start>2026-08-10T08:00:00.000Z</Start><End>2026-08-10T08:45:00.000Z</End><State>" + AState +
                  "</State>" + AMore);
}

std::string StandIn(std::string_view AnID, int AFeature, const std::string& AMore, const std::string& AState = "1") {
  return Change("Stand-in", AnID, "<StandInFeature>" + std::to_string(AFeature) + "</StandInFeature>" + AMore, AState);
}

class Timetable : public testing::Test {
 protected:
  TOcfExport Export;
};

TEST_F(Timetable, AWeekIsTakenFromThePeriodElseTheAppointmentElseTheCourse) {
  const std::string Period = Reference("Period", "Period", "A1");
  const std::string NoWeeks = Reference("Period", "Period", "A2");
  const std::string Courses =
      Course("01",
             Appointment("11", 2) + Appointment("12", 2, Weeks({3})) + Appointment("13", 2, Weeks({3}) + Period) +
                 Appointment("14", 0, Weeks({2, 3})) + Appointment("15", 7, Weeks({1, 3, 4, 56})) +
                 Appointment("16", 2, Weeks({3}) + NoWeeks),
             OfSubject + Weeks({2})) +
      Course("02", Appointment("21", 3) + Appointment("22", 0), OfSubject) +
      Course("03", Appointment("31", 5), OfSubject + "<Reoccur>0</Reoccur>");
  const std::string Periods =
      List("Periods", Item("Period", "A1", "<Code>P</Code>" + Weeks({2, 3})) + Item("Period", "A2", "<Code>Q</Code>"));
  const auto Weekly = [](const std::string& AStart, const std::string& AFinish) {
    return R"([{"_type":"Weekly","Operation":"Include","StartTimepoint":")" + AStart + R"(","EndTimepoint":")" +
           AFinish + R"(","ValidFrom":"2026-08-03","ValidTo":"2026-08-17"}])";
  };
  const std::string Second = Occurrence("2026-08-04T08:00", "2026-08-04T08:45");
  const std::string Third = Occurrence("2026-08-11T08:00", "2026-08-11T08:45");
  Export.Options().FOnlyScheduledLessons = false;
  EXPECT_THAT(Cells(Export.Run(Document(Courses, "", Periods))["ScheduledLessons.csv"], "TemporalExpressions"),
              UnorderedElementsAre(Pair("11", "[" + Second + "]"), Pair("12", "[" + Third + "]"),
                                   Pair("13", "[" + Second + "," + Third + "]"),
                                   // Unscheduled, so it has no time of day and stays on Monday.
                                   Pair("14", "[" + Occurrence("2026-08-03T00:00", "2026-08-03T00:00") + "," +
                                                  Occurrence("2026-08-10T00:00", "2026-08-10T00:00") + "]"),
                                   // The Sunday of week 1 lies ahead of the range, that of week 4 behind it.
                                   Pair("15", "[" + Occurrence("2026-08-16T08:00", "2026-08-16T08:45") + "]"),
                                   Pair("16", Weekly("2026-08-04T08:00:00.000+00:00", "2026-08-04T08:45:00.000+00:00")),
                                   Pair("21", Weekly("2026-08-05T08:00:00.000+00:00", "2026-08-05T08:45:00.000+00:00")),
                                   Pair("22", Weekly("2026-08-03T00:00:00.000+00:00", "2026-08-03T00:00:00.000+00:00")),
                                   Pair("31", "[" + Occurrence("2026-01-05T08:00", "2026-01-05T08:45") + "]")));
}

TEST_F(Timetable, WeeksOutsideOfTheRangeLeaveAnEmptyArray) {
  const std::string Courses = Course("01", Appointment("11", 1, Weeks({1, 5})), OfSubject);
  EXPECT_THAT(Cells(Export.Run(Document(Courses, ""))["ScheduledLessons.csv"], "TemporalExpressions"),
              ElementsAre(Pair("11", "[]")));
}

TEST_F(Timetable, TheAlternativeTimingReplacesDayAndTimes) {
  const std::string Alternative =
      "<AltStart>2026-01-05T10:00:00.000Z</AltStart><AltEnd>2026-01-06T00:00:00.000Z</AltEnd><AltWeekday>4</"
      "AltWeekday>";
  const auto Writer =
      Export.Open(Document(Course("01", Appointment("11", 1, Alternative), OfSubject + Weeks({2})), ""));
  Export.Plan().FAlternativeTiming = true;
  Writer->WriteScheduledLessons();
  Writer->PlaceSet();
  // Midnight stays on the day.
  EXPECT_THAT(Cells(Export.Files()["ScheduledLessons.csv"], "TemporalExpressions"),
              ElementsAre(Pair("11", "[" + Occurrence("2026-08-06T10:00", "2026-08-06T00:00") + "]")));
}

TEST_F(Timetable, WhatIsNotScheduledIsLeftOutOnlyWhereThatIsAskedFor) {
  const std::string Courses = Course("01", Appointment("11", 1) + Appointment("12", 0), OfSubject) +
                              Course("02", Appointment("21", 0), OfSubject) + Course("03", "", OfSubject) +
                              Course("04", Appointment("41", 1));
  const auto Told = [&](bool AnOnlyCourses, bool AnOnlyLessons) {
    Export.Options().FOnlyScheduledCourses = AnOnlyCourses;
    Export.Options().FOnlyScheduledLessons = AnOnlyLessons;
    auto Files = Export.Run(Document(Courses, ""));
    std::string Text;
    for (const char* Name : {"Courses.csv", "ScheduledLessons.csv"}) {
      for (const auto& [Found, Cell] : Cells(Files[Name], "Id")) {
        Text += Found + " ";
      }
    }
    return Text;
  };
  EXPECT_EQ(Told(true, true), "01 11 ");
  EXPECT_EQ(Told(true, false), "01 11 12 ");
  EXPECT_EQ(Told(false, true), "01 02 03 11 ");
  EXPECT_EQ(Told(false, false), "01 02 03 11 12 21 ");
}

TEST_F(Timetable, AnAdditionalLessonStandsAmongTheCoursesEvenIfItIsNeitherPublicNorInTheRange) {
  const std::string Hidden = "<NotPublic>1</NotPublic><Start>2020-01-01T08:00:00.000Z</Start>";
  const std::string Changes =
      Item("Stand-in", "01",
           Hidden +
               "<GapReason>7</GapReason><StandInTeacherFeature>2</StandInTeacherFeature><Information>T</Information>" +
               OfSubject + List("New", Reference("Item", "Class", "62") + Reference("Item", "Room", "82")) +
               List("Original", Reference("Item", "Class", "61") + Reference("Item", "Teacher", "71")) +
               List("Absent", Reference("Item", "Room", "81") + Reference("Item", "Room", "82"))) +
      Item("AdditionalLesson", "02",
           Hidden + "<CourseNo>3</CourseNo>" + OfSubject +
               List("Original", Reference("Item", "Class", "61") + Reference("Item", "Room", "81") +
                                    Reference("Item", "Class", "61") + Reference("Item", "Teacher", "72")) +
               List("New", Reference("Item", "Class", "62") + Reference("Item", "Room", "82"))) +
      Item("AdditionalLesson", "03", "<Information>without subject</Information>");
  const std::string Courses = Course("04", Appointment("41", 1), OfSubject);
  auto Files = Export.Run(Document(Courses, Changes, Students));
  const auto Course = Files["Courses.csv"];
  EXPECT_THAT(Cells(Course, "RoomIdList"),
              UnorderedElementsAre(Pair("04", ""), Pair("01", Ids({"81", "82"})), Pair("02", Ids({"81"}))));
  EXPECT_THAT(Cells(Course, "SchoolClassIdList"),
              UnorderedElementsAre(Pair("04", ""), Pair("01", Ids({"62"})), Pair("02", Ids({"61"}))));
  EXPECT_THAT(Cells(Course, "CourseNo"), UnorderedElementsAre(Pair("04", "0"), Pair("01", ""), Pair("02", "3")));
  const auto Lessons = Files["ScheduledLessons.csv"];
  EXPECT_THAT(Cells(Lessons, "Relevance"),
              UnorderedElementsAre(Pair("41", "Scheduled"), Pair("01", "Additional"), Pair("02", "Additional")));
  EXPECT_THAT(Cells(Lessons, "TeacherIdList"),
              UnorderedElementsAre(Pair("41", ""), Pair("01", Ids({"71"})), Pair("02", Ids({"72"}))));
  EXPECT_THAT(Records(Files["SubstituteLessons.csv"]), IsEmpty());
  EXPECT_THAT(Records(Files["LessonGaps.csv"]), IsEmpty());
  // Students come from the class that comes in: 62 has none, where 61 has one.
  EXPECT_THAT(Records(Files["StudentCourseAttendances.csv"]), IsEmpty());
  const auto Teachers = Records(Files["TeacherCourseAttendances.csv"]);
  ASSERT_EQ(Teachers.size(), 2U);
  EXPECT_EQ(Teachers[0].at("CourseId"), Id("01"));
  EXPECT_EQ(Teachers[1].at("TeacherId"), Id("72"));
}

TEST_F(Timetable, TeachersAreToldAsOftenAsTheyStandInTheListAndNowhereWithoutStudents) {
  const std::string Doubled = List("Rooms", Reference("Item", "Room", "81") + Reference("Item", "Room", "81")) +
                              List("Teacher", Reference("Item", "Teacher", "71") + Reference("Item", "Teacher", "71"));
  const std::string Courses =
      Course("01", Appointment("11", 1, Doubled),
             OfSubject + List("Classes", Reference("Item", "Class", "61") + Reference("Item", "Class", "61")) +
                 List("Teacher", Reference("Item", "Teacher", "71")));
  auto Files = Export.Run(Document(Courses, ""));
  const auto Lesson = Records(Files["ScheduledLessons.csv"]).at(0);
  EXPECT_EQ(Lesson.at("TeacherIdList"), Ids({"71", "71"}));
  EXPECT_EQ(Lesson.at("RoomIdList"), Ids({"81", "81"}));
  EXPECT_EQ(Lesson.at("SchoolClassIdList"), Ids({"61"}));
  EXPECT_EQ(Files.count("TeacherCourseAttendances.csv"), 0U);
  EXPECT_EQ(Records(Export.Run(Document(Courses, "", Students))["TeacherCourseAttendances.csv"]).size(), 1U);
}

TEST_F(Timetable, AGapTellsWhatTakesItsPlace) {
  const std::string Planned = Reference("Time", "Time", "11");
  const std::string New = List("New", Reference("Item", "Teacher", "72"));
  const auto Mirror = [](const char* AnID) { return Reference("MirrorChange", "Stand-in", AnID); };
  const std::string Changes = StandIn("21", 1, Planned + New) + StandIn("22", 7, Planned) + StandIn("23", 8, Planned) +
                              StandIn("24", 9, Planned) +
                              StandIn("25", 11,
                                      Planned + List("Absent", Reference("Item", "Teacher", "71")) +
                                          List("Original", Reference("Item", "Teacher", "71"))) +
                              StandIn("26", 0, Planned + New) + StandIn("27", 10, Planned + Mirror("21")) +
                              StandIn("28", 10, Planned + Mirror("30")) + StandIn("29", 10, Planned) +
                              // Open, so the lesson that was moved to it is told nowhere.
                              StandIn("30", 5, Planned + Mirror("28"), "0") + StandIn("31", 5, Planned + Mirror("27"));
  const auto Gaps =
      Records(Export.Run(Document(Course("01", Appointment("11", 1), OfSubject), Changes))["LessonGaps.csv"]);
  const auto Substitution = [](const char* AnID) {
    return R"([{"_type":"Substitution","SubstituteLessonId":")" + Id(AnID) + R"("}])";
  };
  const auto Cancellation = [](const char* AKind) {
    return R"([{"_type":"Cancellation","Behaviour":")" + std::string(AKind) + R"("}])";
  };
  std::vector<std::string> Resolutions;
  for (const TRow& Gap : Gaps) {
    EXPECT_EQ(Gap.at("LessonId"), Id("11"));
    Resolutions.push_back(Gap.at("Resolutions"));
  }
  // In the order of the features, then of the identifiers.
  EXPECT_THAT(Resolutions, ElementsAre("[]", Substitution("21"), Substitution("31"), Cancellation("LeaveRoom"),
                                       Cancellation("StayInRoom"), Cancellation("None"), Substitution("21"), "[{}]",
                                       Cancellation("None")));
}

TEST_F(Timetable, AClassThatIsAwayMakesASubstitutionThatDoesNothingTellItsGap) {
  const std::string Courses =
      Course("01", Appointment("11", 1), OfSubject + List("Classes", Reference("Item", "Class", "61")));
  const auto Gaps = [&](const std::string& AnAbsence) {
    const std::string Away =
        List("AbsenceTimes", Item("ClassAbsenceTime", "B1",
                                  "<Start>2026-08-10T00:00:00.000Z</Start><End>2026-08-11T00:00:00.000Z</End>" +
                                      AnAbsence + Reference("Class", "Class", "61")));
    std::string Text = Document(Courses, StandIn("21", 11, Reference("Time", "Time", "11")), Away);
    const std::string Class = "<Code>61</Code>";
    Text.insert(Text.find(Class) + Class.size(), List("AbsenceTimes", Reference("Item", "ClassAbsenceTime", "B1")));
    return Records(Export.Run(Text)["LessonGaps.csv"]).size();
  };
  EXPECT_EQ(Gaps(""), 1U);
  EXPECT_EQ(Gaps(Reference("Event", "Event", "01")), 1U);
  EXPECT_EQ(Gaps(Reference("Event", "Event", "02")), 0U) << "only another lesson of the class is missing";
}

}  // namespace
