#pragma once

#include <vector>

#include "uDataUtils/SpanIndex.h"

class TVELAenderung;
class TVELFehlzeit;
class TVELKlasse;
class TVELPlan;
class TVELPlanobjekt;
class TVELTermin;
class TVELVeranstaltung;

/// Absences in time. Spans are half-open.
namespace uDataUtils {

class TPlanContext;

/// The absences of all that takes part in the timetable.
class TAbsences {
 public:
  explicit TAbsences(const TVELPlan& APlan);

  /// Calls AVisit with each absence of the object that overlaps the span, by start, until it answers true.
  template <class TVisit>
  void Visit(const TVELPlanobjekt& AnObject, const TSpan& ASpan, const TVisit& AVisit) const {
    FOfObject.Visit(&AnObject, ASpan.Finish, ASpan.Start,
                    [&](TVELFehlzeit* AnAbsence) { return OverlapsWith(*AnAbsence, ASpan) && AVisit(*AnAbsence); });
  }

 private:
  static bool OverlapsWith(const TVELFehlzeit& AnAbsence, const TSpan& ASpan);

  TSpanIndex<TVELFehlzeit*> FOfObject;
};

/// The absences of the object that overlap the span, by start. A class absence that is bound to another lesson than
/// ACourse, which may be null, does not count, nor does one by which a teacher is freed.
/// @param APublicOnly passes over those that are not public
std::vector<TVELFehlzeit*> FindFehlzeiten(const TPlanContext& AContext, const TVELPlanobjekt& AnObject,
                                          const TVELVeranstaltung* ACourse, bool APublicOnly, const TSpan& ASpan);
/// As above for the classes, teachers and rooms of an appointment, in this order; freed teachers count here.
std::vector<TVELFehlzeit*> FindFehlzeiten(const TPlanContext& AContext, const TVELTermin& ATermin, bool APublicOnly,
                                          const TSpan& ASpan);

/// The first absence of the object, public or not, that overlaps the span; null if there is none. That of a room
/// counts only if nothing at all may take place there.
TVELFehlzeit* HasAbsence(const TPlanContext& AContext, const TVELPlanobjekt& AnObject, const TVELVeranstaltung* ACourse,
                         const TSpan& ASpan);

/// True if the appointment has classes and each but the excluded one, which may be null, is absent from its lesson.
bool AllClassesAbsent(const TPlanContext& AContext, const TVELTermin& ATermin, const TVELKlasse* AnExcluded,
                      const TSpan& ASpan);
/// As above for a substitution or room change and its own span: the appointment that takes the place, else the one
/// that is changed. False for other changes.
bool AllClassesAbsent(const TPlanContext& AContext, const TVELAenderung& AChange,
                      const TVELKlasse* AnExcluded = nullptr);

}  // namespace uDataUtils
