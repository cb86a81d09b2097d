#pragma once

#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonStreams/Writer.h"

class TQuillonDataList;
struct TQuillonDataRow;

/// Writes objects in their binary form: the values of the rows alone, one behind the other, defaults included.
class TQuillonDataObjectBinWriter final : public TQuillonDataObjectWriter {
 public:
  /// @param AStream must outlive the writer
  /// @param DoRecursive whether lists are written with their items; without, they are their identities alone
  TQuillonDataObjectBinWriter(TQuillonStream& AStream, bool DoRecursive);

  void WriteRows(const TQuillonDataAbstractObject& AnObject) override;
  /// Hands over to the stream what is still in the buffer; without it the last bytes may be missing.
  void Finish() { FWriter.FlushBuffer(); }

 private:
  void WriteRow(const TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow);
  void WriteNumber(const TQuillonDataRow& ARow, std::int64_t AValue);
  /// @return false for null
  bool WriteReference(const TQuillonDataObject* AnObject);
  void WriteObject(const TQuillonDataObject* AnObject);
  void WriteList(const TQuillonDataList& AList);
  void WriteCount(std::size_t ACount);

  TQuillonStreamWriter FWriter;
  const bool FIsRecursive;
  std::string FScratch;
};
