#include "QuillonSockets/Errors.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "platform/Sockets.h"

namespace {

using Platform::SocketFault;

constexpr auto Texts = std::to_array<std::pair<SocketFault, std::string_view>>({
    {SocketFault::Interrupted, "Interrupted function call"},
    {SocketFault::PermissionDenied, "Permission denied"},
    {SocketFault::BadAddress, "Bad address"},
    {SocketFault::InvalidArgument, "Invalid argument"},
    {SocketFault::TooManyFiles, "Too many open files"},
    {SocketFault::WouldBlock, "Resource temporarily unavailable"},
    {SocketFault::InProgress, "Operation now in progress"},
    {SocketFault::AlreadyInProgress, "Operation already in progress"},
    {SocketFault::NotASocket, "Socket operation on nonsocket"},
    {SocketFault::DestinationRequired, "Destination address required"},
    {SocketFault::MessageTooLong, "Message too long"},
    {SocketFault::WrongProtocolType, "Protocol wrong type for socket"},
    {SocketFault::BadProtocolOption, "Bad protocol option"},
    {SocketFault::ProtocolNotSupported, "Protocol not supported"},
    {SocketFault::TypeNotSupported, "Socket type not supported"},
    {SocketFault::OperationNotSupported, "Operation not supported"},
    {SocketFault::ProtocolFamilyNotSupported, "Protocol family not supported"},
    {SocketFault::AddressFamilyNotSupported, "Address family not supported by protocol family"},
    {SocketFault::AddressInUse, "Address already in use"},
    {SocketFault::AddressNotAvailable, "Cannot assign requested address"},
    {SocketFault::NetworkDown, "Network is down"},
    {SocketFault::NetworkUnreachable, "Network is unreachable"},
    {SocketFault::NetworkReset, "Network dropped connection on reset"},
    {SocketFault::ConnectionAborted, "Software caused connection abort"},
    {SocketFault::ConnectionReset, "Connection reset by peer"},
    {SocketFault::NoBuffers, "No buffer space available"},
    {SocketFault::IsConnected, "Socket is already connected"},
    {SocketFault::NotConnected, "Socket is not connected"},
    {SocketFault::IsShutDown, "Cannot send after socket shutdown"},
    {SocketFault::TimedOut, "Connection timed out"},
    {SocketFault::Refused, "Connection refused"},
    {SocketFault::HostDown, "Host is down"},
    {SocketFault::HostUnreachable, "No route to host"},
    {SocketFault::TooManyProcesses, "Too many processes"},
    {SocketFault::LayerNotReady, "Network subsystem is unavailable"},
    {SocketFault::LayerVersionNotSupported, "WINSOCK.DLL version out of range"},
    {SocketFault::LayerNotStarted, "Successful WSAStartup not yet performed"},
    {SocketFault::HostNotFound, "Host not found"},
});

std::string TextOf(std::uint32_t AnErrorCode) {
  const SocketFault Fault = Platform::Sockets().FaultOf(AnErrorCode);
  const auto* const Found =
      std::find_if(Texts.begin(), Texts.end(), [=](const auto& AText) { return AText.first == Fault; });
  return Found != Texts.end() ? std::string(Found->second)
                              : "Other WinSock error (" + std::to_string(AnErrorCode) + ")";
}

}  // namespace

EQuillonSocketError::EQuillonSocketError() : EQuillonSocketError(Platform::Sockets().LastError()) {}

EQuillonSocketError::EQuillonSocketError(std::uint32_t AnErrorCode)
    : EQuillonException(TextOf(AnErrorCode)), FErrorCode(AnErrorCode), FErrorMsg(what()) {}
