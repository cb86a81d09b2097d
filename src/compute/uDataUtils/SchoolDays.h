#pragma once

#include "uDataUtils/Spans.h"

class TVELKalendereintrag;
class TVELPlan;
class TVELPlanobjekt;

/// The calendar as it bears on lessons.
namespace uDataUtils {

/// True if the entry concerns the object: a public one each, one for members those that take part.
/// Without object: true if the entry names no participants, so that it is for all.
bool AppliesTo(const TVELKalendereintrag& AnEntry, const TVELPlanobjekt* AnObject);

/// The first public entry without lessons that concerns the object, which may be null, and covers the whole span;
/// null if there is none.
const TVELKalendereintrag* FreeCovers(const TVELPlan& APlan, const TVELPlanobjekt* AnObject, const TSpan& ASpan);

/// True if lessons take place on the day: a school day of the week that no whole-day entry for all makes free.
bool IsSchoolDay(const TVELPlan& APlan, TVELDate ADay);

/// The date ACount school days after ADate, or before it for a negative count. The walk ends at the first or last day
/// of the timetable; ADefault if it could not move at all.
TVELDate MoveSchoolDays(const TVELPlan& APlan, int ACount, TVELDate ADefault, TVELDate ADate);

}  // namespace uDataUtils
