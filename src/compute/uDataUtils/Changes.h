#pragma once

#include <span>
#include <vector>

#include "uDataUtils/SpanIndex.h"

class TVELAbstrakterTermin;
class TVELAenderung;
class TVELPlan;
class TVELPlanobjekt;
class TVELTermin;
class TVELZuweisung;

/// Changes in time. The plan's list runs from the newest to the oldest; forward and back mean time here.
namespace uDataUtils {

class TPlanContext;

/// The changes and assignments of a plan by the appointments and supervisions on which they hang.
class TChanges {
 public:
  explicit TChanges(const TVELPlan& APlan);

  /// The changes of the appointment or supervision that overlap the span, forward in time.
  std::vector<TVELAenderung*> Of(const TVELAbstrakterTermin& ASlot, const TSpan& ASpan) const;
  /// Its assignments that overlap the span, forward in time.
  std::vector<TVELZuweisung*> Assignments(const TVELAbstrakterTermin& ASlot, const TSpan& ASpan) const;

 private:
  TSpanIndex<TVELAenderung*> FOfSlot;
  TSpanIndex<TVELZuweisung*> FAssignments;
};

/// The changes and assignments of a plan by the objects that they concern.
///
/// A change concerns those that it names as new or, by its kind, as missing or original; a message to all concerns all
/// of the object's kind. A substitution also concerns those who take part in the changed appointment, or in the one
/// that takes its place; one of a supervision only the teacher who comes in.
class TConcerns {
 public:
  explicit TConcerns(const TVELPlan& APlan);

  /// The places in FAenderungen of the changes that concern the object and overlap the span, forward in time.
  std::vector<int> Of(const TVELPlanobjekt& AnObject, const TSpan& ASpan) const;
  /// The assignments whose new objects hold this one and that overlap the span, forward in time.
  std::vector<TVELZuweisung*> Assignments(const TVELPlanobjekt& AnObject, const TSpan& ASpan) const;

 private:
  struct TChange {
    TVELAenderung* Change;
    int Place;
  };

  TSpanIndex<TChange> FOfObject;  ///< messages to all stand under the class of the objects
  TSpanIndex<TVELZuweisung*> FAssignments;
};

/// Where a walk over the changes of a span begins: the place in FAenderungen of the first in time of a run of changes
/// that overlap the span; -1 if there is none. Found by halves.
int FindAenderung(const TVELPlan& APlan, const TSpan& ASpan);
/// As FindAenderung for lists: a substitution that frees somebody is no end of a run, so where the search hits one the
/// walk back ends there.
int FindAenderungForList(const TVELPlan& APlan, const TSpan& ASpan);

/// The changes that overlap the span, forward in time from the place that one of the two above found.
std::vector<TVELAenderung*> ChangesFrom(const TVELPlan& APlan, int AnIndex, const TSpan& ASpan);
/// Those of them that concern one of the objects at least.
std::vector<TVELAenderung*> ChangesFrom(const TPlanContext& AContext, int AnIndex, const TSpan& ASpan,
                                        std::span<const TVELPlanobjekt* const> AnObjects);

/// True if the object is a class, a student or the subject of the lesson, or a teacher, room or resource of the
/// appointment.
bool TakesPart(const TVELTermin& ATermin, const TVELPlanobjekt& AnObject);
/// The changes of a span that belong into the plan of an object and are not changes of its own lessons: lessons that
/// come to it, messages, assignments.
std::vector<TVELAenderung*> SelectChanges(const TPlanContext& AContext, const TVELPlanobjekt& AnObject,
                                          const TSpan& ASpan);

}  // namespace uDataUtils
