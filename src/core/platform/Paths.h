#pragma once

namespace Platform {

/// True where absolute paths begin with "/", false where they begin with a drive letter or "\\".
bool PathsBeginWithSlash();

}  // namespace Platform
