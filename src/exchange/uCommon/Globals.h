#pragma once

#include "QuillonRemoteServices/StorageService.h"
#include "QuillonRemoteServices/WorkspaceService.h"
#include "QuillonRemoting/Channels.h"
#include "Report.h"
#include "uPlandaten/Plan.h"

/// The objects that live as long as the process and that no job owns, made in one place and in this order.
class TVELGlobals {
 public:
  TVELGlobals();

  TVELPlan& Plan() { return *FPlan; }
  TVELReport& Report() { return FReport; }
  /// Tells the report of the plan that was loaded.
  void TellPlan();
  TQuillonTCPRemoteChannel& RemoteChannel() { return FRemoteChannel; }
  TQuillonRemoteClient& RemoteClient() { return FRemoteClient; }
  TQuillonRemoteWorkspace& RemoteWorkspace() { return *FRemoteWorkspace; }
  TQuillonRemoteWorkspaceServiceProxy& WorkspaceService() { return FWorkspaceService; }
  TQuillonRemoteStorageServiceProxy& StorageService() { return FStorageService; }

 private:
  TVELReport FReport;
  TQuillonDataHandle<TVELPlan> FPlan;
  TQuillonTCPRemoteChannel FRemoteChannel;
  TQuillonRemoteClient FRemoteClient{&FRemoteChannel};
  TQuillonDataHandle<TQuillonRemoteWorkspace> FRemoteWorkspace;
  TQuillonRemoteWorkspaceServiceProxy FWorkspaceService{FRemoteClient, *FRemoteWorkspace};
  TQuillonRemoteStorageServiceProxy FStorageService{FRemoteClient, *FPlan};
};
