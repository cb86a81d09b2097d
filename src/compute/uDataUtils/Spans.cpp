#include "uDataUtils/Spans.h"

#include <cmath>

#include "QuillonDateTime.h"
#include "QuillonDateTimeCalendar.h"

namespace uDataUtils {

namespace {

constexpr int MinutesPerDay = 24 * 60;

int MinuteOfDay(TVELDateTime AValue) {
  const TQuillonDateTimeFields Fields = QuillonDateTime::Decode(AValue);
  return Fields.Hour * 60 + Fields.Minute;
}

}  // namespace

bool Overlap(const TSpan& A, const TSpan& B) {
  return (B.Start <= A.Start && A.Start < B.Finish) || (A.Start <= B.Start && B.Start < A.Finish);
}

bool TimeOverlap(const TSpan& A, const TSpan& B) {
  const auto Finish = [](const TSpan& ASpan) {
    const int Minute = MinuteOfDay(ASpan.Finish);
    return Minute == 0 ? MinutesPerDay : Minute;
  };
  const int StartA = MinuteOfDay(A.Start);
  const int StartB = MinuteOfDay(B.Start);
  return (StartB <= StartA && StartA < Finish(B)) || (StartA <= StartB && StartB < Finish(A));
}

bool DateOverlap(const TSpan& A, const TSpan& B) {
  return DayOf(A.Start) <= DayOf(B.Finish) && DayOf(B.Start) <= DayOf(A.Finish);
}

TVELDateTime Fix24(TVELDateTime AFinish, TVELDateTime AStart) {
  return AFinish == DayOf(AStart) ? TVELDateTime(AFinish + 1) : AFinish;
}

TVELDate MondayOf(TVELDateTime ADate) {
  const TVELDate Day = DayOf(ADate);
  return Day - (QuillonDateTime::DayOfWeek(Day) - 1);
}

TVELDate DayOf(TVELDateTime ADate) { return std::trunc(ADate); }

TVELTime TimeOf(TVELDateTime ADate) { return std::abs(ADate - std::trunc(ADate)); }

std::int64_t Milliseconds(TVELDateTime ADate) { return QuillonDateTimeCalendar::Split(ADate).Absolute(); }

}  // namespace uDataUtils
