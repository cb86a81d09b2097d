#include "QuillonDataObjects/XMLPullReader.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Storage.h"
#include "QuillonDataObjects/XMLValues.h"

namespace {

using TRow = TQuillonDataRow;

void Demand(bool ACondition) {
  if (!ACondition) {
    throw TQuillonXMLUnusual();
  }
}

}  // namespace

TQuillonDataObjectXMLPullReader::TQuillonDataObjectXMLPullReader(TQuillonDataStorage& AStorage, TQuillonStream& AStream)
    : TQuillonDataObjectReader(AStorage), FPull(AStream, "Storage") {}

TQuillonDataObjectXMLPullReader::TTable& TQuillonDataObjectXMLPullReader::TableOf(const TQuillonDataClass& AClass) {
  TTable& Table = FTables[&AClass];
  const std::span<const TRow> Rows = AClass.Rows();
  if (Table.Guesses.empty()) {
    Table.NextOfName.assign(Rows.size(), Rows.size());
    std::vector<std::size_t> Last(Rows.size());
    for (std::size_t I = 0; I < Rows.size(); ++I) {
      const std::size_t First = Rows[I].FirstOfName;
      if (First != I) {
        Table.NextOfName[Last[First]] = I;
      }
      Last[First] = I;
    }
    Table.Guesses.assign(Rows.size() + 1, 0);
  }
  return Table;
}

void TQuillonDataObjectXMLPullReader::ReadRows(TQuillonDataAbstractObject& AnObject) {
  const TQuillonDataClass& Class = AnObject.DataClass();
  const std::span<const TRow> Rows = Class.Rows();
  TPlace Place{.Object = AnObject, .Release = Storage().FileRelease(), .Table = TableOf(Class)};
  for (;;) {
    std::size_t& Guess = Place.Table.Guesses[Place.Next];
    if (!FPull.NextChild(Rows[Guess].Name)) {
      break;
    }
    if (!FPull.IsAsGuessed()) {
      const std::size_t Found = Class.FindRow(FPull.Name(), Place.Next);
      if (Found == Rows.size()) {
        FPull.Leave();
        continue;
      }
      Guess = Found;
    }
    ReadElement(Place, Guess);
  }
  PassRows(Place, Rows.size());
}

const TQuillonDataObjectXMLPullReader::THeld* TQuillonDataObjectXMLPullReader::TPlace::FindHeld(
    std::size_t AFirstRow) const {
  const auto Found = std::ranges::find(Held, AFirstRow, &THeld::FirstRow);
  return Found != Held.end() ? &*Found : nullptr;
}

/// The first row from this one on, of those with its name, that files of the release have; the number of rows for none.
std::size_t TQuillonDataObjectXMLPullReader::FindRead(const TPlace& APlace, std::size_t ARow) {
  const std::span<const TRow> Rows = APlace.Object.DataClass().Rows();
  while (ARow < Rows.size() && !Rows[ARow].IsReadFrom(APlace.Release)) {
    ARow = APlace.Table.NextOfName[ARow];
  }
  return ARow;
}

void TQuillonDataObjectXMLPullReader::ReadElement(TPlace& APlace, std::size_t AFound) {
  const std::span<const TRow> Rows = APlace.Object.DataClass().Rows();
  const std::size_t First = Rows[AFound].FirstOfName;
  const std::size_t Found = FindRead(APlace, First);
  if (Found == Rows.size() || APlace.FindHeld(First) != nullptr) {
    FPull.Leave();
    return;
  }
  Demand(First >= APlace.Next);
  PassRows(APlace, Found);
  if (const std::size_t Second = APlace.Table.NextOfName[Found]; FindRead(APlace, Second) < Rows.size()) {
    ReadHeld(APlace, Found);
  } else {
    ReadValue(APlace.Object, Rows[Found]);
  }
  APlace.Next = Found + 1;
}

/// Reads an element for a row and for those of its name that come later.
void TQuillonDataObjectXMLPullReader::ReadHeld(TPlace& APlace, std::size_t ARow) {
  const TRow& Row = APlace.Object.DataClass().Rows()[ARow];
  Demand(Row.Kind != TQuillonRowKind::Object && Row.Kind != TQuillonRowKind::List);
  THeld& Held = APlace.Held.emplace_back(Row.FirstOfName);
  if (Row.Kind == TQuillonRowKind::Reference) {
    Held.Referred = &FindReferred(Row.As<TRow::TPointer>().Class());
    FPull.Leave();
  } else {
    Held.Text = FPull.ReadText();
  }
  PassRow(APlace, ARow);
}

/// Gives the rows up to AnEnd their turn.
void TQuillonDataObjectXMLPullReader::PassRows(TPlace& APlace, std::size_t AnEnd) {
  for (; APlace.Next < AnEnd; ++APlace.Next) {
    PassRow(APlace, APlace.Next);
  }
}

/// Gives a row its turn that has no element of its own.
void TQuillonDataObjectXMLPullReader::PassRow(const TPlace& APlace, std::size_t ARow) {
  const TRow& Row = APlace.Object.DataClass().Rows()[ARow];
  if (Row.Kind == TQuillonRowKind::Hook) {
    Row.As<TRow::TStep>().Run(APlace.Object);
    return;
  }
  const bool IsRead = Row.IsReadFrom(APlace.Release);
  const THeld* const Held = IsRead && !APlace.Held.empty() ? APlace.FindHeld(Row.FirstOfName) : nullptr;
  if (Held == nullptr) {
    Demand(!IsRead || !Row.Required);
    if (!Row.KeepsCurrent && (IsRead || !Row.IsRetired())) {
      QuillonDataObjects::ResetRow(APlace.Object, Row);
    }
  } else if (Row.Kind == TQuillonRowKind::Reference) {
    Demand(Held->Referred != nullptr && Held->Referred->DataClass().DescendsFrom(Row.As<TRow::TPointer>().Class()));
    Row.As<TRow::TPointer>().Set(APlace.Object, Held->Referred);
  } else {
    Demand(Held->Referred == nullptr && Row.Kind != TQuillonRowKind::Object && Row.Kind != TQuillonRowKind::List);
    QuillonXMLValues::Read(APlace.Object, Row, Held->Text);
  }
}

void TQuillonDataObjectXMLPullReader::ReadValue(TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
  switch (ARow.Kind) {
    case TQuillonRowKind::Object:
      ARow.As<TRow::TPointer>().Set(AnObject, &ReadObject(ARow.As<TRow::TPointer>().Class()));
      break;
    case TQuillonRowKind::Reference: {
      TQuillonDataObject& Referred = FindReferred(ARow.As<TRow::TPointer>().Class());
      FPull.Leave();
      ARow.As<TRow::TPointer>().Set(AnObject, &Referred);
      break;
    }
    case TQuillonRowKind::List:
      ReadList(AnObject, ARow);
      break;
    default:
      QuillonXMLValues::Read(AnObject, ARow, FPull.ReadText());
  }
}

void TQuillonDataObjectXMLPullReader::ReadList(TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
  TQuillonDataList& List = ARow.As<TRow::TItems>().Field(AnObject);
  if (!ARow.Merged && !List.IsEmpty()) {
    List.Clear();
  }
  bool HasItems = false;
  while (FPull.NextChild("Items")) {
    if (FPull.IsAsGuessed()) {
      Demand(!HasItems);
      HasItems = true;
      ReadItems(List, ARow.Merged);
    } else {
      FPull.Leave();
    }
  }
  Demand(HasItems);
  List.TakeStamps(AnObject);
}

void TQuillonDataObjectXMLPullReader::ReadItems(TQuillonDataList& AList, bool AnIsMerged) {
  std::set<TGUID> Present;
  if (AnIsMerged) {
    std::ranges::transform(AList.Items(), std::inserter(Present, Present.end()),
                           [](const TQuillonDataObject* AnItem) { return AnItem->ID(); });
  }
  const TQuillonDataClass& ItemClass = AList.ItemClass();
  while (FPull.NextChild("Item")) {
    if (!FPull.IsAsGuessed()) {
      FPull.Leave();
      continue;
    }
    TQuillonDataObject& Object = AList.IsItemOwner() ? ReadObject(ItemClass) : FindReferred(ItemClass);
    if (!AList.IsItemOwner()) {
      FPull.Leave();
    }
    if (!AnIsMerged || Present.insert(Object.ID()).second) {
      AList.Append(&Object);
    }
  }
}

TGUID TQuillonDataObjectXMLPullReader::ReadID() const {
  const auto Guid = QuillonGuid::TryParse(FPull.Attribute("ID"));
  Demand(Guid.has_value());
  return *Guid;
}

const TQuillonDataClass& TQuillonDataObjectXMLPullReader::ClassOf(const TQuillonDataClass& ABase) {
  const std::string_view Tag = FPull.Attribute("Class");
  if (!ABase.IsAbstract() && ABase.Tag() == Tag) {
    return ABase;
  }
  const TQuillonDataClass* const Class = TQuillonDataClassRegistry::Instance().FindClass(Tag, ABase);
  Demand(Class != nullptr);
  return *Class;
}

TQuillonDataObject& TQuillonDataObjectXMLPullReader::FindReferred(const TQuillonDataClass& ABase) {
  Demand(FPull.Attribute("Class").data() != nullptr);
  const TGUID ID = ReadID();
  TQuillonDataObject* const Known = FindKnown(ABase, ID);
  return Known != nullptr ? *Known : Create(ClassOf(ABase), ID);
}

TQuillonDataObject& TQuillonDataObjectXMLPullReader::ReadObject(const TQuillonDataClass& ABase) {
  TQuillonDataObject& Object = FindReferred(ABase);
  ReadContent(Object, TFailed::Freed);
  return Object;
}
