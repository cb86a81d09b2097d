#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonTextIO.h"
#include "QuillonTypes.h"

/// A line that breaks the format; the message names it.
class EQuillonCSVReaderError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

using TQuillonCSVLine = std::vector<std::string>;

/// Fields of a text with separators. Blanks ahead of a field are passed over, and so are empty lines. A line break
/// right behind a separator ends the line without a further field: "a;b;" has two.
class TQuillonCSVReader {
 public:
  TQuillonCSVReader(TQuillonStream& AStream, bool DoDetectBOM, std::size_t ABufferSize);
  TQuillonCSVReader(TQuillonStream& AStream, TQuillonEncoding AnEncoding, bool DoDetectBOM, std::size_t ABufferSize);

  /// The fields of the next line that has any; nothing at the end.
  /// @throws EQuillonCSVReaderError for a quote within a plain field or text behind a closing one, and where FStrict
  ///   is set
  std::optional<TQuillonCSVLine> ReadLine();
  /// The line of the text in which the last line of fields begins, from 1: one of its fields may take several.
  int TextLine() const { return FTextLine; }
  /// How many fields of the last line were read; where an error ended it, how many stand ahead of that.
  std::size_t FieldCount() const { return FFieldCount; }

  bool FAllowComments = false;
  bool FIgnoreQuotes = false;
  /// What is no text in its encoding is an error, and so are a quote that is never closed and a line of more than
  /// 1,000,000 fields.
  bool FStrict = false;
  char FComment = '#';
  char FSeparator = ';';
  int FLineCount = 0;  ///< calls of ReadLine

 private:
  enum class CharClass { Space, Comment, EndOfLine, Quote, Separator, Normal };
  struct Token {
    bool Counts = false;
    bool EndsLine = false;
    bool EndsFile = false;
  };

  CharClass Classify(char32_t AChar) const;
  Token ReadToken();
  void PassLineBreak(char32_t AChar);
  void CheckEncoding() const;

  TQuillonTextReader FTextReader;
  std::string FToken;
  std::size_t FFieldCount = 0;
  int FTextLine = 1;
  int FNextTextLine = 1;
  bool FWasCarriageReturn = false;
};

/// Writes fields and lines. A value is quoted when it holds a quote, a line break or the separator.
class TQuillonCSVWriter {
 public:
  TQuillonCSVWriter(TQuillonStream& AStream, bool DoWriteBOM, std::size_t ABufferSize);
  TQuillonCSVWriter(TQuillonStream& AStream, TQuillonEncoding AnEncoding, bool DoWriteBOM, std::size_t ABufferSize);

  void WriteValue(std::string_view AValue);
  /// Lets a function append a value that is not empty and has nothing to be quoted for. For UTF-8 only.
  template <class TAppend>
  void WritePlain(const TAppend& AnAppend) {
    FTextWriter.WriteBy([&](std::string& ABuffer) {
      if (FWasPreviousField) {
        ABuffer.push_back(FSeparator);
      }
      AnAppend(ABuffer);
    });
    FWasPreviousField = true;
  }
  /// Writes each value; the line is not ended.
  void WriteValues(std::span<const std::string> AValues);
  /// Ends the line. The line break itself comes with the next text.
  void WriteLine();
  /// WriteValues, then WriteLine; nothing at all for a null pointer.
  void WriteLine(const TQuillonCSVLine* ALine);
  /// A comment on a line of its own, quoted like a value where it needs to be.
  void WriteComment(std::string_view AText);
  /// Hands over to the stream what is still in the buffer, and raises what goes wrong there; the destructor only tries.
  void FlushBuffer() { FTextWriter.FlushBuffer(); }

  bool FForceQuotes = false;
  bool FNoEmptyQuotes = false;  ///< with FForceQuotes: empty values stay without quotes
  char FComment = '#';
  char FSeparator = ';';

 private:
  void WriteQuoted(std::string_view AValue);

  TQuillonTextWriter FTextWriter;
  std::string FQuoted;
  bool FWasPreviousField = false;
};
