#include <vector>

#include "Fuzz.h"
#include "QuillonCSV.h"

namespace {

using TLines = std::vector<TQuillonCSVLine>;

/// The settings of a reader, taken from a byte.
struct TDialect {
  unsigned Bits;

  bool Has(unsigned ABit) const { return (Bits >> ABit & 1U) != 0; }
  TQuillonEncoding Encoding() const { return static_cast<TQuillonEncoding>(Bits >> 6U & 3U); }
};

TLines Read(std::string_view AText, const TDialect& ADialect, bool AnIsStrict, std::size_t ABufferSize) {
  TQuillonMemoryStream Stream{std::string(AText)};
  TQuillonCSVReader Reader(Stream, ADialect.Encoding(), ADialect.Has(0), ABufferSize);
  Reader.FStrict = AnIsStrict;
  Reader.FAllowComments = ADialect.Has(1);
  Reader.FIgnoreQuotes = ADialect.Has(2);
  Reader.FSeparator = ADialect.Has(3) ? ',' : ';';
  TLines Lines;
  while (auto Line = Reader.ReadLine()) {
    Fuzz::Require(!Line->empty() && Line->size() == Reader.FieldCount(),
                  "the reader counts other fields than it gives");
    Lines.push_back(std::move(*Line));
  }
  return Lines;
}

/// All in quotes, since a plain field loses the blanks ahead of it, and an empty one at the end of its line is none.
std::string Write(const TLines& ALines) {
  constexpr std::size_t BufferSize = 64;
  TQuillonMemoryStream Stream;
  TQuillonCSVWriter Writer(Stream, true, BufferSize);
  Writer.FForceQuotes = true;
  for (const TQuillonCSVLine& Line : ALines) {
    Writer.WriteLine(&Line);
  }
  Writer.FlushBuffer();
  return Stream.TakeContent();
}

}  // namespace

/// Reads the text behind the first line, whose first byte holds the settings: the size of the buffer changes nothing,
/// what a strict reader accepts is what a lenient one gives, and the lines come back as they were written.
void Fuzz::Run(std::string_view AnInput) {
  const std::string_view Settings = TakeLine(AnInput);
  const TDialect Dialect{Settings.empty() ? 0U : static_cast<unsigned char>(Settings.front())};
  constexpr std::size_t LargeBuffer = 4096;
  TLines Lines;
  if (!Accepts([&] { Lines = Read(AnInput, Dialect, false, LargeBuffer); })) {
    Require(!Accepts([&] { Read(AnInput, Dialect, true, LargeBuffer); }), "a strict reader accepts more");
    return;
  }
  Require(Read(AnInput, Dialect, false, 1) == Lines, "a small buffer gives other lines");
  TLines Strict = Lines;
  Accepts([&] { Strict = Read(AnInput, Dialect, true, LargeBuffer); });
  Require(Strict == Lines, "a strict reader gives other lines");

  // An empty field at the very end of a text is none, in quotes either.
  Lines.push_back({"end"});
  Require(Read(Write(Lines), {1}, true, LargeBuffer) == Lines, "lines come back otherwise than they were written");
}
