#include "Plans.h"
#include "QuillonIO.h"

/// Reads a plan from its binary form. What was read can be saved in both forms whether the whole was accepted or not,
/// and what was accepted comes back from its snapshot byte for byte.
void Fuzz::Run(std::string_view AnInput) {
  const auto Plan = NewPlan();
  TQuillonMemoryStream Input{std::string(AnInput)};
  const bool IsAccepted = Accepts([&] { Plan->LoadFromBinStream(Input); });
  const std::string Document = Plan->SaveToXML();
  if (!IsAccepted) {
    Plan->Clear();
    return;
  }
  TQuillonMemoryStream First;
  Plan->SaveToMemorySnapshot(First);
  const auto Copy = NewPlan();
  Copy->LoadFromMemorySnapshot(First);
  TQuillonMemoryStream Second;
  Copy->SaveToMemorySnapshot(Second);
  RequireSame(First.Content(), Second.Content(), "a snapshot comes back as another one");
  SavedAgain(Document);
}
