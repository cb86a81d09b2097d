#pragma once

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Registry.h"
#include "QuillonDataObjects/Storage.h"
#include "QuillonDataObjects/XMLValues.h"

/// Generic work on the rows of persistent classes: listing, filling, comparing.
namespace DataRows {

using TRow = TQuillonDataRow;

/// Concrete classes that are registered and may stand where ABase is wanted, ordered by tag and display text.
inline std::vector<const TQuillonDataClass*> Descendants(const TQuillonDataClass& ABase) {
  std::vector<const TQuillonDataClass*> Found = TQuillonDataClassRegistry::Instance().Classes();
  std::erase_if(Found, [&](const TQuillonDataClass* AClass) { return !AClass->DescendsFrom(ABase); });
  std::ranges::sort(Found, {},
                    [](const TQuillonDataClass* AClass) { return std::pair(AClass->Tag(), AClass->DisplayFormat()); });
  return Found;
}

/// Gives every row of an object, and of all that it owns, a random value that is not its default.
class TFiller {
 public:
  explicit TFiller(unsigned ASeed) : FRandom(ASeed) {}

  /// An object that can lie in one of its class gets one such.
  void Fill(TQuillonDataAbstractObject& AnObject) {
    FOuter.push_back(&AnObject.DataClass());
    const auto Rows = AnObject.DataClass().Rows();
    for (std::size_t I = 0; I < Rows.size(); ++I) {
      const TRow& Row = Rows[I];
      if (Row.IsRetired() || Row.Kind == TQuillonRowKind::Hook) {
        continue;
      }
      if (Row.FirstOfName != I) {
        CopyFirst(AnObject, Rows[Row.FirstOfName], Row);
      } else {
        FillRow(AnObject, Row);
      }
    }
    // A list takes the stamps of the object it lies in when it is read.
    for (const TRow& Row : Rows) {
      if (Row.Kind == TQuillonRowKind::List) {
        TQuillonDataList& List = Row.As<TRow::TItems>().Field(AnObject);
        for (const TRow& Stamp : TQuillonDataAbstractObject::Class().Rows()) {
          QuillonDataObjects::AssignRow(Stamp, List, AnObject);
        }
      }
    }
    FOuter.pop_back();
  }

 private:
  std::int64_t Number(std::int64_t AMin, std::int64_t AMax) {
    return std::uniform_int_distribution<std::int64_t>(AMin, AMax)(FRandom);
  }

  std::string Text() {
    static const std::vector<std::string> Pieces = {"a",   "Ä",  "ß",    "€",  "𝄞",  " ", "&", "<b>", "\"", "'",
                                                    "]]>", "\t", "\r\n", "\r", "\n", ",", ";", "0",   "--", "&amp;"};
    std::string Result;
    for (std::int64_t I = Number(1, 8); I > 0; --I) {
      Result += Pieces[static_cast<std::size_t>(Number(0, static_cast<std::int64_t>(Pieces.size()) - 1))];
    }
    return Result;
  }

  static void CopyFirst(TQuillonDataAbstractObject& AnObject, const TRow& AFirst, const TRow& ASecond) {
    std::string Scratch;
    if (const auto* const Text = std::get_if<TRow::TText>(&AFirst.Access)) {
      ASecond.As<TRow::TText>().Set(AnObject, std::string(Text->Get(AnObject, Scratch)));
    } else if (const auto* const Number = std::get_if<TRow::TNumber>(&AFirst.Access)) {
      ASecond.As<TRow::TNumber>().Set(AnObject, Number->Get(AnObject));
    } else {
      const auto& Pointer = ASecond.As<TRow::TPointer>();
      Pointer.Set(AnObject, AFirst.As<TRow::TPointer>().Get(AnObject));
    }
  }

  void FillRow(TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
    constexpr double DayMilliseconds = 86400000;
    switch (ARow.Kind) {
      case TQuillonRowKind::Boolean:
        ARow.As<TRow::TNumber>().Set(AnObject, 1 - ARow.DefaultNumber);
        break;
      case TQuillonRowKind::Byte:
      case TQuillonRowKind::ShortInt:
      case TQuillonRowKind::Word:
      case TQuillonRowKind::SmallInt:
      case TQuillonRowKind::LongInt:
      case TQuillonRowKind::Int64: {
        const std::int64_t Value = Number(ARow.MinNumber, ARow.MaxNumber);
        ARow.As<TRow::TNumber>().Set(AnObject, Value != ARow.DefaultNumber ? Value : ARow.MaxNumber);
        break;
      }
      case TQuillonRowKind::Single:
      case TQuillonRowKind::Double:
        ARow.As<TRow::TFloat>().Set(AnObject, static_cast<double>(Number(2, 99999999)) / 1000 + 1.1);
        break;
      case TQuillonRowKind::DateTime:
        ARow.As<TRow::TFloat>().Set(AnObject, static_cast<double>(Number(20000, 60000)) +
                                                  static_cast<double>(Number(1, 86399999)) / DayMilliseconds);
        break;
      case TQuillonRowKind::Date:
        ARow.As<TRow::TFloat>().Set(AnObject, static_cast<double>(Number(20000, 60000)));
        break;
      case TQuillonRowKind::Time:
        ARow.As<TRow::TFloat>().Set(AnObject, static_cast<double>(Number(1, 86399999)) / DayMilliseconds);
        break;
      case TQuillonRowKind::String:
        FillText(AnObject, ARow);
        break;
      case TQuillonRowKind::Guid:
        ARow.As<TRow::TGuid>().Field(AnObject) = QuillonGuid::New();
        break;
      case TQuillonRowKind::IntegerArray:
        ARow.As<TRow::TIntegers>().Field(AnObject) = {0, INT32_MIN, INT32_MAX};
        break;
      case TQuillonRowKind::StringArray:
        ARow.As<TRow::TStrings>().Field(AnObject) = {Text(), "", Text(), ""};
        break;
      case TQuillonRowKind::Graphic:
        ARow.As<TRow::TPicture>().Field(AnObject).Image = Text() + std::string("\0\xFF", 2);
        break;
      case TQuillonRowKind::Object:
      case TQuillonRowKind::Reference:
        FillPointer(AnObject, ARow);
        break;
      case TQuillonRowKind::List:
        FillList(ARow.As<TRow::TItems>().Field(AnObject), AnObject);
        break;
      case TQuillonRowKind::Hook:
        break;
    }
  }

  void FillText(TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
    const auto& Access = ARow.As<TRow::TText>();
    const std::string Value = Text();
    Access.Set(AnObject, Value);
    std::string Scratch;
    if (const std::string Held(Access.Get(AnObject, Scratch)); Held != Value) {  // a set of numbers as text
      std::string Bits(Held.size(), '0');
      for (char& Bit : Bits) {
        Bit = Number(0, 1) == 1 ? '1' : '0';
      }
      Bits.front() = '1';
      Access.Set(AnObject, Bits);
    }
  }

  void FillPointer(TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
    const auto& Pointer = ARow.As<TRow::TPointer>();
    TQuillonDataObject* Target = Pointer.Get(AnObject);
    if (Target == nullptr) {
      Target = Descendants(Pointer.Class()).front()->Create(StorageOf(AnObject), QuillonGuid::New());
      Pointer.Set(AnObject, Target);
    }
    if (ARow.Kind == TQuillonRowKind::Object) {
      Fill(*Target);
    }
  }

  void FillList(TQuillonDataList& AList, TQuillonDataAbstractObject& AnOwner) {
    for (const TQuillonDataClass* Class : Descendants(AList.ItemClass())) {
      if (AList.IsItemOwner() && std::ranges::count(FOuter, Class) > 1) {
        continue;
      }
      TQuillonDataObject* const Item = Class->Create(StorageOf(AnOwner), QuillonGuid::New());
      if (AList.IsItemOwner()) {
        Fill(*Item);
      }
      AList.Append(Item);
    }
  }

  static TQuillonDataStorage* StorageOf(TQuillonDataAbstractObject& AnObject) {
    return AnObject.AsStorage() != nullptr ? AnObject.AsStorage() : AnObject.Storage();
  }

  std::vector<const TQuillonDataClass*> FOuter;  ///< of the objects that are being filled, one in the other
  std::mt19937 FRandom;
};

enum class TDetail { All, Content };

/// Every value of an object and of what it owns, a line each, as text.
/// Content leaves out what Assign does not copy: stamps, and identities of what is owned.
inline std::string Snapshot(TQuillonDataAbstractObject& AnObject, TDetail ADetail, const std::string& APath = {}) {
  std::string Lines;
  for (const TRow& Row : AnObject.DataClass().Rows()) {
    if (Row.IsRetired() || Row.Kind == TQuillonRowKind::Hook || (ADetail == TDetail::Content && Row.IsStamp)) {
      continue;
    }
    const std::string Path = APath + "/" + std::string(Row.Name);
    const auto Part = [&](TQuillonDataObject* APart, bool AnIsOwned, const std::string& APlace) {
      if (APart == nullptr) {
        Lines += APlace + " = none\n";
        return;
      }
      if (!AnIsOwned || ADetail == TDetail::All) {
        Lines += APlace + " = " + QuillonGuid::Braced(APart->ID()) + "\n";
      }
      Lines += APlace + " : " + APart->GetPublicClassName() + "\n";
      if (AnIsOwned) {
        Lines += Snapshot(*APart, ADetail, APlace);
      }
    };
    if (Row.Kind == TQuillonRowKind::Object || Row.Kind == TQuillonRowKind::Reference) {
      Part(Row.As<TRow::TPointer>().Get(AnObject), Row.Kind == TQuillonRowKind::Object, Path);
    } else if (Row.Kind == TQuillonRowKind::List) {
      const TQuillonDataList& List = Row.As<TRow::TItems>().Field(AnObject);
      for (int I = 0; I < List.Count(); ++I) {
        Part(List.GetItem(I), List.IsItemOwner(), Path + "[" + std::to_string(I) + "]");
      }
    } else {
      Lines += Path + " = ";
      QuillonXMLValues::Append(Lines, AnObject, Row);
      Lines += "\n";
    }
  }
  return Lines;
}

}  // namespace DataRows
