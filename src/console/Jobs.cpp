#include "Jobs.h"

#include <utility>

#include "uOstrel/CsvReader.h"
#include "uOstrel/CsvWriter.h"
#include "uTransformator.h"

namespace {

[[noreturn]] void ThrowMissing(std::string_view AJob) {
  throw EQuillonException("The " + std::string(AJob) + " is not part of this version yet.");
}

constexpr std::string_view OpenLine = "Open VELMORA file...";
constexpr std::string_view SaveLine = "Save VELMORA file...";

}  // namespace

TExchangeJobs::TExchangeJobs(TVELPlan& APlan, TLineSink AnOutput) : FPlan(APlan), FOutput(std::move(AnOutput)) {}

template <class TConfiguration>
void TExchangeJobs::RunExport(TConfiguration&& AConfiguration) {
  TVELOstrelCsvWriter Writer(FPlan, std::forward<TConfiguration>(AConfiguration));
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

void TExchangeJobs::UploadToSdui(const std::string& /*AConfigFileName*/) { ThrowMissing("upload to Sdui"); }

void TExchangeJobs::UploadToIServ(const std::string& /*AConfigFileName*/) { ThrowMissing("upload to IServ"); }

template <class TConfiguration>
void TExchangeJobs::RunImport(TConfiguration&& AConfiguration) {
  TVELOstrelCsvReader Reader(FPlan, std::forward<TConfiguration>(AConfiguration));
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
  TVELTransformator Transformator(FPlan);
  FOutput(OpenLine);
  Transformator.LoadFromFile(AFileName);
  FOutput("Generate new Guids...");
  Transformator.NewGuids();
  FOutput(SaveLine);
  Transformator.SaveToFile();
  FOutput("Transformation finished.");
}
