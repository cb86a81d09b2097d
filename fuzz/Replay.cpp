#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

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

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& AFolder) {
  const std::filesystem::directory_iterator Entries(AFolder);
  std::vector<std::filesystem::path> Files(begin(Entries), end(Entries));
  std::sort(Files.begin(), Files.end());
  return Files;
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
  const std::filesystem::path Path = AValues[1];
  const auto Seeds = std::filesystem::is_directory(Path) ? FilesOf(Path) : std::vector{Path};
  TRunner Runner{std::string(AValues[0]) + ".input"};
  for (const auto& Seed : Seeds) {
    std::printf("%s\n", Seed.c_str());
    std::fflush(stdout);
    const std::string Input = Fuzz::ReadFile(Seed.string());
    Runner.Run(Input);
    // The same copies at every run.
    TDamage Damage;
    for (int Copies = std::atoi(AValues[2]); Copies > 0; --Copies) {
      Runner.Run(Damage(Input));
    }
  }
  return Seeds.empty() ? 1 : 0;
}
