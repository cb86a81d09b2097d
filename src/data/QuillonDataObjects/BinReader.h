#pragma once

#include <string>

#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonStreams/Reader.h"

class TQuillonDataList;
struct TQuillonDataRow;

/// What a list makes of the items that it holds when its items are read.
enum TQuillonDataObjectReaderMode {
  dormSubstitute,  ///< they go
  dormOverwrite    ///< they stay; of the items read those join them that are new
};

/// Reads objects from their binary form.
///
/// The form is nothing but values, so whatever is cut, swapped or invented shows only as a value that cannot be: every
/// read raises EQuillonReaderError or EQuillonDataObjectReaderError then. What was made until then belongs to the
/// storage. No length or count takes more memory than the bytes that really come.
class TQuillonDataObjectBinReader final : public TQuillonDataObjectReader {
 public:
  /// @param AStream must outlive the reader; at the reader's end it stands behind the last value read
  /// @param DoRecursive whether lists stand with their items
  TQuillonDataObjectBinReader(TQuillonDataStorage& AStorage, TQuillonStream& AStream, bool DoRecursive,
                              TQuillonDataObjectReaderMode AMode = dormSubstitute);

  void ReadRows(TQuillonDataAbstractObject& AnObject) override;

 private:
  void ReadRow(TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow);
  std::int64_t ReadNumber(const TQuillonDataRow& ARow);
  double ReadFloat(const TQuillonDataRow& ARow);
  void ReadItems(TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow);
  void ReadList(TQuillonDataList& AList);
  /// The items of a row that is retired: they join those of its successor.
  void MergeList(TQuillonDataList& AList);
  /// What a reference names; null for none.
  TQuillonDataObject* ReadReference(const TQuillonDataClass& ABase);
  /// @return ADefault for none
  TQuillonDataObject* ReadObject(const TQuillonDataClass& ABase, TQuillonDataObject* ADefault);
  const TQuillonDataClass* ReadClass(const TQuillonDataClass& ABase);
  std::int32_t ReadCount();

  TQuillonStreamReader FReader;
  const bool FIsRecursive;
  const TQuillonDataObjectReaderMode FMode;
  std::string FScratch;
};
