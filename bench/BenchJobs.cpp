#include "BenchJobs.h"

#include <pugixml.hpp>
#include <stdexcept>
#include <vector>

#include "CommandLine.h"
#include "Globals.h"
#include "Jobs.h"
#include "Program.h"
#include "QuillonIO.h"
#include "SchoolGenerator.h"
#include "platform/Paths.h"

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

std::uint64_t Parse(const std::string& AFileName) { return ParseWith(AFileName, ReaderOptions); }

std::uint64_t ParseWithDefaults(const std::string& AFileName) { return ParseWith(AFileName, pugi::parse_default); }

std::uint64_t Load(const std::string& AFileName) {
  TVELGlobals Globals;
  Globals.Plan().LoadFromFile(AFileName);
  return Globals.Plan().Registry().Count();
}

std::uint64_t Export(const std::string& AFileName, const std::string& AFolder) {
  static TVELGlobals& Globals = *new TVELGlobals;  // as the program does
  std::string Lines;
  const TLineSink Output = [&Lines](std::string_view ALine) { Lines.append(ALine).append("\n"); };
  TExchangeJobs Jobs(Globals.Plan(), Output);
  const TCommandLine Line({"export", "-s", "file", "-fn", AFileName, "-o", AFolder}, Platform::PathsBeginWithSlash());
  if (TProgram(Line, Jobs, Output).Run() != 0) {
    throw std::runtime_error("the export has failed:\n" + Lines);
  }
  return 0;
}

}  // namespace Bench
