#include "QuillonDataObjects/XMLValues.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "QuillonBase64.h"
#include "QuillonDataObjects/Row.h"
#include "QuillonDateTime.h"
#include "QuillonNumbers.h"

namespace {

using TRow = TQuillonDataRow;

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

void AppendIntegers(std::string& ATarget, const std::vector<std::int32_t>& ANumbers) {
  bool IsFirst = true;
  for (const std::int32_t Number : ANumbers) {
    if (!IsFirst) {
      ATarget.push_back(IntegerSeparator);
    }
    IsFirst = false;
    QuillonNumbers::AppendInteger(ATarget, Number);
  }
}

double ParseFloatRow(TQuillonRowKind AKind, std::string_view AText) {
  switch (AKind) {
    case TQuillonRowKind::DateTime:
      return QuillonDateTime::ParseDateTime(AText);
    case TQuillonRowKind::Date:
      return QuillonDateTime::ParseDate(AText);
    case TQuillonRowKind::Time:
      return QuillonDateTime::ParseTime(AText);
    default:
      return QuillonNumbers::ParseFloat(AText);
  }
}

void AppendFloatRow(std::string& ATarget, TQuillonRowKind AKind, double AValue) {
  switch (AKind) {
    case TQuillonRowKind::DateTime:
      QuillonDateTime::AppendDateTime(ATarget, AValue);
      break;
    case TQuillonRowKind::Date:
      QuillonDateTime::AppendDate(ATarget, AValue);
      break;
    case TQuillonRowKind::Time:
      QuillonDateTime::AppendTime(ATarget, AValue);
      break;
    default:
      QuillonNumbers::AppendFloat(ATarget, AValue);
  }
}

}  // namespace

namespace QuillonXMLValues {

void Read(TQuillonDataAbstractObject& AnObject, const TRow& ARow, std::string_view AText) {
  std::visit(TQuillonCases{
                 [&](const TRow::TNumber& AnAccess) {
                   const std::int64_t Number = QuillonNumbers::ParseInteger(AText, ARow.MinNumber, ARow.MaxNumber);
                   AnAccess.Set(AnObject, ARow.Kind == TQuillonRowKind::Boolean && Number != 0 ? 1 : Number);
                 },
                 [&](const TRow::TFloat& AnAccess) { AnAccess.Set(AnObject, ParseFloatRow(ARow.Kind, AText)); },
                 [&](const TRow::TText& AnAccess) { AnAccess.Set(AnObject, AText); },
                 [&](const TRow::TGuid& AnAccess) { AnAccess.Field(AnObject) = QuillonGuid::Parse(AText); },
                 [&](const TRow::TIntegers& AnAccess) { AnAccess.Field(AnObject) = SplitIntegers(AText); },
                 [&](const TRow::TStrings& AnAccess) { AnAccess.Field(AnObject) = SplitStrings(AText); },
                 [&](const TRow::TPicture& AnAccess) { AnAccess.Field(AnObject).Image = QuillonBase64::Decode(AText); },
                 [](const auto&) {},
             },
             ARow.Access);
}

void Append(std::string& ATarget, const TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
  std::visit(
      TQuillonCases{
          [&](const TRow::TNumber& AnAccess) { QuillonNumbers::AppendInteger(ATarget, AnAccess.Get(AnObject)); },
          [&](const TRow::TFloat& AnAccess) { AppendFloatRow(ATarget, ARow.Kind, AnAccess.Get(AnObject)); },
          [&](const TRow::TText& AnAccess) {
            std::string Scratch;
            ATarget.append(ARow.WrittenText.empty() ? AnAccess.Get(AnObject, Scratch) : ARow.WrittenText);
          },
          [&](const TRow::TGuid& AnAccess) { QuillonGuid::AppendBraced(ATarget, AnAccess.Get(AnObject)); },
          [&](const TRow::TIntegers& AnAccess) { AppendIntegers(ATarget, AnAccess.Get(AnObject)); },
          [&](const TRow::TStrings& AnAccess) { ATarget.append(JoinStrings(AnAccess.Get(AnObject))); },
          [&](const TRow::TPicture& AnAccess) { ATarget.append(QuillonBase64::Encode(AnAccess.Get(AnObject).Image)); },
          [](const auto&) {},
      },
      ARow.Access);
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
