#pragma once

namespace uDataUtils {
class TPlanContext;
}
class TVELPlanEintragListe;

/// The orders of entries. All ascending; texts without regard to the case of a to z, times to the millisecond.
/// Entries that are equal in all keys stand as the library's quicksort leaves them.
namespace uPlaneintraege {

using uDataUtils::TPlanContext;

/// Date and time, weeks of the lesson, column, classes, subject, teachers, rooms.
void SortDateTime(TVELPlanEintragListe& AList);
/// As SortDateTime by the time of day.
void SortDay(TVELPlanEintragListe& AList);
/// Day, classes, time of day.
void SortTagKlasseZeit(TVELPlanEintragListe& AList);
/// Day, new teachers, teachers, time of day.
void SortTagLehrerZeit(TVELPlanEintragListe& AList);
/// Place of the first class in the plan, classes, date and time.
void SortKlasseDateTime(const TPlanContext& AContext, TVELPlanEintragListe& AList);
/// Abbreviation of the lesson's subject.
void SortFach(TVELPlanEintragListe& AList);
/// New teachers, or else teachers; date and time.
void SortVertreterDateTime(TVELPlanEintragListe& AList);
/// Area, date and time, teacher; area and teacher count between supervisions only.
void SortAufsichtWochentagZeit(TVELPlanEintragListe& AList);

}  // namespace uPlaneintraege
