#pragma once

#include "uDataUtils/Spans.h"

class TVELZeitrahmen;

/// The smallest bookable stretches of a time frame. A row is parted into FEinheitenProStd units of equal minutes.
namespace uDataUtils {

/// Number of units of a day.
int TimeUnitCount(const TVELZeitrahmen& AFrame);
/// The unit's times of day; the last one of a row ends with the row.
/// @param AnIndex from 0 up to, but without, TimeUnitCount
TSpan TimeUnit(const TVELZeitrahmen& AFrame, int AnIndex);
/// The end of a span under the break rule of the frame (FBookAdaptive): one that lies in a break, or where a unit
/// begins, moves to the end of the unit before. One within a unit, or ahead of the first, stays, as all do without the
/// rule.
TVELDateTime ApplyBreakRule(const TVELZeitrahmen& AFrame, TVELDateTime AnEnd);

}  // namespace uDataUtils
