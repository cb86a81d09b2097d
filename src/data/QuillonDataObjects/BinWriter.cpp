#include "QuillonDataObjects/BinWriter.h"

#include <algorithm>
#include <limits>

#include "QuillonDataObjects/DataClass.h"

namespace {

using TRow = TQuillonDataRow;

/// What is beyond the narrower type becomes its largest value: an infinite one would not be read again.
float ToSingle(double AValue) {
  constexpr double Largest = std::numeric_limits<float>::max();
  return static_cast<float>(std::clamp(AValue, -Largest, Largest));
}

}  // namespace

TQuillonDataObjectBinWriter::TQuillonDataObjectBinWriter(TQuillonStream& AStream, bool DoRecursive)
    : FWriter(AStream, QuillonStreams::PieceSize), FIsRecursive(DoRecursive) {}

void TQuillonDataObjectBinWriter::WriteCount(std::size_t ACount) {
  if (ACount > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    throw EQuillonWriterError();
  }
  FWriter.WriteLongInt(static_cast<std::int32_t>(ACount));
}

bool TQuillonDataObjectBinWriter::WriteReference(const TQuillonDataObject* AnObject) {
  FWriter.WriteBoolean(AnObject != nullptr);
  if (AnObject == nullptr) {
    return false;
  }
  FWriter.WriteString(AnObject->DataClass().Tag());
  FWriter.WriteGuid(AnObject->ID());
  return true;
}

void TQuillonDataObjectBinWriter::WriteObject(const TQuillonDataObject* AnObject) {
  if (WriteReference(AnObject)) {
    AnObject->WriteProperties(*this);
  }
}

void TQuillonDataObjectBinWriter::WriteList(const TQuillonDataList& AList) {
  FWriter.WriteGuid(AList.ID());
  if (!FIsRecursive) {
    return;
  }
  AList.WriteProperties(*this);
  WriteCount(AList.Items().size());
  for (const TQuillonDataObject* Item : AList.Items()) {
    if (AList.IsItemOwner()) {
      WriteObject(Item);
    } else {
      WriteReference(Item);
    }
  }
}

void TQuillonDataObjectBinWriter::WriteNumber(const TRow& ARow, std::int64_t AValue) {
  switch (ARow.Kind) {
    case TQuillonRowKind::Boolean:
      FWriter.WriteBoolean(AValue != 0);
      return;
    case TQuillonRowKind::Byte:
    case TQuillonRowKind::ShortInt:
      FWriter.WriteByte(static_cast<std::uint8_t>(AValue));
      return;
    case TQuillonRowKind::Word:
    case TQuillonRowKind::SmallInt:
      FWriter.WriteWord(static_cast<std::uint16_t>(AValue));
      return;
    case TQuillonRowKind::LongInt:
      FWriter.WriteLongInt(static_cast<std::int32_t>(AValue));
      return;
    default:
      FWriter.WriteInt64(AValue);
  }
}

void TQuillonDataObjectBinWriter::WriteRow(const TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
  std::visit(TQuillonCases{
                 [&](const TRow::TNumber& AnAccess) { WriteNumber(ARow, AnAccess.Get(AnObject)); },
                 [&](const TRow::TFloat& AnAccess) {
                   const double Value = AnAccess.Get(AnObject);
                   if (ARow.Kind == TQuillonRowKind::Single) {
                     FWriter.WriteSingle(ToSingle(Value));
                   } else {
                     FWriter.WriteDouble(Value);
                   }
                 },
                 [&](const TRow::TText& AnAccess) {
                   FWriter.WriteString(ARow.WrittenText.empty() ? AnAccess.Get(AnObject, FScratch) : ARow.WrittenText);
                 },
                 [&](const TRow::TGuid& AnAccess) { FWriter.WriteGuid(AnAccess.Get(AnObject)); },
                 [&](const TRow::TIntegers& AnAccess) {
                   WriteCount(AnAccess.Get(AnObject).size());
                   std::ranges::for_each(AnAccess.Get(AnObject),
                                         [&](std::int32_t AValue) { FWriter.WriteLongInt(AValue); });
                 },
                 [&](const TRow::TStrings& AnAccess) {
                   WriteCount(AnAccess.Get(AnObject).size());
                   std::ranges::for_each(AnAccess.Get(AnObject),
                                         [&](const std::string& AValue) { FWriter.WriteString(AValue); });
                 },
                 [&](const TRow::TPicture& AnAccess) { FWriter.WriteBinary(AnAccess.Get(AnObject).Image); },
                 [&](const TRow::TPointer& AnAccess) {
                   if (ARow.Kind == TQuillonRowKind::Object) {
                     WriteObject(AnAccess.Get(AnObject));
                   } else {
                     WriteReference(AnAccess.Get(AnObject));
                   }
                 },
                 [&](const TRow::TItems& AnAccess) { WriteList(AnAccess.Get(AnObject)); },
                 [](const TRow::TStep&) {},
                 [](std::monostate) {},
             },
             ARow.Access);
}

void TQuillonDataObjectBinWriter::WriteRows(const TQuillonDataAbstractObject& AnObject) {
  for (const TRow& Row : AnObject.DataClass().Rows()) {
    if (!Row.IsRetired()) {
      WriteRow(AnObject, Row);
    }
  }
}
