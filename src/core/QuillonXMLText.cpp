#include "QuillonXMLText.h"

#include <utf8.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>

#include "QuillonText.h"

namespace {

struct TRange {
  char32_t First;
  char32_t Last;
};

constexpr TRange NameStarts[] = {{'A', 'Z'},       {'_', '_'},       {'a', 'z'},        {0xC0, 0xD6},
                                 {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},    {0x37F, 0x1FFF},
                                 {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},  {0x3001, 0xD7FF},
                                 {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
constexpr TRange FurtherNameCharacters[] = {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};
constexpr TRange Characters[] = {{'\t', '\n'}, {'\r', '\r'}, {' ', 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}};

constexpr std::size_t EscapeSize = 7;
constexpr char32_t FirstLead = 0xD800;
constexpr char32_t FirstTrail = 0xDC00;
constexpr char32_t FirstPastTrail = 0xE000;
constexpr char32_t FirstPastUnit = 0x10000;
constexpr char32_t Half = 0x400;

template <std::size_t N>
bool IsIn(const TRange (&ARanges)[N], char32_t AChar) {
  return std::any_of(std::begin(ARanges), std::end(ARanges),
                     [AChar](const TRange& ARange) { return ARange.First <= AChar && AChar <= ARange.Last; });
}

void AppendEscape(std::string& ATarget, char32_t AUnit) {
  constexpr std::string_view Digits = "0123456789ABCDEF";
  ATarget.append("_x");
  for (int Shift = 12; Shift >= 0; Shift -= 4) {
    ATarget.push_back(Digits[AUnit >> Shift & 0xF]);
  }
  ATarget.push_back('_');
}

/// The UTF-16 unit whose escape a text begins with, be it without the "_" at the end.
std::optional<char32_t> OpenUnitAt(std::string_view AText) {
  constexpr int Base = 16;
  if (AText.size() < EscapeSize - 1 || !AText.starts_with("_x")) {
    return std::nullopt;
  }
  std::uint32_t Unit = 0;
  const char* const End = AText.data() + EscapeSize - 1;
  const auto Result = std::from_chars(AText.data() + 2, End, Unit, Base);
  return Result.ec == std::errc() && Result.ptr == End ? std::optional<char32_t>(Unit) : std::nullopt;
}

std::optional<char32_t> UnitAt(std::string_view AText) {
  return AText.size() >= EscapeSize && AText[EscapeSize - 1] == '_' ? OpenUnitAt(AText) : std::nullopt;
}

/// Takes the character off whose one or two escapes a text begins with.
std::optional<char32_t> TakeEscaped(std::string_view& AText) {
  const std::optional<char32_t> Unit = UnitAt(AText);
  if (!Unit || (*Unit >= FirstTrail && *Unit < FirstPastTrail)) {
    return std::nullopt;
  }
  if (*Unit < FirstLead || *Unit >= FirstPastTrail) {
    AText.remove_prefix(EscapeSize);
    return Unit;
  }
  const std::optional<char32_t> Trail = UnitAt(AText.substr(EscapeSize));
  if (!Trail || *Trail < FirstTrail || *Trail >= FirstPastTrail) {
    return std::nullopt;
  }
  AText.remove_prefix(2 * EscapeSize);
  return FirstPastUnit + (*Unit - FirstLead) * Half + (*Trail - FirstTrail);
}

}  // namespace

namespace QuillonXMLText {

std::string EscapeName(std::string_view AText) {
  std::string Name;
  while (!AText.empty()) {
    // The escape of the next character begins with the "_" that would make this one whole.
    const bool IsEscape = OpenUnitAt(AText).has_value();
    const char32_t Char = QuillonText::TakeCharacter(AText);
    const bool MayStand = IsIn(NameStarts, Char) || (!Name.empty() && IsIn(FurtherNameCharacters, Char));
    if (MayStand && !IsEscape) {
      utf8::append(Char, std::back_inserter(Name));
    } else if (Char < FirstPastUnit) {
      AppendEscape(Name, Char);
    } else {
      AppendEscape(Name, FirstLead + (Char - FirstPastUnit) / Half);
      AppendEscape(Name, FirstTrail + (Char - FirstPastUnit) % Half);
    }
  }
  return Name;
}

std::string UnescapeName(std::string_view AName) {
  std::string Text;
  while (!AName.empty()) {
    const std::optional<char32_t> Escaped = TakeEscaped(AName);
    utf8::append(Escaped ? *Escaped : QuillonText::TakeCharacter(AName), std::back_inserter(Text));
  }
  return Text;
}

std::string OnlyCharacters(std::string_view AText) {
  constexpr char32_t Replacement = 0xFFFD;
  std::string Text;
  while (!AText.empty()) {
    const char32_t Char = QuillonText::TakeCharacter(AText);
    utf8::append(IsIn(Characters, Char) ? Char : Replacement, std::back_inserter(Text));
  }
  return Text;
}

}  // namespace QuillonXMLText
