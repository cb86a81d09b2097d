#pragma once

#include <cstdint>
#include <functional>

/// Runs jobs in processes of their own, so that none sees the memory that another has used.
namespace Bench {

struct TResult {
  double Seconds = 0;           ///< wall time of the job, the wait for the disk taken off
  double DiskSeconds = 0;       ///< the wait for the disk: until what was written is safe there
  std::uint64_t Value = 0;      ///< what the job told
  std::uint64_t PeakBytes = 0;  ///< largest resident memory of the process, what an idle one has taken off
};

/// For a job that has something to prepare: its time counts from here.
void StartClock();

/// @throws std::runtime_error when the job raises or its process fails; the job's own text stands on standard error
TResult Measure(const std::function<std::uint64_t()>& AJob);

}  // namespace Bench
