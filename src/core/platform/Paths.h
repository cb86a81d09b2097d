#pragma once

#include <string>
#include <vector>

namespace Platform {

/// True where absolute paths begin with "/", false where they begin with a drive letter or "\\".
bool PathsBeginWithSlash();

/// Folders in which this user may keep a file when its own folder takes none, the best first. They need not exist.
std::vector<std::string> FoldersToKeepFilesIn();

/// The folder of this user's settings, which need not exist; empty for a user without a home.
std::string UserSettingsFolder();
/// The folder of the settings that all users of the machine share.
std::string MachineSettingsFolder();
/// The running program's file; empty where the system does not tell.
std::string ProgramFile();

}  // namespace Platform
