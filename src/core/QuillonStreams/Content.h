#pragma once

#include <condition_variable>
#include <exception>
#include <mutex>
#include <string_view>
#include <thread>

#include "QuillonStreams/OneWay.h"

/// A content as a stream to read from. A thread of its own makes a piece at a time, as they are asked for.
class TQuillonContentStream final : public TQuillonOneWayStream {
 public:
  explicit TQuillonContentStream(TQuillonContent AContent);
  TQuillonContentStream(const TQuillonContentStream&) = delete;
  TQuillonContentStream& operator=(const TQuillonContentStream&) = delete;
  /// Ends the making of what nobody has asked for.
  ~TQuillonContentStream() override;

  /// @throws what the content has raised, behind the bytes that came before; std::system_error where the system starts
  /// no thread
  std::size_t Read(std::span<char> ABuffer) override;

 private:
  /// Raised within the content, to leave it.
  struct TNotWanted {};

  void Make();
  void Offer(std::string_view APiece);

  TQuillonContent FContent;
  std::mutex FLock;  ///< for what follows
  std::condition_variable FChanged;
  std::string_view FPiece;   ///< the rest of the one on offer
  bool FIsOver = false;      ///< nobody wants more
  bool FIsComplete = false;  ///< nothing comes any more
  std::exception_ptr FFailure;
  std::thread FThread;
};
