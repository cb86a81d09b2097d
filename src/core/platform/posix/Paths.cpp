#include "platform/Paths.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

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

/// Our folder in one of the user's base directories (XDG), where a relative one is to be passed over.
std::string OwnFolder(const char* AVariable, const char* AnUsualPlace) {
  if (const std::string Folder = Variable(AVariable); Folder.starts_with('/')) {
    return Folder + "/velmora";
  }
  const std::string Home = HomeFolder();
  return Home.empty() ? std::string() : Home + AnUsualPlace + "/velmora";
}

}  // namespace

namespace Platform {

bool PathsBeginWithSlash() { return true; }

std::vector<std::string> FoldersToKeepFilesIn() {
  std::vector<std::string> Folders;
  if (std::string State = OwnFolder("XDG_STATE_HOME", "/.local/state"); !State.empty()) {
    Folders.push_back(std::move(State));
  }
  if (const std::string Temporary = Variable("TMPDIR"); !Temporary.empty()) {
    Folders.push_back(Temporary);
  }
  Folders.emplace_back("/tmp");
  return Folders;
}

std::string UserSettingsFolder() { return OwnFolder("XDG_CONFIG_HOME", "/.config"); }

std::string MachineSettingsFolder() { return "/etc/velmora"; }

std::string ProgramFile() {
  std::error_code Ignored;
  return std::filesystem::read_symlink("/proc/self/exe", Ignored).string();
}

}  // namespace Platform
