#include "QuillonJson/ByteReader.h"

#include <string>

#include "QuillonJson/Document.h"

namespace {

constexpr unsigned ContinuationBits = 6;
constexpr std::uint32_t ContinuationMask = 0x3F;
constexpr std::uint32_t FirstPastUnit = 0x10000;

/// A row for each length of a sequence: the bits that mark its start byte, and the least character that needs it.
struct TForm {
  std::size_t Size;
  std::uint32_t Mask;
  std::uint32_t Mark;
  std::uint32_t Least;
};
constexpr std::array<TForm, 3> Forms{{{2, 0xE0, 0xC0, 0x80}, {3, 0xF0, 0xE0, 0x800}, {4, 0xF8, 0xF0, FirstPastUnit}}};

bool IsAscii(char AByte) { return static_cast<signed char>(AByte) >= 0; }

bool IsCharacter(std::uint32_t AValue) {
  constexpr std::uint32_t FirstSurrogate = 0xD800;
  constexpr std::uint32_t LastSurrogate = 0xDFFF;
  constexpr std::uint32_t Last = 0x10FFFF;
  return AValue <= Last && (AValue < FirstSurrogate || AValue > LastSurrogate);
}

const TForm& FormOf(std::uint32_t AStart, std::size_t AnOffset) {
  for (const TForm& Form : Forms) {
    if ((AStart & Form.Mask) == Form.Mark) {
      return Form;
    }
  }
  throw EQuillonJSONError("UTF8: Typ kann aus dem Header-Byte an Position " + std::to_string(AnOffset) +
                          " nicht ermittelt werden");
}

[[noreturn]] void ThrowUnexpected(std::size_t ASize, std::size_t AnOffset) {
  throw EQuillonJSONError("UTF8: Unerwartetes Fortsetzungs-Byte in " + std::to_string(ASize) +
                          "-Byte UTF8 an Position " + std::to_string(AnOffset));
}

}  // namespace

TQuillonJSONByteReader::TQuillonJSONByteReader(std::string_view AData, std::size_t AnOffset, std::size_t ARange,
                                               bool AnIsUtf8)
    : FData(AData), FOffset(AnOffset), FRange(ARange), FIsUTF8(AnIsUtf8) {
  constexpr std::string_view Mark = "\xEF\xBB\xBF";
  if (FData.substr(FOffset, FRange - FOffset).starts_with(Mark)) {
    FIsUTF8 = true;
    FOffset += Mark.size();
  }
}

char TQuillonJSONByteReader::PeekByte() {
  if (FUtf8offset == FUtf8length) {
    if (!FIsUTF8 || IsAscii(FData[FOffset])) {
      return FData[FOffset];
    }
    ReadCharacter();
  }
  return FUtf8data[FUtf8offset];
}

char TQuillonJSONByteReader::ConsumeByte() {
  const char Byte = PeekByte();
  if (FUtf8offset == FUtf8length) {
    ++FOffset;
  } else if (++FUtf8offset == FUtf8length) {
    FOffset += FSequenceSize;
  }
  return Byte;
}

void TQuillonJSONByteReader::ReadCharacter() {
  const auto Start = static_cast<std::uint8_t>(FData[FOffset]);
  const TForm& Form = FormOf(Start, FOffset);
  if (FRange - FOffset < Form.Size) {
    throw EQuillonJSONError("UTF8: Ein Start-Byte ohne ausreichende Anzahl von Fortsetzungs-Bytes an Position " +
                            std::to_string(FOffset));
  }
  std::uint32_t Value = Start & ~Form.Mask;
  for (std::size_t Index = 1; Index < Form.Size; ++Index) {
    const auto Next = static_cast<std::uint8_t>(FData[FOffset + Index]);
    if ((Next & ~ContinuationMask) != 0x80) {
      ThrowUnexpected(Form.Size, FOffset + Index);
    }
    Value = Value << ContinuationBits | (Next & ContinuationMask);
  }
  // Too long a form, half a surrogate pair, or past the last character: the byte behind the start is the one that
  // should have been another.
  if (Value < Form.Least || !IsCharacter(Value)) {
    ThrowUnexpected(Form.Size, FOffset + 1);
  }
  FUtf8offset = 0;
  FUtf8length = 0;
  FSequenceSize = Form.Size;
  if (Value < FirstPastUnit) {
    AppendUnit(Value);
    return;
  }
  constexpr std::uint32_t FirstLead = 0xD800;
  constexpr std::uint32_t FirstTrail = 0xDC00;
  constexpr std::uint32_t Half = 0x400;
  AppendUnit(FirstLead + (Value - FirstPastUnit) / Half);
  AppendUnit(FirstTrail + (Value - FirstPastUnit) % Half);
}

void TQuillonJSONByteReader::AppendUnit(std::uint32_t AUnit) {
  constexpr std::string_view Digits = "0123456789ABCDEF";
  FUtf8data[FUtf8length++] = '\\';
  FUtf8data[FUtf8length++] = 'u';
  for (int Shift = 12; Shift >= 0; Shift -= 4) {
    FUtf8data[FUtf8length++] = Digits[AUnit >> Shift & 0xF];
  }
}
