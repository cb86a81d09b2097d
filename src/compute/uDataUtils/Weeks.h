#pragma once

#include "uDataUtils/Spans.h"
#include "uPlandaten/Werte.h"

class TVELAufsicht;
class TVELTermin;
class TVELZeitraum;

/// Weeks of a plan: week 1 holds the first day of the timetable (FStundenplanZeitraumVon), the last week its last day.
/// They begin on Monday. Week 0 means outside of the timetable.
namespace uDataUtils {

class TPlanContext;

/// Number of the week that holds the date; 0 outside of the timetable.
int WeekIndex(const TPlanContext& AContext, TVELDateTime ADate);
/// Number of weeks of the timetable.
int WeekCount(const TPlanContext& AContext);
/// Monday of the week; that of week 1 for week 0.
TVELDate WeekStart(const TPlanContext& AContext, int AWeek);
/// A weekday of the week.
TVELDate WeekDate(const TPlanContext& AContext, int AWeek, TVELDay ADay);
/// From the Monday of the week; as many days as there are school days from the first to the last, both included.
TSpan WeekRange(const TPlanContext& AContext, int AWeek);

/// What a week selector stands for: nothing, a time window, or a week.
struct TWeekSelection {
  const TVELZeitraum* Period = nullptr;
  int Week = 0;
};

/// 0 selects nothing, the numbers from 1 on first the plan's time windows and behind them the weeks.
TWeekSelection SelectWeek(const TPlanContext& AContext, int ASelector);

/// The weeks of a set in which there are lessons at all. An empty or full set means all of these; where the plan
/// names none, the set counts as it stands.
TVELWeeks EffectiveWeeks(const TPlanContext& AContext, const TVELWeeks& AWeeks);
/// True if the appointment takes place in the week as far as weeks tell; never in week 0.
/// A single appointment does in the week of its date.
bool TerminInWeek(const TPlanContext& AContext, const TVELTermin& ATermin, int AWeek);
/// As above for a supervision, which takes place in weeks with lessons only.
bool TerminInWeek(const TPlanContext& AContext, const TVELAufsicht& ASupervision, int AWeek);

}  // namespace uDataUtils
