#include "Plans.h"

/// Loads a document as a plan, saves it and loads that: no refusal but of the first load, and the content stays.
void Fuzz::Run(std::string_view AnInput) {
  const auto Plan = NewPlan();
  const bool IsAccepted = Accepts([&] { Plan->LoadFromXML(std::string(AnInput), "fuzz"); });
  const std::string Saved = Plan->SaveToXML();
  if (!IsAccepted) {
    // What was read up to the error was a plan that could be saved; it goes as a whole too.
    Plan->Clear();
    return;
  }
  RequireRest(Saved);
}
