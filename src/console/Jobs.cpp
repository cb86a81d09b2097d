#include "Jobs.h"

#include <utility>

#include "QuillonHttp.h"
#include "QuillonText.h"
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

void TExchangeJobs::Say(std::string_view AStage, std::string_view ALine) {
  FGlobals.Report().BeginStage(AStage);
  FOutput(ALine);
}

void TExchangeJobs::RunNothing(const std::string& AnOption, const std::string& AValue) {
  FGlobals.Report().Warn("no-job", "No job was run: the option " + AnOption + " has the value \"" + AValue + "\".");
}

void TExchangeJobs::Finish(int AnExitCode, const std::string& AnError) {
  FGlobals.Report().Finish(AnExitCode, AnError);
}

template <class TConfiguration>
void TExchangeJobs::RunExport(TConfiguration&& AConfiguration) {
  TVELOstrelCsvWriter Writer(FGlobals, std::forward<TConfiguration>(AConfiguration));
  Say("open", OpenLine);
  Writer.LoadVelFile();
  FGlobals.TellPlan();
  Say("export", "Start Export to OCF...");
  Writer.WriteAll();
  FOutput("Export Finished.");
}

void TExchangeJobs::ExportToOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) {
  const TOcfExportOptions& Options = AConfiguration->FOcfExport;
  TVELReport& Report = FGlobals.Report();
  Report.FJob = "export";
  Report.SetFileName(Options.FReportFileName);
  Report.FSource = ServerSource::PlaceOf(Options.FSourceProvider, Options, Options.FSourceFileName);
  Report.FTarget = Options.FTargetFolderName;
  Report.SpareOtherFiles();
  RunExport(std::move(AConfiguration));
}

void TExchangeJobs::ExportToOcf(const std::string& AConfigFileName) {
  FGlobals.Report().FJob = "export";
  RunExport(AConfigFileName);
}

template <class TWriter>
void TExchangeJobs::RunUpload(const std::string& AConfigFileName, const std::string& AService) {
  FGlobals.Report().FJob = "upload-" + QuillonText::ToLower(AService);
  FGlobals.Report().FSettings = AConfigFileName;
  const auto Client = QuillonHttp::CreateClient();
  const auto State = uUpload::UserState();
  TWriter Writer(FGlobals, AConfigFileName, *Client, *State);
  Say("open", OpenLine);
  Writer.LoadVelFile();
  FGlobals.TellPlan();
  Say("upload", "Start Upload to " + AService + "...");
  const bool IsSent = Writer.UploadVelFile();
  FGlobals.Report().FOutcome = IsSent ? "sent" : "unchanged";
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
  Say("open", OpenLine);
  Reader.LoadVelFile();
  FGlobals.TellPlan();
  Say("import", "Start Import from OCF...");
  Reader.ReadAll();
  Say("save", SaveLine);
  Reader.SaveVelFile();
  FOutput("Import finished.");
}

void TExchangeJobs::ImportFromOcf(std::unique_ptr<TOcfConfiguration> AConfiguration) {
  const TOcfImportOptions& Options = AConfiguration->FOcfImport;
  TVELReport& Report = FGlobals.Report();
  Report.FJob = "import";
  Report.SetFileName(Options.FReportFileName);
  Report.FSource = Options.FSourceFolderName;
  Report.FTarget = ServerSource::PlaceOf(Options.FTargetProvider, Options, Options.FTargetFileName);
  Report.SpareOtherFiles();
  RunImport(std::move(AConfiguration));
}

void TExchangeJobs::ImportFromOcf(const std::string& AConfigFileName) {
  FGlobals.Report().FJob = "import";
  RunImport(AConfigFileName);
}

void TExchangeJobs::TransformFile(const std::string& AFileName) {
  FGlobals.Report().FJob = "newguids";
  FGlobals.Report().FSource = FGlobals.Report().FTarget = AFileName;
  FGlobals.Report().SpareOtherFiles();
  TVELTransformator Transformator(FGlobals);
  Say("open", OpenLine);
  Transformator.LoadFromFile(AFileName);
  FGlobals.TellPlan();
  Say("new identifiers", "Generate new Guids...");
  Transformator.NewGuids();
  Say("save", SaveLine);
  Transformator.SaveToFile();
  FOutput("Transformation finished.");
}
