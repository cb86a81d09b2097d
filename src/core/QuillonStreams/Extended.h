#pragma once

#include <array>
#include <cstdint>

/// The 80-bit floating point format of the x87 as it stands on streams: 64 bits of significand with its leading bit,
/// 15 of exponent, one of sign, the lowest byte first. Computed, so that every compiler gives the same bytes.
namespace QuillonExtended {

using TBytes = std::array<std::uint8_t, 10>;

/// Exact: every double has its place in the format.
TBytes Encode(double AValue);
/// The nearest double, of two equally near ones the even one; what is too large becomes infinite. Bit patterns that the
/// x87 refuses are not a number.
double Decode(const TBytes& ABytes);

}  // namespace QuillonExtended
