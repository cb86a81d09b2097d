#include "Synchronizer.h"

#include <cmath>
#include <utility>

#include "LocalSource.h"
#include "uPlandaten/Einstellungen.h"

TVELOstrelService::TVELOstrelService(std::unique_ptr<TOcfConfiguration> AConfiguration)
    : FConfiguration(std::move(AConfiguration)) {}

TOcfConfiguration& TVELOstrelService::Configuration() const {
  if (FConfiguration == nullptr) {
    ThrowNoConfiguration();
  }
  return *FConfiguration;
}

void TVELOstrelService::ThrowNoConfiguration() {
  throw EQuillonException(
      "Invalid access to an absent configuration: OCF jobs take their settings from the command line (-s), not from a "
      "configuration file (-c).");
}

TVELOstrelSynchronizer::TVELOstrelSynchronizer(TVELPlan& APlan, std::unique_ptr<TOcfConfiguration> AConfiguration)
    : TVELOstrelService(std::move(AConfiguration)), FPlan(APlan) {}

void TVELOstrelSynchronizer::TakeValidRange() {
  FValidFrom = std::trunc(FPlan.FEinstellungen->FGueltigVon);
  FValidTo = std::trunc(FPlan.FEinstellungen->FGueltigBis) + 1;
}

void TVELOstrelSynchronizer::LoadVelFile() {
  // The export's provider decides for the import too.
  LocalSource::RequireLocal(Configuration().FOcfExport.FSourceProvider);
  const std::string FileName = GetFileName();
  LocalSource::RequireFile(FileName);
  OpenPlan(FileName);
  TakeValidRange();
}

void TVELOstrelSynchronizer::SaveVelFile() {
  LocalSource::RequireLocal(Configuration().FOcfImport.FTargetProvider);
  FPlan.SaveToFile(GetFileName());
}
