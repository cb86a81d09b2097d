#include "platform/Paths.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace {

std::string Variable(const char* AName) {
  const char* const Value = std::getenv(AName);
  return Value != nullptr ? Value : "";
}

std::string HomeFolder() {
  if (std::string Home = Variable("HOME"); !Home.empty()) {
    return Home;
  }
  std::array<char, 16'384> Buffer{};
  passwd Entry{};
  passwd* Found = nullptr;
  const bool IsKnown = ::getpwuid_r(::geteuid(), &Entry, Buffer.data(), Buffer.size(), &Found) == 0 && Found != nullptr;
  return IsKnown && Found->pw_dir != nullptr ? Found->pw_dir : "";
}

}  // namespace

namespace Platform {

bool PathsBeginWithSlash() { return true; }

std::vector<std::string> FoldersToKeepFilesIn() {
  std::vector<std::string> Folders;
  // A relative state folder is to be passed over (XDG base directories).
  if (const std::string State = Variable("XDG_STATE_HOME"); State.starts_with('/')) {
    Folders.push_back(State + "/velmora");
  } else if (const std::string Home = HomeFolder(); !Home.empty()) {
    Folders.push_back(Home + "/.local/state/velmora");
  }
  if (const std::string Temporary = Variable("TMPDIR"); !Temporary.empty()) {
    Folders.push_back(Temporary);
  }
  Folders.emplace_back("/tmp");
  return Folders;
}

}  // namespace Platform
