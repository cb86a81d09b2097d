#pragma once

#include <algorithm>
#include <limits>

#include "TestPlatform.h"

/// Seconds of the processor that AWork takes, whatever else the machine does.
template <class TWork>
double Seconds(const TWork& AWork) {
  const double Begin = TestPlatform::ProcessorTime();
  AWork();
  return TestPlatform::ProcessorTime() - Begin + TestPlatform::ProcessorTimeStep;
}

/// How many times as long something takes at four times the size: 4 for linear work, 16 for quadratic.
/// @param ATime double(int ASize), which tells how long it took; the best of some runs counts
template <class TTime>
double Growth(int ASize, const TTime& ATime) {
  const auto Best = [&](int AnActualSize) {
    double Shortest = std::numeric_limits<double>::infinity();
    for (int Run = 0; Run < 4; ++Run) {
      Shortest = std::min(Shortest, ATime(AnActualSize));
    }
    return Shortest;
  };
  const double Small = Best(ASize);
  return Best(4 * ASize) / Small;
}

/// Between linear and quadratic growth.
constexpr double QuadraticGrowth = 10;
