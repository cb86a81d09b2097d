#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

#include "Globals.h"
#include "uOstrel/CsvWriter.h"

/// Settings that a plan must have, with the standard time frame "Std" of identity ...F1.
inline std::string Settings(std::string_view AMore = {}, std::string_view AFrameRows = {}) {
  std::string Text =
      R"(<Settings Class="Settings" ID="{00000000-0000-0000-0000-0000000000F0}"><LessonWeeks/><BrenmarkClient>0</BrenmarkClient>
<BrenmarkTimePeriod>0</BrenmarkTimePeriod><StatisticsCheck>0</StatisticsCheck><StatisticsWeeksCount>1</StatisticsWeeksCount>
<LessonsDisplay>2</LessonsDisplay><TimeColor>0</TimeColor><TimeColorGradient>0</TimeColorGradient>)";
  if (AMore.find("<Weekend>") == std::string_view::npos) {
    Text += "<Weekend>5</Weekend><WeekStart>1</WeekStart>";
  }
  return Text.append(AMore)
      .append(R"(<TimeFrame Class="TimeFrame" ID="{00000000-0000-0000-0000-0000000000F1}"><Code>Std</Code>
<LessonsPerDay>8</LessonsPerDay><MinutesPerHour>45</MinutesPerHour><UnitsPerHour>1</UnitsPerHour><FirstHour>8</FirstHour>
<MorningLessonTo>6</MorningLessonTo>)")
      .append(AFrameRows)
      .append("</TimeFrame></Settings>");
}

inline std::string Document(std::string_view ABody) {
  return std::string("<Storage><DataformatRelease>6.0.172</DataformatRelease>").append(ABody).append("</Storage>");
}

inline std::string List(std::string_view AName, std::string_view AnItems) {
  return "<" + std::string(AName) + "><Items>" + std::string(AnItems) + "</Items></" + std::string(AName) + ">";
}

/// @param AnID the last two digits of the identity
inline std::string Item(std::string_view AClass, std::string_view AnID, std::string_view ABody) {
  return "<Item Class=\"" + std::string(AClass) + "\" ID=\"{00000000-0000-0000-0000-0000000000" + std::string(AnID) +
         "}\">" + std::string(ABody) + "</Item>";
}

inline std::string Reference(std::string_view AName, std::string_view AClass, std::string_view AnID) {
  return "<" + std::string(AName) + " Class=\"" + std::string(AClass) + "\" ID=\"{00000000-0000-0000-0000-0000000000" +
         std::string(AnID) + "}\"/>";
}

/// Plain form of an identity by its last two digits.
inline std::string Id(std::string_view AnID) { return "00000000-0000-0000-0000-0000000000" + std::string(AnID); }

/// A data file and the OCF set made of it, in a folder that goes with the object.
class TOcfExport {
 public:
  TOcfExport() : FFolder(std::filesystem::temp_directory_path() / ("ocf-" + QuillonGuid::Plain(QuillonGuid::New()))) {
    std::filesystem::create_directories(FFolder);
  }
  TOcfExport(const TOcfExport&) = delete;
  TOcfExport& operator=(const TOcfExport&) = delete;
  ~TOcfExport() { std::filesystem::remove_all(FFolder); }

  /// Settings of the next job; its files are set there.
  TOcfExportOptions& Options() { return FConfiguration.FOcfExport; }
  TVELPlan& Plan() { return FGlobals.Plan(); }

  std::filesystem::path Out() const { return FFolder / "out"; }

  /// The job, with the document loaded.
  std::unique_ptr<TVELOstrelCsvWriter> Open(std::string_view ADocument) {
    const std::string FileName = (FFolder / "plan.velmora").string();
    std::ofstream(FileName, std::ios::binary) << ADocument;
    auto Configuration = std::make_unique<TOcfConfiguration>(FConfiguration);
    Configuration->FOcfExport.FSourceFileName = FileName;
    Configuration->FOcfExport.FTargetFolderName = Out().string();
    auto Writer = std::make_unique<TVELOstrelCsvWriter>(FGlobals, std::move(Configuration));
    Writer->LoadVelFile();
    return Writer;
  }

  /// The files by name, without their byte order marks.
  std::map<std::string, std::string> Files() const {
    constexpr std::string_view Mark = "\xEF\xBB\xBF";
    std::map<std::string, std::string> Found;
    for (const auto& Entry : std::filesystem::directory_iterator(Out())) {
      std::stringstream Content;
      Content << std::ifstream(Entry.path(), std::ios::binary).rdbuf();
      const std::string Text = Content.str();
      Found[Entry.path().filename().string()] =
          Text.substr(0, Mark.size()) == Mark ? Text.substr(Mark.size()) : "no mark";
    }
    return Found;
  }

  std::map<std::string, std::string> Run(std::string_view ADocument) {
    Open(ADocument)->WriteAll();
    return Files();
  }

 private:
  std::filesystem::path FFolder;
  TOcfConfiguration FConfiguration;
  TVELGlobals FGlobals;
};
