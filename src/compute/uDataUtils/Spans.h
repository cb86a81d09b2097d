#pragma once

#include <cstdint>

#include "uPlandaten/Werte.h"

namespace uDataUtils {

/// A span of time from Start up to, but without, Finish; where a comment says "by date" both days belong to it.
struct TSpan {
  TVELDateTime Start;
  TVELDateTime Finish;

  friend bool operator==(const TSpan&, const TSpan&) = default;
};

/// True if the spans share a moment. Touching spans do not; a span without length is a moment, and lies in another one
/// from its start up to, but without, its finish.
bool Overlap(const TSpan& A, const TSpan& B);
/// As Overlap for the times of day, in hours and minutes; a finish at midnight is the end of the day.
bool TimeOverlap(const TSpan& A, const TSpan& B);
/// True if the spans share a day; the days of start and finish belong to a span.
bool DateOverlap(const TSpan& A, const TSpan& B);

/// The finish; a day later if it is midnight at the begin of the start's own day.
TVELDateTime Fix24(TVELDateTime AFinish, TVELDateTime AStart);
/// The Monday of the date's week, without time of day.
TVELDate MondayOf(TVELDateTime ADate);
/// The date without its time of day.
TVELDate DayOf(TVELDateTime ADate);
/// The time of day, as a fraction of a day.
TVELTime TimeOf(TVELDateTime ADate);
/// Milliseconds since 1899-12-30. Times are compared in them: one that two sums tell may differ in its last bits.
std::int64_t Milliseconds(TVELDateTime ADate);

}  // namespace uDataUtils
