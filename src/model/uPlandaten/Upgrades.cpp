#include "uPlandaten/Upgrades.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "QuillonText.h"
#include "uPlandaten/Blockketten.h"
#include "uPlandaten/Bloecke.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Veranstaltungen.h"

namespace {

/// Blocks get a number of a band: one for each type of course, in the order in which the blocks name them.
void NumberBands(TVELPlan& APlan) {
  std::unordered_map<const TVELUnterrichtsart*, std::int32_t> Bands;
  std::unordered_map<std::string_view, std::int32_t> BandOfBlock;
  for (TVELBlock* Block : APlan.FBlockungen) {
    Block->FBand = Bands.try_emplace(Block->FKursart, static_cast<std::int32_t>(Bands.size()) + 1).first->second;
    BandOfBlock[Block->FName] = Block->FBand;
  }
  for (TVELVeranstaltung* Lesson : APlan.FVeranstaltungen) {
    if (const auto Found = BandOfBlock.find(Lesson->FBlockID); Found != BandOfBlock.end()) {
      Lesson->FBand = Found->second;
    }
  }
}

/// Students of a lesson stand in the order of their names.
void SortStudents(TVELPlan& APlan) {
  for (TVELVeranstaltung* Lesson : APlan.FVeranstaltungen) {
    Lesson->FSchueler.SortBy([](const TQuillonDataObject& A, const TQuillonDataObject& B) {
      const auto& StudentA = static_cast<const TVELSchueler&>(A);
      const auto& StudentB = static_cast<const TVELSchueler&>(B);
      const int Order = QuillonText::CompareIgnoreCase(StudentA.FNachname, StudentB.FNachname);
      return Order != 0 ? Order : QuillonText::CompareIgnoreCase(StudentA.FVorname, StudentB.FVorname);
    });
  }
}

std::int32_t LevelOf(const TVELBlock& ABlock) {
  if (ABlock.FKlasse->FStufe != 0) {
    return ABlock.FKlasse->FStufe;
  }
  for (const int Level : {11, 12, 13}) {
    if (ABlock.FKlasse->FKuerzel.find(std::to_string(Level)) != std::string::npos) {
      return Level;
    }
  }
  return ABlock.FStufe;
}

/// Blocks get the level of their class; one without class goes.
void LevelBlocks(TVELPlan& APlan) {
  std::unordered_set<const TVELBlock*> Removed;
  for (int I = APlan.FBlockungen.Count() - 1; I >= 0; --I) {
    TVELBlock* const Block = APlan.FBlockungen.GetItem(I);
    if (Block->FKlasse != nullptr) {
      Block->FStufe = LevelOf(*Block);
    } else {
      Removed.insert(Block);
      APlan.FBlockungen.Delete(I);
    }
  }
  for (TVELVeranstaltung* Lesson : APlan.FVeranstaltungen) {
    if (Removed.contains(Lesson->FBlock)) {
      Lesson->FBlock = nullptr;
    }
  }
}

}  // namespace

void uPlandaten::UpgradePlan(TVELPlan& APlan, TQuillonRelease AFileRelease) {
  struct TUpgrade {
    std::string_view Release;
    void (*Apply)(TVELPlan& APlan);
  };
  // In this order. The levels come last: the bands rest on blocks that go there.
  static constexpr std::array<TUpgrade, 5> Upgrades = {{
      {"6.0.135", NumberBands},
      {"6.0.90", RebuildBlocks},
      {"6.0.103", SortStudents},
      {"6.0.105", RebuildBlocks},
      {"6.0.135", LevelBlocks},
  }};
  for (const TUpgrade& Upgrade : Upgrades) {
    if (AFileRelease < Upgrade.Release) {
      Upgrade.Apply(APlan);
    }
  }
}
