#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

#include "QuillonTypes.h"

/// An impossible duration, or an argument of date arithmetic that is out of range.
class EQuillonDateTimeError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

enum TQuillonTimeSpanFormat {
  tsfInterval,   ///< the largest unit only: "3 Tage", "1 Stunde"; nothing for an empty span
  tsfMinSec,     ///< "hh:mm:ss", or "d.hh:mm:ss"
  tsfMinSecMSec  ///< as tsfMinSec with ":" and the milliseconds, two digits at least
};

/// A duration in whole milliseconds, never negative.
struct TQuillonTimeSpan {
  static constexpr std::int64_t MillisecondsPerSecond = 1'000;
  static constexpr std::int64_t MillisecondsPerMinute = 60'000;
  static constexpr std::int64_t MillisecondsPerHour = 3'600'000;
  static constexpr std::int64_t MillisecondsPerDay = 86'400'000;

  std::uint64_t FValue = 0;  ///< milliseconds

  constexpr TQuillonTimeSpan() = default;
  constexpr explicit TQuillonTimeSpan(std::uint64_t AMilliseconds) : FValue(AMilliseconds) {}
  constexpr explicit operator std::uint64_t() const { return FValue; }

  /// The leading unit may have any size, the others stay within their clock: 23, 59, 59, 999.
  /// @throws EQuillonDateTimeError "Argument is out of range."
  static TQuillonTimeSpan Create(std::int64_t ADays, int AHours, int AMinutes, int ASeconds, int AMilliseconds);
  static TQuillonTimeSpan Create(std::int64_t AHours, int AMinutes, int ASeconds, int AMilliseconds);
  static TQuillonTimeSpan Create(std::int64_t AMinutes, int ASeconds, int AMilliseconds);
  static TQuillonTimeSpan Create(std::int64_t ASeconds, int AMilliseconds);

  /// The span with an amount of either sign added.
  /// @throws EQuillonDateTimeError "Dauer ist ungültig." where the sum is negative
  [[nodiscard]] TQuillonTimeSpan AddMilliseconds(std::int64_t ACount) const;
  [[nodiscard]] TQuillonTimeSpan AddSeconds(std::int64_t ACount) const;
  [[nodiscard]] TQuillonTimeSpan AddMinutes(std::int64_t ACount) const;
  [[nodiscard]] TQuillonTimeSpan AddHours(std::int64_t ACount) const;
  [[nodiscard]] TQuillonTimeSpan AddDays(std::int64_t ACount) const;

  std::string ToString(TQuillonTimeSpanFormat AFormat) const;

  /// Reads what ToString writes: a number and a unit's word, or the form with colons; the milliseconds may be
  /// missing there. Text behind is left alone: of "5 Sekunden" the last letter.
  /// @return false, and ASpan untouched, for any other text
  static bool FromString(std::string_view AText, TQuillonTimeSpan& ASpan);

  friend TQuillonTimeSpan operator+(TQuillonTimeSpan A, TQuillonTimeSpan B);
  /// @throws EQuillonDateTimeError "Dauer ist ungültig." where B is the longer one
  friend TQuillonTimeSpan operator-(TQuillonTimeSpan A, TQuillonTimeSpan B);
  friend constexpr auto operator<=>(const TQuillonTimeSpan&, const TQuillonTimeSpan&) = default;
};

inline constexpr TQuillonTimeSpan DefaultTimeSpan{};
