#include "uTransformator.h"

#include "LocalSource.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

void TVELTransformator::LoadFromFile(const std::string& AFileName) {
  LocalSource::RequireFile(AFileName);
  FPlan.OpenFileToChange(AFileName);
}

void TVELTransformator::NewGuids() {
  for (TVELKlasse* Class : FPlan.FKlassen) {
    Class->SetID(QuillonGuid::New());
  }
  for (TVELVeranstaltung* Course : FPlan.FVeranstaltungen) {
    Course->SetID(QuillonGuid::New());
    for (TVELTermin* Appointment : Course->FTermine) {
      Appointment->SetID(QuillonGuid::New());
    }
  }
  for (TVELAenderung* Change : FPlan.FAenderungen) {
    Change->SetID(QuillonGuid::New());
  }
}
