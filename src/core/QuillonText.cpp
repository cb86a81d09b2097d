#include "QuillonText.h"

#include <utf8.h>
#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <numeric>

#include "QuillonTextIO.h"

namespace {

constexpr char32_t Replacement = 0xFFFD;

constexpr char AsciiLower(char C) { return C >= 'A' && C <= 'Z' ? static_cast<char>(C + ('a' - 'A')) : C; }
constexpr char AsciiUpper(char C) { return C >= 'a' && C <= 'z' ? static_cast<char>(C - ('a' - 'A')) : C; }

/// Maps each code point; bytes that are no UTF-8 stay as they are.
template <class TAsciiMap, class TMap>
std::string MapCase(std::string_view AText, TAsciiMap AAsciiMap, TMap AMap) {
  std::string Result;
  Result.reserve(AText.size());
  if (QuillonText::IsAscii(AText)) {
    std::transform(AText.begin(), AText.end(), std::back_inserter(Result), AAsciiMap);
    return Result;
  }
  const auto* Next = reinterpret_cast<const utf8proc_uint8_t*>(AText.data());
  auto Left = static_cast<utf8proc_ssize_t>(AText.size());
  while (Left > 0) {
    utf8proc_int32_t CodePoint = 0;
    const utf8proc_ssize_t Length = utf8proc_iterate(Next, Left, &CodePoint);
    if (Length <= 0) {
      Result.push_back(static_cast<char>(*Next));
      ++Next;
      --Left;
      continue;
    }
    utf8::append(static_cast<std::uint32_t>(AMap(CodePoint)), std::back_inserter(Result));
    Next += Length;
    Left -= Length;
  }
  return Result;
}

}  // namespace

namespace QuillonText {

bool IsAscii(std::string_view AText) {
  return std::all_of(AText.begin(), AText.end(), [](char C) { return static_cast<signed char>(C) >= 0; });
}

int CompareOrdinal(std::string_view A, std::string_view B) {
  const auto [InA, InB] = std::mismatch(A.begin(), A.end(), B.begin(), B.end());
  if (InA == A.end() || InB == B.end()) {
    return static_cast<int>(InA != A.end()) - static_cast<int>(InB != B.end());
  }
  const auto ByteA = static_cast<std::uint8_t>(*InA);
  const auto ByteB = static_cast<std::uint8_t>(*InB);
  // Code points past U+FFFF are surrogates in UTF-16 and stand ahead of U+E000 to U+FFFF there.
  constexpr std::uint8_t FourByteLead = 0xF0;
  constexpr std::uint8_t PrivateUseLead = 0xEE;
  const bool LongA = ByteA >= FourByteLead;
  const bool LongB = ByteB >= FourByteLead;
  if (LongA != LongB && std::min(ByteA, ByteB) >= PrivateUseLead) {
    return LongA ? -1 : 1;
  }
  return ByteA < ByteB ? -1 : 1;
}

int CompareIgnoreCase(std::string_view A, std::string_view B) { return CompareOrdinal(ToLower(A), ToLower(B)); }

bool EqualsIgnoreCase(std::string_view A, std::string_view B) { return CompareIgnoreCase(A, B) == 0; }

int CompareIgnoreAsciiCase(std::string_view A, std::string_view B) {
  const auto [InA, InB] = std::mismatch(A.begin(), A.end(), B.begin(), B.end(),
                                        [](char CA, char CB) { return AsciiUpper(CA) == AsciiUpper(CB); });
  if (InA == A.end() || InB == B.end()) {
    return static_cast<int>(InA != A.end()) - static_cast<int>(InB != B.end());
  }
  const char CA = AsciiUpper(*InA);
  const char CB = AsciiUpper(*InB);
  return CompareOrdinal({&CA, 1}, {&CB, 1});
}

std::string ToLower(std::string_view AText) { return MapCase(AText, AsciiLower, utf8proc_tolower); }

std::string ToUpper(std::string_view AText) {
  return MapCase(AText, AsciiUpper, [](utf8proc_int32_t ACodePoint) {
    // Unicode has no simple mapping for it; the library's own choice is the capital letter U+1E9E.
    constexpr utf8proc_int32_t SharpS = 0xDF;
    return ACodePoint == SharpS ? ACodePoint : utf8proc_toupper(ACodePoint);
  });
}

std::size_t FindInvalidUtf8(std::string_view AText) {
  std::array<std::uint64_t, 8> Words;
  const char* Next = AText.data();
  const char* const End = Next + AText.size();
  while (Next != End) {
    // Plain ASCII, 64 bytes at a time: nearly all of a data file.
    const char* Stop = End;
    if (End - Next >= static_cast<std::ptrdiff_t>(sizeof Words)) {
      Stop = Next + sizeof Words;
      std::memcpy(Words.data(), Next, sizeof Words);
      if ((std::accumulate(Words.begin(), Words.end(), std::uint64_t{0}, std::bit_or<>()) & 0x8080808080808080U) == 0) {
        Next = Stop;
        continue;
      }
    }
    while (Next < Stop) {
      if (static_cast<signed char>(*Next) >= 0) {
        ++Next;
        continue;
      }
      const char* const Start = Next;
      try {
        utf8::next(Next, End);
      } catch (const utf8::exception&) {
        return static_cast<std::size_t>(Start - AText.data());
      }
    }
  }
  return std::string_view::npos;
}

char32_t TakeCharacter(std::string_view& AText) {
  utf8proc_int32_t Char = 0;
  const utf8proc_ssize_t Length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(AText.data()),
                                                   static_cast<utf8proc_ssize_t>(AText.size()), &Char);
  AText.remove_prefix(Length > 0 ? static_cast<std::size_t>(Length) : 1);
  return Length > 0 ? static_cast<char32_t>(Char) : Replacement;
}

std::string FromUtf16(std::string_view ABytes, bool AnIsBigEndian) {
  constexpr std::size_t BufferSize = 65'536;
  TQuillonMemoryStream Stream{std::string(ABytes)};
  TQuillonTextReader Reader(Stream, AnIsBigEndian ? TQuillonEncoding::Utf16BE : TQuillonEncoding::Utf16LE, true,
                            BufferSize);
  std::string Text;
  for (char32_t Char = 0; Reader.Read(Char);) {
    utf8::append(Char, std::back_inserter(Text));
  }
  return Text;
}

void AppendUtf16LE(std::string& ATarget, std::string_view ABytes) {
  constexpr std::uint32_t FirstHigh = 0xD800;
  constexpr std::uint32_t FirstLow = 0xDC00;
  constexpr std::uint32_t SurrogateMask = 0xFC00;
  const std::size_t Count = ABytes.size() / 2;
  const auto UnitAt = [ABytes](std::size_t AnIndex) -> std::uint32_t {
    const auto Low = static_cast<std::uint8_t>(ABytes[2 * AnIndex]);
    const auto High = static_cast<std::uint8_t>(ABytes[2 * AnIndex + 1]);
    return static_cast<std::uint32_t>(Low | High << 8);
  };
  ATarget.reserve(ATarget.size() + Count);
  for (std::size_t I = 0; I < Count; ++I) {
    std::uint32_t Char = UnitAt(I);
    if (Char < 0x80) {
      ATarget.push_back(static_cast<char>(Char));
      continue;
    }
    if ((Char & SurrogateMask) == FirstHigh && I + 1 < Count && (UnitAt(I + 1) & SurrogateMask) == FirstLow) {
      ++I;
      Char = 0x10000 + ((Char - FirstHigh) << 10) + (UnitAt(I) - FirstLow);
    } else if ((Char & SurrogateMask) == FirstHigh || (Char & SurrogateMask) == FirstLow) {
      Char = Replacement;
    }
    utf8::unchecked::append(Char, std::back_inserter(ATarget));
  }
}

std::string ToUtf16LE(std::string_view AText) {
  std::string Bytes;
  Bytes.reserve(2 * AText.size());
  const auto Append = [&Bytes](std::uint16_t AUnit) {
    Bytes.push_back(static_cast<char>(AUnit & 0xFF));
    Bytes.push_back(static_cast<char>(AUnit >> 8));
  };
  if (IsAscii(AText)) {
    std::for_each(AText.begin(), AText.end(), [&](char C) { Append(static_cast<std::uint8_t>(C)); });
    return Bytes;
  }
  const std::string Valid = ReplaceInvalidUtf8(AText);
  std::u16string Units;
  utf8::unchecked::utf8to16(Valid.begin(), Valid.end(), std::back_inserter(Units));
  std::for_each(Units.begin(), Units.end(), [&](char16_t AUnit) { Append(AUnit); });
  return Bytes;
}

std::string ReplaceInvalidUtf8(std::string_view AText) {
  std::string Valid;
  utf8::replace_invalid(AText.begin(), AText.end(), std::back_inserter(Valid), Replacement);
  return Valid;
}

std::string OneLine(std::string_view AText) {
  constexpr unsigned char Delete = 0x7F;
  // U+0080 to U+009F, which a terminal obeys as it does those of ASCII.
  constexpr unsigned char LeadOfControl = 0xC2;
  constexpr unsigned char FirstTrail = 0x80;
  constexpr unsigned char LastTrail = 0x9F;
  std::string Line;
  Line.reserve(AText.size());
  bool IsInBreak = false;
  const auto ByteAt = [AText](std::size_t AnIndex) {
    return static_cast<unsigned char>(AnIndex < AText.size() ? AText[AnIndex] : '\0');
  };
  for (std::size_t I = 0; I < AText.size(); ++I) {
    const unsigned char Byte = ByteAt(I);
    const unsigned char Next = ByteAt(I + 1);
    const bool IsLong = Byte == LeadOfControl && Next >= FirstTrail && Next <= LastTrail;
    const bool IsControl = Byte < ' ' || Byte == Delete || IsLong;
    if (!IsControl) {
      Line.push_back(AText[I]);
    } else if (!IsInBreak) {
      Line.push_back(' ');
    }
    I += IsLong ? 1 : 0;
    IsInBreak = IsControl;
  }
  return Line;
}

std::string JoinLines(std::span<const std::string> ALines) {
  std::string Text;
  for (const std::string& Line : ALines) {
    Text.append(Line).append("\r\n");
  }
  return Text;
}

std::vector<std::string> SplitLines(std::string_view AText) {
  std::vector<std::string> Lines;
  while (!AText.empty()) {
    const std::string_view Line = AText.substr(0, AText.find_first_of("\r\n"));
    Lines.emplace_back(Line);
    AText.remove_prefix(Line.size());
    AText.remove_prefix(AText.starts_with("\r\n") ? 2 : std::min<std::size_t>(AText.size(), 1));
  }
  return Lines;
}

std::string CutAtCharacter(std::string_view AText, std::size_t ALength) {
  constexpr std::size_t MostContinuations = 3;
  const auto IsContinuation = [](char C) { return (static_cast<unsigned char>(C) & 0xC0) == 0x80; };
  std::size_t End = std::min(ALength, AText.size());
  while (End < AText.size() && End + MostContinuations > ALength && IsContinuation(AText[End])) {
    --End;
  }
  return std::string(AText.substr(0, End));
}

std::string Quoted(std::string_view AText) {
  constexpr std::size_t Longest = 100;
  return "\"" + CutAtCharacter(AText, Longest) + "\"";
}

}  // namespace QuillonText
