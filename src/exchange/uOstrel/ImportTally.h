#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

#include "Report.h"
#include "uOstrel/CsvSource.h"
#include "uOstrel/ImportColumns.h"

namespace uOstrel {

/// Counts for the report what the rows of a file do to the objects of a plan, and warns of what stands in them in vain.
class TImportTally {
 public:
  /// @param AFileName of a file of the set
  TImportTally(TVELReport& AReport, const TVELPlan& APlan, std::string_view AFileName);

  void BeginRow(const TCsvSource::TRow& ARow);
  /// Around each cell that is taken over.
  void BeginCell(TImport& AnImport);
  void EndCell(const TImport& AnImport, std::string_view AColumn, const TCell& ACell);
  void EndRow(bool AnIsNew);

 private:
  std::string Place(std::string_view AColumn) const;

  TVELReport& FReport;
  const TVELPlan& FPlan;
  std::string FFileName;
  TVELReport::TFile& FFile;
  TVELReport::TKind& FKind;
  std::unordered_set<TGUID, TGuidHash> FSeen;  ///< identifiers of the rows so far, if the report is wanted
  int FRow = 0;
  std::uint64_t FChangesBefore = 0;
  bool FHasChanged = false;
  bool FHasCleared = false;
};

}  // namespace uOstrel
