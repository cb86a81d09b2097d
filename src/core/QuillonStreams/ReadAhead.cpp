#include "QuillonStreams/ReadAhead.h"

#include <algorithm>
#include <cstring>
#include <system_error>
#include <utility>

#include "platform/Process.h"

TQuillonReadAhead::TQuillonReadAhead(TQuillonStream& ASource, TRoom ARoom, TExamine AnExamine)
    : FSource(ASource), FRoom(ARoom), FExamine(std::move(AnExamine)) {}

TQuillonReadAhead::~TQuillonReadAhead() {
  if (FThread.joinable()) {
    {
      const std::lock_guard Guard(FLock);
      FIsOver = true;
    }
    FChanged.notify_one();
    FThread.join();
  }
}

void TQuillonReadAhead::Prepare(TBlock& ABlock) const {
  if (ABlock.Memory.Size() == 0) {
    ABlock.Memory.Resize(FRoom.Ahead + BlockSize + FRoom.Behind);
  }
}

void TQuillonReadAhead::Fetch(TBlock& ABlock) {
  constexpr std::size_t LeastSize = 4096;  // less is not worth a block
  const std::span<char> Place(ABlock.Memory.Data() + FRoom.Ahead, BlockSize);
  std::size_t Size = 0;
  try {
    while (Size < LeastSize && !ABlock.IsLast) {
      const std::size_t Got = FSource.Read(Place.subspan(Size));
      ABlock.IsLast = Got == 0;
      Size += Got;
    }
  } catch (...) {
    ABlock.Failure = std::current_exception();
  }
  FSize += Size;
  ABlock.Content = Place.first(Size);
  std::memset(Place.data() + Size, 0, FRoom.Behind);
  if (FExamine) {
    ABlock.Finding = FExamine(ABlock.Content, ABlock.IsLast);
  }
}

void TQuillonReadAhead::FetchAll() {
  for (bool IsLastOne = false; !IsLastOne;) {
    std::unique_lock Guard(FLock);
    FChanged.wait(Guard, [&] { return FIsOver || FFetched - FTaken < FBlocks.size() - 2; });
    if (FIsOver) {
      return;
    }
    TBlock& Block = At(FFetched);
    Guard.unlock();
    Fetch(Block);
    IsLastOne = Block.IsLast || Block.Failure != nullptr;
    Guard.lock();
    ++FFetched;
    Guard.unlock();
    FChanged.notify_one();
  }
}

/// Starts the thread behind the first bytes, unless there may be no memory for its stack. The blocks' memory is taken
/// here: the thread would take it from a heap of its own.
/// @return whether there is a thread; without one the blocks are fetched by who takes them
bool TQuillonReadAhead::EnsureThread() {
  if (FThread.joinable() || FIsAlone || FSize < BlockSize) {
    return FThread.joinable();
  }
  if (Platform::IsMemoryLimited()) {
    FIsAlone = true;
    return false;
  }
  std::ranges::for_each(FBlocks, [this](TBlock& ABlock) { Prepare(ABlock); });
  try {
    FThread = std::thread([this] { FetchAll(); });
  } catch (const std::system_error&) {
    FIsAlone = true;
  }
  return !FIsAlone;
}

TQuillonReadAhead::TBlock* TQuillonReadAhead::Next() {
  if (FTaken > 0) {
    const TBlock& Last = At(FTaken - 1);
    if (Last.Failure != nullptr) {
      std::rethrow_exception(Last.Failure);
    }
    if (Last.IsLast) {
      return nullptr;
    }
  }
  if (!EnsureThread()) {
    if (FFetched >= 2) {
      std::swap(At(FFetched).Memory, At(FFetched - 2).Memory);
    }
    Prepare(At(FFetched));
    Fetch(At(FFetched++));
  }
  std::unique_lock Guard(FLock);
  FChanged.wait(Guard, [&] { return FFetched > FTaken; });
  TBlock& Block = At(FTaken++);
  Guard.unlock();
  FChanged.notify_one();
  return &Block;
}

bool TQuillonReadAheadStream::TakeBlock() {
  const TQuillonReadAhead::TBlock* const Block = FBlocks.Next();
  if (Block == nullptr) {
    return false;
  }
  FBlock = FLeft = {Block->Content.data(), Block->Content.size()};
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
  const std::size_t Gone = FBlock.size() - FLeft.size();
  if (AnOrigin != TQuillonSeekOrigin::Current || AnOffset >= 0 || std::cmp_greater(-AnOffset, Gone)) {
    return TQuillonOneWayStream::Seek(AnOffset, AnOrigin);
  }
  const auto Back = static_cast<std::size_t>(-AnOffset);
  FLeft = FBlock.substr(Gone - Back, FLeft.size() + Back);
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
