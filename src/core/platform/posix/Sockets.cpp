#include "platform/Sockets.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <memory>
#include <utility>

#include "QuillonSockets/Errors.h"
#include "platform/posix/PosixFile.h"

namespace {

using Platform::SocketFault;
using Platform::SocketHandle;
using PosixCalls::Retried;
using std::chrono::steady_clock;

constexpr auto Faults = std::to_array<std::pair<int, SocketFault>>({
    {EINTR, SocketFault::Interrupted},
    {EACCES, SocketFault::PermissionDenied},
    {EPERM, SocketFault::PermissionDenied},
    {EFAULT, SocketFault::BadAddress},
    {EINVAL, SocketFault::InvalidArgument},
    {EMFILE, SocketFault::TooManyFiles},
    {ENFILE, SocketFault::TooManyFiles},
    {EAGAIN, SocketFault::WouldBlock},
    {EINPROGRESS, SocketFault::InProgress},
    {EALREADY, SocketFault::AlreadyInProgress},
    {EBADF, SocketFault::NotASocket},
    {ENOTSOCK, SocketFault::NotASocket},
    {EDESTADDRREQ, SocketFault::DestinationRequired},
    {EMSGSIZE, SocketFault::MessageTooLong},
    {EPROTOTYPE, SocketFault::WrongProtocolType},
    {ENOPROTOOPT, SocketFault::BadProtocolOption},
    {EPROTONOSUPPORT, SocketFault::ProtocolNotSupported},
    {ESOCKTNOSUPPORT, SocketFault::TypeNotSupported},
    {EOPNOTSUPP, SocketFault::OperationNotSupported},
    {EPFNOSUPPORT, SocketFault::ProtocolFamilyNotSupported},
    {EAFNOSUPPORT, SocketFault::AddressFamilyNotSupported},
    {EADDRINUSE, SocketFault::AddressInUse},
    {EADDRNOTAVAIL, SocketFault::AddressNotAvailable},
    {ENETDOWN, SocketFault::NetworkDown},
    {ENETUNREACH, SocketFault::NetworkUnreachable},
    {ENETRESET, SocketFault::NetworkReset},
    {ECONNABORTED, SocketFault::ConnectionAborted},
    {ECONNRESET, SocketFault::ConnectionReset},
    // The other end has closed, and answers what was sent since with a reset.
    {EPIPE, SocketFault::ConnectionReset},
    {ENOBUFS, SocketFault::NoBuffers},
    {ENOMEM, SocketFault::NoBuffers},
    {EISCONN, SocketFault::IsConnected},
    {ENOTCONN, SocketFault::NotConnected},
    {ESHUTDOWN, SocketFault::IsShutDown},
    {ETIMEDOUT, SocketFault::TimedOut},
    {ECONNREFUSED, SocketFault::Refused},
    {EHOSTDOWN, SocketFault::HostDown},
    {EHOSTUNREACH, SocketFault::HostUnreachable},
    {Platform::HostNotFoundError, SocketFault::HostNotFound},
});

[[noreturn]] void Fail(int AnErrorCode) { throw EQuillonSocketError(static_cast<std::uint32_t>(AnErrorCode)); }

template <class TResult>
TResult Checked(TResult AResult) {
  if (AResult < 0) {
    Fail(errno);
  }
  return AResult;
}

/// As Checked, for the transfer of bytes: a time-out of the socket's own is no lack of room.
std::size_t Moved(ssize_t AResult) {
  if (AResult < 0 && errno == EAGAIN) {
    Fail(ETIMEDOUT);
  }
  return static_cast<std::size_t>(Checked(AResult));
}

int Descriptor(SocketHandle ASocket) { return static_cast<int>(ASocket); }

sockaddr_in NameOf(Platform::SocketAddress AnAddress) {
  sockaddr_in Name{};
  Name.sin_family = AF_INET;
  Name.sin_addr.s_addr = htonl(AnAddress.Host);
  Name.sin_port = htons(AnAddress.Port);
  return Name;
}

std::uint32_t HostIn(const sockaddr& AName) {
  return ntohl(reinterpret_cast<const sockaddr_in&>(AName).sin_addr.s_addr);
}

Platform::SocketAddress AddressIn(const sockaddr_in& AName) {
  return {ntohl(AName.sin_addr.s_addr), ntohs(AName.sin_port)};
}

const sockaddr* Generic(const sockaddr_in& AName) { return reinterpret_cast<const sockaddr*>(&AName); }
sockaddr* Generic(sockaddr_in& AName) { return reinterpret_cast<sockaddr*>(&AName); }

struct TOptionName {
  int Level;
  int Name;
  bool IsTime = false;
};

TOptionName NameOf(Platform::SocketOption AnOption) {
  constexpr std::array Names = {TOptionName{IPPROTO_TCP, TCP_NODELAY}, TOptionName{SOL_SOCKET, SO_RCVTIMEO, true},
                                TOptionName{SOL_SOCKET, SO_SNDTIMEO, true}, TOptionName{SOL_SOCKET, SO_RCVBUF},
                                TOptionName{SOL_SOCKET, SO_SNDBUF}};
  return Names.at(static_cast<std::size_t>(AnOption));
}

std::int32_t Milliseconds(std::chrono::steady_clock::duration ATime) {
  const auto Count = std::chrono::ceil<std::chrono::milliseconds>(ATime).count();
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(Count, 0, INT32_MAX));
}

class SystemSockets final : public Platform::SocketLayer {
 public:
  Platform::SocketLayerInfo StartUp() override {
    utsname System{};
    rlimit Limit{};
    Checked(::uname(&System));
    Checked(::getrlimit(RLIMIT_NOFILE, &Limit));
    return {.Description = std::string(System.sysname) + " sockets",
            .HighestVersion = 0x0202,
            .MaxSockets = static_cast<std::uint32_t>(std::min<rlim_t>(Limit.rlim_cur, UINT32_MAX)),
            .MaxUDPDatagram = 65'507};
  }

  std::uint32_t LastError() override { return static_cast<std::uint32_t>(errno); }

  SocketFault FaultOf(std::uint32_t AnErrorCode) override {
    const auto* const Found = std::find_if(Faults.begin(), Faults.end(), [=](const auto& AFault) {
      return static_cast<std::uint32_t>(AFault.first) == AnErrorCode;
    });
    return Found != Faults.end() ? Found->second : SocketFault::Unknown;
  }

  SocketHandle Create(Platform::SocketType AType, Platform::SocketProtocol AProtocol) override {
    const int Type = AType == Platform::SocketType::Stream ? SOCK_STREAM : SOCK_DGRAM;
    const int Protocol = AProtocol == Platform::SocketProtocol::Tcp ? IPPROTO_TCP : IPPROTO_UDP;
    return Checked(::socket(AF_INET, Type | SOCK_CLOEXEC, Protocol));
  }

  void Close(SocketHandle ASocket) noexcept override { ::close(Descriptor(ASocket)); }

  void Shutdown(SocketHandle ASocket, Platform::SocketDirection ADirection) override {
    constexpr std::array Directions = {SHUT_RD, SHUT_WR, SHUT_RDWR};
    if (::shutdown(Descriptor(ASocket), Directions.at(static_cast<std::size_t>(ADirection))) < 0 && errno != ENOTCONN) {
      Fail(errno);
    }
  }

  void Bind(SocketHandle ASocket, Platform::SocketAddress AnAddress) override {
    const sockaddr_in Name = NameOf(AnAddress);
    Checked(::bind(Descriptor(ASocket), Generic(Name), sizeof(Name)));
  }

  void BeginConnect(SocketHandle ASocket, Platform::SocketAddress AnAddress) override {
    const sockaddr_in Name = NameOf(AnAddress);
    SetBlocking(ASocket, false);
    const int Result = ::connect(Descriptor(ASocket), Generic(Name), sizeof(Name));
    if (Result < 0 && errno != EINPROGRESS && errno != EINTR) {
      const int Error = errno;
      SetBlocking(ASocket, true);
      Fail(Error);
    }
  }

  void EndConnect(SocketHandle ASocket, Platform::SocketAddress AnAddress) override {
    SetBlocking(ASocket, true);
    int Error = 0;
    socklen_t Size = sizeof(Error);
    Checked(::getsockopt(Descriptor(ASocket), SOL_SOCKET, SO_ERROR, &Error, &Size));
    if (Error != 0) {
      Fail(Error);
    }
    // Some systems know by a second call only that the first one is over.
    const sockaddr_in Name = NameOf(AnAddress);
    if (::connect(Descriptor(ASocket), Generic(Name), sizeof(Name)) < 0 && errno != EISCONN) {
      Fail(errno);
    }
  }

  void Listen(SocketHandle ASocket, int ABacklog) override { Checked(::listen(Descriptor(ASocket), ABacklog)); }

  SocketHandle Accept(SocketHandle ASocket, Platform::SocketAddress& APeer) override {
    sockaddr_in Name{};
    const int Accepted = Checked(Retried([&] {
      socklen_t Size = sizeof(Name);
      return ::accept4(Descriptor(ASocket), Generic(Name), &Size, SOCK_CLOEXEC);
    }));
    APeer = AddressIn(Name);
    return Accepted;
  }

  Platform::SocketAddress LocalAddress(SocketHandle ASocket) override {
    sockaddr_in Name{};
    socklen_t Size = sizeof(Name);
    Checked(::getsockname(Descriptor(ASocket), Generic(Name), &Size));
    return AddressIn(Name);
  }

  std::size_t Recv(SocketHandle ASocket, std::span<char> ABuffer) override {
    const std::size_t Wanted = std::min<std::size_t>(ABuffer.size(), SSIZE_MAX);
    return Moved(Retried([&] { return ::recv(Descriptor(ASocket), ABuffer.data(), Wanted, 0); }));
  }

  std::size_t Send(SocketHandle ASocket, std::string_view ABytes, bool DoWait) override {
    const std::size_t Wanted = std::min<std::size_t>(ABytes.size(), SSIZE_MAX);
    const int Flags = MSG_NOSIGNAL | (DoWait ? 0 : MSG_DONTWAIT);
    const ssize_t Sent = Retried([&] { return ::send(Descriptor(ASocket), ABytes.data(), Wanted, Flags); });
    return Sent < 0 && errno == EAGAIN && !DoWait ? 0 : Moved(Sent);
  }

  bool Poll(SocketHandle ASocket, Platform::SocketReadiness AReadiness, std::int32_t ATimeOut) override {
    pollfd Wait{};
    Wait.fd = Descriptor(ASocket);
    Wait.events = AReadiness == Platform::SocketReadiness::Read ? POLLIN : POLLOUT;
    const auto End = steady_clock::now() + std::chrono::milliseconds(ATimeOut);
    int Left = ATimeOut;
    int Ready = ::poll(&Wait, 1, Left);
    while (Ready < 0 && errno == EINTR) {
      Left = ATimeOut < 0 ? -1 : Milliseconds(End - steady_clock::now());
      Ready = ::poll(&Wait, 1, Left);
    }
    if (Checked(Ready) > 0 && (Wait.revents & POLLNVAL) != 0) {
      Fail(EBADF);
    }
    return Ready > 0;
  }

  std::size_t Available(SocketHandle ASocket) override {
    int Count = 0;
    Checked(::ioctl(Descriptor(ASocket), FIONREAD, &Count));
    return static_cast<std::size_t>(Count);
  }

  std::int32_t Option(SocketHandle ASocket, Platform::SocketOption AnOption) override {
    const TOptionName Name = NameOf(AnOption);
    int Value = 0;
    timeval Time{};
    socklen_t Size = Name.IsTime ? sizeof(Time) : sizeof(Value);
    void* const Target = Name.IsTime ? static_cast<void*>(&Time) : &Value;
    Checked(::getsockopt(Descriptor(ASocket), Name.Level, Name.Name, Target, &Size));
    return Name.IsTime ? Milliseconds(std::chrono::seconds(Time.tv_sec) + std::chrono::microseconds(Time.tv_usec))
                       : Value;
  }

  void SetOption(SocketHandle ASocket, Platform::SocketOption AnOption, std::int32_t AValue) override {
    const TOptionName Name = NameOf(AnOption);
    const timeval Time{.tv_sec = AValue / 1000, .tv_usec = suseconds_t{AValue % 1000} * 1000};
    const void* const Source = Name.IsTime ? static_cast<const void*>(&Time) : &AValue;
    const socklen_t Size = Name.IsTime ? sizeof(Time) : sizeof(AValue);
    Checked(::setsockopt(Descriptor(ASocket), Name.Level, Name.Name, Source, Size));
  }

  std::optional<std::uint32_t> ParseHost(const std::string& AText) override {
    in_addr Address{};
    const bool IsHost = AText.find('\0') == std::string::npos && ::inet_pton(AF_INET, AText.c_str(), &Address) == 1;
    return IsHost ? std::optional<std::uint32_t>(ntohl(Address.s_addr)) : std::nullopt;
  }

  std::vector<std::uint32_t> HostsOf(const std::string& AName) override {
    addrinfo Wanted{};
    Wanted.ai_family = AF_INET;
    Wanted.ai_socktype = SOCK_STREAM;
    addrinfo* List = nullptr;
    std::vector<std::uint32_t> Hosts;
    if (AName.find('\0') == std::string::npos && ::getaddrinfo(AName.c_str(), nullptr, &Wanted, &List) == 0) {
      const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> Owner(List, &::freeaddrinfo);
      for (const addrinfo* Item = List; Item != nullptr; Item = Item->ai_next) {
        Hosts.push_back(HostIn(*Item->ai_addr));
      }
    }
    return Hosts;
  }

  std::string HostName() override {
    std::array<char, 256> Name{};
    Checked(::gethostname(Name.data(), Name.size() - 1));
    return Name.data();
  }

  std::vector<Platform::NetworkInterface> Interfaces() override {
    ifaddrs* List = nullptr;
    Checked(::getifaddrs(&List));
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> Owner(List, &::freeifaddrs);
    std::vector<Platform::NetworkInterface> Found;
    for (const ifaddrs* Item = List; Item != nullptr; Item = Item->ifa_next) {
      const bool IsOpen = (Item->ifa_flags & IFF_UP) != 0 && (Item->ifa_flags & IFF_LOOPBACK) == 0;
      if (IsOpen && Item->ifa_addr != nullptr && Item->ifa_addr->sa_family == AF_INET) {
        const bool HasBroadcast = (Item->ifa_flags & IFF_BROADCAST) != 0 && Item->ifa_broadaddr != nullptr;
        Found.push_back({HostIn(*Item->ifa_addr), HasBroadcast ? HostIn(*Item->ifa_broadaddr) : INADDR_BROADCAST});
      }
    }
    return Found;
  }

 private:
  static void SetBlocking(SocketHandle ASocket, bool AValue) {
    int DoReturn = AValue ? 0 : 1;
    Checked(::ioctl(Descriptor(ASocket), FIONBIO, &DoReturn));
  }
};

Platform::SocketLayer& System() {
  static SystemSockets Sockets;
  return Sockets;
}

}  // namespace

namespace Platform {

const std::uint32_t NoSocketError = ENOTSOCK;

SocketLayer& Sockets() { return SocketsReplacement::Current(System); }

}  // namespace Platform
