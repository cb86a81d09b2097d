#include "uDataUtils/Weeks.h"

#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Termine.h"

namespace uDataUtils {

namespace {

constexpr int DaysPerWeek = 7;

}  // namespace

int WeekIndex(const TVELPlan& APlan, TVELDateTime ADate) {
  const TVELDate Monday = MondayOf(ADate);
  const TVELDate First = MondayOf(APlan.FEinstellungen->FStundenplanZeitraumVon);
  const TVELDate Last = MondayOf(APlan.FEinstellungen->FStundenplanZeitraumBis);
  return Monday < First || Monday > Last ? 0 : static_cast<int>((Monday - First) / DaysPerWeek) + 1;
}

int WeekCount(const TVELPlan& APlan) { return WeekIndex(APlan, APlan.FEinstellungen->FStundenplanZeitraumBis); }

TVELDate WeekStart(const TVELPlan& APlan, int AWeek) {
  const TVELDate First = MondayOf(APlan.FEinstellungen->FStundenplanZeitraumVon);
  return AWeek == 0 ? First : TVELDate(First + (AWeek - 1) * DaysPerWeek);
}

TVELDate WeekDate(const TVELPlan& APlan, int AWeek, TVELDay ADay) { return WeekStart(APlan, AWeek) + (ADay - 1); }

TSpan WeekRange(const TVELPlan& APlan, int AWeek) {
  const TVELEinstellungen& Settings = *APlan.FEinstellungen;
  const int Last = (Settings.FWochenende - Settings.FWochenstart + DaysPerWeek) % DaysPerWeek;
  const TVELDate Start = WeekStart(APlan, AWeek);
  return {Start, Start + (Last + 1)};
}

TWeekSelection SelectWeek(const TVELPlan& APlan, int ASelector) {
  const int Periods = APlan.FZeitraeume.Count();
  if (ASelector <= 0) {
    return {};
  }
  if (ASelector <= Periods) {
    return {.Period = APlan.FZeitraeume.GetItem(ASelector - 1)};
  }
  return {.Week = ASelector - Periods};
}

TVELWeeks EffectiveWeeks(const TVELPlan& APlan, const TVELWeeks& AWeeks) {
  const TVELWeeks& Lessons = APlan.FEinstellungen->FWochenAusgenommen;
  if (AWeeks.IsEmpty() || AWeeks == TVELWeeks::All()) {
    return Lessons;
  }
  return Lessons.IsEmpty() ? AWeeks : AWeeks & Lessons;
}

bool TerminInWeek(const TVELPlan& APlan, const TVELTermin& ATermin, int AWeek) {
  if (ATermin.Reoccur()) {
    return EffectiveWeeks(APlan, ATermin.Weeks()).Contains(AWeek);
  }
  return AWeek > 0 && ATermin.Scheduled() && AWeek == WeekIndex(APlan, ATermin.Start());
}

}  // namespace uDataUtils
