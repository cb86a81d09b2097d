#include "uUpload/Connection.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "JsonUtils.h"
#include "QuillonBase64.h"
#include "QuillonText.h"

namespace {

using TJson = nlohmann::json;

constexpr std::string_view Mask = "***";
/// No message of a service has a reason to be longer, in bytes.
constexpr std::size_t MaxText = 4096;

char Fold(char C) { return C >= 'A' && C <= 'Z' ? static_cast<char>(C - 'A' + 'a') : C; }

bool StartsWith(std::string_view AText, std::string_view ABegin) {
  return AText.size() >= ABegin.size() &&
         std::equal(ABegin.begin(), ABegin.end(), AText.begin(), [](char A, char B) { return Fold(A) == Fold(B); });
}

/// Of the body or the contents of the form, in bytes.
std::size_t SizeOf(const TQuillonHttpRequest& ARequest) {
  std::size_t Size = ARequest.Body.size();
  for (const TQuillonHttpPart& Part : ARequest.Form) {
    Size += Part.Content.size();
  }
  return Size;
}

}  // namespace

void TVELUploadConnection::Hide(std::string_view ASecret) {
  const std::string Line = QuillonText::OneLine(ASecret);
  const std::string Json = TJson(ASecret).dump(-1, ' ', false, TJson::error_handler_t::replace);
  // A service may repeat the request that it did not like: there the secret stands as JSON writes it.
  for (const std::string& Form : {Line, Json.substr(1, Json.size() - 2)}) {
    if (!Form.empty()) {
      FSecrets.push_back(Form);
    }
  }
  std::stable_sort(FSecrets.begin(), FSecrets.end(),
                   [](const std::string& A, const std::string& B) { return A.size() > B.size(); });
}

TQuillonHttpResponse TVELUploadConnection::Post(TQuillonHttpRequest ARequest) {
  if (const auto Login = QuillonHttp::LoginIn(ARequest.Url)) {
    Hide(Login->EncodedPassword);
    Hide(Login->Password);
    Hide(QuillonBase64::Encode(Login->User + ":" + Login->Password));
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

nlohmann::json TVELUploadConnection::CleanObjectIn(const TQuillonHttpResponse& AResponse) const {
  TJson Object = uUpload::ObjectIn(AResponse);
  std::vector<TJson*> Left = {&Object};
  while (!Left.empty()) {
    TJson& Value = *Left.back();
    Left.pop_back();
    if (Value.is_structured()) {
      for (TJson& Item : Value) {
        Left.push_back(&Item);
      }
    } else if (const std::string Text = uUpload::TextOf(Value); !Text.empty()) {
      Value = Clean(Text);
    }
  }
  return Object;
}

std::string TVELUploadConnection::Clean(std::string_view AText) const {
  // A secret that begins in what is kept must be seen whole.
  const std::size_t Longest = FSecrets.empty() ? 0 : FSecrets.front().size();
  const std::string Line = QuillonText::OneLine(AText.substr(0, MaxText + Longest));
  std::string Result;
  for (std::string_view Rest = Line; !Rest.empty() && Result.size() < MaxText;) {
    const auto Secret = std::find_if(FSecrets.begin(), FSecrets.end(),
                                     [Rest](const std::string& ASecret) { return StartsWith(Rest, ASecret); });
    const bool IsSecret = Secret != FSecrets.end();
    Result.append(IsSecret ? Mask : Rest.substr(0, 1));
    Rest.remove_prefix(IsSecret ? Secret->size() : 1);
  }
  return QuillonText::CutAtCharacter(Result, MaxText);
}

namespace uUpload {

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
