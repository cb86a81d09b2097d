#include "uJSONExport/Nodes.h"

#include <algorithm>
#include <iterator>

#include "QuillonDateTime.h"
#include "QuillonNumbers.h"
#include "uDataObjects/DataObjects.h"
#include "uJSONExport/JSONExport.h"
#include "uOstrel/Values.h"

namespace uJSONExport {

namespace {

/// Place of the window colour in the table of the display system.
constexpr TColor WindowColour = 5;

bool IsWindowColour(TColor AColour) { return AColour < 0 && (AColour & 0xFF) == WindowColour; }

/// The text without the control characters that no JSON text can hold and no escape stands for (RFC 8259, section 7).
std::string WithoutControls(std::string_view AText) {
  std::string Text;
  std::ranges::remove_copy_if(AText, std::back_inserter(Text), [](char C) {
    return static_cast<unsigned char>(C) < ' ' && C != '\t' && C != '\n' && C != '\f' && C != '\r';
  });
  return Text;
}

std::string Escaped(std::string_view AText) {
  if (AText.find_first_of("\t\n\f\r\"\\") == std::string_view::npos) {
    return std::string(AText);
  }
  std::string Text;
  for (const char C : AText) {
    switch (C) {
      case '\t':
        Text.append("\\t");
        break;
      case '\n':
        Text.append("\\n");
        break;
      case '\f':
        Text.append("\\r");
        break;
      case '\r':
        break;
      case '"':
      case '\\':
        Text.push_back('\\');
        [[fallthrough]];
      default:
        Text.push_back(C);
    }
  }
  return Text;
}

/// A text in quotes. @return whether there is one; the opening quote stands there if not
bool AppendString(std::string& ATarget, std::string_view AValue) {
  const auto IsSpecial = [](char C) { return static_cast<unsigned char>(C) < ' ' || C == '"' || C == '\\'; };
  ATarget.push_back('"');
  const std::size_t Before = ATarget.size();
  if (std::ranges::none_of(AValue, IsSpecial)) {
    ATarget.append(AValue);
  } else {
    ATarget.append(Escaped(WithoutControls(AValue)));
  }
  const bool IsText = ATarget.size() != Before;
  ATarget.push_back('"');
  return IsText;
}

/// @param ATarget with its opening bracket
void AppendDelimiter(std::string& ATarget) {
  if (ATarget.size() > 1) {
    ATarget.push_back(',');
  }
}

TQuillonJSONOwner<TQuillonJSONValue> Written(std::string AText, char ABracket) {
  AText.push_back(ABracket);
  return std::make_unique<TQuillonJSONWritten>(std::move(AText));
}

void AppendDate(std::string& ATarget, const TQuillonDateTimeFields& AFields) {
  QuillonNumbers::AppendPadded(ATarget, AFields.Year, 4);
  QuillonNumbers::AppendPadded(ATarget, AFields.Month, 2);
  QuillonNumbers::AppendPadded(ATarget, AFields.Day, 2);
}

void AppendTime(std::string& ATarget, const TQuillonDateTimeFields& AFields) {
  QuillonNumbers::AppendPadded(ATarget, AFields.Hour, 2);
  QuillonNumbers::AppendPadded(ATarget, AFields.Minute, 2);
}

}  // namespace

std::string Date(TVELDateTime AValue) {
  std::string Text;
  if (AValue != 0) {
    AppendDate(Text, QuillonDateTime::Decode(AValue));
  }
  return Text;
}

std::string Time(TVELDateTime AValue) {
  std::string Text;
  AppendTime(Text, QuillonDateTime::Decode(AValue));
  return Text;
}

std::string Stamp(TVELDateTime AValue) {
  const TQuillonDateTimeFields Fields = QuillonDateTime::Decode(AValue);
  std::string Text;
  AppendDate(Text, Fields);
  AppendTime(Text, Fields);
  QuillonNumbers::AppendPadded(Text, Fields.Second, 2);
  return Text;
}

std::string Identifier(const TVELDataObject* AnObject) {
  return AnObject != nullptr ? QuillonGuid::Plain(AnObject->ID()) : std::string();
}

std::string Colour(TColor AColour) {
  std::string Text;
  if (!IsWindowColour(AColour)) {
    uOstrel::AppendColour(Text, AColour);
  }
  return Text;
}

bool TNode::Text(std::string_view AName, std::string_view AValue) {
  const std::size_t Before = FText.size();
  AppendName(AName);
  const bool IsText = AppendString(FText, AValue);
  if (!IsText) {
    FText.resize(Before);
  }
  return IsText;
}

void TNode::Number(std::string_view AName, std::int64_t AValue) {
  AppendName(AName);
  QuillonNumbers::AppendInteger(FText, AValue);
}

void TNode::Number(std::string_view AName, std::int64_t AValue, std::int64_t ADefault) {
  if (AValue != ADefault) {
    Number(AName, AValue);
  }
}

void TNode::True(std::string_view AName, bool AValue) {
  if (AValue) {
    AppendName(AName);
    FText.append("true");
  }
}

void TNode::Modified(TVELDateTime AValue) {
  if (AValue != 0) {
    Text("modified", Stamp(AValue));
  }
}

void TNode::Object(std::string_view AName, const TNode& AValue) {
  AppendName(AName);
  FText.append(AValue.FText).push_back('}');
}

void TNode::List(std::string_view AName, const TNodes& AValue) {
  if (!AValue.IsEmpty()) {
    WholeList(AName, AValue);
  }
}

void TNode::WholeList(std::string_view AName, const TNodes& AValue) {
  AppendName(AName);
  FText.append(AValue.FText).push_back(']');
}

TQuillonJSONOwner<TQuillonJSONValue> TNode::Take() { return Written(std::move(FText), '}'); }

void TNode::AppendName(std::string_view AName) {
  AppendDelimiter(FText);
  FText.append(1, '"').append(AName).append("\":");
}

void TNodes::Add(const TNode& ANode) {
  AppendDelimiter(FText);
  FText.append(ANode.FText).push_back('}');
}

void TNodes::Text(std::string_view AValue) {
  const std::size_t Before = FText.size();
  AppendDelimiter(FText);
  if (!AppendString(FText, AValue)) {
    FText.resize(Before);
  }
}

TQuillonJSONOwner<TQuillonJSONValue> TNodes::Take() { return Written(std::move(FText), ']'); }

void WriteExternalId(TNode& ANode, const TVELDataObject& AnObject) {
  TNode Id;
  Id.Text("provider", "Velmora");
  if (Id.Text("id", AnObject.FCustomID)) {
    TNodes Ids;
    Ids.Add(Id);
    ANode.List("externalIDs", Ids);
  }
}

}  // namespace uJSONExport

void TVELJSONExport::AddNode(TQuillonJSONObject& ANode, std::string_view AName, std::string_view AValue) {
  ANode.AddPair(std::string(AName), uJSONExport::Escaped(AValue));
}

void TVELJSONExport::AddNumber(TQuillonJSONObject& ANode, std::string_view AName, std::int64_t AValue,
                               std::int64_t ADefault) {
  if (AValue != ADefault) {
    ANode.AddPair(std::string(AName), AValue);
  }
}

void TVELJSONExport::AddBoolean(TQuillonJSONObject& ANode, std::string_view AName, bool AValue, bool ADefault) {
  if (AValue != ADefault) {
    ANode.AddPair(std::string(AName), AValue);
  }
}

void TVELJSONExport::AddDateTime(TQuillonJSONObject& ANode, std::string_view AName, TVELDateTime AValue,
                                 TVELDateTime ADefault) {
  if (AValue != ADefault) {
    AddNode(ANode, AName, uJSONExport::Stamp(AValue));
  }
}
