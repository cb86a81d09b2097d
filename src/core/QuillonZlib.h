#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "QuillonStreams/OneWay.h"
#include "QuillonTypes.h"

struct z_stream_s;

/// Compressed data that cannot be made, or that are cut or damaged.
class EQuillonZlibError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

namespace QuillonZlib {

/// How many bytes compressed data may become. A plan shrinks to a thirtieth at most; what claims more than two
/// hundredfold is made to fill the memory. What any machine can take is allowed always.
constexpr std::size_t LargestContent(std::size_t ACompressedSize) {
  constexpr std::size_t LargestGrowth = 200;
  constexpr std::size_t AlwaysAllowed = std::size_t{16} << 20;
  return ACompressedSize < AlwaysAllowed / LargestGrowth ? AlwaysAllowed : ACompressedSize * LargestGrowth;
}

}  // namespace QuillonZlib

/// Compresses what is written, in the zlib format (RFC 1950), onto a stream that must outlive it. Without Finish the
/// compressed data have no end, and every reader takes them for cut: so does a failure leave them.
class TQuillonZCompressionStream final : public TQuillonOneWayStream {
 public:
  static constexpr int DefaultLevel = -1;

  /// @param ALevel 0 (stored) to 9, or the library's own choice
  /// @throws EQuillonZlibError for any other level
  explicit TQuillonZCompressionStream(TQuillonStream& ATarget, int ALevel = DefaultLevel);
  ~TQuillonZCompressionStream() override;

  /// @throws EQuillonZlibError after Finish, or after a write that failed
  void Write(std::string_view ABytes) override;
  /// Ends the compressed data; the target has all of them then.
  /// @throws EQuillonZlibError as Write
  void Finish();

 private:
  struct TEnd {
    void operator()(z_stream_s* AState) const;
  };

  void Compress(std::string_view ABytes, int AFlush);

  TQuillonStream& FTarget;
  std::unique_ptr<z_stream_s, TEnd> FState;  ///< null once nothing more can be written
  std::string FBuffer;
};

/// Gives the content of compressed data in the zlib format on a stream, which must outlive it. The memory taken does
/// not depend on the data. At the end of the compressed data their checksum is right, and the source stands exactly
/// behind them; a source that something follows must be able to move.
class TQuillonZDecompressionStream final : public TQuillonOneWayStream {
 public:
  explicit TQuillonZDecompressionStream(TQuillonStream& ASource);
  ~TQuillonZDecompressionStream() override;

  /// @throws EQuillonZlibError for compressed data that are cut or damaged, or grow beyond QuillonZlib::LargestContent
  std::size_t Read(std::span<char> ABuffer) override;
  /// Reads on to the end of the compressed data, without keeping anything.
  /// @throws EQuillonZlibError as Read
  void Finish();

 private:
  struct TEnd {
    void operator()(z_stream_s* AState) const;
  };

  void FillBuffer();
  void GiveBack();

  TQuillonStream& FSource;
  std::unique_ptr<z_stream_s, TEnd> FState;
  std::string FBuffer;
  std::size_t FTaken = 0;  ///< compressed bytes off the source
  bool FIsAtEnd = false;
};
