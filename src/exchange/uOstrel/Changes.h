#pragma once

#include "uDataUtils/Context.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlandaten/Werte.h"

/// Which changes an OCF set tells.
namespace uOstrel {

/// What an export takes in.
struct TExportScope {
  const uDataUtils::TPlanContext& Plan;
  bool OnlyScheduledCourses = true;
  bool OnlyScheduledLessons = true;
  TVELDate ValidFrom;  ///< changes that begin on an earlier day are left out

  bool OnlyScheduled() const { return OnlyScheduledCourses || OnlyScheduledLessons; }
  bool Covers(const TVELAenderung& AChange) const;
};

/// False for a change that is open, invalid, not public or without effect.
bool IsExportable(const TVELAenderung& AChange, const TExportScope& AScope);

/// True for a change that is a lesson of its own and stands among the courses too: one that fills a gap with another
/// subject, or an additional lesson with a subject.
bool IsAdditionalLesson(const TVELAenderung& AChange);

/// What AMake(AChange, AScope) answers for an exportable change as one of its own class; nothing for all others,
/// messages among them.
template <class TRow, class TMake>
TRow RowOf(const TVELAenderung& AChange, const TExportScope& AScope, const TMake& AMake) {
  if (!IsExportable(AChange, AScope)) {
    return {};
  }
  switch (AChange.Kind()) {
    case TChangeKind::Vertretung:
      return AMake(static_cast<const TVELVertretung&>(AChange), AScope);
    case TChangeKind::Raumaenderung:
      return AMake(static_cast<const TVELRaumaenderung&>(AChange), AScope);
    case TChangeKind::Zusatzunterricht:
      return AMake(static_cast<const TVELZusatzunterricht&>(AChange), AScope);
    default:
      return {};
  }
}

}  // namespace uOstrel
