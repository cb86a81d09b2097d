#include "QuillonDateTimeFormat.h"

#include <algorithm>
#include <cstddef>

#include "QuillonDateTime.h"
#include "QuillonNumbers.h"
#include "QuillonText.h"

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

class TextScanner {
 public:
  explicit TextScanner(std::string_view AText) : FText(AText), FLeft(AText) { PassBlanks(); }

  void PassBlanks() { FLeft.remove_prefix(std::min(FLeft.find_first_not_of(' '), FLeft.size())); }
  bool IsAtEnd() const { return FLeft.empty(); }

  bool TryPass(char AChar) {
    if (!FLeft.starts_with(AChar)) {
      return false;
    }
    FLeft.remove_prefix(1);
    return true;
  }

  void Pass(char AChar) {
    if (!TryPass(AChar)) {
      Fail();
    }
  }

  /// @param ADigits set to the digits that were there
  int Number(std::size_t& ADigits) {
    constexpr std::size_t MostDigits = 4;
    ADigits = std::min(FLeft.find_first_not_of("0123456789"), FLeft.size());
    if (ADigits == 0 || ADigits > MostDigits) {
      Fail();
    }
    const auto Value = QuillonNumbers::ParseInteger(FLeft.substr(0, ADigits), 0, 9999);
    FLeft.remove_prefix(ADigits);
    return static_cast<int>(Value);
  }

  int Number() {
    std::size_t Digits = 0;
    return Number(Digits);
  }

  [[noreturn]] void Fail() const {
    throw EQuillonConvertError(QuillonText::Quoted(FText) + " ist kein gültiger Zeitpunkt.");
  }

 private:
  std::string_view FText;
  std::string_view FLeft;
};

int FullYear(int AYear) {
  constexpr int Window = 50;
  const int First = QuillonDateTime::Decode(QuillonDateTime::Now()).Year - Window;
  const int Year = First - First % 100 + AYear;
  return Year < First ? Year + 100 : Year;
}

void ScanDate(TextScanner& AScanner, TQuillonDateTimeFields& AFields, const TQuillonFormatSettings& ASettings) {
  Pieces Format(ASettings.ShortDateFormat);
  while (Format.Next()) {
    switch (Format.Kind()) {
      case 'd':
        AFields.Day = AScanner.Number();
        break;
      case 'm':
        AFields.Month = AScanner.Number();
        break;
      case 'y': {
        std::size_t Digits = 0;
        AFields.Year = AScanner.Number(Digits);
        AFields.Year = Digits <= 2 ? FullYear(AFields.Year) : AFields.Year;
        break;
      }
      case '/':
        AScanner.Pass(ASettings.DateSeparator);
        break;
      default:
        for (const char C : Format.Text()) {
          AScanner.Pass(C);
        }
    }
  }
}

void ScanTime(TextScanner& AScanner, TQuillonDateTimeFields& AFields, char ASeparator) {
  AFields.Hour = AScanner.Number();
  AScanner.Pass(ASeparator);
  AFields.Minute = AScanner.Number();
  if (AScanner.TryPass(ASeparator)) {
    AFields.Second = AScanner.Number();
    if (AScanner.TryPass('.')) {
      AFields.Millisecond = AScanner.Number();
    }
  }
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
  TextScanner Scanner(AText);
  TQuillonDateTimeFields Fields;
  ScanDate(Scanner, Fields, ASettings);
  if (Scanner.TryPass(' ')) {
    Scanner.PassBlanks();
    if (!Scanner.IsAtEnd()) {
      ScanTime(Scanner, Fields, ASettings.TimeSeparator);
      Scanner.PassBlanks();
    }
  }
  if (!Scanner.IsAtEnd()) {
    Scanner.Fail();
  }
  return QuillonDateTime::Encode(Fields);
}

}  // namespace QuillonDateTimeFormat
