#include <algorithm>
#include <filesystem>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Globals.h"
#include "Plans.h"
#include "core/TestFiles.h"
#include "uOstrel/CsvReader.h"
#include "uOstrel/CsvSource.h"
#include "uOstrel/FileNames.h"

namespace {

constexpr std::string_view PlanFile = "plan.velmora";
constexpr std::string_view Mark = "=== ";

/// Puts the files of an input into the folder, and no others: each begins behind a line with the mark and its name.
void Unpack(std::string_view AnInput, const TemporaryFolder& AFolder) {
  static const std::vector<std::string> Names = uOstrel::AllFileNames();
  for (const std::string& Name : AFolder.Names()) {
    std::filesystem::remove(AFolder.Path(Name));
  }
  std::string Name;
  std::string Content;
  const auto Write = [&] {
    if (Name == PlanFile || std::ranges::find(Names, Name) != Names.end()) {
      Fuzz::WriteFile(AFolder.Path(Name), Content);
    }
  };
  while (!AnInput.empty()) {
    const std::string_view Line = Fuzz::TakeLine(AnInput);
    if (Line.starts_with(Mark)) {
      Write();
      Name = Line.substr(Mark.size());
      Content.clear();
    } else {
      Content.append(Line).push_back('\n');
    }
  }
  Write();
}

/// Each row with an identifier has its object in the plan's list.
void RequireRows(const TVELPlan& APlan, const TemporaryFolder& AFolder) {
  const auto Lists = std::initializer_list<std::pair<const char*, const TQuillonDataList&>>{
      {"Departments.csv", APlan.FTeams},      {"Rooms.csv", APlan.FRaeume},          {"Subjects.csv", APlan.FFaecher},
      {"Teachers.csv", APlan.FLehrer},        {"SchoolClasses.csv", APlan.FKlassen}, {"Students.csv", APlan.FSchueler},
      {"Courses.csv", APlan.FVeranstaltungen}};
  for (const auto& [Name, List] : Lists) {
    std::unordered_set<TGUID, TGuidHash> Known;
    for (const TQuillonDataObject* Item : List.Items()) {
      Known.insert(Item->ID());
    }
    const uOstrel::TCsvSource Source(AFolder.Path(Name), {});
    for (std::size_t Row = 0; Row < Source.RowCount(); ++Row) {
      const auto ID = Source.Row(Row).ID;
      Fuzz::Require(!ID || Known.contains(*ID), std::string("a row has no object: ") + Name);
    }
  }
}

}  // namespace

/// Imports a set into a plan. A set that is refused leaves the plan as it was; one that is accepted has all its objects
/// in the plan, which saves and loads as stably as before.
void Fuzz::Run(std::string_view AnInput) {
  static const TemporaryFolder Folder;
  Unpack(AnInput, Folder);
  TVELGlobals Globals;
  TVELPlan& Plan = Globals.Plan();
  auto Configuration = std::make_unique<TOcfConfiguration>();
  Configuration->FOcfImport.FSourceFolderName = Folder.Path("");
  Configuration->FOcfImport.FTargetFileName = Folder.Path(std::string(PlanFile));
  TVELOstrelCsvReader Reader(Globals, std::move(Configuration));
  if (!Accepts([&] { Reader.LoadVelFile(); })) {
    return;
  }
  const std::string Before = Plan.SaveToXML();
  if (!Accepts([&] { Reader.ReadAll(); })) {
    RequireSame(Before, Plan.SaveToXML(), "a set that was refused has changed the plan");
    return;
  }
  RequireRows(Plan, Folder);
  RequireRest(Plan.SaveToXML());
}
