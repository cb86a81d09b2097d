#include "uDataUtils/Occurrences.h"

#include <algorithm>

#include "QuillonDateTime.h"
#include "uDataUtils/Context.h"
#include "uDataUtils/Weeks.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

namespace uDataUtils {

namespace {

/// Cuts the span to the days; a zero, on either side, sets no bound.
void Narrow(TSpan& ASpan, TVELDate AFirst, TVELDate ALast) {
  if (AFirst != 0 && (ASpan.Start == 0 || AFirst > ASpan.Start)) {
    ASpan.Start = AFirst;
  }
  if (ALast != 0 && (ASpan.Finish == 0 || ALast < ASpan.Finish)) {
    ASpan.Finish = ALast;
  }
}

void Narrow(TSpan& ASpan, const TVELZeitraum* AWindow) {
  if (AWindow != nullptr) {
    Narrow(ASpan, AWindow->FStart, AWindow->FEnde);
  }
}

TSpan PlanValidity(const TPlanContext& AContext) {
  return {AContext.Plan().FEinstellungen->FGueltigVon, AContext.Plan().FEinstellungen->FGueltigBis};
}

/// True if the span shares a day with the validity, which may have none.
bool Shares(const TSpan& AValidity, const TSpan& ASpan) {
  if (AValidity.Finish != 0 && DayOf(AValidity.Start) > DayOf(AValidity.Finish)) {
    return false;
  }
  return DateOverlap(ASpan, {AValidity.Start != 0 ? AValidity.Start : ASpan.Start,
                             AValidity.Finish != 0 ? AValidity.Finish : ASpan.Finish});
}

bool Holds(const TSpan& AValidity, TVELDate ADay) {
  const TVELDate Day = DayOf(ADay);
  return Day >= DayOf(AValidity.Start) && (AValidity.Finish == 0 || Day <= DayOf(AValidity.Finish));
}

/// When something takes place, in the timing that counts.
struct TSlot {
  TSlot(const TPlanContext& AContext, const TVELAbstrakterTermin& ASlot) : IsScheduled(ASlot.Scheduled()) {
    const bool IsAlternative = AContext.Plan().FAlternativeTiming;
    Start = IsAlternative ? ASlot.FAltStart : ASlot.FStart;
    Finish = IsAlternative ? ASlot.FAltEnde : ASlot.FEnde;
    Day = IsAlternative ? ASlot.FAltWochentag : ASlot.FWochentag;
    IsScheduled = IsScheduled && Start != 0;
  }

  /// The weekday, if it recurs; without one it counts as Sunday.
  TVELDay Weekday() const { return Day == velNoDay ? velSunday : Day; }
  /// Its times of day on a day.
  TSpan On(TVELDate ADay) const {
    const TVELDateTime First = ADay + TimeOf(Start);
    return {First, Fix24(ADay + TimeOf(Finish), First)};
  }
  /// Its time, if it does not recur.
  TSpan Single() const { return {Start, Fix24(Finish, Start)}; }

  TVELDateTime Start;
  TVELDateTime Finish;
  TVELDay Day = velNoDay;
  bool IsScheduled;
};

/// The first weekly occurrence from the range's first day on, in the weeks, that ATest lets pass.
template <class TTest>
std::optional<TSpan> NextRecurrence(const TPlanContext& AContext, const TSlot& ASlot, const TVELWeeks& AWeeks,
                                    const TSpan& ARange, const TTest& ATest) {
  if (ASlot.Weekday() > velSunday) {
    return std::nullopt;
  }
  const TVELDate Base =
      DayOf(ARange.Start) != 0 ? ARange.Start : TVELDateTime(AContext.Plan().FEinstellungen->FStundenplanZeitraumVon);
  const bool IsOver = QuillonDateTime::DayOfWeek(Base) > ASlot.Weekday();
  const TVELDate Monday = std::max<double>(MondayOf(Base) + (IsOver ? 7 : 0), AContext.FirstMonday());
  // However long the range or the timetable is: no set holds a week behind these.
  const int LastWeek = std::min(WeekCount(AContext), TVELWeeks::Count);
  for (int Week = WeekIndex(AContext, Monday); Week > 0 && Week <= LastWeek; ++Week) {
    const TSpan Span = ASlot.On(WeekDate(AContext, Week, ASlot.Weekday()));
    if (Span.Finish < Span.Start || Span.Start >= ARange.Finish) {
      break;
    }
    if (AWeeks.Contains(Week) && ATest(Span)) {
      return Span;
    }
  }
  return std::nullopt;
}

TVELDate LastDay(const TSpan& ASpan) {
  const TVELDate Day = DayOf(ASpan.Finish);
  return Day == ASpan.Finish ? TVELDate(Day - 1) : Day;
}

TSpan Timetable(const TPlanContext& AContext) {
  const TVELEinstellungen& Settings = *AContext.Plan().FEinstellungen;
  return {Settings.FStundenplanZeitraumVon, Settings.FStundenplanZeitraumBis + 1};
}

bool IsOn(TVELDay ADay, int AWeekday) { return ADay == velNoDay || ADay == AWeekday; }

}  // namespace

TWindowParts::TWindowParts(const TVELPlan& APlan) {
  for (const TVELZeitraum* Part : APlan.FZeitraeume) {
    if (Part->FParentZeitraum != nullptr && Part->FStart != 0) {
      FOfWindow.Add(Part->FParentZeitraum, {DayOf(Part->FStart), DayOf(Part->FEnde)}, Part);
    }
  }
  FOfWindow.Make();
}

bool TWindowParts::Touch(const TVELZeitraum& AWindow, const TSpan& ASpan) const {
  return FOfWindow.Visit(&AWindow, DayOf(ASpan.Finish), DayOf(ASpan.Start), [](const TVELZeitraum*) { return true; });
}

TSpan Validity(const TPlanContext& AContext, const TVELTermin& ATermin) {
  TSpan Days = PlanValidity(AContext);
  if (const TVELVeranstaltung* const Lesson = ATermin.Veranstaltung()) {
    Narrow(Days, Lesson->FGueltigVon, Lesson->FGueltigBis);
    if (!Lesson->FKlassen.IsEmpty()) {
      const TVELKlasse& Class = *Lesson->FKlassen.GetItem(0);
      Narrow(Days, Class.FZeitraum);
      Narrow(Days, Class.FZeitraumStart, Class.FZeitraumEnde);
    }
    Narrow(Days, Lesson->FZeitraum);
  }
  return Days;
}

TSpan Validity(const TPlanContext& AContext, const TVELAufsicht& /*ASupervision*/) { return PlanValidity(AContext); }

bool IsExcluded(const TPlanContext& AContext, const TVELTermin& ATermin, const TSpan& ASpan) {
  const TVELVeranstaltung* const Lesson = ATermin.Veranstaltung();
  return Lesson != nullptr && Lesson->FZeitraum != nullptr && AContext.WindowParts().Touch(*Lesson->FZeitraum, ASpan);
}

bool InValidity(const TPlanContext& AContext, const TVELTermin& ATermin, const TSpan& ASpan) {
  return Shares(Validity(AContext, ATermin), ASpan) && !IsExcluded(AContext, ATermin, ASpan);
}

bool InValidity(const TPlanContext& AContext, const TVELAufsicht& ASupervision, const TSpan& ASpan) {
  return Shares(Validity(AContext, ASupervision), ASpan);
}

bool InValidity(const TPlanContext& AContext, const TVELTermin& ATermin, TVELDate ADay) {
  return Holds(Validity(AContext, ATermin), ADay);
}

bool InValidity(const TPlanContext& AContext, const TVELAufsicht& ASupervision, TVELDate ADay) {
  return Holds(Validity(AContext, ASupervision), ADay);
}

std::optional<TSpan> NextOccurrence(const TPlanContext& AContext, const TVELPlanobjekt* AnObject,
                                    const TVELTermin& ATermin, TVELDay ADay, const TSpan& ARange) {
  const TSlot Slot(AContext, ATermin);
  if (!Slot.IsScheduled) {
    return std::nullopt;
  }
  if (ATermin.Reoccur()) {
    if (!IsOn(ADay, Slot.Weekday())) {
      return std::nullopt;
    }
    const TSpan Days = Validity(AContext, ATermin);
    return NextRecurrence(AContext, Slot, EffectiveWeeks(AContext, ATermin.Weeks()), ARange, [&](const TSpan& ASpan) {
      return Shares(Days, ASpan) && !IsExcluded(AContext, ATermin, ASpan) &&
             AContext.FreeEntries().Covering(AnObject, ASpan) == nullptr;
    });
  }
  const TSpan Span = Slot.Single();
  const bool IsFound =
      IsOn(ADay, QuillonDateTime::DayOfWeek(Span.Start)) && ARange.Start <= Span.Start && Overlap(Span, ARange);
  return IsFound ? std::optional(Span) : std::nullopt;
}

std::optional<TSpan> NextOccurrence(const TPlanContext& AContext, const TVELPlanobjekt* AnObject,
                                    const TVELAufsicht& ASupervision, TVELDay ADay, const TSpan& ARange) {
  const TSlot Slot(AContext, ASupervision);
  const TSpan Single = Slot.Single();
  if (!Slot.IsScheduled ||
      !IsOn(ADay, ASupervision.Reoccur() ? Slot.Weekday() : QuillonDateTime::DayOfWeek(Single.Start))) {
    return std::nullopt;
  }
  const TVELWeeks Weeks = EffectiveWeeks(AContext, {});
  const auto Counts = [&](const TSpan& ASpan) {
    return Overlap(ASpan, ARange) && InValidity(AContext, ASupervision, ASpan) &&
           AContext.FreeEntries().Overlapping(AnObject, ASpan) == nullptr;
  };
  if (ASupervision.Reoccur()) {
    return NextRecurrence(AContext, Slot, Weeks, ARange, Counts);
  }
  const int Week = WeekIndex(AContext, Single.Start);
  return Weeks.Contains(Week) && Counts(Single) ? std::optional(Single) : std::nullopt;
}

std::optional<TSpan> FirstOccurrence(const TPlanContext& AContext, const TVELPlanobjekt* AnObject,
                                     const TVELTermin& ATermin) {
  return NextOccurrence(AContext, AnObject, ATermin, velNoDay, Timetable(AContext));
}

std::optional<TSpan> FirstOccurrence(const TPlanContext& AContext, const TVELPlanobjekt* AnObject,
                                     const TVELAufsicht& ASupervision) {
  return NextOccurrence(AContext, AnObject, ASupervision, velNoDay, Timetable(AContext));
}

bool OccursIn(const TPlanContext& AContext, const TVELTermin& ATermin, const TSpan& ARange) {
  const TSlot Slot(AContext, ATermin);
  if (!Slot.IsScheduled) {
    return false;
  }
  if (!ATermin.Reoccur()) {
    return Overlap(Slot.Single(), ARange);
  }
  TSpan Range = ARange;
  Narrow(Range, Timetable(AContext).Start, Timetable(AContext).Finish);
  if (Slot.Day == velNoDay || Range.Start > Range.Finish ||
      (DayOf(Range.Start) == LastDay(Range) && !TimeOverlap(Slot.On(LastDay(Range)), Range))) {
    return false;
  }
  return NextOccurrence(AContext, nullptr, ATermin, velNoDay, Range).has_value();
}

bool OccursIn(const TPlanContext& AContext, const TVELAufsicht& ASupervision, const TSpan& ARange) {
  return NextOccurrence(AContext, nullptr, ASupervision, velNoDay, ARange).has_value();
}

}  // namespace uDataUtils
