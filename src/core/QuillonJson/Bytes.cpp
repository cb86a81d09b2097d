#include <array>
#include <cstring>

#include "QuillonJson/Document.h"
#include "QuillonText.h"

// The writer of bytes: ASCII, everything else as escapes of UTF-16 units.

namespace {

constexpr char32_t FirstPastUnit = 0x10000;

std::size_t Put(std::span<char> AData, std::size_t AnOffset, std::string_view ABytes) {
  if (AnOffset > AData.size() || AData.size() - AnOffset < ABytes.size()) {
    throw EQuillonJSONError("Der Puffer ist zu klein für das JSON-Dokument.");
  }
  std::memcpy(AData.data() + AnOffset, ABytes.data(), ABytes.size());
  return AnOffset + ABytes.size();
}

/// Bytes of a text all of whose units are escapes.
std::size_t EscapedSize(std::string_view AText) {
  constexpr std::size_t UnitSize = 6;
  std::size_t Units = 0;
  while (!AText.empty()) {
    Units += QuillonText::TakeCharacter(AText) < FirstPastUnit ? 1 : 2;
  }
  return Units * UnitSize;
}

std::size_t PutUnit(std::span<char> AData, std::size_t AnOffset, char32_t AUnit) {
  constexpr std::string_view Digits = "0123456789ABCDEF";
  constexpr unsigned Nibble = 4;
  constexpr unsigned LastDigit = 0xF;
  std::array<char, 6> Escape{'\\', 'u'};
  auto Left = static_cast<unsigned>(AUnit);
  for (std::size_t Index = Escape.size(); Index > 2; --Index, Left >>= Nibble) {
    Escape[Index - 1] = Digits[Left & LastDigit];
  }
  return Put(AData, AnOffset, {Escape.data(), Escape.size()});
}

std::size_t PutChar(std::span<char> AData, std::size_t AnOffset, char32_t AChar) {
  constexpr std::string_view Escaped = "\"/\\\r\b\t\n\f";
  constexpr std::string_view Letters = "\"/\\rbtnf";
  constexpr char32_t FirstPlain = 32;
  constexpr char32_t LastPlain = 127;
  if (AChar > LastPlain) {
    if (AChar < FirstPastUnit) {
      return PutUnit(AData, AnOffset, AChar);
    }
    constexpr char32_t FirstLead = 0xD800;
    constexpr char32_t FirstTrail = 0xDC00;
    constexpr char32_t Half = 0x400;
    const char32_t Rest = AChar - FirstPastUnit;
    return PutUnit(AData, PutUnit(AData, AnOffset, FirstLead + Rest / Half), FirstTrail + Rest % Half);
  }
  const auto Plain = static_cast<char>(AChar);
  if (const std::size_t Found = Escaped.find(Plain); Found != std::string_view::npos) {
    const std::array<char, 2> Escape{'\\', Letters[Found]};
    return Put(AData, AnOffset, {Escape.data(), Escape.size()});
  }
  return AChar < FirstPlain ? PutUnit(AData, AnOffset, AChar) : Put(AData, AnOffset, {&Plain, 1});
}

template <class TItems>
std::size_t ItemsSize(const TItems& AnItems) {
  std::size_t Size = 1;
  for (const auto& Item : AnItems) {
    Size += Item->EstimatedByteSize() + 1;
  }
  return AnItems.empty() ? 2 : Size;
}

template <class TItems>
std::size_t PutItems(std::span<char> AData, std::size_t AnOffset, const TItems& AnItems, std::string_view ABrackets) {
  AnOffset = Put(AData, AnOffset, ABrackets.substr(0, 1));
  bool IsFirst = true;
  for (const auto& Item : AnItems) {
    AnOffset = Item->ToBytes(AData, IsFirst ? AnOffset : Put(AData, AnOffset, ","));
    IsFirst = false;
  }
  return Put(AData, AnOffset, ABrackets.substr(1));
}

}  // namespace

std::size_t TQuillonJSONWord::ToBytes(std::span<char> AData, std::size_t AnOffset) const {
  return Put(AData, AnOffset, Word());
}

std::size_t TQuillonJSONString::EstimatedByteSize() const {
  constexpr std::size_t NullSize = 4;
  if (IsNull()) {
    return NullSize;
  }
  return EscapedSize(Text()) + 2;
}

std::size_t TQuillonJSONString::ToBytes(std::span<char> AData, std::size_t AnOffset) const {
  if (IsNull()) {
    return Put(AData, AnOffset, "null");
  }
  AnOffset = Put(AData, AnOffset, "\"");
  for (std::string_view Left = Text(); !Left.empty();) {
    AnOffset = PutChar(AData, AnOffset, QuillonText::TakeCharacter(Left));
  }
  return Put(AData, AnOffset, "\"");
}

std::size_t TQuillonJSONWritten::EstimatedByteSize() const { return EscapedSize(FText); }

std::size_t TQuillonJSONWritten::ToBytes(std::span<char> AData, std::size_t AnOffset) const {
  constexpr char32_t FirstBeyondAscii = 0x80;
  for (std::string_view Left = FText; !Left.empty();) {
    const std::string_view Before = Left;
    const char32_t Char = QuillonText::TakeCharacter(Left);
    AnOffset = Char < FirstBeyondAscii ? Put(AData, AnOffset, Before.substr(0, 1)) : PutChar(AData, AnOffset, Char);
  }
  return AnOffset;
}

std::size_t TQuillonJSONNumber::ToBytes(std::span<char> AData, std::size_t AnOffset) const {
  return Put(AData, AnOffset, Text());
}

std::size_t TQuillonJSONPair::EstimatedByteSize() const {
  return FJsonString.EstimatedByteSize() + (FJsonValue == nullptr ? 0 : FJsonValue->EstimatedByteSize()) + 1;
}

std::size_t TQuillonJSONPair::ToBytes(std::span<char> AData, std::size_t AnOffset) const {
  if (FJsonString.IsNull() || FJsonValue == nullptr) {
    return AnOffset;
  }
  return FJsonValue->ToBytes(AData, Put(AData, FJsonString.ToBytes(AData, AnOffset), ":"));
}

std::size_t TQuillonJSONObject::EstimatedByteSize() const { return ItemsSize(FMembers); }

std::size_t TQuillonJSONObject::ToBytes(std::span<char> AData, std::size_t AnOffset) const {
  return PutItems(AData, AnOffset, FMembers, "{}");
}

std::size_t TQuillonJSONArray::EstimatedByteSize() const { return ItemsSize(FElements); }

std::size_t TQuillonJSONArray::ToBytes(std::span<char> AData, std::size_t AnOffset) const {
  return PutItems(AData, AnOffset, FElements, "[]");
}
