#include "Synchronizer.h"

#include <cmath>
#include <utility>

#include "QuillonFileSystem.h"
#include "QuillonText.h"
#include "uPlandaten/Einstellungen.h"

namespace {

constexpr std::string_view ServerProvider = "Server";

bool IsServer(std::string_view AProvider) { return QuillonText::EqualsIgnoreCase(AProvider, ServerProvider); }

[[noreturn]] void ThrowNoServer() { throw EQuillonException("The data server is not part of this version yet."); }

}  // namespace

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
  if (IsServer(Configuration().FOcfExport.FSourceProvider)) {
    ThrowNoServer();
  }
  const std::string FileName = GetFileName();
  if (!TQuillonFileSystem::IsFile(FileName)) {
    throw EQuillonException("Local Velmora file does not exist.");
  }
  OpenPlan(FileName);
  TakeValidRange();
}

void TVELOstrelSynchronizer::SaveVelFile() {
  if (IsServer(Configuration().FOcfImport.FTargetProvider)) {
    ThrowNoServer();
  }
  FPlan.SaveToFile(GetFileName());
}
