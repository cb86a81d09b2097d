#include "uDataUtils/SchoolDays.h"

#include <algorithm>
#include <span>
#include <vector>

#include "QuillonDateTime.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Plan.h"

namespace uDataUtils {

namespace {

/// The entry's Start() and Ende(); these would look for the plan anew each time, and this runs for every entry of the
/// calendar and every lesson of the year.
TSpan SpanOf(const TVELPlan& APlan, const TVELKalendereintrag& AnEntry) {
  const TVELDateTime Start = APlan.FAlternativeTiming ? AnEntry.FAltStart : AnEntry.FStart;
  return {Start, Fix24(APlan.FAlternativeTiming ? AnEntry.FAltEnde : AnEntry.FEnde, Start)};
}

bool Covers(const TSpan& AnOuter, const TSpan& AnInner) {
  return AnOuter.Start <= AnInner.Start && AnInner.Finish <= AnOuter.Finish;
}

std::span<TQuillonDataObject* const> Entries(const TVELPlan& APlan) {
  return APlan.FKalender ? APlan.FKalender->FEintraege.Items() : std::span<TQuillonDataObject* const>();
}

/// The days of a plan on which there is school.
class TSchoolDays {
 public:
  explicit TSchoolDays(const TVELPlan& APlan)
      : FFirst(APlan.FEinstellungen->FWochenstart), FLast(APlan.FEinstellungen->FWochenende) {
    for (const TQuillonDataObject* Object : Entries(APlan)) {
      const auto& Entry = static_cast<const TVELKalendereintrag&>(*Object);
      if (Entry.FUnterrichtsfrei && Entry.FGanztaegig && AppliesTo(Entry, nullptr)) {
        const TSpan Span = SpanOf(APlan, Entry);
        FFree.push_back({Span.Start, DayOf(Span.Finish)});
      }
    }
    Merge();
  }

  bool Contains(TVELDate ADay) const {
    const int Weekday = QuillonDateTime::DayOfWeek(ADay);
    const bool FromFirst = Weekday >= FFirst;
    const bool ToLast = Weekday <= FLast;
    // School days may run over the weekend, from Saturday to Wednesday say.
    return (FFirst <= FLast ? FromFirst && ToLast : FromFirst || ToLast) && !IsFree(ADay);
  }

 private:
  static double StartOf(const TSpan& ASpan) { return ASpan.Start; }

  /// Leaves stretches in the order of time that do not overlap, so that a day needs no walk.
  void Merge() {
    std::ranges::sort(FFree, {}, StartOf);
    std::vector<TSpan> Merged;
    for (const TSpan& Span : FFree) {
      if (!Merged.empty() && Span.Start <= Merged.back().Finish) {
        Merged.back().Finish = std::max<double>(Merged.back().Finish, Span.Finish);
      } else if (Span.Start < Span.Finish) {
        Merged.push_back(Span);
      }
    }
    FFree.swap(Merged);
  }

  bool IsFree(TVELDate ADay) const {
    const auto Behind = std::ranges::upper_bound(FFree, static_cast<double>(ADay), {}, StartOf);
    return Behind != FFree.begin() && ADay < (Behind - 1)->Finish;
  }

  TVELDay FFirst;
  TVELDay FLast;
  std::vector<TSpan> FFree;  ///< up to, but without, the day of the finish
};

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
  for (const TQuillonDataObject* Object : Entries(APlan)) {
    const auto& Entry = static_cast<const TVELKalendereintrag&>(*Object);
    if (Entry.FUnterrichtsfrei && Entry.FVisibility == velPublic && Covers(SpanOf(APlan, Entry), ASpan) &&
        AppliesTo(Entry, AnObject)) {
      return &Entry;
    }
  }
  return nullptr;
}

bool IsSchoolDay(const TVELPlan& APlan, TVELDate ADay) { return TSchoolDays(APlan).Contains(DayOf(ADay)); }

TVELDate MoveSchoolDays(const TVELPlan& APlan, int ACount, TVELDate ADefault, TVELDate ADate) {
  const TVELDate First = DayOf(APlan.FEinstellungen->FStundenplanZeitraumVon);
  const TVELDate Last = DayOf(APlan.FEinstellungen->FStundenplanZeitraumBis);
  const TSchoolDays SchoolDays(APlan);
  const int Step = ACount < 0 ? -1 : 1;
  const TVELDate Start = DayOf(ADate);
  TVELDate Day = Start;
  for (int Left = ACount; Left != 0;) {
    const TVELDate Next = Day + Step;
    if (Next < First || Next > Last) {
      return Day == Start ? ADefault : Day;
    }
    Day = Next;
    Left -= SchoolDays.Contains(Day) ? Step : 0;
  }
  return Day;
}

}  // namespace uDataUtils
