#include "uPlandaten/Aufsichten.h"

#include <algorithm>
#include <ranges>

#include "uDataUtils/Absences.h"
#include "uDataUtils/Context.h"
#include "uDataUtils/Publishing.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlaneintraege/Eintraege.h"
#include "uPlaneintraege/Mengen.h"

namespace uPlaneintraege {

namespace {

constexpr int DaysPerWeek = 7;

/// Adds the dates of supervisions.
class TSupervisions {
 public:
  TSupervisions(const TPlanContext& AContext, std::uint8_t AMode, bool APublicOnly, TVELPlanEintragListe& AList,
                const TSpan& ARange)
      : FContext(AContext),
        FTakesAll(AMode == smEvery || AMode == smEveryDate),
        FPublicOnly(APublicOnly),
        FList(AList),
        FRange(ARange) {}

  void Run(const TVELAufsichtsliste& ASupervisions, TVELLehrer* APlanObject) {
    for (TVELAufsicht* const Supervision : ASupervisions) {
      if (Supervision != nullptr) {
        Run(*Supervision, APlanObject);
      }
    }
  }

  /// Those in which the teacher stands in.
  void RunStandIns(TVELLehrer& ATeacher) {
    for (const int Place : FContext.Concerns().Of(ATeacher, FRange)) {
      TVELAenderung* const Change = FContext.Plan().FAenderungen.GetItem(Place);
      if (Change->Kind() == TChangeKind::AufsichtsVertretung && Change->Aufsicht() != nullptr && IsShown(Change)) {
        Add(*Change->Aufsicht(), &ATeacher, {Change->FStart, Change->FEnde}, Change);
      }
    }
  }

 private:
  void Run(TVELAufsicht& ASupervision, TVELLehrer* APlanObject) {
    TVELDateTime Cursor = FRange.Start;
    while (Cursor < FRange.Finish) {
      const auto Found =
          uDataUtils::NextOccurrence(FContext, APlanObject, ASupervision, velNoDay, {Cursor, FRange.Finish});
      if (!Found) {
        return;
      }
      TVELAenderung* const Change = ChangeOf(ASupervision, *Found);
      if (IsShown(Change) && (FTakesAll || Change != nullptr)) {
        Add(ASupervision, APlanObject, *Found, Change);
      }
      if (!ASupervision.Reoccur()) {
        return;
      }
      Cursor = Found->Start + DaysPerWeek;
    }
  }

  TVELAenderung* ChangeOf(const TVELAufsicht& ASupervision, const TSpan& ASpan) const {
    const auto Changes = FContext.Changes().Of(ASupervision, ASpan);
    const auto Found = std::ranges::find(Changes, TChangeKind::AufsichtsVertretung, &TVELAenderung::Kind);
    return Found != Changes.end() ? *Found : nullptr;
  }

  bool IsShown(const TVELAenderung* AChange) const {
    return !FPublicOnly || uDataUtils::IsPublished(FContext, AChange);
  }

  void Add(TVELAufsicht& ASupervision, TVELLehrer* APlanObject, const TSpan& ASpan, TVELAenderung* AChange) {
    TVELPlaneintrag& Entry = FList.Add();
    Entry.FAufsicht = &ASupervision;
    Entry.FPlanobjekt = APlanObject;
    Entry.FStart = ASpan.Start;
    Entry.FFinish = ASpan.Finish;
    TVELLehrer* const Teacher = ASupervision.FLehrer;
    Join(Entry.FLehrer, Teacher);
    if (AChange != nullptr) {
      Entry.FAenderungen.push_back(AChange);
      Entry.FModified = AChange->FModified;
      Join(Entry.FNeueLehrer, AChange->As<TVELAufsichtsVertretung>()->Lehrer());
      Join(Entry.FFehlendeLehrer, Teacher);
      Join(Entry.FFehlzeiten, AChange->FFehlzeit);
    } else if (Teacher != nullptr) {
      Entry.FFehlzeiten = uDataUtils::FindFehlzeiten(FContext, *Teacher, nullptr, FPublicOnly, ASpan);
      if (!Entry.FFehlzeiten.empty()) {
        Entry.FFehlendeLehrer.push_back(Teacher);
        Entry.FModified = Entry.FFehlzeiten.front()->FModified;
      }
    }
    Entry.FMissing = !Entry.FFehlendeLehrer.empty();
    Entry.FChanges = AChange != nullptr || Entry.FMissing;
  }

  const TPlanContext& FContext;
  bool FTakesAll;
  bool FPublicOnly;
  TVELPlanEintragListe& FList;
  TSpan FRange;
};

}  // namespace

void GetAufsichtEintraege(const TPlanContext& AContext, TVELLehrer& ATeacher, std::uint8_t AMode, bool APublicOnly,
                          TVELPlanEintragListe& AList, const TSpan& ARange) {
  TSupervisions Supervisions(AContext, AMode, APublicOnly, AList, ARange);
  Supervisions.Run(ATeacher.FAufsichten, &ATeacher);
  Supervisions.RunStandIns(ATeacher);
}

void GetBereichAufsichten(const TPlanContext& AContext, const TVELAufsichtsbereich& AnArea, std::uint8_t AMode,
                          bool APublicOnly, TVELPlanEintragListe& AList, const TSpan& ARange) {
  TSupervisions(AContext, AMode, APublicOnly, AList, ARange).Run(AnArea.FAufsichten, nullptr);
}

void GetAlleAufsichten(const TPlanContext& AContext, std::uint8_t AMode, bool APublicOnly, TVELPlanEintragListe& AList,
                       const TSpan& ARange) {
  for (const TVELAufsichtsbereich* const Area : AContext.Plan().FAufsichtsbereiche) {
    if (Area != nullptr) {
      GetBereichAufsichten(AContext, *Area, AMode, APublicOnly, AList, ARange);
    }
  }
}

}  // namespace uPlaneintraege
