#include "QuillonDateTimeFormat.h"

#include <algorithm>
#include <cstddef>

#include "QuillonDateTime.h"
#include "QuillonNumbers.h"
#include "QuillonText.h"
#include "QuillonTextScanner.h"

namespace {

constexpr char AsciiLower(char AChar) {
  return AChar >= 'A' && AChar <= 'Z' ? static_cast<char>(AChar + ('a' - 'A')) : AChar;
}

/// A picture as a row of pieces: letters of one kind, a quoted text, or a single other character.
class Pieces {
 public:
  explicit Pieces(std::string_view AFormat) : FLeft(AFormat) {}

  bool Next() {
    if (FLeft.empty()) {
      return false;
    }
    FKind = AsciiLower(FLeft.front());
    FLength = 1;
    if (FKind == '"' || FKind == '\'') {
      const std::size_t End = std::min(FLeft.find(FLeft.front(), 1), FLeft.size());
      FText = FLeft.substr(1, End - 1);
      FLeft.remove_prefix(std::min(End + 1, FLeft.size()));
      return true;
    }
    if (std::string_view("dmyhnsz").find(FKind) != std::string_view::npos) {
      while (FLength < FLeft.size() && AsciiLower(FLeft[FLength]) == FKind) {
        ++FLength;
      }
    }
    FText = FLeft.substr(0, FLength);
    FLeft.remove_prefix(FLength);
    if (FKind == 'm' && FIsBehindHours) {
      FKind = 'n';
    }
    FIsBehindHours = FKind == 'h' || (FIsBehindHours && FKind == ':');
    return true;
  }

  char Kind() const { return FKind; }
  std::size_t Length() const { return FLength; }
  std::string_view Text() const { return FText; }

 private:
  std::string_view FLeft;
  std::string_view FText;
  char FKind = 0;
  std::size_t FLength = 0;
  bool FIsBehindHours = false;
};

void AppendNumber(std::string& ATarget, int AValue, std::size_t ADigits) {
  constexpr std::size_t MostDigits = 20;
  QuillonNumbers::AppendPadded(ATarget, AValue, static_cast<int>(std::min(ADigits, MostDigits)));
}

void AppendYear(std::string& ATarget, int AYear, std::size_t ALength) {
  if (ALength <= 2) {
    AppendNumber(ATarget, AYear % 100, 2);
  } else {
    AppendNumber(ATarget, AYear, std::max<std::size_t>(ALength, 4));
  }
}

/// A number for one or two letters, a name for more.
template <std::size_t Count>
void AppendNamed(std::string& ATarget, int AValue, std::size_t ALength, std::size_t AnIndex,
                 const std::array<std::string, Count>& AShortNames, const std::array<std::string, Count>& ALongNames) {
  if (ALength <= 2) {
    AppendNumber(ATarget, AValue, ALength);
  } else {
    ATarget.append(ALength == 3 ? AShortNames[AnIndex] : ALongNames[AnIndex]);
  }
}

/// Reads a number of 1 to 4 digits.
bool TryRead(TQuillonTextScanner& AScanner, int& ANumber) {
  constexpr std::size_t MostDigits = 4;
  const std::size_t Digits = AScanner.CountDigits();
  const auto Number = Digits <= MostDigits ? AScanner.Field(Digits) : std::nullopt;
  ANumber = Number.value_or(0);
  return Number.has_value();
}

int FullYear(int AYear) {
  constexpr int Window = 50;
  const int First = QuillonDateTime::Decode(QuillonDateTime::Now()).Year - Window;
  const int Year = First - First % 100 + AYear;
  return Year < First ? Year + 100 : Year;
}

bool TryReadYear(TQuillonTextScanner& AScanner, int& AYear) {
  const bool IsShort = AScanner.CountDigits() <= 2;
  if (!TryRead(AScanner, AYear)) {
    return false;
  }
  AYear = IsShort ? FullYear(AYear) : AYear;
  return true;
}

bool TryReadDate(TQuillonTextScanner& AScanner, TQuillonDateTimeFields& AFields,
                 const TQuillonFormatSettings& ASettings) {
  bool IsRead = true;
  for (Pieces Format(ASettings.ShortDateFormat); IsRead && Format.Next();) {
    switch (Format.Kind()) {
      case 'd':
        IsRead = TryRead(AScanner, AFields.Day);
        break;
      case 'm':
        IsRead = TryRead(AScanner, AFields.Month);
        break;
      case 'y':
        IsRead = TryReadYear(AScanner, AFields.Year);
        break;
      case '/':
        IsRead = AScanner.TryPass(ASettings.DateSeparator);
        break;
      default:
        IsRead = AScanner.TryPass(Format.Text());
    }
  }
  return IsRead;
}

bool TryReadTime(TQuillonTextScanner& AScanner, TQuillonDateTimeFields& AFields, char ASeparator) {
  return TryRead(AScanner, AFields.Hour) && AScanner.TryPass(ASeparator) && TryRead(AScanner, AFields.Minute) &&
         (!AScanner.TryPass(ASeparator) ||
          (TryRead(AScanner, AFields.Second) && (!AScanner.TryPass('.') || TryRead(AScanner, AFields.Millisecond))));
}

/// Reads a date, with or without a time behind it, and blanks around.
bool TryReadAll(TQuillonTextScanner AScanner, TQuillonDateTimeFields& AFields,
                const TQuillonFormatSettings& ASettings) {
  AScanner.PassBlanks();
  if (!TryReadDate(AScanner, AFields, ASettings)) {
    return false;
  }
  const bool HasBlank = AScanner.TryPass(' ');
  AScanner.PassBlanks();
  if (HasBlank && !AScanner.IsAtEnd() && !TryReadTime(AScanner, AFields, ASettings.TimeSeparator)) {
    return false;
  }
  AScanner.PassBlanks();
  return AScanner.IsAtEnd();
}

}  // namespace

namespace QuillonDateTimeFormat {

std::string Format(std::string_view AFormat, double AValue, const TQuillonFormatSettings& ASettings) {
  const TQuillonDateTimeFields Fields = QuillonDateTime::Decode(AValue);
  const auto DayOfWeek = static_cast<std::size_t>(QuillonDateTime::DayOfWeek(AValue) % 7);
  const auto Month = static_cast<std::size_t>(Fields.Month - 1);
  std::string Result;
  for (Pieces Format(AFormat); Format.Next();) {
    switch (Format.Kind()) {
      case 'd':
        AppendNamed(Result, Fields.Day, Format.Length(), DayOfWeek, ASettings.ShortDayNames, ASettings.LongDayNames);
        break;
      case 'm':
        AppendNamed(Result, Fields.Month, Format.Length(), Month, ASettings.ShortMonthNames, ASettings.LongMonthNames);
        break;
      case 'y':
        AppendYear(Result, Fields.Year, Format.Length());
        break;
      case 'h':
        AppendNumber(Result, Fields.Hour, Format.Length());
        break;
      case 'n':
        AppendNumber(Result, Fields.Minute, Format.Length());
        break;
      case 's':
        AppendNumber(Result, Fields.Second, Format.Length());
        break;
      case 'z':
        AppendNumber(Result, Fields.Millisecond, Format.Length());
        break;
      case '/':
        Result.push_back(ASettings.DateSeparator);
        break;
      case ':':
        Result.push_back(ASettings.TimeSeparator);
        break;
      default:
        Result.append(Format.Text());
    }
  }
  return Result;
}

double Parse(std::string_view AText, const TQuillonFormatSettings& ASettings) {
  TQuillonDateTimeFields Fields;
  if (!TryReadAll(TQuillonTextScanner(AText), Fields, ASettings)) {
    throw EQuillonConvertError(QuillonText::Quoted(AText) + " ist kein gültiger Zeitpunkt.");
  }
  return QuillonDateTime::Encode(Fields);
}

}  // namespace QuillonDateTimeFormat
