#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <span>
#include <string_view>
#include <thread>

#include "QuillonStreams/OneWay.h"

/// The content of a stream in blocks, fetched ahead by a thread of its own: making the content, and using it, go on at
/// the same time. The first bytes are fetched without a thread, and so are all where the system starts none, or
/// memory is limited.
///
/// The source must outlive this, and nobody else may use it meanwhile.
class TQuillonReadAhead {
 public:
  static constexpr std::size_t BlockSize = std::size_t{256} << 10;

  /// A piece of the content, as much as the source gave in one go. Who has it may write to it and to the room around
  /// it.
  struct TBlock {
    std::span<char> Content;
    unsigned Finding = 0;  ///< of the examination
    bool IsLast = false;
    std::exception_ptr Failure = nullptr;  ///< what the source raised behind the content
    TQuillonBuffer Memory = {};
  };
  /// Bytes that each block has ahead of its content, and zeros behind it.
  struct TRoom {
    std::size_t Ahead;
    std::size_t Behind;
  };
  /// Looks at a block's content where it is fetched, one after the other; must not raise.
  using TExamine = std::function<unsigned(std::span<char> AContent, bool AnIsLast)>;

  explicit TQuillonReadAhead(TQuillonStream& ASource, TRoom ARoom = {0, 0}, TExamine AnExamine = {});
  TQuillonReadAhead(const TQuillonReadAhead&) = delete;
  TQuillonReadAhead& operator=(const TQuillonReadAhead&) = delete;
  /// Waits for a block that is being fetched.
  ~TQuillonReadAhead();

  /// The next block, null behind the last. The one before stays until the next call.
  /// @throws what the source has raised, behind the bytes that came before
  TBlock* Next();

 private:
  TBlock& At(std::size_t ANumber) { return FBlocks[ANumber % FBlocks.size()]; }
  void Prepare(TBlock& ABlock) const;
  void Fetch(TBlock& ABlock);
  void FetchAll();
  bool EnsureThread();

  TQuillonStream& FSource;
  const TRoom FRoom;
  const TExamine FExamine;
  std::array<TBlock, 4> FBlocks;  ///< a ring
  std::mutex FLock;               ///< for the next three, which decide whose a block is
  std::size_t FFetched = 0;       ///< count of blocks
  std::size_t FTaken = 0;         ///< of these, those that were handed out; the last two are in use
  bool FIsOver = false;           ///< nobody wants more
  std::condition_variable FChanged;
  std::size_t FSize = 0;  ///< of what was fetched; whoever fetches counts
  bool FIsAlone = false;  ///< there is to be no thread
  std::thread FThread;
};

/// The content of a stream, fetched ahead.
class TQuillonReadAheadStream final : public TQuillonOneWayStream {
 public:
  explicit TQuillonReadAheadStream(TQuillonStream& ASource) : FBlocks(ASource) {}

  /// @throws what the source has raised, behind the bytes that came before
  std::size_t Read(std::span<char> ABuffer) override;
  /// Goes back over what the last Read gave, too.
  std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) override;
  /// Reads on to the end, without keeping anything.
  /// @return the size of the content
  /// @throws as Read
  std::int64_t Finish();

 private:
  /// Moves on to the next block. @return whether there is one
  bool TakeBlock();

  TQuillonReadAhead FBlocks;
  std::string_view FBlock;  ///< the one that is read
  std::string_view FLeft;   ///< of it
};
