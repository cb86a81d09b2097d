#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "QuillonGuid.h"

class TQuillonCSVReader;

namespace uOstrel {

/// What a cell of a set is read as. An absent cell counts as an empty one: the first value of its type.
enum class TCellKind : std::uint8_t {
  Text,
  Integer,    ///< 0 for what is no whole number
  Timepoint,  ///< a timepoint or date, its wall time
  Id,         ///< a GUID without braces
  Ids         ///< a JSON array of GUIDs; nothing for what is no array
};
using TIds = std::optional<std::vector<TGUID>>;
using TCell = std::variant<std::string, std::int32_t, double, TGUID, TIds>;

/// A column that is read, wherever it stands in the file and in whatever case its name is written.
struct TSourceColumn {
  std::string_view Name;
  TCellKind Kind;
};

/// One file of an OCF set, read and checked as a whole.
class TCsvSource {
 public:
  struct TRow {
    std::optional<TGUID> ID;  ///< of the column "Id"; nothing where the row does not reach it
    int Number;               ///< the header is row 1, and empty lines do not count
    int Line;                 ///< in which the row begins
    std::span<const TCell> Cells;
  };

  /// A file that does not exist has no rows.
  /// @throws EQuillonException that names file, row and column, for what is no CSV text or no value of its kind;
  ///   EQuillonFileHandleError
  TCsvSource(std::string AFileName, std::vector<TSourceColumn> AColumns);

  std::size_t RowCount() const { return FRows.size(); }
  /// Columns of the file that are none of those read.
  const std::vector<std::string>& UnreadColumns() const { return FUnreadColumns; }
  TRow Row(std::size_t AnIndex) const;
  /// Ends the reading over a cell.
  /// @throws EQuillonException always
  [[noreturn]] void Refuse(std::size_t AnIndex, std::string_view AColumn, std::string_view AProblem) const;

 private:
  struct TStart {
    std::optional<TGUID> ID;
    int Number;
    int Line;
  };

  void Read();
  void ReadRows(TQuillonCSVReader& AReader, const std::vector<std::string>& AHeader);
  [[noreturn]] void RefuseAt(int ANumber, int ALine, std::string_view AColumn, std::string_view AProblem) const;

  std::string FFileName;
  std::vector<TSourceColumn> FColumns;
  std::vector<std::string> FUnreadColumns;
  std::vector<TStart> FRows;
  std::vector<TCell> FCells;  ///< row by row
};

}  // namespace uOstrel
