#include "QuillonRemoteWorkspaces/Parties.h"

#include <array>

namespace {

constexpr std::array<std::string_view, 6> UserTypes = {"Lehrer",        "Schüler",     "Klasse",
                                                       "Administrator", "Mitarbeiter", "Gast"};

}  // namespace

const TQuillonDataClass& TQuillonRemoteWorkspaceParty::Class() {
  using T = TQuillonRemoteWorkspaceParty;
  // clang-format off
  static const TQuillonDataClass Class =
      DescribeAbstractClass<T, TQuillonRemoteWorkspaceObject>("TQuillonRemoteWorkspaceParty")
      .Boolean<&T::FEnabled>("Enabled", true)
      .String<&T::FName>("Name");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TQuillonRemoteWorkspaceTenant::Class() {
  using T = TQuillonRemoteWorkspaceTenant;
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceParty>("TQuillonRemoteWorkspaceTenant", "Mandant \"%s\"")
          .String<&T::FDescription>("Description");
  return Class;
}

const TQuillonDataClass& TQuillonRemoteWorkspaceUser::Class() {
  using T = TQuillonRemoteWorkspaceUser;
  // clang-format off
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceParty>("TQuillonRemoteWorkspaceUser", "Benutzer \"%s\"")
      .Boolean<&T::FCanChangePassword>("CanChangePassword")
      .String<&T::FEMail>("EMail")
      .String<&T::FFirstName>("FirstName")
      .Boolean<&T::FAdmin>("Admin")
      .List<&T::FMemberships>("Memberships")
      .String<&T::FMiddleName>("MiddleName")
      .String<&T::FLastname>("Lastname")
      .String<&T::FPassword>("Password")
      .String<&T::FRemark>("Remark")
      .String<&T::FSite>("Site")
      .Byte<&T::FUserType>("UserType")
      .Reference<&T::FTenant>("Tenant");
  // clang-format on
  return Class;
}

std::string_view TQuillonRemoteWorkspaceUser::UserTypeAsString() const {
  const auto Type = static_cast<std::size_t>(FUserType);
  return Type < UserTypes.size() ? UserTypes.at(Type) : std::string_view();
}

bool TQuillonRemoteWorkspaceUser::IsMemberOf(const TQuillonRemoteWorkspaceUserGroup& AGroup) const {
  return FMemberships.Holds(&AGroup) || AGroup.FMembers.Holds(this);
}

const TQuillonDataClass& TQuillonRemoteWorkspaceUserGroup::Class() {
  using T = TQuillonRemoteWorkspaceUserGroup;
  // clang-format off
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceParty>("TQuillonRemoteWorkspaceUserGroup", "Benutzergruppe \"%s\"")
      .String<&T::FDescription>("Description")
      .List<&T::FMembers>("Members")
      .Reference<&T::FTenant>("Tenant");
  // clang-format on
  return Class;
}

void TQuillonRemoteWorkspaceUserGroup::CopyReferences(const TQuillonRemoteWorkspaceUserGroup& ASource) {
  FMembers.Assign(ASource.FMembers);
  Set(FTenant, static_cast<TQuillonRemoteWorkspaceTenant*>(ResolveReference(nullptr, ASource.FTenant)));
}
