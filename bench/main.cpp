#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

#include "BenchJobs.h"
#include "Measure.h"
#include "QuillonGuid.h"
#include "QuillonNumbers.h"
#include "QuillonTypes.h"

namespace {

constexpr const char* Usage = "usage: velmora-bench [--repeats N] [SCALE...]";
constexpr double Mega = 1e6;

struct TArguments {
  int Repeats = 0;  ///< 0 for as many as suit the scale
  std::vector<int> Scales;
};

TArguments Parse(const std::vector<std::string>& AnArguments) {
  TArguments Result;
  for (std::size_t I = 0; I < AnArguments.size(); ++I) {
    if (AnArguments[I] == "--repeats" && I + 1 < AnArguments.size()) {
      Result.Repeats = static_cast<int>(QuillonNumbers::ParseInteger(AnArguments[++I], 1, 1000));
    } else if (AnArguments[I].starts_with("-")) {
      throw EQuillonException("unknown argument \"" + AnArguments[I] + "\"; " + Usage);
    } else {
      Result.Scales.push_back(static_cast<int>(QuillonNumbers::ParseInteger(AnArguments[I], 1, 1000)));
    }
  }
  if (Result.Scales.empty()) {
    Result.Scales = {1, 8, 64};
  }
  return Result;
}

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

/// The quickest run, and the least memory: all else is the machine's doing.
void Improve(Bench::TResult& ABest, const Bench::TResult& AResult, bool AnIsFirst) {
  ABest.Value = AResult.Value;
  ABest.Seconds = AnIsFirst ? AResult.Seconds : std::min(ABest.Seconds, AResult.Seconds);
  ABest.PeakBytes = AnIsFirst ? AResult.PeakBytes : std::min(ABest.PeakBytes, AResult.PeakBytes);
}

struct TFigures {
  Bench::TResult Parse;
  Bench::TResult Defaults;
  Bench::TResult Load;
  Bench::TResult Export;
};

void ShowLine(const char* AName, const Bench::TResult& AResult, const TFigures& AFigures) {
  const auto Objects = static_cast<double>(AFigures.Load.Value);
  const double Peak = static_cast<double>(AResult.PeakBytes);
  std::cout << std::fixed << "  " << std::left << std::setw(24) << AName << std::right << std::setprecision(1)
            << std::setw(10) << AResult.Seconds * 1e3 << " ms" << std::setprecision(2) << std::setw(8)
            << AResult.Seconds / AFigures.Parse.Seconds << " x" << std::setprecision(0) << std::setw(8)
            << AResult.Seconds * 1e9 / Objects << " ns/object" << std::setprecision(1) << std::setw(9) << Peak / Mega
            << " MB\n";
}

void Show(int AScale, const TFigures& AFigures) {
  const auto Bytes = static_cast<double>(AFigures.Parse.Value);
  const double Allowed = static_cast<double>(AFigures.Parse.PeakBytes) + Bytes;
  const double Peak = static_cast<double>(AFigures.Export.PeakBytes);
  std::cout << "scale " << AScale << ": " << std::fixed << std::setprecision(1) << Bytes / Mega << " MB, "
            << AFigures.Load.Value << " objects\n";
  ShowLine("bare parse", AFigures.Parse, AFigures);
  ShowLine("  with default options", AFigures.Defaults, AFigures);
  ShowLine("load of the plan", AFigures.Load, AFigures);
  ShowLine("whole export", AFigures.Export, AFigures);
  std::cout << "  memory of the export: " << std::setprecision(2) << Peak / Allowed << " of bare parse + file size\n";
  std::cout << std::setprecision(3) << "BENCH scale=" << AScale << " bytes=" << AFigures.Parse.Value
            << " objects=" << AFigures.Load.Value << " parse_ms=" << AFigures.Parse.Seconds * 1e3
            << " parse_default_ms=" << AFigures.Defaults.Seconds * 1e3 << " load_ms=" << AFigures.Load.Seconds * 1e3
            << " export_ms=" << AFigures.Export.Seconds * 1e3
            << " export_to_parse=" << AFigures.Export.Seconds / AFigures.Parse.Seconds
            << " export_ns_per_object=" << AFigures.Export.Seconds * 1e9 / static_cast<double>(AFigures.Load.Value)
            << " parse_peak_bytes=" << AFigures.Parse.PeakBytes << " load_peak_bytes=" << AFigures.Load.PeakBytes
            << " export_peak_bytes=" << AFigures.Export.PeakBytes << " peak_to_allowed=" << Peak / Allowed << "\n"
            << std::flush;
}

void Run(const TFolder& AFolder, int AScale, int ARepeats) {
  const std::string FileName = AFolder.Path("school.velmora");
  Bench::Measure([&] {
    Bench::MakeSchool(FileName, AScale);
    return std::uint64_t{0};
  });
  TFigures Best;
  // One after the other in each round, so that a slow moment of the machine meets all of them.
  for (int I = 0; I < ARepeats; ++I) {
    Improve(Best.Parse, Bench::Measure([&] { return Bench::Parse(FileName); }), I == 0);
    Improve(Best.Defaults, Bench::Measure([&] { return Bench::ParseWithDefaults(FileName); }), I == 0);
    Improve(Best.Load, Bench::Measure([&] { return Bench::Load(FileName); }), I == 0);
    Improve(Best.Export, Bench::Measure([&] { return Bench::Export(FileName, AFolder.Path("out")); }), I == 0);
  }
  Show(AScale, Best);
}

/// About the same time for each scale.
int RepeatsOf(int AScale) { return std::clamp(64 / AScale, 5, 20); }

}  // namespace

int main(int ACount, char** AValues) {
  try {
    const TArguments Arguments = Parse({AValues + 1, AValues + ACount});
    const TFolder Folder;
    for (const int Scale : Arguments.Scales) {
      Run(Folder, Scale, Arguments.Repeats > 0 ? Arguments.Repeats : RepeatsOf(Scale));
    }
    return 0;
  } catch (const std::exception& Error) {
    std::cerr << "[Error] " << Error.what() << "\n";
    return 1;
  }
}
