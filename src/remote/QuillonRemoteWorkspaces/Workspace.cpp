#include "QuillonRemoteWorkspaces/Workspace.h"

#include "QuillonDataObjects/ReaderWriter.h"

namespace QuillonRemoteWorkspaces {

template <class TItem>
const TQuillonDataClass& ItemClassOf() {
  return TItem::Class();
}

namespace {

// The lists know their items by name only: this is where what they hold is known.
template <class... TLists>
void RegisterLists(TQuillonDataClassRegistry& ARegistry) {
  (ARegistry.AddListClass(TLists::Class(), &ItemClassOf<typename TLists::TItemClass>), ...);
}

/// Looks at each byte of the right one, whatever the given one is.
bool IsSame(std::string_view ARight, std::string_view AGiven) {
  unsigned Difference = ARight.size() == AGiven.size() ? 0 : 1;
  for (std::size_t I = 0; I < ARight.size(); ++I) {
    const char Given = I < AGiven.size() ? AGiven[I] : '\0';
    Difference |= static_cast<unsigned char>(ARight[I] ^ Given);
  }
  return Difference == 0;
}

}  // namespace

void RegisterClasses(TQuillonDataClassRegistry& ARegistry) {
  ARegistry
      .AddClasses<TQuillonRemoteWorkspacePermission, TQuillonRemoteWorkspaceUserAccess,
                  TQuillonRemoteWorkspaceUserGroupAccess, TQuillonRemoteWorkspaceDocument,
                  TQuillonRemoteWorkspaceFolder, TQuillonRemoteWorkspaceFileSpace, TQuillonRemoteWorkspaceTenant,
                  TQuillonRemoteWorkspaceUser, TQuillonRemoteWorkspaceUserGroup, TQuillonRemoteWorkspacePolicyValue,
                  TQuillonRemoteWorkspacePolicy, TQuillonRemoteWorkspacePolicyManager, TQuillonRemoteWorkspace>();
  RegisterLists<TQuillonRemoteWorkspacePermissionList, TQuillonRemoteWorkspaceUserAccessList,
                TQuillonRemoteWorkspaceUserGroupAccessList, TQuillonRemoteWorkspaceDocumentList,
                TQuillonRemoteWorkspaceFolderList, TQuillonRemoteWorkspaceTenantList, TQuillonRemoteWorkspaceUserList,
                TQuillonRemoteWorkspaceUserGroupList, TQuillonRemoteWorkspacePolicyValueList,
                TQuillonRemoteWorkspacePolicyList>(ARegistry);
}

}  // namespace QuillonRemoteWorkspaces

const TQuillonDataClass& TQuillonRemoteWorkspace::Class() {
  using T = TQuillonRemoteWorkspace;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TQuillonDataStorage>("TQuillonRemoteWorkspace")
      .String<&T::FDataformatVersion>("DataformatVersion")
      .String<&T::FProductVersion>("ProductVersion")
      .Object<&T::FFileSpace>("FileSpace")
      .Object<&T::FPolicyManager>("PolicyManager")
      .String<&T::FRootFolder>("RootFolder")
      .List<&T::FTenants>("Tenants")
      .List<&T::FUsers>("Users")
      .List<&T::FUserGroups>("UserGroups");
  // clang-format on
  return Class;
}

void TQuillonRemoteWorkspace::InitProperties() {
  TQuillonDataStorage::InitProperties();
  FFileSpace.Take(QuillonDataObjects::Create<TQuillonRemoteWorkspaceFileSpace>(this), *this);
  FPolicyManager.Take(QuillonDataObjects::Create<TQuillonRemoteWorkspacePolicyManager>(this), *this);
}

void TQuillonRemoteWorkspace::ClearProperties() {
  TQuillonDataStorage::ClearProperties();
  // The files refer to users and tenants.
  QuillonDataObjects::ResetRows(*FFileSpace);
  QuillonDataObjects::ResetRows(*FPolicyManager);
  QuillonDataObjects::ResetRows(*this);
}

void TQuillonRemoteWorkspace::ReadProperties(TQuillonDataObjectReader& AReader) {
  try {
    TQuillonDataStorage::ReadProperties(AReader);
    CheckPlaces();
  } catch (...) {
    Clear();
    throw;
  }
}

void TQuillonRemoteWorkspace::CheckPlaces() {
  for (const TQuillonDataAbstractObject* Any : Registry().Objects()) {
    const auto* const Object = dynamic_cast<const TQuillonDataObject*>(Any);
    if (Object != nullptr && TQuillonDataHolder::IsShared(*Object)) {
      throw EQuillonDataObjectReaderError(Object->GetDisplayName() + " liegt an zwei Stellen.");
    }
  }
}

TQuillonRemoteWorkspaceUser& TQuillonRemoteWorkspace::CreateDefaultAdminUser() {
  constexpr std::string_view Name = QuillonRemoteWorkspaces::DefaultAdminName;
  if (TQuillonRemoteWorkspaceUser* const Known = FUsers.Find(Name)) {
    return *Known;
  }
  auto& User = *QuillonDataObjects::Create<TQuillonRemoteWorkspaceUser>(this);
  User.FName = User.FLastname = Name;
  User.FAdmin = User.FCanChangePassword = true;
  User.Set(User.FUserType, TVELUserType::utAdmin);
  FUsers.Add(&User);
  return User;
}

bool TQuillonRemoteWorkspace::ValidateUser(std::string_view AUserName, std::string_view APassword) const {
  const TQuillonRemoteWorkspaceUser* const User = FUsers.Find(AUserName);
  if (User == nullptr || User->FPassword.empty() || !User->FEnabled) {
    return false;
  }
  const bool MayPass = User->FTenant == nullptr || User->FTenant->FEnabled;
  return QuillonRemoteWorkspaces::IsSame(User->FPassword, APassword) && MayPass;
}
