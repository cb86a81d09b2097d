#include "QuillonDataObjects/UserName.h"

#include <mutex>
#include <unordered_set>

namespace {

const std::string NoName;

const std::string* Intern(std::string_view AName) {
  // Nearly always the name asked for last; each thread remembers its own.
  thread_local const std::string* Last = &NoName;
  if (AName == *Last) {
    return Last;
  }
  // Never freed: names of users are few, and objects may outlive every static.
  static auto& Names = *new std::unordered_set<std::string>;
  static std::mutex Mutex;
  const std::scoped_lock Lock(Mutex);
  Last = AName.empty() ? &NoName : &*Names.emplace(AName).first;
  return Last;
}

}  // namespace

TQuillonUserName::TQuillonUserName() : FText(&NoName) {}

TQuillonUserName::TQuillonUserName(std::string_view AName) : FText(Intern(AName)) {}
