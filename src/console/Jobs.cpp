#include "Jobs.h"

#include <utility>

#include "QuillonHttp.h"
#include "uIServ.h"
#include "uOstrel/CsvReader.h"
#include "uOstrel/CsvWriter.h"
#include "uSdui.h"
#include "uTransformator.h"
#include "uUpload/State.h"

namespace {

constexpr std::string_view OpenLine = "Open VELMORA file...";
constexpr std::string_view SaveLine = "Save VELMORA file...";

}  // namespace

TExchangeJobs::TExchangeJobs(TVELGlobals& AGlobals, TLineSink AnOutput)
    : FGlobals(AGlobals), FOutput(std::move(AnOutput)) {}

template <class TConfiguration>
void TExchangeJobs::RunExport(TConfiguration&& AConfiguration) {
  TVELOstrelCsvWriter Writer(FGlobals, std::forward<TConfiguration>(AConfiguration));
  FOutput(OpenLine);
  Writer.LoadVelFile();
  FOutput("Start Export to OCF...");
  Writer.WriteAll();
  FOutput("Export Finished.");
}

void TExchangeJobs::ExportToOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) {
  RunExport(std::move(AConfiguration));
}

void TExchangeJobs::ExportToOcf(const std::string& AConfigFileName) { RunExport(AConfigFileName); }

template <class TWriter>
void TExchangeJobs::RunUpload(const std::string& AConfigFileName, const std::string& AService) {
  const auto Client = QuillonHttp::CreateClient();
  const auto State = uUpload::UserState();
  TWriter Writer(FGlobals, AConfigFileName, *Client, *State);
  FOutput(OpenLine);
  Writer.LoadVelFile();
  FOutput("Start Upload to " + AService + "...");
  const bool IsSent = Writer.UploadVelFile();
  FOutput(IsSent ? "Upload successfully finished." : "No changes detected since last upload. No Upload.");
}

void TExchangeJobs::UploadToSdui(const std::string& AConfigFileName) {
  RunUpload<TSduiWriter>(AConfigFileName, "Sdui");
}

void TExchangeJobs::UploadToIServ(const std::string& AConfigFileName) {
  RunUpload<TIServWriter>(AConfigFileName, "IServ");
}

template <class TConfiguration>
void TExchangeJobs::RunImport(TConfiguration&& AConfiguration) {
  TVELOstrelCsvReader Reader(FGlobals, std::forward<TConfiguration>(AConfiguration));
  FOutput(OpenLine);
  Reader.LoadVelFile();
  FOutput("Start Import from OCF...");
  Reader.ReadAll();
  FOutput(SaveLine);
  Reader.SaveVelFile();
  FOutput("Import finished.");
}

void TExchangeJobs::ImportFromOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) {
  RunImport(std::move(AConfiguration));
}

void TExchangeJobs::ImportFromOcf(const std::string& AConfigFileName) { RunImport(AConfigFileName); }

void TExchangeJobs::TransformFile(const std::string& AFileName) {
  TVELTransformator Transformator(FGlobals.Plan());
  FOutput(OpenLine);
  Transformator.LoadFromFile(AFileName);
  FOutput("Generate new Guids...");
  Transformator.NewGuids();
  FOutput(SaveLine);
  Transformator.SaveToFile();
  FOutput("Transformation finished.");
}
