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

/// A document with all settings, its keys in every spelling.
TJson DocumentOf(const TOcfConfiguration& AConfiguration) {
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
  return TJson{{"Velmora", {{"ocfExport", ExportPart}, {"fOcfImport", ImportPart}}}};
}

/// Gives each text a value that no other one has.
void MakeDistinct(TJson& ADocument) {
  for (TJson& Part : ADocument["Velmora"]) {
    for (auto& [Key, Value] : Part.items()) {
      if (Value.is_string()) {
        Value.get_ref<std::string&>() += Key;
      }
    }
  }
}

}  // namespace

/// Loads a configuration: what is accepted, written with all its settings and loaded again, is the same,
/// and so are settings that are all distinct. A text that is
/// parsed as JSON at all is the same after its own round.
void Fuzz::Run(std::string_view AnInput) {
  static const TemporaryFolder Folder;
  const std::string FileName = Folder.Path("config.json");
  WriteFile(FileName, AnInput);
  std::unique_ptr<TOcfConfiguration> Configuration;
  if (Accepts([&] { Configuration = TOcfConfigurationManager::LoadConfig(FileName); })) {
    TJson Written = DocumentOf(*Configuration);
    for (int Round = 1; Round <= 2; ++Round) {
      WriteFile(FileName, Written.dump());
      Require(DocumentOf(*TOcfConfigurationManager::LoadConfig(FileName)) == Written,
              "settings are read otherwise: " + Written.dump());
      MakeDistinct(Written);
    }
  }
  TJson Document(TJson::value_t::discarded);
  Accepts([&] { Document = TJsonUtils::Parse(AnInput); });
  Require(Document.is_discarded() || TJsonUtils::Parse(Document.dump()) == Document, "JSON is read otherwise");
}
