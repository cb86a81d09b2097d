#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "QuillonDateTime.h"
#include "QuillonIO.h"
#include "QuillonStreams/Streams.h"

class TQuillonPersistent;

/// Values as bytes, without tags: integers and floating point numbers with their lowest byte first, texts and blocks
/// behind their length, a 32-bit integer. Where the bytes go is up to the derived class. Every typed write raises
/// EQuillonWriterError if not all of its bytes found a place, or if a length has none in 32 bits.
class TQuillonWriter {
 public:
  TQuillonWriter() = default;
  TQuillonWriter(const TQuillonWriter&) = delete;
  TQuillonWriter& operator=(const TQuillonWriter&) = delete;
  virtual ~TQuillonWriter() = default;

  virtual void FlushBuffer() {}
  /// @return how many of the bytes found a place
  virtual std::size_t Write(std::string_view ABytes) = 0;

  void WriteBoolean(bool AValue) { WriteByte(AValue ? 1 : 0); }
  void WriteByte(std::uint8_t AValue) { WriteValue(AValue); }
  void WriteShortInt(std::int8_t AValue) { WriteValue(AValue); }
  void WriteChar(char16_t AValue) { WriteValue(AValue); }
  void WriteWord(std::uint16_t AValue) { WriteValue(AValue); }
  void WriteSmallInt(std::int16_t AValue) { WriteValue(AValue); }
  void WriteLongWord(std::uint32_t AValue) { WriteValue(AValue); }
  void WriteLongInt(std::int32_t AValue) { WriteValue(AValue); }
  void WriteInt64(std::int64_t AValue) { WriteValue(AValue); }
  void WriteSingle(float AValue) { WriteValue(AValue); }
  void WriteDouble(double AValue) { WriteValue(AValue); }
  void WriteComp(std::int64_t AValue) { WriteValue(AValue); }
  /// @param AValue in ten-thousandths
  void WriteCurrency(std::int64_t AValue) { WriteValue(AValue); }
  void WriteDateTime(TQuillonDateTime AValue) { WriteValue(AValue.FValue); }
  /// In the ten bytes of QuillonExtended.
  void WriteExtended(double AValue);
  /// As the record in memory, whose first three fields have their lowest byte first.
  void WriteGuid(const TGUID& AValue);
  /// As UTF-16; the length counts its units. What is no UTF-8 becomes U+FFFD.
  void WriteString(std::string_view AValue);
  /// The bytes as they stand.
  void WriteAnsiString(std::string_view AValue) { WriteBinary(AValue); }
  /// What is no UTF-8 becomes U+FFFD.
  void WriteUtf8String(std::string_view AValue);
  /// The bytes alone, without a length.
  void WriteSignature(std::string_view ASignature) { WriteAll(ASignature); }
  /// One text in which a line break follows each item.
  void WriteStrings(std::span<const std::string> AValue);
  /// Reports progress.
  void WriteBinary(std::string_view ABytes);
  /// The whole of a stream, wherever its position is; reports progress.
  /// @throws EQuillonStreamError if the stream ends before its size
  void WriteBinary(TQuillonStream& AStream);
  /// @param AValue the display system's, red in the low byte
  void WriteColor(std::int32_t AValue) { WriteValue(AValue); }
  /// @param AnImage the bytes of a picture, none for no picture
  void WriteGraphic(std::string_view AnImage) { WriteBinary(AnImage); }
  void WriteBrush(const TQuillonBrush& AValue);
  void WritePen(const TQuillonPen& AValue);
  void WriteFont(const TQuillonFont& AValue);
  /// The object as a graph of its own; see TQuillonObjectWriter, which writes several objects into one graph.
  void WriteObject(const TQuillonPersistent* AnObject);
  /// As TQuillonObjectWriter::WriteObjectProperties, with a graph of its own for what the object refers to.
  void WriteObjectProperties(const TQuillonPersistent* AnObject);

  TQuillonStreamProgressEvent FOnProgress;

 protected:
  /// Free room of the derived class's buffer, which small values go into without a call; empty where there is none.
  char* FRoom = nullptr;
  char* FRoomEnd = nullptr;

 private:
  template <class TValue>
  void WriteValue(TValue AValue) {
    using TBits = QuillonStreams::TBits<sizeof(TValue)>;
    const auto Bits = std::bit_cast<TBits>(AValue);
    std::array<char, sizeof(TValue)> Bytes;
    for (std::size_t I = 0; I < Bytes.size(); ++I) {
      Bytes[I] = static_cast<char>(static_cast<std::uint8_t>(Bits >> (8 * I)));
    }
    WriteAll({Bytes.data(), Bytes.size()});
  }
  void WriteAll(std::string_view ABytes) {
    // With room to spare: a writer whose buffer is full hands it on.
    if (ABytes.size() < static_cast<std::size_t>(FRoomEnd - FRoom)) {
      std::memcpy(FRoom, ABytes.data(), ABytes.size());
      FRoom += ABytes.size();
    } else {
      WriteThrough(ABytes);
    }
  }
  void WriteThrough(std::string_view ABytes);
  void WriteLength(std::uint64_t ALength);

  template <class TSource>
  void WritePieces(std::size_t ASize, TSource ASource);
};

/// A writer onto a stream, which must outlive it.
class TQuillonStreamWriter final : public TQuillonWriter {
 public:
  /// @param ABufferSize 0 for none: each value goes to the stream at once
  explicit TQuillonStreamWriter(TQuillonStream& AStream, std::size_t ABufferSize = 0);
  /// Flushes; call FlushBuffer to see whether that worked.
  ~TQuillonStreamWriter() override;

  /// Hands over to the stream what is still in the buffer. If the stream raises, these bytes are dropped: how many of
  /// them have their place is not known, and none must be written twice.
  void FlushBuffer() override;
  /// All bytes find a place, or the stream raises.
  std::size_t Write(std::string_view ABytes) override;

 private:
  TQuillonStream& FStream;
  std::string FBuffer;
};
