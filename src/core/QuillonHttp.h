#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuillonIO.h"
#include "QuillonTypes.h"

/// A request without an answer; the message names the host and the reason, never a password of the address.
class EQuillonHttpError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// A part of a multipart form. The content is sent from where it stands: it must live as long as the request.
struct TQuillonHttpPart {
  std::string Name;
  std::string_view Content;
  std::optional<std::string> FileName;
  /// In place of Content: one that is made while it is sent, in a thread of its own, and anew for each time.
  TQuillonContent Made = nullptr;
  std::uint64_t MadeSize = 0;  ///< in bytes

  std::uint64_t Size() const { return Made ? MadeSize : Content.size(); }
};

struct TQuillonHttpTimeOuts {
  /// Up to the end of the TLS handshake.
  std::chrono::milliseconds Connect = std::chrono::seconds(60);
  /// How long less than a byte a second may move, whether it is sent or awaited.
  std::chrono::seconds Stall = std::chrono::minutes(5);
  /// Up to the end of the answer, redirects included; a transfer that crawls all that time is given up too.
  std::chrono::milliseconds Whole = std::chrono::hours(4);
};

/// A POST request, with a form or, where that is empty, a body.
struct TQuillonHttpRequest {
  std::string Url;  ///< http or https
  std::vector<std::pair<std::string, std::string>> Headers;
  std::string UserAgent;
  std::string Body;
  std::vector<TQuillonHttpPart> Form;
  TQuillonHttpTimeOuts TimeOuts;
};

struct TQuillonHttpResponse {
  int Status = 0;
  std::string StatusText;  ///< of the status line, or the standard's name where that has none
  std::string Body;
};

/// Sends requests. One that gets an answer, whatever its status, is no failure.
class TQuillonHttpClient {
 public:
  TQuillonHttpClient() = default;
  TQuillonHttpClient(const TQuillonHttpClient&) = delete;
  TQuillonHttpClient& operator=(const TQuillonHttpClient&) = delete;
  virtual ~TQuillonHttpClient() = default;

  /// @throws EQuillonHttpError where there is no answer, or one that is broken off or larger than MaxBody
  virtual TQuillonHttpResponse Post(const TQuillonHttpRequest& ARequest) = 0;
};

namespace QuillonHttp {

/// Answers are read up to this size, in bytes.
inline constexpr std::size_t MaxBody = std::size_t{16} << 20;
/// Status lines and headers of an answer may have this size in all, in bytes.
inline constexpr std::size_t MaxHeaders = std::size_t{256} << 10;
inline constexpr int MaxRedirects = 3;

/// The client that really sends. TLS certificates are verified, always, by the system's trust store and what the
/// environment variables SSL_CERT_FILE and, but on Windows, SSL_CERT_DIR name; proxies are those of the environment or
/// else of the system's settings. Redirects 307 and 308 to the same scheme, host and port are followed, MaxRedirects at
/// most; any other one is the answer.
std::unique_ptr<TQuillonHttpClient> CreateClient();

/// The name of a status in RFC 9110; empty for one that it does not know.
std::string_view StatusName(int AStatus);

struct TLogin {
  std::string User;
  std::string Password;
  std::string EncodedPassword;  ///< as the address writes it
};

/// The login in an address; none where it holds no password.
/// @throws EQuillonHttpError for what is no http or https address
std::optional<TLogin> LoginIn(const std::string& AUrl);
/// The logins in the addresses of proxies that the environment has.
std::vector<TLogin> ProxyLogins();
/// The address without a login.
/// @throws EQuillonHttpError for what is no http or https address
std::string WithoutLogin(const std::string& AUrl);

}  // namespace QuillonHttp
