#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "QuillonStreams/OneWay.h"

/// The content of a stream, fetched ahead by a thread of its own: making the content, and using it, go on at the same
/// time. Content of a single block is fetched without a thread, and so is all of it where the system starts none.
///
/// The source must outlive this, and nobody else may use it meanwhile.
class TQuillonReadAheadStream final : public TQuillonOneWayStream {
 public:
  explicit TQuillonReadAheadStream(TQuillonStream& ASource);
  TQuillonReadAheadStream(const TQuillonReadAheadStream&) = delete;
  TQuillonReadAheadStream& operator=(const TQuillonReadAheadStream&) = delete;
  /// Waits for a block that is being fetched.
  ~TQuillonReadAheadStream() override;

  /// @throws what the source has raised, behind the bytes that came before
  std::size_t Read(std::span<char> ABuffer) override;
  /// Goes back over what the last Read gave, too.
  std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) override;
  /// Reads on to the end, without keeping anything.
  /// @return the size of the content
  /// @throws as Read
  std::int64_t Finish();

 private:
  /// A piece of the content; one that is not full is the last, and may end in a failure.
  struct TBlock {
    std::string Bytes;
    std::size_t Size = 0;
    std::exception_ptr Failure;
  };

  static bool IsLast(const TBlock& ABlock) { return ABlock.Size < ABlock.Bytes.size(); }
  void Fetch(TBlock& ABlock);
  void FetchAll();
  /// Moves on to the next block. @return whether there is one
  bool TakeBlock();

  TQuillonStream& FSource;
  std::array<TBlock, 4> FBlocks;  ///< a ring
  std::mutex FLock;               ///< for the next three, which decide whose a block is
  std::size_t FFetched = 0;       ///< count of blocks
  std::size_t FUsed = 0;          ///< of these, those that nobody reads any more
  bool FIsOver = false;           ///< nobody wants more
  std::condition_variable FChanged;
  TBlock* FBlock = nullptr;  ///< the one that is read
  std::string_view FLeft;    ///< of it
  std::thread FThread;
};
