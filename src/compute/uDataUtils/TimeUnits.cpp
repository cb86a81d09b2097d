#include "uDataUtils/TimeUnits.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "uPlandaten/Zeitrahmen.h"

namespace uDataUtils {

namespace {

constexpr std::int64_t MinuteLength = 60000;
constexpr std::int64_t DayLength = MinuteLength * 60 * 24;

std::int64_t TimeOfDay(TVELDateTime ATime) { return Milliseconds(TimeOf(ATime)); }

TVELTime FromMilliseconds(std::int64_t ACount) { return static_cast<double>(ACount) / static_cast<double>(DayLength); }

struct TRow {
  std::int64_t Start;
  std::int64_t Finish;

  bool HasLength() const { return Start < Finish; }
};

/// A row's times; it may end at midnight, and one that ends ahead of its start has no length.
TRow RowTimes(const TVELZeitrahmenzeile& ARow) {
  const std::int64_t Start = TimeOfDay(ARow.FStart);
  const std::int64_t Finish = TimeOfDay(ARow.FEnde);
  return {Start, Finish == 0 && Start != 0 ? DayLength : std::max(Start, Finish)};
}

/// Units are whole minutes; so no row has more than a day has minutes.
std::int64_t UnitsPerRow(const TVELZeitrahmen& AFrame) {
  return std::clamp<std::int64_t>(AFrame.FEinheitenProStd, 1, DayLength / MinuteLength);
}

}  // namespace

int TimeUnitCount(const TVELZeitrahmen& AFrame) {
  return static_cast<int>(
      std::min<std::int64_t>(UnitsPerRow(AFrame) * AFrame.FZeilen.Count(), std::numeric_limits<int>::max()));
}

TSpan TimeUnit(const TVELZeitrahmen& AFrame, int AnIndex) {
  const std::int64_t Units = UnitsPerRow(AFrame);
  const TRow Row = RowTimes(*AFrame.FZeilen.GetItem(static_cast<int>(AnIndex / Units)));
  const std::int64_t Length = (Row.Finish - Row.Start) / MinuteLength / Units * MinuteLength;
  const std::int64_t Piece = AnIndex % Units;
  const std::int64_t Start = Row.Start + Piece * Length;
  return {FromMilliseconds(Start), FromMilliseconds(Piece + 1 < Units ? Start + Length : Row.Finish)};
}

// The units of a row leave no gap: only where rows begin and end is there a break.

TVELDateTime ApplyBreakRule(const TVELZeitrahmen& AFrame, TVELDateTime AnEnd) {
  if (!AFrame.FBookAdaptive) {
    return AnEnd;
  }
  const std::int64_t End = TimeOfDay(AnEnd);
  std::int64_t Latest = 0;
  for (const TVELZeitrahmenzeile* Line : AFrame.FZeilen) {
    const TRow Row = RowTimes(*Line);
    if (Row.Start < End && End <= Row.Finish) {
      return AnEnd;
    }
    if (Row.HasLength() && Row.Finish <= End) {
      Latest = std::max(Latest, Row.Finish);
    }
  }
  return Latest == 0 ? AnEnd : TVELDateTime(DayOf(AnEnd) + FromMilliseconds(Latest));
}

TVELDateTime SkipBreak(const TVELZeitrahmen& AFrame, TVELDateTime ATime) {
  const std::int64_t Time = TimeOfDay(ATime);
  bool EndsHere = false;
  std::int64_t Next = DayLength;
  for (const TVELZeitrahmenzeile* Line : AFrame.FZeilen) {
    const TRow Row = RowTimes(*Line);
    if (Row.HasLength()) {
      EndsHere = EndsHere || Row.Finish == Time;
      Next = Row.Start >= Time ? std::min(Next, Row.Start) : Next;
    }
  }
  return EndsHere && Next > Time && Next < DayLength ? TVELDateTime(DayOf(ATime) + FromMilliseconds(Next)) : ATime;
}

}  // namespace uDataUtils
