#include "BenchJobs.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <pugixml.hpp>
#include <random>
#include <stdexcept>
#include <vector>

#include "Globals.h"
#include "Jobs.h"
#include "Measure.h"
#include "PlanServer.h"
#include "Program.h"
#include "QuillonDataObjects/Snapshot.h"
#include "QuillonFileReplacement.h"
#include "QuillonIO.h"
#include "SchoolGenerator.h"
#include "uDataUtils/Spans.h"
#include "uJSONExport/Publisher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"

namespace Bench {

namespace {

/// Those of the program's reader.
constexpr unsigned ReaderOptions =
    pugi::parse_escapes | pugi::parse_eol | pugi::parse_cdata | pugi::parse_ws_pcdata_single | pugi::parse_embed_pcdata;

std::uint64_t ParseWith(const std::string& AFileName, unsigned AnOptions) {
  TQuillonFileStream Stream(AFileName, fomOpenRead, famShareDenyNone);
  TQuillonBuffer Text = QuillonIO::ReadIntoBuffer(Stream);
  pugi::xml_document Document;
  if (!Document.load_buffer_inplace(Text.Data(), Text.Size(), AnOptions)) {
    throw std::runtime_error("\"" + AFileName + "\" is no XML");
  }
  return Text.Size();
}

}  // namespace

void MakeSchool(const std::string& AFileName, int AScale) {
  SchoolGenerator::TOptions Options;
  Options.Scale = AScale;
  SchoolGenerator::Generate(Options)->SaveToFile(AFileName);
}

void MakeChangedSchool(const std::string& AFileName, int ACount) {
  constexpr unsigned FirstMonday = 46'237;  // 2026-08-03
  constexpr unsigned Weeks = 48;
  constexpr unsigned Features = vmKlasseFehlt + 1;
  constexpr int ChangesPerAbsence = 4;
  const auto Plan = SchoolGenerator::Generate({});
  const TQuillonChangeTrackingLock Lock(*Plan);
  std::vector<TVELTermin*> Places;
  for (const TVELVeranstaltung* Lesson : Plan->FVeranstaltungen) {
    if (!Lesson->FKlassen.IsEmpty()) {
      std::copy_if(Lesson->FTermine.begin(), Lesson->FTermine.end(), std::back_inserter(Places),
                   [](const TVELTermin* ATermin) { return ATermin->Reoccur() && ATermin->Scheduled(); });
    }
  }
  const auto Teachers = static_cast<unsigned>(Plan->FLehrer.Count());
  std::minstd_rand Random(1);
  for (int I = 0; I < ACount; ++I) {
    TVELTermin* const Place = Places[Random() % Places.size()];
    const auto Day = static_cast<double>(FirstMonday + 7 * (Random() % Weeks) + Place->FWochentag - 1);
    const TVELDateTime Start = Day + uDataUtils::TimeOf(Place->FStart);
    const TVELDateTime End = Day + uDataUtils::TimeOf(Place->FEnde);
    auto* const Change = QuillonDataObjects::Create<TVELVertretung>(Plan.get());
    Change->FATermin = Place;
    Change->FStart = Start;
    Change->FEnde = End;
    Change->FAenderungsstatus = aePublished;
    Change->FVertretungsmerkmal = static_cast<TVELVertretungsmerkmal>(Random() % Features);
    Change->FNeu.Append(Plan->FLehrer.GetItem(static_cast<int>(Random() % Teachers)));
    Plan->FAenderungen.Append(Change);
    if (I % ChangesPerAbsence == 0) {
      auto* const Absence = QuillonDataObjects::Create<TVELKlassenfehlzeit>(Plan.get());
      Absence->FKlasse = Place->Veranstaltung()->FKlassen.GetItem(0);
      Absence->FStart = Start;
      Absence->FEnde = End;
      Plan->FFehlzeiten.Append(Absence);
      Absence->FKlasse->FFehlzeiten.Append(Absence);
    }
  }
  Plan->SortLists();
  Plan->SaveToFile(AFileName);
}

std::uint64_t Parse(const std::string& AFileName) { return ParseWith(AFileName, pugi::parse_default); }

std::uint64_t ParseWithReaderOptions(const std::string& AFileName) { return ParseWith(AFileName, ReaderOptions); }

std::uint64_t Load(const std::string& AFileName) {
  TVELGlobals Globals;
  Globals.Plan().LoadFromFile(AFileName);
  return Globals.Plan().Registry().Count();
}

namespace {

/// Saves the plan in a form, the clock starting behind the load.
std::uint64_t Save(const std::string& AFileName, const std::string& ATarget, TQuillonDataFileFormat AFormat) {
  static TVELGlobals& Globals = *new TVELGlobals;
  Globals.Plan().LoadFromFile(AFileName);
  Globals.Plan().FFileFormat = AFormat;
  StartClock();
  Globals.Plan().SaveToFile(ATarget);
  return std::filesystem::file_size(ATarget);
}

}  // namespace

namespace {

/// The binary form of a plan, beside its file.
std::string BinaryOf(const std::string& AFileName) {
  std::string Binary = AFileName + ".bin";
  if (!std::filesystem::exists(Binary)) {
    Save(AFileName, Binary, ffBinary);
  }
  return Binary;
}

/// The same, compressed, as servers give it.
std::string PackedOf(const std::string& AFileName) {
  const std::string Packed = AFileName + ".z";
  if (!std::filesystem::exists(Packed)) {
    TVELGlobals Globals;
    Globals.Plan().LoadFromFile(AFileName);
    TQuillonMemoryStream Content;
    Globals.Plan().SaveToZIPStream(Content);
    QuillonIO::ReplaceFile(Packed, Content.Content());
  }
  return Packed;
}

}  // namespace

std::uint64_t LoadBinary(const std::string& AFileName) {
  const std::string Binary = BinaryOf(AFileName);
  StartClock();
  TVELGlobals Globals;
  Globals.Plan().FFileFormat = ffBinary;
  Globals.Plan().LoadFromFile(Binary);
  return Globals.Plan().Registry().Count();
}

std::uint64_t SaveXML(const std::string& AFileName) { return Save(AFileName, AFileName + ".saved.velmora", ffXML); }

std::uint64_t SaveBinary(const std::string& AFileName) { return Save(AFileName, AFileName + ".saved.bin", ffBinary); }

std::uint64_t Snapshot(const std::string& AFileName) {
  static TVELGlobals& Globals = *new TVELGlobals;
  Globals.Plan().LoadFromFile(AFileName);
  StartClock();
  TQuillonDataMemorySnapshot(Globals.Plan()).Request();
  return 0;
}

namespace {

/// Runs a job of the program as the console does.
template <class TJob>
std::uint64_t Run(const TJob& AJob, TQuillonDataFileFormat AFormat = ffXML) {
  static TVELGlobals& Globals = *new TVELGlobals;  // as the program does
  Globals.Plan().FFileFormat = AFormat;
  std::string Lines;
  const TLineSink Output = [&Lines](std::string_view ALine) { Lines.append(ALine).append("\n"); };
  TExchangeJobs Jobs(Globals, Output);
  if (TConsoleRun(Output, false).Run([&] { AJob(Jobs); }) != 0) {
    throw std::runtime_error("the job has failed:\n" + Lines);
  }
  return 0;
}

/// @param ASet fills in the settings
template <class TSet>
std::uint64_t RunExport(const TSet& ASet, TQuillonDataFileFormat AFormat = ffXML) {
  return Run(
      [&](TJobs& AJobs) {
        auto Configuration = std::make_unique<TOcfConfiguration>();
        ASet(Configuration->FOcfExport);
        AJobs.ExportToOcf(std::move(Configuration));
      },
      AFormat);
}

}  // namespace

std::uint64_t Export(const std::string& AFileName, const std::string& AFolder) {
  return RunExport([&](TOcfExportOptions& AnOptions) {
    AnOptions.FSourceFileName = AFileName;
    AnOptions.FTargetFolderName = AFolder;
  });
}

std::uint64_t ExportBinary(const std::string& AFileName, const std::string& AFolder) {
  const std::string Binary = BinaryOf(AFileName);
  StartClock();
  return RunExport(
      [&](TOcfExportOptions& AnOptions) {
        AnOptions.FSourceFileName = Binary;
        AnOptions.FTargetFolderName = AFolder;
      },
      ffBinary);
}

std::uint64_t ExportFromServer(const std::string& AFileName, const std::string& AFolder) {
  constexpr int Connections = 3;  // login, load, logoff
  TQuillonFileStream Packed(PackedOf(AFileName), fomOpenRead, famShareDenyNone);
  std::string Plan(static_cast<std::size_t>(Packed.Size()), '\0');
  Packed.ReadBuffer(Plan);
  const TPlanServer Server(std::move(Plan), Connections);
  StartClock();
  return RunExport([&](TOcfExportOptions& AnOptions) {
    AnOptions.FSourceProvider = "Server";
    AnOptions.FServerName = "127.0.0.1";
    AnOptions.FServerPort = Server.Port();
    AnOptions.FTargetFolderName = AFolder;
  });
}

std::uint64_t Import(const std::string& AFileName, const std::string& AFolder) {
  return Run([&](TJobs& AJobs) {
    auto Configuration = std::make_unique<TOcfConfiguration>();
    Configuration->FOcfImport.FTargetFileName = AFileName;
    Configuration->FOcfImport.FSourceFolderName = AFolder;
    AJobs.ImportFromOcf(std::move(Configuration));
  });
}

std::uint64_t Publish(const std::string& AFileName, const std::string& AForm) {
  const std::string Target = AFileName + "." + AForm;
  const std::string Settings = Target + ".cfg";
  QuillonIO::ReplaceFile(Settings, R"({"Velmora": {"jsonExport": {"sourceFileName": ")" + AFileName +
                                       R"(", "targetFileName": ")" + Target + R"(", "form": ")" + AForm +
                                       R"(", "start": "2026-08-03", "studentNames": true, "xmlTypes": )" +
                                       R"(["xmlIndex", "xmlLessons", "xmlChanges", "xmlCalEvents", "xmlAbsences"]}}})");
  static TVELGlobals& Globals = *new TVELGlobals;
  TVELJSONPublisher Publisher(Globals, Settings);
  Publisher.LoadVelFile();
  Publisher.Publish();
  return std::filesystem::file_size(Target);
}

std::uint64_t NewGuids(const std::string& AFileName) {
  return Run([&](TJobs& AJobs) { AJobs.TransformFile(AFileName); });
}

}  // namespace Bench
