#include "QuillonDataObjects/UserName.h"

#include <unordered_set>

namespace {

const std::string NoName;

const std::string* Intern(std::string_view AName) {
  static const std::string* Last = &NoName;
  if (AName == *Last) {
    return Last;
  }
  // Never freed: names of users are few, and objects may outlive every static.
  static auto& Names = *new std::unordered_set<std::string>;
  Last = AName.empty() ? &NoName : &*Names.emplace(AName).first;
  return Last;
}

}  // namespace

TQuillonUserName::TQuillonUserName() : FText(&NoName) {}

TQuillonUserName::TQuillonUserName(std::string_view AName) : FText(Intern(AName)) {}
