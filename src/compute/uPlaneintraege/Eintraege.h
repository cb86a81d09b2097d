#pragma once

#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <unordered_set>

#include "uDataUtils/Spans.h"
#include "uPlaneintraege/Planeintrag.h"

class TVELAufsichtsbereich;
class TVELZeitraum;

namespace uDataUtils {
class TPlanContext;
}

/// What turns the timetable of an object into entries.
namespace uPlaneintraege {

using uDataUtils::TPlanContext;
using uDataUtils::TSpan;

/// Appointments and changes that are told already.
using TSeen = std::unordered_set<const void*>;

/// The largest limit; a week's plan with a larger one is empty.
inline constexpr int MaxEntries = 8000000;

/// Derives all lists of an entry from its appointment or supervision, its change and its assignment.
/// The first entry of a process that has two rooms is derived once more, with absences that are not public.
/// @param AWithAbsences looks for absences too
/// @param APublicOnly passes over absences that are not public
void BuildEintrag(const TPlanContext& AContext, TVELPlaneintrag& AnEntry, bool AWithAbsences, bool APublicOnly);

/// One dated entry, added to the list.
/// @param AnObject whose plan it is; may be null, as may all pointers
/// @param ASpan a start or finish without date takes that of the other
TVELPlaneintrag& CreateEintrag(const TPlanContext& AContext, TVELPlanobjekt* AnObject, TVELTermin* ATermin,
                               bool APublicOnly, TVELPlanEintragListe& AList, TSpan ASpan, TVELZuweisung* AnAssignment,
                               TVELAenderung* AChange);
/// An entry from a change alone.
std::unique_ptr<TVELPlaneintrag> CreateChangeEintrag(const TPlanContext& AContext, TVELAenderung& AChange,
                                                     TVELPlanobjekt* AnObject, bool APublicOnly = false);

/// True if the entry does not take place for the object, which may be null.
/// @param ASkipAbsences does not ask for absences of an object that is no class
/// @param ACheckClasses asks whether all classes are absent
bool IsShadow(const TPlanContext& AContext, const TVELPlanobjekt* AnObject, const TVELPlaneintrag& AnEntry,
              bool ASkipAbsences, bool ACheckClasses);

/// Whose lessons, and which of them: those of whole classes, and without ACoursesOnly those with students of their own,
/// of AStudent where one is given.
struct TLessonFilter {
  TVELPlanobjekt* Object = nullptr;  ///< null for all of the plan
  const TVELSchueler* Student = nullptr;
  bool CoursesOnly = false;
  TSeen* Seen = nullptr;  ///< appointments of more than 64 teachers and classes that are passed over; takes those told
};

/// One entry for each appointment: the timetable of all weeks. An appointment without occurrence has neither start nor
/// finish.
/// @param APeriod only lessons of this time window; null for all
/// @param ARange where given, recurring appointments must overlap it, and single ones lie in their validity
/// @param ADay only this weekday; velNoDay for all
void GetTerminEintraege(const TPlanContext& AContext, const TLessonFilter& AFilter, const TVELZeitraum* APeriod,
                        const std::optional<TSpan>& ARange, TVELDay ADay, int AMax, TVELPlanEintragListe& AList);

struct TWeekOptions {
  int Selector = 0;  ///< see uDataUtils::SelectWeek
  bool WithChanges = false;
  bool CoursesOnly = false;
  bool PublicOnly = false;
  int Max = MaxEntries;
  TSeen* Seen = nullptr;  ///< without a week, as that of TLessonFilter
};

/// The entries of a week, or without one as GetTerminEintraege; sorted by date and time. A student's are those lessons
/// of his class that are his.
void GetWochenEintraege(const TPlanContext& AContext, TVELPlanobjekt* AnObject, const TWeekOptions& AnOptions,
                        TVELPlanEintragListe& AList);

struct TRangeOptions {
  bool WithChanges = false;
  bool PublicOnly = false;
  bool StopAtFirstClean = false;  ///< an appointment ends with its first occurrence without changes
  bool Merge = false;             ///< occurrences without changes share one entry
  bool CoursesOnly = false;
  int Max = MaxEntries;
};

/// The entries of a range of dates; with changes also those that come to the object from elsewhere, assignments, and
/// for a student the messages of his class. The whole list is sorted by date and time.
/// @param ASeen appointments and changes that are passed over; takes those that are told
void GetBereichEintraege(const TPlanContext& AContext, TVELPlanobjekt* AnObject, const TRangeOptions& AnOptions,
                         TSeen& ASeen, TVELPlanEintragListe& AList, const TSpan& ARange);

/// The list of substitutions of an object, or of all for null, as entries in the order of time; also of lessons whose
/// classes are all absent.
/// @param AMode see uDataUtils::TSubstitutionMode
/// @param ATakes asked ahead of all else whether a change is to be told; none takes all
void GetVertretungen(const TPlanContext& AContext, TVELPlanobjekt* AnObject, std::uint8_t AMode, bool APublicOnly,
                     TVELPlanEintragListe& AList, const TSpan& ARange,
                     const std::function<bool(const TVELAenderung&)>& ATakes = {});

/// Which dates of a supervision are told.
enum TSupervisionMode : std::uint8_t { smEvery, smChangedOnly, smEveryDate };

/// The supervisions of a teacher in a range of dates, and behind them those in which the teacher stands in.
/// @param AMode a number above the last one counts as smChangedOnly
/// @param APublicOnly leaves out dates whose change is not public
void GetAufsichtEintraege(const TPlanContext& AContext, TVELLehrer& ATeacher, std::uint8_t AMode, bool APublicOnly,
                          TVELPlanEintragListe& AList, const TSpan& ARange);
/// Those of an area.
void GetBereichAufsichten(const TPlanContext& AContext, const TVELAufsichtsbereich& AnArea, std::uint8_t AMode,
                          bool APublicOnly, TVELPlanEintragListe& AList, const TSpan& ARange);
/// Those of all areas of the plan.
void GetAlleAufsichten(const TPlanContext& AContext, std::uint8_t AMode, bool APublicOnly, TVELPlanEintragListe& AList,
                       const TSpan& ARange);

}  // namespace uPlaneintraege
