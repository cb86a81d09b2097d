#include "uPlandaten/Relationen.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Sammelaenderung.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

namespace {

using TObjects = std::span<TQuillonDataObject* const>;

void Enter(TQuillonDataList& AList, TQuillonDataObject* AnItem) {
  if (!AList.Holds(AnItem)) {
    AList.Add(AnItem);
  }
}

/// What a lesson uses waits while many objects change at once.
bool Waits(TVELPlanobjekt& AnObject, TVELVeranstaltung& ALesson, bool AnIsUsed) {
  const TVELPlan* const Plan = ALesson.Plan();
  if (Plan == nullptr || Plan->FSammelaenderung == nullptr) {
    return false;
  }
  Plan->FSammelaenderung->Note(AnObject, ALesson, AnIsUsed);
  return true;
}

/// Tells the item, if it takes part in the timetable, of what its owner does.
void Tell(TQuillonDataAbstractObject& AnOwner, TQuillonDataObject* AnItem,
          void (TVELPlanobjekt::*ATelling)(TVELDataObject&)) {
  if (AnItem == nullptr || !uPlandaten::FollowsRelations(AnOwner)) {
    return;
  }
  auto* const Referrer = dynamic_cast<TVELDataObject*>(&AnOwner);
  auto* const Object = dynamic_cast<TVELPlanobjekt*>(AnItem);
  if (Referrer != nullptr && Object != nullptr) {
    (Object->*ATelling)(*Referrer);
  }
}

}  // namespace

void TVELPlanobjekt::AddReference(TVELDataObject& AReferrer) {
  if (auto* const Absence = dynamic_cast<TVELFehlzeit*>(&AReferrer)) {
    Enter(FFehlzeiten, Absence);
  } else if (auto* const Appointment = dynamic_cast<TVELTermin*>(&AReferrer)) {
    Enter(FVeranstaltungen, Appointment->Veranstaltung());
  } else if (auto* const Lesson = dynamic_cast<TVELVeranstaltung*>(&AReferrer);
             Lesson != nullptr && !Waits(*this, *Lesson, true)) {
    Enter(FVeranstaltungen, Lesson);
  }
}

void TVELPlanobjekt::RemoveReference(TVELDataObject& AReferrer) {
  if (const auto* const Absence = dynamic_cast<const TVELFehlzeit*>(&AReferrer)) {
    FFehlzeiten.RemoveObject(Absence);
  } else if (const auto* const Appointment = dynamic_cast<const TVELTermin*>(&AReferrer)) {
    const TVELVeranstaltung* const Lesson = Appointment->Veranstaltung();
    if (Lesson != nullptr && !uPlandaten::LessonUses(*Lesson, *this, Appointment)) {
      FVeranstaltungen.RemoveObject(Lesson);
    }
  } else if (auto* const Lesson = dynamic_cast<TVELVeranstaltung*>(&AReferrer);
             Lesson != nullptr && !Waits(*this, *Lesson, false)) {
    FVeranstaltungen.RemoveObject(Lesson);
  }
}

namespace uPlandaten {

bool FollowsRelations(const TQuillonDataAbstractObject& AnOwner) {
  const TQuillonDataStorage* const Store = AnOwner.Storage();
  return Store != nullptr && !Store->IsReading() && !Store->IsIn(TQuillonDataStorageState::dssClearing);
}

void AddRelation(TQuillonDataAbstractObject& AnOwner, TQuillonDataObject* AnItem) {
  Tell(AnOwner, AnItem, &TVELPlanobjekt::AddReference);
}

void RemoveRelation(TQuillonDataAbstractObject& AnOwner, TQuillonDataObject* AnItem) {
  Tell(AnOwner, AnItem, &TVELPlanobjekt::RemoveReference);
}

void SetRelations(TQuillonDataAbstractObject& AnOwner, TObjects AnOld, TObjects ANew) {
  for (TQuillonDataObject* Item : ANew) {
    AddRelation(AnOwner, Item);
  }
  for (TQuillonDataObject* Item : AnOld) {
    if (std::ranges::find(ANew, Item) == ANew.end()) {
      RemoveRelation(AnOwner, Item);
    }
  }
}

namespace {

/// Calls AVisit(TVELPlanobjekt&, TVELVeranstaltung&) for all that each lesson and its appointments use.
template <class TVisit>
void ForEachUse(const TVELPlan& APlan, const TVisit& AVisit) {
  for (TVELVeranstaltung* Lesson : APlan.FVeranstaltungen) {
    const auto Visit = [&](TQuillonDataObject* AnObject) {
      if (AnObject != nullptr) {
        AVisit(*static_cast<TVELPlanobjekt*>(AnObject), *Lesson);
      }
    };
    const auto VisitAll = [&](const auto&... ALists) { (std::ranges::for_each(ALists.Items(), Visit), ...); };
    Visit(Lesson->FFach);
    VisitAll(Lesson->FKlassen, Lesson->FLehrer, Lesson->FRaeume, Lesson->FSchueler, Lesson->FRessourcen);
    for (const TVELTermin* Appointment : Lesson->FTermine) {
      VisitAll(Appointment->FLehrer, Appointment->FRaeume, Appointment->FRessourcen);
    }
  }
}

using TObjectSet = std::unordered_set<TVELPlanobjekt*>;

/// The objects whose lists are not just their lessons in the order of the plan. As a rule there are few: files tell
/// all lessons, and in that order.
TObjectSet FindIrregular(const TVELPlan& APlan) {
  TObjectSet Irregular;
  // How many of its lessons have been met stands in the object's scratch value.
  ForEachUse(APlan, [](TVELPlanobjekt& AnObject, TVELVeranstaltung&) { AnObject.FTag = 0; });
  ForEachUse(APlan, [&](TVELPlanobjekt& AnObject, TVELVeranstaltung& ALesson) {
    const auto Lessons = AnObject.FVeranstaltungen.Items();
    const auto Met = static_cast<std::size_t>(AnObject.FTag);
    if (Met < Lessons.size() && Lessons[Met] == &ALesson) {
      ++AnObject.FTag;
    } else if (Met == 0 || Met > Lessons.size() || Lessons[Met - 1] != &ALesson) {
      Irregular.insert(&AnObject);
    }
  });
  return Irregular;
}

}  // namespace

void EnterLessons(TVELPlan& APlan) {
  const TObjectSet Irregular = FindIrregular(APlan);
  if (Irregular.empty()) {
    return;
  }
  std::unordered_map<TVELPlanobjekt*, std::unordered_set<const TQuillonDataObject*>> Present;
  for (TVELPlanobjekt* Object : Irregular) {
    const auto Lessons = Object->FVeranstaltungen.Items();
    Present.try_emplace(Object, Lessons.begin(), Lessons.end());
  }
  ForEachUse(APlan, [&](TVELPlanobjekt& AnObject, TVELVeranstaltung& ALesson) {
    if (const auto Found = Present.find(&AnObject); Found != Present.end() && Found->second.insert(&ALesson).second) {
      AnObject.FVeranstaltungen.Append(&ALesson);
    }
  });
}

bool LessonUses(const TVELVeranstaltung& ALesson, const TVELPlanobjekt& AnObject, const TVELTermin* AnExcepted) {
  const auto Has = [&](const TQuillonDataList& AList) { return AList.Holds(&AnObject); };
  return ALesson.FFach == &AnObject || Has(ALesson.FKlassen) || Has(ALesson.FLehrer) || Has(ALesson.FRaeume) ||
         Has(ALesson.FSchueler) || std::ranges::any_of(ALesson.FTermine, [&](const TVELTermin* AnAppointment) {
           return AnAppointment != AnExcepted &&
                  (Has(AnAppointment->FLehrer) || Has(AnAppointment->FRaeume) || Has(AnAppointment->FRessourcen));
         });
}

}  // namespace uPlandaten
