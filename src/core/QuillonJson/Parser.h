#pragma once

#include <string_view>

#include "QuillonJson/ByteReader.h"
#include "QuillonJson/Document.h"

/// Levels that the parser takes: little enough for any stack, and far more than a document has reason to have.
inline constexpr int QuillonJSONMaxLevels = 64;

/// Reads values off a byte reader. Each step returns the offset behind what it took, or the failure's, negated; a
/// failure at the very begin, which has no negative, is -1. After a failure the reader is of no more use.
class TQuillonJSONParser {
 public:
  explicit TQuillonJSONParser(TQuillonJSONByteReader& AReader) : FReader(AReader) {}

  /// One value of any kind with the white space ahead of it.
  std::int64_t ParseValue(TQuillonJSONOwner<TQuillonJSONValue>& AResult);
  /// An object's members with the white space ahead of it.
  std::int64_t ParseObject(TQuillonJSONObject& AResult);

  std::int64_t Failure() const;

 private:
  void SkipBlanks();
  bool NextIs(char AByte);
  bool Take(char AByte);
  std::int64_t Position() const { return static_cast<std::int64_t>(FReader.Offset()); }

  std::int64_t ParseArray(TQuillonJSONArray& AResult);
  std::int64_t ParsePair(TQuillonJSONObject& AResult);
  std::int64_t ParseString(TQuillonJSONString& AResult);
  bool ParseEscape(TQuillonJSONString& AResult);
  bool ParseUnit(std::uint32_t& AResult);
  void EndSurrogate(TQuillonJSONString& AResult);
  std::int64_t ParseNumber(TQuillonJSONOwner<TQuillonJSONValue>& AResult);
  bool TakeDigits(std::string& ADigits);
  std::int64_t ParseWord(TQuillonJSONOwner<TQuillonJSONValue>& AResult);

  TQuillonJSONByteReader& FReader;
  int FLevel = 0;
  /// The first half of a surrogate pair whose second has not come yet, or 0.
  std::uint32_t FLead = 0;
};

namespace QuillonJson {

/// The one value that the bytes are, to the last byte: nothing but white space may stand ahead of it, and nothing
/// behind. Without UTF-8 each byte is one character.
/// @return nullptr for any other bytes
/// @throws EQuillonJSONError for bytes that are no UTF-8 where they must be
TQuillonJSONOwner<TQuillonJSONValue> ParseJSONValue(std::string_view AData, std::size_t AnOffset, std::size_t ACount,
                                                    bool AnIsUtf8);
/// As the other one, for a text, which is UTF-8.
TQuillonJSONOwner<TQuillonJSONValue> ParseJSONValue(std::string_view AText);

}  // namespace QuillonJson
