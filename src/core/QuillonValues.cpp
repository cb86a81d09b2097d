#include "QuillonValues.h"

#include <cmath>
#include <functional>

#include "QuillonText.h"

namespace {

template <class... TBoxes>
void Register() {
  (TQuillonClassRegistry::Instance().AddClass(TBoxes::Class()), ...);
}

}  // namespace

namespace QuillonValues {

std::int32_t HashOf(std::string_view AText) {
  const std::string Units = QuillonText::ToUtf16LE(AText);
  std::uint32_t Hash = 0;
  for (const char Byte : std::string_view(Units).substr(0, Units.size() / 2)) {
    Hash = (Hash << 4) + static_cast<std::uint8_t>(Byte);
    const std::uint32_t High = Hash & 0xF0000000U;
    Hash = (Hash ^ (High >> 24)) & ~High;
  }
  return static_cast<std::int32_t>(Hash & 0x7FFFFFFFU);
}

std::int32_t HashOf(const TGUID& AGuid) { return HashOf(QuillonGuid::Braced(AGuid)); }

std::int32_t HashOf(double AValue) {
  constexpr double Limit = 0x1p63;
  const bool HasInteger = AValue > -Limit && AValue < Limit;
  return static_cast<std::int32_t>(HasInteger ? static_cast<std::int64_t>(AValue) : 0);
}

void RegisterClasses() {
  Register<TQuillonReference, TQuillonBinary, TQuillonBoolean, TQuillonChar, TQuillonSmallInt, TQuillonShortInt,
           TQuillonLongInt, TQuillonInt64, TQuillonByte, TQuillonWord, TQuillonLongWord, TQuillonSingle, TQuillonDouble,
           TQuillonExtended, TQuillonCurrency, TQuillonBoxedDateTime, TQuillonString, TQuillonUtf8String,
           TQuillonGuid>();
}

}  // namespace QuillonValues

bool TQuillonReference::Equals(const TQuillonObject& AnObject) const {
  const auto* const Other = dynamic_cast<const TQuillonReference*>(&AnObject);
  return Other != nullptr &&
         (FValue == Other->FValue || (FValue != nullptr && Other->FValue != nullptr && FValue->Equals(*Other->FValue)));
}

void TQuillonBinary::WriteProperties(TQuillonObjectWriter& AWriter) const {
  AWriter.WriteBinary(FStream == nullptr ? std::string_view() : FStream->Content());
}

void TQuillonBinary::ReadProperties(TQuillonObjectReader& AReader) {
  std::string Block = AReader.ReadBinary();
  FStream = Block.empty() ? nullptr : std::make_shared<TQuillonMemoryStream>(std::move(Block));
}

std::int32_t TQuillonBinary::GetHashCode() const {
  return static_cast<std::int32_t>(std::hash<const TQuillonMemoryStream*>()(FStream.get()));
}

bool TQuillonBinary::Equals(const TQuillonObject& AnObject) const {
  const auto* const Other = dynamic_cast<const TQuillonBinary*>(&AnObject);
  return Other != nullptr && FStream == Other->FStream;
}
