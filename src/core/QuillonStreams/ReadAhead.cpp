#include "QuillonStreams/ReadAhead.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <system_error>
#include <utility>

namespace {

constexpr std::size_t BlockSize = std::size_t{256} << 10;

}  // namespace

TQuillonReadAheadStream::TQuillonReadAheadStream(TQuillonStream& ASource) : FSource(ASource) {}

TQuillonReadAheadStream::~TQuillonReadAheadStream() {
  if (FThread.joinable()) {
    {
      const std::lock_guard Guard(FLock);
      FIsOver = true;
    }
    FChanged.notify_one();
    FThread.join();
  }
}

void TQuillonReadAheadStream::Fetch(TBlock& ABlock) {
  ABlock.Size = 0;
  try {
    ABlock.Bytes.resize(BlockSize);
    while (ABlock.Size < BlockSize) {
      const std::size_t Got = FSource.Read(std::span(ABlock.Bytes).subspan(ABlock.Size));
      if (Got == 0) {
        break;
      }
      ABlock.Size += Got;
    }
  } catch (...) {
    ABlock.Failure = std::current_exception();
  }
}

void TQuillonReadAheadStream::FetchAll() {
  for (bool IsLastOne = false; !IsLastOne;) {
    std::unique_lock Guard(FLock);
    FChanged.wait(Guard, [&] { return FIsOver || FFetched - FUsed < FBlocks.size(); });
    if (FIsOver) {
      return;
    }
    TBlock& Block = FBlocks[FFetched % FBlocks.size()];
    Guard.unlock();
    Fetch(Block);
    IsLastOne = IsLast(Block) || Block.Failure != nullptr;
    Guard.lock();
    ++FFetched;
    Guard.unlock();
    FChanged.notify_one();
  }
}

bool TQuillonReadAheadStream::TakeBlock() {
  if (FBlock == nullptr) {
    FBlock = &FBlocks.front();
    Fetch(*FBlock);
    FFetched = 1;
  } else if (FBlock->Failure != nullptr) {
    std::rethrow_exception(FBlock->Failure);
  } else if (IsLast(*FBlock)) {
    return false;
  } else {
    if (!FThread.joinable()) {
      try {
        FThread = std::thread([this] { FetchAll(); });
      } catch (const std::system_error&) {
        Fetch(*FBlock);
        FLeft = std::string_view(FBlock->Bytes).substr(0, FBlock->Size);
        return true;
      }
    }
    std::unique_lock Guard(FLock);
    ++FUsed;
    FChanged.notify_one();
    FChanged.wait(Guard, [&] { return FFetched > FUsed; });
    FBlock = &FBlocks[FUsed % FBlocks.size()];
  }
  FLeft = std::string_view(FBlock->Bytes).substr(0, FBlock->Size);
  return true;
}

std::size_t TQuillonReadAheadStream::Read(std::span<char> ABuffer) {
  std::size_t Done = 0;
  while (Done < ABuffer.size() && (!FLeft.empty() || TakeBlock())) {
    const std::size_t Count = std::min(FLeft.size(), ABuffer.size() - Done);
    std::memcpy(ABuffer.data() + Done, FLeft.data(), Count);
    FLeft.remove_prefix(Count);
    Done += Count;
    if (FLeft.empty() && Done > 0) {
      break;
    }
  }
  Advance(static_cast<std::int64_t>(Done));
  return Done;
}

std::int64_t TQuillonReadAheadStream::Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) {
  const std::size_t Gone = FBlock == nullptr ? 0 : FBlock->Size - FLeft.size();
  if (AnOrigin != TQuillonSeekOrigin::Current || AnOffset >= 0 || std::cmp_greater(-AnOffset, Gone)) {
    return TQuillonOneWayStream::Seek(AnOffset, AnOrigin);
  }
  const auto Back = static_cast<std::size_t>(-AnOffset);
  FLeft = std::string_view(FBlock->Bytes).substr(Gone - Back, FLeft.size() + Back);
  Advance(AnOffset);
  return Position();
}

std::int64_t TQuillonReadAheadStream::Finish() {
  do {
    Advance(static_cast<std::int64_t>(FLeft.size()));
    FLeft = {};
  } while (TakeBlock());
  return Position();
}
