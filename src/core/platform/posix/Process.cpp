#include "platform/Process.h"

#include <sys/resource.h>

namespace Platform {

std::uint64_t PeakMemory() {
  constexpr std::uint64_t Unit = 1024;  // getrusage(2) counts kilobytes
  rusage Usage{};
  return getrusage(RUSAGE_SELF, &Usage) == 0 ? static_cast<std::uint64_t>(Usage.ru_maxrss) * Unit : 0;
}

}  // namespace Platform
