#pragma once

#include <memory>
#include <string>

#include "Synchronizer.h"

/// Merges the master data and the courses of an OCF set into a plan: an object whose identifier the plan knows is
/// updated, another one is created, none is deleted. A file that the set lacks is passed over.
class TVELOstrelCsvReader : public TVELOstrelSynchronizer {
 public:
  TVELOstrelCsvReader(TVELPlan& APlan, std::unique_ptr<TOcfConfiguration> AConfiguration);
  /// A job with a configuration file has no settings and fails at its first look at them.
  TVELOstrelCsvReader(TVELPlan& APlan, const std::string& ACfgFileName);
  TVELOstrelCsvReader(const TVELOstrelCsvReader&) = delete;
  TVELOstrelCsvReader& operator=(const TVELOstrelCsvReader&) = delete;
  ~TVELOstrelCsvReader() override { FPlan.CloseFile(); }

  /// All files in their order.
  /// @throws EQuillonCSVReaderError, EQuillonConvertError and EQuillonException; the plan then holds what was read so
  ///   far and should not be saved
  void ReadAll();

  void ReadCatalogs();
  void ReadDepartments();
  void ReadRooms();
  void ReadSubjects();
  void ReadTeachers();
  void ReadSchoolClasses();
  void ReadStudents();
  void ReadCourses();

 protected:
  void OpenPlan(const std::string& AFileName) override { FPlan.OpenFileToChange(AFileName); }
  std::string GetFileName() const override;
  TGUID GetServerFileId() const override;
  std::string GetServerName() const override;
  std::uint16_t GetServerPort() const override;
  std::string GetServerUserName() const override;
  std::string GetServerPassword() const override;

 private:
  const TOcfImportOptions& Options() const { return Configuration().FOcfImport; }
  /// Calls ARead with the file at each of its rows, until the job is aborted; not at all without the file.
  template <class TRead>
  void ForEachRow(const std::string& AFileName, const TRead& ARead);
  /// Calls AFill with each row of a file and its object, which enters the list behind it if it is new.
  template <class TItem, class TList, class TFill>
  void MergeRows(const std::string& AFileName, TList& AList, const TFill& AFill);
};
