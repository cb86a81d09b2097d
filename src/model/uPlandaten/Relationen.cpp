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

using TUsers = std::unordered_map<TVELPlanobjekt*, std::vector<TVELVeranstaltung*>>;

void EnterUser(TUsers& AUsers, TQuillonDataObject* AnObject, TVELVeranstaltung* ALesson) {
  if (AnObject == nullptr) {
    return;
  }
  std::vector<TVELVeranstaltung*>& Lessons = AUsers[static_cast<TVELPlanobjekt*>(AnObject)];
  if (Lessons.empty() || Lessons.back() != ALesson) {
    Lessons.push_back(ALesson);
  }
}

TUsers FindUsers(const TVELPlan& APlan) {
  TUsers Users;
  const auto EnterAll = [&](TVELVeranstaltung* ALesson, auto&... ALists) {
    const auto Enter = [&](const TQuillonDataList& AList) {
      for (TQuillonDataObject* Item : AList.Items()) {
        EnterUser(Users, Item, ALesson);
      }
    };
    (Enter(ALists), ...);
  };
  for (TVELVeranstaltung* Lesson : APlan.FVeranstaltungen) {
    EnterUser(Users, Lesson->FFach, Lesson);
    EnterAll(Lesson, Lesson->FKlassen, Lesson->FLehrer, Lesson->FRaeume, Lesson->FSchueler, Lesson->FRessourcen);
    for (const TVELTermin* Appointment : Lesson->FTermine) {
      EnterAll(Lesson, Appointment->FLehrer, Appointment->FRaeume, Appointment->FRessourcen);
    }
  }
  return Users;
}

}  // namespace

void EnterLessons(TVELPlan& APlan) {
  for (const auto& [Object, Lessons] : FindUsers(APlan)) {
    TVELVeranstaltungsliste& Own = Object->FVeranstaltungen;
    // As a rule the file tells all of them, in the order of the plan.
    if (std::ranges::equal(Own, Lessons)) {
      continue;
    }
    std::unordered_set<const TVELVeranstaltung*> Present(Own.begin(), Own.end());
    for (TVELVeranstaltung* Lesson : Lessons) {
      if (Present.insert(Lesson).second) {
        Own.Append(Lesson);
      }
    }
  }
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
