#include "Secrets.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "QuillonBase64.h"
#include "QuillonText.h"

namespace {

constexpr std::string_view Mask = "***";
/// No message of a service has a reason to be longer, in bytes.
constexpr std::size_t MaxText = 4096;
/// Bytes of a secret that are looked for: with their characters, of four bytes each at most, no text has room for more.
constexpr std::size_t MaxSecret = 4 * MaxText;
/// Bytes that a notation takes for one.
constexpr std::size_t LongestNotation = 12;
constexpr int MostNotations = 4;

constexpr char32_t FirstLead = 0xD800;
constexpr char32_t FirstTrail = 0xDC00;
constexpr char32_t FirstPastTrail = 0xE000;
constexpr char32_t LastChar = 0x10FFFF;

/// Characters, and for each where it begins in the text that they are from; behind the last, where that one ends.
struct TCharacters {
  std::u32string Text;
  std::vector<std::size_t> Begins = {0};

  void Append(char32_t AChar, std::size_t AnEnd) {
    Text.push_back(AChar);
    Begins.push_back(AnEnd);
  }
};

/// As TakeCharacter; a byte that is no UTF-8 is one of Latin-1.
char32_t TakeAnyCharacter(std::string_view& AText) {
  constexpr char32_t Replacement = 0xFFFD;
  const std::string_view Before = AText;
  const char32_t Char = QuillonText::TakeCharacter(AText);
  const bool IsByte = Char == Replacement && Before.size() - AText.size() == 1;
  return IsByte ? static_cast<unsigned char>(Before.front()) : Char;
}

std::string LineOf(std::string_view AText) {
  std::string Valid;
  while (!AText.empty()) {
    utf8::append(TakeAnyCharacter(AText), std::back_inserter(Valid));
  }
  return QuillonText::OneLine(Valid);
}

char32_t Lower(char32_t AChar) {
  std::string Char;
  utf8::append(AChar, std::back_inserter(Char));
  const std::string Mapped = QuillonText::ToLower(Char);
  std::string_view Left = Mapped;
  return QuillonText::TakeCharacter(Left);
}

TCharacters CharactersOf(std::string_view ALine) {
  TCharacters Result;
  for (std::string_view Left = ALine; !Left.empty();) {
    const char32_t Char = Lower(QuillonText::TakeCharacter(Left));
    Result.Append(Char, ALine.size() - Left.size());
  }
  return Result;
}

/// The number that these digits are, or one that is no character.
char32_t NumberOf(std::u32string_view ADigits, char32_t ABase) {
  constexpr std::u32string_view Digits = U"0123456789abcdef";
  constexpr char32_t None = LastChar + 1;
  char32_t Number = 0;
  for (const char32_t Char : ADigits) {
    const std::size_t Digit = Digits.find(Char);
    if (Digit >= ABase || Number > LastChar) {
      return None;
    }
    Number = Number * ABase + static_cast<char32_t>(Digit);
  }
  return ADigits.empty() ? None : Number;
}

/// A character in some notation at the begin of a text, and its length there; 0 for a character that stands for itself.
struct TNoted {
  char32_t Char = 0;
  std::size_t Length = 0;
};

bool IsCharacter(char32_t AValue) { return AValue <= LastChar && (AValue < FirstLead || AValue >= FirstPastTrail); }

TNoted TakeJson(std::u32string_view AText) {
  constexpr std::size_t UnitLength = 6;
  constexpr char32_t Hex = 16;
  const auto UnitAt = [AText](std::size_t AnOffset) {
    const auto Unit = AText.substr(std::min(AnOffset, AText.size()), UnitLength);
    return Unit.size() == UnitLength && Unit.starts_with(U"\\u") ? NumberOf(Unit.substr(2), Hex) : LastChar + 1;
  };
  if (AText.size() < 2) {
    return {};
  }
  if (AText[1] != U'u') {
    constexpr std::u32string_view Controls = U"bfnrt";
    return {Controls.find(AText[1]) != std::u32string_view::npos ? U' ' : AText[1], 2};
  }
  const char32_t Unit = UnitAt(0);
  if (Unit >= FirstLead && Unit < FirstTrail) {
    const char32_t Trail = UnitAt(UnitLength);
    constexpr char32_t Half = 0x400;
    constexpr char32_t FirstPastUnit = 0x10000;
    const bool IsPair = Trail >= FirstTrail && Trail < FirstPastTrail;
    return IsPair ? TNoted{FirstPastUnit + (Unit - FirstLead) * Half + Trail - FirstTrail, 2 * UnitLength} : TNoted{};
  }
  return IsCharacter(Unit) ? TNoted{Unit, UnitLength} : TNoted{};
}

TNoted TakeAddress(std::u32string_view AText) {
  constexpr std::size_t ByteLength = 3;
  constexpr std::size_t MostBytes = 4;
  constexpr char32_t Hex = 16;
  std::string Bytes;
  for (; Bytes.size() < MostBytes && AText.size() >= ByteLength && AText[0] == U'%'; AText.remove_prefix(ByteLength)) {
    const char32_t Byte = NumberOf(AText.substr(1, 2), Hex);
    if (Byte > LastChar) {
      break;
    }
    Bytes.push_back(static_cast<char>(Byte));
  }
  if (Bytes.empty()) {
    return {};
  }
  std::string_view Left = Bytes;
  const char32_t Char = TakeAnyCharacter(Left);
  return {Char, (Bytes.size() - Left.size()) * ByteLength};
}

TNoted TakeHtml(std::u32string_view AText) {
  static constexpr std::pair<std::u32string_view, char32_t> Names[] = {
      {U"amp", U'&'}, {U"lt", U'<'}, {U"gt", U'>'}, {U"quot", U'"'}, {U"apos", U'\''}};
  constexpr char32_t Hex = 16;
  constexpr char32_t Decimal = 10;
  const std::size_t End = AText.substr(0, LongestNotation).find(U';');
  if (End == std::u32string_view::npos) {
    return {};
  }
  const auto Name = AText.substr(1, End - 1);
  if (Name.starts_with(U"#")) {
    const bool IsHex = Name.starts_with(U"#x");
    const char32_t Char = NumberOf(Name.substr(IsHex ? 2 : 1), IsHex ? Hex : Decimal);
    return IsCharacter(Char) ? TNoted{Char, End + 1} : TNoted{};
  }
  const auto* const Found =
      std::find_if(std::begin(Names), std::end(Names), [Name](const auto& ARow) { return ARow.first == Name; });
  return Found != std::end(Names) ? TNoted{Found->second, End + 1} : TNoted{};
}

TCharacters DecodedOnce(const TCharacters& ACharacters) {
  const std::u32string_view Text = ACharacters.Text;
  TCharacters Result;
  for (std::size_t I = 0; I < Text.size();) {
    const auto Rest = Text.substr(I);
    const TNoted Noted = Rest[0] == U'\\'  ? TakeJson(Rest)
                         : Rest[0] == U'%' ? TakeAddress(Rest)
                         : Rest[0] == U'&' ? TakeHtml(Rest)
                                           : TNoted{};
    const char32_t Char = Noted.Length > 0 ? Lower(Noted.Char) : Rest[0];
    I += std::max<std::size_t>(Noted.Length, 1);
    Result.Append(Char, ACharacters.Begins[I]);
  }
  return Result;
}

/// Without any notation, and with one blank for each run of blanks, of control characters and of the plus that stands
/// for a blank in forms.
TCharacters Decoded(TCharacters ACharacters) {
  for (int Notation = 0; Notation < MostNotations; ++Notation) {
    ACharacters = DecodedOnce(ACharacters);
  }
  TCharacters Result;
  for (std::size_t I = 0; I < ACharacters.Text.size(); ++I) {
    const char32_t Char = ACharacters.Text[I];
    const bool IsBlank = Char <= U' ' || Char == U'+';
    if (IsBlank && !Result.Text.empty() && Result.Text.back() == U' ') {
      Result.Begins.back() = ACharacters.Begins[I + 1];
    } else {
      Result.Append(IsBlank ? U' ' : Char, ACharacters.Begins[I + 1]);
    }
  }
  return Result;
}

/// Marks the bytes of a line that are the secret, of those that have a mark.
void Mark(std::vector<bool>& AMarks, const TCharacters& ACharacters, const std::u32string& ASecret) {
  const std::vector<std::size_t>& Begins = ACharacters.Begins;
  const auto Kept = static_cast<std::size_t>(std::ranges::lower_bound(Begins, AMarks.size()) - Begins.begin());
  // A secret that begins in what is kept is seen whole, and nobody waits for the rest of a long text.
  const auto Text = std::u32string_view(ACharacters.Text).substr(0, Kept + ASecret.size());
  for (std::size_t I = Text.find(ASecret); I < Kept; I = Text.find(ASecret, I + 1)) {
    const auto Begin = static_cast<std::ptrdiff_t>(Begins[I]);
    const auto End = static_cast<std::ptrdiff_t>(std::min(Begins[I + ASecret.size()], AMarks.size()));
    std::fill(AMarks.begin() + Begin, AMarks.begin() + End, true);
  }
}

}  // namespace

void TVELSecrets::Hide(std::string_view ASecret) {
  Add(ASecret);
  std::string Encoded = QuillonBase64::Encode(ASecret);
  Encoded.resize(Encoded.find_last_not_of('=') + 1);
  Add(Encoded);
  std::replace(Encoded.begin(), Encoded.end(), '+', '-');
  std::replace(Encoded.begin(), Encoded.end(), '/', '_');
  Add(Encoded);
}

void TVELSecrets::Add(std::string_view ASecret) {
  const std::string Known = QuillonText::CutAtCharacter(ASecret, MaxSecret);
  const TCharacters Plain = CharactersOf(LineOf(Known));
  if (!Plain.Text.empty()) {
    FSecrets.push_back({Plain.Text, Decoded(Plain).Text});
    FLongest = std::max(FLongest, Known.size());
  }
}

std::string TVELSecrets::Clean(std::string_view AText) const {
  const std::string Line = LineOf(AText.substr(0, MaxText + LongestNotation * FLongest));
  const std::size_t KeptSize = std::min(LineOf(QuillonText::CutAtCharacter(AText, MaxText)).size(), Line.size());
  const TCharacters Plain = CharactersOf(Line);
  const TCharacters Bare = Decoded(Plain);
  std::vector<bool> Marks(KeptSize);
  for (const TSecret& Secret : FSecrets) {
    Mark(Marks, Plain, Secret.Plain);
    Mark(Marks, Bare, Secret.Decoded);
  }
  std::string Result;
  for (std::size_t I = 0; I < KeptSize; ++I) {
    if (!Marks[I]) {
      Result.push_back(Line[I]);
    } else if (I == 0 || !Marks[I - 1]) {
      Result.append(Mask);
    }
  }
  return QuillonText::CutAtCharacter(Result, MaxText);
}
