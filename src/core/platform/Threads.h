#pragma once

namespace Platform {

/// Urgency of a thread among those of the machine, from the least.
enum class ThreadPriority { Idle, Lowest, Lower, Normal, Higher, Highest, TimeCritical };

/// Gives the calling thread that priority. A system that keeps the higher ones for its administrator ignores them.
void SetThreadPriority(ThreadPriority APriority);

}  // namespace Platform
