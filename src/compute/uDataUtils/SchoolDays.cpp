#include "uDataUtils/SchoolDays.h"

#include <algorithm>
#include <span>

#include "QuillonDateTime.h"
#include "uDataUtils/Context.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Plan.h"

namespace uDataUtils {

namespace {

/// The entry's Start() and Ende(); these would look for the plan anew each time, for every entry of the calendar.
TSpan SpanOf(const TVELPlan& APlan, const TVELKalendereintrag& AnEntry) {
  const TVELDateTime Start = APlan.FAlternativeTiming ? AnEntry.FAltStart : AnEntry.FStart;
  return {Start, Fix24(APlan.FAlternativeTiming ? AnEntry.FAltEnde : AnEntry.FEnde, Start)};
}

std::span<TQuillonDataObject* const> Entries(const TVELPlan& APlan) {
  return APlan.FKalender ? APlan.FKalender->FEintraege.Items() : std::span<TQuillonDataObject* const>();
}

double StartOf(const TSpan& ASpan) { return ASpan.Start; }

}  // namespace

TSchoolDays::TSchoolDays(const TVELPlan& APlan)
    : FFirst(APlan.FEinstellungen->FWochenstart), FLast(APlan.FEinstellungen->FWochenende) {
  for (const TQuillonDataObject* Object : Entries(APlan)) {
    const auto& Entry = static_cast<const TVELKalendereintrag&>(*Object);
    if (Entry.FUnterrichtsfrei && Entry.FGanztaegig && AppliesTo(Entry, nullptr)) {
      const TSpan Span = SpanOf(APlan, Entry);
      // Whole days, whatever times of day the entry has.
      FFree.push_back({DayOf(Span.Start), DayOf(Span.Finish) + (TimeOf(Span.Finish) != 0 ? 1 : 0)});
    }
  }
  Merge();
}

bool TSchoolDays::Contains(TVELDate ADay) const {
  const int Weekday = QuillonDateTime::DayOfWeek(ADay);
  const bool FromFirst = Weekday >= FFirst;
  const bool ToLast = Weekday <= FLast;
  // School days may run over the weekend, from Saturday to Wednesday say.
  return (FFirst <= FLast ? FromFirst && ToLast : FromFirst || ToLast) && !IsFree(ADay);
}

/// Leaves stretches in the order of time that do not overlap, so that a day needs no walk.
void TSchoolDays::Merge() {
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

bool TSchoolDays::IsFree(TVELDate ADay) const {
  const auto Behind = std::ranges::upper_bound(FFree, static_cast<double>(ADay), {}, StartOf);
  return Behind != FFree.begin() && ADay < (Behind - 1)->Finish;
}

TFreeEntries::TFreeEntries(const TVELPlan& APlan) {
  for (const TQuillonDataObject* Object : Entries(APlan)) {
    const auto& Entry = static_cast<const TVELKalendereintrag&>(*Object);
    if (!Entry.FUnterrichtsfrei) {
      continue;
    }
    const TEntry Free{SpanOf(APlan, Entry), &Entry};
    if (Entry.FVisibility == velPublic) {
      (Entry.FTeilnehmer.IsEmpty() ? FForAll : FPublic).Add(nullptr, Free.Span, Free);
    } else if (Entry.FTeilnehmer.IsEmpty()) {
      FOfMembers.Add(nullptr, Free.Span, Free);
    }
    for (const TVELTeilnehmer* Member : Entry.FTeilnehmer) {
      if (Entry.FVisibility != velPublic && Member->FDataObject != nullptr) {
        FOfMembers.Add(Member->FDataObject, Free.Span, Free);
      }
    }
  }
  for (TIndex* Index : {&FForAll, &FPublic, &FOfMembers}) {
    Index->Make();
  }
}

const TVELKalendereintrag* TFreeEntries::Covering(const TVELPlanobjekt* AnObject, const TSpan& ASpan) const {
  const TVELKalendereintrag* Found = nullptr;
  const auto Take = [&](const TEntry& AnEntry) {
    Found = AnEntry.Entry;
    return true;
  };
  // An entry covers what does not begin ahead of it and does not end behind it.
  if (!FForAll.Visit(nullptr, ASpan.Start, ASpan.Finish, Take) && AnObject != nullptr) {
    FPublic.Visit(nullptr, ASpan.Start, ASpan.Finish, Take);
  }
  return Found;
}

const TVELKalendereintrag* TFreeEntries::Overlapping(const TVELPlanobjekt* AnObject, const TSpan& ASpan) const {
  const TVELKalendereintrag* Found = nullptr;
  const auto Visit = [&](const TIndex& AnIndex, const void* AKey) {
    return AnIndex.Visit(AKey, ASpan.Finish, ASpan.Start, [&](const TEntry& AnEntry) {
      Found = Overlap(AnEntry.Span, ASpan) ? AnEntry.Entry : nullptr;
      return Found != nullptr;
    });
  };
  if (!Visit(FForAll, nullptr) && !Visit(FOfMembers, AnObject) && AnObject != nullptr) {
    Visit(FPublic, nullptr);
  }
  return Found;
}

bool AppliesTo(const TVELKalendereintrag& AnEntry, const TVELPlanobjekt* AnObject) {
  if (AnObject == nullptr) {
    return AnEntry.FTeilnehmer.IsEmpty();
  }
  return AnEntry.FVisibility == velPublic ||
         std::any_of(AnEntry.FTeilnehmer.begin(), AnEntry.FTeilnehmer.end(),
                     [&](const TVELTeilnehmer* AMember) { return AMember->FDataObject == AnObject; });
}

bool IsSchoolDay(const TPlanContext& AContext, TVELDate ADay) { return AContext.SchoolDays().Contains(DayOf(ADay)); }

TVELDate MoveSchoolDays(const TPlanContext& AContext, int ACount, TVELDate ADefault, TVELDate ADate) {
  const TVELEinstellungen& Settings = *AContext.Plan().FEinstellungen;
  const TVELDate First = DayOf(Settings.FStundenplanZeitraumVon);
  const TVELDate Last = DayOf(Settings.FStundenplanZeitraumBis);
  const TSchoolDays& SchoolDays = AContext.SchoolDays();
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

std::vector<TVELDate> SchoolDaysIn(const TPlanContext& AContext, TVELDate AFirst, TVELDate ALast) {
  const TVELEinstellungen& Settings = *AContext.Plan().FEinstellungen;
  const TVELDate Last = std::min<double>(ALast, DayOf(Settings.FStundenplanZeitraumBis));
  std::vector<TVELDate> Days;
  if (AFirst < DayOf(Settings.FStundenplanZeitraumVon)) {
    return Days;
  }
  for (TVELDate Day = AFirst; Day <= Last; Day = Day + 1) {
    if (AContext.SchoolDays().Contains(Day)) {
      Days.push_back(Day);
    }
  }
  return Days;
}

}  // namespace uDataUtils
