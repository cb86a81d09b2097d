#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "QuillonDataObjects/Storage.h"
#include "QuillonRemoteWorkspaces/Files.h"
#include "QuillonRemoteWorkspaces/Parties.h"
#include "QuillonRemoteWorkspaces/Policies.h"

namespace QuillonRemoteWorkspaces {

/// Name of the user that CreateDefaultAdminUser makes.
inline constexpr std::string_view DefaultAdminName = "Administrator";

/// Makes the classes of workspaces known to readers.
void RegisterClasses(TQuillonDataClassRegistry& ARegistry);

}  // namespace QuillonRemoteWorkspaces

/// All that a data server keeps beside the plans themselves: tenants, users, groups, the tree of files, and who may do
/// what with them.
class TQuillonRemoteWorkspace : public TQuillonDataStorage {
 public:
  using TQuillonDataStorage::TQuillonDataStorage;

  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  /// A workspace that cannot be read whole is empty afterwards.
  /// @throws EQuillonDataObjectReaderError also for an object that lies in two places, and what readers raise
  void ReadProperties(TQuillonDataObjectReader& AReader) override;

  /// An administrator of the whole server, under DefaultAdminName and without a password: until one is set, nobody
  /// passes as this user. @return the user; the one of that name if there is one, as it is
  TQuillonRemoteWorkspaceUser& CreateDefaultAdminUser();
  /// Whether the name is that of a user with this password, who is enabled, and whose tenant is. A user without a
  /// password does not pass. How long the answer takes does not tell how much of the password is right.
  bool ValidateUser(std::string_view AUserName, std::string_view APassword) const;

  std::string FDataformatVersion;
  std::string FProductVersion;
  TQuillonOwned<TQuillonRemoteWorkspaceFileSpace> FFileSpace;
  TQuillonOwned<TQuillonRemoteWorkspacePolicyManager> FPolicyManager;
  std::string FRootFolder;  ///< where the files lie on the server's disk
  TQuillonRemoteWorkspaceTenantList FTenants{this, TQuillonDataList::TItems::Owned};
  TQuillonRemoteWorkspaceUserList FUsers{this, TQuillonDataList::TItems::Owned};
  TQuillonRemoteWorkspaceUserGroupList FUserGroups{this, TQuillonDataList::TItems::Owned};

 protected:
  void InitProperties() override;
  void ClearProperties() override;

 private:
  void CheckPlaces();
};
