#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Configuration.h"
#include "JobOptions.h"
#include "uJSONExport/JSONExport.h"

/// Kinds of objects that a configuration can name. The last one has all of them.
enum class TJsonObjectKind : std::uint8_t { Teacher, Class, Room, Subject, Student, Resource, Any };

/// An object of the plan: by its identifier, or by kind and code. Empty for none.
struct TJsonObjectName {
  std::string FId;  ///< with or without braces
  TJsonObjectKind FKind = TJsonObjectKind::Any;
  std::string FCode;  ///< abbreviation; number of a student
};

/// For whom a document is.
struct TJsonProfile : TJsonObjectName {
  std::int32_t FPolicy = 0;
};

enum class TJsonForm : std::uint8_t {
  Dated,   ///< made by TVELJSONExport::CreateJSONData
  Undated  ///< made by TVELJSONExport::SaveJSONToStream, in which the flags of the whole school count
};

/// What is published, and where to. The fields without a word are those of TVELJSONExport.
struct TJsonExportOptions : TVELSourceOptions {
  std::string FTargetFileName;
  TJsonForm FForm = TJsonForm::Dated;
  TVELDateTime FStart;
  TVELDateTime FFinish;
  TVELXMLTypes FXmlTypes{xmlIndex, xmlLessons, xmlChanges, xmlCalEvents};
  TVELDataTypes FDataTypes{dtAlle};
  bool FFiltering = true;
  bool FAdmin = false;
  bool FNoTeacher = false;
  bool FStudentNames = false;
  bool FOffeneFehlzeiten = true;
  bool FAllSubstitutions = false;
  bool FSubstitutionsOnly = false;
  bool FAllLessons = false;
  bool FAlleWochen = false;
  bool FArt = true;
  bool FInformation = true;
  bool FMitteilung = true;
  TJsonObjectName FPlanobjekt;
  std::string FKategorie;             ///< code or identifier of a category of events; empty for all
  std::vector<std::string> FAuswahl;  ///< codes or identifiers of teams
  std::vector<TJsonProfile> FProfiles;
  std::int32_t FLogButtonPolicy = -1;
  std::int32_t FTeacherNamesPolicy = 0;
};

struct TJsonConfiguration {
  TJsonExportOptions FJsonExport;
};

extern template std::unique_ptr<TJsonConfiguration> LoadConfiguration(const std::string& AFileName);
