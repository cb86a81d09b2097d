#pragma once

#include <optional>

#include "uDataUtils/Spans.h"
#include "uPlandaten/Werte.h"

class TVELPlan;
class TVELPlanobjekt;
class TVELTermin;

/// When appointments take place. Ranges are half-open, validities by date with both days included.
namespace uDataUtils {

/// The days within which the appointment may take place: those of the plan, of its lesson, of the lesson's first class
/// and of their time windows, whichever is narrowest. A zero leaves that side open.
TSpan Validity(const TVELPlan& APlan, const TVELTermin& ATermin);
/// True if a part of the lesson's time window, which has no lessons of the window itself, shares a day with the span.
bool IsExcluded(const TVELPlan& APlan, const TVELTermin& ATermin, const TSpan& ASpan);
/// True if the span is not excluded and shares a day with the validity.
bool InValidity(const TVELPlan& APlan, const TVELTermin& ATermin, const TSpan& ASpan);
/// True if the day lies within the validity.
bool InValidity(const TVELPlan& APlan, const TVELTermin& ATermin, TVELDate ADay);

/// The first occurrence in the range. A recurring appointment is looked for from the range's first day on, whatever its
/// time of day, in its weeks, in its validity, and where no free day covers it for the object; a single one must begin
/// in the range.
/// @param AnObject whose free days count; null for those of all
/// @param ADay only this weekday; velNoDay for any
std::optional<TSpan> NextOccurrence(const TVELPlan& APlan, const TVELPlanobjekt* AnObject, const TVELTermin& ATermin,
                                    TVELDay ADay, const TSpan& ARange);
/// The first occurrence in the timetable.
std::optional<TSpan> FirstOccurrence(const TVELPlan& APlan, const TVELPlanobjekt* AnObject, const TVELTermin& ATermin);
/// True if the appointment takes place in the range. Of a recurring one nothing counts outside of the timetable; in a
/// range of one day its times must share a moment with the range's.
bool OccursIn(const TVELPlan& APlan, const TVELTermin& ATermin, const TSpan& ARange);

}  // namespace uDataUtils
