#pragma once

#include <optional>

#include "uDataUtils/SpanIndex.h"
#include "uPlandaten/Werte.h"

class TVELAufsicht;
class TVELPlan;
class TVELPlanobjekt;
class TVELTermin;
class TVELZeitraum;

/// When appointments and supervisions take place. Ranges are half-open, validities by date with both days included.
namespace uDataUtils {

class TPlanContext;

/// The parts of the time windows of a plan: stretches in which there are no lessons of the window itself.
class TWindowParts {
 public:
  explicit TWindowParts(const TVELPlan& APlan);

  /// True if a part of the window shares a day with the span.
  bool Touch(const TVELZeitraum& AWindow, const TSpan& ASpan) const;

 private:
  TSpanIndex<const TVELZeitraum*> FOfWindow;  ///< by days, both included
};

/// The days within which the appointment may take place: those of the plan, of its lesson, of the lesson's first class
/// and of their time windows, whichever is narrowest. A zero leaves that side open.
TSpan Validity(const TPlanContext& AContext, const TVELTermin& ATermin);
/// Those of the plan.
TSpan Validity(const TPlanContext& AContext, const TVELAufsicht& ASupervision);
/// True if a part of the lesson's time window, which has no lessons of the window itself, shares a day with the span.
bool IsExcluded(const TPlanContext& AContext, const TVELTermin& ATermin, const TSpan& ASpan);
/// True if the span is not excluded and shares a day with the validity.
bool InValidity(const TPlanContext& AContext, const TVELTermin& ATermin, const TSpan& ASpan);
bool InValidity(const TPlanContext& AContext, const TVELAufsicht& ASupervision, const TSpan& ASpan);
/// True if the day lies within the validity.
bool InValidity(const TPlanContext& AContext, const TVELTermin& ATermin, TVELDate ADay);
bool InValidity(const TPlanContext& AContext, const TVELAufsicht& ASupervision, TVELDate ADay);

/// The first occurrence in the range. A recurring appointment is looked for from the range's first day on, whatever its
/// time of day, in its weeks, in its validity, and where no free day covers it for the object; a single one must begin
/// in the range.
/// @param AnObject whose free days count; null for those of all
/// @param ADay only this weekday; velNoDay for any
std::optional<TSpan> NextOccurrence(const TPlanContext& AContext, const TVELPlanobjekt* AnObject,
                                    const TVELTermin& ATermin, TVELDay ADay, const TSpan& ARange);
/// The first occurrence that overlaps the range. A supervision, recurring or single, takes place in weeks with lessons,
/// in its validity, and where no entry without lessons overlaps it for the object.
std::optional<TSpan> NextOccurrence(const TPlanContext& AContext, const TVELPlanobjekt* AnObject,
                                    const TVELAufsicht& ASupervision, TVELDay ADay, const TSpan& ARange);
/// The first occurrence in the timetable.
std::optional<TSpan> FirstOccurrence(const TPlanContext& AContext, const TVELPlanobjekt* AnObject,
                                     const TVELTermin& ATermin);
std::optional<TSpan> FirstOccurrence(const TPlanContext& AContext, const TVELPlanobjekt* AnObject,
                                     const TVELAufsicht& ASupervision);
/// True if the appointment takes place in the range. Of a recurring one nothing counts outside of the timetable; in a
/// range of one day its times must share a moment with the range's.
bool OccursIn(const TPlanContext& AContext, const TVELTermin& ATermin, const TSpan& ARange);
/// True if the supervision takes place in the range.
bool OccursIn(const TPlanContext& AContext, const TVELAufsicht& ASupervision, const TSpan& ARange);

}  // namespace uDataUtils
