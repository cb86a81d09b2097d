#include "QuillonDataObjects/XMLWriter.h"

#include <algorithm>

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
constexpr std::size_t BufferSize = 1U << 18;

constexpr std::string_view Replacement = "\uFFFD";
/// First byte of UTF-8 from which on something may be no character of XML.
constexpr unsigned char FirstDoubtfulLead = 0xED;

/// Characters that would not come back as they are: markup, line ends, which a parser makes one, and what may be no
/// character of XML.
constexpr bool IsEscaped(char C) {
  const auto Byte = static_cast<unsigned char>(C);
  return C == '&' || C == '<' || C == '>' || (Byte < ' ' && C != '\n' && C != '\t') || Byte >= FirstDoubtfulLead;
}

/// Length of the sequence at the begin if that is no character of XML (1.0, 2.2) although its first byte leads one:
/// a surrogate, U+FFFE, U+FFFF, or above U+10FFFF; 0 otherwise.
std::size_t NoCharacterLength(std::string_view AText) {
  const auto At = [&](std::size_t APlace) {
    return APlace < AText.size() ? static_cast<unsigned char>(AText[APlace]) : 0U;
  };
  const bool IsSurrogate = At(0) == 0xED && At(1) >= 0xA0;
  const bool IsReserved = At(0) == 0xEF && At(1) == 0xBF && At(2) >= 0xBE;
  if (IsSurrogate || IsReserved) {
    return std::min<std::size_t>(3, AText.size());
  }
  const bool IsBeyond = At(0) > 0xF4 || (At(0) == 0xF4 && At(1) >= 0x90);
  return IsBeyond ? std::min<std::size_t>(4, AText.size()) : 0;
}

}  // namespace

TQuillonDataObjectXMLWriter::TQuillonDataObjectXMLWriter(const TQuillonContentSink& ASink)
    : FSink(ASink), FText(Head), FLevel(1) {}

void TQuillonDataObjectXMLWriter::Finish() {
  FText.append(Tail);
  FSink(FText);
  FText.clear();
}

/// Begins a line.
void TQuillonDataObjectXMLWriter::Indent() {
  if (FText.size() >= BufferSize) {
    FSink(FText);
    FText.clear();
  }
  FText.append(FLevel * IndentWidth, ' ');
}

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
        if (static_cast<unsigned char>(AText[I]) < ' ') {
          // A control character, which no document can hold, not even as a number.
          FText.append(Replacement);
        } else if (const std::size_t Length = NoCharacterLength(AText.substr(I)); Length > 0) {
          FText.append(Replacement);
          Plain = I + Length;
          I = Plain - 1;
        } else {
          Plain = I;
        }
    }
  }
  FText.append(AText.substr(Plain));
}

void TQuillonDataObjectXMLWriter::WriteObject(std::string_view ATag, const TQuillonDataObject& AnObject) {
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

void TQuillonDataObjectXMLWriter::WriteList(const TRow& ARow, const TQuillonDataList& AList) {
  Open(ARow.Name);
  AList.WriteProperties(*this);
  Open("Items");
  for (const TQuillonDataObject* Item : AList.Items()) {
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

void TQuillonDataObjectXMLWriter::WriteValue(const TQuillonDataAbstractObject& AnObject, const TRow& ARow) {
  FValue.clear();
  QuillonXMLValues::Append(FValue, AnObject, ARow);
  Indent();
  FText.append("<").append(ARow.Name);
  if (ARow.Kind == TQuillonRowKind::Graphic) {
    FText.append(" Size=\"");
    QuillonNumbers::AppendInteger(FText, ARow.As<TRow::TPicture>().Get(AnObject).Image.size());
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

void TQuillonDataObjectXMLWriter::WriteRows(const TQuillonDataAbstractObject& AnObject) {
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
        WriteList(Row, Row.As<TRow::TItems>().Get(AnObject));
        break;
      default:
        WriteValue(AnObject, Row);
    }
  }
}
