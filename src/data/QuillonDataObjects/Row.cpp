#include "QuillonDataObjects/Row.h"

#include "QuillonDataObjects/DataClass.h"

namespace {

using TRow = TQuillonDataRow;
using TObject = TQuillonDataAbstractObject;

}  // namespace

namespace QuillonDataObjects {

void ResetRow(TObject& AnObject, const TRow& ARow) {
  std::visit(TQuillonCases{
                 [&](const TRow::TNumber& AnAccess) { AnAccess.Set(AnObject, ARow.DefaultNumber); },
                 [&](const TRow::TFloat& AnAccess) { AnAccess.Set(AnObject, ARow.DefaultFloat); },
                 [&](const TRow::TText& AnAccess) { AnAccess.Set(AnObject, ARow.DefaultText); },
                 [&](const TRow::TGuid& AnAccess) { AnAccess.Field(AnObject) = TGUID{}; },
                 [&](const TRow::TIntegers& AnAccess) { AnAccess.Field(AnObject).clear(); },
                 [&](const TRow::TStrings& AnAccess) { AnAccess.Field(AnObject).clear(); },
                 [&](const TRow::TPicture& AnAccess) { AnAccess.Field(AnObject).Image.clear(); },
                 [&](const TRow::TPointer& AnAccess) {
                   if (ARow.Kind == TQuillonRowKind::Reference) {
                     AnAccess.Set(AnObject, nullptr);
                   }
                 },
                 [&](const TRow::TItems& AnAccess) {
                   TQuillonDataList& List = AnAccess.Field(AnObject);
                   if (!ARow.Merged) {
                     if (!List.IsEmpty()) {
                       List.Clear();
                     }
                     List.ResetStamps();
                   }
                 },
                 [](const TRow::TStep&) {},
                 [](std::monostate) {},
             },
             ARow.Access);
}

void ResetRows(TObject& AnObject) {
  for (const TRow& Row : AnObject.DataClass().Rows()) {
    if (!Row.IsStamp) {
      ResetRow(AnObject, Row);
    }
  }
}

bool HoldsDefault(const TObject& AnObject, const TRow& ARow) {
  return std::visit(TQuillonCases{
                        [&](const TRow::TNumber& AnAccess) { return AnAccess.Get(AnObject) == ARow.DefaultNumber; },
                        [&](const TRow::TFloat& AnAccess) { return AnAccess.Get(AnObject) == ARow.DefaultFloat; },
                        [&](const TRow::TText& AnAccess) {
                          std::string Scratch;
                          return AnAccess.Get(AnObject, Scratch) == ARow.DefaultText;
                        },
                        [&](const TRow::TGuid&) { return false; },
                        [&](const TRow::TIntegers& AnAccess) { return AnAccess.Get(AnObject).empty(); },
                        [&](const TRow::TStrings& AnAccess) { return AnAccess.Get(AnObject).empty(); },
                        [&](const TRow::TPicture& AnAccess) { return AnAccess.Get(AnObject).Image.empty(); },
                        [&](const TRow::TPointer& AnAccess) { return AnAccess.Get(AnObject) == nullptr; },
                        [&](const TRow::TItems& AnAccess) { return AnAccess.Get(AnObject).IsEmpty(); },
                        [](const TRow::TStep&) { return true; },
                        [](std::monostate) { return true; },
                    },
                    ARow.Access);
}

void AssignRow(const TRow& ARow, TObject& ATarget, const TObject& ASource) {
  std::visit(TQuillonCases{
                 [&](const TRow::TNumber& AnAccess) { AnAccess.Set(ATarget, AnAccess.Get(ASource)); },
                 [&](const TRow::TFloat& AnAccess) { AnAccess.Set(ATarget, AnAccess.Get(ASource)); },
                 [&](const TRow::TText& AnAccess) {
                   std::string Scratch;
                   AnAccess.Set(ATarget, AnAccess.Get(ASource, Scratch));
                 },
                 [&](const TRow::TGuid& AnAccess) { AnAccess.Field(ATarget) = AnAccess.Get(ASource); },
                 [&](const TRow::TIntegers& AnAccess) { AnAccess.Field(ATarget) = AnAccess.Get(ASource); },
                 [&](const TRow::TStrings& AnAccess) { AnAccess.Field(ATarget) = AnAccess.Get(ASource); },
                 [&](const TRow::TPicture& AnAccess) { AnAccess.Field(ATarget) = AnAccess.Get(ASource); },
                 [&](const TRow::TPointer& AnAccess) {
                   TQuillonDataObject* const Value = AnAccess.Get(ASource);
                   if (ARow.Kind == TQuillonRowKind::Reference) {
                     AnAccess.Set(ATarget, static_cast<TQuillonDataObject*>(ATarget.ResolveReference(nullptr, Value)));
                   } else if (TQuillonDataObject* const Own = AnAccess.Get(ATarget);
                              Own != nullptr && Value != nullptr) {
                     Own->Assign(*Value);
                   }
                 },
                 [&](const TRow::TItems& AnAccess) { AnAccess.Field(ATarget).Assign(AnAccess.Get(ASource)); },
                 [](const TRow::TStep&) {},
                 [](std::monostate) {},
             },
             ARow.Access);
}

}  // namespace QuillonDataObjects
