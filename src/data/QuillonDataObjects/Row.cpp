#include "QuillonDataObjects/Row.h"

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
                   if (!ARow.Merged) {
                     AnAccess.Field(AnObject).Clear();
                   }
                 },
                 [](const TRow::TStep&) {},
                 [](std::monostate) {},
             },
             ARow.Access);
}

bool HoldsDefault(TObject& AnObject, const TRow& ARow) {
  return std::visit(TQuillonCases{
                        [&](const TRow::TNumber& AnAccess) { return AnAccess.Get(AnObject) == ARow.DefaultNumber; },
                        [&](const TRow::TFloat& AnAccess) { return AnAccess.Get(AnObject) == ARow.DefaultFloat; },
                        [&](const TRow::TText& AnAccess) {
                          std::string Scratch;
                          return AnAccess.Get(AnObject, Scratch) == ARow.DefaultText;
                        },
                        [&](const TRow::TGuid&) { return false; },
                        [&](const TRow::TIntegers& AnAccess) { return AnAccess.Field(AnObject).empty(); },
                        [&](const TRow::TStrings& AnAccess) { return AnAccess.Field(AnObject).empty(); },
                        [&](const TRow::TPicture& AnAccess) { return AnAccess.Field(AnObject).Image.empty(); },
                        [&](const TRow::TPointer& AnAccess) { return AnAccess.Get(AnObject) == nullptr; },
                        [&](const TRow::TItems& AnAccess) { return AnAccess.Field(AnObject).IsEmpty(); },
                        [](const TRow::TStep&) { return true; },
                        [](std::monostate) { return true; },
                    },
                    ARow.Access);
}

void AssignRow(const TRow& ARow, TObject& ATarget, const TObject& ASource) {
  // The accessors of fields hand out what may be changed; the source is only looked at.
  auto& Source = const_cast<TObject&>(ASource);
  std::visit(TQuillonCases{
                 [&](const TRow::TNumber& AnAccess) { AnAccess.Set(ATarget, AnAccess.Get(ASource)); },
                 [&](const TRow::TFloat& AnAccess) { AnAccess.Set(ATarget, AnAccess.Get(ASource)); },
                 [&](const TRow::TText& AnAccess) {
                   std::string Scratch;
                   AnAccess.Set(ATarget, AnAccess.Get(ASource, Scratch));
                 },
                 [&](const TRow::TGuid& AnAccess) { AnAccess.Field(ATarget) = AnAccess.Field(Source); },
                 [&](const TRow::TIntegers& AnAccess) { AnAccess.Field(ATarget) = AnAccess.Field(Source); },
                 [&](const TRow::TStrings& AnAccess) { AnAccess.Field(ATarget) = AnAccess.Field(Source); },
                 [&](const TRow::TPicture& AnAccess) { AnAccess.Field(ATarget) = AnAccess.Field(Source); },
                 [&](const TRow::TPointer& AnAccess) {
                   TQuillonDataObject* const Value = AnAccess.Get(ASource);
                   if (ARow.Kind == TQuillonRowKind::Reference) {
                     AnAccess.Set(ATarget, static_cast<TQuillonDataObject*>(ATarget.ResolveReference(nullptr, Value)));
                   } else if (TQuillonDataObject* const Own = AnAccess.Get(ATarget);
                              Own != nullptr && Value != nullptr) {
                     Own->Assign(*Value);
                   }
                 },
                 [&](const TRow::TItems& AnAccess) { AnAccess.Field(ATarget).Assign(AnAccess.Field(Source)); },
                 [](const TRow::TStep&) {},
                 [](std::monostate) {},
             },
             ARow.Access);
}

}  // namespace QuillonDataObjects
