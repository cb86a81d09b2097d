#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonFileReplacement.h"

class TQuillonDataList;
struct TQuillonDataRow;

/// Writes a storage in its XML form: UTF-8 with byte order mark, two blanks a level, lines ended by LF.
///
/// The text goes on through a buffer as it comes, without a document in between; a tree of millions of nodes would cost
/// more than all the rest of a save.
class TQuillonDataObjectXMLWriter : public TQuillonDataObjectWriter {
 public:
  /// @param ASink takes the document piece by piece; must live as long as the writer
  explicit TQuillonDataObjectXMLWriter(const TQuillonContentSink& ASink);

  void WriteRows(const TQuillonDataAbstractObject& AnObject) override;

  /// Ends the document and hands out what is left of it.
  void Finish();

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

  const TQuillonContentSink& FSink;
  std::string FText;
  std::string FValue;
  std::size_t FLevel = 0;
};
