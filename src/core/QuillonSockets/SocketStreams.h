#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "QuillonSockets/Sockets.h"
#include "QuillonStreams/Reader.h"
#include "QuillonStreams/Writer.h"

namespace QuillonSockets {

/// Milliseconds of one wait, after which the handler of the progress is asked whether to go on.
inline constexpr std::int32_t TimeOut = 30'000;
/// Milliseconds without a single byte after which a transfer is over: nobody watches over a job at night.
inline constexpr std::int32_t StallLimit = 600'000;

}  // namespace QuillonSockets

/// What all transfers over one connection may take together: a peer that drips its bytes one by one never stalls, and
/// one that never ends never runs short.
class TQuillonTransferBound {
 public:
  using TClock = std::chrono::steady_clock;

  /// Counts from now on.
  void Start() {
    FBegin = TClock::now();
    FReceived = FSent = 0;
    LimitNext(std::numeric_limits<std::uint64_t>::max());
  }
  /// Lets no more than that many bytes come from now on, nor more than FReceiveLimit in all.
  void LimitNext(std::uint64_t ACount) {
    FNextLimit = FReceived + std::min(ACount, std::numeric_limits<std::uint64_t>::max() - FReceived);
  }
  void AddReceived(std::size_t ACount) { FReceived += ACount; }
  void AddSent(std::size_t ACount) { FSent += ACount; }
  /// When the time is up; each byte that is moved puts it off.
  TClock::time_point Deadline() const {
    return FBegin +
           std::chrono::milliseconds(FAllowance + 1'000 * static_cast<std::int64_t>(FReceived + FSent) / FLeastSpeed);
  }
  /// The bytes that may still come.
  std::uint64_t ReceiveLeft() const {
    const std::uint64_t Limit = std::min(FReceiveLimit, FNextLimit);
    return FReceived < Limit ? Limit - FReceived : 0;
  }

  std::int64_t FAllowance = 3'600'000;  ///< milliseconds, for all that is no mere moving of bytes
  std::int64_t FLeastSpeed = 16'384;    ///< bytes per second
  std::uint64_t FReceiveLimit = std::numeric_limits<std::uint64_t>::max();

 private:
  TClock::time_point FBegin = TClock::now();
  std::uint64_t FReceived = 0;
  std::uint64_t FSent = 0;
  std::uint64_t FNextLimit = std::numeric_limits<std::uint64_t>::max();
};

/// Values off a socket, which must outlive the reader.
class TQuillonTCPSocketReader final : public TQuillonReader {
 public:
  /// @param ABufferSize 0 for none: never more is taken off the socket than asked for. Else what comes with it waits
  /// here, and goes with the reader.
  explicit TQuillonTCPSocketReader(TQuillonTCPSocket& ASocket, std::size_t ABufferSize = 0)
      : FSocket(ASocket), FBuffer(ABufferSize, '\0') {}

  /// Whether a byte is there already.
  bool CanRead() override { return !Unread().empty() || FSocket.Available() > 0; }
  /// Reports progress, also while nothing comes, and so may be ended by its handler.
  /// @return fewer bytes than asked for where the peer has closed, nothing came within FStallLimit, or FBound is
  /// reached
  std::size_t Read(std::span<char> ABuffer) override;

  std::int32_t FTimeOut = QuillonSockets::TimeOut;
  std::int32_t FStallLimit = QuillonSockets::StallLimit;
  TQuillonTransferBound* FBound = nullptr;  ///< the connection's, if it has one; must outlive this

 private:
  std::span<char> Allowed(std::span<char> ABuffer) const;
  std::size_t Receive(std::span<char> ABuffer);
  std::size_t TakeBuffered(std::span<char> ABuffer);

  TQuillonTCPSocket& FSocket;
  std::string FBuffer;
};

/// Values onto a socket, which must outlive the writer.
class TQuillonTCPSocketWriter final : public TQuillonWriter {
 public:
  /// @param ABufferSize 0 for none: nothing is kept back. Else small values wait here until FlushBuffer, and what
  /// nobody flushes is not sent.
  explicit TQuillonTCPSocketWriter(TQuillonTCPSocket& ASocket, std::size_t ABufferSize = 0);

  /// @throws EQuillonWriterError where not all can be sent, which is dropped then
  void FlushBuffer() override;
  /// Reports progress, also while the peer takes nothing, and so may be ended by its handler.
  /// @return fewer bytes than given where the peer took nothing within FStallLimit, or FBound is reached
  std::size_t Write(std::string_view ABytes) override;

  std::int32_t FTimeOut = QuillonSockets::TimeOut;
  std::int32_t FStallLimit = QuillonSockets::StallLimit;
  TQuillonTransferBound* FBound = nullptr;  ///< the connection's, if it has one; must outlive this

 private:
  std::size_t Send(std::string_view ABytes);

  TQuillonTCPSocket& FSocket;
  std::string FBuffer;
};
