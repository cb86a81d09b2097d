#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "QuillonRemoteWorkspaces/Objects.h"

class TQuillonRemoteWorkspace;
class TQuillonRemoteWorkspaceAbstractFile;
class TQuillonRemoteWorkspaceUser;
class TQuillonRemoteWorkspaceUserGroup;

/// What a policy can be set on.
enum TQuillonRemoteWorkspacePolicyScopeValue : std::uint8_t { psvFileSystem, psvFolder, psvDocument };
using TQuillonRemoteWorkspacePolicyScope = TQuillonSet<TQuillonRemoteWorkspacePolicyScopeValue, std::uint8_t>;

/// A value that users can choose for a policy.
class TQuillonRemoteWorkspacePolicyValue final : public TQuillonRemoteWorkspaceObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::int32_t FValue = 0;
  std::string FValueText;

 protected:
  std::string DisplayArgument() const override { return FValueText; }
};

using TQuillonRemoteWorkspacePolicyValueList =
    TQuillonRemoteWorkspaceList<TQuillonRemoteWorkspacePolicyValue, "TQuillonRemoteWorkspacePolicyValueList">;

/// Something that users may do with files, to a degree that is a number.
class TQuillonRemoteWorkspacePolicy final : public TQuillonRemoteWorkspaceObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::int32_t FPolicyDefaultValue = 0;  ///< where no file up to the root has another
  std::int32_t FPolicyGroup = 0;
  std::string FPolicyName;
  std::string FPolicyParent;  ///< name of the policy that counts on the parent folder
  TQuillonRemoteWorkspacePolicyScope FPolicyScope;
  std::string FPolicyText;
  TQuillonRemoteWorkspacePolicyValueList FPolicyValues{this, TQuillonDataList::TItems::Owned};

 protected:
  std::string DisplayArgument() const override { return FPolicyName; }
};

class TQuillonRemoteWorkspacePolicyList final
    : public TQuillonRemoteWorkspaceList<TQuillonRemoteWorkspacePolicy, "TQuillonRemoteWorkspacePolicyList"> {
 public:
  using TQuillonRemoteWorkspaceList::TQuillonRemoteWorkspaceList;

  /// The first one of the name, whose letters count as they stand; null if there is none.
  const TQuillonRemoteWorkspacePolicy* FindPolicy(std::string_view APolicyName) const;
};

/// The policies that the server knows, and what they are for users and groups on files.
class TQuillonRemoteWorkspacePolicyManager final : public TQuillonRemoteWorkspaceObject {
 public:
  using TUser = TQuillonRemoteWorkspaceUser;
  using TUserGroup = TQuillonRemoteWorkspaceUserGroup;
  using TFile = TQuillonRemoteWorkspaceAbstractFile;

  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  /// What is stored on the file itself; 0 if nothing is.
  static std::int32_t GetValue(const TUser& AUser, const TFile& AFile, std::string_view APolicyName);
  static std::int32_t GetValue(const TUserGroup& AGroup, const TFile& AFile, std::string_view APolicyName);

  /// What counts on the file: the value stored there; without one, for a user, the highest of their groups; without
  /// that, what counts on the parent folder under the parent policy. Above the root the policy's default value counts.
  /// @param AFile null stands for what is above the root
  /// @return -1 for a policy that there is not, a parent policy included
  std::int32_t GetDeepValue(const TUser& AUser, const TFile* AFile, std::string_view APolicyName) const;
  std::int32_t GetDeepValue(const TUserGroup& AGroup, const TFile* AFile, std::string_view APolicyName) const;

  /// Stores a value above 0; a lower one takes out what is stored. Does nothing without an access on the file.
  static void SetValue(const TUser& AUser, const TFile& AFile, std::string_view APolicyName, std::int32_t AValue);
  static void SetValue(const TUserGroup& AGroup, const TFile& AFile, std::string_view APolicyName, std::int32_t AValue);

  /// The workspace of the policies; null outside of one.
  TQuillonRemoteWorkspace* Workspace() const;

  TQuillonRemoteWorkspacePolicyList FPolicies{this, TQuillonDataList::TItems::Owned};

 private:
  template <class TParty>
  std::int32_t DeepValueOf(const TParty& AParty, const TFile* AFile, std::string_view APolicyName) const;
  std::int32_t HighestOfGroups(const TUser& AUser, const TFile& AFile, std::string_view APolicyName) const;
  static std::int32_t HighestOfGroups(const TUserGroup& /*AGroup*/, const TFile& /*AFile*/,
                                      std::string_view /*APolicyName*/) {
    return 0;
  }
};
