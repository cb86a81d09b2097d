#include "uDataUtils/Occurrences.h"

#include <algorithm>

#include "QuillonDateTime.h"
#include "uDataUtils/SchoolDays.h"
#include "uDataUtils/Weeks.h"
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

/// The appointment's times of day on a day.
TSpan SpanOn(const TVELTermin& ATermin, TVELDate ADay) {
  const TVELDateTime Start = ADay + TimeOf(ATermin.Start());
  return {Start, Fix24(ADay + TimeOf(ATermin.Ende()), Start)};
}

/// The time of an appointment that does not recur.
TSpan SpanOf(const TVELTermin& ATermin) { return {ATermin.Start(), Fix24(ATermin.Ende(), ATermin.Start())}; }

bool HasTime(const TVELTermin& ATermin) { return ATermin.Scheduled() && ATermin.Start() != 0; }

/// The weekday of a recurring appointment; one without counts as Sunday.
TVELDay WeekdayOf(const TVELTermin& ATermin) {
  return ATermin.Wochentag() == velNoDay ? velSunday : ATermin.Wochentag();
}

std::optional<TSpan> NextRecurrence(const TVELPlan& APlan, const TVELPlanobjekt* AnObject, const TVELTermin& ATermin,
                                    const TSpan& ARange) {
  const TVELDay Weekday = WeekdayOf(ATermin);
  if (Weekday > velSunday) {
    return std::nullopt;
  }
  const TVELDate Base =
      DayOf(ARange.Start) != 0 ? ARange.Start : TVELDateTime(APlan.FEinstellungen->FStundenplanZeitraumVon);
  const bool IsOver = QuillonDateTime::DayOfWeek(Base) > Weekday;
  const TVELDate Monday = std::max<double>(MondayOf(Base) + (IsOver ? 7 : 0), WeekStart(APlan, 1));
  // However long the range or the timetable is: no set holds a week behind these.
  const int LastWeek = std::min(WeekCount(APlan), TVELWeeks::Count);
  for (int Week = WeekIndex(APlan, Monday); Week > 0 && Week <= LastWeek; ++Week) {
    const TSpan Span = SpanOn(ATermin, WeekDate(APlan, Week, Weekday));
    if (Span.Finish < Span.Start || Span.Start >= ARange.Finish) {
      break;
    }
    if (TerminInWeek(APlan, ATermin, Week) && InValidity(APlan, ATermin, Span) &&
        FreeCovers(APlan, AnObject, Span) == nullptr) {
      return Span;
    }
  }
  return std::nullopt;
}

TVELDate LastDay(const TSpan& ASpan) {
  const TVELDate Day = DayOf(ASpan.Finish);
  return Day == ASpan.Finish ? TVELDate(Day - 1) : Day;
}

}  // namespace

TSpan Validity(const TVELPlan& APlan, const TVELTermin& ATermin) {
  TSpan Days{APlan.FEinstellungen->FGueltigVon, APlan.FEinstellungen->FGueltigBis};
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

bool IsExcluded(const TVELPlan& APlan, const TVELTermin& ATermin, const TSpan& ASpan) {
  const TVELVeranstaltung* const Lesson = ATermin.Veranstaltung();
  const TVELZeitraum* const Window = Lesson != nullptr ? Lesson->FZeitraum : nullptr;
  return Window != nullptr &&
         std::any_of(APlan.FZeitraeume.begin(), APlan.FZeitraeume.end(), [&](const TVELZeitraum* APart) {
           return APart->FParentZeitraum == Window && APart->FStart != 0 &&
                  DateOverlap(ASpan, {APart->FStart, APart->FEnde});
         });
}

bool InValidity(const TVELPlan& APlan, const TVELTermin& ATermin, const TSpan& ASpan) {
  const TSpan Days = Validity(APlan, ATermin);
  return DateOverlap(ASpan,
                     {Days.Start != 0 ? Days.Start : ASpan.Start, Days.Finish != 0 ? Days.Finish : ASpan.Finish}) &&
         !IsExcluded(APlan, ATermin, ASpan);
}

bool InValidity(const TVELPlan& APlan, const TVELTermin& ATermin, TVELDate ADay) {
  const TVELDate Day = DayOf(ADay);
  const TSpan Days = Validity(APlan, ATermin);
  return Day >= DayOf(Days.Start) && (Days.Finish == 0 || Day <= DayOf(Days.Finish));
}

std::optional<TSpan> NextOccurrence(const TVELPlan& APlan, const TVELPlanobjekt* AnObject, const TVELTermin& ATermin,
                                    TVELDay ADay, const TSpan& ARange) {
  if (!HasTime(ATermin)) {
    return std::nullopt;
  }
  if (ATermin.Reoccur()) {
    return ADay == velNoDay || ADay == WeekdayOf(ATermin) ? NextRecurrence(APlan, AnObject, ATermin, ARange)
                                                          : std::nullopt;
  }
  const TSpan Span = SpanOf(ATermin);
  const bool IsOnDay = ADay == velNoDay || ADay == QuillonDateTime::DayOfWeek(Span.Start);
  return IsOnDay && ARange.Start <= Span.Start && Overlap(Span, ARange) ? std::optional(Span) : std::nullopt;
}

std::optional<TSpan> FirstOccurrence(const TVELPlan& APlan, const TVELPlanobjekt* AnObject, const TVELTermin& ATermin) {
  const TVELEinstellungen& Settings = *APlan.FEinstellungen;
  return NextOccurrence(APlan, AnObject, ATermin, velNoDay,
                        {Settings.FStundenplanZeitraumVon, Settings.FStundenplanZeitraumBis + 1});
}

bool OccursIn(const TVELPlan& APlan, const TVELTermin& ATermin, const TSpan& ARange) {
  if (!HasTime(ATermin)) {
    return false;
  }
  if (!ATermin.Reoccur()) {
    return Overlap(SpanOf(ATermin), ARange);
  }
  const TVELEinstellungen& Settings = *APlan.FEinstellungen;
  TSpan Range = ARange;
  Narrow(Range, Settings.FStundenplanZeitraumVon, Settings.FStundenplanZeitraumBis + 1);
  if (ATermin.Wochentag() == velNoDay || Range.Start > Range.Finish ||
      (DayOf(Range.Start) == LastDay(Range) && !TimeOverlap(SpanOn(ATermin, LastDay(Range)), Range))) {
    return false;
  }
  return NextOccurrence(APlan, nullptr, ATermin, velNoDay, Range).has_value();
}

}  // namespace uDataUtils
