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
std::string_view WithoutControls(std::string_view AText, std::string& AScratch) {
  const auto IsControl = [](char C) {
    return static_cast<unsigned char>(C) < ' ' && C != '\t' && C != '\n' && C != '\f' && C != '\r';
  };
  if (std::ranges::none_of(AText, IsControl)) {
    return AText;
  }
  AScratch.clear();
  std::ranges::remove_copy_if(AText, std::back_inserter(AScratch), IsControl);
  return AScratch;
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

void TNode::Text(std::string_view AName, std::string_view AValue) {
  std::string Scratch;
  TVELJSONExport::AddNode(*FObject, AName, WithoutControls(AValue, Scratch));
}

void TNode::Number(std::string_view AName, std::int64_t AValue) { FObject->AddPair(std::string(AName), AValue); }

void TNode::Number(std::string_view AName, std::int64_t AValue, std::int64_t ADefault) {
  TVELJSONExport::AddNumber(*FObject, AName, AValue, ADefault);
}

void TNode::True(std::string_view AName, bool AValue) { TVELJSONExport::AddBoolean(*FObject, AName, AValue, false); }

void TNode::Modified(TVELDateTime AValue) { TVELJSONExport::AddDateTime(*FObject, "modified", AValue, 0); }

void TNode::Object(std::string_view AName, TNode AValue) { FObject->AddPair(std::string(AName), AValue.Take()); }

void TNode::List(std::string_view AName, TNodes AValue) {
  if (!AValue.IsEmpty()) {
    WholeList(AName, std::move(AValue));
  }
}

void TNode::WholeList(std::string_view AName, TNodes AValue) { FObject->AddPair(std::string(AName), AValue.Take()); }

void TNodes::Text(std::string_view AValue) {
  std::string Scratch;
  if (std::string Text = Escaped(WithoutControls(AValue, Scratch)); !Text.empty()) {
    FArray->Add(std::move(Text));
  }
}

void WriteExternalId(TNode& ANode, const TVELDataObject& AnObject) {
  TNode Id;
  Id.Text("provider", "Velmora");
  const std::size_t Members = Id.Get().Size();
  Id.Text("id", AnObject.FCustomID);
  if (Id.Get().Size() == Members) {
    return;
  }
  TNodes Ids;
  Ids.Add(std::move(Id));
  ANode.List("externalIDs", std::move(Ids));
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
