#pragma once

#include "uPlandaten/Werte.h"

class TVELAenderung;
class TVELVertretung;

/// What of a plan is shown to the public.
namespace uDataUtils {

class TPlanContext;

/// True if the date is shown: always, unless changes are released one by one for a number of school days ahead of
/// the context's day; then up to the last of these.
bool InPublishWindow(const TPlanContext& AContext, TVELDate ADate);

/// True for a substitution that nobody has seen to: of status open, and its classes are not all absent.
bool IsOpen(const TPlanContext& AContext, const TVELAenderung& AChange);
/// True for a substitution that puts nothing in the place of its lesson and takes nobody away: it has no feature, no
/// other appointment, no new subject or object, and misses no teacher of the timetable.
bool ChangesNothing(const TVELVertretung& ASubstitution);
/// True for a substitution that changes nothing and gives no reason for that: its classes are not all absent.
bool HasNoEffect(const TPlanContext& AContext, const TVELVertretung& ASubstitution);
/// True if the public may see the change. Null, a plan as it stands, is public.
bool IsPublished(const TPlanContext& AContext, const TVELAenderung* AChange);

}  // namespace uDataUtils
