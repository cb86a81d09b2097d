#include "Globals.h"

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
