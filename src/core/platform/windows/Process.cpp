#include "platform/Process.h"

#include <windows.h>

#include <psapi.h>

namespace Platform {

std::uint64_t PeakMemory() {
  PROCESS_MEMORY_COUNTERS Counters{};
  return ::GetProcessMemoryInfo(::GetCurrentProcess(), &Counters, sizeof(Counters)) != 0 ? Counters.PeakWorkingSetSize
                                                                                         : 0;
}

bool IsMemoryLimited() { return false; }

/// The system has no large pages without a privilege of their own.
void ExpectMemory(std::uint64_t /*ASize*/) {}

}  // namespace Platform
