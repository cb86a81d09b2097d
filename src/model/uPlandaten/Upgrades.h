#pragma once

#include "QuillonDataObjects/Release.h"

class TVELPlan;

namespace uPlandaten {

/// Brings a plan that was read from a file of an older release up to date, as far as that concerns more than one
/// object; what concerns one is done where its class is read.
void UpgradePlan(TVELPlan& APlan, TQuillonRelease AFileRelease);

}  // namespace uPlandaten
