#pragma once

#include <string>

#include "uPlandaten/Basis.h"

/// A group of teachers and others; a department of the school.
class TVELTeam : public TVELStammobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FEmail;
};
