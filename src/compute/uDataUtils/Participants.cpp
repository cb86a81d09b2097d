#include "uDataUtils/Participants.h"

#include <algorithm>
#include <array>
#include <span>

#include "uDataUtils/Context.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

namespace uDataUtils {

namespace {

using TObjects = std::span<TQuillonDataObject* const>;

/// Up to here a list is as soon looked through.
constexpr std::size_t FewItems = 32;

std::array<TObjects, 2> ListsOf(const TVELVeranstaltung& ALesson) {
  return {ALesson.FKlassen.Items(), ALesson.FSchueler.Items()};
}

std::array<TObjects, 3> ListsOf(const TVELTermin& ATermin) {
  return {ATermin.FLehrer.Items(), ATermin.FRaeume.Items(), ATermin.FRessourcen.Items()};
}

}  // namespace

TParticipants::TParticipants(const TVELPlan& APlan) {
  const auto Enter = [&](const auto& AnOwner) {
    for (const TObjects List : ListsOf(AnOwner)) {
      if (List.size() > FewItems) {
        FLongLists.try_emplace(List.data(), List.begin(), List.end());
      }
    }
  };
  for (const TVELVeranstaltung* const Lesson : APlan.FVeranstaltungen) {
    Enter(*Lesson);
    const bool IsLong = static_cast<std::size_t>(Lesson->FTermine.Count()) > FewItems;
    for (TVELTermin* const Termin : Lesson->FTermine) {
      Enter(*Termin);
      for (const TObjects List : IsLong ? ListsOf(*Termin) : std::array<TObjects, 3>()) {
        for (const TQuillonDataObject* const Object : List) {
          std::vector<TVELTermin*>& Appointments = FLongLessons[Lesson][Object];
          if (Appointments.empty() || Appointments.back() != Termin) {
            Appointments.push_back(Termin);
          }
        }
      }
    }
  }
}

bool TParticipants::Holds(std::span<TQuillonDataObject* const> AList, const TVELPlanobjekt& AnObject) const {
  if (AList.size() > FewItems) {
    if (const auto Found = FLongLists.find(AList.data()); Found != FLongLists.end()) {
      return Found->second.contains(&AnObject);
    }
  }
  return std::ranges::find(AList, &AnObject) != AList.end();
}

bool TParticipants::Contains(const TVELVeranstaltung& ALesson, const TVELPlanobjekt& AnObject) const {
  return ALesson.FFach == &AnObject ||
         std::ranges::any_of(ListsOf(ALesson), [&](TObjects AList) { return Holds(AList, AnObject); });
}

bool TParticipants::Contains(const TVELTermin& ATermin, const TVELPlanobjekt& AnObject) const {
  const TVELVeranstaltung* const Lesson = ATermin.Veranstaltung();
  return std::ranges::any_of(ListsOf(ATermin), [&](TObjects AList) { return Holds(AList, AnObject); }) ||
         (Lesson != nullptr && Contains(*Lesson, AnObject));
}

std::vector<TVELTermin*> TParticipants::Appointments(const TVELVeranstaltung& ALesson,
                                                     const TVELPlanobjekt& AnObject) const {
  const bool TakesAll = Contains(ALesson, AnObject);
  if (const auto Long = FLongLessons.find(&ALesson); !TakesAll && Long != FLongLessons.end()) {
    const auto Found = Long->second.find(&AnObject);
    return Found != Long->second.end() ? Found->second : std::vector<TVELTermin*>();
  }
  std::vector<TVELTermin*> Appointments;
  std::ranges::copy_if(ALesson.FTermine, std::back_inserter(Appointments),
                       [&](const TVELTermin* ATermin) { return TakesAll || Contains(*ATermin, AnObject); });
  return Appointments;
}

bool TakesPart(const TPlanContext& AContext, const TVELTermin& ATermin, const TVELPlanobjekt& AnObject) {
  return AContext.Participants().Contains(ATermin, AnObject);
}

}  // namespace uDataUtils
