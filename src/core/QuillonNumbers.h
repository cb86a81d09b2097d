#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

/// Numbers and their text, the same in every locale.
namespace QuillonNumbers {

/// Reads a decimal number with optional sign; blanks and line breaks around it are passed over.
/// @throws EQuillonConvertError for any other text and for a number outside of the bounds
std::int64_t ParseInteger(std::string_view AText, std::int64_t AMin, std::int64_t AMax);

/// Reads a finite number; a comma counts as the decimal point, blanks and line breaks around it do not count.
/// @throws EQuillonConvertError for any other text
double ParseFloat(std::string_view AText);

template <class TInteger>
void AppendInteger(std::string& ATarget, TInteger AValue) {
  char Digits[24];
  const auto End = std::to_chars(std::begin(Digits), std::end(Digits), AValue).ptr;
  ATarget.append(Digits, End);
}

/// Appends AValue, which is not negative, with at least ADigits digits.
void AppendPadded(std::string& ATarget, std::int64_t AValue, int ADigits);

/// Appends the general form with 15 significant digits: "1.5", "-0.25", "1E15", "1.5E-6".
void AppendFloat(std::string& ATarget, double AValue);

}  // namespace QuillonNumbers
