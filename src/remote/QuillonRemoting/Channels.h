#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "QuillonSockets/SocketStreams.h"
#include "QuillonSynchronization.h"

namespace QuillonRemoting {

/// Bytes that a server may send over one connection: a plan of 2 GiB, and as much beside it as nobody needs.
inline constexpr std::uint64_t ReceiveLimit = (std::uint64_t{2} << 30) + (std::uint64_t{64} << 20);
/// UTF-16 units of the longest text that is taken from a server.
inline constexpr std::int32_t StringLimit = 16 << 20;
/// Bytes that a reader or a writer of a TCP channel gathers.
inline constexpr std::size_t BufferSize = 4096;

}  // namespace QuillonRemoting

/// The way to the data server: a connection that all who have opened it share. Open and Close do not begin and end an
/// exchange; whoever reads and writes holds the lock from the first byte to the last.
class TQuillonRemoteChannel {
 public:
  TQuillonRemoteChannel() = default;
  TQuillonRemoteChannel(const TQuillonRemoteChannel&) = delete;
  TQuillonRemoteChannel& operator=(const TQuillonRemoteChannel&) = delete;
  virtual ~TQuillonRemoteChannel() = default;

  /// Values from and to the server; the channel must outlive them. A writer may keep values back until it is flushed. A
  /// reader may take more than it is asked for: one serves a whole exchange, behind which a server sends nothing.
  virtual std::unique_ptr<TQuillonReader> GetReader() = 0;
  virtual std::unique_ptr<TQuillonWriter> GetWriter() = 0;

  /// Connects, unless somebody has already. One that fails leaves the channel closed.
  void Open();
  /// @return whether Open worked
  bool TryOpen();
  /// Undoes one Open. The last one tells the server and closes the connection, which it also does where the server
  /// cannot be told, an error then. Does nothing for a closed channel.
  void Close();
  /// Whether somebody has opened the channel; does not wait for the lock.
  bool IsOpen() const { return FRefCount > 0; }

  /// The thread that has the lock may take it again.
  void Lock() { FCriticalSection.Enter(); }
  void Unlock() { FCriticalSection.Leave(); }

  /// Ends what another thread does on the connection with an error in that thread, without waiting for the lock, as far
  /// as the channel can. It stays as open as it was; a connection made later is not affected.
  virtual void Abort() {}
  /// Takes no more than that many bytes of what comes next on the connection, as far as the channel counts them.
  virtual void LimitReply(std::uint64_t /*ACount*/) {}

 protected:
  virtual void CloseConnection() = 0;
  virtual void OpenConnection() = 0;

 private:
  TQuillonCriticalSection FCriticalSection;
  std::atomic<std::int32_t> FRefCount = 0;  ///< changed under the lock only
};

/// A channel over TCP. Errors are EQuillonSocketError, EQuillonReaderError and EQuillonWriterError.
///
/// A server holds nobody for ever and fills no memory: beside the limits of each wait, a connection has a bound on the
/// time it takes and on the bytes it brings, and a text one on its length; what goes beyond ends as if the server had
/// closed.
class TQuillonTCPRemoteChannel final : public TQuillonRemoteChannel {
 public:
  TQuillonTCPRemoteChannel() { FBound.FReceiveLimit = QuillonRemoting::ReceiveLimit; }

  std::unique_ptr<TQuillonReader> GetReader() override;
  std::unique_ptr<TQuillonWriter> GetWriter() override;

  /// Where the next connection goes.
  const std::string& Host() const { return FSocket.FRemoteHost; }
  void SetHost(std::string AValue) { FSocket.FRemoteHost = std::move(AValue); }
  std::uint16_t Port() const { return FSocket.FRemotePort; }
  void SetPort(std::uint16_t AValue) { FSocket.FRemotePort = AValue; }

  void Abort() override { FSocket.CloseSocket(tssdBoth); }
  void LimitReply(std::uint64_t ACount) override { FBound.LimitNext(ACount); }

  bool FEnableNoDelay = false;   ///< for the next connection: whether small pieces are sent at once
  TQuillonTransferBound FBound;  ///< of each connection, from its begin on; a connection serves one exchange

 protected:
  void CloseConnection() override { FSocket.CloseSocket(); }
  void OpenConnection() override;

 private:
  TQuillonTCPSocket FSocket;
};
