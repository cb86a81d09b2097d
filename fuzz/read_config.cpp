#include <nlohmann/json.hpp>

#include "Fuzz.h"
#include "JsonUtils.h"
#include "OcfConfiguration.h"
#include "core/TestFiles.h"

namespace {

using TJson = nlohmann::json;

template <class TOptions>
TJson Common(const TOptions& AnOptions) {
  TJson Files = TJson::array();
  for (const auto& File : AnOptions.FFiles) {
    Files.push_back({{"name", File.FName}});
  }
  return {{"serverName", AnOptions.FServerName},
          {"FServerPort", AnOptions.FServerPort},
          {"SERVERUSERNAME", AnOptions.FServerUserName},
          {"fserverpassword", AnOptions.FServerPassword},
          {"serverFileId", AnOptions.FServerFileId},
          {"fileName", AnOptions.FFileName},
          {"files", Files},
          {"unknown", {1, nullptr}}};
}

/// A file with all settings, its keys in every spelling.
std::string TextOf(const TOcfConfiguration& AConfiguration) {
  const auto& Export = AConfiguration.FOcfExport;
  TJson ExportPart = Common(Export);
  ExportPart.update({{"onlyScheduledCourses", Export.FOnlyScheduledCourses},
                     {"onlyScheduledLessons", Export.FOnlyScheduledLessons},
                     {"sourceFileName", Export.FSourceFileName},
                     {"sourceProvider", Export.FSourceProvider},
                     {"targetFolderName", Export.FTargetFolderName}});
  const auto& Import = AConfiguration.FOcfImport;
  TJson ImportPart = Common(Import);
  ImportPart.update({{"sourceFolderName", Import.FSourceFolderName},
                     {"targetFileName", Import.FTargetFileName},
                     {"targetProvider", Import.FTargetProvider}});
  return TJson{{"Velmora", {{"ocfExport", ExportPart}, {"fOcfImport", ImportPart}}}}.dump();
}

}  // namespace

/// Loads a configuration: what is accepted, written with all its settings and loaded again, is the same. A text that is
/// parsed as JSON at all is the same after its own round.
void Fuzz::Run(std::string_view AnInput) {
  static const TemporaryFolder Folder;
  const std::string FileName = Folder.Path("config.json");
  WriteFile(FileName, AnInput);
  std::unique_ptr<TOcfConfiguration> Configuration;
  if (Accepts([&] { Configuration = TOcfConfigurationManager::LoadConfig(FileName); })) {
    const std::string Text = TextOf(*Configuration);
    WriteFile(FileName, Text);
    Require(TextOf(*TOcfConfigurationManager::LoadConfig(FileName)) == Text, "settings are read otherwise: " + Text);
  }
  TJson Document(TJson::value_t::discarded);
  Accepts([&] { Document = TJsonUtils::Parse(AnInput); });
  Require(Document.is_discarded() || TJsonUtils::Parse(Document.dump()) == Document, "JSON is read otherwise");
}
