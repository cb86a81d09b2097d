#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "JsonUtils.h"
#include "OcfConfiguration.h"
#include "QuillonTypes.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The fields of the options that are texts, or numbers, and the given ones of their own.
template <class TOptions>
std::vector<std::string> TextsOf(const TOptions& AnOptions, const std::vector<std::string>& AnOwn) {
  std::vector<std::string> Texts = {AnOptions.FServerName,     std::to_string(AnOptions.FServerPort),
                                    AnOptions.FServerUserName, AnOptions.FServerPassword,
                                    AnOptions.FServerFileId,   AnOptions.FFileName};
  for (const auto& File : AnOptions.FFiles) {
    Texts.push_back(File.FName);
  }
  Texts.insert(Texts.end(), AnOwn.begin(), AnOwn.end());
  return Texts;
}

class OcfConfiguration : public testing::Test {
 protected:
  ~OcfConfiguration() override { std::filesystem::remove(FFileName); }

  std::unique_ptr<TOcfConfiguration> Load(const std::string& AContent) const {
    std::ofstream(FFileName, std::ios::binary) << AContent;
    return TOcfConfigurationManager::LoadConfig(FFileName);
  }

  std::string ErrorOf(const std::string& AContent) const {
    try {
      Load(AContent);
    } catch (const EQuillonException& Error) {
      return Error.what();
    }
    return "no error";
  }

  const std::string FFileName =
      testing::TempDir() + "velmora-" + testing::UnitTest::GetInstance()->current_test_info()->name() + ".json";
};

TEST_F(OcfConfiguration, FillsEveryField) {
  const auto Configuration = Load(R"({"Velmora": {
    "ocfExport": {
      "serverName": "srv", "serverPort": 8100, "serverUserName": "Jürgen", "serverPassword": "p\"w",
      "serverFileId": "{id}", "fileName": "f", "files": [{"name": "A.csv"}, {"NAME": "B.csv"}, {}],
      "onlyScheduledCourses": false, "onlyScheduledLessons": false,
      "sourceFileName": "plan.velmora", "sourceProvider": "File", "targetFolderName": "out"},
    "ocfImport": {
      "serverName": "srv2", "serverPort": 65535, "serverUserName": "u2", "serverPassword": "p2", "serverFileId": "{2}",
      "fileName": "f2", "files": [{"name": "C.csv"}], "sourceFolderName": "in", "targetFileName": "t.velmora",
      "targetProvider": "Server"}}})");

  const auto& Export = Configuration->FOcfExport;
  EXPECT_THAT(
      TextsOf(Export, {Export.FSourceFileName, Export.FSourceProvider, Export.FTargetFolderName}),
      ElementsAre("srv", "8100", "Jürgen", "p\"w", "{id}", "f", "A.csv", "B.csv", "", "plan.velmora", "File", "out"));
  EXPECT_FALSE(Export.FOnlyScheduledCourses);
  EXPECT_FALSE(Export.FOnlyScheduledLessons);
  const auto& Import = Configuration->FOcfImport;
  EXPECT_THAT(TextsOf(Import, {Import.FSourceFolderName, Import.FTargetFileName, Import.FTargetProvider}),
              ElementsAre("srv2", "65535", "u2", "p2", "{2}", "f2", "C.csv", "in", "t.velmora", "Server"));
}

TEST_F(OcfConfiguration, LeavesDefaultsAndPassesOverUnknownKeys) {
  const auto Configuration = Load(
      "\xEF\xBB\xBF{\"other\": 1, \"Velmora\": {\"sduiExport\": {\"serverPort\": \"x\"},\r\n"
      "\"OCFEXPORT\": {\"FServerName\": \"srv\", \"SERVERUSERNAME\": \"me\", \"name\": 5}}}");
  EXPECT_EQ(Configuration->FOcfExport.FServerName, "srv") << "the field's own name is a key as well";
  EXPECT_EQ(Configuration->FOcfExport.FServerUserName, "me");
  EXPECT_EQ(Configuration->FOcfExport.FServerPort, 111);
  EXPECT_TRUE(Configuration->FOcfExport.FOnlyScheduledCourses);
  EXPECT_TRUE(Configuration->FOcfExport.FOnlyScheduledLessons);
  EXPECT_EQ(Configuration->FOcfImport.FServerName, "localhost");
  EXPECT_EQ(Configuration->FOcfImport.FServerPort, 111);
}

TEST_F(OcfConfiguration, NamesKeyAndFileOfAValueOfTheWrongType) {
  const auto ErrorOfExport = [this](const std::string& AMember) {
    return ErrorOf(R"({"Velmora": {"ocfExport": {)" + AMember + "}}}");
  };
  EXPECT_EQ(ErrorOfExport(R"("serverName": 5)"),
            "Key \"ocfExport.serverName\" in file \"" + FFileName + "\" must be a string.");
  EXPECT_THAT(ErrorOfExport(R"("serverName": null)"), HasSubstr("\"ocfExport.serverName\""));
  EXPECT_THAT(ErrorOfExport(R"("serverName": "a\u0000b")"), HasSubstr("must be a string without NUL characters"));
  for (const auto* Port : {"\"111\"", "65536", "-1", "1.5", "true", "1e99"}) {
    EXPECT_THAT(ErrorOfExport(std::string(R"("serverPort": )") + Port),
                HasSubstr("\"ocfExport.serverPort\" in file \"" + FFileName + "\" must be a whole number"))
        << Port;
  }
  EXPECT_THAT(ErrorOfExport(R"("onlyScheduledCourses": 1)"), HasSubstr("\"ocfExport.onlyScheduledCourses\""));
  EXPECT_THAT(ErrorOfExport(R"("files": {})"), HasSubstr("\"ocfExport.files\""));
  EXPECT_THAT(ErrorOfExport(R"("files": [{}, {"name": []}])"), HasSubstr("\"ocfExport.files[1].name\""));
  EXPECT_THAT(ErrorOf(R"({"Velmora": {"ocfImport": []}})"), HasSubstr("\"ocfImport\""));
}

TEST_F(OcfConfiguration, RefusesWhatIsNoSettingsFile) {
  const std::string NoJson = "Cannot parse JSON file \"" + FFileName + "\". (";
  const std::pair<const char*, const char*> Places[] = {
      {"", "Line 1, column 1)"},
      {"[]", "The file holds no JSON object.)"},
      {"5", "The file holds no JSON object.)"},
      {"{\"Velmora\": {}", "Line 1, column 15)"},
      {"{\"Velmora\": 1e999}", "A number is too large)"},
      {"{\"Velmora\":\n {}} x", "Line 2, column 6)"},
      {"\n{\"Velmora\":\n\"\xFF\"}", "Line 3, column 2)"},
  };
  for (const auto& [Text, Place] : Places) {
    EXPECT_EQ(ErrorOf(Text), NoJson + Place) << Text;
  }
  const std::string NoSettings = "No configuration for \"Velmora\" found in file \"" + FFileName + "\").";
  for (const auto* Text : {"{}", "{\"velmora\": {}}", "{\"Velmora\": []}", "{\"Velmora\": null}"}) {
    EXPECT_EQ(ErrorOf(Text), NoSettings) << Text;
  }
  EXPECT_THROW(Load("{}"), EQuillonFileNotFound);
  EXPECT_THROW(TOcfConfigurationManager::LoadConfig(FFileName + "-missing"), EQuillonWin32Error);
  EXPECT_THROW(TOcfConfigurationManager::LoadConfig(testing::TempDir()), EQuillonWin32Error);
}

TEST_F(OcfConfiguration, SurvivesDeepNestingAndEndlessFiles) {
  constexpr std::size_t Depth = 1'000'000;
  const auto Nested = [](std::size_t ADepth) {
    return R"({"Velmora": {"x": )" + std::string(ADepth, '[') + std::string(ADepth, ']') + "}}";
  };
  EXPECT_THAT(ErrorOf(Nested(Depth)), HasSubstr("Cannot parse JSON file"));
  EXPECT_THAT(ErrorOf(std::string(Depth, '[')), HasSubstr("Cannot parse JSON file"));
  EXPECT_EQ(ErrorOf(Nested(20)), "no error");
  EXPECT_THAT(ErrorOf(R"({"Velmora": {}})" + std::string(std::size_t{17} << 20, ' ')),
              HasSubstr("Cannot parse JSON file"));
}

}  // namespace
