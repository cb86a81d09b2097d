#pragma once

#include <cstdint>
#include <memory>

#include "QuillonRemoting/Channels.h"
#include "QuillonRemoting/Messages.h"

/// One exchange with the server: the channel, open and locked, with a reader and a writer of its own.
class TQuillonRemoteExchange {
 public:
  explicit TQuillonRemoteExchange(TQuillonRemoteChannel& AChannel);
  TQuillonRemoteExchange(const TQuillonRemoteExchange&) = delete;
  TQuillonRemoteExchange& operator=(const TQuillonRemoteExchange&) = delete;
  /// Unlocks and closes. What the server has answered holds though it cannot be told of the end: that is logged, unless
  /// the exchange has failed already.
  ~TQuillonRemoteExchange();

  /// Does something in an exchange. A failure other than one that the server tells leaves nobody knows what on the
  /// connection, so it is cut, for all who share it.
  template <class TWork>
  static void Run(TQuillonRemoteChannel& AChannel, const TWork& AWork) {
    TQuillonRemoteExchange Exchange(AChannel);
    try {
      AWork(Exchange);
      Exchange.FIsGood = true;
    } catch (const EQuillonRemoteError&) {
      throw;
    } catch (...) {
      AChannel.Abort();
      throw;
    }
  }

  TQuillonWriter& Writer() { return *FWriter; }
  TQuillonReader& Reader() { return *FReader; }
  /// The server's answer to what was written.
  std::uint8_t ReadStatus();
  /// Sends a command for a session. @return the answer
  std::uint8_t Ask(TQuillonRemoteCommand ACommand, const TGUID& ASessionID);

 private:
  void Leave();

  TQuillonRemoteChannel& FChannel;
  bool FIsGood = false;
  std::unique_ptr<TQuillonWriter> FWriter;
  std::unique_ptr<TQuillonReader> FReader;
};
