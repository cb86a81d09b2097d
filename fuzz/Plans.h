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

/// An old or crooked document may come to rest with the second save only; from there on the bytes stay the same.
/// @return whether this one was at rest before
inline bool RequireRest(const std::string& ADocument) {
  const std::string Second = SavedAgain(ADocument);
  RequireSame(Second, SavedAgain(Second), "a plan that was saved and loaded is saved with other bytes");
  return Second == ADocument;
}

}  // namespace Fuzz
