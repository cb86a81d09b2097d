#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>

#include "QuillonSockets/Errors.h"
#include "platform/Sockets.h"

/// Addresses are IPv4's, whatever is chosen.
enum TQuillonSocketIPVersion { svIP4, svIP6 };
enum TQuillonSocketSelectMode { ssmRead, ssmWrite };
enum TQuillonTCPSocketShutDown { tssdReceive, tssdSend, tssdBoth };

namespace QuillonSockets {

/// Connections that wait for Accept.
inline constexpr int Backlog = 5;
/// Milliseconds within which Connect sees that another thread has closed the socket.
inline constexpr std::int32_t ConnectStep = 250;
/// Bytes that Purge drops at most: a peer that never stops sending does not hold it.
inline constexpr std::size_t PurgeLimit = std::size_t{64} << 20;

/// Namespaces of the log's entries, in whose place for the user stands the socket's handle.
inline constexpr std::string_view LogNamespace = "Quillon.System.Sockets";
inline constexpr std::string_view RecvLogNamespace = "Quillon.System.Sockets.Recv";
inline constexpr std::string_view SendLogNamespace = "Quillon.System.Sockets.Send";

}  // namespace QuillonSockets

/// A socket of the system. Failed calls, those of a socket that is not open among them, raise EQuillonSocketError.
///
/// A socket is used by one thread at a time, but for CloseSocket, which any thread may call: calls that wait in another
/// one end then, with a failure or as if the peer had closed, and the system's socket lives until they have.
class TQuillonSocket {
 public:
  TQuillonSocket() = default;
  TQuillonSocket(const TQuillonSocket&) = delete;
  TQuillonSocket& operator=(const TQuillonSocket&) = delete;
  /// Closes the socket.
  virtual ~TQuillonSocket();

  virtual Platform::SocketProtocol Protocol() const = 0;
  virtual Platform::SocketType Type() const = 0;
  /// Does nothing for a socket that is not open.
  virtual void CloseSocket();
  /// Does nothing for a socket that is open.
  virtual void CreateSocket();
  /// @return bytes read, at least one; 0 once the peer has closed
  virtual std::size_t Recv(std::span<char> ABuffer) = 0;
  /// Waits for room for all bytes. @return bytes taken
  virtual std::size_t Send(std::string_view ABytes) = 0;

  /// Takes the local address; with port 0 the system chooses the port.
  void Bind();
  /// Connects to the remote host. One that does not answer fails at the system's own limit, some minutes.
  void Connect();
  /// The bytes waiting to be read.
  std::size_t Available() const;
  /// Waits until the socket is ready, which it also is for a call that will fail.
  /// @param ATimeOut milliseconds; 0 for an immediate answer, negative for no limit
  bool Poll(std::int32_t ATimeOut, TQuillonSocketSelectMode AMode) const;
  /// Reads and drops what has come, up to PurgeLimit, until nothing more comes within a millisecond.
  void Purge();

  /// Milliseconds that one Recv or Send may wait; 0 for no limit.
  std::int32_t RecvTimeOut() const { return Option(Platform::SocketOption::RecvTimeOut); }
  void SetRecvTimeOut(std::int32_t AValue) { SetOption(Platform::SocketOption::RecvTimeOut, AValue); }
  std::int32_t SendTimeOut() const { return Option(Platform::SocketOption::SendTimeOut); }
  void SetSendTimeOut(std::int32_t AValue) { SetOption(Platform::SocketOption::SendTimeOut, AValue); }
  /// Bytes that the system keeps for the socket; it may give other sizes than it is asked for.
  std::int32_t RecvBufferSize() const { return Option(Platform::SocketOption::RecvBufferSize); }
  void SetRecvBufferSize(std::int32_t AValue) { SetOption(Platform::SocketOption::RecvBufferSize, AValue); }
  std::int32_t SendBufferSize() const { return Option(Platform::SocketOption::SendBufferSize); }
  void SetSendBufferSize(std::int32_t AValue) { SetOption(Platform::SocketOption::SendBufferSize, AValue); }

  /// The system's handle; NoSocket when closed.
  Platform::SocketHandle Socket() const;

  TQuillonSocketIPVersion FIPVersion = svIP4;
  std::string FLocalHost = "0.0.0.0";
  std::uint16_t FLocalPort = 0;
  std::string FRemoteHost = "0.0.0.0";
  std::uint16_t FRemotePort = 0;

 protected:
  /// The system's socket, closed behind the last call that uses it.
  class TOpenSocket;
  using TUse = std::shared_ptr<const TOpenSocket>;

  /// The open socket for the length of one call.
  /// @throws EQuillonSocketError without one
  TUse Use() const;
  void Open(Platform::SocketHandle ASocket);
  /// As CloseSocket.
  /// @param AHow what is shut down before
  void Close(const TQuillonTCPSocketShutDown* AHow);
  void ReadLocalAddress();
  std::int32_t Option(Platform::SocketOption AnOption) const;
  void SetOption(Platform::SocketOption AnOption, std::int32_t AValue);
  /// One system call each, logged.
  std::size_t RecvOnce(std::span<char> ABuffer);
  std::size_t SendOnce(std::string_view ABytes, bool DoWait);

 private:
  mutable std::mutex FLock;
  TUse FSocket;
};

class TQuillonTCPSocket final : public TQuillonSocket {
 public:
  using TQuillonSocket::CloseSocket;

  Platform::SocketProtocol Protocol() const override { return Platform::SocketProtocol::Tcp; }
  Platform::SocketType Type() const override { return Platform::SocketType::Stream; }
  /// Shuts down before it closes; tssdBoth ends what other threads wait for at once.
  void CloseSocket(TQuillonTCPSocketShutDown AHow) { Close(&AHow); }
  std::size_t Recv(std::span<char> ABuffer) override { return RecvOnce(ABuffer); }
  std::size_t Send(std::string_view ABytes) override { return SendOnce(ABytes, true); }
  /// Sends what there is room for, without waiting. @return bytes taken, maybe none
  std::size_t SendReady(std::string_view ABytes) { return SendOnce(ABytes, false); }

  void Listen();
  /// Waits for a connection.
  std::unique_ptr<TQuillonTCPSocket> Accept();
  /// Whether small pieces are sent at once instead of being gathered.
  void EnableNoDelay(bool AValue) { SetOption(Platform::SocketOption::NoDelay, AValue ? 1 : 0); }
  bool IsNoDelay() const { return Option(Platform::SocketOption::NoDelay) != 0; }
};
