#include "QuillonTextIO.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

#include "QuillonText.h"

namespace {

constexpr char32_t Replacement = 0xFFFD;
struct TMark {
  TQuillonEncoding Encoding;
  std::string_view Bytes;
};
constexpr std::array<TMark, 3> Marks = {{{TQuillonEncoding::Utf8, "\xEF\xBB\xBF"},
                                         {TQuillonEncoding::Utf16LE, "\xFF\xFE"},
                                         {TQuillonEncoding::Utf16BE, "\xFE\xFF"}}};

/// Longest sequence of bytes that is looked at in one go.
constexpr std::size_t LongestUnit = 4;

bool IsUtf16(TQuillonEncoding AnEncoding) {
  return AnEncoding == TQuillonEncoding::Utf16LE || AnEncoding == TQuillonEncoding::Utf16BE;
}

bool IsHighSurrogate(char32_t AUnit) { return AUnit >= 0xD800 && AUnit <= 0xDBFF; }
bool IsLowSurrogate(char32_t AUnit) { return AUnit >= 0xDC00 && AUnit <= 0xDFFF; }

char32_t AsciiUpper(char32_t AChar) { return AChar >= U'a' && AChar <= U'z' ? AChar - U'a' + U'A' : AChar; }

void AppendUtf16(std::string& ATarget, char32_t ACodePoint, TQuillonEncoding AnEncoding) {
  const auto AppendUnit = [&](char32_t AUnit) {
    const auto Low = static_cast<char>(AUnit & 0xFF);
    const auto High = static_cast<char>(AUnit >> 8);
    const bool IsLowFirst = AnEncoding == TQuillonEncoding::Utf16LE;
    ATarget.push_back(IsLowFirst ? Low : High);
    ATarget.push_back(IsLowFirst ? High : Low);
  };
  if (ACodePoint > 0xFFFF) {
    AppendUnit(0xD800 + ((ACodePoint - 0x10000) >> 10));
    AppendUnit(0xDC00 + (ACodePoint & 0x3FF));
  } else {
    AppendUnit(ACodePoint);
  }
}

/// Appends text in another encoding than its own.
void AppendEncoded(std::string& ATarget, std::string_view AText, TQuillonEncoding AnEncoding) {
  const std::string Valid = QuillonText::ReplaceInvalidUtf8(AText);
  for (auto Next = Valid.cbegin(); Next != Valid.cend();) {
    const auto CodePoint = static_cast<char32_t>(utf8::unchecked::next(Next));
    if (IsUtf16(AnEncoding)) {
      AppendUtf16(ATarget, CodePoint, AnEncoding);
    } else {
      ATarget.push_back(CodePoint <= 0xFF ? static_cast<char>(CodePoint) : '?');
    }
  }
}

}  // namespace

TQuillonTextReader::TQuillonTextReader(TQuillonStream& AStream, bool DoDetectBOM, std::size_t ABufferSize)
    : TQuillonTextReader(AStream, TQuillonEncoding::Utf8, DoDetectBOM, ABufferSize) {}

TQuillonTextReader::TQuillonTextReader(TQuillonStream& AStream, TQuillonEncoding AnEncoding, bool DoDetectBOM,
                                       std::size_t ABufferSize)
    : FStream(AStream), FEncoding(AnEncoding), FBufferSize(std::max(ABufferSize, LongestUnit)) {
  if (DoDetectBOM) {
    TryReadBOM();
  }
}

/// Sees to it that ACount bytes stand in the buffer, unless the stream has no more.
bool TQuillonTextReader::Fill(std::size_t ACount) {
  while (FBuffer.size() - FNext < ACount) {
    FBuffer.erase(0, FNext);
    FNext = 0;
    const std::size_t Length = FBuffer.size();
    FBuffer.resize(FBufferSize);
    const std::size_t Got = FStream.Read(std::span(FBuffer).subspan(Length));
    FBuffer.resize(Length + Got);
    if (Got == 0) {
      return false;
    }
  }
  return true;
}

bool TQuillonTextReader::ReadByte(std::uint8_t& AByte) {
  if (FNext == FBuffer.size() && !Fill(1)) {
    return false;
  }
  AByte = static_cast<std::uint8_t>(FBuffer[FNext++]);
  return true;
}

/// Half a unit at the end of the stream is none.
bool TQuillonTextReader::ReadUnit(std::uint16_t& AUnit) {
  std::uint8_t First = 0;
  std::uint8_t Second = 0;
  if (!ReadByte(First)) {
    return false;
  }
  if (!ReadByte(Second)) {
    Invalid();
    return false;
  }
  const bool IsLowFirst = FEncoding == TQuillonEncoding::Utf16LE;
  AUnit = static_cast<std::uint16_t>(IsLowFirst ? First | (Second << 8) : Second | (First << 8));
  return true;
}

char32_t TQuillonTextReader::Invalid() {
  ++FInvalidCount;
  return Replacement;
}

char32_t TQuillonTextReader::ReadUtf8(std::uint8_t AFirst) {
  constexpr std::uint8_t ThreeByteFlag = 0x20;
  constexpr std::uint8_t FourByteFlags = 0xF0;
  std::string Sequence(1, static_cast<char>(AFirst));
  const bool IsFour = (AFirst & FourByteFlags) == FourByteFlags;
  const std::size_t Length = IsFour ? 4 : ((AFirst & ThreeByteFlag) != 0 ? 3 : 2);
  for (std::uint8_t Byte = 0; Sequence.size() < Length && ReadByte(Byte);) {
    Sequence.push_back(static_cast<char>(Byte));
  }
  if (!utf8::is_valid(Sequence) || utf8::distance(Sequence.begin(), Sequence.end()) != 1) {
    return Invalid();
  }
  return utf8::peek_next(Sequence.begin(), Sequence.end());
}

char32_t TQuillonTextReader::ReadUtf16(std::uint16_t AFirst) {
  if (!IsHighSurrogate(AFirst)) {
    return IsLowSurrogate(AFirst) ? Invalid() : AFirst;
  }
  constexpr std::size_t UnitSize = 2;
  if (!Fill(UnitSize)) {
    return Invalid();
  }
  const std::size_t Place = FNext;
  std::uint16_t Second = 0;
  ReadUnit(Second);
  if (!IsLowSurrogate(Second)) {
    FNext = Place;
    return Invalid();
  }
  return 0x10000 + ((AFirst - char32_t{0xD800}) << 10) + (Second - char32_t{0xDC00});
}

bool TQuillonTextReader::Read(char32_t& AChar) {
  if (IsUtf16(FEncoding)) {
    std::uint16_t Unit = 0;
    if (!ReadUnit(Unit)) {
      return false;
    }
    AChar = ReadUtf16(Unit);
    return true;
  }
  constexpr std::uint8_t LastAscii = 0x7F;
  std::uint8_t Byte = 0;
  if (!ReadByte(Byte)) {
    return false;
  }
  AChar = Byte <= LastAscii || FEncoding == TQuillonEncoding::Latin1 ? Byte : ReadUtf8(Byte);
  return true;
}

std::string TQuillonTextReader::ReadLine() {
  std::string Line;
  for (char32_t C = 0; Read(C);) {
    if (C <= 0x7F && FLineBreak.find(static_cast<char>(C)) != std::string::npos) {
      if (!Line.empty()) {
        break;
      }
    } else {
      utf8::append(C, std::back_inserter(Line));
    }
  }
  return Line;
}

void TQuillonTextReader::TryReadBOM() {
  Fill(LongestUnit);
  const std::string_view Ahead = std::string_view(FBuffer).substr(FNext);
  for (const TMark& Mark : Marks) {
    if (Ahead.starts_with(Mark.Bytes)) {
      FEncoding = Mark.Encoding;
      FNext += Mark.Bytes.size();
      return;
    }
  }
}

template <class TFold>
bool TQuillonTextReader::TryReadFolded(std::string_view AStr, std::string& AStrRead, TFold AFold) {
  AStrRead.clear();
  for (auto Next = AStr.begin(); Next != AStr.end();) {
    char32_t C = 0;
    if (!Read(C)) {
      return false;
    }
    utf8::append(C, std::back_inserter(AStrRead));
    if (AFold(C) != AFold(utf8::next(Next, AStr.end()))) {
      return false;
    }
  }
  return true;
}

bool TQuillonTextReader::TryReadStr(std::string_view AStr, std::string& AStrRead) {
  return TryReadFolded(AStr, AStrRead, [](char32_t C) { return C; });
}

bool TQuillonTextReader::TryReadText(std::string_view AText, std::string& ATextRead) {
  return TryReadFolded(AText, ATextRead, AsciiUpper);
}

TQuillonTextWriter::TQuillonTextWriter(TQuillonStream& AStream, bool DoWriteBOM, std::size_t ABufferSize)
    : TQuillonTextWriter(AStream, TQuillonEncoding::Utf8, DoWriteBOM, ABufferSize) {}

TQuillonTextWriter::TQuillonTextWriter(TQuillonStream& AStream, TQuillonEncoding AnEncoding, bool DoWriteBOM,
                                       std::size_t ABufferSize)
    : FStream(AStream), FEncoding(AnEncoding), FBufferSize(ABufferSize) {
  if (DoWriteBOM) {
    WriteBOM();
  }
}

TQuillonTextWriter::~TQuillonTextWriter() {
  try {
    FlushBuffer();
  } catch (const EQuillonException&) {
    // Whoever wants to know has flushed before.
  }
}

void TQuillonTextWriter::Write(std::string_view AText) {
  if (AText.empty()) {
    return;
  }
  if (FEndOfLine) {
    FEndOfLine = false;
    Append(FLineBreak);
  }
  Append(AText);
  if (FBuffer.size() >= FBufferSize) {
    FlushBuffer();
  }
}

void TQuillonTextWriter::WriteLine(std::string_view AText) {
  Write(AText);
  WriteLine();
}

void TQuillonTextWriter::WriteBOM() {
  for (const TMark& Mark : Marks) {
    if (Mark.Encoding == FEncoding) {
      FBuffer.append(Mark.Bytes);
    }
  }
}

void TQuillonTextWriter::Append(std::string_view AText) {
  if (FEncoding == TQuillonEncoding::Utf8) {
    FBuffer.append(AText);
  } else {
    AppendEncoded(FBuffer, AText, FEncoding);
  }
}

void TQuillonTextWriter::FlushBuffer() {
  if (!FBuffer.empty()) {
    FStream.Write(FBuffer);
    FBuffer.clear();
  }
}
