#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "QuillonRemoteWorkspaces/Objects.h"

class TQuillonRemoteWorkspaceTenant;
class TQuillonRemoteWorkspaceUser;
class TQuillonRemoteWorkspaceUserGroup;

using TQuillonRemoteWorkspaceTenantList =
    TQuillonRemoteWorkspaceNamedList<TQuillonRemoteWorkspaceTenant, "TQuillonRemoteWorkspaceTenantList">;
using TQuillonRemoteWorkspaceUserList =
    TQuillonRemoteWorkspaceNamedList<TQuillonRemoteWorkspaceUser, "TQuillonRemoteWorkspaceUserList">;
using TQuillonRemoteWorkspaceUserGroupList =
    TQuillonRemoteWorkspaceNamedList<TQuillonRemoteWorkspaceUserGroup, "TQuillonRemoteWorkspaceUserGroupList">;

enum class TVELUserType : std::uint8_t { utTeacher, utStudent, utClass, utAdmin, utStaff, utGast };

/// Who the server knows.
class TQuillonRemoteWorkspaceParty : public TQuillonRemoteWorkspaceObject {
 public:
  static const TQuillonDataClass& Class();

  bool FEnabled = true;
  std::string FName;

 protected:
  std::string DisplayArgument() const override { return FName; }
};

/// A school, say, with files and users of its own.
class TQuillonRemoteWorkspaceTenant final : public TQuillonRemoteWorkspaceParty {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FDescription;
};

class TQuillonRemoteWorkspaceUser final : public TQuillonRemoteWorkspaceParty {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  /// Empty for a number that a file has and no type.
  std::string_view UserTypeAsString() const;
  /// Whether the group is among the user's memberships, or the user among the group's members: either says it.
  bool IsMemberOf(const TQuillonRemoteWorkspaceUserGroup& AGroup) const;

  bool FCanChangePassword = false;
  std::string FEMail;
  std::string FFirstName;
  bool FAdmin = false;  ///< of the tenant, or of the whole server without one
  TQuillonRemoteWorkspaceUserGroupList FMemberships{this};
  std::string FMiddleName;
  std::string FLastname;
  std::string FPassword;  ///< as it is typed
  std::string FRemark;
  std::string FSite;
  TVELUserType FUserType = TVELUserType::utTeacher;
  TQuillonRemoteWorkspaceTenant* FTenant = nullptr;
};

class TQuillonRemoteWorkspaceUserGroup final : public TQuillonRemoteWorkspaceParty {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  /// Takes over whom another group refers to, its members and its tenant; its name and text stay there. Of a group in
  /// another workspace those count that have the same identities here.
  void CopyReferences(const TQuillonRemoteWorkspaceUserGroup& ASource);

  std::string FDescription;
  TQuillonRemoteWorkspaceUserList FMembers{this};
  TQuillonRemoteWorkspaceTenant* FTenant = nullptr;
};
