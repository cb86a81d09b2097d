#include "QuillonDataObjects/XMLPullReader.h"

#include <algorithm>
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
  if (Table.Elements.empty()) {
    Table.NextOfName.assign(Rows.size(), Rows.size());
    std::vector<std::size_t> Last(Rows.size());
    for (std::size_t I = 0; I < Rows.size(); ++I) {
      const std::size_t First = Rows[I].FirstOfName;
      if (First != I) {
        Table.NextOfName[Last[First]] = I;
      }
      Last[First] = I;
    }
    Table.Elements.resize(Rows.size() + 1);
    Table.Items.resize(Rows.size());
    for (std::size_t I = 0; I < Rows.size(); ++I) {
      Table.IsPlain.push_back(Rows[I].FirstOfName == I && Table.NextOfName[I] == Rows.size() && !Rows[I].HasSince &&
                              !Rows[I].HasUntil);
    }
  }
  return Table;
}

void TQuillonDataObjectXMLPullReader::ReadRows(TQuillonDataAbstractObject& AnObject) {
  const TQuillonDataClass& Class = AnObject.DataClass();
  const std::span<const TRow> Rows = Class.Rows();
  TPlace Place{.Object = AnObject, .Release = Storage().FileRelease(), .Table = TableOf(Class)};
  while (FPull.NextChild((Place.Element = &Place.Table.Elements[Place.Next])->Tag)) {
    TGuess& Guess = *Place.Element;
    if (!FPull.IsAsGuessed()) {
      Guess.Row = Class.FindRow(FPull.Name(), Place.Next);
      RememberPlain(Guess);
    }
    if (Guess.Row == Rows.size()) {
      FPull.Leave();
    } else if (Place.Table.IsPlain[Guess.Row] && Guess.Row >= Place.Next) {
      ReadPlain(Place, Guess.Row);
    } else {
      ReadElement(Place, Guess.Row);
    }
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

/// Reads the element of a row, whose turn it is behind those ahead of it.
void TQuillonDataObjectXMLPullReader::ReadPlain(TPlace& APlace, std::size_t ARow) {
  PassRows(APlace, ARow);
  ReadValue(APlace, ARow);
  APlace.Next = ARow + 1;
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
  if (FindRead(APlace, APlace.Table.NextOfName[Found]) == Rows.size()) {
    ReadPlain(APlace, Found);
  } else {
    PassRows(APlace, Found);
    ReadHeld(APlace, Found);
    APlace.Next = Found + 1;
  }
}

/// Reads an element for a row and for those of its name that come later.
void TQuillonDataObjectXMLPullReader::ReadHeld(TPlace& APlace, std::size_t ARow) {
  const TRow& Row = APlace.Object.DataClass().Rows()[ARow];
  Demand(Row.Kind != TQuillonRowKind::Object && Row.Kind != TQuillonRowKind::List);
  APlace.Held.push_back({.FirstRow = Row.FirstOfName});
  THeld& Held = APlace.Held.back();
  if (Row.Kind == TQuillonRowKind::Reference) {
    Held.Referred = &ReadReference(Row.As<TRow::TPointer>().Class(), *APlace.Element);
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

void TQuillonDataObjectXMLPullReader::ReadValue(TPlace& APlace, std::size_t ARow) {
  const TRow& Row = APlace.Object.DataClass().Rows()[ARow];
  switch (Row.Kind) {
    case TQuillonRowKind::Object: {
      const auto& Access = Row.As<TRow::TPointer>();
      Access.Set(APlace.Object, &ReadObject(Access.Class(), *APlace.Element));
      break;
    }
    case TQuillonRowKind::Reference: {
      const auto& Access = Row.As<TRow::TPointer>();
      Access.Set(APlace.Object, &ReadReference(Access.Class(), *APlace.Element));
      break;
    }
    case TQuillonRowKind::List:
      ReadList(APlace, ARow);
      break;
    default:
      QuillonXMLValues::Read(APlace.Object, Row, FPull.ReadText());
  }
}

void TQuillonDataObjectXMLPullReader::ReadList(TPlace& APlace, std::size_t ARow) {
  const TRow& Row = APlace.Object.DataClass().Rows()[ARow];
  TQuillonDataList& List = Row.As<TRow::TItems>().Field(APlace.Object);
  if (!Row.Merged && !List.IsEmpty()) {
    List.Clear();
  }
  TGuess& Items = APlace.Table.Items[ARow];
  bool HasItems = false;
  for (std::size_t Child = 0;; ++Child) {
    TGuess& Guess = FListElements[std::min(Child, FListElements.size() - 1)];
    if (!FPull.NextChild(Guess.Tag)) {
      break;
    }
    if (!FPull.IsAsGuessed()) {
      RememberPlain(Guess);
    }
    if (FPull.Name() != "Items") {
      FPull.Leave();
      continue;
    }
    Demand(!HasItems);
    HasItems = true;
    if (Row.Merged) {
      MergeItems(List, Items);
    } else if (List.IsItemOwner()) {
      ReadItems(List, Items);
    } else {
      ReadReferences(List, Items);
    }
  }
  Demand(HasItems);
  List.TakeStamps(APlace.Object);
}

/// Remembers the tag of an element without attributes.
void TQuillonDataObjectXMLPullReader::RememberPlain(TGuess& AGuess) const {
  AGuess.Class = nullptr;
  AGuess.Referred = nullptr;
  if (FPull.AttributeCount() == 0) {
    FPull.Remember(AGuess.Tag);
  } else {
    AGuess.Tag.Head.clear();
  }
}

bool TQuillonDataObjectXMLPullReader::NextItem(TGuess& AGuess) {
  while (FPull.NextChild(AGuess.Tag)) {
    if (FPull.Name() == "Item") {
      return true;
    }
    FPull.Leave();
  }
  return false;
}

void TQuillonDataObjectXMLPullReader::ReadItems(TQuillonDataList& AList, TGuess& AGuess) {
  const TQuillonDataClass& ItemClass = AList.ItemClass();
  while (NextItem(AGuess)) {
    AList.Append(&ReadObject(ItemClass, AGuess));
  }
}

/// All items are looked up in one go: one after the other, each would wait for the memory of its own.
void TQuillonDataObjectXMLPullReader::ReadReferences(TQuillonDataList& AList, TGuess& AGuess) {
  const TQuillonDataClass& ItemClass = AList.ItemClass();
  FItems.clear();
  while (NextItem(AGuess)) {
    FItems.push_back(ReadReferred(ItemClass, AGuess));
  }
  for (const TNamed& Item : FItems) {
    AList.Append(&Find(ItemClass, Item, AGuess));
  }
}

/// Reads items that join those that are there.
void TQuillonDataObjectXMLPullReader::MergeItems(TQuillonDataList& AList, TGuess& AGuess) {
  const TQuillonDataClass& ItemClass = AList.ItemClass();
  std::set<TGUID> Present;
  for (const TQuillonDataObject* Item : AList.Items()) {
    Present.insert(Item->ID());
  }
  while (NextItem(AGuess)) {
    TQuillonDataObject& Object = AList.IsItemOwner() ? ReadObject(ItemClass, AGuess) : ReadReference(ItemClass, AGuess);
    if (Present.insert(Object.ID()).second) {
      AList.Append(&Object);
    }
  }
}

/// Of the element that was entered last. One that names its class and then its identity is remembered.
TQuillonDataObjectXMLPullReader::TNamed TQuillonDataObjectXMLPullReader::ReadNamed(const TQuillonDataClass& ABase,
                                                                                   TGuess& AGuess) const {
  if (!FPull.IsAsGuessed()) {
    const std::string_view Tag = FPull.Attribute("Class");
    const std::string_view ID = FPull.Attribute("ID");
    Demand(FPull.AttributeCount() == 2 && Tag.data() != nullptr && ID.data() == FPull.LastValue().data());
    const bool IsBase = !ABase.IsAbstract() && ABase.Tag() == Tag;
    AGuess.Class = IsBase ? &ABase : TQuillonDataClassRegistry::Instance().FindClass(Tag, ABase);
    FPull.Remember(AGuess.Tag);
  }
  const auto Guid = QuillonGuid::TryParse(FPull.LastValue());
  Demand(AGuess.Class != nullptr && Guid.has_value());
  return {.Class = *AGuess.Class, .ID = *Guid};
}

/// Reads an element of a reference. The object that is meant is often the one of last time: named by the document, it
/// stays as long as that is read.
TQuillonDataObjectXMLPullReader::TNamed TQuillonDataObjectXMLPullReader::ReadReferred(const TQuillonDataClass& ABase,
                                                                                      TGuess& AGuess) {
  TNamed Named = ReadNamed(ABase, AGuess);
  FPull.Leave();
  if (AGuess.Referred != nullptr && AGuess.ID == Named.ID) {
    Named.Known = AGuess.Referred;
  } else {
    Storage().Registry().Prefetch(Named.ID);
  }
  return Named;
}

TQuillonDataObject& TQuillonDataObjectXMLPullReader::Find(const TQuillonDataClass& ABase, const TNamed& ANamed,
                                                          TGuess& AGuess) const {
  TQuillonDataObject* const Known = ANamed.Known != nullptr ? ANamed.Known : FindKnown(ABase, ANamed.ID);
  AGuess.ID = ANamed.ID;
  AGuess.Referred = Known != nullptr ? Known : &Create(ANamed.Class, ANamed.ID);
  return *AGuess.Referred;
}

TQuillonDataObject& TQuillonDataObjectXMLPullReader::ReadReference(const TQuillonDataClass& ABase, TGuess& AGuess) {
  const TNamed Named = ReadReferred(ABase, AGuess);
  return Find(ABase, Named, AGuess);
}

TQuillonDataObject& TQuillonDataObjectXMLPullReader::ReadObject(const TQuillonDataClass& ABase, TGuess& AGuess) {
  const TNamed Named = ReadNamed(ABase, AGuess);
  TQuillonDataObject& Object = Find(ABase, Named, AGuess);
  ReadContent(Object, TFailed::Freed);
  return Object;
}
