#include "platform/Threads.h"

#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cstddef>

void Platform::SetThreadPriority(ThreadPriority APriority) {
  constexpr std::array NiceValues = {19, 10, 5, 0, -5, -10, -20};
  if (APriority != ThreadPriority::Normal) {
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), NiceValues.at(static_cast<std::size_t>(APriority)));
  }
}
