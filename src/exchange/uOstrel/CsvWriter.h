#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>

#include "Synchronizer.h"
#include "uDataUtils/Context.h"
#include "uOstrel/Changes.h"
#include "uOstrel/CsvFile.h"

class TVELSchluesselverzeichnis;

/// Exports a plan as an OCF set: a folder of CSV files, one per kind of object, for the school data platform.
///
/// Each operation writes one file, or a family of them, and none if there is nothing to tell: a missing file means an
/// empty list. The files appear with PlaceSet, and those of an earlier run that were not written go.
class TVELOstrelCsvWriter : public TVELOstrelSynchronizer {
 public:
  /// Creates the target folder with all its parents.
  /// @throws EQuillonFileSystemError
  TVELOstrelCsvWriter(TVELGlobals& AGlobals, std::unique_ptr<TOcfConfiguration> AConfiguration);
  /// A job with a configuration file has no settings and fails here.
  /// @throws EQuillonException
  TVELOstrelCsvWriter(TVELGlobals& AGlobals, const std::string& ACfgFileName);

  void LoadVelFile() override;

  /// All files in their order, and PlaceSet.
  void WriteAll();
  /// Lets the files written so far take the place of the earlier set, all at once; an aborted job leaves that as it is.
  /// @throws EQuillonException
  void PlaceSet();

  void WriteManifest();
  void WriteCatalogs();
  void WriteHolidays();
  void WriteTimeFrames();
  void WriteDepartments();
  void WriteRooms();
  void WriteRoomAbsences();
  void WriteSchoolClassAbsences();
  void WriteSubjects();
  void WriteTeachers();
  void WriteTeacherCourseAttendances();
  void WriteTeacherAbsences();
  void WriteStudents();
  void WriteStudentSchoolClassAttendances();
  void WriteStudentCourseAttendances();
  void WriteSchoolClasses();
  void WriteCourses();
  void WriteAnnouncements();
  void WriteScheduledLessons();
  void WriteSubstituteLessons();
  void WriteLessonGaps();

 protected:
  const TOcfExportOptions& Options() const override { return Configuration().FOcfExport; }
  std::string GetFileName() const override { return Options().FSourceFileName; }

 private:
  struct TAttendances;

  uOstrel::TFileSet& OpenSet();
  uOstrel::TCsvFile OpenFile(const uOstrel::TFileName& AFileName);
  /// Writes the items of a list that a test lets pass; no file for an empty list.
  template <class T, class TList, class TTest>
  void WriteObjects(const uOstrel::TFileName& AFileName, std::span<const uOstrel::TColumn<T>> AColumns,
                    const TList& AList, const TTest& ATest);
  template <class T, class TList>
  void WriteObjects(const uOstrel::TFileName& AFileName, std::span<const uOstrel::TColumn<T>> AColumns,
                    const TList& AList);
  /// Calls AWrite with each course that the set tells, until the job is aborted.
  template <class TWrite>
  void ForEachCourse(const TWrite& AWrite) const;
  /// Calls AWrite with each additional lesson, public or not, until the job is aborted.
  template <class TWrite>
  void ForEachAdditionalLesson(const TWrite& AWrite) const;
  /// Writes what a function makes of the changes; no file for a plan without changes.
  template <class TRow>
  void WriteChanges(const uOstrel::TFileName& AFileName, std::span<const uOstrel::TColumn<TRow>> AColumns,
                    std::optional<TRow> (*AMake)(const TVELAenderung&, const uOstrel::TExportScope&));
  void WriteCourseAttendances(const TAttendances& AnAttendances);
  uOstrel::TExportScope Scope();

  /// Calls steps in their order.
  void Run(std::span<void (TVELOstrelCsvWriter::*const)()> ASteps);

  std::optional<uDataUtils::TPlanContext> FContext;  ///< of the loaded plan, from the first look at it on
  std::optional<uOstrel::TFileSet> FSet;
};
