#include "Report.h"

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <utility>

#include "QuillonFileReplacement.h"
#include "QuillonFileSystem.h"
#include "QuillonNewFile.h"
#include "platform/Process.h"

namespace {

/// Rises when a member changes its meaning or goes.
constexpr int Format = 1;

template <class TItems>
auto& Named(TItems& AnItems, std::string_view AName) {
  const auto Found = std::ranges::find(AnItems, AName, &TItems::value_type::Name);
  if (Found != AnItems.end()) {
    return *Found;
  }
  AnItems.emplace_back().Name = AName;
  return AnItems.back();
}

/// RFC 3339, in UTC.
std::string Moment(std::chrono::system_clock::time_point ATime) {
  using namespace std::chrono;
  const auto Seconds = floor<seconds>(ATime);
  const auto Day = floor<days>(Seconds);
  const year_month_day Date(Day);
  const hh_mm_ss Time(Seconds - Day);
  const auto Digits = [](auto AValue, std::size_t AWidth) {
    std::string Text = std::to_string(static_cast<std::int64_t>(AValue));
    return std::string(AWidth - std::min(AWidth, Text.size()), '0') + Text;
  };
  return Digits(static_cast<int>(Date.year()), 4) + "-" + Digits(static_cast<unsigned>(Date.month()), 2) + "-" +
         Digits(static_cast<unsigned>(Date.day()), 2) + "T" + Digits(Time.hours().count(), 2) + ":" +
         Digits(Time.minutes().count(), 2) + ":" + Digits(Time.seconds().count(), 2) + "Z";
}

/// Whether a file is another one, or a file of the set in the folder that the other one is.
bool Concerns(const std::string& AFileName, const std::string& AnOther) {
  if (AnOther.empty()) {
    return false;
  }
  const auto IsOne = [](const std::string& AName1, const std::string& AName2) {
    return TQuillonFilePath::IsPathEqual(AName1, AName2) || TQuillonFileSystem::SameFile(AName1, AName2);
  };
  return IsOne(AFileName, AnOther) || (TQuillonFilePath::IsExtensionEqual(AFileName, "csv") &&
                                       IsOne(QuillonIO::FolderOf(TQuillonFilePath::GetFullPath(AFileName)), AnOther));
}

double SecondsSince(std::chrono::steady_clock::time_point ABegin) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - ABegin).count();
}

}  // namespace

TVELReport::TVELReport() {
  if (const char* const Name = std::getenv("VELMORA_REPORT"); Name != nullptr && *Name != '\0') {
    FFileName = Name;
    FIsFixed = true;
  }
}

void TVELReport::SetFileName(const std::string& AFileName) {
  if (!FIsFixed) {
    FFileName = AFileName;
  }
}

void TVELReport::SpareOtherFiles() {
  for (const std::string& Other : {FSettings, FSource, FTarget}) {
    if (IsWanted() && Concerns(FFileName, Other)) {
      throw EQuillonException("The report may not take the place of \"" + std::exchange(FFileName, {}) +
                              "\": the run reads or writes it.");
    }
  }
}

void TVELReport::BeginStage(std::string_view AName) {
  EndStage();
  FStages.push_back({.Name = std::string(AName), .Begin = TClock::now()});
}

void TVELReport::EndStage() {
  if (!FStages.empty() && !FStages.back().IsOver) {
    FStages.back().Seconds = SecondsSince(FStages.back().Begin);
    FStages.back().PeakBytes = Platform::PeakMemory();
    FStages.back().IsOver = true;
  }
}

TVELReport::TFile& TVELReport::File(std::string_view AName) {
  const std::scoped_lock Lock(FNaming);
  return Named(FFiles, AName);
}

TVELReport::TKind& TVELReport::Kind(std::string_view AName) { return Named(FKinds, AName); }

void TVELReport::Warn(std::string_view AKind, std::string AText) {
  if (IsWanted() && ++FWarningCount <= MaxWarnings) {
    FWarnings.push_back({.Kind = std::string(AKind), .Text = std::move(AText)});
  }
}

void TVELReport::Finish(int AnExitCode, const std::string& AnError) {
  EndStage();
  SpareOtherFiles();
  if (IsWanted()) {
    // Threads may have come to them in any order.
    std::ranges::sort(FFiles, {}, &TFile::Name);
    QuillonIO::ReplaceFile(FFileName, Document(AnExitCode, AnError));
  }
}

std::string TVELReport::Document(int AnExitCode, const std::string& AnError) const {
  using TJson = nlohmann::ordered_json;
  TJson Stages = TJson::array();
  for (const TStage& Stage : FStages) {
    Stages.push_back({{"name", Stage.Name}, {"seconds", Stage.Seconds}, {"peakBytes", Stage.PeakBytes}});
  }
  TJson Files = TJson::array();
  for (const TFile& File : FFiles) {
    Files.push_back({{"name", File.Name}, {"rows", File.Rows}, {"skipped", File.Skipped}});
  }
  TJson Kinds = TJson::array();
  for (const TKind& Kind : FKinds) {
    Kinds.push_back({{"name", Kind.Name},
                     {"new", Kind.New},
                     {"changed", Kind.Changed},
                     {"unchanged", Kind.Unchanged},
                     {"cleared", Kind.Cleared}});
  }
  TJson Warnings = TJson::array();
  for (const TWarning& Warning : FWarnings) {
    Warnings.push_back({{"kind", Warning.Kind}, {"text", Warning.Text}});
  }
  const TJson Report = {{"format", Format},
                        {"job", FJob},
                        {"outcome", FOutcome.empty() ? TJson() : TJson(FOutcome)},
                        {"program", VELMORA_PRODUCT_RELEASE},
                        {"data", {{"release", FDataRelease}, {"program", FDataProgram}, {"version", FDataVersion}}},
                        {"source", FSource},
                        {"target", FTarget},
                        {"started", Moment(FStarted)},
                        {"seconds", SecondsSince(FBegin)},
                        {"peakBytes", Platform::PeakMemory()},
                        {"exitCode", AnExitCode},
                        {"error", AnError.empty() ? TJson() : TJson(AnError)},
                        {"stages", std::move(Stages)},
                        {"files", std::move(Files)},
                        {"kinds", std::move(Kinds)},
                        {"warningCount", FWarningCount},
                        {"warnings", std::move(Warnings)}};
  constexpr int Indent = 2;
  return Report.dump(Indent, ' ', false, TJson::error_handler_t::replace) + "\n";
}
