#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "QuillonRemoteWorkspaces/UserWorkspace.h"
#include "QuillonRemoting/Channels.h"
#include "QuillonRemoting/KeepAlive.h"
#include "QuillonRemoting/Messages.h"

class TQuillonRemoteExchange;

namespace QuillonRemoting {

/// Logins that one call does at most: a server that forgets each session at once is not asked for ever.
inline constexpr int MaxLogins = 5;
/// Bytes of the longest answer to a login, which brings the user's profile.
inline constexpr std::uint64_t LoginReplyLimit = std::uint64_t{64} << 20;

}  // namespace QuillonRemoting

/// What follows a failed exchange.
enum TQuillonRemoteClientAction : std::uint8_t { caRetry, caRaiseException };

/// The session with a data server: logs in, calls operations of its services, and logs in again where the server has
/// lost the session. Every exchange has a connection of its own, so a session lives in the server.
///
/// Whoever fills FRequest holds the client's lock until the response has been read; Login, Logoff and Call take it too.
/// Session and keep-alive may be used by any thread. The order of locks is client, channel.
///
/// Errors are those of the channel and EQuillonRemoteError for what the server tells. A user's password is sent in
/// clear, and stands in no error and in no log.
class TQuillonRemoteClient {
 public:
  using TOnError = std::function<void(const std::exception& AnError, TQuillonRemoteClientAction& AnAction)>;
  using TOnLogin = std::function<void()>;

  /// @param AChannel must outlive the client; without one nothing is ever done
  explicit TQuillonRemoteClient(TQuillonRemoteChannel* AChannel);
  TQuillonRemoteClient(const TQuillonRemoteClient&) = delete;
  TQuillonRemoteClient& operator=(const TQuillonRemoteClient&) = delete;
  /// Ends a keep-alive exchange that is under way, as SetKeepAlive; does not log off.
  virtual ~TQuillonRemoteClient() = default;

  /// The thread that has the lock may take it again.
  void Lock() { FCriticalSection.Enter(); }
  /// @return false while another thread has the lock
  bool TryLock() { return FCriticalSection.TryEnter(); }
  void Unlock() { FCriticalSection.Leave(); }
  /// Ends what another thread does on the connection with an error in that thread, without waiting for the lock. An
  /// exchange that has no connection yet goes on.
  void Abort() {
    if (FChannel != nullptr) {
      FChannel->Abort();
    }
  }

  /// Does nothing with a session. A login that the server does not grant leaves no session and an empty FUserWorkspace.
  void Login();
  /// Does nothing without a session. There is none afterwards, whatever the server answers.
  void Logoff();
  /// Sends FRequest; the result is in FResponse, which is empty where the call fails or there is no channel.
  ///
  /// Logs in first if there is no session. Where the server no longer knows the session, the request goes out again
  /// behind a new login, on the same connection, MaxLogins times at most. A server that says so of its first answer has
  /// not got the request yet. One that says so of its second answer has: the values of a request are gone once they are
  /// sent, so it goes out with an empty queue then. The same holds for a call that FOnError retries.
  void Call();
  /// The same for a request and a response of the caller's own; the shared ones stay as they are.
  std::unique_ptr<TQuillonRemoteResponse> Call(TQuillonRemoteRequest& ARequest);
  /// Asks the server for a sign of life, unless the channel is open.
  void Ping();
  /// Tells the server that the session is still in use, if there is one and unless the channel is open. A server that
  /// refuses switches the keep-alive off.
  void ForceKeepAlive();

  /// Whether ForceKeepAlive is done again and again, by a thread of its own. There a failure of the connection is
  /// logged, and the next attempt made at its time.
  bool KeepAlive() const { return FKeepAlive.Enabled(); }
  /// Switching it off ends an exchange that is under way, within about a second if the server is silent.
  void SetKeepAlive(bool AValue) { FKeepAlive.SetEnabled(AValue); }
  /// Milliseconds.
  std::uint32_t KeepAliveInterval() const { return FKeepAlive.Interval(); }
  void SetKeepAliveInterval(std::uint32_t AValue) { FKeepAlive.SetInterval(AValue); }

  bool IsLoggedIn() const { return !SessionID().IsZero(); }
  /// All zero without a session.
  TGUID SessionID() const;

  std::string FUserName;
  std::string FPassword;
  std::string FVersion;  ///< the client's, as the server is told
  TQuillonRemoteRequest FRequest;
  TQuillonRemoteResponse FResponse;
  TQuillonRemoteUserWorkspace FUserWorkspace;  ///< what the last login gave

  /// Asked after each failure of Login and Call, with caRaiseException as the action.
  TOnError FOnError;
  TOnLogin FOnLogin;  ///< told of each login, within its exchange
  /// Told of the blocks of a request and a response, and meanwhile while nothing moves.
  TQuillonStreamProgressEvent FOnProgress;

 protected:
  virtual void DoError(const std::exception& AnError, TQuillonRemoteClientAction& AnAction);
  virtual void DoLogin();

 private:
  template <class TWork>
  void Attempt(const TWork& AWork);
  template <class TWork>
  void Converse(const TWork& AWork);
  void LogIn(TQuillonRemoteExchange& AnExchange);
  void ReadSession(TQuillonRemoteExchange& AnExchange);
  void Call(TQuillonRemoteRequest& ARequest, TQuillonRemoteResponse& AResponse);
  bool CallInSession(TQuillonRemoteExchange& AnExchange, TQuillonRemoteRequest& ARequest,
                     TQuillonRemoteResponse& AResponse);
  bool SendKeepAlive();
  bool KeepAliveOnTimer();
  void SetSessionID(const TGUID& AValue);

  TQuillonRemoteChannel* const FChannel;
  TQuillonCriticalSection FCriticalSection;
  mutable std::mutex FSessionLock;
  TGUID FSessionID;
  TQuillonRemoteKeepAlive FKeepAlive;  ///< the last member: its thread uses the others
};

/// Has the client's lock as long as it lives.
class TQuillonRemoteClientLock {
 public:
  explicit TQuillonRemoteClientLock(TQuillonRemoteClient& AClient) : FClient(AClient) { FClient.Lock(); }
  TQuillonRemoteClientLock(const TQuillonRemoteClientLock&) = delete;
  TQuillonRemoteClientLock& operator=(const TQuillonRemoteClientLock&) = delete;
  ~TQuillonRemoteClientLock() { FClient.Unlock(); }

 private:
  TQuillonRemoteClient& FClient;
};

/// A service of the server, as its client sees it.
class TQuillonRemoteServiceProxy {
 public:
  /// @param ARemoteClient must outlive the proxy
  TQuillonRemoteServiceProxy(TQuillonRemoteClient& ARemoteClient, std::uint16_t AServiceID)
      : FRemoteClient(ARemoteClient), FServiceID(AServiceID) {}
  TQuillonRemoteServiceProxy(const TQuillonRemoteServiceProxy&) = delete;
  TQuillonRemoteServiceProxy& operator=(const TQuillonRemoteServiceProxy&) = delete;
  virtual ~TQuillonRemoteServiceProxy() = default;

 protected:
  TQuillonRemoteClient& FRemoteClient;
  const std::uint16_t FServiceID;
};
