#include "uOstrel/CsvFile.h"

#include "QuillonNumbers.h"

namespace {

constexpr std::size_t TextBufferSize = 65536;

}  // namespace

namespace uOstrel {

TCsvFile::TCsvFile(TFileSet& ASet, const TFileName& AFileName, std::uint64_t& ARows)
    : FSet(ASet), FRows(ARows), FWriter(ASet.Begin(AFileName.Text()), true, TextBufferSize) {}

void TCsvFile::Close() {
  FWriter.FlushBuffer();
  FSet.End();
}

template <class TAppend>
void TCsvFile::Cell(const TAppend& AnAppend) {
  FCell.clear();
  AnAppend(FCell);
  FWriter.WriteValue(FCell);
}

void TCsvFile::Identifier(const TGUID& AGuid) {
  if (AGuid.IsZero()) {
    Text({});
  } else {
    FWriter.WritePlain([&](std::string& ABuffer) { AppendIdentifier(ABuffer, AGuid); });
  }
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
  Cell([&](std::string& ACell) { AppendDate(ACell, AValue); });
}

void TCsvFile::Timepoint(double AValue) {
  Cell([&](std::string& ACell) { AppendTimepoint(ACell, AValue); });
}

void TCsvFile::Colour(TColor AValue) {
  Cell([&](std::string& ACell) { AppendColour(ACell, AValue); });
}

void TCsvFile::Integer(std::int64_t AValue) {
  FWriter.WritePlain([&](std::string& ABuffer) { QuillonNumbers::AppendInteger(ABuffer, AValue); });
}

void TCsvFile::Gender(TVELGeschlecht AValue) {
  Text(AValue == gMaennlich ? "Male" : (AValue == gWeiblich ? "Female" : ""));
}

}  // namespace uOstrel
