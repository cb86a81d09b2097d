#include "uPlandaten/Blockketten.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_set>
#include <utility>

#include "QuillonNumbers.h"
#include "uPlandaten/Ordnungen.h"
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

void LinkRing(std::vector<TVELVeranstaltung*>& ALessons, const TLessonPlaces& APlaces) {
  if (ALessons.size() < 2) {
    return;
  }
  // As a list of lessons is sorted, so that those that are alike stand in the product's order.
  const auto At = [&](int APlace) -> TVELVeranstaltung*& { return ALessons[static_cast<std::size_t>(APlace)]; };
  QuillonClasses::QuickSort(
      0, static_cast<int>(ALessons.size()) - 1, [&](int A, int B) { return APlaces.Of(*At(A)) - APlaces.Of(*At(B)); },
      [&](int A, int B) { std::swap(At(A), At(B)); });
  for (std::size_t I = 0; I < ALessons.size(); ++I) {
    ALessons[I]->Set(ALessons[I]->FBlockNext, ALessons[(I + 1) % ALessons.size()]);
  }
}

/// The lessons of the ring that the appointment's block is, from its own on; none if there is no ring, see FindRings.
std::vector<const TVELVeranstaltung*> RingFrom(const TVELTermin& ATermin, const TVELPlan& APlan) {
  const TVELVeranstaltung* const First = ATermin.Veranstaltung();
  if (First == nullptr || BlockOf(ATermin.FBlockID) != First->FBlockID) {
    return {};
  }
  std::vector<const TVELVeranstaltung*> Ring;
  std::unordered_set<const TVELVeranstaltung*> Seen;
  const TVELVeranstaltung* Next = First;
  while (Next != nullptr && Next->FOwner == &APlan.FVeranstaltungen && Seen.insert(Next).second) {
    Ring.push_back(Next);
    Next = Next->FBlockNext;
  }
  return Next == First ? Ring : std::vector<const TVELVeranstaltung*>();
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
  const TLessonPlaces Places({&APlan.FVeranstaltungen});
  for (auto& [ID, Lessons] : Blocks) {
    for (TVELVeranstaltung* Lesson : Lessons) {
      SetBlockID(*Lesson, {}, false);
      SetBlockID(*Lesson, ID, false);
    }
    LinkRing(Lessons, Places);
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
  std::vector<TVELTermin*> Found = {&ATermin};
  const TVELPlan* const Plan = ATermin.Plan();
  if (Plan == nullptr || ATermin.FBlockID.empty()) {
    return Found;
  }
  const std::vector<const TVELVeranstaltung*> Ring = RingFrom(ATermin, *Plan);
  std::unordered_set<const TVELTermin*> Seen = {&ATermin};
  const auto Add = [&](const TVELVeranstaltung* ALesson) {
    std::ranges::copy_if(ALesson->FTermine, std::back_inserter(Found), [&](const TVELTermin* AnOther) {
      return AnOther->FBlockID == ATermin.FBlockID && Seen.insert(AnOther).second;
    });
  };
  if (Ring.empty()) {
    std::ranges::for_each(Plan->FVeranstaltungen, Add);
  } else {
    std::ranges::for_each(Ring, Add);
  }
  return Found;
}

}  // namespace uPlandaten
