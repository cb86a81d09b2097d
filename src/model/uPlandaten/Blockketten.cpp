#include "uPlandaten/Blockketten.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_set>
#include <utility>

#include "QuillonNumbers.h"
#include "QuillonText.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

namespace uPlandaten {

namespace {

/// The block in an appointment's identifier.
std::string_view BlockOf(std::string_view AnID) { return AnID.substr(0, AnID.find('.')); }

/// The lessons of the plan, each once: a damaged file may list one twice.
std::vector<TVELVeranstaltung*> LessonsOf(const TVELPlan& APlan) {
  std::vector<TVELVeranstaltung*> Lessons;
  std::unordered_set<const TVELVeranstaltung*> Seen;
  std::ranges::copy_if(APlan.FVeranstaltungen, std::back_inserter(Lessons),
                       [&](const TVELVeranstaltung* ALesson) { return Seen.insert(ALesson).second; });
  return Lessons;
}

/// Sorts by the order of lessons, whose text is built once for each.
void SortLessons(std::vector<TVELVeranstaltung*>& ALessons) {
  std::unordered_map<const TVELVeranstaltung*, std::string> Texts;
  for (const TVELVeranstaltung* Lesson : ALessons) {
    Texts.emplace(Lesson, Lesson->SortText());
  }
  std::ranges::stable_sort(ALessons, [&](const TVELVeranstaltung* A, const TVELVeranstaltung* B) {
    return A->FBlockIndex != B->FBlockIndex ? A->FBlockIndex < B->FBlockIndex
                                            : QuillonText::CompareOrdinal(Texts.at(A), Texts.at(B)) < 0;
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
  for (TVELVeranstaltung* Lesson : LessonsOf(APlan)) {
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
  const std::vector<TVELVeranstaltung*> Lessons = LessonsOf(APlan);
  FindRings(Lessons);
  for (const TVELVeranstaltung* Lesson : Lessons) {
    const TVELVeranstaltung* const Ring = FRings.at(Lesson);
    for (TVELTermin* Appointment : Lesson->FTermine) {
      if (Appointment->FBlockID.empty()) {
        continue;
      }
      FTermine[{nullptr, Appointment->FBlockID}].push_back(Appointment);
      if (Ring != nullptr) {
        FTermine[{Ring, Appointment->FBlockID}].push_back(Appointment);
      }
    }
  }
}

/// A file may tell chains that end, that run into a ring, or that leave the plan: none of these is a ring.
void TBlockIndex::FindRings(const std::vector<TVELVeranstaltung*>& ALessons) {
  for (const TVELVeranstaltung* Lesson : ALessons) {
    FRings.emplace(Lesson, nullptr);
  }
  std::unordered_map<const TVELVeranstaltung*, const TVELVeranstaltung*> Walks;  // each lesson's first visitor
  for (const TVELVeranstaltung* First : ALessons) {
    const TVELVeranstaltung* Next = First;
    while (FRings.contains(Next) && Walks.try_emplace(Next, First).second) {
      Next = Next->FBlockNext;
    }
    // A walk that met itself has found a ring; one that met an earlier walk has found nothing new.
    for (const TVELVeranstaltung* Ring = Next; FRings.contains(Ring) && Walks.at(Ring) == First;
         Ring = Ring->FBlockNext) {
      if (std::exchange(FRings.at(Ring), Next) != nullptr) {
        break;
      }
    }
  }
}

const TVELVeranstaltung* TBlockIndex::RingOf(const TVELTermin& ATermin) const {
  const TVELVeranstaltung* const Lesson = ATermin.Veranstaltung();
  const auto Found = FRings.find(Lesson);
  return Found != FRings.end() && BlockOf(ATermin.FBlockID) == Lesson->FBlockID ? Found->second : nullptr;
}

std::vector<TVELTermin*> TBlockIndex::Partners(TVELTermin& ATermin) const {
  std::vector<TVELTermin*> Found = {&ATermin};
  if (const auto Block = FTermine.find({RingOf(ATermin), ATermin.FBlockID}); Block != FTermine.end()) {
    std::ranges::copy_if(Block->second, std::back_inserter(Found),
                         [&](const TVELTermin* AnOther) { return AnOther != &ATermin; });
  }
  return Found;
}

std::vector<TVELTermin*> BlockPartners(TVELTermin& ATermin) {
  const TVELPlan* const Plan = ATermin.Plan();
  return Plan == nullptr || ATermin.FBlockID.empty() ? std::vector<TVELTermin*>{&ATermin}
                                                     : TBlockIndex(*Plan).Partners(ATermin);
}

}  // namespace uPlandaten
