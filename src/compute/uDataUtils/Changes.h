#pragma once

#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "uDataUtils/SpanIndex.h"

class TVELAbstrakterTermin;
class TVELAenderung;
class TVELPlan;
class TVELPlanobjekt;
class TVELTermin;
class TVELVertretung;
class TVELZuweisung;

/// Changes in time. The plan's list runs from the newest to the oldest; forward and back mean time here.
namespace uDataUtils {

class TPlanContext;

/// True if the changed lesson takes place elsewhere.
bool MovesAway(const TVELVertretung& ASubstitution);

/// The changes and assignments of a plan by the appointments and supervisions on which they hang.
class TChanges {
 public:
  explicit TChanges(const TVELPlan& APlan);

  /// The changes of the appointment or supervision that overlap the span, forward in time.
  std::vector<TVELAenderung*> Of(const TVELAbstrakterTermin& ASlot, const TSpan& ASpan) const;
  /// True if one of them moves the appointment away.
  bool MoveAway(const TVELAbstrakterTermin& ASlot, const TSpan& ASpan) const;
  /// Its assignments that overlap the span, forward in time.
  std::vector<TVELZuweisung*> Assignments(const TVELAbstrakterTermin& ASlot, const TSpan& ASpan) const;

 private:
  TSpanIndex<TVELAenderung*> FOfSlot;
  TSpanIndex<TVELAenderung*> FMovingAway;
  TSpanIndex<TVELZuweisung*> FAssignments;
};

/// The changes and assignments of a plan by the objects that they concern.
///
/// A change concerns those that it names as new or, by its kind, as missing or original; a message to all concerns all
/// of the object's kind. A substitution also concerns those who take part in the changed appointment, or in the one
/// that takes its place; one of a supervision only the teacher who comes in.
class TConcerns {
 public:
  explicit TConcerns(const TPlanContext& AContext);

  /// The places in FAenderungen of the changes that concern the object and overlap the span, forward in time.
  std::vector<int> Of(const TVELPlanobjekt& AnObject, const TSpan& ASpan) const;
  /// As Of, but without those that concern the object for nothing but its part in the changed appointment.
  std::vector<int> Elsewhere(const TVELPlanobjekt& AnObject, const TSpan& ASpan) const;
  /// The assignments whose new objects hold this one and that overlap the span, forward in time.
  std::vector<TVELZuweisung*> Assignments(const TVELPlanobjekt& AnObject, const TSpan& ASpan) const;

 private:
  struct TChange {
    TVELAenderung* Change;
    int Place;
  };

  using TIndex = TSpanIndex<TChange>;

  static void Add(std::vector<int>& AFound, const TIndex& AnIndex, const void* AKey, const TSpan& ASpan);
  std::vector<int> Find(const TVELPlanobjekt& AnObject, const TSpan& ASpan,
                        std::span<const TIndex* const> AnOfAppointments) const;

  const TPlanContext& FContext;
  TIndex FOfObject;  ///< messages to all stand under the class of the objects
  TIndex
      FOfAppointment;  ///< substitutions by the changed appointment, as the next ones by the one that takes its place
  TIndex FOfOther;
  TSpanIndex<TVELZuweisung*> FAssignments;
};

/// Where a walk over the changes of a span begins: the place in FAenderungen of the first in time of a run of changes
/// that overlap the span; -1 if there is none. Found by halves.
int FindAenderung(const TVELPlan& APlan, const TSpan& ASpan);
/// As FindAenderung for lists: a substitution that frees somebody is no end of a run, so where the search hits one the
/// walk back ends there.
int FindAenderungForList(const TVELPlan& APlan, const TSpan& ASpan);

/// Where the last list began: the search walks over all changes of the span, and the lists of many objects ask for one.
class TListStart {
 public:
  explicit TListStart(const TVELPlan& APlan) : FPlan(APlan) {}

  /// FindAenderungForList.
  int Find(const TSpan& ASpan) const;

 private:
  const TVELPlan& FPlan;
  mutable std::mutex FMutex;
  mutable std::optional<TSpan> FSpan;
  mutable int FPlace = -1;
};

/// The changes that overlap the span, forward in time from the place that one of the two above found.
std::vector<TVELAenderung*> ChangesFrom(const TVELPlan& APlan, int AnIndex, const TSpan& ASpan);
/// Those of them that concern one of the objects at least.
std::vector<TVELAenderung*> ChangesFrom(const TPlanContext& AContext, int AnIndex, const TSpan& ASpan,
                                        std::span<const TVELPlanobjekt* const> AnObjects);

/// The changes of a span that belong into the plan of an object and are not changes of its own lessons: lessons that
/// come to it, messages, assignments.
std::vector<TVELAenderung*> SelectChanges(const TPlanContext& AContext, const TVELPlanobjekt& AnObject,
                                          const TSpan& ASpan);

}  // namespace uDataUtils
