#include "QuillonSockets/SocketStreams.h"

#include <algorithm>
#include <chrono>

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// What ends a transfer and who is told about it.
struct TTerms {
  std::int32_t TimeOut;
  std::int32_t StallLimit;
  const TQuillonTransferBound* Bound;
  const TQuillonStreamProgressEvent& Progress;
};

milliseconds LeftUntil(steady_clock::time_point ATime) {
  return std::chrono::ceil<milliseconds>(ATime - steady_clock::now());
}

/// Moves bytes until all are through, the peer has closed, or the transfer stalls or has taken too long.
/// @param AMove is called when the socket is ready; moves bytes from a place on, and tells whether more can follow
/// @return bytes moved
template <class TMove>
std::size_t Transfer(std::size_t ACount, const TTerms& ATerms, const TQuillonTCPSocket& ASocket,
                     TQuillonSocketSelectMode AMode, TMove AMove) {
  std::size_t Done = 0;
  auto LastByte = steady_clock::now();
  while (Done < ACount) {
    auto Left = LeftUntil(LastByte + milliseconds(ATerms.StallLimit));
    if (ATerms.Bound != nullptr) {
      Left = std::min(Left, LeftUntil(ATerms.Bound->Deadline()));
    }
    if (Left.count() <= 0) {
      break;
    }
    const auto Wait = static_cast<std::int32_t>(Left.count());
    if (ASocket.Poll(ATerms.TimeOut < 0 ? Wait : std::min(ATerms.TimeOut, Wait), AMode)) {
      const std::size_t Before = Done;
      if (!AMove(Done)) {
        break;
      }
      if (Done > Before) {
        LastByte = steady_clock::now();
      }
    }
    QuillonStreams::Report(ATerms.Progress, Done, ACount);
  }
  return Done;
}

}  // namespace

std::size_t TQuillonTCPSocketReader::Read(std::span<char> ABuffer) {
  const std::uint64_t Allowed = FBound == nullptr ? ABuffer.size() : FBound->ReceiveLeft();
  const std::span<char> Wanted = ABuffer.first(std::min<std::uint64_t>(ABuffer.size(), Allowed));
  const TTerms Terms = {FTimeOut, FStallLimit, FBound, FOnProgress};
  return Transfer(Wanted.size(), Terms, FSocket, ssmRead, [&](std::size_t& ADone) {
    const std::size_t Count = FSocket.Recv(Wanted.subspan(ADone));
    ADone += Count;
    if (FBound != nullptr) {
      FBound->AddReceived(Count);
    }
    return Count > 0;
  });
}

std::size_t TQuillonTCPSocketWriter::Write(std::string_view ABytes) {
  const TTerms Terms = {FTimeOut, FStallLimit, FBound, FOnProgress};
  return Transfer(ABytes.size(), Terms, FSocket, ssmWrite, [&](std::size_t& ADone) {
    // Room that is gone again is no end: only a failed call tells that.
    const std::size_t Count = FSocket.SendReady(ABytes.substr(ADone));
    ADone += Count;
    if (FBound != nullptr) {
      FBound->AddSent(Count);
    }
    return true;
  });
}
