#pragma once

#include <set>
#include <string>

#include "PlanRows.h"
#include "QuillonNumbers.h"

/// The page of all classes and rows, made from their descriptions.
namespace ReferencePage {

using TRow = TQuillonDataRow;

inline std::string ClassTitle(const TQuillonDataClass& AClass) {
  // Two classes share a tag; their display texts tell them apart.
  const bool IsShared = AClass.Tag() == "SchoolType";
  const std::string Display(AClass.DisplayFormat());
  return std::string(AClass.Tag()) + (IsShared ? " (" + Display.substr(0, Display.find(' ')) + ")" : "");
}

inline std::string KindText(const TRow& ARow, TQuillonDataAbstractObject& AnObject) {
  switch (ARow.Kind) {
    case TQuillonRowKind::Boolean:
      return "Boolean";
    case TQuillonRowKind::Byte:
      return "Byte";
    case TQuillonRowKind::ShortInt:
      return "ShortInt";
    case TQuillonRowKind::Word:
      return "Word";
    case TQuillonRowKind::SmallInt:
      return "SmallInt";
    case TQuillonRowKind::LongInt:
      return "LongInt";
    case TQuillonRowKind::Int64:
      return "Int64";
    case TQuillonRowKind::Single:
      return "Single";
    case TQuillonRowKind::Double:
      return "Double";
    case TQuillonRowKind::DateTime:
      return "DateTime";
    case TQuillonRowKind::Date:
      return "Date";
    case TQuillonRowKind::Time:
      return "Time";
    case TQuillonRowKind::String:
      return "String";
    case TQuillonRowKind::Guid:
      return "GUID";
    case TQuillonRowKind::IntegerArray:
      return "integer array";
    case TQuillonRowKind::StringArray:
      return "string array";
    case TQuillonRowKind::Graphic:
      return "graphic";
    case TQuillonRowKind::Object:
      return "object " + ClassTitle(ARow.As<TRow::TPointer>().Class());
    case TQuillonRowKind::Reference:
      return "reference " + ClassTitle(ARow.As<TRow::TPointer>().Class());
    case TQuillonRowKind::List: {
      const TQuillonDataList& List = ARow.As<TRow::TItems>().Field(AnObject);
      return (List.IsItemOwner() ? "list of " : "list of references ") + ClassTitle(List.ItemClass());
    }
    case TQuillonRowKind::Hook:
      return "step";
  }
  return {};
}

inline std::string DefaultText(const TRow& ARow) {
  std::string Text;
  if (std::holds_alternative<TRow::TNumber>(ARow.Access)) {
    QuillonNumbers::AppendInteger(Text, ARow.DefaultNumber);
  } else if (std::holds_alternative<TRow::TFloat>(ARow.Access)) {
    QuillonNumbers::AppendFloat(Text, ARow.DefaultFloat);
  } else if (!ARow.DefaultText.empty()) {
    Text = "\"" + std::string(ARow.DefaultText) + "\"";
  }
  return ARow.Required || ARow.KeepsCurrent ? "" : Text;
}

inline std::string ReleaseText(const TQuillonRelease& ARelease) {
  for (int Number = 0; Number < 1000; ++Number) {
    const std::string Text = "6.0." + std::to_string(Number);
    if (ARelease == TQuillonRelease(Text)) {
      return Text;
    }
  }
  return "?";
}

inline std::string RulesText(const TRow& ARow) {
  std::string Text;
  const auto Say = [&](bool AnIs, const std::string& AWhat) {
    if (AnIs) {
      Text += (Text.empty() ? "" : ", ") + AWhat;
    }
  };
  Say(ARow.Required, "required");
  Say(ARow.AlwaysWritten, "always written");
  Say(ARow.KeepsCurrent, "absent keeps the value");
  Say(ARow.Merged, "joins what is there");
  Say(ARow.HasSince, "read from " + ReleaseText(ARow.Since) + " on");
  Say(ARow.HasUntil, "retired: read below " + ReleaseText(ARow.Until));
  return Text;
}

/// The own rows of a class; AnObject is one of the class or a descendant.
inline std::string ClassText(const TQuillonDataClass& AClass, TQuillonDataAbstractObject& AnObject) {
  std::string Text = "\n## " + ClassTitle(AClass) + "\n\n";
  std::string Intro = AClass.Base() != nullptr ? " Base: " + ClassTitle(*AClass.Base()) + "." : "";
  Intro += AClass.IsAbstract() ? " Has descendants only." : "";
  Intro += AClass.DisplayFormat().empty() ? "" : " In messages: `" + std::string(AClass.DisplayFormat()) + "`.";
  Text += Intro.substr(1) + "\n";
  const std::size_t Inherited = AClass.Base() != nullptr ? AClass.Base()->Rows().size() : 0;
  std::string Rows;
  for (const TRow& Row : AClass.Rows().subspan(Inherited)) {
    if (Row.Kind != TQuillonRowKind::Hook) {
      Rows += "| " + std::string(Row.Name) + " | " + KindText(Row, AnObject) + " | " + DefaultText(Row) + " | " +
              RulesText(Row) + " |\n";
    }
  }
  return Rows.empty() ? Text : Text + "\n| Name | Kind | Default | Rules |\n|---|---|---|---|\n" + Rows;
}

inline std::string Text() {
  std::string Page =
      "# Classes and rows of the data file\n\n"
      "Made from the program's own class descriptions; see [data-file.md](data-file.md) for how a row becomes text.\n"
      "A class has the rows of its base first. A row without a default has its kind's empty value.\n";
  const auto Classes = PlanRows::Classes();
  const auto Plan = QuillonDataObjects::CreateStorage<TVELPlan>();
  std::set<const TQuillonDataClass*> Bases;
  const auto Describe = [&](const TQuillonDataClass& AClass) {
    const auto Descendant = std::ranges::find_if(
        Classes, [&](const TQuillonDataClass* AnyClass) { return AnyClass->DescendsFrom(AClass); });
    if (Descendant == Classes.end()) {
      Page += ClassText(AClass, *Plan);
      return;
    }
    Page += ClassText(AClass, *(*Descendant)->Create(Plan.get(), QuillonGuid::New()));
  };
  const auto DescribeBases = [&](const TQuillonDataClass& AClass, const auto& AnItself) -> void {
    const TQuillonDataClass* const Base = AClass.Base();
    if (Base != nullptr && Base->IsAbstract()) {
      AnItself(*Base, AnItself);
      if (Bases.insert(Base).second) {
        Describe(*Base);
      }
    }
  };
  DescribeBases(TVELPlan::Class(), DescribeBases);
  Describe(TVELPlan::Class());
  for (const TQuillonDataClass* Class : Classes) {
    DescribeBases(*Class, DescribeBases);
  }
  for (const TQuillonDataClass* Class : Classes) {
    Describe(*Class);
  }
  return Page;
}

}  // namespace ReferencePage
