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

std::size_t TQuillonTCPSocketReader::TakeBuffered(std::span<char> ABuffer) {
  const std::size_t Count = std::min(ABuffer.size(), Unread().size());
  std::copy_n(Unread().begin(), Count, ABuffer.begin());
  FNext += Count;
  return Count;
}

std::span<char> TQuillonTCPSocketReader::Allowed(std::span<char> ABuffer) const {
  return FBound == nullptr ? ABuffer : ABuffer.first(std::min<std::uint64_t>(ABuffer.size(), FBound->ReceiveLeft()));
}

std::size_t TQuillonTCPSocketReader::Receive(std::span<char> ABuffer) {
  const std::size_t Count = FSocket.Recv(Allowed(ABuffer));
  if (FBound != nullptr) {
    FBound->AddReceived(Count);
  }
  return Count;
}

std::size_t TQuillonTCPSocketReader::Read(std::span<char> ABuffer) {
  const TTerms Terms = {FTimeOut, FStallLimit, FBound, FOnProgress};
  const std::size_t Buffered = TakeBuffered(ABuffer);
  const std::span<char> Missing = Allowed(ABuffer.subspan(Buffered));
  return Buffered + Transfer(Missing.size(), Terms, FSocket, ssmRead, [&](std::size_t& ADone) {
           const std::span<char> Left = Missing.subspan(ADone);
           if (Left.size() >= FBuffer.size()) {
             const std::size_t Count = Receive(Left);
             ADone += Count;
             return Count > 0;
           }
           FNext = FEnd = FBuffer.data();
           FEnd += Receive(FBuffer);
           const std::size_t Count = TakeBuffered(Left);
           ADone += Count;
           return Count > 0;
         });
}

TQuillonTCPSocketWriter::TQuillonTCPSocketWriter(TQuillonTCPSocket& ASocket, std::size_t ABufferSize)
    : FSocket(ASocket), FBuffer(ABufferSize, '\0') {
  FRoom = FBuffer.data();
  FRoomEnd = FRoom + FBuffer.size();
}

void TQuillonTCPSocketWriter::FlushBuffer() {
  const std::string_view Filled(FBuffer.data(), static_cast<std::size_t>(FRoom - FBuffer.data()));
  FRoom = FBuffer.data();
  if (Send(Filled) != Filled.size()) {
    throw EQuillonWriterError();
  }
}

std::size_t TQuillonTCPSocketWriter::Write(std::string_view ABytes) {
  if (ABytes.size() > static_cast<std::size_t>(FRoomEnd - FRoom)) {
    FlushBuffer();
  }
  if (ABytes.size() >= FBuffer.size()) {
    return Send(ABytes);
  }
  FRoom = std::copy(ABytes.begin(), ABytes.end(), FRoom);
  return ABytes.size();
}

std::size_t TQuillonTCPSocketWriter::Send(std::string_view ABytes) {
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
