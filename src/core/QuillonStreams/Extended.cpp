#include "QuillonStreams/Extended.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace {

constexpr std::uint64_t HighestBit = std::uint64_t{1} << 63;
constexpr int MaxExponent = 0x7FFF;
constexpr int Bias = 16'383;

constexpr int DoubleFractionBits = 52;
constexpr int DoubleMaxExponent = 0x7FF;
constexpr int DoubleBias = 1023;
constexpr std::uint64_t DoubleImplicitBit = std::uint64_t{1} << DoubleFractionBits;
/// How far a double's significand stands below the place of the extended one's.
constexpr int Distance = 63 - DoubleFractionBits;

/// AValue / 2^AShift, rounded to nearest, ties to even. @param AShift 1 to 64
std::uint64_t ShiftRounded(std::uint64_t AValue, int AShift) {
  const std::uint64_t Whole = AShift == 64 ? 0 : AValue >> AShift;
  const std::uint64_t Rest = AValue << (64 - AShift);
  const bool IsUp = Rest > HighestBit || (Rest == HighestBit && (Whole & 1U) != 0);
  return Whole + (IsUp ? 1U : 0U);
}

/// The bits of the positive double next to ASignificand * 2^(AnExponent - Bias - 63).
std::uint64_t NearestDouble(std::uint64_t ASignificand, int AnExponent) {
  const int Exponent = AnExponent - Bias + DoubleBias;
  if (Exponent >= DoubleMaxExponent) {
    return std::bit_cast<std::uint64_t>(std::numeric_limits<double>::infinity());
  }
  const int Place = std::max(Exponent, 1);
  const int Shift = Distance + Place - Exponent;
  if (Shift > 64) {
    return 0;
  }
  // The significand's leading bit adds the last one to the exponent; a carry out of rounding does the same.
  return (static_cast<std::uint64_t>(Place - 1) << DoubleFractionBits) + ShiftRounded(ASignificand, Shift);
}

}  // namespace

namespace QuillonExtended {

TBytes Encode(double AValue) {
  const auto Bits = std::bit_cast<std::uint64_t>(AValue);
  const int DoubleExponent = static_cast<int>(Bits >> DoubleFractionBits) & DoubleMaxExponent;
  std::uint64_t Significand = Bits & (DoubleImplicitBit - 1);
  int Exponent = 0;
  if (DoubleExponent == DoubleMaxExponent) {
    Exponent = MaxExponent;
    Significand = HighestBit | (Significand << Distance);
  } else if (DoubleExponent != 0 || Significand != 0) {
    Significand |= DoubleExponent != 0 ? DoubleImplicitBit : 0;
    const int Leading = std::countl_zero(Significand);
    Significand <<= Leading;
    Exponent = std::max(DoubleExponent, 1) - DoubleBias + Bias + Distance - Leading;
  }
  TBytes Bytes{};
  for (std::size_t I = 0; I < sizeof Significand; ++I) {
    Bytes[I] = static_cast<std::uint8_t>(Significand >> (8 * I));
  }
  Bytes[8] = static_cast<std::uint8_t>(Exponent & 0xFF);
  Bytes[9] = static_cast<std::uint8_t>((Exponent >> 8) | ((Bits & HighestBit) != 0 ? 0x80 : 0));
  return Bytes;
}

double Decode(const TBytes& ABytes) {
  std::uint64_t Significand = 0;
  for (std::size_t I = sizeof Significand; I-- > 0;) {
    Significand = (Significand << 8) | ABytes[I];
  }
  const std::uint64_t Sign = (ABytes[9] & 0x80U) != 0 ? HighestBit : 0;
  const int Exponent = (ABytes[9] & 0x7F) << 8 | ABytes[8];
  if (Exponent == 0) {
    // Far below the smallest double.
    return std::bit_cast<double>(Sign);
  }
  if ((Significand & HighestBit) == 0) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  if (Exponent == MaxExponent && Significand != HighestBit) {
    constexpr auto Quiet = std::bit_cast<std::uint64_t>(std::numeric_limits<double>::quiet_NaN());
    return std::bit_cast<double>(Sign | Quiet | ((Significand & ~HighestBit) >> Distance));
  }
  return std::bit_cast<double>(Sign | NearestDouble(Significand, Exponent));
}

}  // namespace QuillonExtended
