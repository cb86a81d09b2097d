#include "uOstrel/SubstituteLessons.h"

#include <array>

#include "uOstrel/Lessons.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"

namespace uOstrel {

namespace {

TSubstituteLesson Base(const TVELAenderung& AChange) {
  return {.Id = AChange.ID(), .Description = AChange.FBemerkung, .Subject = AChange.FNeuesFach};
}

/// Makes the row one about a lesson of the timetable; about none, if it is null.
void StandFor(TSubstituteLesson& ARow, const TVELTermin* ALesson) {
  if (ALesson == nullptr) {
    return;
  }
  const TVELVeranstaltung* const Course = ALesson->Veranstaltung();
  ARow.LessonId = ALesson->ID();
  ARow.CourseId = Course != nullptr ? Course->ID() : TGUID{};
  ARow.Classes = Classes(ALesson);
}

/// The lesson with the teachers and rooms that the change leaves it.
void TakeChanged(TSubstituteLesson& ARow, const TVELTermin* ALesson, const TVELVertretung& AChange) {
  StandFor(ARow, ALesson);
  ARow.Rooms = LessonRooms(ALesson, AChange);
  ARow.Teachers = LessonTeachers(ALesson, AChange);
}

std::optional<TSubstituteLesson> Make(const TVELVertretung& AChange, const TExportScope& AScope) {
  const TVELTermin* const Planned = AChange.Termin();
  const TVELTermin* const Other = AChange.FNeuerTermin;
  if (!AScope.Covers(AChange) || (Planned != nullptr && !(HasSubject(*Planned) && Planned->Scheduled()))) {
    return std::nullopt;
  }
  TSubstituteLesson Row = Base(AChange);
  Row.Quality = AChange.FVertretungsqualitaet;
  Row.Times = OneTime(AChange.FStart, AChange.FEnde);
  switch (AChange.FVertretungsmerkmal) {
    case vmAenderung:
      if (AChange.FFehlstellengrund == vaFehlstelle) {
        return std::nullopt;
      }
      TakeChanged(Row, Planned, AChange);
      Row.Times = ChangeTime(AChange);
      return Row;
    case vmLehrerTausch:
    case vmRaumTausch:
    case vmLehrerRaumTausch:
      if (Other == nullptr) {
        return std::nullopt;
      }
      StandFor(Row, Planned);
      Row.Rooms = Rooms(AChange.FVertretungsmerkmal == vmLehrerTausch ? Planned : Other);
      Row.Teachers = Teachers(AChange.FVertretungsmerkmal == vmRaumTausch ? Planned : Other);
      return Row;
    case vmVorgezogen: {
      const TVELTermin* const Lesson = Other != nullptr ? Other : Planned;
      const TVELVeranstaltung* const OtherCourse = Other != nullptr ? Other->Veranstaltung() : nullptr;
      if (Lesson == nullptr ||
          (Other != nullptr && AScope.OnlyScheduledCourses && !(OtherCourse != nullptr && IsScheduled(*OtherCourse)))) {
        return std::nullopt;
      }
      TakeChanged(Row, Lesson, AChange);
      return Row;
    }
    default:
      return std::nullopt;
  }
}

std::optional<TSubstituteLesson> Make(const TVELZusatzunterricht& AChange, const TExportScope& /*AScope*/) {
  if (AChange.FFehlzeit == nullptr || AChange.FNeuesFach == nullptr) {
    return std::nullopt;
  }
  TSubstituteLesson Row = Base(AChange);
  Row.Id = ExtraLessonGuid(AChange);
  Row.Description = {};
  Row.CourseId = AChange.ID();
  Row.LessonId = AChange.ID();
  Row.Rooms = ChangeRooms(&AChange.FOriginal, &AChange.FNeu);
  Row.Classes = ChangeClasses(&AChange.FOriginal, &AChange.FNeu);
  Row.Teachers = ChangeTeachers(&AChange.FOriginal, &AChange.FNeu);
  Row.Times = ChangeTime(AChange);
  return Row;
}

std::optional<TSubstituteLesson> Make(const TVELRaumaenderung& AChange, const TExportScope& AScope) {
  const TVELTermin* const Planned = AChange.Termin();
  if (!AScope.Covers(AChange) || Planned == nullptr || !Planned->Scheduled()) {
    return std::nullopt;
  }
  TSubstituteLesson Row = Base(AChange);
  StandFor(Row, Planned);
  Row.Rooms = ChangeRooms(&AChange.FNeu, nullptr);
  Row.Teachers = Teachers(Planned);
  Row.Times = ChangeTime(AChange);
  return Row;
}

}  // namespace

std::optional<TSubstituteLesson> SubstituteLesson(const TVELAenderung& AChange, const TExportScope& AScope) {
  return RowOf<std::optional<TSubstituteLesson>>(
      AChange, AScope,
      [](const auto& AnOwnChange, const TExportScope& AnOwnScope) { return Make(AnOwnChange, AnOwnScope); });
}

std::span<const TColumn<TSubstituteLesson>> SubstituteLessonColumns() {
  using T = TSubstituteLesson;
  static constexpr std::array<TColumn<T>, 11> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.Id); }},
      {"Title", [](TCsvFile& F, const T& O) { F.Text(O.Subject != nullptr ? O.Subject->FKuerzel : std::string()); }},
      {"Description", [](TCsvFile& F, const T& O) { F.Text(O.Description); }},
      {"CourseId", [](TCsvFile& F, const T& O) { F.Identifier(O.CourseId); }},
      {"ScheduledLessonId", [](TCsvFile& F, const T& O) { F.Identifier(O.LessonId); }},
      {"SubjectId", [](TCsvFile& F, const T& O) { F.Id(O.Subject); }},
      {"RoomIdList", [](TCsvFile& F, const T& O) { F.Text(O.Rooms); }},
      {"SchoolClassIdList", [](TCsvFile& F, const T& O) { F.Text(O.Classes); }},
      {"TeacherIdList", [](TCsvFile& F, const T& O) { F.Text(O.Teachers); }},
      {"TemporalExpressions", [](TCsvFile& F, const T& O) { F.Text(O.Times); }},
      {"Quality", [](TCsvFile& F, const T& O) { F.Id(O.Quality); }},
  }};
  return Columns;
}

}  // namespace uOstrel
