#include "uUpload/Connection.h"

#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "JsonUtils.h"
#include "QuillonBase64.h"

namespace {

using TJson = nlohmann::json;

/// Of the body or the contents of the form, in bytes.
std::uint64_t SizeOf(const TQuillonHttpRequest& ARequest) {
  std::uint64_t Size = ARequest.Body.size();
  for (const TQuillonHttpPart& Part : ARequest.Form) {
    Size += Part.Size();
  }
  return Size;
}

}  // namespace

TQuillonHttpResponse TVELUploadConnection::Post(TQuillonHttpRequest ARequest) {
  // The path of a call stands behind the address of its service.
  if (ARequest.Url.find_first_of("?#") != std::string::npos) {
    throw EQuillonHttpError("An address of a service must hold neither \"?\" nor \"#\".");
  }
  std::vector<QuillonHttp::TLogin> Logins = QuillonHttp::ProxyLogins();
  if (auto Login = QuillonHttp::LoginIn(ARequest.Url)) {
    Logins.push_back(std::move(*Login));
  }
  for (const auto& Login : Logins) {
    Hide(Login.Password);
    Hide(QuillonBase64::Encode(Login.User + ":" + Login.Password));
  }
  ARequest.UserAgent = "Velmora HTTP Client";
  ARequest.Headers.emplace_back("Accept", "application/json");
  const std::string Url = QuillonHttp::WithoutLogin(ARequest.Url);
  try {
    TQuillonHttpResponse Response = FClient.Post(ARequest);
    Response.StatusText = Clean(Response.StatusText);
    Log(letInfo, "POST " + Url + " (" + std::to_string(SizeOf(ARequest)) +
                     " bytes): " + std::to_string(Response.Status) + " " + Response.StatusText + " (" +
                     std::to_string(Response.Body.size()) + " bytes)");
    return Response;
  } catch (const EQuillonHttpError& Error) {
    const std::string Reason = Clean(Error.what());
    Log(letError, "POST " + Url + ": " + Reason);
    throw EQuillonHttpError(Reason);
  }
}

void TVELUploadConnection::Log(TQuillonLogEventType AnEventType, std::string_view AText) const {
  QuillonLogs::TheLog().AddEntry(AnEventType, Clean(AText), "Velmora.Upload");
}

namespace uUpload {

std::string WithoutLogin(const std::string& AnAddress) {
  try {
    return QuillonHttp::WithoutLogin(AnAddress);
  } catch (const EQuillonHttpError&) {
    return {};
  }
}

nlohmann::json ObjectIn(const TQuillonHttpResponse& AResponse) {
  try {
    TJson Document = TJsonUtils::Parse(AResponse.Body);
    return Document.is_object() ? Document : TJson();
  } catch (const EQuillonException&) {
    return {};
  }
}

std::string TextOf(const nlohmann::json& AValue) {
  if (AValue.is_string()) {
    return AValue.get<std::string>();
  }
  return AValue.is_number() ? AValue.dump() : "";
}

std::string TextIn(const nlohmann::json& AnObject, const char* AKey) {
  const auto Found = AnObject.find(AKey);
  return Found != AnObject.end() ? TextOf(*Found) : "";
}

}  // namespace uUpload
