#include "platform/Paths.h"

#include <windows.h>

#include <knownfolders.h>
#include <shlobj.h>

#include <utility>

#include "platform/windows/WindowsCalls.h"

namespace {

using WindowsCalls::NarrowPath;

/// Our folder in one of the system's; empty where it has none.
std::string OwnFolder(const KNOWNFOLDERID& AFolder) {
  wchar_t* Found = nullptr;
  const bool IsKnown = ::SHGetKnownFolderPath(AFolder, 0, nullptr, &Found) == S_OK;
  const std::unique_ptr<wchar_t, decltype(&::CoTaskMemFree)> Owner(Found, &::CoTaskMemFree);
  return IsKnown ? NarrowPath(Found) + R"(\Tarnhill Systems\Velmora 6)" : std::string();
}

}  // namespace

namespace Platform {

bool PathsBeginWithSlash() { return false; }

std::vector<std::string> FoldersToKeepFilesIn() {
  std::vector<std::string> Folders;
  if (std::string Folder = OwnFolder(FOLDERID_LocalAppData); !Folder.empty()) {
    Folders.push_back(std::move(Folder));
  }
  std::wstring Temporary(MAX_PATH + 1, L'\0');
  Temporary.resize(::GetTempPathW(static_cast<DWORD>(Temporary.size()), Temporary.data()));
  Folders.push_back(NarrowPath(Temporary));
  return Folders;
}

std::string UserSettingsFolder() { return OwnFolder(FOLDERID_RoamingAppData); }

std::string MachineSettingsFolder() { return OwnFolder(FOLDERID_ProgramData); }

std::string ProgramFile() {
  constexpr std::size_t LongestPath = 32'768;
  std::wstring Path(LongestPath, L'\0');
  Path.resize(::GetModuleFileNameW(nullptr, Path.data(), static_cast<DWORD>(Path.size())));
  return NarrowPath(Path);
}

}  // namespace Platform
