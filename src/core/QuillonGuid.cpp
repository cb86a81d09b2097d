#include "QuillonGuid.h"

#include <algorithm>

#include "QuillonText.h"
#include "QuillonTypes.h"
#include "platform/Digest.h"
#include "platform/Random.h"

namespace {

constexpr std::uint8_t NoDigit = 0xFF;

constexpr auto DigitValues = [] {
  std::array<std::uint8_t, 256> Values{};
  Values.fill(NoDigit);
  for (std::uint8_t I = 0; I < 10; ++I) {
    Values[static_cast<std::size_t>('0') + I] = I;
  }
  for (std::uint8_t I = 0; I < 6; ++I) {
    Values[static_cast<std::size_t>('a') + I] = static_cast<std::uint8_t>(10 + I);
    Values[static_cast<std::size_t>('A') + I] = static_cast<std::uint8_t>(10 + I);
  }
  return Values;
}();

constexpr std::string_view UpperDigits = "0123456789ABCDEF";
constexpr std::string_view LowerDigits = "0123456789abcdef";

/// Places of the bytes' first digits in the plain form.
constexpr std::array<std::uint8_t, 16> DigitPlaces = {0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};
constexpr std::array<std::uint8_t, 4> HyphenPlaces = {8, 13, 18, 23};

void FormatPlain(char* ATarget, const TGUID& AGuid, std::string_view ADigits) {
  for (std::size_t Place : HyphenPlaces) {
    ATarget[Place] = '-';
  }
  for (std::size_t I = 0; I < AGuid.Bytes.size(); ++I) {
    ATarget[DigitPlaces[I]] = ADigits[AGuid.Bytes[I] >> 4];
    ATarget[DigitPlaces[I] + 1U] = ADigits[AGuid.Bytes[I] & 0xF];
  }
}

/// Random bytes are drawn for many GUIDs at once: a system call each would dominate.
TGUID NextRandom() {
  static thread_local std::array<TGUID, 256> Block;
  static thread_local std::size_t Used = Block.size();
  if (Used == Block.size()) {
    Platform::FillRandom(std::as_writable_bytes(std::span(Block)));
    Used = 0;
  }
  return Block[Used++];
}

/// Marks the bytes as those of a version, in the variant of RFC 4122, sections 4.1.1 and 4.1.3.
void SetVersion(TGUID& AGuid, unsigned AVersion) {
  AGuid.Bytes[6] = static_cast<std::uint8_t>((AGuid.Bytes[6] & 0x0FU) | (AVersion << 4));
  AGuid.Bytes[8] = static_cast<std::uint8_t>((AGuid.Bytes[8] & 0x3FU) | 0x80U);
}

}  // namespace

namespace QuillonGuid {

TGUID New() {
  TGUID Guid = NextRandom();
  SetVersion(Guid, 4);
  return Guid;
}

TGUID FromName(const TGUID& ANamespace, std::string_view AName) {
  const auto Digest =
      Platform::Sha1({reinterpret_cast<const char*>(ANamespace.Bytes.data()), ANamespace.Bytes.size()}, AName);
  TGUID Guid;
  std::ranges::copy_n(Digest.begin(), static_cast<std::ptrdiff_t>(Guid.Bytes.size()), Guid.Bytes.begin());
  SetVersion(Guid, 5);
  return Guid;
}

std::optional<TGUID> TryParse(std::string_view AText) {
  if (AText.size() != BracedLength || AText.front() != '{' || AText.back() != '}') {
    return std::nullopt;
  }
  const char* Text = AText.data() + 1;
  for (std::size_t Place : HyphenPlaces) {
    if (Text[Place] != '-') {
      return std::nullopt;
    }
  }
  TGUID Guid;
  std::uint8_t Bad = 0;
  for (std::size_t I = 0; I < Guid.Bytes.size(); ++I) {
    const std::uint8_t High = DigitValues[static_cast<std::uint8_t>(Text[DigitPlaces[I]])];
    const std::uint8_t Low = DigitValues[static_cast<std::uint8_t>(Text[DigitPlaces[I] + 1U])];
    Bad |= static_cast<std::uint8_t>(High | Low);
    Guid.Bytes[I] = static_cast<std::uint8_t>((High << 4) | (Low & 0xF));
  }
  if ((Bad & 0xF0) != 0) {
    return std::nullopt;
  }
  return Guid;
}

TGUID Parse(std::string_view AText) {
  if (const auto Guid = TryParse(AText)) {
    return *Guid;
  }
  throw EQuillonConvertError(QuillonText::Quoted(AText) + " ist keine gültige GUID.");
}

void AppendBraced(std::string& ATarget, const TGUID& AGuid) {
  const std::size_t Start = ATarget.size();
  ATarget.resize(Start + BracedLength);
  ATarget[Start] = '{';
  FormatPlain(&ATarget[Start + 1], AGuid, UpperDigits);
  ATarget.back() = '}';
}

std::string Braced(const TGUID& AGuid) {
  std::string Text;
  AppendBraced(Text, AGuid);
  return Text;
}

void AppendPlain(std::string& ATarget, const TGUID& AGuid) {
  const std::size_t Start = ATarget.size();
  ATarget.resize(Start + PlainLength);
  FormatPlain(&ATarget[Start], AGuid, LowerDigits);
}

std::string Plain(const TGUID& AGuid) {
  std::string Text;
  AppendPlain(Text, AGuid);
  return Text;
}

}  // namespace QuillonGuid
