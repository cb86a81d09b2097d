#include "platform/Random.h"

#include <windows.h>

#include <bcrypt.h>

#include <algorithm>
#include <limits>

#include "QuillonTypes.h"

namespace Platform {

void FillRandom(std::span<std::byte> ABytes) {
  while (!ABytes.empty()) {
    const auto Size = static_cast<ULONG>(std::min<std::size_t>(ABytes.size(), std::numeric_limits<ULONG>::max()));
    if (::BCryptGenRandom(nullptr, reinterpret_cast<UCHAR*>(ABytes.data()), Size, BCRYPT_USE_SYSTEM_PREFERRED_RNG) <
        0) {
      throw EQuillonWin32Error(ERROR_GEN_FAILURE, "BCryptGenRandom");
    }
    ABytes = ABytes.subspan(Size);
  }
}

}  // namespace Platform
