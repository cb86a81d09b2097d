#include "uIServ.h"

#include <nlohmann/json.hpp>

#include "QuillonFileSystem/UrlPath.h"
#include "uJSONExport/JSONExport.h"
#include "uPlandaten/Einstellungen.h"

namespace {

constexpr int StatusOk = 200;
constexpr const char* VersionName = "fileversion.iserv";
constexpr std::string_view ImportPath = "iserv/public/timetable/api/import/velmora";

}  // namespace

EIServApiError::EIServApiError(const std::string& AMessage) : EQuillonException("[IServ] " + AMessage) {}

EIServApiError::EIServApiError(int AStatusCode, const std::string& AStatusText)
    : EQuillonException("[IServ] " + AStatusText), FStatusCode(AStatusCode), FStatusText(AStatusText) {}

TIServWriter::TIServWriter(TVELGlobals& AGlobals, const std::string& ACfgFileName, TQuillonHttpClient& AClient,
                           TVELUploadState& AState)
    : TVELSynchronizer(AGlobals, ACfgFileName), FConnection(AClient), FState(AState) {
  FConnection.Hide(Options().FIServApiToken);
  FConnection.Hide(Options().FServerPassword);
  BeginReport(uUpload::WithoutLogin(Options().FIServUrl));
}

bool TIServWriter::UploadVelFile() {
  // Made even if nothing will be sent: a plan that cannot be published is told at once.
  const std::string Document = uIServ::WritePublication(FPlan);
  if (FState.IsUnchanged(VersionName, FPlan.FFileVersion)) {
    return false;
  }
  if (Options().FIServUrl.empty()) {
    throw EIServApiError("The address of the server is missing: set \"iServUrl\" in \"iServExport\".");
  }
  TQuillonHttpRequest Request;
  Request.Url = TQuillonUrlPath::Combine(Options().FIServUrl, ImportPath);
  Request.Form = {{.Name = "token", .Content = Options().FIServApiToken, .FileName = {}},
                  {.Name = "velmora", .Content = Document, .FileName = {}}};
  const TQuillonHttpResponse Response = FConnection.Post(std::move(Request));
  if (Response.Status != StatusOk) {
    if (const nlohmann::json Answer = uUpload::ObjectIn(Response); Answer.is_object()) {
      const std::string Message = FConnection.Clean(uUpload::TextIn(Answer, "message"));
      throw EIServApiError(Response.Status, Message.empty() ? Response.StatusText : Message);
    }
  }
  FState.Store(VersionName, FPlan.FFileVersion);
  return true;
}

namespace uIServ {

std::string WritePublication(TVELPlan& APlan) {
  TVELJSONExport Export(APlan);
  Export.StudentNames = true;
  Export.XMLTypes = {xmlLessons, xmlCalEvents, xmlChanges, xmlIndex};
  Export.DataTypes = {dtKlassen, dtLehrer, dtRaeume, dtFaecher};
  Export.AlleWochen = true;
  Export.Start = APlan.FEinstellungen->FGueltigVon;
  Export.Finish = APlan.FEinstellungen->FGueltigBis;
  TQuillonMemoryStream Stream;
  Export.SaveJSONToStream(Stream);
  return Stream.TakeContent();
}

}  // namespace uIServ
