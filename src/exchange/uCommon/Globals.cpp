#include "Globals.h"

#include "QuillonText.h"

namespace {

TQuillonDataHandle<TVELPlan> MakePlan() {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  return QuillonDataObjects::CreateStorage<TVELPlan>();
}

TQuillonDataHandle<TQuillonRemoteWorkspace> MakeWorkspace() {
  constexpr std::int32_t ReadersCount = 1000;
  QuillonRemoteWorkspaces::RegisterClasses(TQuillonDataClassRegistry::Instance());
  return QuillonDataObjects::CreateStorage<TQuillonRemoteWorkspace>(ReadersCount);
}

}  // namespace

TVELGlobals::TVELGlobals() : FPlan(MakePlan()), FRemoteWorkspace(MakeWorkspace()) {
  FRemoteClient.FVersion = TVELPlan::CurrentRelease;
  FWorkspaceService.FServerPolling = true;
}

void TVELGlobals::TellPlan() {
  if (!FReport.IsWanted()) {
    return;
  }
  FReport.FDataRelease = FPlan->FLoadedRelease;
  FReport.FDataProgram = FPlan->FProductVersion;
  FReport.FDataVersion = FPlan->FFileVersion;
  if (TQuillonRelease(FPlan->FLoadedRelease) == TQuillonRelease()) {
    FReport.Warn("unknown-release",
                 "The data file has no release that is known: " + QuillonText::Quoted(FPlan->FLoadedRelease) + ".");
  }
  // What an upgrade has put out of use is of no concern.
  const bool IsCurrent = FPlan->FLoadedRelease == TVELPlan::CurrentRelease;
  for (const TQuillonDataObject* Object : IsCurrent ? FPlan->Registry().Unheld() : std::vector<TQuillonDataObject*>()) {
    FReport.Warn("reference-without-target", "The data file refers to " + std::string(Object->DataClass().Tag()) + " " +
                                                 QuillonGuid::Braced(Object->ID()) + ", which it does not have.");
  }
}
