#include "QuillonRemoteWorkspaces/Policies.h"

#include <algorithm>

#include "QuillonRemoteWorkspaces/Files.h"
#include "QuillonRemoteWorkspaces/Parties.h"
#include "QuillonRemoteWorkspaces/Workspace.h"

namespace {

using TFile = TQuillonRemoteWorkspaceAbstractFile;

template <class TParty>
std::int32_t ValueOf(const TParty& AParty, const TFile& AFile, std::string_view APolicyName) {
  const auto* const Access = AFile.FindAccess(AParty);
  const auto* const Permission = Access == nullptr ? nullptr : Access->FPermissions.FindPolicy(APolicyName);
  return Permission == nullptr ? 0 : Permission->FValue;
}

template <class TParty>
void StoreValue(const TParty& AParty, const TFile& AFile, std::string_view APolicyName, std::int32_t AValue) {
  auto* const Access = AFile.FindAccess(AParty);
  if (Access == nullptr) {
    return;
  }
  auto* Permission = Access->FPermissions.FindPolicy(APolicyName);
  if (AValue < 1) {
    if (Permission != nullptr) {
      Access->FPermissions.Remove(Permission);
    }
    return;
  }
  if (Permission == nullptr) {
    Permission = QuillonDataObjects::Create<TQuillonRemoteWorkspacePermission>(Access->Root());
    Permission->FPolicyName = APolicyName;
    Permission->Set(Permission->FValue, AValue);
    Access->FPermissions.Add(Permission);
  }
  Permission->Set(Permission->FValue, AValue);
}

}  // namespace

const TQuillonDataClass& TQuillonRemoteWorkspacePolicyValue::Class() {
  using T = TQuillonRemoteWorkspacePolicyValue;
  // clang-format off
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceObject>("TQuillonRemoteWorkspacePolicyValue", "Richtlinienwert \"%s\"")
      .LongInt<&T::FValue>("Value")
      .String<&T::FValueText>("ValueText");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TQuillonRemoteWorkspacePolicy::Class() {
  using T = TQuillonRemoteWorkspacePolicy;
  // clang-format off
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceObject>("TQuillonRemoteWorkspacePolicy", "Richtlinie \"%s\"")
      .LongInt<&T::FPolicyDefaultValue>("PolicyDefaultValue")
      .LongInt<&T::FPolicyGroup>("PolicyGroup")
      .String<&T::FPolicyName>("PolicyName")
      .String<&T::FPolicyParent>("PolicyParent")
      .Byte<&T::FPolicyScope>("PolicyScope")
      .String<&T::FPolicyText>("PolicyText")
      .List<&T::FPolicyValues>("PolicyValues");
  // clang-format on
  return Class;
}

const TQuillonRemoteWorkspacePolicy* TQuillonRemoteWorkspacePolicyList::FindPolicy(std::string_view APolicyName) const {
  const auto Found = std::find_if(begin(), end(), [&](const TQuillonRemoteWorkspacePolicy* AnItem) {
    return AnItem != nullptr && AnItem->FPolicyName == APolicyName;
  });
  return Found == end() ? nullptr : *Found;
}

const TQuillonDataClass& TQuillonRemoteWorkspacePolicyManager::Class() {
  using T = TQuillonRemoteWorkspacePolicyManager;
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceObject>("TQuillonRemoteWorkspacePolicyManager", "Richtlinien")
          .List<&T::FPolicies>("Policies");
  return Class;
}

std::int32_t TQuillonRemoteWorkspacePolicyManager::GetValue(const TUser& AUser, const TFile& AFile,
                                                            std::string_view APolicyName) {
  return ValueOf(AUser, AFile, APolicyName);
}

std::int32_t TQuillonRemoteWorkspacePolicyManager::GetValue(const TUserGroup& AGroup, const TFile& AFile,
                                                            std::string_view APolicyName) {
  return ValueOf(AGroup, AFile, APolicyName);
}

template <class TParty>
std::int32_t TQuillonRemoteWorkspacePolicyManager::DeepValueOf(const TParty& AParty, const TFile* AFile,
                                                               std::string_view APolicyName) const {
  // Each step is a folder nearer to the root, whatever the parents of the policies are.
  for (const TFile* File = AFile;; File = File->ParentFolder()) {
    const TQuillonRemoteWorkspacePolicy* const Policy = FPolicies.FindPolicy(APolicyName);
    if (Policy == nullptr) {
      return -1;
    }
    if (File == nullptr) {
      return Policy->FPolicyDefaultValue;
    }
    std::int32_t Value = ValueOf(AParty, *File, APolicyName);
    if (Value == 0) {
      Value = HighestOfGroups(AParty, *File, APolicyName);
    }
    if (Value != 0) {
      return Value;
    }
    APolicyName = Policy->FPolicyParent;
  }
}

std::int32_t TQuillonRemoteWorkspacePolicyManager::HighestOfGroups(const TUser& AUser, const TFile& AFile,
                                                                   std::string_view APolicyName) const {
  std::int32_t Highest = 0;
  for (const TQuillonRemoteWorkspaceUserGroupAccess* Access : AFile.FUserGroupAccess) {
    if (Access->FUserGroup != nullptr && AUser.IsMemberOf(*Access->FUserGroup)) {
      Highest = std::max(Highest, GetDeepValue(*Access->FUserGroup, &AFile, APolicyName));
    }
  }
  return Highest;
}

std::int32_t TQuillonRemoteWorkspacePolicyManager::GetDeepValue(const TUser& AUser, const TFile* AFile,
                                                                std::string_view APolicyName) const {
  return DeepValueOf(AUser, AFile, APolicyName);
}

std::int32_t TQuillonRemoteWorkspacePolicyManager::GetDeepValue(const TUserGroup& AGroup, const TFile* AFile,
                                                                std::string_view APolicyName) const {
  return DeepValueOf(AGroup, AFile, APolicyName);
}

void TQuillonRemoteWorkspacePolicyManager::SetValue(const TUser& AUser, const TFile& AFile,
                                                    std::string_view APolicyName, std::int32_t AValue) {
  StoreValue(AUser, AFile, APolicyName, AValue);
}

void TQuillonRemoteWorkspacePolicyManager::SetValue(const TUserGroup& AGroup, const TFile& AFile,
                                                    std::string_view APolicyName, std::int32_t AValue) {
  StoreValue(AGroup, AFile, APolicyName, AValue);
}

TQuillonRemoteWorkspace* TQuillonRemoteWorkspacePolicyManager::Workspace() const {
  return dynamic_cast<TQuillonRemoteWorkspace*>(Storage());
}
