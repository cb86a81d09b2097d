#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "QuillonGuid.h"
#include "uPlandaten/Werte.h"

class TVELDataObject;

/// Value forms of the OCF files. Each call appends; nothing appended means an empty cell.
namespace uOstrel {

/// "2026-08-01"; nothing for a date of zero.
void AppendDate(std::string& ATarget, double AValue);

/// "2026-08-01T07:45:00.000+02:00", with the local offset at that very instant; nothing for a value that is not
/// above zero.
void AppendTimepoint(std::string& ATarget, double AValue);

/// "#rrggbb", system colours resolved; nothing for no colour.
void AppendColour(std::string& ATarget, TColor AValue);

/// Lower-case digits without braces; nothing for the all-zero GUID.
void AppendIdentifier(std::string& ATarget, const TGUID& AGuid);

/// A JSON string with its quotes (RFC 8259, section 7): only what must be escaped is.
void AppendJsonString(std::string& ATarget, std::string_view AText);

/// Identifier of the row for a relation between two objects; the same pair gives the same one in every run.
TGUID PairGuid(const TVELDataObject& A, const TVELDataObject& B);

/// Identifier of the gap that a change tears into the timetable.
TGUID GapGuid(const TVELDataObject& AChange);
/// Identifier of the lesson that fills the gap of an additional lesson.
TGUID ExtraLessonGuid(const TVELDataObject& AChange);

/// Names of a day: "Monday" to "Sunday"; empty for no day.
std::string_view DayName(TVELDay ADay);

/// Builds a JSON array of identifiers, each of which stands in it once unless doubles are kept.
class TIdList {
 public:
  enum class TDoubles : std::uint8_t { Dropped, Kept };

  explicit TIdList(TDoubles ADoubles = TDoubles::Dropped) : FDoubles(ADoubles) {}

  void Add(const TGUID& AGuid);
  /// The array in compact form; empty without entries.
  const std::string& Text();

 private:
  bool IsNew(const TGUID& AGuid);

  TDoubles FDoubles;
  std::string FText;
  std::vector<TGUID> FFirst;  ///< searched one by one while they are few
  std::unordered_set<std::string> FAll;
  bool FIsClosed = false;
};

/// A JSON object: one occurrence from AStart to AFinish.
void AppendOccurrence(std::string& ATarget, double AStart, double AFinish);

/// A JSON array with the one occurrence.
std::string OneTime(double AStart, double AFinish);

}  // namespace uOstrel
