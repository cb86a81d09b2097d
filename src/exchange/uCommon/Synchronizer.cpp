#include "Synchronizer.h"

#include <cmath>
#include <utility>

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

TVELOstrelSynchronizer::TVELOstrelSynchronizer(TVELGlobals& AGlobals, std::unique_ptr<TOcfConfiguration> AConfiguration)
    : TVELOstrelService(std::move(AConfiguration)), FGlobals(AGlobals), FPlan(AGlobals.Plan()) {}

void TVELOstrelSynchronizer::TakeValidRange() {
  FValidFrom = std::trunc(FPlan.FEinstellungen->FGueltigVon);
  FValidTo = std::trunc(FPlan.FEinstellungen->FGueltigBis) + 1;
}

void TVELOstrelSynchronizer::LoadVelFile() {
  // The export's provider decides for the import too.
  if (ServerSource::IsServer(Configuration().FOcfExport.FSourceProvider)) {
    ServerSource::Load(FGlobals, Options());
  } else {
    const std::string FileName = GetFileName();
    LocalSource::Load(FileName, [&] { OpenPlan(FileName); });
  }
  TakeValidRange();
}

void TVELOstrelSynchronizer::SaveVelFile() {
  if (ServerSource::IsServer(Configuration().FOcfImport.FTargetProvider)) {
    ServerSource::Store(FGlobals, Options());
  } else if (GetFileName().empty()) {
    // A plan from the server, whose settings forgot where it goes: the storage would do nothing, without an error.
    throw EQuillonException(
        "The plan was not saved: set \"targetProvider\" to \"Server\", or \"targetFileName\", in \"ocfImport\".");
  } else {
    FPlan.SaveToFile(GetFileName());
  }
}
