#pragma once

#include <string>

#include "Fuzz.h"
#include "QuillonDataObjects/Registry.h"
#include "uPlandaten/Plan.h"

namespace Fuzz {

inline TQuillonDataHandle<TVELPlan> NewPlan() {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  return QuillonDataObjects::CreateStorage<TVELPlan>();
}

/// The document of a plan that a document gave.
inline std::string SavedAgain(const std::string& ADocument) {
  const auto Plan = NewPlan();
  Plan->LoadFromXML(ADocument, "saved");
  return Plan->SaveToXML();
}

/// What a document tells, whatever the order of the items in its lists: equal ones have no order of their own.
/// @param AHasStamps false leaves out who made and changed an object, and when
std::string Content(const std::string& ADocument, bool AHasStamps = true);

/// Requires that a plan that was saved as this document has its content after each of two rounds. Only the stamps of
/// lists differ after the first one: a load takes them from the owners.
void RequireRest(const std::string& ADocument);

}  // namespace Fuzz
