#include <algorithm>
#include <iterator>
#include <unordered_map>

#include "uDataUtils/Context.h"
#include "uDataUtils/Publishing.h"
#include "uDataUtils/Substitutions.h"
#include "uDataUtils/Weeks.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlaneintraege/Ordnungen.h"
#include "uPlaneintraege/Vorkommen.h"

namespace uPlaneintraege {

namespace {

constexpr int DaysPerWeek = 7;

/// True if so many take part that an entry for each of them would take too long.
bool IsCrowded(const TVELTermin& ATermin) {
  constexpr std::size_t Many = 64;
  return ATermin.FLehrer.Items().size() + ATermin.Klassen().size() > Many;
}

const TVELVeranstaltungsliste& LessonsOf(const TPlanContext& AContext, const TVELPlanobjekt* AnObject) {
  return AnObject != nullptr ? AnObject->FVeranstaltungen : AContext.Plan().FVeranstaltungen;
}

bool Passes(const TLessonFilter& AFilter, const TVELVeranstaltung& ALesson) {
  const bool IsOfClasses = ALesson.FSchueler.IsEmpty();
  return IsOfClasses ||
         (!AFilter.CoursesOnly && (AFilter.Student == nullptr || ALesson.FSchueler.Contains(AFilter.Student)));
}

/// Calls AVisit with each appointment of the lessons that pass, if the object takes part in it.
template <class TVisit>
void VisitAppointments(const TPlanContext& AContext, const TLessonFilter& AFilter, const TVisit& AVisit) {
  for (TVELVeranstaltung* const Lesson : LessonsOf(AContext, AFilter.Object)) {
    if (Lesson == nullptr || !Passes(AFilter, *Lesson)) {
      continue;
    }
    const auto Visit = [&](TVELTermin* ATermin) { AVisit(*Lesson, *ATermin); };
    if (AFilter.Object == nullptr) {
      std::ranges::for_each(Lesson->FTermine, Visit);
    } else {
      std::ranges::for_each(AContext.Participants().Appointments(*Lesson, *AFilter.Object), Visit);
    }
  }
}

/// Adds the entries of an appointment, occurrence by occurrence.
class TWalk {
 public:
  TWalk(const TPlanContext& AContext, TVELPlanobjekt* AnObject, const TRangeOptions& AnOptions,
        TVELPlanEintragListe& AList)
      : FContext(AContext), FObject(AnObject), FOptions(AnOptions), FList(AList) {}

  void Run(TVELTermin& ATermin, const TSpan& ARange) {
    FPlain = nullptr;
    TVELDateTime Cursor = ARange.Start;
    while (Cursor < ARange.Finish && FList.Count() < FOptions.Max) {
      const auto Found = uDataUtils::NextOccurrence(FContext, FObject, ATermin, velNoDay, {Cursor, ARange.Finish});
      if (!Found) {
        return;
      }
      const bool IsClean = Take(ATermin, *Found);
      if (!ATermin.Reoccur() || (FOptions.StopAtFirstClean && IsClean)) {
        return;
      }
      Cursor = Found->Start + DaysPerWeek;
    }
  }

 private:
  /// @return true for an occurrence without changes
  bool Take(TVELTermin& ATermin, const TSpan& ASpan) {
    if (!FOptions.WithChanges) {
      TakePlain(ATermin, ASpan);
      return true;
    }
    const TOccurrence Occurrence(FContext, FObject, ATermin, FOptions.PublicOnly, ASpan);
    if (Occurrence.HadChanges()) {
      constexpr bool KeepGaps = false;
      Occurrence.Expand(KeepGaps, FList);
      return false;
    }
    TakePlain(ATermin, ASpan);
    return true;
  }

  void TakePlain(TVELTermin& ATermin, const TSpan& ASpan) {
    const int Week = uDataUtils::WeekIndex(FContext, ASpan.Start);
    if (FPlain != nullptr && Week >= 1 && Week <= TVELWeeks::Count) {
      FPlain->FWochen.Include(Week);
      return;
    }
    TVELPlaneintrag& Entry =
        CreateEintrag(FContext, FObject, &ATermin, FOptions.PublicOnly, FList, ASpan, nullptr, nullptr);
    if (FOptions.Merge && !Entry.Geaendert()) {
      FPlain = &Entry;
    }
  }

  const TPlanContext& FContext;
  TVELPlanobjekt* FObject;
  const TRangeOptions& FOptions;
  TVELPlanEintragListe& FList;
  TVELPlaneintrag* FPlain = nullptr;  ///< the entry that stands for all occurrences without changes
};

/// Adds what comes to an object from elsewhere.
class TComing {
 public:
  TComing(const TPlanContext& AContext, TVELPlanobjekt& AnObject, const TRangeOptions& AnOptions, TSeen& ASeen,
          TVELPlanEintragListe& AList)
      : FContext(AContext), FObject(AnObject), FOptions(AnOptions), FSeen(ASeen), FList(AList) {}

  void Run(const TSpan& ARange) {
    for (TVELAenderung* const Change : uDataUtils::SelectChanges(FContext, FObject, ARange)) {
      Add(*Change, nullptr);
    }
    for (TVELZuweisung* const Assignment : FContext.Concerns().Assignments(FObject, ARange)) {
      Add(*Assignment, Assignment);
    }
    const auto* const Student = uDataObjects::As<TVELSchueler>(&FObject);
    if (Student == nullptr || Student->FKlasse == nullptr) {
      return;
    }
    for (TVELAenderung* const Change : uDataUtils::SelectChanges(FContext, *Student->FKlasse, ARange)) {
      if (Change->Kind() == TChangeKind::Mitteilung) {
        Add(*Change, nullptr);
      }
    }
  }

 private:
  void Add(TVELAenderung& AChange, TVELZuweisung* AnAssignment) {
    if (FList.Count() >= FOptions.Max || (FOptions.PublicOnly && !uDataUtils::IsPublished(FContext, &AChange)) ||
        !FSeen.insert(&AChange).second) {
      return;
    }
    CreateEintrag(FContext, &FObject, AChange.Termin(), FOptions.PublicOnly, FList, {AChange.FStart, AChange.FEnde},
                  AnAssignment, AnAssignment != nullptr ? nullptr : &AChange);
  }

  const TPlanContext& FContext;
  TVELPlanobjekt& FObject;
  const TRangeOptions& FOptions;
  TSeen& FSeen;
  TVELPlanEintragListe& FList;
};

bool IsInRange(const TPlanContext& AContext, const TVELTermin& ATermin, const TSpan& ARange) {
  return ATermin.Reoccur() ? uDataUtils::OccursIn(AContext, ATermin, ARange)
                           : uDataUtils::InValidity(AContext, ATermin, ATermin.Start());
}

}  // namespace

void GetTerminEintraege(const TPlanContext& AContext, const TLessonFilter& AFilter, const TVELZeitraum* APeriod,
                        const std::optional<TSpan>& ARange, TVELDay ADay, int AMax, TVELPlanEintragListe& AList) {
  const bool TakesSingle = AContext.Plan().FEinstellungen->FNullWocheEinmalige;
  VisitAppointments(AContext, AFilter, [&](const TVELVeranstaltung& ALesson, TVELTermin& ATermin) {
    if (AList.Count() >= AMax || (APeriod != nullptr && ALesson.FZeitraum != APeriod) || !ATermin.Scheduled() ||
        (!ATermin.Reoccur() && !TakesSingle) || (ADay != velNoDay && ATermin.Wochentag() != ADay) ||
        (ARange && !IsInRange(AContext, ATermin, *ARange)) ||
        (AFilter.Seen != nullptr && IsCrowded(ATermin) && !AFilter.Seen->insert(&ATermin).second)) {
      return;
    }
    TVELPlaneintrag& Entry = AList.Add();
    Entry.FPlanobjekt = AFilter.Object;
    Entry.FTermin = &ATermin;
    if (const auto First = uDataUtils::FirstOccurrence(AContext, AFilter.Object, ATermin)) {
      Entry.FStart = First->Start;
      Entry.FFinish = First->Finish;
    }
    Entry.FWochen = uDataUtils::EffectiveWeeks(AContext, ATermin.Weeks());
    BuildEintrag(AContext, Entry, false, false);
  });
}

void GetWochenEintraege(const TPlanContext& AContext, TVELPlanobjekt* AnObject, const TWeekOptions& AnOptions,
                        TVELPlanEintragListe& AList) {
  if (AnOptions.Max > MaxEntries) {
    return;
  }
  TLessonFilter Filter{.Object = AnObject, .CoursesOnly = AnOptions.CoursesOnly, .Seen = AnOptions.Seen};
  const auto* const Student = uDataObjects::As<TVELSchueler>(AnObject);
  if (Student != nullptr && Student->FKlasse != nullptr) {
    Filter.Object = Student->FKlasse;
    Filter.Student = Student;
  }
  const uDataUtils::TWeekSelection Selection = uDataUtils::SelectWeek(AContext, AnOptions.Selector);
  if (Selection.Week == 0) {
    GetTerminEintraege(AContext, Filter, Selection.Period, std::nullopt, velNoDay, AnOptions.Max, AList);
  } else {
    const TSpan Range = uDataUtils::WeekRange(AContext, Selection.Week);
    const TRangeOptions Options{
        .WithChanges = AnOptions.WithChanges, .PublicOnly = AnOptions.PublicOnly, .Max = AnOptions.Max};
    TWalk Walk(AContext, Filter.Object, Options, AList);
    VisitAppointments(AContext, Filter,
                      [&](const TVELVeranstaltung& /*ALesson*/, TVELTermin& ATermin) { Walk.Run(ATermin, Range); });
  }
  SortDateTime(AList);
}

void GetBereichEintraege(const TPlanContext& AContext, TVELPlanobjekt* AnObject, const TRangeOptions& AnOptions,
                         TSeen& ASeen, TVELPlanEintragListe& AList, const TSpan& ARange) {
  const TLessonFilter Filter{.Object = AnObject, .CoursesOnly = AnOptions.CoursesOnly};
  TWalk Walk(AContext, AnObject, AnOptions, AList);
  VisitAppointments(AContext, Filter, [&](const TVELVeranstaltung& /*ALesson*/, TVELTermin& ATermin) {
    if (!ASeen.contains(&ATermin) && uDataUtils::OccursIn(AContext, ATermin, ARange)) {
      ASeen.insert(&ATermin);
      Walk.Run(ATermin, ARange);
    }
  });
  if (AnOptions.WithChanges && AnObject != nullptr) {
    TComing(AContext, *AnObject, AnOptions, ASeen, AList).Run(ARange);
  }
  SortDateTime(AList);
}

void GetVertretungen(const TPlanContext& AContext, TVELPlanobjekt* AnObject, std::uint8_t AMode, bool APublicOnly,
                     TVELPlanEintragListe& AList, const TSpan& ARange,
                     const std::function<bool(const TVELAenderung&)>& ATakes) {
  const TVELPlanobjekt* const Object = AnObject;
  uDataUtils::TSubstitutionFilter Filter{
      .Span = ARange, .PublishedOnly = APublicOnly, .WithAbsentClasses = true, .Mode = AMode, .Takes = ATakes};
  if (AnObject != nullptr) {
    Filter.Objects = std::span(&Object, 1);
  }
  const auto Make = [&](TVELAenderung& AChange) {
    if (AChange.Kind() == TChangeKind::AufsichtsVertretung) {
      return CreateChangeEintrag(AContext, AChange, AnObject, APublicOnly);
    }
    // As in the plan of an object, with the appointment that takes the place.
    TVELPlanEintragListe Made;
    CreateEintrag(AContext, AnObject, AChange.Termin(), APublicOnly, Made, {AChange.FStart, AChange.FEnde}, nullptr,
                  &AChange);
    return std::move(Made.Items().front());
  };
  std::unordered_map<const TVELAenderung*, std::unique_ptr<TVELPlaneintrag>> Substitutions;
  const auto HasObjects = [&](const TVELAenderung& AChange) {
    const auto& Entry = Substitutions[&AChange] = Make(const_cast<TVELAenderung&>(AChange));
    const auto AnyIn = [](const auto&... ALists) { return (!ALists.empty() || ...); };
    return AnyIn(Entry->FFehlendeFaecher, Entry->FFehlendeKlassen, Entry->FFehlendeLehrer, Entry->FFehlendeRaeume,
                 Entry->FNeueFaecher, Entry->FNeueKlassen, Entry->FNeueLehrer, Entry->FNeueRaeume);
  };
  for (TVELAenderung* const Change : uDataUtils::AllSubstitutions(AContext, Filter, HasObjects)) {
    const auto Made = Substitutions.find(Change);
    AList.Add(Made != Substitutions.end() ? std::move(Made->second) : Make(*Change));
  }
}

}  // namespace uPlaneintraege
