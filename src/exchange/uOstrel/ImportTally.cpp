#include "uOstrel/ImportTally.h"

#include <type_traits>
#include <variant>

#include "QuillonText.h"

namespace uOstrel {

namespace {

bool IsEmpty(const TCell& ACell) {
  return std::visit(
      [](const auto& AValue) {
        using TValue = std::remove_cvref_t<decltype(AValue)>;
        if constexpr (std::is_same_v<TValue, TIds>) {
          return false;  // such a cell takes nothing away
        } else {
          return AValue == TValue{};
        }
      },
      ACell);
}

std::string_view WithoutExtension(std::string_view AFileName) { return AFileName.substr(0, AFileName.rfind('.')); }

}  // namespace

TImportTally::TImportTally(TVELReport& AReport, const TVELPlan& APlan, std::string_view AFileName)
    : FReport(AReport),
      FPlan(APlan),
      FFileName(AFileName),
      FFile(AReport.File(AFileName)),
      FKind(AReport.Kind(WithoutExtension(AFileName))) {}

std::string TImportTally::Place(std::string_view AColumn) const {
  return "File \"" + FFileName + "\", row " + std::to_string(FRow) + ", column " + QuillonText::Quoted(AColumn) + ": ";
}

void TImportTally::BeginRow(const TCsvSource::TRow& ARow) {
  ++FFile.Rows;
  FRow = ARow.Number;
  FHasChanged = FHasCleared = false;
  if (FReport.IsWanted() && ARow.ID && !FSeen.insert(*ARow.ID).second) {
    FReport.Warn("repeated-id", Place("Id") + QuillonGuid::Plain(*ARow.ID) + " stands in a row above, too.");
  }
}

void TImportTally::BeginCell(TImport& AnImport) {
  FChangesBefore = FPlan.ChangeCount();
  AnImport.FUnknown.clear();
}

void TImportTally::EndCell(const TImport& AnImport, std::string_view AColumn, const TCell& ACell) {
  const bool HasChanged = FPlan.ChangeCount() != FChangesBefore;
  FHasChanged = FHasChanged || HasChanged;
  const bool IsLostReference = std::holds_alternative<TGUID>(ACell) && !AnImport.FUnknown.empty();
  FHasCleared = FHasCleared || (HasChanged && (IsEmpty(ACell) || IsLostReference));
  for (const TGUID& ID : AnImport.FUnknown) {
    FReport.Warn("unknown-reference", Place(AColumn) + "the plan has no object " + QuillonGuid::Plain(ID) + ".");
  }
}

void TImportTally::EndRow(bool AnIsNew) {
  if (AnIsNew) {
    ++FKind.New;
    return;
  }
  ++(FHasChanged ? FKind.Changed : FKind.Unchanged);
  FKind.Cleared += FHasCleared ? 1 : 0;
}

}  // namespace uOstrel
