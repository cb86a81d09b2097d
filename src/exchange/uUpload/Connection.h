#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "QuillonHttp.h"
#include "QuillonLogs/Manager.h"
#include "Secrets.h"

/// The calls of an upload to its service. What comes back for people to read never tells a secret of the upload,
/// whatever the service answers: it is masked by "***".
class TVELUploadConnection {
 public:
  explicit TVELUploadConnection(TQuillonHttpClient& AClient) : FClient(AClient) {}

  /// Keeps a text from being told; an empty one is none.
  void Hide(std::string_view ASecret) { FSecrets.Hide(ASecret); }

  /// Sends the request with the user agent and the headers that every call to a service has, and logs it, under
  /// "Velmora.Upload". Hides the passwords in its address and in those of proxies.
  /// @throws EQuillonHttpError
  TQuillonHttpResponse Post(TQuillonHttpRequest ARequest);

  /// The text on one line, without secrets, and of a long one only the begin.
  std::string Clean(std::string_view AText) const { return FSecrets.Clean(AText); }

 private:
  void Log(TQuillonLogEventType AnEventType, std::string_view AText) const;

  TQuillonHttpClient& FClient;
  TVELSecrets FSecrets;
};

namespace uUpload {

/// The address of a service for people and programs that may not know its login; empty for what is no such address.
std::string WithoutLogin(const std::string& AnAddress);

/// The body of an answer; null for what is no JSON object.
nlohmann::json ObjectIn(const TQuillonHttpResponse& AResponse);

/// A text or a number as text; empty for another value.
std::string TextOf(const nlohmann::json& AValue);

/// TextOf a member; empty without it.
std::string TextIn(const nlohmann::json& AnObject, const char* AKey);

}  // namespace uUpload
