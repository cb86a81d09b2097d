#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <utility>

#include "Fuzz.h"

namespace {

/// Makes copies of an input with some damage each: a bit, a piece that is gone or stands twice, lines in another place.
class TDamage {
 public:
  std::string operator()(std::string AnInput) {
    for (std::size_t Times = 1 + Below(3); Times > 0; --Times) {
      const std::size_t Place = Below(AnInput.size());
      const std::size_t Length = Below(std::min<std::size_t>(AnInput.size() - Place, 200));
      switch (Below(4)) {
        case 0:
          if (!AnInput.empty()) {
            AnInput[Place] = static_cast<char>(AnInput[Place] ^ (1 << Below(8)));
          }
          break;
        case 1:
          AnInput.erase(Place, Length);
          break;
        case 2:
          AnInput.insert(Place, AnInput.substr(Place, Length));
          break;
        default:
          CopyLines(AnInput, Place);
      }
    }
    return AnInput;
  }

 private:
  std::size_t Below(std::size_t ALimit) {
    return static_cast<std::size_t>(FRandom()) % std::max<std::size_t>(ALimit, 1);
  }

  void CopyLines(std::string& AnInput, std::size_t APlace) {
    const std::size_t From = AnInput.find('\n', Below(AnInput.size()));
    const std::size_t To = AnInput.find('\n', From == std::string::npos ? From : From + 1 + Below(300));
    const std::size_t Into = AnInput.find('\n', APlace);
    if (To != std::string::npos && Into != std::string::npos) {
      AnInput.insert(Into, AnInput.substr(From, To - From));
    }
  }

  std::mt19937 FRandom{42};
};

/// The contents by name: of the files in a folder, or of the one file.
std::map<std::string, std::string> InputsOf(const std::string& APath) {
  if (!std::filesystem::is_directory(APath)) {
    return {{APath, Fuzz::ReadFile(APath)}};
  }
  std::map<std::string, std::string> Inputs;
  for (const auto& Entry : std::filesystem::directory_iterator(APath)) {
    Inputs[Entry.path().string()] = Fuzz::ReadFile(Entry.path().string());
  }
  return Inputs;
}

/// Runs inputs. The one that runs stands in a file, so that the one that ended the process is at hand.
class TRunner {
 public:
  explicit TRunner(std::string AFileName) : FFileName(std::move(AFileName)), FFile(FFileName, std::ios::binary) {}

  void Run(std::string_view AnInput) {
    // Written over: a file that is emptied and filled anew goes to the disk each time.
    FFile.seekp(0) << AnInput << std::flush;
    std::filesystem::resize_file(FFileName, AnInput.size());
    Fuzz::Run(AnInput);
  }

 private:
  std::string FFileName;
  std::ofstream FFile;
};

}  // namespace

/// Runs a target without a fuzzer, on the files of a folder with damaged copies of each, or on one file as it is.
/// Arguments: file or folder, count of copies.
int main(int ACount, char** AValues) {
  if (ACount != 3) {
    std::fprintf(stderr, "Usage: %s SEED-OR-FOLDER COPIES\n", AValues[0]);
    return 2;
  }
  // Read before the runner writes: its file may be the one to run.
  const auto Inputs = InputsOf(AValues[1]);
  TRunner Runner{std::string(AValues[0]) + ".input"};
  for (const auto& [Name, Input] : Inputs) {
    std::printf("%s\n", Name.c_str());
    std::fflush(stdout);
    Runner.Run(Input);
    // The same copies at every run.
    TDamage Damage;
    for (int Copies = std::atoi(AValues[2]); Copies > 0; --Copies) {
      Runner.Run(Damage(Input));
    }
  }
  return Inputs.empty() ? 1 : 0;
}
