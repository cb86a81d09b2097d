#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonDateTime.h"
#include "QuillonIO.h"
#include "QuillonStreams/Streams.h"

class TQuillonPersistent;
struct TQuillonPersistentClass;

/// The values that a TQuillonWriter has written, read in the same order. Every typed read raises EQuillonReaderError
/// if fewer bytes come than the value has, or if its length is below zero or beyond FStringLimit. A length is not
/// believed: the memory taken grows with the bytes that really come.
class TQuillonReader {
 public:
  TQuillonReader() = default;
  TQuillonReader(const TQuillonReader&) = delete;
  TQuillonReader& operator=(const TQuillonReader&) = delete;
  virtual ~TQuillonReader() = default;

  /// Whether there is at least one byte more.
  virtual bool CanRead() = 0;
  virtual void FlushBuffer() {}
  /// @return bytes read; fewer than the buffer has only where there are no more
  virtual std::size_t Read(std::span<char> ABuffer) = 0;

  bool ReadBoolean() { return ReadByte() != 0; }
  std::uint8_t ReadByte() { return ReadValue<std::uint8_t>(); }
  std::int8_t ReadShortInt() { return ReadValue<std::int8_t>(); }
  char16_t ReadChar() { return ReadValue<char16_t>(); }
  std::uint16_t ReadWord() { return ReadValue<std::uint16_t>(); }
  std::int16_t ReadSmallInt() { return ReadValue<std::int16_t>(); }
  std::uint32_t ReadLongWord() { return ReadValue<std::uint32_t>(); }
  std::int32_t ReadLongInt() { return ReadValue<std::int32_t>(); }
  std::int64_t ReadInt64() { return ReadValue<std::int64_t>(); }
  float ReadSingle() { return ReadValue<float>(); }
  double ReadDouble() { return ReadValue<double>(); }
  std::int64_t ReadComp() { return ReadValue<std::int64_t>(); }
  /// In ten-thousandths.
  std::int64_t ReadCurrency() { return ReadValue<std::int64_t>(); }
  TQuillonDateTime ReadDateTime() { return ReadValue<double>(); }
  /// The nearest double.
  double ReadExtended();
  TGUID ReadGuid();
  /// Half a surrogate pair becomes U+FFFD.
  std::string ReadString();
  /// The same into a text whose memory serves again.
  void ReadStringInto(std::string& ATarget);
  /// The bytes as they stand.
  std::string ReadAnsiString() { return ReadBinary(); }
  /// What is no UTF-8 becomes U+FFFD.
  std::string ReadUtf8String();
  /// Reads as many bytes as the signature has. @return whether they are the same
  bool ReadSignature(std::string_view ASignature);
  /// The lines of a text; CR, LF and the two together end one.
  std::vector<std::string> ReadStrings();
  /// Reports progress.
  std::string ReadBinary();
  /// Makes the block the whole content of the stream, whose position is its begin then; reports progress.
  void ReadBinary(TQuillonStream& ATarget);
  std::int32_t ReadColor() { return ReadValue<std::int32_t>(); }
  /// @return the bytes of a picture, none for no picture
  std::string ReadGraphic() { return ReadBinary(); }
  TQuillonBrush ReadBrush();
  TQuillonPen ReadPen();
  TQuillonFont ReadFont();
  /// An object that is a graph of its own; see TQuillonObjectReader, which reads several objects of one graph.
  std::shared_ptr<TQuillonPersistent> ReadObject();
  /// As TQuillonObjectReader::ReadObjectProperties, with a graph of its own.
  std::shared_ptr<TQuillonPersistent> ReadObjectProperties(std::shared_ptr<TQuillonPersistent> AnObject,
                                                           const TQuillonPersistentClass& AClass);

  TQuillonStreamProgressEvent FOnProgress;
  /// UTF-16 units of the longest text that ReadString takes.
  std::int32_t FStringLimit = std::numeric_limits<std::int32_t>::max();

 protected:
  std::string_view Unread() const { return {FNext, static_cast<std::size_t>(FEnd - FNext)}; }

  /// Bytes in the derived class's buffer that nobody has asked for yet, which small values are taken from without a
  /// call; none where there is no buffer.
  const char* FNext = nullptr;
  const char* FEnd = nullptr;

 private:
  template <class TValue>
  TValue ReadValue() {
    using TBits = QuillonStreams::TBits<sizeof(TValue)>;
    std::array<char, sizeof(TValue)> Bytes;
    ReadAll(Bytes);
    TBits Bits = 0;
    for (std::size_t I = 0; I < Bytes.size(); ++I) {
      Bits = static_cast<TBits>(Bits | static_cast<TBits>(TBits{static_cast<std::uint8_t>(Bytes[I])} << (8 * I)));
    }
    return std::bit_cast<TValue>(Bits);
  }
  void ReadAll(std::span<char> ABuffer) {
    if (ABuffer.size() <= Unread().size()) {
      std::memcpy(ABuffer.data(), FNext, ABuffer.size());
      FNext += ABuffer.size();
    } else {
      ReadThrough(ABuffer);
    }
  }
  void ReadThrough(std::span<char> ABuffer);
  std::size_t ReadLength();
  std::string ReadBlock(std::size_t ASize, const TQuillonStreamProgressEvent& AnEvent);
};

/// A reader from a stream, which must outlive it.
class TQuillonStreamReader final : public TQuillonReader {
 public:
  /// @param ABufferSize 0 for none: never more is taken off the stream than asked for
  explicit TQuillonStreamReader(TQuillonStream& AStream, std::size_t ABufferSize = 0);
  /// As FlushBuffer; a stream that cannot go back stays where it is.
  ~TQuillonStreamReader() override;

  bool CanRead() override { return Available(1); }
  /// Gives the bytes back that nobody has asked for: the stream stands behind the last one that was read.
  void FlushBuffer() override;
  std::size_t Read(std::span<char> ABuffer) override;
  /// Whether there are at least ACount bytes more.
  bool Available(std::int64_t ACount);

 private:
  TQuillonStream& FStream;
  std::string FBuffer;
};
