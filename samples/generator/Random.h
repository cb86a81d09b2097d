#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

#include "QuillonGuid.h"

namespace SchoolGenerator {

/// Numbers that are the same for a seed with every compiler and library: the engine is laid down by the standard,
/// the distributions of the standard library are not.
///
/// Each draw is a statement of its own where it is used: the order in which arguments are evaluated is open.
class TRandom {
 public:
  explicit TRandom(std::uint64_t ASeed) : FEngine(ASeed) {}

  /// 0 to ACount - 1.
  int Below(int ACount) { return static_cast<int>(FEngine() % static_cast<std::uint64_t>(ACount)); }
  /// Both bounds included.
  int Between(int ALow, int AHigh) { return ALow + Below(AHigh - ALow + 1); }
  bool Chance(int APercent) { return Below(100) < APercent; }
  template <class TItems>
  auto& Pick(TItems& AnItems) {
    return AnItems[static_cast<std::size_t>(Below(static_cast<int>(AnItems.size())))];
  }
  /// Of the form of version 4 (RFC 4122).
  TGUID Guid();

 private:
  std::mt19937_64 FEngine;
};

}  // namespace SchoolGenerator
