#include "QuillonDataObjects/Sweep.h"

#include <unordered_map>
#include <utility>
#include <vector>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Storage.h"

namespace {

using TRow = TQuillonDataRow;
using TObject = TQuillonDataAbstractObject;

/// True for rows of the object that can refer to an object of the class.
bool CanReferTo(TObject& AnObject, const TRow& ARow, const TQuillonDataClass& AClass) {
  switch (ARow.Kind) {
    case TQuillonRowKind::Reference:
      return AClass.DescendsFrom(ARow.As<TRow::TPointer>().Class());
    case TQuillonRowKind::List: {
      const TQuillonDataList& List = ARow.As<TRow::TItems>().Field(AnObject);
      return !List.IsItemOwner() && AClass.DescendsFrom(List.ItemClass());
    }
    default:
      return false;
  }
}

/// The rows of each class that can refer to objects of one class, sought when the first object of it comes.
class TReferringRows {
 public:
  explicit TReferringRows(const TQuillonDataClass& AClass) : FClass(AClass) {}

  const std::vector<const TRow*>& Of(TObject& AnObject) {
    const auto [Found, IsNew] = FRows.try_emplace(&AnObject.DataClass());
    if (IsNew) {
      for (const TRow& Row : AnObject.DataClass().Rows()) {
        if (CanReferTo(AnObject, Row, FClass)) {
          Found->second.push_back(&Row);
        }
      }
    }
    return Found->second;
  }

 private:
  const TQuillonDataClass& FClass;
  std::unordered_map<const TQuillonDataClass*, std::vector<const TRow*>> FRows;
};

/// True if the object has lost an essential reference.
bool ClearRow(TObject& AnObject, const TRow& ARow, const TQuillonDataObject& AReferred) {
  if (ARow.Kind == TQuillonRowKind::List) {
    ARow.As<TRow::TItems>().Field(AnObject).RemoveObject(&AReferred);
    return false;
  }
  const auto& Access = ARow.As<TRow::TPointer>();
  if (Access.Get(AnObject) != &AReferred) {
    return false;
  }
  Access.Set(AnObject, nullptr);
  AnObject.Change();
  return ARow.Essential;
}

}  // namespace

void QuillonDataObjects::ClearReferences(TQuillonDataStorage& AStorage, const TQuillonDataObject& AnObject) {
  TReferringRows Rows(AnObject.DataClass());
  std::vector<std::pair<TGUID, const TQuillonDataClass*>> Senseless;
  std::vector<TObject*> Objects = AStorage.Registry().Objects();
  Objects.push_back(&AStorage);
  for (TObject* Object : Objects) {
    for (const TRow* Row : Rows.Of(*Object)) {
      if (ClearRow(*Object, *Row, AnObject)) {
        Senseless.emplace_back(Object->ID(), &Object->DataClass());
      }
    }
  }
  // By identity: one that goes may take another with it.
  for (const auto& [ID, Class] : Senseless) {
    auto* const Object = static_cast<TQuillonDataObject*>(AStorage.Registry().GetObject(ID, *Class));
    if (TQuillonDataList* const List = Object == nullptr ? nullptr : Object->FOwner->AsList()) {
      List->RemoveObject(Object);
    }
  }
}
