#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuillonStreams/Objects.h"

enum TQuillonValueType {
  vtypeReference,
  vtypeBinary,
  vtypeBitmap,
  vtypeIcon,
  vtypeBoolean,
  vtypeChar,
  vtypeSmallInt,
  vtypeShortInt,
  vtypeLongInt,
  vtypeInt64,
  vtypeByte,
  vtypeWord,
  vtypeLongWord,
  vtypeSingle,
  vtypeDouble,
  vtypeExtended,
  vtypeCurrency,
  vtypeDateTime,
  vtypeString,
  vtypeUtf8String,
  vtypeGuid,
  vtypeCustom
};

namespace QuillonValues {

/// Names of the boxes on streams, by their type.
inline constexpr std::array<std::string_view, vtypeCustom> ClassNames = {
    "TQuillonReference", "TQuillonBinary",   "TQuillonBitmap",   "TQuillonIcon",    "TQuillonBoolean",
    "TQuillonChar",      "TQuillonSmallInt", "TQuillonShortInt", "TQuillonLongInt", "TQuillonInt64",
    "TQuillonByte",      "TQuillonWord",     "TQuillonLongWord", "TQuillonSingle",  "TQuillonDouble",
    "TQuillonExtended",  "TQuillonCurrency", "TQuillonDateTime", "TQuillonString",  "TQuillonUtf8String",
    "TQuillonGuid"};

/// The ELF hash over the text's UTF-16, of which only the first half of the bytes takes part.
std::int32_t HashOf(std::string_view AText);
std::int32_t HashOf(const TGUID& AGuid);
/// Of the whole part and of the truncated fraction, which is always 0.
std::int32_t HashOf(double AValue);
inline std::int32_t HashOf(TExtended AValue) { return HashOf(AValue.Value); }
inline std::int32_t HashOf(TCurrency AValue) { return HashOf(AValue.Amount()); }
inline std::int32_t HashOf(TQuillonDateTime AValue) { return HashOf(AValue.FValue); }
std::int32_t HashOf(std::integral auto AValue) {
  if constexpr (sizeof(AValue) <= sizeof(std::int32_t)) {
    return static_cast<std::int32_t>(AValue);
  } else {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(AValue) ^ static_cast<std::uint32_t>(AValue >> 32));
  }
}

/// Makes the classes of the boxes known to readers.
void RegisterClasses();

}  // namespace QuillonValues

/// A value in a box, so that collections can hold it and use it as a key.
class TQuillonType : public TQuillonPersistent {
 public:
  virtual TQuillonValueType ValueType() const = 0;
};

/// A box around a plain value. Two are equal if they are of the same class and have the same value.
template <class TValue, TQuillonValueType Kind>
class TQuillonSimpleType final : public TQuillonNamed<TQuillonSimpleType<TValue, Kind>, TQuillonType> {
 public:
  static constexpr std::string_view ClassName = QuillonValues::ClassNames[Kind];
  static std::vector<TQuillonProperty> Properties() {
    return {QuillonStreams::Published<&TQuillonSimpleType::FValue>()};
  }

  TQuillonSimpleType() = default;
  explicit TQuillonSimpleType(TValue AValue) : FValue(std::move(AValue)) {}

  TQuillonValueType ValueType() const override { return Kind; }
  std::int32_t GetHashCode() const override { return QuillonValues::HashOf(FValue); }
  bool Equals(const TQuillonObject& AnObject) const override {
    const auto* const Other = dynamic_cast<const TQuillonSimpleType*>(&AnObject);
    return Other != nullptr && Other->FValue == FValue;
  }
  void Assign(const TQuillonObject& AnObject) override {
    const auto* const Other = dynamic_cast<const TQuillonSimpleType*>(&AnObject);
    if (Other == nullptr) {
      TQuillonObject::Assign(AnObject);
    } else {
      FValue = Other->FValue;
    }
  }

  TValue FValue{};
};

using TQuillonBoolean = TQuillonSimpleType<bool, vtypeBoolean>;
using TQuillonChar = TQuillonSimpleType<char16_t, vtypeChar>;
using TQuillonSmallInt = TQuillonSimpleType<std::int16_t, vtypeSmallInt>;
using TQuillonShortInt = TQuillonSimpleType<std::int8_t, vtypeShortInt>;
using TQuillonLongInt = TQuillonSimpleType<std::int32_t, vtypeLongInt>;
using TQuillonInt64 = TQuillonSimpleType<std::int64_t, vtypeInt64>;
using TQuillonByte = TQuillonSimpleType<std::uint8_t, vtypeByte>;
using TQuillonWord = TQuillonSimpleType<std::uint16_t, vtypeWord>;
using TQuillonLongWord = TQuillonSimpleType<std::uint32_t, vtypeLongWord>;
using TQuillonSingle = TQuillonSimpleType<float, vtypeSingle>;
using TQuillonDouble = TQuillonSimpleType<double, vtypeDouble>;
using TQuillonExtended = TQuillonSimpleType<TExtended, vtypeExtended>;
using TQuillonCurrency = TQuillonSimpleType<TCurrency, vtypeCurrency>;
/// On streams "TQuillonDateTime"; here that is the name of the plain value.
using TQuillonBoxedDateTime = TQuillonSimpleType<TQuillonDateTime, vtypeDateTime>;
using TQuillonString = TQuillonSimpleType<std::string, vtypeString>;
using TQuillonUtf8String = TQuillonSimpleType<std::string, vtypeUtf8String>;
using TQuillonGuid = TQuillonSimpleType<TGUID, vtypeGuid>;

/// A box around an object, which may be null. Hash and equality are those of the objects in the boxes.
class TQuillonReference final : public TQuillonNamed<TQuillonReference, TQuillonType> {
 public:
  static constexpr std::string_view ClassName = QuillonValues::ClassNames[vtypeReference];
  static std::vector<TQuillonProperty> Properties() {
    return {QuillonStreams::Published<&TQuillonReference::FValue>()};
  }

  TQuillonReference() = default;
  explicit TQuillonReference(std::shared_ptr<TQuillonPersistent> AValue) : FValue(std::move(AValue)) {}

  TQuillonValueType ValueType() const override { return vtypeReference; }
  std::int32_t GetHashCode() const override { return FValue == nullptr ? 0 : FValue->GetHashCode(); }
  bool Equals(const TQuillonObject& AnObject) const override;
  void Clear() { FValue.reset(); }
  std::shared_ptr<TQuillonPersistent> Extract() { return std::exchange(FValue, nullptr); }

  std::shared_ptr<TQuillonPersistent> FValue;
};

/// A box around a block of bytes. Two are equal only if they hold the same stream, whatever the bytes are.
class TQuillonBinary final : public TQuillonNamed<TQuillonBinary, TQuillonType> {
 public:
  static constexpr std::string_view ClassName = QuillonValues::ClassNames[vtypeBinary];

  TQuillonBinary() = default;
  explicit TQuillonBinary(std::shared_ptr<TQuillonMemoryStream> AStream) : FStream(std::move(AStream)) {}

  /// The block behind its size; no stream is size 0, and comes back as none.
  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  void ReadProperties(TQuillonObjectReader& AReader) override;
  TQuillonValueType ValueType() const override { return vtypeBinary; }
  std::int32_t GetHashCode() const override;
  bool Equals(const TQuillonObject& AnObject) const override;
  void Clear() { FStream.reset(); }
  std::shared_ptr<TQuillonMemoryStream> Extract() { return std::exchange(FStream, nullptr); }

  std::shared_ptr<TQuillonMemoryStream> FStream;
};
