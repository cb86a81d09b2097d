#include "uDataUtils/Context.h"

#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Plan.h"

namespace uDataUtils {

TPlanContext::TPlanContext(const TVELPlan& APlan, TVELDate AToday)
    : FPlan(APlan),
      FToday(AToday),
      FFirstMonday(MondayOf(APlan.FEinstellungen->FStundenplanZeitraumVon)),
      FLastMonday(MondayOf(APlan.FEinstellungen->FStundenplanZeitraumBis)),
      FListStart(APlan) {}

TPlanContext::TLastPublicDay::TLastPublicDay(const TPlanContext& AContext)
    : Day(MoveSchoolDays(AContext, AContext.Plan().FEinstellungen->FPublishDaysScope, AContext.Today(),
                         AContext.Today())) {}

}  // namespace uDataUtils
