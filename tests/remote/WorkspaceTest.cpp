#include <gmock/gmock.h>

#include <array>
#include <fstream>
#include <sstream>

#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonDataObjects/Registry.h"
#include "QuillonRemoteWorkspaces/UserWorkspace.h"
#include "QuillonRemoteWorkspaces/Workspace.h"
#include "data/DataRows.h"
#include "data/PlainContent.h"

namespace {

using DataRows::TDetail;
using QuillonDataObjects::Create;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using TDocument = TQuillonRemoteWorkspaceDocument;
using TFolder = TQuillonRemoteWorkspaceFolder;
using TGroup = TQuillonRemoteWorkspaceUserGroup;
using TPolicies = TQuillonRemoteWorkspacePolicyManager;
using TTenant = TQuillonRemoteWorkspaceTenant;
using TUser = TQuillonRemoteWorkspaceUser;

/// A workspace, and ways to put something into it.
class WorkspaceTest : public ::testing::Test {
 protected:
  WorkspaceTest() { QuillonRemoteWorkspaces::RegisterClasses(TQuillonDataClassRegistry::Instance()); }

  template <class TList>
  auto& Add(TList& AList, std::string_view AName) {
    auto& Item = *Create<typename TList::TItemClass>(FWorkspace.get());
    if constexpr (requires { Item.FName; }) {
      Item.FName = AName;
    }
    AList.Add(&Item);
    return Item;
  }
  void AddPolicy(std::string_view AName, std::string_view AParent, std::int32_t ADefault) {
    auto& Policy = Add(FWorkspace->FPolicyManager->FPolicies, "");
    Policy.FPolicyName = AName;
    Policy.FPolicyParent = AParent;
    Policy.FPolicyDefaultValue = ADefault;
  }
  /// An access of the user to the file, with the value unless that is 0.
  void Allow(TQuillonRemoteWorkspaceAbstractFile& AFile, TUser& AUser, std::int32_t AValue) {
    Add(AFile.FUserAccess, "").FUser = &AUser;
    TPolicies::SetValue(AUser, AFile, "read", AValue);
  }
  void Allow(TQuillonRemoteWorkspaceAbstractFile& AFile, TGroup& AGroup, std::int32_t AValue) {
    Add(AFile.FUserGroupAccess, "").FUserGroup = &AGroup;
    TPolicies::SetValue(AGroup, AFile, "read", AValue);
  }
  std::string Content() { return DataRows::Snapshot(*FWorkspace, TDetail::All); }

  const TQuillonDataHandle<TQuillonRemoteWorkspace> FWorkspace =
      QuillonDataObjects::CreateStorage<TQuillonRemoteWorkspace>(1000);
};

TEST_F(WorkspaceTest, EveryRowOfEveryClassComesBackFromBothForms) {
  const TQuillonChangeTrackingLock Lock(*FWorkspace);
  DataRows::TFiller(7).Fill(*FWorkspace);
  const std::string Document = FWorkspace->SaveToXML();
  for (const TQuillonDataClass* Class : DataRows::Descendants(TQuillonRemoteWorkspaceObject::Class())) {
    EXPECT_THAT(Document, HasSubstr("Class=\"" + std::string(Class->Tag()) + "\""));
  }
  const auto Other = QuillonDataObjects::CreateStorage<TQuillonRemoteWorkspace>();
  for (int Round = 0; Round < 2; ++Round) {
    Other->LoadFromXML(TQuillonBuffer(Document), "test");
    EXPECT_EQ(DataRows::Snapshot(*Other, TDetail::All), Content());
    TQuillonMemoryStream Stream;
    FWorkspace->SaveToZIPStream(Stream);
    Stream.Seek(0, TQuillonSeekOrigin::Begin);
    Other->LoadFromZIPStream(Stream);
    EXPECT_EQ(DataRows::Snapshot(*Other, TDetail::All), Content());
  }
  Other->Clear();
  EXPECT_EQ(Other->Registry().Count(), 2U) << "the root of the files and the policies";
}

TEST_F(WorkspaceTest, EveryRowStandsInItsPage) {
  std::ostringstream Page;
  Page << std::ifstream(VELMORA_SOURCE_DIR "/docs/workspace.md").rdbuf();
  auto Classes = DataRows::Descendants(TQuillonRemoteWorkspaceObject::Class());
  Classes.push_back(&TQuillonRemoteWorkspace::Class());
  for (const TQuillonDataClass* Class : Classes) {
    EXPECT_THAT(Page.str(), HasSubstr(std::string(Class->Tag())));
    for (const TQuillonDataRow& Row : Class->Rows()) {
      const std::string Name(Row.Name);
      EXPECT_TRUE(Row.IsStamp || Page.str().find("`" + Name + "`") != std::string::npos) << Class->Tag() << " " << Name;
    }
  }
}

TEST_F(WorkspaceTest, UsersPassWithTheirPasswordAlone) {
  TUser& Admin = FWorkspace->CreateDefaultAdminUser();
  EXPECT_EQ(&FWorkspace->CreateDefaultAdminUser(), &Admin);
  EXPECT_EQ(Admin.UserTypeAsString(), "Administrator");
  EXPECT_FALSE(FWorkspace->ValidateUser(Admin.FName, "")) << "without a password";
  Admin.FPassword = "geheim";
  for (const char* Wrong : {"", "gehei", "geheim ", "Geheim", "geheimgeheim"}) {
    EXPECT_FALSE(FWorkspace->ValidateUser(Admin.FName, Wrong)) << Wrong;
  }
  EXPECT_FALSE(FWorkspace->ValidateUser("administrator", "geheim"));
  EXPECT_TRUE(FWorkspace->ValidateUser(Admin.FName, "geheim"));
  TTenant& Tenant = Add(FWorkspace->FTenants, "Nord");
  Admin.FTenant = &Tenant;
  Tenant.FEnabled = false;
  EXPECT_FALSE(FWorkspace->ValidateUser(Admin.FName, "geheim"));
  Tenant.FEnabled = true;
  Admin.FEnabled = false;
  EXPECT_FALSE(FWorkspace->ValidateUser(Admin.FName, "geheim"));

  EXPECT_EQ(FWorkspace->FUsers.Find(Admin.ID()), &Admin);
  EXPECT_TRUE(FWorkspace->FUsers.Validate(&Admin, Admin.FName) && FWorkspace->FUsers.Validate(nullptr, ""));
  EXPECT_FALSE(FWorkspace->FUsers.Validate(nullptr, Admin.FName));
  std::vector<std::string_view> Types;
  for (const int Type : {0, 1, 2, 3, 4, 5, 6, 255}) {
    Admin.FUserType = static_cast<TVELUserType>(Type);
    Types.push_back(Admin.UserTypeAsString());
  }
  EXPECT_THAT(Types,
              ElementsAre("Lehrer", "Schüler", "Klasse", "Administrator", "Mitarbeiter", "Gast", std::string(), ""));
}

TEST_F(WorkspaceTest, APolicyCountsFromTheFileUpToTheRoot) {
  TPolicies& Policies = *FWorkspace->FPolicyManager;
  EXPECT_EQ(Policies.Workspace(), FWorkspace.get());
  AddPolicy("read", "read", 5);
  AddPolicy("open", "read", 6);
  AddPolicy("alone", "", 7);
  AddPolicy("there", "and back", 8);
  AddPolicy("and back", "there", 9);
  TUser& User = Add(FWorkspace->FUsers, "anna");
  TGroup& Low = Add(FWorkspace->FUserGroups, "low");
  TGroup& High = Add(FWorkspace->FUserGroups, "high");
  TGroup& Foreign = Add(FWorkspace->FUserGroups, "foreign");
  Low.FMembers.Add(&User);
  User.FMemberships.Add(&High);
  TFolder& Folder = Add(FWorkspace->FFileSpace->FFolders, "a");
  TDocument& Document = Add(Folder.FDocuments, "b");
  const auto Deep = [&](const auto& AWho, std::string_view APolicy) {
    return Policies.GetDeepValue(AWho, &Document, APolicy);
  };
  EXPECT_EQ(Deep(User, "read"), 5);
  EXPECT_EQ(Deep(User, "open"), 5) << "the default of the last parent";
  EXPECT_EQ(Deep(User, "there"), 9) << "a folder nearer to the root with each parent";
  EXPECT_EQ(Deep(User, "unknown"), -1);
  EXPECT_EQ(Deep(User, "alone"), -1) << "no parent policy";
  EXPECT_EQ(Policies.GetDeepValue(User, nullptr, "alone"), 7);

  Allow(*FWorkspace->FFileSpace, User, 20);
  EXPECT_EQ(Deep(User, "read"), 20);
  Allow(*FWorkspace->FFileSpace, Low, 10);
  EXPECT_EQ(Deep(User, "read"), 20) << "the user's own value is ahead of the groups'";
  Allow(Document, Low, 0);
  EXPECT_EQ(Deep(User, "read"), 10) << "what the group has on the folders counts for the group on the document";
  Allow(Document, High, 30);
  Allow(Document, Foreign, 40);
  EXPECT_EQ(Deep(User, "read"), 30);
  EXPECT_EQ(Deep(Low, "open"), 10);
  Allow(Document, User, 1);
  EXPECT_EQ(Deep(User, "read"), 1);

  EXPECT_EQ(TPolicies::GetValue(User, Document, "read"), 1);
  EXPECT_EQ(TPolicies::GetValue(User, Folder, "read"), 0);
  TPolicies::SetValue(User, Folder, "read", 3);
  TPolicies::SetValue(User, Document, "open", 0);
  EXPECT_TRUE(Folder.FUserAccess.IsEmpty());
  EXPECT_EQ(Document.FUserAccess.GetItem(0)->FPermissions.Count(), 1);
  TPolicies::SetValue(User, Document, "read", 0);
  EXPECT_TRUE(Document.FUserAccess.GetItem(0)->FPermissions.IsEmpty());
  TQuillonRemoteUserWorkspace Profile;
  Profile.FFileSpace.FID = Folder.ID();
  EXPECT_EQ(Profile.GetPolicyValue(Folder, "read"), -1);
}

TEST_F(WorkspaceTest, WhatGoesIsForgotten) {
  TTenant& Tenant = Add(FWorkspace->FTenants, "t");
  TUser& User = Add(FWorkspace->FUsers, "u");
  TGroup& Group = Add(FWorkspace->FUserGroups, "g");
  TGroup& Copy = Add(FWorkspace->FUserGroups, "copy");
  TFolder& Folder = Add(FWorkspace->FFileSpace->FFolders, "f");
  User.FTenant = Group.FTenant = Folder.FTenant = &Tenant;
  User.FMemberships.Add(&Group);
  Group.FMembers.Add(&User);
  Copy.CopyReferences(Group);
  EXPECT_TRUE(Copy.FMembers.Holds(&User) && Copy.FTenant == &Tenant && Copy.FName == "copy");
  Allow(Folder, User, 1);
  Allow(Folder, Group, 1);

  FWorkspace->FTenants.Remove(&Tenant);
  EXPECT_TRUE(User.FTenant == nullptr && Copy.FTenant == nullptr && Folder.FTenant == nullptr);
  FWorkspace->FUserGroups.Remove(&Group);
  EXPECT_TRUE(User.FMemberships.IsEmpty() && Folder.FUserGroupAccess.GetItem(0)->FUserGroup == nullptr);
  FWorkspace->FUsers.Clear();
  EXPECT_TRUE(Copy.FMembers.IsEmpty() && Folder.FUserAccess.GetItem(0)->FUser == nullptr);
}

TEST_F(WorkspaceTest, RemovedFilesAreFreedWithTheirContent) {
  const auto& Root = *FWorkspace->FFileSpace;
  TFolder& Stays = Add(FWorkspace->FFileSpace->FFolders, "stays");
  TFolder& Goes = Add(FWorkspace->FFileSpace->FFolders, "goes");
  const TGUID Kept = Add(Stays.FDocuments, "kept").ID();
  const TGUID Inner = Add(Goes.FDocuments, "inner").ID();
  TDocument& Removed = Add(Stays.FDocuments, "removed");
  const TGUID RemovedID = Removed.ID();
  Goes.FRemoved = Removed.FRemoved = true;
  EXPECT_EQ(Root.FindDocument(RemovedID), &Removed);
  FWorkspace->FFileSpace->ProcessRemovedDocuments(true);
  EXPECT_NE(Root.FindDocument(Kept), nullptr) << "not of the root itself";
  FWorkspace->FFileSpace->ProcessRemovedFiles(false);
  EXPECT_NE(Root.FindDocument(Kept), nullptr);
  EXPECT_EQ(Root.FindDocument(RemovedID), nullptr);
  EXPECT_EQ(Root.FindDocument(Inner), nullptr);
  EXPECT_THAT(Root.FFolders.Items(), ElementsAre(&Stays));
  FWorkspace->FFileSpace->ProcessRemovedFiles(true);
  EXPECT_TRUE(Root.FFolders.IsEmpty());
}

TEST_F(WorkspaceTest, ChangesArriveOnAnotherCopy) {
  TFolder& Folder = Add(FWorkspace->FFileSpace->FFolders, "f");
  const auto Other = QuillonDataObjects::CreateStorage<TQuillonRemoteWorkspace>();
  TQuillonMemoryStream Stream;
  FWorkspace->SaveToBinStream(Stream);
  Stream.Seek(0, TQuillonSeekOrigin::Begin);
  Other->LoadFromBinStream(Stream);
  FWorkspace->ChangeLog().Activate();
  TUser& User = FWorkspace->CreateDefaultAdminUser();
  auto& Access = Add(Folder.FUserAccess, "");
  Access.Set(Access.FUser, &User);
  TPolicies::SetValue(User, Folder, "read", 2);
  EXPECT_TRUE(FWorkspace->ChangeLog().Playback(*Other));
  EXPECT_EQ(PlainContent(*Other), PlainContent(*FWorkspace));
  FWorkspace->ChangeLog().Clear();
  FWorkspace->FUsers.Clear();
  FWorkspace->ChangeLog().Playback(*Other);
  EXPECT_EQ(PlainContent(*Other), PlainContent(*FWorkspace));
}

TEST_F(WorkspaceTest, AFolderLiesInOnePlaceAndNotInItself) {
  TFolder& Outer = Add(FWorkspace->FFileSpace->FFolders, "outer");
  TFolder& Inner = Add(Outer.FFolders, "inner");
  const std::string Before = Content();
  EXPECT_THROW(Inner.FFolders.Add(&Outer), EQuillonCollectionError);
  EXPECT_THROW(Inner.FFolders.Add(&Inner), EQuillonCollectionError);
  EXPECT_THROW(FWorkspace->FFileSpace->FFolders.Add(&Inner), EQuillonCollectionError);
  EXPECT_EQ(Inner.ParentFolder(), &Outer);
  TFolder* Deepest = &Inner;
  for (int Levels = 3; Levels < QuillonRemoteWorkspaces::MaxFolderLevels; ++Levels) {
    Deepest = &Add(Deepest->FFolders, "deep");
  }
  EXPECT_THROW(Add(Deepest->FFolders, "too deep"), EQuillonCollectionError);
  const auto Other = QuillonDataObjects::CreateStorage<TQuillonRemoteWorkspace>();
  Other->LoadFromXML(TQuillonBuffer(FWorkspace->SaveToXML()), "test");
  EXPECT_EQ(DataRows::Snapshot(*Other, TDetail::All), Content());

  // One that a document names in two places, as folders in folders could stand for any number.
  std::string Document = FWorkspace->SaveToXML();
  const std::string ID = QuillonGuid::Braced(Add(FWorkspace->FFileSpace->FFolders, "twin").ID());
  Document = FWorkspace->SaveToXML();
  Document.replace(Document.find(ID), ID.size(), QuillonGuid::Braced(Inner.ID()));
  EXPECT_THROW(Other->LoadFromXML(TQuillonBuffer(Document), "test"), EQuillonDataObjectReaderError);
  EXPECT_TRUE(Other->FFileSpace->FFolders.IsEmpty());
}

}  // namespace
