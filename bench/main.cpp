#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <string>

#include "BenchJobs.h"
#include "Measure.h"
#include "QuillonGuid.h"

namespace {

constexpr double Mega = 1e6;

/// A folder for the files of one run.
class TFolder {
 public:
  TFolder()
      : FPath(std::filesystem::temp_directory_path() / ("velmora-bench-" + QuillonGuid::Plain(QuillonGuid::New()))) {
    std::filesystem::create_directory(FPath);
  }
  TFolder(const TFolder&) = delete;
  TFolder& operator=(const TFolder&) = delete;
  ~TFolder() {
    std::error_code Ignored;
    std::filesystem::remove_all(FPath, Ignored);
  }
  std::string Path(const std::string& AName) const { return (FPath / AName).string(); }

 private:
  std::filesystem::path FPath;
};

/// A family of data files: how one of a size is made.
struct TFamily {
  const char* Name;
  void (*Make)(const std::string& AFileName, int ASize);
};

constexpr TFamily Scales{.Name = "scale", .Make = Bench::MakeSchool};
constexpr TFamily Changes{.Name = "changes", .Make = Bench::MakeChangedSchool};

/// One data file, and what its bare parse took.
struct TSchool {
  std::string FileName;
  double Bytes = 0;
  double Objects = 0;
  Bench::TResult Parse;
  std::string SetFolder;  ///< its OCF set, once a job has asked for it
};

/// The file of a size; made when it is first asked for.
TSchool& SchoolOf(const TFolder& AFolder, const TFamily& AFamily, int ASize) {
  static std::map<std::string, TSchool> Schools;
  const std::string Name = AFamily.Name + std::to_string(ASize);
  TSchool& School = Schools[Name];
  if (School.FileName.empty()) {
    School.FileName = AFolder.Path(Name + ".velmora");
    Bench::Measure([&] {
      AFamily.Make(School.FileName, ASize);
      return std::uint64_t{0};
    });
    School.Bytes = static_cast<double>(std::filesystem::file_size(School.FileName));
    School.Objects = static_cast<double>(Bench::Measure([&] { return Bench::Load(School.FileName); }).Value);
    School.Parse = Bench::Measure([&] { return Bench::Parse(School.FileName); });
  }
  return School;
}

/// Exports the school, for jobs that take its set back.
void MakeSet(const TFolder& AFolder, TSchool& ASchool) {
  if (ASchool.SetFolder.empty()) {
    ASchool.SetFolder = AFolder.Path("set-" + std::to_string(static_cast<std::int64_t>(ASchool.Objects)));
    Bench::Measure([&] { return Bench::Export(ASchool.FileName, ASchool.SetFolder); });
  }
}

using TJob = std::function<std::uint64_t(const TSchool&)>;

/// The quickest round and the least memory count: all else is the machine's doing.
Bench::TResult MeasureBest(benchmark::State& AState, const TSchool& ASchool, const TJob& AJob) {
  Bench::TResult Best;
  for (auto Round : AState) {
    static_cast<void>(Round);
    const Bench::TResult Result = Bench::Measure([&] { return AJob(ASchool); });
    AState.SetIterationTime(Result.Seconds);
    Best.Value = Result.Value;
    const bool IsFirst = Best.Seconds == 0;
    Best.DiskSeconds = IsFirst ? Result.DiskSeconds : std::min(Best.DiskSeconds, Result.DiskSeconds);
    Best.Seconds = IsFirst ? Result.Seconds : std::min(Best.Seconds, Result.Seconds);
    Best.PeakBytes = IsFirst ? Result.PeakBytes : std::min(Best.PeakBytes, Result.PeakBytes);
  }
  return Best;
}

void Tell(benchmark::State& AState, const TSchool& ASchool, const Bench::TResult& AResult) {
  const auto Peak = static_cast<double>(AResult.PeakBytes);
  AState.counters["best_ms"] = AResult.Seconds * 1e3;
  AState.counters["disk_ms"] = AResult.DiskSeconds * 1e3;
  AState.counters["to_parse"] = AResult.Seconds / ASchool.Parse.Seconds;
  AState.counters["ns_per_object"] = AResult.Seconds * 1e9 / ASchool.Objects;
  AState.counters["file_MB"] = ASchool.Bytes / Mega;
  AState.counters["peak_MB"] = Peak / Mega;
  if (AResult.Value != 0) {
    AState.counters["result"] = static_cast<double>(AResult.Value);
  }
  AState.counters["peak_to_file"] = Peak / ASchool.Bytes;
}

/// About the same time for each size.
int RoundsOf(const TFamily& AFamily, int ASize) {
  return std::clamp(&AFamily == &Scales ? 64 / ASize : 200'000 / ASize, 3, 20);
}

void Register(const TFolder& AFolder, const TFamily& AFamily, int ASize) {
  const auto Add = [&](const char* AName, bool IsParse, const TJob& AJob) {
    const std::string Name = std::string(AName) + "/" + AFamily.Name + ":" + std::to_string(ASize);
    benchmark::RegisterBenchmark(Name.c_str(),
                                 [&AFolder, &AFamily, ASize, IsParse, AJob](benchmark::State& AState) {
                                   TSchool& School = SchoolOf(AFolder, AFamily, ASize);
                                   MakeSet(AFolder, School);
                                   const Bench::TResult Best = MeasureBest(AState, School, AJob);
                                   if (IsParse) {
                                     School.Parse = Best;
                                   }
                                   Tell(AState, School, Best);
                                 })
        ->UseManualTime()
        ->Iterations(RoundsOf(AFamily, ASize))
        ->Unit(benchmark::kMillisecond);
  };
  Add("parse", true, [](const TSchool& ASchool) { return Bench::Parse(ASchool.FileName); });
  Add("parse_reader_options", false,
      [](const TSchool& ASchool) { return Bench::ParseWithReaderOptions(ASchool.FileName); });
  Add("load", false, [](const TSchool& ASchool) { return Bench::Load(ASchool.FileName); });
  Add("load_binary", false, [](const TSchool& ASchool) { return Bench::LoadBinary(ASchool.FileName); });
  Add("save", false, [](const TSchool& ASchool) { return Bench::SaveXML(ASchool.FileName); });
  Add("save_binary", false, [](const TSchool& ASchool) { return Bench::SaveBinary(ASchool.FileName); });
  Add("snapshot", false, [](const TSchool& ASchool) { return Bench::Snapshot(ASchool.FileName); });
  Add("export", false,
      [&AFolder](const TSchool& ASchool) { return Bench::Export(ASchool.FileName, AFolder.Path("out")); });
  Add("export_binary", false,
      [&AFolder](const TSchool& ASchool) { return Bench::ExportBinary(ASchool.FileName, AFolder.Path("out")); });
  Add("export_server", false,
      [&AFolder](const TSchool& ASchool) { return Bench::ExportFromServer(ASchool.FileName, AFolder.Path("out")); });
  Add("import", false, [](const TSchool& ASchool) { return Bench::Import(ASchool.FileName, ASchool.SetFolder); });
  for (const char* Form : {"undated", "dated"}) {
    Add((std::string("publish_") + Form).c_str(), false,
        [Form](const TSchool& ASchool) { return Bench::Publish(ASchool.FileName, Form); });
  }
  Add("newguids", false, [](const TSchool& ASchool) { return Bench::NewGuids(ASchool.FileName); });
}

}  // namespace

int main(int ACount, char** AValues) {
  benchmark::Initialize(&ACount, AValues);
  if (benchmark::ReportUnrecognizedArguments(ACount, AValues)) {
    return 1;
  }
  try {
    const TFolder Folder;
    for (const int Scale : {1, 8, 64}) {
      Register(Folder, Scales, Scale);
    }
    for (const int Count : {12'500, 50'000, 200'000}) {
      Register(Folder, Changes, Count);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
  } catch (const std::exception& Error) {
    std::cerr << "[Error] " << Error.what() << "\n";
    return 1;
  }
}
