#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "Globals.h"
#include "Plans.h"
#include "QuillonCSV.h"
#include "core/TestFiles.h"
#include "uJSONExport/JSONExport.h"
#include "uOstrel/CsvWriter.h"
#include "uPlandaten/Einstellungen.h"

namespace {

using TFiles = std::map<std::string, std::string>;

TFiles FilesIn(const std::string& AFolder) {
  TFiles Files;
  for (const auto& Entry : std::filesystem::directory_iterator(AFolder)) {
    Files[Entry.path().filename().string()] = Fuzz::ReadFile(Entry.path().string());
  }
  return Files;
}

/// Reads a file of the set by the strict reader: all rows are as wide as its header.
/// @return the count of rows
int RowsOf(const std::string& AName, const std::string& AContent) {
  constexpr std::size_t BufferSize = 4096;
  TQuillonMemoryStream Stream(AContent);
  TQuillonCSVReader Reader(Stream, true, BufferSize);
  Reader.FStrict = true;
  constexpr std::size_t ManifestWidth = 2;
  std::size_t Width = ManifestWidth;
  if (AName != uOstrel::ManifestFile) {
    const auto Header = Reader.ReadLine();
    Fuzz::Require(Header.has_value(), AName + " is empty");
    Width = Header->size();
  }
  int Rows = 0;
  for (; const auto Line = Reader.ReadLine(); ++Rows) {
    // An empty cell at the end of a row is not told apart from none.
    Fuzz::Require(Line->size() == Width || Line->size() + 1 == Width, AName + " has a row of another width");
  }
  return Rows;
}

void RequireSet(const TVELPlan& APlan, const TFiles& AFiles) {
  TFiles Left = AFiles;
  Fuzz::Require(Left.contains(std::string(uOstrel::ManifestFile)), "a set has no manifest");
  for (const auto& [Name, List] :
       std::initializer_list<std::pair<const char*, const TQuillonDataList&>>{{"Departments.csv", APlan.FTeams},
                                                                              {"Rooms.csv", APlan.FRaeume},
                                                                              {"SchoolClasses.csv", APlan.FKlassen},
                                                                              {"Students.csv", APlan.FSchueler},
                                                                              {"Subjects.csv", APlan.FFaecher},
                                                                              {"Teachers.csv", APlan.FLehrer}}) {
    const auto File = Left.find(Name);
    const int Rows = File != Left.end() ? RowsOf(Name, File->second) : 0;
    Fuzz::Require(Rows == List.Count(), std::string(Name) + " has other rows than the plan has objects");
    Left.erase(Name);
  }
  for (const auto& [Name, Content] : Left) {
    RowsOf(Name, Content);
  }
}

/// Publishes the plan with and without dates. Each document is JSON; the one without tells all courses.
void RequirePublications(TVELPlan& APlan) {
  TVELJSONExport Export(APlan);
  Export.StudentNames = true;
  Export.XMLTypes = {xmlLessons, xmlChanges, xmlAbsences};
  Export.DataTypes = {dtAlle};
  const auto Dated = nlohmann::json::parse("{" + Export.CreateJSONText(0, 0) + "}", nullptr, false);
  Fuzz::Require(!Dated.is_discarded(), "a document with dates is no JSON");
  Export.AlleWochen = true;
  Export.Start = APlan.FEinstellungen->FGueltigVon;
  Export.Finish = APlan.FEinstellungen->FGueltigBis;
  TQuillonMemoryStream Stream;
  Export.SaveJSONToStream(Stream);
  const auto Whole = nlohmann::json::parse(Stream.Content(), nullptr, false);
  Fuzz::Require(Whole.is_object(), "a document of all weeks is no JSON");
  Fuzz::Require(Whole["result"]["courses"].size() == APlan.FVeranstaltungen.Items().size(), "a course is not told");
}

}  // namespace

/// Exports a plan over the set of the one before, and publishes it. The set is well-formed and whole, and the plan as
/// it was; an export that fails leaves the set of before.
void Fuzz::Run(std::string_view AnInput) {
  static const TemporaryFolder Folder;
  const std::string Target = Folder.Path("out");
  TVELGlobals Globals;
  TVELPlan& Plan = Globals.Plan();
  auto Configuration = std::make_unique<TOcfConfiguration>();
  auto& Options = Configuration->FOcfExport;
  Options.FSourceFileName = Folder.Path("plan.velmora");
  Options.FTargetFolderName = Target;
  Options.FOnlyScheduledCourses = Options.FOnlyScheduledLessons = AnInput.size() % 2 == 0;
  WriteFile(Options.FSourceFileName, AnInput);
  auto Writer = std::make_unique<TVELOstrelCsvWriter>(Globals, std::move(Configuration));
  if (!Accepts([&] { Writer->LoadVelFile(); })) {
    return;
  }
  const std::string Before = Plan.SaveToXML();
  const TFiles Earlier = FilesIn(Target);
  const bool IsDone = Accepts([&] { Writer->WriteAll(); });
  Writer.reset();
  if (IsDone) {
    RequireSet(Plan, FilesIn(Target));
  } else {
    Require(FilesIn(Target) == Earlier, "an export that failed has changed the set of before");
  }
  RequireSame(Before, Plan.SaveToXML(), "an export has changed the plan");
  RequirePublications(Plan);
}
