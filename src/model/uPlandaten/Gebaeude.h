#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"

/// A building.
class TVELGebaeude : public TVELStammobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::int32_t FWegzeit = 0;  ///< walking time to the next building, minutes
  std::string FCampus;
};
