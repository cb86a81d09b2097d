#include "uSdui.h"

#include <nlohmann/json.hpp>

#include "QuillonFileSystem/UrlPath.h"
#include "QuillonText.h"

namespace {

using TJson = nlohmann::json;

constexpr int StatusOk = 200;
constexpr const char* VersionName = "fileversion.sdui";
constexpr const char* DefaultAddress = VELMORA_SDUI_URL;
constexpr std::string_view LoginPath = "auth/login";
constexpr std::string_view UploadPath = "upload/velmora-6/velmora-upload-1.0.0";
/// Servers take no longer headers.
constexpr std::size_t MaxToken = std::size_t{16} << 10;

constexpr TQuillonHttpTimeOuts UploadTimeOuts{.Connect = std::chrono::milliseconds(1'200'000),
                                              .Stall = std::chrono::seconds(1'200)};

/// The member of an object that is an object itself; null for another one and for none.
const TJson& ObjectMember(const TJson& AnObject, const char* AKey) {
  static const TJson None;
  const auto Found = AnObject.find(AKey);
  return Found != AnObject.end() && Found->is_object() ? *Found : None;
}

std::string ErrorsIn(const TJson& AnAnswer) {
  const TJson& Meta = ObjectMember(AnAnswer, "meta");
  std::string Lines;
  if (const auto Errors = Meta.find("errors"); Errors != Meta.end() && Errors->is_array()) {
    for (std::size_t I = 0; I < Errors->size(); ++I) {
      const std::string Line = uUpload::TextOf((*Errors)[I]);
      Lines += !Lines.empty() && !Line.empty() ? "\r\n" + Line : Line;
    }
  }
  return Lines.empty() ? "Unknown Error" : Lines;
}

}  // namespace

ESduiApiError::ESduiApiError(const std::string& AMessage) : EQuillonException("[Sdui] " + AMessage) {}

ESduiApiError::ESduiApiError(int AStatusCode, const std::string& AStatusText)
    : EQuillonException("[Sdui] " + AStatusText), FStatusCode(AStatusCode), FStatusText(AStatusText) {}

ESduiApiError::ESduiApiError(int AStatusCode, const nlohmann::json& AJson)
    : ESduiApiError(AStatusCode, ErrorsIn(AJson)) {}

TSduiWriter::TSduiWriter(TVELGlobals& AGlobals, const std::string& ACfgFileName, TQuillonHttpClient& AClient,
                         TVELUploadState& AState)
    : TVELSynchronizer(AGlobals, ACfgFileName), FConnection(AClient), FState(AState) {
  FConnection.Hide(Options().FSduiPin);
  FConnection.Hide(Options().FServerPassword);
  BeginReport(uUpload::WithoutLogin(Options().FSduiUrl));
}

std::string TSduiWriter::AddressOf(std::string_view APath) const {
  const std::string Address = Options().FSduiUrl.empty() ? DefaultAddress : Options().FSduiUrl;
  if (Address.empty()) {
    throw ESduiApiError("The address of the service is missing: set \"sduiUrl\" in \"sduiExport\".");
  }
  return TQuillonUrlPath::Combine(Address, APath);
}

void TSduiWriter::Check(const TQuillonHttpResponse& AResponse) const {
  if (AResponse.Status == StatusOk) {
    return;
  }
  const TJson Answer = uUpload::ObjectIn(AResponse);
  if (!Answer.is_object()) {
    return;
  }
  if (QuillonText::EqualsIgnoreCase(uUpload::TextIn(Answer, "status"), "ERROR")) {
    // The texts together: a secret may begin in one and end in the next.
    throw ESduiApiError(AResponse.Status, FConnection.Clean(ESduiApiError(AResponse.Status, Answer).FStatusText));
  }
  throw ESduiApiError(AResponse.Status, AResponse.StatusText);
}

std::string TSduiWriter::GetToken() {
  TQuillonHttpRequest Request;
  Request.Url = AddressOf(LoginPath);
  Request.Headers = {{"Content-Type", "application/json"}};
  Request.Body = TJson{{"code", Options().FSduiPin}}.dump();
  const TQuillonHttpResponse Response = FConnection.Post(std::move(Request));
  Check(Response);
  const TJson Answer = Response.Status == StatusOk ? uUpload::ObjectIn(Response) : TJson();
  if (!Answer.is_object()) {
    return {};
  }
  const TJson& Data = ObjectMember(Answer, "data");
  if (!Data.contains("token") || Data["token"].is_null()) {
    throw ESduiApiError("No token in response");
  }
  std::string Token = uUpload::TextIn(Data, "token");
  const bool IsUsable = Token.size() <= MaxToken && QuillonText::OneLine(Token) == Token;
  if (!IsUsable) {
    throw ESduiApiError("Unusable token in response");
  }
  FConnection.Hide(Token);
  return Token;
}

bool TSduiWriter::UploadVelFile() {
  TQuillonHttpRequest Request;
  Request.Url = AddressOf(UploadPath);
  Request.Headers = {{"Authorization", "Bearer " + GetToken()}};
  Request.TimeOuts = UploadTimeOuts;
  if (FState.IsUnchanged(VersionName, FPlan.FFileVersion)) {
    return false;
  }
  const TQuillonContent Document = FPlan.XMLContent();
  Request.Form = {{.Name = "velmora6-file",
                   .Content = {},
                   .FileName = FPlan.FFileName,
                   .Made = Document,
                   .MadeSize = QuillonIO::SizeOf(Document)}};
  Check(FConnection.Post(std::move(Request)));
  FState.Store(VersionName, FPlan.FFileVersion);
  return true;
}
