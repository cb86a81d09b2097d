#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Text is UTF-8 throughout; these are the few operations that must know so.
namespace QuillonText {

/// Negative, zero or positive: order by UTF-16 code units, the ordinal order of the product's text.
int CompareOrdinal(std::string_view A, std::string_view B);

/// As CompareOrdinal, after both sides were put into lower case.
int CompareIgnoreCase(std::string_view A, std::string_view B);
bool EqualsIgnoreCase(std::string_view A, std::string_view B);

/// As CompareOrdinal, with the letters a to z as their capitals and all others as they stand.
int CompareIgnoreAsciiCase(std::string_view A, std::string_view B);

/// Simple case mapping of Unicode, one code point to one: "ß" stays as it is.
std::string ToLower(std::string_view AText);
std::string ToUpper(std::string_view AText);

/// Offset of the first byte that is no well-formed UTF-8, or npos.
std::size_t FindInvalidUtf8(std::string_view AText);

/// Takes the first character off a text that is not empty; a byte that is no UTF-8 counts as U+FFFD.
char32_t TakeCharacter(std::string_view& AText);

/// UTF-16 in bytes, with or without its byte order mark, as UTF-8; half a surrogate pair and half a unit at the end
/// become U+FFFD.
std::string FromUtf16(std::string_view ABytes, bool AnIsBigEndian);

/// Whether all bytes are ASCII.
bool IsAscii(std::string_view AText);

/// Appends UTF-16 in bytes, the low one first, as UTF-8. A byte order mark is a character like any other; half a
/// surrogate pair becomes U+FFFD. @param ABytes two for each unit
void AppendUtf16LE(std::string& ATarget, std::string_view ABytes);
/// The text's UTF-16 in bytes, the low one first, after ReplaceInvalidUtf8.
std::string ToUtf16LE(std::string_view AText);

/// The text with U+FFFD in place of what is no well-formed UTF-8.
std::string ReplaceInvalidUtf8(std::string_view AText);

/// The text with each run of control characters, line breaks among them, turned into one blank.
std::string OneLine(std::string_view AText);

/// One text in which CR LF follows each line.
std::string JoinLines(std::span<const std::string> ALines);
/// The lines of a text; CR, LF and the two together end one.
std::vector<std::string> SplitLines(std::string_view AText);

/// The begin of the text, of at most ALength bytes, without a part of a character at its end.
std::string CutAtCharacter(std::string_view AText, std::size_t ALength);

/// The text in double quotes as messages repeat it: of a long one only the first 100 bytes, cut between characters.
std::string Quoted(std::string_view AText);

}  // namespace QuillonText
