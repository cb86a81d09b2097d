#pragma once

#include <bit>
#include <cstdint>

#include "Random.h"

namespace SchoolGenerator {

inline constexpr int DaysAWeek = 5;
inline constexpr int RowsADay = 10;

/// A row of the standard time frame on a day of the week; both count from 0.
struct TSlot {
  int Day = 0;
  int Row = 0;
};

/// A set of slots, say those in which a teacher is taken.
class TWeek {
 public:
  static TWeek Of(const TSlot& ASlot, int ARows = 1) {
    TWeek Week;
    for (int I = 0; I < ARows; ++I) {
      Week.FBits |= std::uint64_t{1} << (ASlot.Day * RowsADay + ASlot.Row + I);
    }
    return Week;
  }
  /// The given rows of every day.
  template <class TRows>
  static TWeek OfRows(const TRows& ARows) {
    TWeek Week;
    for (int Day = 0; Day < DaysAWeek; ++Day) {
      for (const int Row : ARows) {
        Week |= Of({Day, Row});
      }
    }
    return Week;
  }

  bool IsEmpty() const { return FBits == 0; }
  bool Meets(const TWeek& AnOther) const { return (FBits & AnOther.FBits) != 0; }
  TWeek& operator|=(const TWeek& AnOther) {
    FBits |= AnOther.FBits;
    return *this;
  }
  TWeek Without(const TWeek& AnOther) const {
    TWeek Week;
    Week.FBits = FBits & ~AnOther.FBits;
    return Week;
  }
  /// The slots whose next row is in the set too.
  TWeek FirstsOfPairs() const {
    TWeek Week;
    Week.FBits = FBits & (FBits >> 1);
    return Week;
  }
  /// Any slot of a set that is not empty.
  TSlot Pick(TRandom& ARandom) const {
    std::uint64_t Bits = FBits;
    for (int Skip = ARandom.Below(std::popcount(FBits)); Skip > 0; --Skip) {
      Bits &= Bits - 1;
    }
    const int Place = std::countr_zero(Bits);
    return {Place / RowsADay, Place % RowsADay};
  }

 private:
  std::uint64_t FBits = 0;
};

}  // namespace SchoolGenerator
