#include "uOstrel/CsvFile.h"

#include "QuillonNumbers.h"

namespace {

constexpr std::size_t TextBufferSize = 65'536;

}  // namespace

namespace uOstrel {

TCsvFile::TCsvFile(TFileSet& ASet, const TFileName& AFileName, std::uint64_t& ARows)
    : FSet(ASet), FContent(ASet.Begin(AFileName.Text())), FRows(ARows), FWriter(FContent, true, TextBufferSize) {}

void TCsvFile::Close() {
  FWriter.FlushBuffer();
  FSet.End(FContent);
}

void TCsvFile::Identifier(const TGUID& AGuid) {
  FWriter.WritePlain([&](std::string& ACell) { AppendIdentifier(ACell, AGuid); });
}

void TCsvFile::Id(const TVELDataObject* AnObject) { Identifier(AnObject != nullptr ? AnObject->ID() : TGUID{}); }

void TCsvFile::IdList(const TQuillonDataList& AList) {
  TIdList Ids;
  for (const TQuillonDataObject* Item : AList.Items()) {
    Ids.Add(Item->ID());
  }
  Text(Ids.Text());
}

void TCsvFile::Date(double AValue) {
  FWriter.WritePlain([&](std::string& ACell) { AppendDate(ACell, AValue); });
}

void TCsvFile::Timepoint(double AValue) {
  FWriter.WritePlain([&](std::string& ACell) { AppendTimepoint(ACell, AValue); });
}

void TCsvFile::Colour(TColor AValue) {
  FWriter.WritePlain([&](std::string& ACell) { AppendColour(ACell, AValue); });
}

void TCsvFile::Integer(std::int64_t AValue) {
  FWriter.WritePlain([&](std::string& ACell) { QuillonNumbers::AppendInteger(ACell, AValue); });
}

void TCsvFile::Gender(TVELGeschlecht AValue) {
  Text(AValue == gMaennlich ? "Male" : (AValue == gWeiblich ? "Female" : ""));
}

}  // namespace uOstrel
