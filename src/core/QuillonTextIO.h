#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "QuillonIO.h"

/// Encodings of text in files; in memory text is always UTF-8.
enum class TQuillonEncoding {
  Utf8,
  Latin1,  ///< ISO 8859-1: one byte each, the code point itself
  Utf16LE,
  Utf16BE
};

/// Characters and lines of a stream. What is wrong in its encoding is read as U+FFFD, and counted.
class TQuillonTextReader {
 public:
  /// The stream must outlive the reader, which reads ahead in pieces of the buffer's size.
  TQuillonTextReader(TQuillonStream& AStream, bool DoDetectBOM, std::size_t ABufferSize);
  TQuillonTextReader(TQuillonStream& AStream, TQuillonEncoding AnEncoding, bool DoDetectBOM, std::size_t ABufferSize);
  TQuillonTextReader(const TQuillonTextReader&) = delete;
  TQuillonTextReader& operator=(const TQuillonTextReader&) = delete;
  virtual ~TQuillonTextReader() = default;

  /// The next character. A UTF-8 sequence is as long as its first byte tells, whatever the others are.
  /// @return false at the end
  virtual bool Read(char32_t& AChar);
  /// The next line that is not empty, without its line break; empty at the end.
  std::string ReadLine();
  /// Passes over a byte order mark and takes over its encoding.
  void TryReadBOM();
  /// Reads characters as long as they match AStr, and the first that does not. @param AStrRead all that were read
  bool TryReadStr(std::string_view AStr, std::string& AStrRead);
  /// As TryReadStr; a-z and A-Z are alike.
  bool TryReadText(std::string_view AText, std::string& ATextRead);

  TQuillonEncoding Encoding() const { return FEncoding; }
  /// How many sequences of bytes so far were no characters.
  std::size_t InvalidCount() const { return FInvalidCount; }

  std::string FLineBreak = "\r\n";  ///< each of its characters ends a line

 private:
  bool ReadByte(std::uint8_t& AByte);
  bool ReadUnit(std::uint16_t& AUnit);
  bool Fill(std::size_t ACount);
  char32_t Invalid();
  char32_t ReadUtf8(std::uint8_t AFirst);
  char32_t ReadUtf16(std::uint16_t AFirst);
  template <class TFold>
  bool TryReadFolded(std::string_view AStr, std::string& AStrRead, TFold AFold);

  TQuillonStream& FStream;
  TQuillonEncoding FEncoding;
  std::string FBuffer;
  std::size_t FBufferSize;
  std::size_t FNext = 0;
  std::size_t FInvalidCount = 0;
};

/// Lines of text into a stream. A line break is written only ahead of more text: a file never ends in one, and empty
/// lines leave nothing.
class TQuillonTextWriter {
 public:
  /// The stream must outlive the writer, which hands over its text in pieces of about the buffer's size.
  TQuillonTextWriter(TQuillonStream& AStream, bool DoWriteBOM, std::size_t ABufferSize);
  TQuillonTextWriter(TQuillonStream& AStream, TQuillonEncoding AnEncoding, bool DoWriteBOM, std::size_t ABufferSize);
  TQuillonTextWriter(const TQuillonTextWriter&) = delete;
  TQuillonTextWriter& operator=(const TQuillonTextWriter&) = delete;
  /// Flushes; call FlushBuffer to see whether that worked.
  virtual ~TQuillonTextWriter();

  virtual void Write(std::string_view AText);
  /// Lets a function append a text that is not empty, straight to the buffer. For writers of UTF-8 only.
  template <class TAppend>
  void WriteBy(const TAppend& AnAppend) {
    if (FEndOfLine) {
      FEndOfLine = false;
      FBuffer.append(FLineBreak);
    }
    AnAppend(FBuffer);
    if (FBuffer.size() >= FBufferSize) {
      FlushBuffer();
    }
  }
  void WriteLine() { FEndOfLine = true; }
  void WriteLine(std::string_view AText);
  /// The byte order mark of the encoding, if it has one.
  void WriteBOM();
  /// Hands over to the stream what is still in the buffer.
  void FlushBuffer();

  TQuillonEncoding Encoding() const { return FEncoding; }

  std::string FLineBreak = "\r\n";

 private:
  void Append(std::string_view AText);

  TQuillonStream& FStream;
  TQuillonEncoding FEncoding;
  bool FEndOfLine = false;
  std::string FBuffer;
  std::size_t FBufferSize;
};
