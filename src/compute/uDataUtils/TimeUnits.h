#pragma once

#include "uDataUtils/Spans.h"

class TVELZeitrahmen;

/// The smallest bookable stretches of a time frame. A row is parted into FEinheitenProStd units of equal whole minutes.
namespace uDataUtils {

/// Number of units of a day. A row has at least one, and at most as many as a day has minutes.
int TimeUnitCount(const TVELZeitrahmen& AFrame);
/// The unit's times of day, whole minutes long; the last one of a row ends with the row, where that need not hold.
/// @param AnIndex from 0 up to, but without, TimeUnitCount
TSpan TimeUnit(const TVELZeitrahmen& AFrame, int AnIndex);
/// The end of a span under the break rule of the frame (FBookAdaptive): one that lies in a break, or where a unit
/// begins, or behind the last one, moves to the end of the unit before. One within a unit, or ahead of the first,
/// stays, as all do without the rule.
TVELDateTime ApplyBreakRule(const TVELZeitrahmen& AFrame, TVELDateTime AnEnd);
/// The time at which the next unit begins, if one ends at ATime, to the millisecond; else, and behind the last one,
/// ATime itself.
TVELDateTime SkipBreak(const TVELZeitrahmen& AFrame, TVELDateTime ATime);

}  // namespace uDataUtils
