#include "uPlandaten/Relationen.h"

#include <algorithm>

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

bool LessonUses(const TVELVeranstaltung& ALesson, const TVELPlanobjekt& AnObject, const TVELTermin* AnExcepted) {
  const auto Has = [&](const TQuillonDataList& AList) { return AList.Holds(&AnObject); };
  return ALesson.FFach == &AnObject || Has(ALesson.FKlassen) || Has(ALesson.FLehrer) || Has(ALesson.FRaeume) ||
         Has(ALesson.FSchueler) || std::ranges::any_of(ALesson.FTermine, [&](const TVELTermin* AnAppointment) {
           return AnAppointment != AnExcepted &&
                  (Has(AnAppointment->FLehrer) || Has(AnAppointment->FRaeume) || Has(AnAppointment->FRessourcen));
         });
}

}  // namespace uPlandaten
