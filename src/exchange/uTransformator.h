#pragma once

#include <string>

#include "Globals.h"

/// Gives the objects of a data file that other systems match by identifier new ones, so that a copy of the file is
/// another school's for them.
class TVELTransformator {
 public:
  explicit TVELTransformator(TVELGlobals& AGlobals) : FReport(AGlobals.Report()), FPlan(AGlobals.Plan()) {}
  TVELTransformator(const TVELTransformator&) = delete;
  TVELTransformator& operator=(const TVELTransformator&) = delete;
  ~TVELTransformator() { FPlan.CloseFile(); }

  /// Loads the file and holds it, so that nobody else changes it up to the save.
  /// @throws EQuillonException "Local Velmora file does not exist.", and what the load raises
  void LoadFromFile(const std::string& AFileName);
  /// A random identifier for each class, each course with its appointments, and each change; all other objects keep
  /// theirs. No object counts as changed by it, and references follow.
  void NewGuids();
  /// Saves the plan under the name that it was loaded from.
  void SaveToFile() { FPlan.SaveToFile(); }
  void Abort() { FAborted = true; }

 private:
  TVELReport& FReport;
  TVELPlan& FPlan;
  bool FAborted = false;
};
