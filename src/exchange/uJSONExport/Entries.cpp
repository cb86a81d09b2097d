#include <algorithm>
#include <functional>

#include "uDataUtils/Substitutions.h"
#include "uJSONExport/Run.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlaneintraege/Ordnungen.h"

namespace uJSONExport {

namespace {

/// What an entry is of, and when.
struct TKey {
  const void* What;
  std::int64_t Start;
  std::int64_t Finish;

  friend bool operator==(const TKey&, const TKey&) = default;
};

struct TKeyHash {
  std::size_t operator()(const TKey& AKey) const {
    return std::hash<const void*>()(AKey.What) ^ std::hash<std::int64_t>()(AKey.Start);
  }
};

class TCollector {
 public:
  explicit TCollector(TRun& ARun) : FRun(ARun), FExport(ARun.Export) {}

  /// @param AClassPass only the lessons of a student's whole class
  void Add(TVELPlanobjekt& AnObject, bool AClassPass) {
    TVELPlanEintragListe Found;
    Find(AnObject, AClassPass, Found);
    for (auto& Entry : Found.Items()) {
      Take(std::move(Entry), AClassPass);
    }
  }

 private:
  void Find(TVELPlanobjekt& AnObject, bool AClassPass, TVELPlanEintragListe& AFound) {
    if (FExport.AlleWochen) {
      uPlaneintraege::GetWochenEintraege(FRun.Context, &AnObject,
                                         {.CoursesOnly = AClassPass, .PublicOnly = true, .Seen = &FExport.Log}, AFound);
    } else if (FRun.Has(xmlLessons)) {
      const uPlaneintraege::TRangeOptions Options{
          .WithChanges = FRun.Has(xmlChanges), .PublicOnly = true, .Merge = true, .CoursesOnly = AClassPass};
      uPlaneintraege::GetBereichEintraege(FRun.Context, &AnObject, Options, FExport.Log, AFound, FRun.Range());
    } else if (FExport.AllSubstitutions && FRun.Has(xmlChanges)) {
      FindSubstitutions(AnObject, AClassPass, AFound);
    }
  }

  void FindSubstitutions(TVELPlanobjekt& AnObject, bool AClassPass, TVELPlanEintragListe& AFound) {
    const auto Takes = [&](const TVELAenderung& AChange) {
      const TVELTermin* const Termin = AChange.Termin();
      const bool IsOfCourse = Termin != nullptr && !Termin->Schueler().empty();
      return !(AClassPass && IsOfCourse) && FExport.Log.insert(&AChange).second;
    };
    uPlaneintraege::GetVertretungen(FRun.Context, &AnObject, uDataUtils::smAll, true, AFound, FRun.Range(), Takes);
  }

  void Take(std::unique_ptr<TVELPlaneintrag> AnEntry, bool AClassPass) {
    if (NamesUnavailable(AnEntry->FTermin)) {
      return;
    }
    if (const TVELVeranstaltung* const Lesson = AnEntry->Veranstaltung();
        Lesson != nullptr && !(AClassPass && !Lesson->FSchueler.IsEmpty())) {
      FExport.CourseList.insert(Lesson);
    }
    if (!FRun.Has(xmlLessons) &&
        !(FRun.Has(xmlChanges) && AnEntry->Geaendert() && ChangeType(FRun, *AnEntry) != NoLesson)) {
      return;
    }
    if (!IsNew(*AnEntry)) {
      return;
    }
    if (AnEntry->Geaendert() && !FExport.OffeneFehlzeiten && IsAbsenceOnly(*AnEntry)) {
      AnEntry->ResetAnderung();
      if (AnEntry->FTermin == nullptr) {
        return;
      }
    }
    FExport.PlaneintragListe.Add(std::move(AnEntry));
  }

  static bool NamesUnavailable(const TVELTermin* ATermin) {
    const auto Is = [](const TQuillonDataObject* AnObject) {
      return static_cast<const TVELPlanobjekt*>(AnObject)->FNichtVerfuegbar;
    };
    return ATermin != nullptr &&
           (std::ranges::any_of(ATermin->FLehrer.Items(), Is) || std::ranges::any_of(ATermin->Klassen(), Is) ||
            std::ranges::any_of(ATermin->FRaeume.Items(), Is));
  }

  bool IsNew(const TVELPlaneintrag& AnEntry) {
    const void* What = AnEntry.Aenderung();
    if (What == nullptr) {
      What = AnEntry.FTermin;
    }
    return What == nullptr ||
           FKeys.insert({What, uDataUtils::Milliseconds(AnEntry.FStart), uDataUtils::Milliseconds(AnEntry.FFinish)})
               .second;
  }

  static constexpr int NoLesson = 6;  ///< kind of change

  TRun& FRun;
  TVELJSONExport& FExport;
  std::unordered_set<TKey, TKeyHash> FKeys;
};

TVELDateTime EarliestStart(const TVELPlanEintragListe& AList) {
  TVELDateTime Earliest;
  for (const auto& Entry : AList.Items()) {
    if (Entry->FStart != 0 && (Earliest == 0 || Entry->FStart < Earliest)) {
      Earliest = Entry->FStart;
    }
  }
  return Earliest;
}

}  // namespace

void CollectEntries(TRun& ARun) {
  TVELJSONExport& Export = ARun.Export;
  Export.PlaneintragListe.Clear();
  Export.CourseList.clear();
  Export.Log.clear();
  ClearMarks(ARun.Plan);
  TCollector Collector(ARun);
  for (TVELPlanobjekt* Object : ARun.Objects) {
    Object->FTag = 1;
  }
  for (TVELPlanobjekt* Object : ARun.Objects.empty() ? AllObjects(ARun) : ARun.Objects) {
    Collector.Add(*Object, false);
    const auto* const Student = uDataObjects::As<TVELSchueler>(Object);
    if (Student != nullptr && Student->FKlasse != nullptr) {
      Collector.Add(*Student->FKlasse, true);
    }
  }
  uPlaneintraege::SortTagLehrerZeit(Export.PlaneintragListe);
  Export.PlanStart = EarliestStart(Export.PlaneintragListe);
}

std::vector<TVELDate> MessageDays(const TPlanContext& AContext, const TVELMitteilung& AMessage) {
  constexpr double MostDays = 56 * 7;  // of a timetable
  const TVELDate First = uDataUtils::DayOf(AMessage.FStart);
  const bool EndsAtMidnight = AMessage.FEnde == uDataUtils::DayOf(AMessage.FEnde);
  const TVELDate Last = uDataUtils::DayOf(AMessage.FEnde) - (EndsAtMidnight && !AMessage.Ganztaegig() ? 1 : 0);
  std::vector<TVELDate> Days =
      uDataUtils::SchoolDaysIn(AContext, First + 1, std::min<double>(Last, First + MostDays - 1));
  Days.insert(Days.begin(), First);
  return Days;
}

}  // namespace uJSONExport
