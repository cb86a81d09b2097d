#include "QuillonSockets/SocketStreams.h"

#include <algorithm>
#include <chrono>

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Moves bytes until all are through, the peer has closed or the transfer stalls.
/// @param AMove is called when the socket is ready; moves bytes from a place on, and tells whether more can follow
/// @return bytes moved
template <class TMove>
std::size_t Transfer(std::size_t ACount, std::int32_t ATimeOut, std::int32_t AStallLimit,
                     const TQuillonTCPSocket& ASocket, TQuillonSocketSelectMode AMode,
                     const TQuillonStreamProgressEvent& AProgress, TMove AMove) {
  std::size_t Done = 0;
  auto LastByte = steady_clock::now();
  while (Done < ACount) {
    const auto Left = std::chrono::ceil<milliseconds>(LastByte + milliseconds(AStallLimit) - steady_clock::now());
    if (Left.count() <= 0) {
      break;
    }
    const auto Wait = static_cast<std::int32_t>(Left.count());
    if (ASocket.Poll(ATimeOut < 0 ? Wait : std::min(ATimeOut, Wait), AMode)) {
      const std::size_t Before = Done;
      if (!AMove(Done)) {
        break;
      }
      if (Done > Before) {
        LastByte = steady_clock::now();
      }
    }
    QuillonStreams::Report(AProgress, Done, ACount);
  }
  return Done;
}

}  // namespace

std::size_t TQuillonTCPSocketReader::Read(std::span<char> ABuffer) {
  return Transfer(ABuffer.size(), FTimeOut, FStallLimit, FSocket, ssmRead, FOnProgress, [&](std::size_t& ADone) {
    const std::size_t Count = FSocket.Recv(ABuffer.subspan(ADone));
    ADone += Count;
    return Count > 0;
  });
}

std::size_t TQuillonTCPSocketWriter::Write(std::string_view ABytes) {
  return Transfer(ABytes.size(), FTimeOut, FStallLimit, FSocket, ssmWrite, FOnProgress, [&](std::size_t& ADone) {
    // Room that is gone again is no end: only a failed call tells that.
    ADone += FSocket.SendReady(ABytes.substr(ADone));
    return true;
  });
}
