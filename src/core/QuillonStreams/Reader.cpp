#include "QuillonStreams/Reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "QuillonStreams/Extended.h"
#include "QuillonText.h"

namespace {

/// How far a block's room runs ahead of its bytes, so that few of them move when it grows; room that stays empty takes
/// no memory.
constexpr std::size_t Headway = 8;

}  // namespace

void TQuillonReader::ReadThrough(std::span<char> ABuffer) {
  if (Read(ABuffer) != ABuffer.size()) {
    throw EQuillonReaderError();
  }
}

std::size_t TQuillonReader::ReadLength() {
  const std::int32_t Length = ReadLongInt();
  if (Length < 0) {
    throw EQuillonReaderError();
  }
  return static_cast<std::size_t>(Length);
}

std::string TQuillonReader::ReadBlock(std::size_t ASize, const TQuillonStreamProgressEvent& AnEvent) {
  std::string Block;
  while (Block.size() < ASize) {
    const std::size_t Done = Block.size();
    const std::size_t Next = Done + std::min(ASize - Done, QuillonStreams::PieceSize);
    if (Next > Block.capacity()) {
      Block.reserve(std::min(ASize, Headway * Next));
    }
    Block.resize(Next);
    ReadAll(std::span(Block).subspan(Done));
    QuillonStreams::Report(AnEvent, Block.size(), ASize);
  }
  return Block;
}

double TQuillonReader::ReadExtended() {
  QuillonExtended::TBytes Bytes{};
  ReadAll({reinterpret_cast<char*>(Bytes.data()), Bytes.size()});
  return QuillonExtended::Decode(Bytes);
}

TGUID TQuillonReader::ReadGuid() {
  std::array<char, QuillonStreams::GuidPlaces.size()> Bytes{};
  ReadAll(Bytes);
  TGUID Guid;
  for (std::size_t I = 0; I < Bytes.size(); ++I) {
    Guid.Bytes[QuillonStreams::GuidPlaces[I]] = static_cast<std::uint8_t>(Bytes[I]);
  }
  return Guid;
}

std::string TQuillonReader::ReadString() {
  std::string Text;
  ReadStringInto(Text);
  return Text;
}

void TQuillonReader::ReadStringInto(std::string& ATarget) {
  const std::size_t Length = ReadLength();
  if (std::cmp_greater(Length, FStringLimit)) {
    throw EQuillonReaderError();
  }
  const std::size_t Size = 2 * Length;
  ATarget.clear();
  if (Size <= Unread().size()) {
    QuillonText::AppendUtf16LE(ATarget, Unread().substr(0, Size));
    FNext += Size;
  } else {
    QuillonText::AppendUtf16LE(ATarget, ReadBlock(Size, {}));
  }
}

std::string TQuillonReader::ReadUtf8String() {
  std::string Text = ReadBinary();
  return QuillonText::FindInvalidUtf8(Text) == std::string::npos ? Text : QuillonText::ReplaceInvalidUtf8(Text);
}

bool TQuillonReader::ReadSignature(std::string_view ASignature) {
  return ReadBlock(ASignature.size(), {}) == ASignature;
}

std::vector<std::string> TQuillonReader::ReadStrings() { return QuillonText::SplitLines(ReadString()); }

std::string TQuillonReader::ReadBinary() { return ReadBlock(ReadLength(), FOnProgress); }

void TQuillonReader::ReadBinary(TQuillonStream& ATarget) {
  const std::size_t Size = ReadLength();
  ATarget.Clear();
  std::string Piece(std::min(Size, QuillonStreams::PieceSize), '\0');
  for (std::size_t Done = 0; Done < Size;) {
    Piece.resize(std::min(Size - Done, QuillonStreams::PieceSize));
    ReadAll(Piece);
    ATarget.Write(Piece);
    Done += Piece.size();
    QuillonStreams::Report(FOnProgress, Done, Size);
  }
  ATarget.Seek(0, TQuillonSeekOrigin::Begin);
}

TQuillonBrush TQuillonReader::ReadBrush() {
  TQuillonBrush Value;
  Value.Color = ReadColor();
  Value.Style = ReadByte();
  return Value;
}

TQuillonPen TQuillonReader::ReadPen() {
  TQuillonPen Value;
  Value.Color = ReadColor();
  Value.Mode = ReadByte();
  Value.Style = ReadByte();
  Value.Width = ReadLongInt();
  return Value;
}

TQuillonFont TQuillonReader::ReadFont() {
  TQuillonFont Value;
  Value.Name = ReadString();
  Value.Color = ReadColor();
  Value.Size = ReadLongInt();
  Value.Styles = ReadByte();
  return Value;
}

TQuillonStreamReader::TQuillonStreamReader(TQuillonStream& AStream, std::size_t ABufferSize)
    : FStream(AStream), FBuffer(ABufferSize, '\0') {}

TQuillonStreamReader::~TQuillonStreamReader() {
  try {
    TQuillonStreamReader::FlushBuffer();
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): a destructor has nobody to tell
  }
}

void TQuillonStreamReader::FlushBuffer() {
  const std::size_t Back = Unread().size();
  FNext = FEnd = nullptr;
  if (Back > 0) {
    FStream.Seek(-static_cast<std::int64_t>(Back), TQuillonSeekOrigin::Current);
  }
}

std::size_t TQuillonStreamReader::Read(std::span<char> ABuffer) {
  std::size_t Done = 0;
  while (Done < ABuffer.size()) {
    const std::span<char> Left = ABuffer.subspan(Done);
    if (FBuffer.empty()) {
      const std::size_t Got = FStream.Read(Left);
      if (Got == 0) {
        break;
      }
      Done += Got;
      continue;
    }
    if (Unread().empty()) {
      FNext = FEnd = nullptr;
      const std::size_t Got = FStream.Read(FBuffer);
      if (Got == 0) {
        break;
      }
      FNext = FBuffer.data();
      FEnd = FNext + Got;
    }
    const std::size_t Count = std::min(Left.size(), Unread().size());
    std::memcpy(Left.data(), FNext, Count);
    FNext += Count;
    Done += Count;
  }
  return Done;
}

bool TQuillonStreamReader::Available(std::int64_t ACount) {
  const std::int64_t Wanted = ACount - static_cast<std::int64_t>(Unread().size());
  return Wanted <= 0 || FStream.Size() - FStream.Position() >= Wanted;
}
