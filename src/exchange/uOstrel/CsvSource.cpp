#include "uOstrel/CsvSource.h"

#include <limits>
#include <nlohmann/json.hpp>

#include "QuillonDateTime.h"
#include "QuillonNumbers.h"
#include "QuillonText.h"
#include "QuillonTypes.h"

namespace uOstrel {

namespace {

constexpr std::size_t BufferSize = 4096;

TGUID ParsePlain(const std::string& AText) { return QuillonGuid::Parse("{" + AText + "}"); }

}  // namespace

TCsvSource::TCsvSource(const std::string& AFileName)
    : FStream(AFileName, fomOpenRead, famShareDenyWrite, fomOpenRead, famShareDenyNone),
      FReader(FStream, TQuillonEncoding::Utf8, true, BufferSize) {
  if (const auto Header = FReader.ReadLine()) {
    for (std::size_t I = 0; I < Header->size(); ++I) {
      FColumns.emplace(QuillonText::ToLower((*Header)[I]), I);
    }
  }
}

bool TCsvSource::Next() {
  // A file without a header has no rows.
  FRow = FColumns.empty() ? std::nullopt : FReader.ReadLine();
  return FRow.has_value();
}

const std::string* TCsvSource::Find(std::string_view AColumn) const {
  const auto Found = FColumns.find(QuillonText::ToLower(AColumn));
  return Found != FColumns.end() && Found->second < FRow->size() ? &(*FRow)[Found->second] : nullptr;
}

const std::string& TCsvSource::Text(std::string_view AColumn) const {
  static const std::string Empty;
  const std::string* const Cell = Find(AColumn);
  return Cell != nullptr ? *Cell : Empty;
}

std::int32_t TCsvSource::Integer(std::string_view AColumn) const {
  using TLimits = std::numeric_limits<std::int32_t>;
  try {
    return static_cast<std::int32_t>(QuillonNumbers::ParseInteger(Text(AColumn), TLimits::min(), TLimits::max()));
  } catch (const EQuillonConvertError&) {
    return 0;
  }
}

TGUID TCsvSource::Guid(std::string_view AColumn, const TGUID& ADefault) const {
  const std::string* const Cell = Find(AColumn);
  if (Cell == nullptr) {
    return ADefault;
  }
  return Cell->empty() ? TGUID{} : ParsePlain(*Cell);
}

double TCsvSource::DateTime(std::string_view AColumn) const {
  const std::string& Cell = Text(AColumn);
  return Cell.empty() ? 0 : QuillonDateTime::ParseDateTime(Cell);
}

std::optional<std::vector<TGUID>> TCsvSource::Guids(std::string_view AColumn) const {
  const auto Parsed = nlohmann::json::parse(Text(AColumn), nullptr, false);
  if (!Parsed.is_array()) {
    return std::nullopt;
  }
  std::vector<TGUID> Found;
  for (const auto& Element : Parsed) {
    Found.push_back(ParsePlain(Element.is_string() ? Element.get_ref<const std::string&>() : Element.dump()));
  }
  return Found;
}

}  // namespace uOstrel
