#pragma once

#include "uDataUtils/Spans.h"
#include "uPlandaten/Werte.h"

class TVELPlan;
class TVELTermin;
class TVELZeitraum;

/// Weeks of a plan: week 1 holds the first day of the timetable (FStundenplanZeitraumVon), the last week its last day.
/// They begin on Monday. Week 0 means outside of the timetable.
namespace uDataUtils {

/// Number of the week that holds the date; 0 outside of the timetable.
int WeekIndex(const TVELPlan& APlan, TVELDateTime ADate);
/// Number of weeks of the timetable.
int WeekCount(const TVELPlan& APlan);
/// Monday of the week; that of week 1 for week 0.
TVELDate WeekStart(const TVELPlan& APlan, int AWeek);
/// A weekday of the week.
TVELDate WeekDate(const TVELPlan& APlan, int AWeek, TVELDay ADay);
/// From the Monday of the week; as many days as there are school days from the first to the last, both included.
TSpan WeekRange(const TVELPlan& APlan, int AWeek);

/// What a week selector stands for: nothing, a time window, or a week.
struct TWeekSelection {
  const TVELZeitraum* Period = nullptr;
  int Week = 0;
};

/// 0 selects nothing, the numbers from 1 on first the plan's time windows and behind them the weeks.
TWeekSelection SelectWeek(const TVELPlan& APlan, int ASelector);

/// The weeks of a set in which there are lessons at all. An empty or full set means all of these; where the plan
/// names none, the set counts as it stands.
TVELWeeks EffectiveWeeks(const TVELPlan& APlan, const TVELWeeks& AWeeks);
/// True if the appointment takes place in the week as far as weeks tell; never in week 0.
/// A single appointment does in the week of its date.
bool TerminInWeek(const TVELPlan& APlan, const TVELTermin& ATermin, int AWeek);

}  // namespace uDataUtils
