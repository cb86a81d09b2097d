#pragma once

#include "uPlandaten/Vertretungen.h"
#include "uPlandaten/Werte.h"

/// Which changes an OCF set tells.
namespace uOstrel {

/// What an export takes in.
struct TExportScope {
  bool OnlyScheduledCourses = true;
  bool OnlyScheduledLessons = true;
  TVELDate ValidFrom;  ///< changes that begin on an earlier day are left out

  bool OnlyScheduled() const { return OnlyScheduledCourses || OnlyScheduledLessons; }
  bool Covers(const TVELAenderung& AChange) const;
};

/// False for a change that is open, invalid, not public or without effect.
bool IsExportable(const TVELAenderung& AChange);

/// True for a change that is a lesson of its own and stands among the courses too: one that fills a gap with another
/// subject, or an additional lesson with a subject.
bool IsAdditionalLesson(const TVELAenderung& AChange);

/// What AMake answers for an exportable change as one of its own class; nothing for all others, messages among them.
template <class TRow, class TMake>
TRow RowOf(const TVELAenderung& AChange, const TMake& AMake) {
  if (!IsExportable(AChange)) {
    return {};
  }
  if (const auto* const Substitution = dynamic_cast<const TVELVertretung*>(&AChange)) {
    return AMake(*Substitution);
  }
  if (const auto* const RoomChange = dynamic_cast<const TVELRaumaenderung*>(&AChange)) {
    return AMake(*RoomChange);
  }
  if (const auto* const Additional = dynamic_cast<const TVELZusatzunterricht*>(&AChange)) {
    return AMake(*Additional);
  }
  return {};
}

}  // namespace uOstrel
