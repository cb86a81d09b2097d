#pragma once

#include <cstdint>

#include "uPlandaten/Plan.h"

/// Makes up schools: plausible, complete, and the same byte for byte for the same options.
namespace SchoolGenerator {

struct TOptions {
  std::uint64_t Seed = 1;
  /// Multiplies classes, teachers, rooms, students, lessons, absences and changes; what a single class or teacher
  /// has does not grow.
  int Scale = 1;
  /// A school with 8 classes in place of 40 at scale 1.
  bool Small = false;

  static constexpr int MaxScale = 1000;
};

/// A new plan with a whole school year from 2026-08-03 to 2027-07-30. The classes of the model must be registered
/// to read it again, not to make it.
TQuillonDataHandle<TVELPlan> Generate(const TOptions& AnOptions);

}  // namespace SchoolGenerator
