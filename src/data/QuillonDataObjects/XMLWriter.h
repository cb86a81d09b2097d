#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "QuillonDataObjects/ReaderWriter.h"

class TQuillonDataList;
struct TQuillonDataRow;

/// Writes a storage in its XML form: UTF-8 with byte order mark, two blanks a level, lines ended by LF.
///
/// The text is built as it goes, without a document in between; a tree of millions of nodes would cost more than
/// all the rest of a save.
class TQuillonDataObjectXMLWriter : public TQuillonDataObjectWriter {
 public:
  TQuillonDataObjectXMLWriter();

  void WriteRows(const TQuillonDataAbstractObject& AnObject) override;

  /// Ends the document and hands it out.
  std::string Finish();

 private:
  void Indent();
  void Open(std::string_view ATag);
  void OpenObject(std::string_view ATag, const TQuillonDataObject& AnObject);
  void Close(std::string_view ATag);
  void WriteText(std::string_view AText);
  void WriteObject(std::string_view ATag, const TQuillonDataObject& AnObject);
  void WriteReference(std::string_view ATag, const TQuillonDataObject& AnObject);
  void WriteList(const TQuillonDataRow& ARow, const TQuillonDataList& AList);
  void WriteValue(const TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow);

  std::string FText;
  std::string FValue;
  std::size_t FLevel = 0;
};
