#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

/// Seconds that AWork takes.
template <class TWork>
double Seconds(const TWork& AWork) {
  const auto Begin = std::chrono::steady_clock::now();
  AWork();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - Begin).count();
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
