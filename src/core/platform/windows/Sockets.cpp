#include "platform/Sockets.h"

#include <winsock2.h>

#include <windows.h>

#include <ws2tcpip.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>
#include <memory>
#include <mutex>
#include <set>
#include <utility>

#include "QuillonSockets/Errors.h"
#include "platform/windows/WindowsCalls.h"

namespace {

using Platform::SocketFault;
using Platform::SocketHandle;
using Platform::SocketReadiness;
using std::chrono::steady_clock;
using WindowsCalls::FromWide;
using WindowsCalls::ToWide;

constexpr auto Faults = std::to_array<std::pair<int, SocketFault>>({
    {WSAEINTR, SocketFault::Interrupted},
    {WSAEACCES, SocketFault::PermissionDenied},
    {WSAEFAULT, SocketFault::BadAddress},
    {WSAEINVAL, SocketFault::InvalidArgument},
    {WSAEMFILE, SocketFault::TooManyFiles},
    {WSAEWOULDBLOCK, SocketFault::WouldBlock},
    {WSAEINPROGRESS, SocketFault::InProgress},
    {WSAEALREADY, SocketFault::AlreadyInProgress},
    {WSAENOTSOCK, SocketFault::NotASocket},
    {WSAEDESTADDRREQ, SocketFault::DestinationRequired},
    {WSAEMSGSIZE, SocketFault::MessageTooLong},
    {WSAEPROTOTYPE, SocketFault::WrongProtocolType},
    {WSAENOPROTOOPT, SocketFault::BadProtocolOption},
    {WSAEPROTONOSUPPORT, SocketFault::ProtocolNotSupported},
    {WSAESOCKTNOSUPPORT, SocketFault::TypeNotSupported},
    {WSAEOPNOTSUPP, SocketFault::OperationNotSupported},
    {WSAEPFNOSUPPORT, SocketFault::ProtocolFamilyNotSupported},
    {WSAEAFNOSUPPORT, SocketFault::AddressFamilyNotSupported},
    {WSAEADDRINUSE, SocketFault::AddressInUse},
    {WSAEADDRNOTAVAIL, SocketFault::AddressNotAvailable},
    {WSAENETDOWN, SocketFault::NetworkDown},
    {WSAENETUNREACH, SocketFault::NetworkUnreachable},
    {WSAENETRESET, SocketFault::NetworkReset},
    {WSAECONNABORTED, SocketFault::ConnectionAborted},
    {WSAECONNRESET, SocketFault::ConnectionReset},
    {WSAENOBUFS, SocketFault::NoBuffers},
    {WSAEISCONN, SocketFault::IsConnected},
    {WSAENOTCONN, SocketFault::NotConnected},
    {WSAESHUTDOWN, SocketFault::IsShutDown},
    {WSAETIMEDOUT, SocketFault::TimedOut},
    {WSAECONNREFUSED, SocketFault::Refused},
    {WSAEHOSTDOWN, SocketFault::HostDown},
    {WSAEHOSTUNREACH, SocketFault::HostUnreachable},
    {WSAEPROCLIM, SocketFault::TooManyProcesses},
    {WSASYSNOTREADY, SocketFault::LayerNotReady},
    {WSAVERNOTSUPPORTED, SocketFault::LayerVersionNotSupported},
    {WSANOTINITIALISED, SocketFault::LayerNotStarted},
    {WSAHOST_NOT_FOUND, SocketFault::HostNotFound},
});

[[noreturn]] void Fail(int AnErrorCode) { throw EQuillonSocketError(static_cast<std::uint32_t>(AnErrorCode)); }
[[noreturn]] void Fail() { Fail(::WSAGetLastError()); }

int Checked(int AResult) {
  if (AResult == SOCKET_ERROR) {
    Fail();
  }
  return AResult;
}

SOCKET Socket(SocketHandle ASocket) { return static_cast<SOCKET>(ASocket); }

int SizeOfPiece(std::size_t ASize) {
  // Of one piece the system takes all bytes or none, however many they are.
  constexpr std::size_t LargestPiece = 262'144;
  return static_cast<int>(std::min(ASize, LargestPiece));
}

sockaddr_in NameOf(Platform::SocketAddress AnAddress) {
  sockaddr_in Name{};
  Name.sin_family = AF_INET;
  Name.sin_addr.s_addr = ::htonl(AnAddress.Host);
  Name.sin_port = ::htons(AnAddress.Port);
  return Name;
}

Platform::SocketAddress AddressIn(const sockaddr_in& AName) {
  return {::ntohl(AName.sin_addr.s_addr), ::ntohs(AName.sin_port)};
}

const sockaddr* Generic(const sockaddr_in& AName) { return reinterpret_cast<const sockaddr*>(&AName); }
sockaddr* Generic(sockaddr_in& AName) { return reinterpret_cast<sockaddr*>(&AName); }

std::pair<int, int> NameOf(Platform::SocketOption AnOption) {
  constexpr std::array Names = {std::pair{int{IPPROTO_TCP}, TCP_NODELAY}, std::pair{SOL_SOCKET, SO_RCVTIMEO},
                                std::pair{SOL_SOCKET, SO_SNDTIMEO}, std::pair{SOL_SOCKET, SO_RCVBUF},
                                std::pair{SOL_SOCKET, SO_SNDBUF}};
  return Names.at(static_cast<std::size_t>(AnOption));
}

/// The sockets whose traffic was ended: a wait for a connection is not ended by the system.
class TEnded {
 public:
  void Add(SocketHandle ASocket) {
    const std::lock_guard Guard(FLock);
    FSockets.insert(ASocket);
  }
  void Remove(SocketHandle ASocket) {
    const std::lock_guard Guard(FLock);
    FSockets.erase(ASocket);
  }
  bool Contains(SocketHandle ASocket) {
    const std::lock_guard Guard(FLock);
    return FSockets.contains(ASocket);
  }

 private:
  std::mutex FLock;
  std::set<SocketHandle> FSockets;
};

/// No call of the system waits: the sockets are all of the kind that does not, and the waits are here, so that sending
/// without a wait needs no change of a socket that other threads use.
class SystemSockets final : public Platform::SocketLayer {
 public:
  Platform::SocketLayerInfo StartUp() override {
    constexpr WORD Version = 0x0202;
    // Layers of this version have no limits to tell.
    constexpr std::uint32_t UsualSockets = 65'535;
    constexpr std::uint32_t UsualDatagram = 65'507;
    WSADATA Data{};
    if (const int Code = ::WSAStartup(Version, &Data); Code != 0) {
      Fail(Code);
    }
    return {.Description = static_cast<const char*>(Data.szDescription),
            .HighestVersion = static_cast<std::uint16_t>(Data.wHighVersion << 8 | Data.wHighVersion >> 8),
            .MaxSockets = Data.iMaxSockets != 0 ? Data.iMaxSockets : UsualSockets,
            .MaxUDPDatagram = Data.iMaxUdpDg != 0 ? Data.iMaxUdpDg : UsualDatagram};
  }

  std::uint32_t LastError() override { return static_cast<std::uint32_t>(::WSAGetLastError()); }

  SocketFault FaultOf(std::uint32_t AnErrorCode) override {
    const auto* const Found = std::find_if(Faults.begin(), Faults.end(), [=](const auto& AFault) {
      return static_cast<std::uint32_t>(AFault.first) == AnErrorCode;
    });
    return Found != Faults.end() ? Found->second : SocketFault::Unknown;
  }

  SocketHandle Create(Platform::SocketType AType, Platform::SocketProtocol AProtocol) override {
    const int Type = AType == Platform::SocketType::Stream ? SOCK_STREAM : SOCK_DGRAM;
    const int Protocol = AProtocol == Platform::SocketProtocol::Tcp ? IPPROTO_TCP : IPPROTO_UDP;
    return Prepared(::WSASocketW(AF_INET, Type, Protocol, nullptr, 0, WSA_FLAG_OVERLAPPED));
  }

  void Close(SocketHandle ASocket) noexcept override {
    Ended.Remove(ASocket);
    ::closesocket(Socket(ASocket));
  }

  void Shutdown(SocketHandle ASocket, Platform::SocketDirection ADirection) override {
    constexpr std::array Directions = {SD_RECEIVE, SD_SEND, SD_BOTH};
    if (ADirection == Platform::SocketDirection::Both) {
      Ended.Add(ASocket);
    }
    if (::shutdown(Socket(ASocket), Directions.at(static_cast<std::size_t>(ADirection))) == SOCKET_ERROR &&
        ::WSAGetLastError() != WSAENOTCONN) {
      Fail();
    }
  }

  void Bind(SocketHandle ASocket, Platform::SocketAddress AnAddress) override {
    const sockaddr_in Name = NameOf(AnAddress);
    Checked(::bind(Socket(ASocket), Generic(Name), sizeof(Name)));
  }

  void BeginConnect(SocketHandle ASocket, Platform::SocketAddress AnAddress) override {
    const sockaddr_in Name = NameOf(AnAddress);
    if (::connect(Socket(ASocket), Generic(Name), sizeof(Name)) == SOCKET_ERROR &&
        ::WSAGetLastError() != WSAEWOULDBLOCK) {
      Fail();
    }
  }

  void EndConnect(SocketHandle ASocket, Platform::SocketAddress /*AnAddress*/) override {
    int Error = 0;
    int Size = sizeof(Error);
    Checked(::getsockopt(Socket(ASocket), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&Error), &Size));
    if (Error != 0) {
      Fail(Error);
    }
    sockaddr_in Peer{};
    int PeerSize = sizeof(Peer);
    Checked(::getpeername(Socket(ASocket), Generic(Peer), &PeerSize));
  }

  void Listen(SocketHandle ASocket, int ABacklog) override { Checked(::listen(Socket(ASocket), ABacklog)); }

  SocketHandle Accept(SocketHandle ASocket, Platform::SocketAddress& APeer) override {
    for (;;) {
      sockaddr_in Name{};
      int Size = sizeof(Name);
      if (const SOCKET Accepted = ::accept(Socket(ASocket), Generic(Name), &Size); Accepted != INVALID_SOCKET) {
        APeer = AddressIn(Name);
        return Prepared(Accepted);
      }
      const int Error = ::WSAGetLastError();
      Await(Error, ASocket, SocketReadiness::Read, Forever);
    }
  }

  Platform::SocketAddress LocalAddress(SocketHandle ASocket) override {
    sockaddr_in Name{};
    int Size = sizeof(Name);
    Checked(::getsockname(Socket(ASocket), Generic(Name), &Size));
    return AddressIn(Name);
  }

  std::size_t Recv(SocketHandle ASocket, std::span<char> ABuffer) override {
    for (;;) {
      const int Got = ::recv(Socket(ASocket), ABuffer.data(), SizeOfPiece(ABuffer.size()), 0);
      if (Got >= 0) {
        return static_cast<std::size_t>(Got);
      }
      const int Error = ::WSAGetLastError();
      Await(Error, ASocket, SocketReadiness::Read, Option(ASocket, Platform::SocketOption::RecvTimeOut));
    }
  }

  std::size_t Send(SocketHandle ASocket, std::string_view ABytes, bool DoWait) override {
    std::size_t Done = 0;
    while (Done < ABytes.size()) {
      const int Sent = ::send(Socket(ASocket), ABytes.data() + Done, SizeOfPiece(ABytes.size() - Done), 0);
      if (Sent >= 0) {
        Done += static_cast<std::size_t>(Sent);
        continue;
      }
      const int Error = ::WSAGetLastError();
      if (!DoWait && Error == WSAEWOULDBLOCK) {
        break;
      }
      Await(Error, ASocket, SocketReadiness::Write, Option(ASocket, Platform::SocketOption::SendTimeOut));
    }
    return Done;
  }

  bool Poll(SocketHandle ASocket, SocketReadiness AReadiness, std::int32_t ATimeOut) override {
    // A wait is looked after now and then: a listening socket does not tell it that its traffic was ended.
    constexpr std::chrono::milliseconds LongestStep(50);
    const auto End = steady_clock::now() + std::chrono::milliseconds(ATimeOut);
    for (;;) {
      const auto Left = std::chrono::ceil<std::chrono::milliseconds>(End - steady_clock::now());
      const auto Step = ATimeOut < 0 ? LongestStep : std::clamp(Left, std::chrono::milliseconds(0), LongestStep);
      if (IsReady(ASocket, AReadiness, Step) || Ended.Contains(ASocket)) {
        return true;
      }
      if (ATimeOut >= 0 && Left <= Step) {
        return false;
      }
    }
  }

  std::size_t Available(SocketHandle ASocket) override {
    u_long Count = 0;
    Checked(::ioctlsocket(Socket(ASocket), FIONREAD, &Count));
    return Count;
  }

  std::int32_t Option(SocketHandle ASocket, Platform::SocketOption AnOption) override {
    const auto [Level, Name] = NameOf(AnOption);
    int Value = 0;
    int Size = sizeof(Value);
    Checked(::getsockopt(Socket(ASocket), Level, Name, reinterpret_cast<char*>(&Value), &Size));
    return Value;
  }

  void SetOption(SocketHandle ASocket, Platform::SocketOption AnOption, std::int32_t AValue) override {
    const auto [Level, Name] = NameOf(AnOption);
    Checked(::setsockopt(Socket(ASocket), Level, Name, reinterpret_cast<const char*>(&AValue), sizeof(AValue)));
  }

  std::optional<std::uint32_t> ParseHost(const std::string& AText) override {
    in_addr Address{};
    const bool IsHost =
        AText.find('\0') == std::string::npos && ::InetPtonW(AF_INET, ToWide(AText).c_str(), &Address) == 1;
    return IsHost ? std::optional<std::uint32_t>(::ntohl(Address.s_addr)) : std::nullopt;
  }

  std::vector<std::uint32_t> HostsOf(const std::string& AName) override {
    ADDRINFOW Wanted{};
    Wanted.ai_family = AF_INET;
    Wanted.ai_socktype = SOCK_STREAM;
    ADDRINFOW* List = nullptr;
    std::vector<std::uint32_t> Hosts;
    // The system takes an empty name for this machine's own.
    if (!AName.empty() && AName.find('\0') == std::string::npos &&
        ::GetAddrInfoW(ToWide(AName).c_str(), nullptr, &Wanted, &List) == 0) {
      const std::unique_ptr<ADDRINFOW, decltype(&::FreeAddrInfoW)> Owner(List, &::FreeAddrInfoW);
      for (const ADDRINFOW* Item = List; Item != nullptr; Item = Item->ai_next) {
        Hosts.push_back(AddressIn(*reinterpret_cast<const sockaddr_in*>(Item->ai_addr)).Host);
      }
    }
    return Hosts;
  }

  std::string HostName() override {
    constexpr DWORD LongestName = 256;
    std::wstring Name(LongestName, L'\0');
    DWORD Length = LongestName;
    if (::GetComputerNameExW(ComputerNameDnsHostname, Name.data(), &Length) == 0) {
      Fail(static_cast<int>(::GetLastError()));
    }
    return FromWide({Name.data(), Length});
  }

  std::vector<Platform::NetworkInterface> Interfaces() override {
    const SocketHandle Asked = Create(Platform::SocketType::Datagram, Platform::SocketProtocol::Udp);
    std::array<INTERFACE_INFO, 256> List{};
    DWORD Size = 0;
    const int Result = ::WSAIoctl(Socket(Asked), SIO_GET_INTERFACE_LIST, nullptr, 0, List.data(), sizeof(List), &Size,
                                  nullptr, nullptr);
    const int Error = ::WSAGetLastError();
    Close(Asked);
    if (Result == SOCKET_ERROR) {
      Fail(Error);
    }
    std::vector<Platform::NetworkInterface> Found;
    for (const INTERFACE_INFO& Item : std::span(List).first(Size / sizeof(INTERFACE_INFO))) {
      if ((Item.iiFlags & IFF_UP) != 0 && (Item.iiFlags & IFF_LOOPBACK) == 0) {
        const std::uint32_t Host = ::ntohl(Item.iiAddress.AddressIn.sin_addr.s_addr);
        const std::uint32_t Mask = ::ntohl(Item.iiNetmask.AddressIn.sin_addr.s_addr);
        const bool HasBroadcast = (Item.iiFlags & IFF_BROADCAST) != 0;
        Found.push_back({Host, HasBroadcast ? Host | ~Mask : std::numeric_limits<std::uint32_t>::max()});
      }
    }
    return Found;
  }

 private:
  static constexpr std::int32_t Forever = 0;  ///< as the options of sockets tell it

  /// A new socket that never waits, and that no program started by this one gets.
  static SocketHandle Prepared(SOCKET ASocket) {
    u_long DoReturn = 1;
    if (ASocket == INVALID_SOCKET) {
      Fail();
    }
    ::SetHandleInformation(reinterpret_cast<HANDLE>(ASocket), HANDLE_FLAG_INHERIT, 0);
    if (::ioctlsocket(ASocket, static_cast<long>(FIONBIO), &DoReturn) == SOCKET_ERROR) {
      const int Error = ::WSAGetLastError();
      ::closesocket(ASocket);
      Fail(Error);
    }
    return static_cast<SocketHandle>(ASocket);
  }

  /// A failed connection is not told as ready for writing, but as an exception.
  static bool IsReady(SocketHandle ASocket, SocketReadiness AReadiness, std::chrono::milliseconds ATimeOut) {
    fd_set Ready{};
    fd_set Failed{};
    FD_SET(Socket(ASocket), &Ready);
    FD_SET(Socket(ASocket), &Failed);
    timeval Time = {0, static_cast<long>(ATimeOut.count()) * 1000};
    const bool DoesRead = AReadiness == SocketReadiness::Read;
    return Checked(::select(0, DoesRead ? &Ready : nullptr, DoesRead ? nullptr : &Ready, DoesRead ? nullptr : &Failed,
                            &Time)) > 0;
  }

  /// Waits where a call would have done so; any other error of it is raised.
  /// @param ATimeOut milliseconds; 0 for no limit
  void Await(int AnError, SocketHandle ASocket, SocketReadiness AReadiness, std::int32_t ATimeOut) {
    if (AnError != WSAEWOULDBLOCK) {
      Fail(AnError);
    }
    if (Ended.Contains(ASocket)) {
      Fail(WSAESHUTDOWN);
    }
    if (!Poll(ASocket, AReadiness, ATimeOut == Forever ? -1 : ATimeOut)) {
      Fail(WSAETIMEDOUT);
    }
  }

  TEnded Ended;
};

Platform::SocketLayer& System() {
  // Never freed: a thread may wait up to the end of the process.
  static SystemSockets& Sockets = *new SystemSockets;
  return Sockets;
}

}  // namespace

namespace Platform {

const std::uint32_t NoSocketError = WSAENOTSOCK;

SocketLayer& Sockets() { return SocketsReplacement::Current(System); }

}  // namespace Platform
