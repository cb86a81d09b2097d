#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "QuillonCSV.h"
#include "uOstrel/FileNames.h"
#include "uOstrel/FileSet.h"
#include "uOstrel/Values.h"
#include "uPlandaten/Basis.h"

class TVELAenderung;

namespace uOstrel {

/// One file of an OCF set while it is written: cells of a row one behind the other, in the value forms of the format.
class TCsvFile {
 public:
  /// @param ARows counts the rows, but for the header
  /// @throws EQuillonFileHandleError, as all that writes
  TCsvFile(TFileSet& ASet, const TFileName& AFileName, std::uint64_t& ARows);

  void Text(std::string_view AText) { FWriter.WriteValue(AText); }
  void Identifier(const TGUID& AGuid);
  /// The object's identifier; an empty cell without object.
  void Id(const TVELDataObject* AnObject);
  /// Identifiers of the items, each once.
  void IdList(const TQuillonDataList& AList);
  void Date(double AValue);
  void Timepoint(double AValue);
  void Colour(TColor AValue);
  void Integer(std::int64_t AValue);
  void Gender(TVELGeschlecht AValue);
  void EndRow() {
    FWriter.WriteLine();
    ++FRows;
  }
  void EndHeader() { FWriter.WriteLine(); }

  /// Writes what is still buffered; the file is complete.
  void Close();

 private:
  TFileSet& FSet;
  TQuillonStream& FContent;
  std::uint64_t& FRows;
  TQuillonCSVWriter FWriter;
};

/// A column of a file about objects of class T: its name and how its cell is written.
template <class T>
struct TColumn {
  std::string_view Name;
  void (*Write)(TCsvFile& AFile, const T& AnObject);
  /// The cell of an additional lesson, where such rows stand behind the objects; null leaves it empty.
  void (*WriteChange)(TCsvFile& AFile, const TVELAenderung& AChange) = nullptr;
};

/// Writes the row of column names.
template <class T>
void WriteHeader(TCsvFile& AFile, std::span<const TColumn<T>> AColumns) {
  for (const TColumn<T>& Column : AColumns) {
    AFile.Text(Column.Name);
  }
  AFile.EndHeader();
}

/// Writes the row of one object.
template <class T>
void WriteRow(TCsvFile& AFile, std::span<const TColumn<T>> AColumns, const T& AnObject) {
  for (const TColumn<T>& Column : AColumns) {
    Column.Write(AFile, AnObject);
  }
  AFile.EndRow();
}

/// Writes the row of an additional lesson.
template <class T>
void WriteChange(TCsvFile& AFile, std::span<const TColumn<T>> AColumns, const TVELAenderung& AChange) {
  for (const TColumn<T>& Column : AColumns) {
    if (Column.WriteChange != nullptr) {
      Column.WriteChange(AFile, AChange);
    } else {
      AFile.Text({});
    }
  }
  AFile.EndRow();
}

}  // namespace uOstrel
