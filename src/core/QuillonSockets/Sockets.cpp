#include "QuillonSockets/Sockets.h"

#include <algorithm>
#include <array>
#include <utility>

#include "QuillonLogs/Manager.h"
#include "QuillonSockets/Utils.h"
#include "QuillonStreams/Streams.h"

namespace {

void Log(Platform::SocketHandle ASocket, const std::string& AText,
         std::string_view ANamespace = QuillonSockets::LogNamespace) {
  QuillonLogs::TheLog().AddEntry(letInfo, AText, ANamespace, std::to_string(ASocket));
}

std::string Place(const std::string& AHost, std::uint16_t APort) { return AHost + ":" + std::to_string(APort); }

}  // namespace

class TQuillonSocket::TOpenSocket {
 public:
  explicit TOpenSocket(Platform::SocketHandle ASocket) : Handle(ASocket) {}
  TOpenSocket(const TOpenSocket&) = delete;
  TOpenSocket& operator=(const TOpenSocket&) = delete;
  ~TOpenSocket() { Platform::Sockets().Close(Handle); }

  const Platform::SocketHandle Handle;
};

TQuillonSocket::TUse TQuillonSocket::Use() const {
  const std::lock_guard Guard(FLock);
  if (!FSocket) {
    throw EQuillonSocketError(Platform::NoSocketError);
  }
  return FSocket;
}

Platform::SocketHandle TQuillonSocket::Socket() const {
  const std::lock_guard Guard(FLock);
  return FSocket ? FSocket->Handle : Platform::NoSocket;
}

void TQuillonSocket::Open(Platform::SocketHandle ASocket) {
  auto Opened = std::make_shared<const TOpenSocket>(ASocket);
  const std::lock_guard Guard(FLock);
  FSocket = std::move(Opened);
}

void TQuillonSocket::Close(const TQuillonTCPSocketShutDown* AHow) {
  constexpr std::array Directions = {Platform::SocketDirection::Receive, Platform::SocketDirection::Send,
                                     Platform::SocketDirection::Both};
  TUse Closed;
  bool IsInUse = false;
  {
    const std::lock_guard Guard(FLock);
    Closed = std::exchange(FSocket, nullptr);
    IsInUse = Closed.use_count() > 1;
  }
  if (Closed) {
    const Platform::SocketHandle Handle = Closed->Handle;
    if (IsInUse) {
      Platform::Sockets().Shutdown(Handle, Platform::SocketDirection::Both);
    } else if (AHow != nullptr) {
      Platform::Sockets().Shutdown(Handle, Directions.at(*AHow));
    }
    Closed.reset();
    Log(Handle, "Socket closed");
  }
}

TQuillonSocket::~TQuillonSocket() { Close(nullptr); }

void TQuillonSocket::CloseSocket() { Close(nullptr); }

void TQuillonSocket::CreateSocket() {
  if (Socket() == Platform::NoSocket) {
    const Platform::SocketHandle Created = TQuillonSocketLibrary::Layer().Create(Type(), Protocol());
    Open(Created);
    Log(Created, "Socket created");
  }
}

void TQuillonSocket::ReadLocalAddress() {
  const Platform::SocketAddress Local = Platform::Sockets().LocalAddress(Use()->Handle);
  FLocalHost = TQuillonSocketUtils::AddressToText(Local.Host);
  FLocalPort = Local.Port;
}

void TQuillonSocket::Bind() {
  const TUse Used = Use();
  Platform::Sockets().Bind(Used->Handle, {TQuillonSocketUtils::GetAddress(FLocalHost), FLocalPort});
  if (FLocalPort == 0) {
    ReadLocalAddress();
  }
  Log(Used->Handle, "Socket on " + Place(FLocalHost, FLocalPort) + " binded");
}

void TQuillonSocket::Connect() {
  const std::uint32_t Host = TQuillonSocketUtils::GetAddress(FRemoteHost);
  const TUse Used = Use();
  // The system would call the network unreachable, which leads people astray.
  if (Host == TQuillonSocketUtils::NoAddress) {
    throw EQuillonSocketError(Platform::HostNotFoundError);
  }
  const Platform::SocketAddress Remote = {Host, FRemotePort};
  Platform::Sockets().BeginConnect(Used->Handle, Remote);
  // What is not connected yet cannot be shut down: another thread's CloseSocket is seen here.
  while (!Platform::Sockets().Poll(Used->Handle, Platform::SocketReadiness::Write, QuillonSockets::ConnectStep)) {
    Use();
  }
  Platform::Sockets().EndConnect(Used->Handle, Remote);
  Log(Used->Handle, "Socket connected");
  if (FLocalHost == "0.0.0.0" || FLocalPort == 0) {
    ReadLocalAddress();
  }
}

std::size_t TQuillonSocket::Available() const { return Platform::Sockets().Available(Use()->Handle); }

bool TQuillonSocket::Poll(std::int32_t ATimeOut, TQuillonSocketSelectMode AMode) const {
  const auto Readiness = AMode == ssmRead ? Platform::SocketReadiness::Read : Platform::SocketReadiness::Write;
  return Platform::Sockets().Poll(Use()->Handle, Readiness, ATimeOut);
}

void TQuillonSocket::Purge() {
  std::string Dropped;
  std::size_t Done = 0;
  while (Done < QuillonSockets::PurgeLimit && Poll(1, ssmRead)) {
    Dropped.resize(std::min({Available(), QuillonStreams::PieceSize, QuillonSockets::PurgeLimit - Done}));
    const std::size_t Count = Dropped.empty() ? 0 : Recv(Dropped);
    if (Count == 0) {
      return;
    }
    Done += Count;
  }
}

std::int32_t TQuillonSocket::Option(Platform::SocketOption AnOption) const {
  return Platform::Sockets().Option(Use()->Handle, AnOption);
}

void TQuillonSocket::SetOption(Platform::SocketOption AnOption, std::int32_t AValue) {
  Platform::Sockets().SetOption(Use()->Handle, AnOption, AValue);
}

std::size_t TQuillonSocket::RecvOnce(std::span<char> ABuffer) {
  const TUse Used = Use();
  const std::size_t Count = Platform::Sockets().Recv(Used->Handle, ABuffer);
  Log(Used->Handle, std::to_string(Count) + " Bytes data recieved", QuillonSockets::RecvLogNamespace);
  return Count;
}

std::size_t TQuillonSocket::SendOnce(std::string_view ABytes, bool DoWait) {
  const TUse Used = Use();
  const std::size_t Count = Platform::Sockets().Send(Used->Handle, ABytes, DoWait);
  Log(Used->Handle, std::to_string(Count) + " Bytes data send", QuillonSockets::SendLogNamespace);
  return Count;
}

void TQuillonTCPSocket::Listen() {
  const TUse Used = Use();
  Platform::Sockets().Listen(Used->Handle, QuillonSockets::Backlog);
  Log(Used->Handle, "Socket is listening...");
}

std::unique_ptr<TQuillonTCPSocket> TQuillonTCPSocket::Accept() {
  const TUse Used = Use();
  auto Accepted = std::make_unique<TQuillonTCPSocket>();
  Platform::SocketAddress Peer;
  const Platform::SocketHandle Handle = Platform::Sockets().Accept(Used->Handle, Peer);
  Accepted->Open(Handle);
  Accepted->FRemoteHost = TQuillonSocketUtils::AddressToText(Peer.Host);
  Accepted->FRemotePort = Peer.Port;
  Accepted->ReadLocalAddress();
  Log(Used->Handle, "New Socket (" + std::to_string(Handle) + ") on " +
                        Place(Accepted->FRemoteHost, Accepted->FRemotePort) + " accepted");
  return Accepted;
}
