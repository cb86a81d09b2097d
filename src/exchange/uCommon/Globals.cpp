#include "Globals.h"

namespace {

TQuillonDataHandle<TVELPlan> MakePlan() {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  return QuillonDataObjects::CreateStorage<TVELPlan>();
}

}  // namespace

TVELGlobals::TVELGlobals() : FPlan(MakePlan()) {
  FRemoteClient.FVersion = TVELPlan::CurrentRelease;
}
