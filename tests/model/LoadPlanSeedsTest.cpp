#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize);

namespace {

void RunOnce(const std::string& ADocument) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(ADocument.data()), ADocument.size());
}

// The seeds of the fuzz target and some hundred damaged copies of each, the same ones at every run. What they may do
// is refuse or load; a crash, a hang or an exception of the second load fails.
TEST(LoadPlanSeeds, DamagedPlansAreRefusedOrLoaded) {
  std::vector<std::filesystem::path> Seeds;
  for (const auto& Entry : std::filesystem::directory_iterator(VELMORA_SOURCE_DIR "/fuzz/corpus/load_plan")) {
    Seeds.push_back(Entry.path());
  }
  std::sort(Seeds.begin(), Seeds.end());
  ASSERT_FALSE(Seeds.empty());
  std::mt19937 Random(42);
  const auto Below = [&](std::size_t ALimit) {
    return static_cast<std::size_t>(Random()) % std::max<std::size_t>(ALimit, 1);
  };
  for (const auto& Seed : Seeds) {
    std::ostringstream Text;
    Text << std::ifstream(Seed, std::ios::binary).rdbuf();
    const std::string Document = Text.str();
    RunOnce(Document);
    for (int Round = 0; Round < 300; ++Round) {
      std::string Damaged = Document;
      for (std::size_t Times = 1 + Below(3); Times > 0; --Times) {
        const std::size_t Place = Below(Damaged.size());
        const std::size_t Length = Below(std::min<std::size_t>(Damaged.size() - Place, 200));
        switch (Below(4)) {
          case 0:
            if (!Damaged.empty()) {
              Damaged[Place] = static_cast<char>(Damaged[Place] ^ (1 << Below(8)));
            }
            break;
          case 1:
            Damaged.erase(Place, Length);
            break;
          case 2:
            Damaged.insert(Place, Damaged.substr(Place, Length));
            break;
          default: {  // another element's lines in the place
            const std::size_t From = Damaged.find('\n', Below(Damaged.size()));
            const std::size_t To = Damaged.find('\n', From == std::string::npos ? From : From + 1 + Below(300));
            const std::size_t Into = Damaged.find('\n', Place);
            if (To != std::string::npos && Into != std::string::npos) {
              Damaged.insert(Into, Damaged.substr(From, To - From));
            }
          }
        }
      }
      RunOnce(Damaged);
    }
  }
}

}  // namespace
