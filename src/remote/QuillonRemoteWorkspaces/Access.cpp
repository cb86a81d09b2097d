#include "QuillonRemoteWorkspaces/Access.h"

#include "QuillonRemoteWorkspaces/Parties.h"

const TQuillonDataClass& TQuillonRemoteWorkspacePermission::Class() {
  using T = TQuillonRemoteWorkspacePermission;
  // clang-format off
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceObject>("TQuillonRemoteWorkspacePermission", "Berechtigung \"%s\"")
      .String<&T::FPolicyName>("PolicyName")
      .LongInt<&T::FValue>("Value");
  // clang-format on
  return Class;
}

TQuillonRemoteWorkspacePermission* TQuillonRemoteWorkspacePermissionList::FindPolicy(
    std::string_view APolicyName) const {
  const auto Found = std::find_if(begin(), end(), [&](const TQuillonRemoteWorkspacePermission* AnItem) {
    return AnItem != nullptr && AnItem->FPolicyName == APolicyName;
  });
  return Found == end() ? nullptr : *Found;
}

const TQuillonDataClass& TQuillonRemoteWorkspaceAccess::Class() {
  using T = TQuillonRemoteWorkspaceAccess;
  static const TQuillonDataClass Class =
      DescribeAbstractClass<T, TQuillonRemoteWorkspaceObject>("TQuillonRemoteWorkspaceAccess")
          .List<&T::FPermissions>("Permissions");
  return Class;
}

const TQuillonDataClass& TQuillonRemoteWorkspaceUserAccess::Class() {
  using T = TQuillonRemoteWorkspaceUserAccess;
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceAccess>("TQuillonRemoteWorkspaceUserAccess", "Benutzerzugriff \"%s\"")
          .Reference<&T::FUser>("User");
  return Class;
}

std::string TQuillonRemoteWorkspaceUserAccess::DisplayArgument() const {
  return FUser == nullptr ? std::string() : FUser->FName;
}

const TQuillonDataClass& TQuillonRemoteWorkspaceUserGroupAccess::Class() {
  using T = TQuillonRemoteWorkspaceUserGroupAccess;
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceAccess>("TQuillonRemoteWorkspaceUserGroupAccess", "Gruppenzugriff \"%s\"")
          .Reference<&T::FUserGroup>("UserGroup");
  return Class;
}

std::string TQuillonRemoteWorkspaceUserGroupAccess::DisplayArgument() const {
  return FUserGroup == nullptr ? std::string() : FUserGroup->FName;
}
