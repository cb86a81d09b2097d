#include "QuillonDataObjects/DataClass.h"

#include <cassert>

#include "QuillonDataObjects/Storage.h"

TQuillonDataClass::TQuillonDataClass(std::string_view ATag, std::string_view ADisplayFormat,
                                     const TQuillonDataClass* ABase, TFactory AFactory)
    : FTag(ATag), FDisplayFormat(ADisplayFormat), FBase(ABase), FFactory(AFactory) {
  if (ABase != nullptr) {
    FRows = ABase->FRows;
  }
}

void TQuillonDataClass::AddRow(TQuillonDataRow ARow) {
  std::size_t First = 0;
  while (First < FRows.size() && (FRows[First].Name != ARow.Name || ARow.Kind == TQuillonRowKind::Hook)) {
    ++First;
  }
  ARow.FirstOfName = First;
  FRows.push_back(ARow);
}

TQuillonDataAbstractObject* TQuillonDataClass::CreateAny(TQuillonDataAbstractObject* AnOwner, const TGUID& AnID) const {
  assert(FFactory != nullptr);
  TQuillonDataHandle<TQuillonDataAbstractObject> Object(FFactory());
  Object->AfterConstruction(AnOwner, AnID);
  return Object.release();
}

TQuillonDataObject* TQuillonDataClass::Create(TQuillonDataAbstractObject* AnOwner, const TGUID& AnID) const {
  assert(DescendsFrom(TQuillonDataObject::Class()));
  return static_cast<TQuillonDataObject*>(CreateAny(AnOwner, AnID));
}

using TRow = TQuillonDataRow;

namespace QuillonDataObjects {

void AssignRow(const TRow& ARow, TQuillonDataAbstractObject& ATarget, const TQuillonDataAbstractObject& ASource) {
  // The accessors of fields hand out what may be changed; the source is only looked at.
  auto& Source = const_cast<TQuillonDataAbstractObject&>(ASource);
  switch (ARow.Kind) {
    case TQuillonRowKind::Boolean:
    case TQuillonRowKind::Byte:
    case TQuillonRowKind::ShortInt:
    case TQuillonRowKind::Word:
    case TQuillonRowKind::SmallInt:
    case TQuillonRowKind::LongInt:
    case TQuillonRowKind::Int64:
      ARow.As<TRow::TNumber>().Set(ATarget, ARow.As<TRow::TNumber>().Get(ASource));
      break;
    case TQuillonRowKind::Single:
    case TQuillonRowKind::Double:
    case TQuillonRowKind::DateTime:
    case TQuillonRowKind::Date:
    case TQuillonRowKind::Time:
      ARow.As<TRow::TFloat>().Set(ATarget, ARow.As<TRow::TFloat>().Get(ASource));
      break;
    case TQuillonRowKind::String: {
      std::string Scratch;
      ARow.As<TRow::TText>().Set(ATarget, ARow.As<TRow::TText>().Get(ASource, Scratch));
      break;
    }
    case TQuillonRowKind::Guid:
      ARow.As<TRow::TGuid>().Field(ATarget) = ARow.As<TRow::TGuid>().Field(Source);
      break;
    case TQuillonRowKind::IntegerArray:
      ARow.As<TRow::TIntegers>().Field(ATarget) = ARow.As<TRow::TIntegers>().Field(Source);
      break;
    case TQuillonRowKind::StringArray:
      ARow.As<TRow::TStrings>().Field(ATarget) = ARow.As<TRow::TStrings>().Field(Source);
      break;
    case TQuillonRowKind::Graphic:
      ARow.As<TRow::TPicture>().Field(ATarget) = ARow.As<TRow::TPicture>().Field(Source);
      break;
    case TQuillonRowKind::Object: {
      const TQuillonDataObject* const Part = ARow.As<TRow::TPointer>().Get(ASource);
      TQuillonDataObject* const Own = ARow.As<TRow::TPointer>().Get(ATarget);
      if (Part != nullptr && Own != nullptr) {
        Own->Assign(*Part);
      }
      break;
    }
    case TQuillonRowKind::Reference: {
      const auto& Pointer = ARow.As<TRow::TPointer>();
      auto* const Resolved = static_cast<TQuillonDataObject*>(ATarget.ResolveReference(nullptr, Pointer.Get(ASource)));
      Pointer.Set(ATarget, Resolved);
      break;
    }
    case TQuillonRowKind::List:
      ARow.As<TRow::TItems>().Field(ATarget).Assign(ARow.As<TRow::TItems>().Field(Source));
      break;
    case TQuillonRowKind::Hook:
      break;
  }
}

void AssignRows(TQuillonDataAbstractObject& ATarget, const TQuillonDataAbstractObject& ASource) {
  const TQuillonDataClass* Common = &ATarget.DataClass();
  while (Common != nullptr && !ASource.DataClass().DescendsFrom(*Common)) {
    Common = Common->Base();
  }
  if (Common == nullptr || Common == &TQuillonDataObject::Class() ||
      !Common->DescendsFrom(TQuillonDataObject::Class())) {
    throw EQuillonAssignError("Inhaltszweisung wird nicht unterstützt.");
  }
  if (&ATarget == &ASource) {
    return;
  }
  for (const TRow& Row : Common->Rows()) {
    if (!Row.IsStamp && !Row.IsRetired()) {
      AssignRow(Row, ATarget, ASource);
    }
  }
  ATarget.Change();
}

}  // namespace QuillonDataObjects
