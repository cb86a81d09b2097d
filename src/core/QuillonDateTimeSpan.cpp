#include "QuillonDateTimeSpan.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>

#include "QuillonNumbers.h"
#include "QuillonTextScanner.h"

namespace {

struct Unit {
  std::int64_t Milliseconds;
  std::string_view Singular;
  std::string_view Plural;
};

constexpr std::array<Unit, 5> Units = {{
    {TQuillonTimeSpan::MillisecondsPerDay, "Tag", "Tage"},
    {TQuillonTimeSpan::MillisecondsPerHour, "Stunde", "Stunden"},
    {TQuillonTimeSpan::MillisecondsPerMinute, "Minute", "Minuten"},
    {TQuillonTimeSpan::MillisecondsPerSecond, "Sekunde", "Sekunden"},
    {1, "Millisekunde", "Millisekunden"},
}};

struct UnitWord {
  std::string_view Word;
  std::int64_t Milliseconds;
};

/// The words that are read. "Sekunden" is not among them: its last letter stays unread, as it ever did.
constexpr std::array<UnitWord, 9> UnitWords = {{
    {"Tage", TQuillonTimeSpan::MillisecondsPerDay},
    {"Tag", TQuillonTimeSpan::MillisecondsPerDay},
    {"Stunden", TQuillonTimeSpan::MillisecondsPerHour},
    {"Stunde", TQuillonTimeSpan::MillisecondsPerHour},
    {"Minuten", TQuillonTimeSpan::MillisecondsPerMinute},
    {"Minute", TQuillonTimeSpan::MillisecondsPerMinute},
    {"Sekunde", TQuillonTimeSpan::MillisecondsPerSecond},
    {"Millisekunden", 1},
    {"Millisekunde", 1},
}};

[[noreturn]] void ThrowOutOfRange() { throw EQuillonDateTimeError("Argument is out of range."); }
[[noreturn]] void ThrowInvalidSpan() { throw EQuillonDateTimeError("Dauer ist ungültig."); }

constexpr std::uint64_t LongestSpan = std::numeric_limits<std::uint64_t>::max();

/// ACount units of a leading unit and what follows it, nothing if that is more than a span can hold.
std::optional<TQuillonTimeSpan> TryMake(std::uint64_t ACount, std::int64_t AUnit, std::uint64_t ARest) {
  const auto Milliseconds = static_cast<std::uint64_t>(AUnit);
  if (ACount > (LongestSpan - ARest) / Milliseconds) {
    return std::nullopt;
  }
  return TQuillonTimeSpan(ACount * Milliseconds + ARest);
}

TQuillonTimeSpan Make(std::int64_t ACount, std::int64_t AUnit, std::int64_t ARest) {
  if (ACount < 0) {
    ThrowOutOfRange();
  }
  const auto Span = TryMake(static_cast<std::uint64_t>(ACount), AUnit, static_cast<std::uint64_t>(ARest));
  return Span ? *Span : (ThrowOutOfRange(), TQuillonTimeSpan());
}

/// Milliseconds of a unit that is not the leading one.
std::int64_t Part(int ACount, int ALimit, std::int64_t AUnit) {
  if (ACount < 0 || ACount >= ALimit) {
    ThrowOutOfRange();
  }
  return ACount * AUnit;
}

TQuillonTimeSpan Moved(TQuillonTimeSpan ASpan, std::int64_t ACount, std::int64_t AUnit) {
  if (ACount >= 0) {
    return ASpan + Make(ACount, AUnit, 0);
  }
  const auto Distance = TryMake(std::uint64_t{0} - static_cast<std::uint64_t>(ACount), AUnit, 0);
  return Distance ? ASpan - *Distance : (ThrowInvalidSpan(), TQuillonTimeSpan());
}

/// Reads ":" and the fields behind the hours. @return their milliseconds
std::optional<std::uint64_t> ScanBehindHours(TQuillonTextScanner& AScanner) {
  if (!AScanner.TryPass(":")) {
    return std::nullopt;
  }
  const auto Minutes = AScanner.NumberBelow(60);
  if (!Minutes || !AScanner.TryPass(":")) {
    return std::nullopt;
  }
  const auto Seconds = AScanner.NumberBelow(60);
  if (!Seconds) {
    return std::nullopt;
  }
  const auto Milliseconds = AScanner.TryPass(":") ? AScanner.NumberBelow(1000) : std::uint64_t{0};
  if (!Milliseconds) {
    return std::nullopt;
  }
  return *Minutes * 60'000 + *Seconds * 1'000 + *Milliseconds;
}

std::optional<TQuillonTimeSpan> Scan(std::string_view AText) {
  TQuillonTextScanner Text(AText);
  Text.PassBlanks();
  const auto First = Text.Number();
  if (!First) {
    return std::nullopt;
  }
  Text.PassBlanks();
  for (const auto& [Word, Milliseconds] : UnitWords) {
    if (Text.TryPass(Word)) {
      return TryMake(*First, Milliseconds, 0);
    }
  }
  const bool HasDays = Text.TryPass(".");
  const auto Hours = HasDays ? Text.NumberBelow(24) : First;
  const auto Rest = Hours ? ScanBehindHours(Text) : std::nullopt;
  if (!Rest) {
    return std::nullopt;
  }
  return HasDays ? TryMake(*First, TQuillonTimeSpan::MillisecondsPerDay,
                           *Hours * static_cast<std::uint64_t>(TQuillonTimeSpan::MillisecondsPerHour) + *Rest)
                 : TryMake(*Hours, TQuillonTimeSpan::MillisecondsPerHour, *Rest);
}

std::string LargestUnit(std::uint64_t AMilliseconds) {
  std::string Text;
  for (const auto& [Milliseconds, Singular, Plural] : Units) {
    const std::uint64_t Count = AMilliseconds / static_cast<std::uint64_t>(Milliseconds);
    if (Count > 0) {
      QuillonNumbers::AppendInteger(Text, Count);
      Text.append(" ").append(Count == 1 ? Singular : Plural);
      break;
    }
  }
  return Text;
}

}  // namespace

TQuillonTimeSpan TQuillonTimeSpan::Create(std::int64_t ADays, int AHours, int AMinutes, int ASeconds,
                                          int AMilliseconds) {
  return Make(ADays, MillisecondsPerDay,
              Part(AHours, 24, MillisecondsPerHour) + Part(AMinutes, 60, MillisecondsPerMinute) +
                  Part(ASeconds, 60, MillisecondsPerSecond) + Part(AMilliseconds, 1000, 1));
}

TQuillonTimeSpan TQuillonTimeSpan::Create(std::int64_t AHours, int AMinutes, int ASeconds, int AMilliseconds) {
  return Make(AHours, MillisecondsPerHour,
              Part(AMinutes, 60, MillisecondsPerMinute) + Part(ASeconds, 60, MillisecondsPerSecond) +
                  Part(AMilliseconds, 1000, 1));
}

TQuillonTimeSpan TQuillonTimeSpan::Create(std::int64_t AMinutes, int ASeconds, int AMilliseconds) {
  return Make(AMinutes, MillisecondsPerMinute,
              Part(ASeconds, 60, MillisecondsPerSecond) + Part(AMilliseconds, 1000, 1));
}

TQuillonTimeSpan TQuillonTimeSpan::Create(std::int64_t ASeconds, int AMilliseconds) {
  return Make(ASeconds, MillisecondsPerSecond, Part(AMilliseconds, 1000, 1));
}

TQuillonTimeSpan TQuillonTimeSpan::AddMilliseconds(std::int64_t ACount) const { return Moved(*this, ACount, 1); }

TQuillonTimeSpan TQuillonTimeSpan::AddSeconds(std::int64_t ACount) const {
  return Moved(*this, ACount, MillisecondsPerSecond);
}

TQuillonTimeSpan TQuillonTimeSpan::AddMinutes(std::int64_t ACount) const {
  return Moved(*this, ACount, MillisecondsPerMinute);
}

TQuillonTimeSpan TQuillonTimeSpan::AddHours(std::int64_t ACount) const {
  return Moved(*this, ACount, MillisecondsPerHour);
}

TQuillonTimeSpan TQuillonTimeSpan::AddDays(std::int64_t ACount) const {
  return Moved(*this, ACount, MillisecondsPerDay);
}

TQuillonTimeSpan operator+(TQuillonTimeSpan A, TQuillonTimeSpan B) {
  if (B.FValue > LongestSpan - A.FValue) {
    ThrowOutOfRange();
  }
  return TQuillonTimeSpan(A.FValue + B.FValue);
}

TQuillonTimeSpan operator-(TQuillonTimeSpan A, TQuillonTimeSpan B) {
  if (B.FValue > A.FValue) {
    ThrowInvalidSpan();
  }
  return TQuillonTimeSpan(A.FValue - B.FValue);
}

std::string TQuillonTimeSpan::ToString(TQuillonTimeSpanFormat AFormat) const {
  if (AFormat == tsfInterval) {
    return LargestUnit(FValue);
  }
  std::string Text;
  const auto AppendField = [&](std::int64_t AUnit, std::uint64_t ALimit) {
    const std::uint64_t Count = FValue / static_cast<std::uint64_t>(AUnit) % ALimit;
    QuillonNumbers::AppendPadded(Text, static_cast<std::int64_t>(Count), 2);
  };
  if (const std::uint64_t Days = FValue / static_cast<std::uint64_t>(MillisecondsPerDay); Days > 0) {
    QuillonNumbers::AppendInteger(Text, Days);
    Text.push_back('.');
  }
  AppendField(MillisecondsPerHour, 24);
  Text.push_back(':');
  AppendField(MillisecondsPerMinute, 60);
  Text.push_back(':');
  AppendField(MillisecondsPerSecond, 60);
  if (AFormat == tsfMinSecMSec) {
    Text.push_back(':');
    AppendField(1, 1000);
  }
  return Text;
}

bool TQuillonTimeSpan::FromString(std::string_view AText, TQuillonTimeSpan& ASpan) {
  const auto Span = Scan(AText);
  if (Span) {
    ASpan = *Span;
  }
  return Span.has_value();
}
