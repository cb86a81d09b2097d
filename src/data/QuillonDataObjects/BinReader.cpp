#include "QuillonDataObjects/BinReader.h"

#include <array>
#include <charconv>
#include <cmath>
#include <unordered_set>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Storage.h"
#include "QuillonDateTimeCalendar.h"
#include "QuillonText.h"

namespace {

using TRow = TQuillonDataRow;

[[noreturn]] void ThrowValue(const TRow& ARow) {
  throw EQuillonDataObjectReaderError("Der Wert von " + QuillonText::Quoted(ARow.Name) + " ist ungültig.");
}

/// The number whose shortest text is that of the narrower one: 0.1 stays 0.1 on its way through a stream.
double FromSingle(float AValue) {
  constexpr float Scale = 1024;
  constexpr float Largest = 8192;
  if (std::abs(AValue) < Largest && std::trunc(AValue * Scale) == AValue * Scale) {
    return AValue;  // the same text in both
  }
  std::array<char, 32> Text{};
  const char* const End = std::to_chars(Text.data(), Text.data() + Text.size(), AValue).ptr;
  double Value = 0;
  std::from_chars(Text.data(), End, Value);
  return Value;
}

/// Puts items at the end of a list that does not hold them.
class TAppender {
 public:
  explicit TAppender(TQuillonDataList& AList) : FList(AList) {}

  void Append(TQuillonDataObject& AnItem) {
    if (IsNew(AnItem)) {
      FList.Append(&AnItem);
    }
  }

 private:
  bool IsNew(const TQuillonDataObject& AnItem) {
    constexpr int Few = 16;
    if (FList.IsItemOwner()) {
      return !TQuillonDataHolder::IsHeldBy(AnItem, FList);
    }
    if (FList.Count() < Few) {
      return !FList.Holds(&AnItem);
    }
    if (FPresent.empty()) {
      FPresent.insert(FList.Items().begin(), FList.Items().end());
    }
    return FPresent.insert(&AnItem).second;
  }

  TQuillonDataList& FList;
  std::unordered_set<const TQuillonDataObject*> FPresent;
};

}  // namespace

TQuillonDataObjectBinReader::TQuillonDataObjectBinReader(TQuillonDataStorage& AStorage, TQuillonStream& AStream,
                                                         bool DoRecursive, TQuillonDataObjectReaderMode AMode)
    : TQuillonDataObjectReader(AStorage),
      FReader(AStream, QuillonStreams::PieceSize),
      FIsRecursive(DoRecursive),
      FMode(AMode) {}

std::int32_t TQuillonDataObjectBinReader::ReadCount() {
  const std::int32_t Count = FReader.ReadLongInt();
  if (Count < 0) {
    throw EQuillonReaderError();
  }
  return Count;
}

const TQuillonDataClass* TQuillonDataObjectBinReader::ReadClass(const TQuillonDataClass& ABase) {
  FReader.ReadStringInto(FScratch);
  const bool IsBase = !ABase.IsAbstract() && ABase.Tag() == FScratch;
  return IsBase ? &ABase : TQuillonDataClassRegistry::Instance().FindClass(FScratch, ABase);
}

TQuillonDataObject* TQuillonDataObjectBinReader::ReadReference(const TQuillonDataClass& ABase) {
  if (!FReader.ReadBoolean()) {
    return nullptr;
  }
  const TQuillonDataClass* const Class = ReadClass(ABase);
  const TGUID ID = FReader.ReadGuid();
  if (TQuillonDataObject* const Known = FindKnown(ABase, ID)) {
    return Known;
  }
  if (Class == nullptr) {
    throw EQuillonDataObjectReaderError("Klasse " + QuillonText::Quoted(FScratch) + " ist hier nicht erlaubt.");
  }
  return &Create(*Class, ID);
}

TQuillonDataObject* TQuillonDataObjectBinReader::ReadObject(const TQuillonDataClass& ABase,
                                                            TQuillonDataObject* ADefault) {
  TQuillonDataObject* const Object = ReadReference(ABase);
  if (Object == nullptr) {
    return ADefault;
  }
  ReadContent(*Object, TFailed::LeftToStorage);
  return Object;
}

void TQuillonDataObjectBinReader::ReadList(TQuillonDataList& AList) {
  if (FMode == dormSubstitute && !AList.IsEmpty()) {
    AList.FreeItems();
  }
  AList.ReadProperties(*this);
  const TQuillonDataClass& ItemClass = AList.ItemClass();
  TAppender Appender(AList);
  for (std::int32_t Left = ReadCount(); Left > 0; --Left) {
    TQuillonDataObject* const Item = AList.IsItemOwner() ? ReadObject(ItemClass, nullptr) : ReadReference(ItemClass);
    if (Item != nullptr) {
      Appender.Append(*Item);
    }
  }
}

void TQuillonDataObjectBinReader::MergeList(TQuillonDataList& AList) {
  TQuillonDataList Stamps;
  Stamps.ReadProperties(*this);
  TAppender Appender(AList);
  for (std::int32_t Left = ReadCount(); Left > 0; --Left) {
    if (TQuillonDataObject* const Item = ReadReference(AList.ItemClass())) {
      Appender.Append(*Item);
    }
  }
}

void TQuillonDataObjectBinReader::ReadItems(TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
  TQuillonDataList& List = ARow.As<TRow::TItems>().Field(AnObject);
  const TGUID ID = FReader.ReadGuid();
  if (!ARow.Merged) {
    List.SetID(ID);
  }
  if (!FIsRecursive) {
    return;
  }
  if (ARow.Merged) {
    MergeList(List);
  } else {
    ReadList(List);
  }
}

std::int64_t TQuillonDataObjectBinReader::ReadNumber(const TRow& ARow) {
  switch (ARow.Kind) {
    case TQuillonRowKind::Boolean:
      return FReader.ReadBoolean() ? 1 : 0;
    case TQuillonRowKind::Byte:
      return FReader.ReadByte();
    case TQuillonRowKind::ShortInt:
      return FReader.ReadShortInt();
    case TQuillonRowKind::Word:
      return FReader.ReadWord();
    case TQuillonRowKind::SmallInt:
      return FReader.ReadSmallInt();
    case TQuillonRowKind::LongInt:
      return FReader.ReadLongInt();
    default:
      return FReader.ReadInt64();
  }
}

double TQuillonDataObjectBinReader::ReadFloat(const TRow& ARow) {
  const double Value = ARow.Kind == TQuillonRowKind::Single ? FromSingle(FReader.ReadSingle()) : FReader.ReadDouble();
  const bool IsPlain = ARow.Kind == TQuillonRowKind::Single || ARow.Kind == TQuillonRowKind::Double;
  const bool IsDay = Value > static_cast<double>(QuillonDateTimeCalendar::FirstDay - 1) &&
                     Value < static_cast<double>(QuillonDateTimeCalendar::LastDay + 1);
  if (IsPlain ? !std::isfinite(Value) : !IsDay) {
    ThrowValue(ARow);
  }
  return Value;
}

void TQuillonDataObjectBinReader::ReadRow(TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
  std::visit(TQuillonCases{
                 [&](const TRow::TNumber& AnAccess) {
                   const std::int64_t Value = ReadNumber(ARow);
                   if (Value < ARow.MinNumber || Value > ARow.MaxNumber) {
                     ThrowValue(ARow);
                   }
                   AnAccess.Set(AnObject, Value);
                 },
                 [&](const TRow::TFloat& AnAccess) { AnAccess.Set(AnObject, ReadFloat(ARow)); },
                 [&](const TRow::TText& AnAccess) {
                   FReader.ReadStringInto(FScratch);
                   AnAccess.Set(AnObject, FScratch);
                 },
                 [&](const TRow::TGuid& AnAccess) { AnAccess.Field(AnObject) = FReader.ReadGuid(); },
                 [&](const TRow::TIntegers& AnAccess) {
                   AnAccess.Field(AnObject).clear();
                   for (std::int32_t Left = ReadCount(); Left > 0; --Left) {
                     AnAccess.Field(AnObject).push_back(FReader.ReadLongInt());
                   }
                 },
                 [&](const TRow::TStrings& AnAccess) {
                   AnAccess.Field(AnObject).clear();
                   for (std::int32_t Left = ReadCount(); Left > 0; --Left) {
                     FReader.ReadStringInto(AnAccess.Field(AnObject).emplace_back());
                   }
                 },
                 [&](const TRow::TPicture& AnAccess) { AnAccess.Field(AnObject).Image = FReader.ReadBinary(); },
                 [&](const TRow::TPointer& AnAccess) {
                   const TQuillonDataClass& Class = AnAccess.Class();
                   AnAccess.Set(AnObject, ARow.Kind == TQuillonRowKind::Object
                                              ? ReadObject(Class, AnAccess.Get(AnObject))
                                              : ReadReference(Class));
                 },
                 [&](const TRow::TItems&) { ReadItems(AnObject, ARow); },
                 [&](const TRow::TStep& AStep) { AStep.Run(AnObject); },
                 [](std::monostate) {},
             },
             ARow.Access);
}

void TQuillonDataObjectBinReader::ReadRows(TQuillonDataAbstractObject& AnObject) {
  const TQuillonRelease Release = Storage().FileRelease();
  for (const TRow& Row : AnObject.DataClass().Rows()) {
    if (Row.IsReadFrom(Release)) {
      ReadRow(AnObject, Row);
    } else if (!Row.KeepsCurrent && !Row.IsRetired()) {
      QuillonDataObjects::ResetRow(AnObject, Row);
    }
  }
}
