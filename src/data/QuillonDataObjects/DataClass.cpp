#include "QuillonDataObjects/DataClass.h"

#include <algorithm>
#include <cassert>
#include <cstring>

#include "QuillonDataObjects/Storage.h"

using TRow = TQuillonDataRow;

TQuillonDataClass::TQuillonDataClass(std::string_view ATag, std::string_view ADisplayFormat,
                                     const TQuillonDataClass* ABase, TFactory AFactory)
    : FTag(ATag), FDisplayFormat(ADisplayFormat), FBase(ABase), FFactory(AFactory) {
  if (ABase != nullptr) {
    FRows = ABase->FRows;
    FLists = ABase->FLists;
    FInitials = ABase->FInitials;
  }
}

void TQuillonDataClass::AddRow(TQuillonDataRow ARow) {
  std::size_t First = 0;
  while (First < FRows.size() && (FRows[First].Name != ARow.Name || ARow.Kind == TQuillonRowKind::Hook)) {
    ++First;
  }
  ARow.FirstOfName = First;
  FRows.push_back(ARow);
  // Rows that are retired name a list that has its own row.
  if (ARow.Kind == TQuillonRowKind::List && std::ranges::find(FLists, ARow.As<TRow::TItems>().Field) == FLists.end()) {
    FLists.push_back(ARow.As<TRow::TItems>().Field);
  }
  FInitials.push_back(ARow.Name.empty() ? '\0' : ARow.Name.front());
}

std::size_t TQuillonDataClass::FindRow(std::string_view AName, std::size_t AFrom) const {
  const auto Seek = [&](std::size_t APlace, std::size_t AnEnd) {
    for (; APlace < AnEnd; ++APlace) {
      const void* const Candidate = std::memchr(FInitials.data() + APlace, AName.front(), AnEnd - APlace);
      if (Candidate == nullptr) {
        return FRows.size();
      }
      APlace = static_cast<std::size_t>(static_cast<const char*>(Candidate) - FInitials.data());
      if (FRows[APlace].Name == AName) {
        return APlace;
      }
    }
    return FRows.size();
  };
  const std::size_t Found = Seek(AFrom, FRows.size());
  return Found < FRows.size() ? Found : Seek(0, AFrom);
}

std::string TQuillonDataClass::DisplayText(std::string_view AnArgument) const {
  constexpr std::string_view Placeholder = "%s";
  std::string Text(FDisplayFormat);
  if (const std::size_t Place = Text.find(Placeholder); Place != std::string::npos) {
    Text.replace(Place, Placeholder.size(), AnArgument);
  }
  return Text;
}

TQuillonDataAbstractObject* TQuillonDataClass::CreateAny(TQuillonDataAbstractObject* AnOwner, const TGUID& AnID) const {
  assert(FFactory != nullptr);
  return Begin(FFactory(), AnOwner, AnID);
}

TQuillonDataAbstractObject* TQuillonDataClass::Begin(TQuillonDataAbstractObject* AnObject,
                                                     TQuillonDataAbstractObject* AnOwner, const TGUID& AnID) {
  TQuillonDataHandle<TQuillonDataAbstractObject> Object(AnObject);
  try {
    Object->AfterConstruction(AnOwner, AnID);
  } catch (...) {
    // Nobody has heard of it.
    TQuillonDataStorage* const Store = Object->Storage();
    const TQuillonDataChangeLogLock Lock(Store != nullptr ? &Store->ChangeLog() : nullptr);
    Object.reset();
    throw;
  }
  return Object.release();
}

TQuillonDataObject* TQuillonDataClass::Create(TQuillonDataAbstractObject* AnOwner, const TGUID& AnID) const {
  assert(DescendsFrom(TQuillonDataObject::Class()));
  return static_cast<TQuillonDataObject*>(CreateAny(AnOwner, AnID));
}

namespace QuillonDataObjects {

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
