#pragma once

#include <vector>

#include "uDataUtils/Spans.h"

class TVELAenderung;
class TVELPlan;
class TVELPlanobjekt;
class TVELTermin;

/// Changes in time. The plan's list runs from the newest to the oldest; forward and back mean time here.
namespace uDataUtils {

/// Where a walk over the changes of a span begins: the place in FAenderungen of the first in time of a run of changes
/// that overlap the span; -1 if there is none. Found by halves.
int FindAenderung(const TVELPlan& APlan, const TSpan& ASpan);
/// As FindAenderung for lists: a substitution that frees somebody is no end of a run, so where the search hits one the
/// walk back ends there.
int FindAenderungForList(const TVELPlan& APlan, const TSpan& ASpan);

/// The changes that overlap the span, forward in time from the place that one of the two above found.
std::vector<TVELAenderung*> ChangesFrom(const TVELPlan& APlan, int AnIndex, const TSpan& ASpan);

/// True if the object is a class, a student or the subject of the lesson, or a teacher, room or resource of the
/// appointment.
bool TakesPart(const TVELTermin& ATermin, const TVELPlanobjekt& AnObject);
/// True if the change names the object as new or, by its kind, as missing or original, or is a message to all of the
/// object's kind. A substitution also concerns those who take part in the changed appointment, or in the one that takes
/// its place; one of a supervision only the teacher who comes in.
bool Concerns(const TVELAenderung& AChange, const TVELPlanobjekt& AnObject);
/// The changes of a span that belong into the plan of an object and are not changes of its own lessons: lessons that
/// come to it, messages, assignments.
std::vector<TVELAenderung*> SelectChanges(const TVELPlan& APlan, const TVELPlanobjekt& AnObject, const TSpan& ASpan);

}  // namespace uDataUtils
