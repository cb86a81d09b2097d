#pragma once

#include <cstdint>
#include <string>
#include <thread>

#include "QuillonSockets/Sockets.h"

namespace Bench {

/// A data server on this machine, from a thread of its own, that hands a plan to the administrator who asks for it.
class TPlanServer {
 public:
  /// @param APlan in the compressed binary form
  /// @param AConnections that it serves
  TPlanServer(std::string APlan, int AConnections);
  TPlanServer(const TPlanServer&) = delete;
  TPlanServer& operator=(const TPlanServer&) = delete;
  /// Waits for the end of the last connection.
  ~TPlanServer() { FThread.join(); }

  std::uint16_t Port() const { return FSocket.FLocalPort; }

 private:
  void Serve();

  std::string FPlan;
  TQuillonTCPSocket FSocket;
  std::thread FThread;
};

}  // namespace Bench
