#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Registry.h"
#include "uPlandaten/Plan.h"

/// Loads a document as a plan, saves it, loads that: no exception but of the first load, and the same bytes again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  const auto Plan = QuillonDataObjects::CreateStorage<TVELPlan>();
  try {
    Plan->LoadFromXML(std::string(reinterpret_cast<const char*>(AData), ASize), "fuzz");
  } catch (const std::exception&) {
    // What was read so far must be a whole plan still.
    Plan->SaveToXML();
    Plan->Clear();
    return 0;
  }
  const std::string Saved = Plan->SaveToXML();
  Plan->LoadFromXML(Saved, "saved");
  return 0;
}
