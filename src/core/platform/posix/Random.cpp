#include "platform/Random.h"

#include <sys/random.h>

#include <cerrno>

#include "QuillonTypes.h"

namespace Platform {

void FillRandom(std::span<std::byte> ABytes) {
  while (!ABytes.empty()) {
    const ssize_t Got = getrandom(ABytes.data(), ABytes.size(), 0);
    if (Got < 0) {
      if (errno == EINTR) {
        continue;
      }
      throw EQuillonWin32Error(errno, "getrandom");
    }
    ABytes = ABytes.subspan(static_cast<std::size_t>(Got));
  }
}

}  // namespace Platform
