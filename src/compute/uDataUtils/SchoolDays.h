#pragma once

#include <vector>

#include "uDataUtils/SpanIndex.h"

class TVELKalendereintrag;
class TVELPlan;
class TVELPlanobjekt;

/// The calendar as it bears on lessons.
namespace uDataUtils {

class TPlanContext;

/// The days of a plan on which lessons take place: school days of the week that no whole-day entry for all makes free.
class TSchoolDays {
 public:
  explicit TSchoolDays(const TVELPlan& APlan);

  /// @param ADay without time of day
  bool Contains(TVELDate ADay) const;

 private:
  void Merge();
  bool IsFree(TVELDate ADay) const;

  TVELDay FFirst;
  TVELDay FLast;
  std::vector<TSpan> FFree;  ///< in the order of time, apart; up to, but without, the day of the finish
};

/// The entries of a plan's calendar without lessons.
class TFreeEntries {
 public:
  explicit TFreeEntries(const TVELPlan& APlan);

  /// A public entry that concerns the object, which may be null, and covers the whole span; null if there is none.
  const TVELKalendereintrag* Covering(const TVELPlanobjekt* AnObject, const TSpan& ASpan) const;
  /// An entry, public or not, that concerns the object, which may be null, and overlaps the span.
  const TVELKalendereintrag* Overlapping(const TVELPlanobjekt* AnObject, const TSpan& ASpan) const;

 private:
  struct TEntry {
    TSpan Span;
    const TVELKalendereintrag* Entry;
  };
  using TIndex = TSpanIndex<TEntry>;

  TIndex FForAll;     ///< public, and without participants
  TIndex FPublic;     ///< public, with participants
  TIndex FOfMembers;  ///< not public, by participant; by null those without
};

/// True if the entry concerns the object: a public one each, one for members those that take part.
/// Without object: true if the entry names no participants, so that it is for all.
bool AppliesTo(const TVELKalendereintrag& AnEntry, const TVELPlanobjekt* AnObject);

/// True if lessons take place on the day, see TSchoolDays.
bool IsSchoolDay(const TPlanContext& AContext, TVELDate ADay);

/// The date ACount school days after ADate, or before it for a negative count. The walk ends at the first or last day
/// of the timetable; ADefault if it could not move at all.
TVELDate MoveSchoolDays(const TPlanContext& AContext, int ACount, TVELDate ADefault, TVELDate ADate);
/// The school days from the first day to the last one, both included; none if the timetable does not have the first
/// day.
std::vector<TVELDate> SchoolDaysIn(const TPlanContext& AContext, TVELDate AFirst, TVELDate ALast);

}  // namespace uDataUtils
