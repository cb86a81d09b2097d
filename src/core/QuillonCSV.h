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
  /// @throws EQuillonCSVReaderError for a quote within a plain field or text behind a closing one
  std::optional<TQuillonCSVLine> ReadLine();

  bool FAllowComments = false;
  bool FIgnoreQuotes = false;
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

  TQuillonTextReader FTextReader;
  std::string FToken;
};

/// Writes fields and lines. A value is quoted when it holds a quote, a line break or the separator.
class TQuillonCSVWriter {
 public:
  TQuillonCSVWriter(TQuillonStream& AStream, bool DoWriteBOM, std::size_t ABufferSize);
  TQuillonCSVWriter(TQuillonStream& AStream, TQuillonEncoding AnEncoding, bool DoWriteBOM, std::size_t ABufferSize);

  void WriteValue(std::string_view AValue);
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
