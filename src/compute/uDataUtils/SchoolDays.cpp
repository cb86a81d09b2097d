#include "uDataUtils/SchoolDays.h"

#include <algorithm>

#include "QuillonDateTime.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Plan.h"

namespace uDataUtils {

namespace {

TSpan SpanOf(const TVELKalendereintrag& AnEntry) { return {AnEntry.Start(), Fix24(AnEntry.Ende(), AnEntry.Start())}; }

bool Covers(const TSpan& AnOuter, const TSpan& AnInner) {
  return AnOuter.Start <= AnInner.Start && AnInner.Finish <= AnOuter.Finish;
}

/// The first entry that a test lets pass; null if there is none.
template <class TTest>
const TVELKalendereintrag* FindEntry(const TVELPlan& APlan, const TTest& ATest) {
  if (APlan.FKalender) {
    const TVELKalenderEintragList& Entries = APlan.FKalender->FEintraege;
    const auto Found = std::find_if(Entries.begin(), Entries.end(),
                                    [&](const TVELKalendereintrag* AnEntry) { return ATest(*AnEntry); });
    return Found != Entries.end() ? *Found : nullptr;
  }
  return nullptr;
}

/// School days may run over the weekend, from Saturday to Wednesday say.
bool IsWeekday(const TVELEinstellungen& ASettings, int ADay) {
  return ASettings.FWochenstart <= ASettings.FWochenende
             ? ADay >= ASettings.FWochenstart && ADay <= ASettings.FWochenende
             : ADay >= ASettings.FWochenstart || ADay <= ASettings.FWochenende;
}

}  // namespace

bool AppliesTo(const TVELKalendereintrag& AnEntry, const TVELPlanobjekt* AnObject) {
  if (AnObject == nullptr) {
    return AnEntry.FTeilnehmer.IsEmpty();
  }
  return AnEntry.FVisibility == velPublic ||
         std::any_of(AnEntry.FTeilnehmer.begin(), AnEntry.FTeilnehmer.end(),
                     [&](const TVELTeilnehmer* AMember) { return AMember->FDataObject == AnObject; });
}

const TVELKalendereintrag* FreeCovers(const TVELPlan& APlan, const TVELPlanobjekt* AnObject, const TSpan& ASpan) {
  return FindEntry(APlan, [&](const TVELKalendereintrag& AnEntry) {
    return AnEntry.FUnterrichtsfrei && AnEntry.FVisibility == velPublic && Covers(SpanOf(AnEntry), ASpan) &&
           AppliesTo(AnEntry, AnObject);
  });
}

bool IsSchoolDay(const TVELPlan& APlan, TVELDate ADay) {
  const TVELDate Day = DayOf(ADay);
  const auto Frees = [&](const TVELKalendereintrag& AnEntry) {
    return AnEntry.FUnterrichtsfrei && AnEntry.FGanztaegig && AppliesTo(AnEntry, nullptr) &&
           Covers(SpanOf(AnEntry), {Day, Day + 1});
  };
  return IsWeekday(*APlan.FEinstellungen, QuillonDateTime::DayOfWeek(Day)) && FindEntry(APlan, Frees) == nullptr;
}

TVELDate MoveSchoolDays(const TVELPlan& APlan, int ACount, TVELDate ADefault, TVELDate ADate) {
  const TVELEinstellungen& Settings = *APlan.FEinstellungen;
  const int Step = ACount < 0 ? -1 : 1;
  const TVELDate Start = DayOf(ADate);
  TVELDate Day = Start;
  for (int Left = ACount; Left != 0;) {
    const TVELDate Next = Day + Step;
    if (Next < DayOf(Settings.FStundenplanZeitraumVon) || Next > DayOf(Settings.FStundenplanZeitraumBis)) {
      return Day == Start ? ADefault : Day;
    }
    Day = Next;
    Left -= IsSchoolDay(APlan, Day) ? Step : 0;
  }
  return Day;
}

}  // namespace uDataUtils
