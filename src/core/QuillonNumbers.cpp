#include "QuillonNumbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "QuillonText.h"
#include "QuillonTypes.h"

namespace {

/// The digits with their sign, as std::from_chars wants them.
std::string_view Bare(std::string_view AText) {
  constexpr std::string_view Blanks = " \t\r\n";
  AText.remove_prefix(std::min(AText.find_first_not_of(Blanks), AText.size()));
  AText.remove_suffix(AText.size() - (AText.find_last_not_of(Blanks) + 1));
  if (AText.size() > 1 && AText.front() == '+' && AText[1] != '-') {
    AText.remove_prefix(1);
  }
  return AText;
}

[[noreturn]] void ThrowConvertError(std::string_view AText, std::string_view AWanted) {
  throw EQuillonConvertError(QuillonText::Quoted(AText) + " ist " + std::string(AWanted) + ".");
}

}  // namespace

namespace QuillonNumbers {

std::int64_t ParseInteger(std::string_view AText, std::int64_t AMin, std::int64_t AMax) {
  const std::string_view Digits = Bare(AText);
  std::int64_t Value = 0;
  const auto [End, Error] = std::from_chars(Digits.data(), Digits.data() + Digits.size(), Value);
  if (Error == std::errc::invalid_argument || End != Digits.data() + Digits.size()) {
    ThrowConvertError(AText, "keine gültige Ganzzahl");
  }
  if (Error == std::errc::result_out_of_range || Value < AMin || Value > AMax) {
    ThrowConvertError(AText, "außerhalb des gültigen Bereichs");
  }
  return Value;
}

double ParseFloat(std::string_view AText) {
  std::string Text(AText);
  std::replace(Text.begin(), Text.end(), ',', '.');
  const std::string_view Digits = Bare(Text);
  double Value = 0;
  const auto [End, Error] = std::from_chars(Digits.data(), Digits.data() + Digits.size(), Value);
  if (Error != std::errc{} || End != Digits.data() + Digits.size() || !std::isfinite(Value)) {
    ThrowConvertError(AText, "keine gültige Gleitkommazahl");
  }
  return Value;
}

void AppendPadded(std::string& ATarget, std::int64_t AValue, int ADigits) {
  char Digits[24];
  const auto End = std::to_chars(std::begin(Digits), std::end(Digits), AValue).ptr;
  const auto Length = static_cast<std::size_t>(End - Digits);
  if (Length < static_cast<std::size_t>(ADigits)) {
    ATarget.append(static_cast<std::size_t>(ADigits) - Length, '0');
  }
  ATarget.append(Digits, Length);
}

void AppendFloat(std::string& ATarget, double AValue) {
  constexpr int Precision = 15;
  constexpr int LowestFixedExponent = -5;
  // Rounded to the digits written, the few numbers above would be too large to be read again.
  constexpr double Largest = 1.79769313486231E308;
  AValue = std::isfinite(AValue) ? std::clamp(AValue, -Largest, Largest) : AValue;
  if (AValue == 0) {
    ATarget.push_back('0');
    return;
  }
  // Scientific text gives the digits and the exponent; the layout is built from these.
  std::array<char, 40> Buffer{};
  const auto End =
      std::to_chars(Buffer.data(), Buffer.data() + Buffer.size(), AValue, std::chars_format::scientific, Precision - 1)
          .ptr;
  std::string_view Text(Buffer.data(), static_cast<std::size_t>(End - Buffer.data()));
  if (Text.front() == '-') {
    ATarget.push_back('-');
    Text.remove_prefix(1);
  }
  const std::size_t ExponentAt = Text.find('e');
  if (ExponentAt == std::string_view::npos) {
    ATarget.append(Text);
    return;
  }
  std::string Digits(1, Text.front());
  Digits.append(Text.substr(2, ExponentAt - 2));
  Digits.erase(Digits.find_last_not_of('0') + 1);
  int Exponent = 0;
  std::string_view ExponentText = Text.substr(ExponentAt + 1);
  ExponentText.remove_prefix(ExponentText.front() == '+' ? 1 : 0);
  std::from_chars(ExponentText.data(), ExponentText.data() + ExponentText.size(), Exponent);

  if (Exponent >= Precision || Exponent < LowestFixedExponent) {
    ATarget.push_back(Digits.front());
    if (Digits.size() > 1) {
      ATarget.append(".").append(Digits, 1);
    }
    ATarget.push_back('E');
    AppendInteger(ATarget, Exponent);
  } else if (Exponent < 0) {
    ATarget.append("0.").append(static_cast<std::size_t>(-Exponent - 1), '0').append(Digits);
  } else {
    const auto Whole = static_cast<std::size_t>(Exponent) + 1;
    if (Digits.size() <= Whole) {
      ATarget.append(Digits).append(Whole - Digits.size(), '0');
    } else {
      ATarget.append(Digits, 0, Whole).append(".").append(Digits, Whole);
    }
  }
}

}  // namespace QuillonNumbers
