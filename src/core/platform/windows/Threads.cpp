#include "platform/Threads.h"

#include <windows.h>

#include <array>
#include <cstddef>

void Platform::SetThreadPriority(ThreadPriority APriority) {
  constexpr std::array Priorities = {
      THREAD_PRIORITY_IDLE,         THREAD_PRIORITY_LOWEST,  THREAD_PRIORITY_BELOW_NORMAL, THREAD_PRIORITY_NORMAL,
      THREAD_PRIORITY_ABOVE_NORMAL, THREAD_PRIORITY_HIGHEST, THREAD_PRIORITY_TIME_CRITICAL};
  ::SetThreadPriority(::GetCurrentThread(), Priorities.at(static_cast<std::size_t>(APriority)));
}
