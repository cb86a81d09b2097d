#include "uTransformator.h"

#include "LocalSource.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

void TVELTransformator::LoadFromFile(const std::string& AFileName) {
  LocalSource::Load(AFileName, [&] { FPlan.OpenFileToChange(AFileName); });
}

void TVELTransformator::NewGuids() {
  FReport.Kind("SchoolClasses").Changed = static_cast<std::uint64_t>(FPlan.FKlassen.Count());
  for (TVELKlasse* Class : FPlan.FKlassen) {
    Class->SetID(QuillonGuid::New());
  }
  FReport.Kind("Courses").Changed = static_cast<std::uint64_t>(FPlan.FVeranstaltungen.Count());
  TVELReport::TKind& Lessons = FReport.Kind("ScheduledLessons");
  for (TVELVeranstaltung* Course : FPlan.FVeranstaltungen) {
    Course->SetID(QuillonGuid::New());
    for (TVELTermin* Appointment : Course->FTermine) {
      Appointment->SetID(QuillonGuid::New());
      ++Lessons.Changed;
    }
  }
  FReport.Kind("Changes").Changed = static_cast<std::uint64_t>(FPlan.FAenderungen.Count());
  for (TVELAenderung* Change : FPlan.FAenderungen) {
    Change->SetID(QuillonGuid::New());
  }
}
