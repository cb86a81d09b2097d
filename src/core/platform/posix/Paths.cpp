#include "platform/Paths.h"

namespace Platform {

bool PathsBeginWithSlash() { return true; }

}  // namespace Platform
