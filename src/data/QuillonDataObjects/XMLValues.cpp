#include "QuillonDataObjects/XMLValues.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "QuillonDataObjects/Row.h"
#include "QuillonDateTime.h"
#include "QuillonNumbers.h"

namespace {

using TRow = TQuillonDataRow;

constexpr std::string_view Base64Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char IntegerSeparator = ';';

bool NeedsQuotes(std::string_view AText) {
  return std::any_of(AText.begin(), AText.end(),
                     [](char C) { return C == ',' || C == '"' || static_cast<unsigned char>(C) <= ' '; });
}

std::vector<std::int32_t> SplitIntegers(std::string_view AText) {
  std::vector<std::int32_t> Numbers;
  while (!AText.empty()) {
    const std::size_t End = std::min(AText.find(IntegerSeparator), AText.size());
    Numbers.push_back(static_cast<std::int32_t>(QuillonNumbers::ParseInteger(
        AText.substr(0, End), std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max())));
    AText.remove_prefix(std::min(End + 1, AText.size()));
  }
  return Numbers;
}

}  // namespace

namespace QuillonXMLValues {

void Read(TQuillonDataAbstractObject& AnObject, const TRow& ARow, std::string_view AText) {
  switch (ARow.Kind) {
    case TQuillonRowKind::Boolean:
      ARow.As<TRow::TNumber>().Set(AnObject,
                                   QuillonNumbers::ParseInteger(AText, ARow.MinNumber, ARow.MaxNumber) != 0 ? 1 : 0);
      break;
    case TQuillonRowKind::Byte:
    case TQuillonRowKind::ShortInt:
    case TQuillonRowKind::Word:
    case TQuillonRowKind::SmallInt:
    case TQuillonRowKind::LongInt:
    case TQuillonRowKind::Int64:
      ARow.As<TRow::TNumber>().Set(AnObject, QuillonNumbers::ParseInteger(AText, ARow.MinNumber, ARow.MaxNumber));
      break;
    case TQuillonRowKind::Single:
    case TQuillonRowKind::Double:
      ARow.As<TRow::TFloat>().Set(AnObject, QuillonNumbers::ParseFloat(AText));
      break;
    case TQuillonRowKind::DateTime:
      ARow.As<TRow::TFloat>().Set(AnObject, QuillonDateTime::ParseDateTime(AText));
      break;
    case TQuillonRowKind::Date:
      ARow.As<TRow::TFloat>().Set(AnObject, QuillonDateTime::ParseDate(AText));
      break;
    case TQuillonRowKind::Time:
      ARow.As<TRow::TFloat>().Set(AnObject, QuillonDateTime::ParseTime(AText));
      break;
    case TQuillonRowKind::String:
      ARow.As<TRow::TText>().Set(AnObject, AText);
      break;
    case TQuillonRowKind::Guid:
      ARow.As<TRow::TGuid>().Field(AnObject) = QuillonGuid::Parse(AText);
      break;
    case TQuillonRowKind::IntegerArray:
      ARow.As<TRow::TIntegers>().Field(AnObject) = SplitIntegers(AText);
      break;
    case TQuillonRowKind::StringArray:
      ARow.As<TRow::TStrings>().Field(AnObject) = SplitStrings(AText);
      break;
    case TQuillonRowKind::Graphic:
      ARow.As<TRow::TPicture>().Field(AnObject).Image = DecodeBase64(AText);
      break;
    case TQuillonRowKind::Object:
    case TQuillonRowKind::Reference:
    case TQuillonRowKind::List:
    case TQuillonRowKind::Hook:
      break;
  }
}

bool IsOmitted(TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
  if (ARow.Required || ARow.AlwaysWritten) {
    return false;
  }
  switch (ARow.Kind) {
    case TQuillonRowKind::Boolean:
    case TQuillonRowKind::Byte:
    case TQuillonRowKind::ShortInt:
    case TQuillonRowKind::Word:
    case TQuillonRowKind::SmallInt:
    case TQuillonRowKind::LongInt:
    case TQuillonRowKind::Int64:
      return ARow.As<TRow::TNumber>().Get(AnObject) == ARow.DefaultNumber;
    case TQuillonRowKind::Single:
    case TQuillonRowKind::Double:
    case TQuillonRowKind::DateTime:
    case TQuillonRowKind::Date:
    case TQuillonRowKind::Time:
      return ARow.As<TRow::TFloat>().Get(AnObject) == ARow.DefaultFloat;
    case TQuillonRowKind::String: {
      std::string Scratch;
      return ARow.As<TRow::TText>().Get(AnObject, Scratch) == ARow.DefaultText;
    }
    case TQuillonRowKind::IntegerArray:
      return ARow.As<TRow::TIntegers>().Field(AnObject).empty();
    case TQuillonRowKind::StringArray:
      return ARow.As<TRow::TStrings>().Field(AnObject).empty();
    case TQuillonRowKind::Graphic:
      return ARow.As<TRow::TPicture>().Field(AnObject).Image.empty();
    case TQuillonRowKind::Reference:
    case TQuillonRowKind::Object:
      return ARow.As<TRow::TPointer>().Get(AnObject) == nullptr;
    case TQuillonRowKind::List:
      return ARow.As<TRow::TItems>().Field(AnObject).IsEmpty();
    case TQuillonRowKind::Guid:
      return false;
    case TQuillonRowKind::Hook:
      return true;
  }
  return true;
}

void Append(std::string& ATarget, TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
  switch (ARow.Kind) {
    case TQuillonRowKind::Boolean:
    case TQuillonRowKind::Byte:
    case TQuillonRowKind::ShortInt:
    case TQuillonRowKind::Word:
    case TQuillonRowKind::SmallInt:
    case TQuillonRowKind::LongInt:
    case TQuillonRowKind::Int64:
      QuillonNumbers::AppendInteger(ATarget, ARow.As<TRow::TNumber>().Get(AnObject));
      break;
    case TQuillonRowKind::Single:
    case TQuillonRowKind::Double:
      QuillonNumbers::AppendFloat(ATarget, ARow.As<TRow::TFloat>().Get(AnObject));
      break;
    case TQuillonRowKind::DateTime:
      QuillonDateTime::AppendDateTime(ATarget, ARow.As<TRow::TFloat>().Get(AnObject));
      break;
    case TQuillonRowKind::Date:
      QuillonDateTime::AppendDate(ATarget, ARow.As<TRow::TFloat>().Get(AnObject));
      break;
    case TQuillonRowKind::Time:
      QuillonDateTime::AppendTime(ATarget, ARow.As<TRow::TFloat>().Get(AnObject));
      break;
    case TQuillonRowKind::String: {
      std::string Scratch;
      ATarget.append(ARow.As<TRow::TText>().Get(AnObject, Scratch));
      break;
    }
    case TQuillonRowKind::Guid:
      QuillonGuid::AppendBraced(ATarget, ARow.As<TRow::TGuid>().Field(AnObject));
      break;
    case TQuillonRowKind::IntegerArray: {
      bool IsFirst = true;
      for (const std::int32_t Number : ARow.As<TRow::TIntegers>().Field(AnObject)) {
        if (!IsFirst) {
          ATarget.push_back(IntegerSeparator);
        }
        IsFirst = false;
        QuillonNumbers::AppendInteger(ATarget, Number);
      }
      break;
    }
    case TQuillonRowKind::StringArray:
      ATarget.append(JoinStrings(ARow.As<TRow::TStrings>().Field(AnObject)));
      break;
    case TQuillonRowKind::Graphic:
      ATarget.append(EncodeBase64(ARow.As<TRow::TPicture>().Field(AnObject).Image));
      break;
    case TQuillonRowKind::Object:
    case TQuillonRowKind::Reference:
    case TQuillonRowKind::List:
    case TQuillonRowKind::Hook:
      break;
  }
}

std::string EncodeBase64(std::string_view ABytes) {
  std::string Text;
  Text.reserve((ABytes.size() + 2) / 3 * 4);
  for (std::size_t I = 0; I < ABytes.size(); I += 3) {
    const std::size_t Count = std::min<std::size_t>(3, ABytes.size() - I);
    std::uint32_t Group = 0;
    for (std::size_t J = 0; J < 3; ++J) {
      Group = (Group << 8) | (J < Count ? static_cast<std::uint8_t>(ABytes[I + J]) : 0U);
    }
    for (std::size_t J = 0; J < 4; ++J) {
      Text.push_back(J <= Count ? Base64Alphabet[(Group >> (18 - 6 * J)) & 0x3F] : '=');
    }
  }
  return Text;
}

std::string DecodeBase64(std::string_view AText) {
  std::string Bytes;
  std::uint32_t Group = 0;
  int Bits = 0;
  bool IsPadded = false;
  for (const char C : AText) {
    if (C == ' ' || C == '\t' || C == '\r' || C == '\n') {
      continue;
    }
    const std::size_t Value = Base64Alphabet.find(C);
    if (C == '=') {
      IsPadded = true;
    } else if (Value == std::string_view::npos || IsPadded) {
      throw EQuillonConvertError("der Text ist kein gültiges Base64.");
    } else {
      Group = (Group << 6) | static_cast<std::uint32_t>(Value);
      Bits += 6;
      if (Bits >= 8) {
        Bits -= 8;
        Bytes.push_back(static_cast<char>((Group >> Bits) & 0xFF));
      }
    }
  }
  return Bytes;
}

std::string JoinStrings(const std::vector<std::string>& AStrings) {
  if (AStrings.size() == 1 && AStrings.front().empty()) {
    return "\"\"";
  }
  std::string Text;
  for (std::size_t I = 0; I < AStrings.size(); ++I) {
    if (I > 0) {
      Text.push_back(',');
    }
    const std::string& Item = AStrings[I];
    if (!NeedsQuotes(Item)) {
      Text += Item;
      continue;
    }
    Text.push_back('"');
    for (const char C : Item) {
      if (C == '"') {
        Text.push_back('"');
      }
      Text.push_back(C);
    }
    Text.push_back('"');
  }
  return Text;
}

std::vector<std::string> SplitStrings(std::string_view AText) {
  std::vector<std::string> Items;
  const auto IsSpace = [](char C) { return static_cast<unsigned char>(C) <= ' '; };
  std::size_t Next = 0;
  const auto SkipSpace = [&] {
    while (Next < AText.size() && IsSpace(AText[Next])) {
      ++Next;
    }
  };
  SkipSpace();
  while (Next < AText.size()) {
    std::string Item;
    if (AText[Next] == '"') {
      for (++Next; Next < AText.size(); ++Next) {
        if (AText[Next] == '"') {
          if (Next + 1 >= AText.size() || AText[Next + 1] != '"') {
            ++Next;
            break;
          }
          ++Next;
        }
        Item.push_back(AText[Next]);
      }
    } else {
      while (Next < AText.size() && AText[Next] != ',' && !IsSpace(AText[Next])) {
        Item.push_back(AText[Next++]);
      }
    }
    Items.push_back(std::move(Item));
    SkipSpace();
    if (Next < AText.size() && AText[Next] == ',') {
      ++Next;
      SkipSpace();
      if (Next == AText.size()) {
        Items.emplace_back();
      }
    }
  }
  return Items;
}

}  // namespace QuillonXMLValues
