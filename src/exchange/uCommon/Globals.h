#pragma once

#include "uPlandaten/Plan.h"

/// The objects that live as long as the process and that no job owns, made in one place and in this order.
class TVELGlobals {
 public:
  TVELGlobals();

  TVELPlan& Plan() { return *FPlan; }

 private:
  TQuillonDataHandle<TVELPlan> FPlan;
};
