#pragma once

#include <string>

#include "uPlandaten/Basis.h"

class TVELAenderung;
class TVELFehlzeit;
class TVELLehrer;

/// Hours set off against a teacher.
class TVELAnrechnung : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELDateTime FStart;  ///< of the lesson
  TVELDateTime FEnde;   ///< of the lesson
  std::string FBemerkung;
  double FStunden = 0;  ///< hours set off
  TVELLehrer* FLehrer = nullptr;
  TVELFehlzeit* FFehlzeit = nullptr;
  TVELAenderung* FAenderung = nullptr;
};
