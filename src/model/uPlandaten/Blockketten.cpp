#include "uPlandaten/Blockketten.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_map>

#include "QuillonNumbers.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

namespace uPlandaten {

namespace {

/// The block in an appointment's identifier.
std::string_view BlockOf(std::string_view AnID) { return AnID.substr(0, AnID.find('.')); }

/// Sorts by the order of lessons, whose text is built once for each.
void SortLessons(std::vector<TVELVeranstaltung*>& ALessons) {
  std::unordered_map<const TVELVeranstaltung*, std::string> Texts;
  for (const TVELVeranstaltung* Lesson : ALessons) {
    Texts.emplace(Lesson, Lesson->SortText());
  }
  std::ranges::stable_sort(ALessons, [&](const TVELVeranstaltung* A, const TVELVeranstaltung* B) {
    return A->FBlockIndex != B->FBlockIndex ? A->FBlockIndex < B->FBlockIndex : Texts.at(A) < Texts.at(B);
  });
}

void LinkRing(std::vector<TVELVeranstaltung*>& ALessons) {
  if (ALessons.size() < 2) {
    return;
  }
  SortLessons(ALessons);
  for (std::size_t I = 0; I < ALessons.size(); ++I) {
    ALessons[I]->Set(ALessons[I]->FBlockNext, ALessons[(I + 1) % ALessons.size()]);
  }
}

/// True if the appointments' lessons are in one block, or the first one's in none.
bool ShareRing(const TVELTermin& ATermin, const TVELTermin& AnOther) {
  const TVELVeranstaltung* const Lesson = ATermin.Veranstaltung();
  const TVELVeranstaltung* const Other = AnOther.Veranstaltung();
  return Lesson == nullptr || Lesson->FBlockNext == nullptr || BlockOf(ATermin.FBlockID) != Lesson->FBlockID ||
         (Other != nullptr && Other->FBlockID == Lesson->FBlockID);
}

}  // namespace

void SetBlockID(TVELVeranstaltung& ALesson, std::string_view AnID, bool AForce) {
  if (!AForce && ALesson.FBlockID == AnID) {
    return;
  }
  std::int64_t Place = 0;
  for (TVELTermin* Appointment : ALesson.FTermine) {
    ++Place;
    if (!AForce && BlockOf(Appointment->FBlockID) != ALesson.FBlockID) {
      continue;
    }
    std::string ID(AnID);
    if (!ID.empty()) {
      QuillonNumbers::AppendInteger(ID.append("."), Place);
    }
    Appointment->Set(Appointment->FBlockID, ID);
  }
  ALesson.Set(ALesson.FBlockID, AnID);
}

void RebuildBlocks(TVELPlan& APlan) {
  std::unordered_map<std::string, std::vector<TVELVeranstaltung*>> Blocks;
  for (TVELVeranstaltung* Lesson : APlan.FVeranstaltungen) {
    Lesson->Set(Lesson->FBlockNext, static_cast<TVELVeranstaltung*>(nullptr));
    if (!Lesson->FBlockID.empty()) {
      Blocks[Lesson->FBlockID].push_back(Lesson);
    }
  }
  for (auto& [ID, Lessons] : Blocks) {
    for (TVELVeranstaltung* Lesson : Lessons) {
      SetBlockID(*Lesson, {}, false);
      SetBlockID(*Lesson, ID, false);
    }
    LinkRing(Lessons);
  }
}

TBlockIndex::TBlockIndex(const TVELPlan& APlan) {
  for (const TVELVeranstaltung* Lesson : APlan.FVeranstaltungen) {
    for (TVELTermin* Appointment : Lesson->FTermine) {
      if (!Appointment->FBlockID.empty()) {
        FTermine[Appointment->FBlockID].push_back(Appointment);
      }
    }
  }
}

std::vector<TVELTermin*> TBlockIndex::Partners(TVELTermin& ATermin) const {
  std::vector<TVELTermin*> Found = {&ATermin};
  if (const auto Block = FTermine.find(ATermin.FBlockID); Block != FTermine.end()) {
    std::ranges::copy_if(Block->second, std::back_inserter(Found), [&](const TVELTermin* AnOther) {
      return AnOther != &ATermin && ShareRing(ATermin, *AnOther);
    });
  }
  return Found;
}

std::vector<TVELTermin*> BlockPartners(TVELTermin& ATermin) {
  const TVELPlan* const Plan = ATermin.Plan();
  return Plan == nullptr || ATermin.FBlockID.empty() ? std::vector<TVELTermin*>{&ATermin}
                                                     : TBlockIndex(*Plan).Partners(ATermin);
}

}  // namespace uPlandaten
