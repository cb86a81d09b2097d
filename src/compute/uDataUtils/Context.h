#pragma once

#include <atomic>
#include <mutex>
#include <optional>

#include "uDataUtils/Absences.h"
#include "uDataUtils/Changes.h"
#include "uDataUtils/Classes.h"
#include "uDataUtils/Occurrences.h"
#include "uDataUtils/Participants.h"
#include "uDataUtils/SchoolDays.h"
#include "uDataUtils/Spans.h"

class TVELPlan;

namespace uDataUtils {

/// A plan as one run sees it: made once, while the plan does not change. What a run asks over and over is found here in
/// constant or logarithmic time.
///
/// Each part is made by the first who asks for it; several threads may ask at once.
class TPlanContext {
 public:
  /// @param AToday for the window of publication
  TPlanContext(const TVELPlan& APlan, TVELDate AToday);

  const TVELPlan& Plan() const { return FPlan; }
  TVELDate Today() const { return FToday; }
  /// Mondays of the first and of the last week of the timetable.
  TVELDate FirstMonday() const { return FFirstMonday; }
  TVELDate LastMonday() const { return FLastMonday; }
  /// The last day of which changes are shown that are released one by one.
  TVELDate LastPublicDay() const { return FLastPublicDay.Get(*this).Day; }

  const TSchoolDays& SchoolDays() const { return FSchoolDays.Get(FPlan); }
  const TFreeEntries& FreeEntries() const { return FFreeEntries.Get(FPlan); }
  const TWindowParts& WindowParts() const { return FWindowParts.Get(FPlan); }
  const TAbsences& Absences() const { return FAbsences.Get(FPlan); }
  const TChanges& Changes() const { return FChanges.Get(FPlan); }
  const TParticipants& Participants() const { return FParticipants.Get(FPlan); }
  const TConcerns& Concerns() const { return FConcerns.Get(*this); }
  const TListStart& ListStart() const { return FListStart; }
  const TIntegratedClasses& IntegratedClasses() const { return FIntegratedClasses.Get(FPlan); }

 private:
  template <class T>
  class TPart {
   public:
    template <class TSource>
    const T& Get(const TSource& ASource) const {
      if (!FIsMade.load(std::memory_order_acquire)) {
        // What is thrown out of std::call_once passes the C library, which ends the process where memory is short.
        const std::scoped_lock Lock(FMaking);
        if (!FPart) {
          FPart.emplace(ASource);
          FIsMade.store(true, std::memory_order_release);
        }
      }
      return *FPart;
    }

   private:
    mutable std::mutex FMaking;
    mutable std::atomic<bool> FIsMade = false;
    mutable std::optional<T> FPart;
  };

  struct TLastPublicDay {
    explicit TLastPublicDay(const TPlanContext& AContext);

    TVELDate Day;
  };

  const TVELPlan& FPlan;
  TVELDate FToday;
  TVELDate FFirstMonday;
  TVELDate FLastMonday;
  TPart<TSchoolDays> FSchoolDays;
  TPart<TFreeEntries> FFreeEntries;
  TPart<TWindowParts> FWindowParts;
  TPart<TAbsences> FAbsences;
  TPart<TChanges> FChanges;
  TPart<TParticipants> FParticipants;
  TPart<TConcerns> FConcerns;
  TListStart FListStart;
  TPart<TIntegratedClasses> FIntegratedClasses;
  TPart<TLastPublicDay> FLastPublicDay;
};

}  // namespace uDataUtils
