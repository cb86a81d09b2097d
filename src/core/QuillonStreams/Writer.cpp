#include "QuillonStreams/Writer.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "QuillonStreams/Extended.h"
#include "QuillonText.h"

TCurrency TCurrency::Of(double AnAmount) {
  constexpr double Limit = 0x1p63;
  const double Scaled = std::nearbyint(AnAmount * 10'000);
  if (!(Scaled >= -Limit && Scaled < Limit)) {
    throw EQuillonConvertError("Der Betrag ist zu groß.");
  }
  return {static_cast<std::int64_t>(Scaled)};
}

void TQuillonWriter::WriteThrough(std::string_view ABytes) {
  if (Write(ABytes) != ABytes.size()) {
    throw EQuillonWriterError();
  }
}

void TQuillonWriter::WriteLength(std::uint64_t ALength) {
  if (ALength > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max())) {
    throw EQuillonWriterError();
  }
  WriteLongInt(static_cast<std::int32_t>(ALength));
}

/// @param ASource gives the piece at a place, of a size
template <class TSource>
void TQuillonWriter::WritePieces(std::size_t ASize, TSource ASource) {
  WriteLength(ASize);
  for (std::size_t Done = 0; Done < ASize;) {
    const std::string_view Piece = ASource(Done, std::min(ASize - Done, QuillonStreams::PieceSize));
    WriteAll(Piece);
    Done += Piece.size();
    QuillonStreams::Report(FOnProgress, Done, ASize);
  }
}

void TQuillonWriter::WriteExtended(double AValue) {
  const QuillonExtended::TBytes Bytes = QuillonExtended::Encode(AValue);
  WriteAll({reinterpret_cast<const char*>(Bytes.data()), Bytes.size()});
}

void TQuillonWriter::WriteGuid(const TGUID& AValue) {
  std::array<char, QuillonStreams::GuidPlaces.size()> Bytes{};
  for (std::size_t I = 0; I < Bytes.size(); ++I) {
    Bytes[I] = static_cast<char>(AValue.Bytes[QuillonStreams::GuidPlaces[I]]);
  }
  WriteAll({Bytes.data(), Bytes.size()});
}

void TQuillonWriter::WriteString(std::string_view AValue) {
  const auto Room = static_cast<std::size_t>(FRoomEnd - FRoom);
  if (AValue.size() < Room / 2 && 2 * AValue.size() + sizeof(std::int32_t) < Room && QuillonText::IsAscii(AValue)) {
    WriteLength(AValue.size());
    for (const char C : AValue) {
      *FRoom++ = C;
      *FRoom++ = '\0';
    }
    return;
  }
  const std::string Units = QuillonText::ToUtf16LE(AValue);
  WriteLength(Units.size() / 2);
  WriteAll(Units);
}

void TQuillonWriter::WriteUtf8String(std::string_view AValue) {
  if (QuillonText::FindInvalidUtf8(AValue) == std::string_view::npos) {
    WriteBinary(AValue);
  } else {
    WriteBinary(QuillonText::ReplaceInvalidUtf8(AValue));
  }
}

void TQuillonWriter::WriteStrings(std::span<const std::string> AValue) { WriteString(QuillonText::JoinLines(AValue)); }

void TQuillonWriter::WriteBinary(std::string_view ABytes) {
  WritePieces(ABytes.size(), [&](std::size_t APlace, std::size_t ASize) { return ABytes.substr(APlace, ASize); });
}

void TQuillonWriter::WriteBinary(TQuillonStream& AStream) {
  AStream.Seek(0, TQuillonSeekOrigin::Begin);
  std::string Piece;
  WritePieces(static_cast<std::size_t>(AStream.Size()), [&](std::size_t /*APlace*/, std::size_t ASize) {
    Piece.resize(ASize);
    AStream.ReadBuffer(Piece);
    return std::string_view(Piece);
  });
}

void TQuillonWriter::WriteBrush(const TQuillonBrush& AValue) {
  WriteColor(AValue.Color);
  WriteByte(AValue.Style);
}

void TQuillonWriter::WritePen(const TQuillonPen& AValue) {
  WriteColor(AValue.Color);
  WriteByte(AValue.Mode);
  WriteByte(AValue.Style);
  WriteLongInt(AValue.Width);
}

void TQuillonWriter::WriteFont(const TQuillonFont& AValue) {
  WriteString(AValue.Name);
  WriteColor(AValue.Color);
  WriteLongInt(AValue.Size);
  WriteByte(AValue.Styles);
}

TQuillonStreamWriter::TQuillonStreamWriter(TQuillonStream& AStream, std::size_t ABufferSize)
    : FStream(AStream), FBuffer(ABufferSize, '\0') {
  FRoom = FBuffer.data();
  FRoomEnd = FRoom + FBuffer.size();
}

TQuillonStreamWriter::~TQuillonStreamWriter() {
  try {
    TQuillonStreamWriter::FlushBuffer();
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): a destructor has nobody to tell
  }
}

void TQuillonStreamWriter::FlushBuffer() {
  const std::string_view Filled(FBuffer.data(), static_cast<std::size_t>(FRoom - FBuffer.data()));
  FRoom = FBuffer.data();
  if (!Filled.empty()) {
    FStream.Write(Filled);
  }
}

std::size_t TQuillonStreamWriter::Write(std::string_view ABytes) {
  if (FBuffer.empty()) {
    FStream.Write(ABytes);
    return ABytes.size();
  }
  for (std::string_view Left = ABytes; !Left.empty();) {
    const std::size_t Count = std::min(Left.size(), static_cast<std::size_t>(FRoomEnd - FRoom));
    std::memcpy(FRoom, Left.data(), Count);
    FRoom += Count;
    Left.remove_prefix(Count);
    if (FRoom == FRoomEnd) {
      FlushBuffer();
    }
  }
  return ABytes.size();
}
