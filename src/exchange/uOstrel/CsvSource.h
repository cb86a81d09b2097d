#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "QuillonCSV.h"
#include "QuillonGuid.h"
#include "QuillonIO.h"

namespace uOstrel {

/// One file of an OCF set while it is read: the cells of a row by the names of their columns, in any case.
/// A column that the file lacks, or a row too short to reach it, gives the default.
class TCsvSource {
 public:
  /// @throws EQuillonFileHandleError, EQuillonCSVReaderError
  explicit TCsvSource(const std::string& AFileName);

  /// Goes to the next row; false at the end.
  /// @throws EQuillonCSVReaderError
  bool Next();

  const std::string& Text(std::string_view AColumn) const;
  /// The cell as a decimal number; 0 for one that is none.
  std::int32_t Integer(std::string_view AColumn) const;
  /// The cell as a GUID without braces; the all-zero one for an empty cell.
  /// @throws EQuillonConvertError for any other text
  TGUID Guid(std::string_view AColumn, const TGUID& ADefault = {}) const;
  /// The cell as a timepoint or date, its wall time; 0 for an empty one.
  /// @throws EQuillonConvertError
  double DateTime(std::string_view AColumn) const;
  /// The cell as a JSON array of GUIDs; nothing if it is none.
  /// @throws EQuillonConvertError for an element that is no GUID
  std::optional<std::vector<TGUID>> Guids(std::string_view AColumn) const;

 private:
  const std::string* Find(std::string_view AColumn) const;

  TQuillonFileStream FStream;
  TQuillonCSVReader FReader;
  std::unordered_map<std::string, std::size_t> FColumns;
  std::optional<TQuillonCSVLine> FRow;
};

}  // namespace uOstrel
