#include "Plans.h"
#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/DataList.h"
#include "QuillonIO.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace {

constexpr std::uint8_t Own = 15;  ///< place of an object's number in its identity

TGUID Identity(std::uint8_t ANumber) {
  TGUID ID;
  ID.Bytes[Own] = ANumber;
  return ID;
}

/// An object with a number, as an item of a list.
template <class T>
T* Make(TVELPlan& APlan, std::uint8_t ANumber, TQuillonDataList& AList) {
  T* const Object = QuillonDataObjects::Create<T>(&APlan, Identity(ANumber));
  AList.Add(Object);
  return Object;
}

/// A list's identity tells its owner, and its place there.
void GiveIdentities(TQuillonDataAbstractObject& AnOwner) {
  TGUID ID = AnOwner.AsStorage() != nullptr ? TGUID{} : AnOwner.ID();
  for (const auto Field : AnOwner.DataClass().Lists()) {
    ++ID.Bytes[0];
    Field(AnOwner).SetID(ID);
  }
}

/// A plan with lists of each kind, and objects that refer to one another.
TQuillonDataHandle<TVELPlan> SamplePlan() {
  auto Plan = Fuzz::NewPlan();
  std::uint8_t Number = 0;
  Plan->FKalender->SetID(Identity(++Number));
  Plan->FVerzeichnisse->SetID(Identity(++Number));
  auto* const Teacher = Make<TVELLehrer>(*Plan, ++Number, Plan->FLehrer);
  auto* const Room = Make<TVELRaum>(*Plan, ++Number, Plan->FRaeume);
  Make<TVELRaum>(*Plan, ++Number, Plan->FRaeume)->FKuerzel = "r";
  auto* const Class = Make<TVELKlasse>(*Plan, ++Number, Plan->FKlassen);
  Make<TVELSchulform>(*Plan, ++Number, Plan->FVerzeichnisse->FSchulformen);
  auto* const Lesson = Make<TVELVeranstaltung>(*Plan, ++Number, Plan->FVeranstaltungen);
  Lesson->FKlassen.Add(Class);
  auto* const Appointment = Make<TVELTermin>(*Plan, ++Number, Lesson->FTermine);
  Appointment->FRaeume.Add(Room);
  Appointment->FLehrer.Add(Teacher);
  Make<TVELLehrerfehlzeit>(*Plan, ++Number, Plan->FFehlzeiten)->SetLehrer(Teacher);
  auto* const Event = Make<TVELKalendereintrag>(*Plan, ++Number, Plan->FKalender->FEintraege);
  Make<TVELTeilnehmer>(*Plan, ++Number, Event->FTeilnehmer)->FDataObject = Teacher;
  GiveIdentities(*Plan);
  for (TQuillonDataAbstractObject* Object : Plan->Registry().Objects()) {
    GiveIdentities(*Object);
  }
  return Plan;
}

std::string SnapshotOf(TVELPlan& APlan) {
  TQuillonMemoryStream Stream;
  APlan.SaveToMemorySnapshot(Stream);
  return Stream.TakeContent();
}

}  // namespace

/// Reads the input as a change log and plays it back on a plan. A log that is refused leaves the plan as it was; after
/// one that is accepted the plan comes back from its snapshot byte for byte, and passes as a data file.
void Fuzz::Run(std::string_view AnInput) {
  TQuillonMemoryStream Input{std::string(AnInput)};
  TQuillonDataChangeLog Log;
  if (!Accepts([&] { Log.LoadFromStream(Input); })) {
    Require(Log.IsEmpty(), "a part of a log was taken");
    return;
  }
  const auto Plan = SamplePlan();
  const std::string Before = SnapshotOf(*Plan) + Plan->SaveToXML();
  if (!Accepts([&] { Log.Playback(*Plan); })) {
    Require(SnapshotOf(*Plan) + Plan->SaveToXML() == Before, "a log that was refused has left something");
    return;
  }
  const std::string After = SnapshotOf(*Plan);
  const auto Copy = NewPlan();
  TQuillonMemoryStream Snapshot(After);
  Copy->LoadFromMemorySnapshot(Snapshot);
  RequireSame(After, SnapshotOf(*Copy), "a snapshot comes back as another one");
  RequireRest(SavedAgain(Plan->SaveToXML()));
}
