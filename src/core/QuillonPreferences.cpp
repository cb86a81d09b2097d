#include "QuillonPreferences.h"

#include <limits>

#include "QuillonBase64.h"
#include "QuillonNumbers.h"
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

double TQuillonAbstractPreferences::ReadFloat(std::string_view AName, double ADefault) const {
  return ReadAs(*this, AName, ADefault, QuillonNumbers::ParseFloat);
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

void TQuillonAbstractPreferences::WriteFloat(std::string_view AName, double AValue) {
  std::string Text;
  QuillonNumbers::AppendFloat(Text, AValue);
  WriteString(AName, Text);
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
