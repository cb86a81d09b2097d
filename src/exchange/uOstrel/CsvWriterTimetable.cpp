#include "QuillonDateTime.h"
#include "uDataUtils/Context.h"
#include "uDataUtils/Spans.h"
#include "uOstrel/Columns.h"
#include "uOstrel/CourseColumns.h"
#include "uOstrel/CsvWriter.h"
#include "uOstrel/LessonGaps.h"
#include "uOstrel/Lessons.h"
#include "uOstrel/SubstituteLessons.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

using uOstrel::TCsvFile;
using uOstrel::TExportScope;

namespace {

/// The items of class T of a list of several classes.
template <class T>
std::vector<const TVELPlanobjekt*> ItemsOf(const TVELPlanobjektliste& AList) {
  std::vector<const TVELPlanobjekt*> Found;
  for (const TVELPlanobjekt* Item : AList) {
    if (uDataObjects::As<T>(Item) != nullptr) {
      Found.push_back(Item);
    }
  }
  return Found;
}

std::vector<const TVELPlanobjekt*> TeachersOf(const TVELAenderung& AChange) {
  return ItemsOf<TVELLehrer>(AChange.FOriginal);
}

/// The students that are named, or all of the classes that are.
std::vector<const TVELPlanobjekt*> StudentsOf(const TVELAenderung& AChange) {
  std::vector<const TVELPlanobjekt*> Students = ItemsOf<TVELSchueler>(AChange.FOriginal);
  if (Students.empty()) {
    for (const TVELKlasse* Class : uOstrel::ChangedClasses(&AChange.FOriginal, &AChange.FNeu)) {
      Students.insert(Students.end(), Class->FSchueler.begin(), Class->FSchueler.end());
    }
  }
  return Students;
}

}  // namespace

/// What tells the two files about who attends a course apart.
struct TVELOstrelCsvWriter::TAttendances {
  uOstrel::TFileName FileName;
  std::string_view ObjectColumn;
  const TVELPlanobjektliste& (*OfCourse)(const TVELVeranstaltung& ACourse);
  std::vector<const TVELPlanobjekt*> (*OfChange)(const TVELAenderung& AChange);
};

TExportScope TVELOstrelCsvWriter::Scope() {
  if (!FContext) {
    FContext.emplace(FPlan, uDataUtils::DayOf(QuillonDateTime::Now()));
  }
  return {.Plan = *FContext,
          .OnlyScheduledCourses = Options().FOnlyScheduledCourses,
          .OnlyScheduledLessons = Options().FOnlyScheduledLessons,
          .ValidFrom = FValidFrom};
}

template <class TWrite>
void TVELOstrelCsvWriter::ForEachCourse(const TWrite& AWrite) const {
  for (const TVELVeranstaltung* Course : FPlan.FVeranstaltungen) {
    if (FAborted) {
      return;
    }
    if (Course->FFach != nullptr && (!Options().FOnlyScheduledCourses || uOstrel::IsScheduled(*Course))) {
      AWrite(*Course);
    }
  }
}

template <class TWrite>
void TVELOstrelCsvWriter::ForEachAdditionalLesson(const TWrite& AWrite) const {
  for (const TVELAenderung* Change : FPlan.FAenderungen) {
    if (FAborted) {
      return;
    }
    if (uOstrel::IsAdditionalLesson(*Change)) {
      AWrite(*Change);
    }
  }
}

void TVELOstrelCsvWriter::WriteCourses() {
  if (FAborted || FPlan.FVeranstaltungen.IsEmpty()) {
    return;
  }
  TCsvFile File = OpenFile("Courses.csv");
  const auto Columns = uOstrel::CourseColumns();
  uOstrel::WriteHeader(File, Columns);
  auto Skipped = static_cast<std::uint64_t>(FPlan.FVeranstaltungen.Count());
  ForEachCourse([&](const TVELVeranstaltung& ACourse) {
    uOstrel::WriteRow(File, Columns, ACourse);
    --Skipped;
  });
  FGlobals.Report().File("Courses.csv").Skipped = FAborted ? 0 : Skipped;
  ForEachAdditionalLesson([&](const TVELAenderung& AChange) { uOstrel::WriteChange(File, Columns, AChange); });
  File.Close();
}

void TVELOstrelCsvWriter::WriteScheduledLessons() {
  if (FAborted || FPlan.FVeranstaltungen.IsEmpty()) {
    return;
  }
  TCsvFile File = OpenFile("ScheduledLessons.csv");
  const auto Columns = uOstrel::ScheduledLessonColumns();
  uOstrel::WriteHeader(File, Columns);
  std::uint64_t Skipped = 0;
  for (const TVELVeranstaltung* Course : FPlan.FVeranstaltungen) {
    Skipped += static_cast<std::uint64_t>(Course->FTermine.Count());
  }
  ForEachCourse([&](const TVELVeranstaltung& ACourse) {
    for (const TVELTermin* Appointment : ACourse.FTermine) {
      if (!Options().FOnlyScheduledLessons || Appointment->Scheduled()) {
        const std::string Times = uOstrel::AppointmentTime(Scope().Plan, *Appointment, FValidFrom, FValidTo);
        uOstrel::WriteRow(File, Columns, {.Appointment = *Appointment, .Times = Times});
        --Skipped;
      }
    }
  });
  FGlobals.Report().File("ScheduledLessons.csv").Skipped = FAborted ? 0 : Skipped;
  ForEachAdditionalLesson([&](const TVELAenderung& AChange) { uOstrel::WriteChange(File, Columns, AChange); });
  File.Close();
}

void TVELOstrelCsvWriter::WriteCourseAttendances(const TAttendances& AnAttendances) {
  // Students decide about the file of the teachers too.
  if (FAborted || FPlan.FVeranstaltungen.IsEmpty() || FPlan.FSchueler.IsEmpty()) {
    return;
  }
  TCsvFile File = OpenFile(AnAttendances.FileName);
  for (const std::string_view Name :
       {std::string_view("Id"), AnAttendances.ObjectColumn, std::string_view("CourseId")}) {
    File.Text(Name);
  }
  File.EndHeader();
  const auto Write = [&](const TVELDataObject& ACourse, const TVELPlanobjekt& AnObject) {
    File.Identifier(uOstrel::PairGuid(ACourse, AnObject));
    File.Id(&AnObject);
    File.Id(&ACourse);
    File.EndRow();
  };
  ForEachCourse([&](const TVELVeranstaltung& ACourse) {
    for (const TVELPlanobjekt* Object : AnAttendances.OfCourse(ACourse)) {
      Write(ACourse, *Object);
    }
  });
  ForEachAdditionalLesson([&](const TVELAenderung& AChange) {
    for (const TVELPlanobjekt* Object : AnAttendances.OfChange(AChange)) {
      Write(AChange, *Object);
    }
  });
  File.Close();
}

void TVELOstrelCsvWriter::WriteStudentCourseAttendances() {
  WriteCourseAttendances(
      {.FileName = "StudentCourseAttendances.csv",
       .ObjectColumn = "StudentId",
       .OfCourse = [](const TVELVeranstaltung& ACourse) -> const TVELPlanobjektliste& { return ACourse.FSchueler; },
       .OfChange = StudentsOf});
}

void TVELOstrelCsvWriter::WriteTeacherCourseAttendances() {
  WriteCourseAttendances(
      {.FileName = "TeacherCourseAttendances.csv",
       .ObjectColumn = "TeacherId",
       .OfCourse = [](const TVELVeranstaltung& ACourse) -> const TVELPlanobjektliste& { return ACourse.FLehrer; },
       .OfChange = TeachersOf});
}

template <class TRow>
void TVELOstrelCsvWriter::WriteChanges(const uOstrel::TFileName& AFileName,
                                       std::span<const uOstrel::TColumn<TRow>> AColumns,
                                       std::optional<TRow> (*AMake)(const TVELAenderung&, const TExportScope&)) {
  if (FAborted || FPlan.FAenderungen.IsEmpty()) {
    return;
  }
  TCsvFile File = OpenFile(AFileName);
  uOstrel::WriteHeader(File, AColumns);
  for (const TVELAenderung* Change : FPlan.FAenderungen) {
    if (FAborted) {
      break;
    }
    if (const std::optional<TRow> Row = AMake(*Change, Scope())) {
      uOstrel::WriteRow(File, AColumns, *Row);
    }
  }
  File.Close();
}

void TVELOstrelCsvWriter::WriteSubstituteLessons() {
  WriteChanges("SubstituteLessons.csv", uOstrel::SubstituteLessonColumns(), uOstrel::SubstituteLesson);
}

void TVELOstrelCsvWriter::WriteLessonGaps() {
  WriteChanges("LessonGaps.csv", uOstrel::LessonGapColumns(), uOstrel::LessonGap);
}
