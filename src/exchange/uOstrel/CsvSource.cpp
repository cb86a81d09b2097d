#include "uOstrel/CsvSource.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

#include "JsonUtils.h"
#include "QuillonCSV.h"
#include "QuillonDateTime.h"
#include "QuillonFileSystem.h"
#include "QuillonIO.h"
#include "QuillonNumbers.h"
#include "QuillonText.h"
#include "QuillonTypes.h"

namespace uOstrel {

namespace {

constexpr std::size_t BufferSize = 4096;
constexpr std::size_t Nowhere = std::numeric_limits<std::size_t>::max();
constexpr std::string_view IdColumn = "Id";

/// Place of a column; the first of several of that name counts.
std::size_t PlaceOf(const std::vector<std::string>& AHeader, std::string_view AColumn) {
  const std::string Wanted = QuillonText::ToLower(AColumn);
  const auto Found =
      std::ranges::find(AHeader, Wanted, [](std::string_view AName) { return QuillonText::ToLower(AName); });
  return Found == AHeader.end() ? Nowhere : static_cast<std::size_t>(Found - AHeader.begin());
}

std::int32_t IntegerOf(std::string_view AText) {
  using TLimits = std::numeric_limits<std::int32_t>;
  try {
    return static_cast<std::int32_t>(QuillonNumbers::ParseInteger(AText, TLimits::min(), TLimits::max()));
  } catch (const EQuillonConvertError&) {
    return 0;
  }
}

TGUID IdOf(const std::string& AText) { return AText.empty() ? TGUID{} : QuillonGuid::Parse("{" + AText + "}"); }

TIds IdsOf(const std::string& AText) {
  const nlohmann::json Parsed = TJsonUtils::Parse(AText);
  if (!Parsed.is_array()) {
    return std::nullopt;
  }
  std::vector<TGUID> Found;
  for (const auto& Element : Parsed) {
    Found.push_back(
        QuillonGuid::Parse("{" + (Element.is_string() ? Element.get_ref<const std::string&>() : Element.dump()) + "}"));
  }
  return Found;
}

TCell CellOf(TCellKind AKind, std::string AText) {
  switch (AKind) {
    case TCellKind::Integer:
      return IntegerOf(AText);
    case TCellKind::Timepoint:
      return AText.empty() ? 0.0 : QuillonDateTime::ParseDateTime(AText);
    case TCellKind::Id:
      return IdOf(AText);
    case TCellKind::Ids:
      return IdsOf(AText);
    default:
      return AText;
  }
}

}  // namespace

TCsvSource::TCsvSource(std::string AFileName, std::vector<TSourceColumn> AColumns)
    : FFileName(std::move(AFileName)), FColumns(std::move(AColumns)) {
  if (TQuillonFileSystem::IsFile(FFileName)) {
    Read();
  }
}

TCsvSource::TRow TCsvSource::Row(std::size_t AnIndex) const {
  const TStart& Start = FRows[AnIndex];
  return {.ID = Start.ID,
          .Number = Start.Number,
          .Line = Start.Line,
          .Cells = std::span(FCells).subspan(AnIndex * FColumns.size(), FColumns.size())};
}

void TCsvSource::Refuse(std::size_t AnIndex, std::string_view AColumn, std::string_view AProblem) const {
  RefuseAt(FRows[AnIndex].Number, FRows[AnIndex].Line, AColumn, AProblem);
}

void TCsvSource::RefuseAt(int ANumber, int ALine, std::string_view AColumn, std::string_view AProblem) const {
  std::string Text = "File \"" + FFileName + "\", row " + std::to_string(ANumber);
  if (ALine != ANumber) {
    Text += " (line " + std::to_string(ALine) + ")";
  }
  if (!AColumn.empty()) {
    Text += ", column " + QuillonText::Quoted(AColumn);
  }
  throw EQuillonException(Text.append(": ").append(AProblem));
}

void TCsvSource::Read() {
  TQuillonFileStream Stream(FFileName, fomOpenRead, famShareDenyWrite, fomOpenRead, famShareDenyNone);
  TQuillonCSVReader Reader(Stream, TQuillonEncoding::Utf8, true, BufferSize);
  Reader.FStrict = true;
  std::vector<std::string> Header;
  try {
    Header = Reader.ReadLine().value_or(TQuillonCSVLine());
    ReadRows(Reader, Header);
  } catch (const EQuillonCSVReaderError& Error) {
    const std::size_t Place = Reader.FieldCount();
    RefuseAt(Reader.FLineCount, Reader.TextLine(), Place < Header.size() ? Header[Place] : std::string(), Error.what());
  }
}

void TCsvSource::ReadRows(TQuillonCSVReader& AReader, const std::vector<std::string>& AHeader) {
  const std::size_t IdPlace = PlaceOf(AHeader, IdColumn);
  std::vector<std::size_t> Places;
  for (const TSourceColumn& Column : FColumns) {
    Places.push_back(PlaceOf(AHeader, Column.Name));
  }
  for (std::size_t I = 0; I < AHeader.size(); ++I) {
    if (I != IdPlace && std::ranges::find(Places, I) == Places.end()) {
      FUnreadColumns.push_back(AHeader[I]);
    }
  }
  // A file without a header has no rows.
  for (std::optional<TQuillonCSVLine> Line; !AHeader.empty() && (Line = AReader.ReadLine());) {
    const auto Take = [&](const TSourceColumn& AColumn, std::size_t APlace) {
      try {
        return CellOf(AColumn.Kind, APlace < Line->size() ? std::move((*Line)[APlace]) : std::string());
      } catch (const EQuillonException& Error) {
        RefuseAt(AReader.FLineCount, AReader.TextLine(), AColumn.Name, Error.what());
      }
    };
    TStart& Start = FRows.emplace_back(TStart{std::nullopt, AReader.FLineCount, AReader.TextLine()});
    if (IdPlace < Line->size()) {
      Start.ID = std::get<TGUID>(Take({IdColumn, TCellKind::Id}, IdPlace));
    }
    for (std::size_t I = 0; I < FColumns.size(); ++I) {
      FCells.push_back(Take(FColumns[I], Places[I]));
    }
  }
}

}  // namespace uOstrel
