#include "uOstrel/CourseColumns.h"

#include <array>

#include "uOstrel/Lessons.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"

namespace uOstrel {

namespace {

/// The objects that come into a lesson which fills a gap; an additional lesson has its own in the original ones.
const TVELPlanobjektliste* Incoming(const TVELAenderung& AChange) {
  return AChange.Kind() == TChangeKind::Vertretung ? &AChange.FNeu : nullptr;
}

/// The rooms that are left behind; for an additional lesson its own.
const TVELPlanobjektliste* Outgoing(const TVELAenderung& AChange) {
  return AChange.Kind() == TChangeKind::Vertretung ? &AChange.FFehlend : &AChange.FOriginal;
}

void WriteId(TCsvFile& AFile, const TVELAenderung& AChange) { AFile.Identifier(AChange.ID()); }

void WriteRooms(TCsvFile& AFile, const TVELAenderung& AChange) {
  AFile.Text(ChangeRooms(Outgoing(AChange), Incoming(AChange)));
}

void WriteClasses(TCsvFile& AFile, const TVELAenderung& AChange) {
  AFile.Text(ChangeClasses(&AChange.FOriginal, Incoming(AChange)));
}

void WriteTeachers(TCsvFile& AFile, const TVELAenderung& AChange) {
  AFile.Text(ChangeTeachers(&AChange.FOriginal, Incoming(AChange)));
}

void WriteCourseNo(TCsvFile& AFile, const TVELAenderung& AChange) {
  if (const auto* const Additional = AChange.As<TVELZusatzunterricht>()) {
    AFile.Integer(Additional->FKursNr);
  } else {
    AFile.Text({});
  }
}

}  // namespace

std::span<const TColumn<TVELVeranstaltung>> CourseColumns() {
  using T = TVELVeranstaltung;
  using TChange = TVELAenderung;
  static constexpr std::array<TColumn<T>, 16> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.ID()); }, WriteId},
      {"Title", [](TCsvFile& F, const T& O) { F.Text(O.KursTitel() + O.FExtern); },
       [](TCsvFile& F, const TChange& C) { F.Text(C.FInformation); }},
      {"Description", [](TCsvFile& F, const T& O) { F.Text(O.FInfo); },
       [](TCsvFile& F, const TChange& C) { F.Text(C.FBemerkung); }},
      {"Notes", [](TCsvFile& F, const T& O) { F.Text(O.FBemerkung); }},
      {"CourseUrl", [](TCsvFile& F, const T& O) { F.Text(O.FLink); }},
      {"SubjectId", [](TCsvFile& F, const T& O) { F.Id(O.FFach); },
       [](TCsvFile& F, const TChange& C) { F.Id(C.FNeuesFach); }},
      {"CourseNo", [](TCsvFile& F, const T& O) { F.Integer(O.FKursNr); }, WriteCourseNo},
      {"CourseRef", [](TCsvFile& F, const T& O) { F.Text(O.FVeranstaltungsNr); }},
      {"StartDate", [](TCsvFile& F, const T& O) { F.Timepoint(O.FGueltigVon); }},
      {"EndDate", [](TCsvFile& F, const T& O) { F.Timepoint(O.FGueltigBis); }},
      {"CourseGroup", [](TCsvFile& F, const T& O) { F.Text(O.FGruppe); }},
      {"Block", [](TCsvFile& F, const T& O) { F.Text(O.FBlockID); }},
      {"SchedulePattern", [](TCsvFile& F, const T& O) { F.Text(O.FReoccur ? "WeeklyEvents" : "OneTimeEvents"); },
       [](TCsvFile& F, const TChange& /*C*/) { F.Text("OneTimeEvents"); }},
      {"SubjectFocusId", [](TCsvFile& F, const T& O) { F.Id(O.FFachschwerpunkt); }},
      {"RoomIdList", [](TCsvFile& F, const T& O) { F.IdList(O.FRaeume); }, WriteRooms},
      {"SchoolClassIdList", [](TCsvFile& F, const T& O) { F.IdList(O.FKlassen); }, WriteClasses},
  }};
  return Columns;
}

std::span<const TColumn<TScheduledLesson>> ScheduledLessonColumns() {
  using T = TScheduledLesson;
  using TChange = TVELAenderung;
  static constexpr std::array<TColumn<T>, 9> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.Appointment.ID()); }, WriteId},
      {"Description", [](TCsvFile& F, const T& O) { F.Text(O.Appointment.FBemerkung); }},
      {"CourseId", [](TCsvFile& F, const T& O) { F.Id(O.Appointment.Veranstaltung()); }, WriteId},
      {"Block", [](TCsvFile& F, const T& O) { F.Text(O.Appointment.FBlockID); }},
      {"RoomIdList", [](TCsvFile& F, const T& O) { F.Text(Rooms(&O.Appointment)); }, WriteRooms},
      {"SchoolClassIdList", [](TCsvFile& F, const T& O) { F.Text(Classes(&O.Appointment)); }, WriteClasses},
      {"TeacherIdList", [](TCsvFile& F, const T& O) { F.Text(Teachers(&O.Appointment)); }, WriteTeachers},
      {"TemporalExpressions", [](TCsvFile& F, const T& O) { F.Text(O.Times); },
       [](TCsvFile& F, const TChange& C) { F.Text(ChangeTime(C)); }},
      {"Relevance", [](TCsvFile& F, const T& /*O*/) { F.Text("Scheduled"); },
       [](TCsvFile& F, const TChange& /*C*/) { F.Text("Additional"); }},
  }};
  return Columns;
}

}  // namespace uOstrel
