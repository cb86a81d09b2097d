#pragma once

#include <array>
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
  /// An element as it came last in its place.
  struct TGuess {
    TQuillonXMLPull::TGuess Tag;
    std::size_t Row = 0;                       ///< the number of rows for one that no row reads
    const TQuillonDataClass* Class = nullptr;  ///< that it names
    TGUID ID;                                  ///< that a reference had
    TQuillonDataObject* Referred = nullptr;    ///< by that; null for none yet
  };
  /// What is known of a class table, and of the documents' habits with it.
  struct TTable {
    std::vector<std::size_t> NextOfName;  ///< a row's next one with its name; the number of rows for none
    std::vector<bool> IsPlain;            ///< rows that all files have, the only ones of their name
    std::vector<TGuess> Elements;         ///< of the element behind that of each row
    std::vector<TGuess> Items;            ///< of the items of each row's list
  };
  /// An element that several rows of one name read, each in its turn.
  struct THeld {
    std::size_t FirstRow;
    std::string Text = {};
    TQuillonDataObject* Referred = nullptr;
  };
  /// What an element refers to.
  struct TNamed {
    const TQuillonDataClass& Class;
    TGUID ID;
    TQuillonDataObject* Known = nullptr;
  };
  /// Where the reading of an object stands.
  struct TPlace {
    TQuillonDataAbstractObject& Object;
    TQuillonRelease Release;
    TTable& Table;
    std::size_t Next = 0;       ///< the first row that has not had its turn
    TGuess* Element = nullptr;  ///< what was guessed of the element
    std::vector<THeld> Held = {};

    const THeld* FindHeld(std::size_t AFirstRow) const;
  };

  TTable& TableOf(const TQuillonDataClass& AClass);
  void ReadElement(TPlace& APlace, std::size_t AFound);
  void ReadPlain(TPlace& APlace, std::size_t ARow);
  static std::size_t FindRead(const TPlace& APlace, std::size_t ARow);
  void ReadHeld(TPlace& APlace, std::size_t ARow);
  static void PassRows(TPlace& APlace, std::size_t AnEnd);
  static void PassRow(const TPlace& APlace, std::size_t ARow);
  void ReadValue(TPlace& APlace, std::size_t ARow);
  void ReadList(TPlace& APlace, std::size_t ARow);
  void ReadItems(TQuillonDataList& AList, TGuess& AGuess);
  void ReadReferences(TQuillonDataList& AList, TGuess& AGuess);
  void MergeItems(TQuillonDataList& AList, TGuess& AGuess);
  bool NextItem(TGuess& AGuess);
  void RememberPlain(TGuess& AGuess) const;
  TNamed ReadNamed(const TQuillonDataClass& ABase, TGuess& AGuess) const;
  TNamed ReadReferred(const TQuillonDataClass& ABase, TGuess& AGuess);
  TQuillonDataObject& Find(const TQuillonDataClass& ABase, const TNamed& ANamed, TGuess& AGuess) const;
  TQuillonDataObject& ReadObject(const TQuillonDataClass& ABase, TGuess& AGuess);
  TQuillonDataObject& ReadReference(const TQuillonDataClass& ABase, TGuess& AGuess);

  TQuillonXMLPull FPull;
  std::unordered_map<const TQuillonDataClass*, TTable> FTables;
  std::vector<TNamed> FItems;           ///< of the list of references that is being read
  std::array<TGuess, 4> FListElements;  ///< of the first elements of lists
};
