#include "QuillonGuid.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "QuillonText.h"
#include "QuillonTypes.h"
#include "platform/Digest.h"
#include "platform/Random.h"

namespace {

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

/// Sixteen bytes that are worked on at once: vector types of GCC and Clang, for whatever the processor has.
using TSixteen = signed char __attribute__((vector_size(16)));
using TTwoLongs = std::uint64_t __attribute__((vector_size(16)));
using TEightWords = std::uint16_t __attribute__((vector_size(16)));
using TEight = std::uint8_t __attribute__((vector_size(8)));

/// Eight characters: four at each of two places.
std::uint64_t CharactersAt(const char* AFirst, const char* ASecond) {
  std::uint32_t First = 0;
  std::uint32_t Second = 0;
  std::memcpy(&First, AFirst, sizeof First);
  std::memcpy(&Second, ASecond, sizeof Second);
  constexpr bool IsLittle = std::endian::native == std::endian::little;
  return IsLittle ? First | (std::uint64_t{Second} << 32) : Second | (std::uint64_t{First} << 32);
}

/// The eight bytes that hexadecimal digits stand for. Clears what is not right of AreDigits.
TEight Decode(TSixteen ADigits, TSixteen& AreDigits) {
  const TSixteen LowerCase = ADigits | 0x20;
  const TSixteen AreLetters = (LowerCase >= 'a') & (LowerCase <= 'f');
  AreDigits &= AreLetters | ((ADigits >= '0') & (ADigits <= '9'));
  const auto Values = std::bit_cast<TEightWords>((ADigits & 0xF) + (AreLetters & 9));
  constexpr bool IsLittle = std::endian::native == std::endian::little;
  return __builtin_convertvector((IsLittle ? (Values << 4) | (Values >> 8) : (Values >> 4) | Values) & 0xFF, TEight);
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
  const char* const Text = AText.data() + 1;
  bool IsRight = true;
  for (std::size_t Place : HyphenPlaces) {
    IsRight &= Text[Place] == '-';
  }
  TSixteen AreDigits = ~TSixteen{};
  const auto DigitsAt = [&](int A, int B, int C, int D) {
    return std::bit_cast<TSixteen>(TTwoLongs{CharactersAt(Text + A, Text + B), CharactersAt(Text + C, Text + D)});
  };
  const std::array Halves = {Decode(DigitsAt(0, 4, 9, 14), AreDigits), Decode(DigitsAt(19, 24, 28, 32), AreDigits)};
  const auto [Low, High] = std::bit_cast<std::array<std::uint64_t, 2>>(AreDigits);
  return IsRight && (Low & High) == ~std::uint64_t{0} ? std::optional(std::bit_cast<TGUID>(Halves)) : std::nullopt;
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
