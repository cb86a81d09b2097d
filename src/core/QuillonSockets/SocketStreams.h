#pragma once

#include "QuillonSockets/Sockets.h"
#include "QuillonStreams/Reader.h"
#include "QuillonStreams/Writer.h"

namespace QuillonSockets {

/// Milliseconds of one wait, after which the handler of the progress is asked whether to go on.
inline constexpr std::int32_t TimeOut = 30'000;
/// Milliseconds without a single byte after which a transfer is over: nobody watches over a job at night.
inline constexpr std::int32_t StallLimit = 600'000;

}  // namespace QuillonSockets

/// Values off a socket, which must outlive the reader. Never more is taken off it than asked for.
class TQuillonTCPSocketReader final : public TQuillonReader {
 public:
  explicit TQuillonTCPSocketReader(TQuillonTCPSocket& ASocket) : FSocket(ASocket) {}

  /// Whether a byte is there already.
  bool CanRead() override { return FSocket.Available() > 0; }
  /// Reports progress, also while nothing comes, and so may be ended by its handler.
  /// @return fewer bytes than asked for where the peer has closed, or nothing came within FStallLimit
  std::size_t Read(std::span<char> ABuffer) override;

  std::int32_t FTimeOut = QuillonSockets::TimeOut;
  std::int32_t FStallLimit = QuillonSockets::StallLimit;

 private:
  TQuillonTCPSocket& FSocket;
};

/// Values onto a socket, which must outlive the writer. Nothing is kept back.
class TQuillonTCPSocketWriter final : public TQuillonWriter {
 public:
  explicit TQuillonTCPSocketWriter(TQuillonTCPSocket& ASocket) : FSocket(ASocket) {}

  /// Reports progress, also while the peer takes nothing, and so may be ended by its handler.
  /// @return fewer bytes than given where the peer took nothing within FStallLimit
  std::size_t Write(std::string_view ABytes) override;

  std::int32_t FTimeOut = QuillonSockets::TimeOut;
  std::int32_t FStallLimit = QuillonSockets::StallLimit;

 private:
  TQuillonTCPSocket& FSocket;
};
