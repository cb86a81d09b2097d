#include "QuillonXML.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>

#include "QuillonText.h"

namespace {

constexpr std::string_view Replacement = "\uFFFD";

/// Values of blanks only are values; the blanks between elements are none. An element's first text is kept in the
/// element itself, which halves the number of nodes.
constexpr unsigned ParseOptions =
    pugi::parse_escapes | pugi::parse_eol | pugi::parse_cdata | pugi::parse_ws_pcdata_single | pugi::parse_embed_pcdata;
/// Beside comments and sections, blanks are pieces of a text.
constexpr unsigned ParseOptionsOfPieces =
    (ParseOptions & ~pugi::parse_ws_pcdata_single) | pugi::parse_ws_pcdata | pugi::parse_doctype;

[[noreturn]] void Refuse(std::string_view ASource, const std::string& AReason) {
  throw EQuillonXMLError("\"" + std::string(ASource) + "\" ist kein gültiges XML-Dokument: " + AReason);
}

/// True if the text at the begin is a reference by number, to what is no character of XML. @param ALength its length
bool IsBadReference(std::string_view AText, std::size_t& ALength) {
  constexpr std::uint32_t Last = 0x10FFFF;
  const bool IsHex = AText.starts_with("&#x");
  const std::size_t Begin = IsHex ? 3 : 2;
  std::uint32_t Code = 0;
  std::size_t End = Begin;
  for (; End < AText.size() && AText[End] != ';'; ++End) {
    const char C = AText[End];
    const char Letter = static_cast<char>(C | ('a' - 'A'));
    if (C >= '0' && C <= '9') {
      Code = Code * (IsHex ? 16 : 10) + static_cast<std::uint32_t>(C - '0');
    } else if (IsHex && Letter >= 'a' && Letter <= 'f') {
      Code = Code * 16 + static_cast<std::uint32_t>(Letter - 'a' + 10);
    } else {
      return false;
    }
    Code = std::min(Code, Last + 1);
  }
  ALength = End + 1;
  return End > Begin && End < AText.size() &&
         (Code == 0 || (Code >= 0xD800 && Code <= 0xDFFF) || Code == 0xFFFE || Code == 0xFFFF || Code > Last);
}

/// What there is to know of a document before it is parsed.
struct TFindings {
  bool HasPieces = false;         ///< comments, sections or a document type
  bool HasBadReferences = false;  ///< those of IsBadReference
  std::size_t LineBreaks = 0;
  std::size_t InvalidUtf8 = std::string_view::npos;  ///< place of the first such byte; the search ended there
};

/// Bytes that are looked at in one go: whole vectors of the processor, and no more than a byte can count.
constexpr std::size_t StepSize = 240;
constexpr std::uint8_t FirstBeyondAscii = 0x80;

/// What a step holds, told by what the compiler finds in many bytes at a time.
struct TStep {
  std::uint8_t LineFeeds = 0;
  std::uint8_t Bits = 0;         ///< all bits that its bytes have
  std::uint8_t ToReturn = 0xFF;  ///< 0 if a carriage return is among them
  std::uint8_t ToMark = 0xFF;    ///< 0 if "!" or "#" is
};

TStep LookAt(std::string_view AStep) {
  constexpr unsigned MarkDifference = '!' ^ '#';  // one bit
  TStep Found;
  for (const char C : AStep) {
    const auto Byte = static_cast<std::uint8_t>(C);
    Found.LineFeeds = static_cast<std::uint8_t>(Found.LineFeeds + (Byte == '\n' ? 1 : 0));
    Found.Bits = static_cast<std::uint8_t>(Found.Bits | Byte);
    Found.ToReturn = std::min(Found.ToReturn, static_cast<std::uint8_t>(Byte ^ '\r'));
    Found.ToMark = std::min(Found.ToMark, static_cast<std::uint8_t>((Byte | MarkDifference) ^ '#'));
  }
  return Found;
}

/// The second look at a part of the document.
void Explore(std::string_view ADocument, std::size_t ABegin, std::size_t AnEnd, TFindings& AFound) {
  const auto IsBehind = [&](std::size_t APlace, char AMark) { return APlace > 0 && ADocument[APlace - 1] == AMark; };
  for (std::size_t Place = ABegin; Place < AnEnd; ++Place) {
    switch (ADocument[Place]) {
      case '!':
        AFound.HasPieces = AFound.HasPieces || IsBehind(Place, '<');
        break;
      case '#': {
        std::size_t Length = 0;
        AFound.HasBadReferences =
            AFound.HasBadReferences || (IsBehind(Place, '&') && IsBadReference(ADocument.substr(Place - 1), Length));
        break;
      }
      case '\r':
        AFound.LineBreaks += Place + 1 == ADocument.size() || ADocument[Place + 1] != '\n' ? 1 : 0;
        break;
      default:
        break;
    }
  }
}

/// Line breaks (XML 1.0, 2.11) are LF, CR LF, or CR alone.
TFindings Explore(std::string_view ADocument) {
  TFindings Found;
  for (std::size_t Begin = 0, End = 0; Begin < ADocument.size(); Begin = End) {
    End = std::min(Begin + StepSize, ADocument.size());
    const TStep Step = LookAt(ADocument.substr(Begin, End - Begin));
    if (Step.Bits >= FirstBeyondAscii) {
      while (End < ADocument.size() && (static_cast<unsigned char>(ADocument[End]) & 0xC0) == 0x80) {
        ++End;
      }
      if (const std::size_t Bad = QuillonText::FindInvalidUtf8(ADocument.substr(Begin, End - Begin));
          Bad != std::string_view::npos) {
        Found.InvalidUtf8 = Begin + Bad;
        return Found;
      }
    }
    if (Step.ToReturn == 0 || Step.ToMark == 0) {
      Explore(ADocument, Begin, End, Found);
    }
    Found.LineBreaks += Step.LineFeeds;
  }
  return Found;
}

/// The document with U+FFFD for its bad references. Sections, comments and instructions are passed over: a reference
/// is none there.
std::string ReplaceBadReferences(std::string_view ADocument) {
  struct TPassedOver {
    std::string_view Begin;
    std::string_view End;
  };
  static constexpr TPassedOver PassedOver[] = {{"<![CDATA[", "]]>"}, {"<!--", "-->"}, {"<?", "?>"}};
  std::string Result;
  Result.reserve(ADocument.size());
  std::size_t Copied = 0;
  std::size_t Place = 0;
  while ((Place = ADocument.find_first_of("&<", Place)) != std::string_view::npos) {
    const std::string_view Rest = ADocument.substr(Place);
    std::size_t Length = 1;
    if (Rest.starts_with("&#") && IsBadReference(Rest, Length)) {
      Result.append(ADocument.substr(Copied, Place - Copied)).append(Replacement);
      Copied = Place + Length;
    } else if (const auto* const Found =
                   std::find_if(std::begin(PassedOver), std::end(PassedOver),
                                [&](const TPassedOver& AKind) { return Rest.starts_with(AKind.Begin); });
               Found != std::end(PassedOver)) {
      const std::size_t End = Rest.find(Found->End, Found->Begin.size());
      Length = End == std::string_view::npos ? Rest.size() : End + Found->End.size();
    } else {
      Length = 1;
    }
    Place += Length;
  }
  return Result.append(ADocument.substr(Copied));
}

/// Four bytes a character: the parser's own matter.
bool IsUtf32(std::string_view ADocument) {
  using namespace std::string_view_literals;
  return ADocument.starts_with("\xFF\xFE\0\0"sv) || ADocument.starts_with("<\0\0\0"sv) ||
         ADocument.starts_with("\0\0"sv);
}

/// What a document is that is packed; empty for one that is not.
std::string_view PackingOf(std::string_view ADocument) {
  if (ADocument.starts_with("PK\x03\x04")) {
    return "ein ZIP-Archiv";
  }
  return ADocument.starts_with("\x1F\x8B") ? "eine gzip-Datei" : "";
}

/// The document in UTF-8; what is wrong in that stays to be found.
TQuillonBuffer ToUtf8(TQuillonBuffer ADocument) {
  using namespace std::string_view_literals;
  const std::string_view Bytes = ADocument.View();
  const bool IsLittle = !IsUtf32(Bytes) && (Bytes.starts_with("\xFF\xFE"sv) || Bytes.starts_with("<\0"sv));
  const bool IsBig = Bytes.starts_with("\xFE\xFF"sv) || Bytes.starts_with("\0<"sv);
  return IsLittle || IsBig ? TQuillonBuffer(QuillonText::FromUtf16(Bytes, IsBig)) : std::move(ADocument);
}

}  // namespace

TQuillonXMLDocument::TQuillonXMLDocument(TQuillonBuffer ADocument, std::string_view ASource,
                                         std::string_view ADocumentElement)
    : FBuffer(ToUtf8(std::move(ADocument))) {
  Parse(ASource);
  CheckDocument(ASource, ADocumentElement);
}

void TQuillonXMLDocument::Parse(std::string_view ASource) {
  if (const std::string_view Packing = PackingOf(FBuffer.View()); !Packing.empty()) {
    Refuse(ASource, "es ist " + std::string(Packing) + ", bitte zuerst entpacken.");
  }
  const TFindings Found = IsUtf32(FBuffer.View()) ? TFindings{.HasPieces = true} : Explore(FBuffer.View());
  if (Found.InvalidUtf8 != std::string_view::npos) {
    const std::string_view Ahead = FBuffer.View().substr(0, Found.InvalidUtf8);
    Refuse(ASource, "ungültiges UTF-8 (Zeile " + std::to_string(1 + Explore(Ahead).LineBreaks) + ").");
  }
  if (Found.HasBadReferences) {
    FBuffer = ReplaceBadReferences(FBuffer.View());
  }
  const char Last = FBuffer.Size() > 0 ? FBuffer.Data()[FBuffer.Size() - 1] : '\0';
  const pugi::xml_parse_result Result = FDocument.load_buffer_inplace(
      FBuffer.Data(), FBuffer.Size(), Found.HasPieces ? ParseOptionsOfPieces : ParseOptions);
  if (Result.status == pugi::status_out_of_memory) {
    throw std::bad_alloc();
  }
  if (!Result) {
    // The parser works in place, and ends the text with a byte of its own: ahead of the error, lines cannot be counted
    // any more.
    if (FBuffer.Size() > 0) {
      FBuffer.Data()[FBuffer.Size() - 1] = Last;
    }
    const auto Offset = std::min(static_cast<std::size_t>(std::max<std::ptrdiff_t>(Result.offset, 0)), FBuffer.Size());
    const std::size_t Behind = Explore(FBuffer.View().substr(Offset)).LineBreaks;
    Refuse(ASource, std::string(Result.description()) + " (Zeile " +
                        std::to_string(1 + Found.LineBreaks - std::min(Found.LineBreaks, Behind)) + ").");
  }
}

void TQuillonXMLDocument::CheckDocument(std::string_view ASource, std::string_view ADocumentElement) const {
  const pugi::xml_node Element = Root();
  if (Element.name() != ADocumentElement) {
    Refuse(ASource, "das Dokumentelement ist " + QuillonText::Quoted(Element.name()) + " statt \"" +
                        std::string(ADocumentElement) + "\".");
  }
  for (const pugi::xml_node& Node : FDocument.children()) {
    if (Node.type() == pugi::node_element && Node != Element) {
      Refuse(ASource, "mehr als ein Dokumentelement.");
    }
    // What they stand for is not known to the parser: their names would stand in the texts.
    if (Node.type() == pugi::node_doctype && std::strstr(Node.value(), "<!ENTITY") != nullptr) {
      Refuse(ASource, "es hat eigene Entitäten.");
    }
  }
}
