#include "QuillonStreams/Content.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

TQuillonContentStream::TQuillonContentStream(TQuillonContent AContent) : FContent(std::move(AContent)) {}

TQuillonContentStream::~TQuillonContentStream() {
  if (FThread.joinable()) {
    {
      const std::lock_guard Guard(FLock);
      FIsOver = true;
    }
    FChanged.notify_all();
    FThread.join();
  }
}

void TQuillonContentStream::Make() {
  std::exception_ptr Failure;
  try {
    FContent([this](std::string_view APiece) { Offer(APiece); });
  } catch (const TNotWanted&) {
    return;
  } catch (...) {
    Failure = std::current_exception();
  }
  {
    const std::lock_guard Guard(FLock);
    FFailure = Failure;
    FIsComplete = true;
  }
  FChanged.notify_all();
}

void TQuillonContentStream::Offer(std::string_view APiece) {
  std::unique_lock Guard(FLock);
  FPiece = APiece;
  FChanged.notify_all();
  FChanged.wait(Guard, [this] { return FIsOver || FPiece.empty(); });
  if (FIsOver) {
    throw TNotWanted();
  }
}

std::size_t TQuillonContentStream::Read(std::span<char> ABuffer) {
  if (ABuffer.empty()) {
    return 0;
  }
  if (!FThread.joinable()) {
    FThread = std::thread([this] { Make(); });
  }
  std::unique_lock Guard(FLock);
  FChanged.wait(Guard, [this] { return FIsComplete || !FPiece.empty(); });
  if (FPiece.empty() && FFailure != nullptr) {
    std::rethrow_exception(FFailure);
  }
  const std::size_t Count = std::min(FPiece.size(), ABuffer.size());
  std::memcpy(ABuffer.data(), FPiece.data(), Count);
  FPiece.remove_prefix(Count);
  if (FPiece.empty()) {
    FChanged.notify_all();
  }
  Advance(static_cast<std::int64_t>(Count));
  return Count;
}
