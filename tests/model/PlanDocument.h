#pragma once

#include <string>

#include "QuillonDataObjects/Registry.h"
#include "uPlandaten/Plan.h"

using QuillonDataObjects::Create;
using QuillonDataObjects::CreateStorage;
using TPlan = TQuillonDataHandle<TVELPlan>;

/// GUID of an object in a test's document.
inline std::string ID(int ANumber) {
  const std::string Digits = std::to_string(ANumber);
  return "{00000000-0000-0000-0000-" + std::string(12 - Digits.size(), '0') + Digits + "}";
}

inline std::string Element(const std::string& ATag, const std::string& AClass, int AnID,
                           const std::string& ARows = {}) {
  return "<" + ATag + " Class=\"" + AClass + "\" ID=\"" + ID(AnID) + "\">" + ARows + "</" + ATag + ">";
}

inline std::string Item(const std::string& AClass, int AnID, const std::string& ARows = {}) {
  return Element("Item", AClass, AnID, ARows);
}

inline std::string List(const std::string& ATag, const std::string& AnItems) {
  return "<" + ATag + "><Items>" + AnItems + "</Items></" + ATag + ">";
}

/// The plan of a document of a release with the elements of ABody.
inline TPlan Load(const std::string& ARelease, const std::string& ABody) {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  auto Plan = CreateStorage<TVELPlan>();
  Plan->LoadFromXML("<Storage><DataformatRelease>" + ARelease + "</DataformatRelease>" + ABody + "</Storage>", "test");
  return Plan;
}

/// The plan's object with the GUID of a number.
template <class T>
T& Find(TVELPlan& APlan, int ANumber) {
  TQuillonDataAbstractObject* const Found = APlan.Registry().GetObject(QuillonGuid::Parse(ID(ANumber)), T::Class());
  if (Found == nullptr) {
    throw EQuillonException("No object " + ID(ANumber));
  }
  return static_cast<T&>(*Found);
}
