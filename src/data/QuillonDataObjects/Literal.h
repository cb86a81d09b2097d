#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

/// A literal as a template argument: what tells classes from each other that differ in nothing else.
template <std::size_t ASize>
struct TQuillonLiteral {
  char Text[ASize];

  constexpr TQuillonLiteral(const char (&AText)[ASize]) {  // NOLINT(google-explicit-constructor)
    std::copy_n(AText, ASize, Text);
  }
  constexpr std::string_view View() const { return {Text, ASize - 1}; }
};
