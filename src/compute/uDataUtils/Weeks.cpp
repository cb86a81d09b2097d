#include "uDataUtils/Weeks.h"

#include "uDataUtils/Context.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Termine.h"

namespace uDataUtils {

namespace {

constexpr int DaysPerWeek = 7;

}  // namespace

int WeekIndex(const TPlanContext& AContext, TVELDateTime ADate) {
  const TVELDate Monday = MondayOf(ADate);
  const TVELDate First = AContext.FirstMonday();
  const TVELDate Last = AContext.LastMonday();
  return Monday < First || Monday > Last ? 0 : static_cast<int>((Monday - First) / DaysPerWeek) + 1;
}

int WeekCount(const TPlanContext& AContext) { return WeekIndex(AContext, AContext.LastMonday()); }

TVELDate WeekStart(const TPlanContext& AContext, int AWeek) {
  const TVELDate First = AContext.FirstMonday();
  return AWeek == 0 ? First : TVELDate(First + (AWeek - 1) * DaysPerWeek);
}

TVELDate WeekDate(const TPlanContext& AContext, int AWeek, TVELDay ADay) {
  return WeekStart(AContext, AWeek) + (ADay - 1);
}

TSpan WeekRange(const TPlanContext& AContext, int AWeek) {
  const TVELEinstellungen& Settings = *AContext.Plan().FEinstellungen;
  const int Last = (Settings.FWochenende - Settings.FWochenstart + DaysPerWeek) % DaysPerWeek;
  const TVELDate Start = WeekStart(AContext, AWeek);
  return {Start, Start + (Last + 1)};
}

TWeekSelection SelectWeek(const TPlanContext& AContext, int ASelector) {
  const int Periods = AContext.Plan().FZeitraeume.Count();
  if (ASelector <= 0) {
    return {};
  }
  if (ASelector <= Periods) {
    return {.Period = AContext.Plan().FZeitraeume.GetItem(ASelector - 1)};
  }
  return {.Week = ASelector - Periods};
}

TVELWeeks EffectiveWeeks(const TPlanContext& AContext, const TVELWeeks& AWeeks) {
  const TVELWeeks& Lessons = AContext.Plan().FEinstellungen->FWochenAusgenommen;
  if (AWeeks.IsEmpty() || AWeeks == TVELWeeks::All()) {
    return Lessons;
  }
  return Lessons.IsEmpty() ? AWeeks : AWeeks & Lessons;
}

bool TerminInWeek(const TPlanContext& AContext, const TVELTermin& ATermin, int AWeek) {
  if (ATermin.Reoccur()) {
    return EffectiveWeeks(AContext, ATermin.Weeks()).Contains(AWeek);
  }
  return AWeek > 0 && ATermin.Scheduled() && AWeek == WeekIndex(AContext, ATermin.Start());
}

bool TerminInWeek(const TPlanContext& AContext, const TVELAufsicht& ASupervision, int AWeek) {
  return EffectiveWeeks(AContext, {}).Contains(AWeek) &&
         (ASupervision.Reoccur() || (ASupervision.Scheduled() && AWeek == WeekIndex(AContext, ASupervision.Start())));
}

}  // namespace uDataUtils
