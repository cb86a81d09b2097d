#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Service.h"

/// The system's sockets, IPv4 only. Every failed call raises EQuillonSocketError with the system's code.
namespace Platform {

/// A socket as the system knows it.
using SocketHandle = std::int64_t;
inline constexpr SocketHandle NoSocket = -1;

/// Hosts are numbers whose highest byte is the first one of the text: 127.0.0.1 is 0x7F000001.
struct SocketAddress {
  std::uint32_t Host = 0;
  std::uint16_t Port = 0;
};

enum class SocketType { Stream, Datagram };
enum class SocketProtocol { Tcp, Udp };
enum class SocketDirection { Receive, Send, Both };
enum class SocketReadiness { Read, Write };
/// NoDelay is 0 or 1, time-outs are milliseconds (0 for none), sizes bytes.
enum class SocketOption { NoDelay, RecvTimeOut, SendTimeOut, RecvBufferSize, SendBufferSize };

/// What an error means, whatever number the system has for it.
enum class SocketFault {
  Unknown,
  Interrupted,
  PermissionDenied,
  BadAddress,
  InvalidArgument,
  TooManyFiles,
  WouldBlock,
  InProgress,
  AlreadyInProgress,
  NotASocket,
  DestinationRequired,
  MessageTooLong,
  WrongProtocolType,
  BadProtocolOption,
  ProtocolNotSupported,
  TypeNotSupported,
  OperationNotSupported,
  ProtocolFamilyNotSupported,
  AddressFamilyNotSupported,
  AddressInUse,
  AddressNotAvailable,
  NetworkDown,
  NetworkUnreachable,
  NetworkReset,
  ConnectionAborted,
  ConnectionReset,
  NoBuffers,
  IsConnected,
  NotConnected,
  IsShutDown,
  TimedOut,
  Refused,
  HostDown,
  HostUnreachable,
  TooManyProcesses,
  LayerNotReady,
  LayerVersionNotSupported,
  LayerNotStarted,
  HostNotFound
};

/// The code of a host without an address, which no number of the system's calls stands for.
inline constexpr std::uint32_t HostNotFoundError = 11'001;
/// The code of a call on a socket that is not open.
extern const std::uint32_t NoSocketError;

struct SocketLayerInfo {
  std::string Description;
  std::uint16_t HighestVersion = 0;  ///< major in the high byte
  std::uint32_t MaxSockets = 0;      ///< of this process, as far as the system tells
  std::uint32_t MaxUDPDatagram = 0;  ///< bytes
};

struct NetworkInterface {
  std::uint32_t Address = 0;
  std::uint32_t Broadcast = 0;
};

class SocketLayer {
 public:
  virtual ~SocketLayer() = default;

  /// Makes the layer ready; called once, before anything else. It stays so until the process ends.
  virtual SocketLayerInfo StartUp() = 0;
  /// The error of this thread's last failed call.
  virtual std::uint32_t LastError() = 0;
  virtual SocketFault FaultOf(std::uint32_t AnErrorCode) = 0;

  /// A socket that blocks, and that no program started by this one gets.
  virtual SocketHandle Create(SocketType AType, SocketProtocol AProtocol) = 0;
  /// Raises nothing: the handle is gone in any case.
  virtual void Close(SocketHandle ASocket) noexcept = 0;
  /// Ends the traffic, also for calls of other threads that wait for it; no error without a connection.
  virtual void Shutdown(SocketHandle ASocket, SocketDirection ADirection) = 0;
  virtual void Bind(SocketHandle ASocket, SocketAddress AnAddress) = 0;
  /// Begins to connect; the socket is ready for writing once that has come to its end. A host that does not answer
  /// comes to it at the system's own limit, some minutes.
  virtual void BeginConnect(SocketHandle ASocket, SocketAddress AnAddress) = 0;
  /// @throws EQuillonSocketError where there is no connection
  virtual void EndConnect(SocketHandle ASocket, SocketAddress AnAddress) = 0;
  virtual void Listen(SocketHandle ASocket, int ABacklog) = 0;
  /// Waits for a connection.
  /// @param APeer is given the address of the other end
  virtual SocketHandle Accept(SocketHandle ASocket, SocketAddress& APeer) = 0;
  virtual SocketAddress LocalAddress(SocketHandle ASocket) = 0;

  /// @return bytes read; 0 once the other end has closed
  virtual std::size_t Recv(SocketHandle ASocket, std::span<char> ABuffer) = 0;
  /// @param DoWait whether to wait for room for all bytes; else as many are taken as there is room for, maybe none
  /// @return bytes taken
  virtual std::size_t Send(SocketHandle ASocket, std::string_view ABytes, bool DoWait) = 0;
  /// Whether a call of that kind would not wait, which holds for one that fails too.
  /// @param ATimeOut milliseconds; negative for no limit
  virtual bool Poll(SocketHandle ASocket, SocketReadiness AReadiness, std::int32_t ATimeOut) = 0;
  /// Bytes that have come and were not read.
  virtual std::size_t Available(SocketHandle ASocket) = 0;
  virtual std::int32_t Option(SocketHandle ASocket, SocketOption AnOption) = 0;
  virtual void SetOption(SocketHandle ASocket, SocketOption AnOption, std::int32_t AValue) = 0;

  /// The host that four numbers with dots between them name; none for any other text.
  virtual std::optional<std::uint32_t> ParseHost(const std::string& AText) = 0;
  /// The addresses of a host; none for an unknown one.
  virtual std::vector<std::uint32_t> HostsOf(const std::string& AName) = 0;
  virtual std::string HostName() = 0;
  /// The interfaces that are up, without those that lead back to this machine.
  virtual std::vector<NetworkInterface> Interfaces() = 0;
};

/// The sockets in use: the system's, if none were put in their place.
SocketLayer& Sockets();

using SocketsReplacement = ServiceReplacement<SocketLayer>;

}  // namespace Platform
