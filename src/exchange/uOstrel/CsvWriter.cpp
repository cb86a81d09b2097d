#include "uOstrel/CsvWriter.h"

#include <array>
#include <future>
#include <system_error>
#include <utility>

#include "QuillonFileReplacement.h"
#include "QuillonFileSystem.h"
#include "uOstrel/Columns.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

using uOstrel::TCsvFile;

TVELOstrelCsvWriter::TVELOstrelCsvWriter(TVELGlobals& AGlobals, std::unique_ptr<TOcfConfiguration> AConfiguration)
    : TVELOstrelSynchronizer(AGlobals, std::move(AConfiguration)) {
  TQuillonFileSystem::ForceDirectory(Options().FTargetFolderName);
}

TVELOstrelCsvWriter::TVELOstrelCsvWriter(TVELGlobals& AGlobals, const std::string& /*ACfgFileName*/)
    : TVELOstrelCsvWriter(AGlobals, std::unique_ptr<TOcfConfiguration>()) {}

void TVELOstrelCsvWriter::LoadVelFile() {
  FContext.reset();
  TVELOstrelSynchronizer::LoadVelFile();
  TakeValidRange();
}

void TVELOstrelCsvWriter::Run(std::span<void (TVELOstrelCsvWriter::*const)()> ASteps) {
  for (const auto Step : ASteps) {
    (this->*Step)();
  }
}

void TVELOstrelCsvWriter::WriteAll() {
  using T = TVELOstrelCsvWriter;
  // The receiving platform reads the set in this order.
  static constexpr std::array MasterData = {&T::WriteManifest,
                                            &T::WriteCatalogs,
                                            &T::WriteHolidays,
                                            &T::WriteTimeFrames,
                                            &T::WriteDepartments,
                                            &T::WriteRooms,
                                            &T::WriteRoomAbsences,
                                            &T::WriteSchoolClassAbsences,
                                            &T::WriteSubjects,
                                            &T::WriteTeachers,
                                            &T::WriteTeacherCourseAttendances,
                                            &T::WriteTeacherAbsences,
                                            &T::WriteStudents,
                                            &T::WriteStudentSchoolClassAttendances,
                                            &T::WriteStudentCourseAttendances,
                                            &T::WriteSchoolClasses,
                                            &T::WriteCourses,
                                            &T::WriteAnnouncements};
  static constexpr std::array Timetable = {&T::WriteScheduledLessons, &T::WriteSubstituteLessons, &T::WriteLessonGaps};
  Scope();
  if (!FAborted) {
    OpenSet();  // once: each thread would wait for a folder that is in use
  }
  try {
    // Half of the work each, in a thread of its own where the system has one to give.
    std::future<void> Second;
    try {
      Second = std::async(std::launch::async, [this] { Run(Timetable); });
    } catch (const std::system_error&) {
      Second = std::async(std::launch::deferred, [this] { Run(Timetable); });
    }
    Run(MasterData);
    Second.get();
  } catch (const std::exception&) {
    // Which file it is that a disk has no more room for is chance with two threads: the error is that of a single one.
    if (!FSet || !FSet->IsOutOfSight()) {
      throw;
    }
    FSet.reset();
    FGlobals.Report().ForgetFiles();
    Run(MasterData);
    Run(Timetable);
  }
  PlaceSet();
}

void TVELOstrelCsvWriter::PlaceSet() {
  if (FSet && !FAborted) {
    FSet->Place();
  }
  FSet.reset();
}

uOstrel::TFileSet& TVELOstrelCsvWriter::OpenSet() {
  if (!FSet) {
    FSet.emplace(Options().FTargetFolderName, uOstrel::AllFileNames(), uOstrel::ManifestFile, QuillonIO::LongestWait);
  }
  return *FSet;
}

TCsvFile TVELOstrelCsvWriter::OpenFile(const uOstrel::TFileName& AFileName) {
  return {OpenSet(), AFileName, FGlobals.Report().File(AFileName.Text()).Rows};
}

template <class T, class TList, class TTest>
void TVELOstrelCsvWriter::WriteObjects(const uOstrel::TFileName& AFileName,
                                       std::span<const uOstrel::TColumn<T>> AColumns, const TList& AList,
                                       const TTest& ATest) {
  if (FAborted || AList.IsEmpty()) {
    return;
  }
  TCsvFile File = OpenFile(AFileName);
  uOstrel::WriteHeader(File, AColumns);
  for (const auto* Object : AList) {
    if (const T* const Wanted = ATest(Object)) {
      uOstrel::WriteRow(File, AColumns, *Wanted);
    }
    if (FAborted) {
      break;
    }
  }
  File.Close();
}

template <class T, class TList>
void TVELOstrelCsvWriter::WriteObjects(const uOstrel::TFileName& AFileName,
                                       std::span<const uOstrel::TColumn<T>> AColumns, const TList& AList) {
  WriteObjects(AFileName, AColumns, AList, [](const T* AnObject) { return AnObject; });
}

void TVELOstrelCsvWriter::WriteManifest() {
  if (FAborted) {
    return;
  }
  TCsvFile File = OpenFile("_Manifest.csv");
  for (const auto& [Name, Value] : {std::pair("ValidFrom", FValidFrom), std::pair("ValidTo", FValidTo)}) {
    File.Text(Name);
    File.Timepoint(Value);
    File.EndRow();
  }
  File.Close();
}

void TVELOstrelCsvWriter::WriteCatalogs() {
  for (const uOstrel::TCatalog& Catalog : uOstrel::Catalogs()) {
    WriteObjects(uOstrel::TFileName(Catalog), uOstrel::CatalogColumns(), Catalog.Keys(*FPlan.FVerzeichnisse));
  }
}

void TVELOstrelCsvWriter::WriteHolidays() {
  if (FPlan.FKalender) {
    WriteObjects("Holidays.csv", uOstrel::HolidayColumns(), FPlan.FKalender->FEintraege,
                 [](const TVELKalendereintrag* AnEntry) { return AnEntry->FUnterrichtsfrei ? AnEntry : nullptr; });
  }
}

void TVELOstrelCsvWriter::WriteTimeFrames() {
  if (FAborted || FPlan.FZeitrahmen.IsEmpty()) {
    return;
  }
  const TVELZeitrahmen* const Standard = FPlan.StandardTimeframe();
  if (Standard == nullptr) {
    throw EQuillonException("The plan has no standard time frame.");
  }
  TCsvFile File = OpenFile("TimeFrames.csv");
  uOstrel::WriteHeader(File, uOstrel::TimeFrameColumns());
  uOstrel::WriteRow(File, uOstrel::TimeFrameColumns(), *Standard);
  for (const TVELZeitrahmen* Frame : FPlan.FZeitrahmen) {
    if (FAborted) {
      break;
    }
    uOstrel::WriteRow(File, uOstrel::TimeFrameColumns(), *Frame);
  }
  File.Close();
}

void TVELOstrelCsvWriter::WriteDepartments() {
  WriteObjects("Departments.csv", uOstrel::DepartmentColumns(), FPlan.FTeams);
}

void TVELOstrelCsvWriter::WriteRooms() { WriteObjects("Rooms.csv", uOstrel::RoomColumns(), FPlan.FRaeume); }

void TVELOstrelCsvWriter::WriteSubjects() { WriteObjects("Subjects.csv", uOstrel::SubjectColumns(), FPlan.FFaecher); }

void TVELOstrelCsvWriter::WriteTeachers() { WriteObjects("Teachers.csv", uOstrel::TeacherColumns(), FPlan.FLehrer); }

void TVELOstrelCsvWriter::WriteStudents() { WriteObjects("Students.csv", uOstrel::StudentColumns(), FPlan.FSchueler); }

void TVELOstrelCsvWriter::WriteSchoolClasses() {
  WriteObjects("SchoolClasses.csv", uOstrel::SchoolClassColumns(), FPlan.FKlassen);
}

void TVELOstrelCsvWriter::WriteAnnouncements() {
  WriteObjects("Announcements.csv", uOstrel::AnnouncementColumns(), FPlan.FAenderungen,
               [this](const TVELAenderung* AChange) {
                 return Scope().Covers(*AChange) ? AChange->As<TVELMitteilung>() : nullptr;
               });
}

void TVELOstrelCsvWriter::WriteRoomAbsences() {
  WriteObjects("RoomAbsences.csv", uOstrel::RoomAbsenceColumns(), FPlan.FFehlzeiten,
               [](const TVELFehlzeit* AnAbsence) { return AnAbsence->As<TVELRaumfehlzeit>(); });
}

void TVELOstrelCsvWriter::WriteSchoolClassAbsences() {
  WriteObjects("SchoolClassAbsences.csv", uOstrel::SchoolClassAbsenceColumns(), FPlan.FFehlzeiten,
               [](const TVELFehlzeit* AnAbsence) { return AnAbsence->As<TVELKlassenfehlzeit>(); });
}

void TVELOstrelCsvWriter::WriteTeacherAbsences() {
  WriteObjects("TeacherAbsences.csv", uOstrel::TeacherAbsenceColumns(), FPlan.FFehlzeiten,
               [](const TVELFehlzeit* AnAbsence) { return AnAbsence->As<TVELLehrerfehlzeit>(); });
}

void TVELOstrelCsvWriter::WriteStudentSchoolClassAttendances() {
  if (FAborted || FPlan.FKlassen.IsEmpty() || FPlan.FSchueler.IsEmpty()) {
    return;
  }
  TCsvFile File = OpenFile("StudentSchoolClassAttendances.csv");
  for (const char* Name : {"Id", "StudentId", "SchoolCLassId"}) {
    File.Text(Name);
  }
  File.EndHeader();
  for (const TVELKlasse* Class : FPlan.FKlassen) {
    for (const TVELSchueler* Student : Class->FSchueler) {
      if (FAborted) {
        break;
      }
      File.Identifier(uOstrel::PairGuid(*Class, *Student));
      File.Id(Student);
      File.Id(Class);
      File.EndRow();
    }
  }
  File.Close();
}
