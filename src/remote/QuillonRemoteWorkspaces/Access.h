#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "QuillonRemoteWorkspaces/Objects.h"

class TQuillonRemoteWorkspaceUser;
class TQuillonRemoteWorkspaceUserGroup;

/// The value of a policy for somebody on a file.
class TQuillonRemoteWorkspacePermission final : public TQuillonRemoteWorkspaceObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FPolicyName;
  std::int32_t FValue = 0;

 protected:
  std::string DisplayArgument() const override { return FPolicyName; }
};

class TQuillonRemoteWorkspacePermissionList final
    : public TQuillonRemoteWorkspaceList<TQuillonRemoteWorkspacePermission, "TQuillonRemoteWorkspacePermissionList"> {
 public:
  using TQuillonRemoteWorkspaceList::TQuillonRemoteWorkspaceList;

  /// The first one of the policy; null if there is none.
  TQuillonRemoteWorkspacePermission* FindPolicy(std::string_view APolicyName) const;
};

/// What somebody may do with the file that the access lies in.
class TQuillonRemoteWorkspaceAccess : public TQuillonRemoteWorkspaceObject {
 public:
  static const TQuillonDataClass& Class();

  TQuillonRemoteWorkspacePermissionList FPermissions{this, TQuillonDataList::TItems::Owned};
};

class TQuillonRemoteWorkspaceUserAccess final : public TQuillonRemoteWorkspaceAccess {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TQuillonRemoteWorkspaceUser* FUser = nullptr;  ///< null for one who is gone

 protected:
  std::string DisplayArgument() const override;
};

class TQuillonRemoteWorkspaceUserGroupAccess final : public TQuillonRemoteWorkspaceAccess {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TQuillonRemoteWorkspaceUserGroup* FUserGroup = nullptr;  ///< null for one that is gone

 protected:
  std::string DisplayArgument() const override;
};

using TQuillonRemoteWorkspaceUserAccessList =
    TQuillonRemoteWorkspaceList<TQuillonRemoteWorkspaceUserAccess, "TQuillonRemoteWorkspaceUserAccessList">;
using TQuillonRemoteWorkspaceUserGroupAccessList =
    TQuillonRemoteWorkspaceList<TQuillonRemoteWorkspaceUserGroupAccess, "TQuillonRemoteWorkspaceUserGroupAccessList">;
