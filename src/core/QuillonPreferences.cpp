#include "QuillonPreferences.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>
#include <limits>

#include "QuillonBase64.h"
#include "QuillonNumbers.h"
#include "QuillonText.h"
#include "platform/Preferences.h"

namespace {

/// The text of a value, converted.
template <class TValue, class TConvert>
TValue ReadAs(const TQuillonAbstractPreferences& APreferences, std::string_view AName, const TValue& ADefault,
              TConvert AConvert) {
  const std::string Text = APreferences.ReadString(AName);
  try {
    return Text.empty() ? ADefault : AConvert(Text);
  } catch (const EQuillonConvertError&) {
    return ADefault;
  }
}

constexpr std::size_t Decimals = 4;
constexpr std::int64_t CurrencyUnit = 10'000;

std::int64_t ParseCurrency(std::string_view AText) {
  constexpr std::string_view Digits = "0123456789";
  using TLimits = std::numeric_limits<std::int64_t>;
  const std::size_t Point = std::min(AText.find_first_of(".,"), AText.size());
  const std::string_view Fraction = AText.substr(std::min(Point + 1, AText.size()));
  if (Fraction.size() > Decimals || Fraction.find_first_not_of(Digits) != std::string_view::npos ||
      AText.find_first_of(Digits) == std::string_view::npos) {
    throw EQuillonConvertError("\"" + std::string(AText) + "\" ist kein Betrag.");
  }
  std::string Whole(AText.substr(0, Point));
  return QuillonNumbers::ParseInteger(Whole.append(Fraction).append(Decimals - Fraction.size(), '0'), TLimits::min(),
                                      TLimits::max());
}

std::string CurrencyText(std::int64_t AValue) {
  std::string Text = AValue < 0 ? "-" : "";
  QuillonNumbers::AppendInteger(Text, AValue < 0 ? -(AValue / CurrencyUnit) : AValue / CurrencyUnit);
  if (const std::int64_t Fraction = AValue % CurrencyUnit; Fraction != 0) {
    Text.push_back('.');
    QuillonNumbers::AppendPadded(Text, Fraction < 0 ? -Fraction : Fraction, Decimals);
    Text.resize(Text.find_last_not_of('0') + 1);
  }
  return Text;
}

}  // namespace

std::int32_t TQuillonAbstractPreferences::ReadInteger(std::string_view AName, std::int32_t ADefault) const {
  using TLimits = std::numeric_limits<std::int32_t>;
  return ReadAs(*this, AName, ADefault, [](const std::string& AText) {
    return static_cast<std::int32_t>(QuillonNumbers::ParseInteger(AText, TLimits::min(), TLimits::max()));
  });
}

bool TQuillonAbstractPreferences::ReadBoolean(std::string_view AName, bool ADefault) const {
  return ReadInteger(AName, ADefault ? 1 : 0) != 0;
}

char32_t TQuillonAbstractPreferences::ReadChar(std::string_view AName, char32_t ADefault) const {
  const std::string Text = ReadString(AName);
  std::string_view Left = Text;
  const char32_t Char = Left.empty() ? ADefault : QuillonText::TakeCharacter(Left);
  return Left.empty() ? Char : ADefault;
}

double TQuillonAbstractPreferences::ReadFloat(std::string_view AName, double ADefault) const {
  return ReadAs(*this, AName, ADefault, QuillonNumbers::ParseFloat);
}

std::int64_t TQuillonAbstractPreferences::ReadCurrency(std::string_view AName, std::int64_t ADefault) const {
  return ReadAs(*this, AName, ADefault, ParseCurrency);
}

TQuillonDateTime TQuillonAbstractPreferences::ReadDateTime(std::string_view AName, TQuillonDateTime ADefault) const {
  return ReadAs(*this, AName, ADefault, [](const std::string& AText) { return TQuillonDateTime::Create(AText); });
}

TGUID TQuillonAbstractPreferences::ReadGuid(std::string_view AName, const TGUID& ADefault) const {
  return ReadAs(*this, AName, ADefault, QuillonGuid::Parse);
}

std::string TQuillonAbstractPreferences::ReadBinary(std::string_view AName) const {
  return ReadAs(*this, AName, std::string(), QuillonBase64::Decode);
}

void TQuillonAbstractPreferences::WriteInteger(std::string_view AName, std::int32_t AValue) {
  WriteString(AName, std::to_string(AValue));
}

void TQuillonAbstractPreferences::WriteBoolean(std::string_view AName, bool AValue) {
  WriteInteger(AName, AValue ? 1 : 0);
}

void TQuillonAbstractPreferences::WriteChar(std::string_view AName, char32_t AValue) {
  std::string Text;
  try {
    utf8::append(AValue, std::back_inserter(Text));
  } catch (const utf8::exception&) {
    throw EQuillonException("Ein Zeichen der Einstellungen ist keines von Unicode.");
  }
  WriteString(AName, Text);
}

void TQuillonAbstractPreferences::WriteFloat(std::string_view AName, double AValue) {
  std::string Text;
  QuillonNumbers::AppendFloat(Text, AValue);
  WriteString(AName, Text);
}

void TQuillonAbstractPreferences::WriteCurrency(std::string_view AName, std::int64_t AValue) {
  WriteString(AName, CurrencyText(AValue));
}

void TQuillonAbstractPreferences::WriteDateTime(std::string_view AName, TQuillonDateTime AValue) {
  WriteString(AName, AValue.ToString());
}

void TQuillonAbstractPreferences::WriteGuid(std::string_view AName, const TGUID& AValue) {
  WriteString(AName, QuillonGuid::Braced(AValue));
}

void TQuillonAbstractPreferences::WriteBinary(std::string_view AName, std::string_view ABytes) {
  WriteString(AName, QuillonBase64::Encode(ABytes));
}

namespace QuillonPreferences {

std::unique_ptr<TQuillonAbstractPreferences> UserPreferences() { return Platform::OpenUserPreferences(); }
std::unique_ptr<TQuillonAbstractPreferences> MachinePreferences() { return Platform::OpenMachinePreferences(); }

}  // namespace QuillonPreferences
