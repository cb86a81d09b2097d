#include "QuillonDataObjects/XMLWriter.h"

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/XMLValues.h"
#include "QuillonGuid.h"
#include "QuillonNumbers.h"

namespace {

using TRow = TQuillonDataRow;

constexpr std::string_view Head =
    "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>\n<Storage>\n";
constexpr std::string_view Tail = "</Storage>\n";
constexpr std::size_t IndentWidth = 2;

/// Characters that would not come back as they are: markup, and line ends, which a parser makes one.
constexpr bool IsEscaped(char C) {
  return C == '&' || C == '<' || C == '>' || (static_cast<unsigned char>(C) < ' ' && C != '\n' && C != '\t');
}

}  // namespace

TQuillonDataObjectXMLWriter::TQuillonDataObjectXMLWriter() : FText(Head), FLevel(1) {}

std::string TQuillonDataObjectXMLWriter::Finish() {
  FText.append(Tail);
  return std::move(FText);
}

void TQuillonDataObjectXMLWriter::Indent() { FText.append(FLevel * IndentWidth, ' '); }

void TQuillonDataObjectXMLWriter::Open(std::string_view ATag) {
  Indent();
  FText.append("<").append(ATag).append(">\n");
  ++FLevel;
}

void TQuillonDataObjectXMLWriter::OpenObject(std::string_view ATag, const TQuillonDataObject& AnObject) {
  Indent();
  FText.append("<").append(ATag).append(" Class=\"").append(AnObject.DataClass().Tag()).append("\" ID=\"");
  QuillonGuid::AppendBraced(FText, AnObject.ID());
  FText.append("\"");
}

void TQuillonDataObjectXMLWriter::Close(std::string_view ATag) {
  --FLevel;
  Indent();
  FText.append("</").append(ATag).append(">\n");
}

void TQuillonDataObjectXMLWriter::WriteText(std::string_view AText) {
  std::size_t Plain = 0;
  for (std::size_t I = 0; I < AText.size(); ++I) {
    if (!IsEscaped(AText[I])) {
      continue;
    }
    FText.append(AText.substr(Plain, I - Plain));
    Plain = I + 1;
    switch (AText[I]) {
      case '&':
        FText.append("&amp;");
        break;
      case '<':
        FText.append("&lt;");
        break;
      case '>':
        FText.append("&gt;");
        break;
      case '\r':
        FText.append("&#13;");
        break;
      default:
        // A control character, which no document can hold, not even as a number (XML 1.0, 2.2).
        FText.append("\uFFFD");
    }
  }
  FText.append(AText.substr(Plain));
}

void TQuillonDataObjectXMLWriter::WriteObject(std::string_view ATag, TQuillonDataObject& AnObject) {
  OpenObject(ATag, AnObject);
  FText.append(">\n");
  ++FLevel;
  AnObject.WriteProperties(*this);
  Close(ATag);
}

void TQuillonDataObjectXMLWriter::WriteReference(std::string_view ATag, const TQuillonDataObject& AnObject) {
  OpenObject(ATag, AnObject);
  FText.append("/>\n");
}

void TQuillonDataObjectXMLWriter::WriteList(const TRow& ARow, TQuillonDataList& AList) {
  Open(ARow.Name);
  AList.WriteProperties(*this);
  Open("Items");
  for (TQuillonDataObject* Item : AList.Items()) {
    if (Item == nullptr) {
      continue;
    }
    if (AList.IsItemOwner()) {
      WriteObject("Item", *Item);
    } else {
      WriteReference("Item", *Item);
    }
  }
  Close("Items");
  Close(ARow.Name);
}

void TQuillonDataObjectXMLWriter::WriteValue(TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
  FValue.clear();
  QuillonXMLValues::Append(FValue, AnObject, ARow);
  Indent();
  FText.append("<").append(ARow.Name);
  if (ARow.Kind == TQuillonRowKind::Graphic) {
    FText.append(" Size=\"");
    QuillonNumbers::AppendInteger(FText, ARow.As<TRow::TPicture>().Field(AnObject).Image.size());
    FText.append("\"");
  }
  if (FValue.empty()) {
    FText.append("/>\n");
    return;
  }
  FText.append(">");
  WriteText(FValue);
  FText.append("</").append(ARow.Name).append(">\n");
}

void TQuillonDataObjectXMLWriter::WriteRows(TQuillonDataAbstractObject& AnObject) {
  for (const TRow& Row : AnObject.DataClass().Rows()) {
    const bool IsOmitted = !Row.Required && !Row.AlwaysWritten && QuillonDataObjects::HoldsDefault(AnObject, Row);
    if (Row.IsRetired() || Row.Kind == TQuillonRowKind::Hook || IsOmitted) {
      continue;
    }
    switch (Row.Kind) {
      case TQuillonRowKind::Object:
        WriteObject(Row.Name, *Row.As<TRow::TPointer>().Get(AnObject));
        break;
      case TQuillonRowKind::Reference:
        WriteReference(Row.Name, *Row.As<TRow::TPointer>().Get(AnObject));
        break;
      case TQuillonRowKind::List:
        WriteList(Row, Row.As<TRow::TItems>().Field(AnObject));
        break;
      default:
        WriteValue(AnObject, Row);
    }
  }
}
