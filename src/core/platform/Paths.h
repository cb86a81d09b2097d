#pragma once

#include <string>
#include <vector>

namespace Platform {

/// True where absolute paths begin with "/", false where they begin with a drive letter or "\\".
bool PathsBeginWithSlash();

/// Folders in which this user may keep a file when its own folder takes none, the best first. They need not exist.
std::vector<std::string> FoldersToKeepFilesIn();

}  // namespace Platform
