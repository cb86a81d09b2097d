#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonDataObjects/Release.h"
#include "QuillonGuid.h"
#include "QuillonXMLPull.h"

class TQuillonDataList;
struct TQuillonDataRow;

/// Reads a storage from its XML form while the document passes by, without holding it: elements in the order of the
/// class tables. What else stands there, and every error, is left to TQuillonDataObjectXMLReader; the
/// storage then holds a part of the content.
class TQuillonDataObjectXMLPullReader : public TQuillonDataObjectReader {
 public:
  /// @throws TQuillonXMLUnusual, as all below
  TQuillonDataObjectXMLPullReader(TQuillonDataStorage& AStorage, TQuillonStream& AStream);

  void ReadRows(TQuillonDataAbstractObject& AnObject) override;
  /// Requires that nothing follows.
  void Finish() { FPull.Finish(); }

 private:
  /// What is known of a class table, and of the documents' habits with it.
  struct TTable {
    std::vector<std::size_t> NextOfName;  ///< a row's next one with its name; the number of rows for none
    std::vector<std::size_t> Guesses;     ///< the row whose element came last behind each row
  };
  /// An element that several rows of one name read, each in its turn.
  struct THeld {
    std::size_t FirstRow;
    std::string Text;
    TQuillonDataObject* Referred;
  };
  /// Where the reading of an object stands.
  struct TPlace {
    TQuillonDataAbstractObject& Object;
    TQuillonRelease Release;
    TTable& Table;
    std::size_t Next = 0;  ///< the first row that has not had its turn
    std::vector<THeld> Held = {};

    const THeld* FindHeld(std::size_t AFirstRow) const;
  };

  TTable& TableOf(const TQuillonDataClass& AClass);
  void ReadElement(TPlace& APlace, std::size_t AFound);
  static std::size_t FindRead(const TPlace& APlace, std::size_t ARow);
  void ReadHeld(TPlace& APlace, std::size_t ARow);
  static void PassRows(TPlace& APlace, std::size_t AnEnd);
  static void PassRow(const TPlace& APlace, std::size_t ARow);
  void ReadValue(TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow);
  void ReadList(TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow);
  void ReadItems(TQuillonDataList& AList, bool AnIsMerged);
  TGUID ReadID() const;
  TQuillonDataObject& FindReferred(const TQuillonDataClass& ABase);
  const TQuillonDataClass& ClassOf(const TQuillonDataClass& ABase);
  TQuillonDataObject& ReadObject(const TQuillonDataClass& ABase);

  TQuillonXMLPull FPull;
  std::unordered_map<const TQuillonDataClass*, TTable> FTables;
};
