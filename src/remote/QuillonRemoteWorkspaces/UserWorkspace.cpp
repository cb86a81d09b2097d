#include "QuillonRemoteWorkspaces/UserWorkspace.h"

#include <algorithm>
#include <array>
#include <utility>

#include "QuillonClasses/Collection.h"
#include "QuillonRemoteWorkspaces/Files.h"

namespace {

using TProfile = TQuillonRemoteUserWorkspace;

/// The texts ahead of the tree, in their order on streams.
constexpr std::array<std::string TProfile::*, 6> LeadingTexts = {&TProfile::FUserName,   &TProfile::FLastname,
                                                                 &TProfile::FMiddleName, &TProfile::FFirstName,
                                                                 &TProfile::FEMail,      &TProfile::FSite};

}  // namespace

namespace QuillonRemoteWorkspaces {

void RegisterUserWorkspaceClasses() {
  for (const auto* Class :
       {&TQuillonRemoteUserWorkspacePermission::Class(), &TQuillonRemoteUserWorkspaceDocument::Class(),
        &TQuillonRemoteUserWorkspaceFolder::Class()}) {
    TQuillonClassRegistry::Instance().AddClass(*Class);
  }
}

}  // namespace QuillonRemoteWorkspaces

template <class TItem>
void TQuillonRemoteUserWorkspaceList<TItem>::WriteProperties(TQuillonObjectWriter& AWriter) const {
  QuillonClasses::WriteItems(AWriter, FItems);
}

template <class TItem>
void TQuillonRemoteUserWorkspaceList<TItem>::ReadProperties(TQuillonObjectReader& AReader) {
  std::vector<std::shared_ptr<TItem>> Items;
  for (std::int32_t Left = QuillonClasses::ReadCount(AReader); Left > 0; --Left) {
    const std::size_t Known = AReader.ObjectCount();
    Items.push_back(AReader.ReadObject<TItem>());
    // What was read before is somebody else's item: a folder that stands in two places doubles all below it.
    const bool IsNew = Items.back() != nullptr && AReader.ObjectCount() > Known;
    if (!IsNew || AReader.ObjectCount() > QuillonRemoteWorkspaces::MaxUserWorkspaceItems) {
      throw EQuillonReaderError();
    }
  }
  FItems = std::move(Items);
}

template class TQuillonRemoteUserWorkspaceList<TQuillonRemoteUserWorkspacePermission>;
template class TQuillonRemoteUserWorkspaceList<TQuillonRemoteUserWorkspaceFolder>;
template class TQuillonRemoteUserWorkspaceList<TQuillonRemoteUserWorkspaceDocument>;

void TQuillonRemoteUserWorkspacePermission::WriteProperties(TQuillonObjectWriter& AWriter) const {
  AWriter.WriteString(FPolicyName);
  AWriter.WriteLongInt(FPolicyValue);
}

void TQuillonRemoteUserWorkspacePermission::ReadProperties(TQuillonObjectReader& AReader) {
  FPolicyName = AReader.ReadString();
  const std::int32_t Value = AReader.ReadLongInt();
  if (!std::in_range<std::int8_t>(Value)) {
    throw EQuillonReaderError();
  }
  FPolicyValue = static_cast<std::int8_t>(Value);
}

const TQuillonRemoteUserWorkspacePermission* TQuillonRemoteUserWorkspacePermissionList::Find(
    std::string_view APolicyName) const {
  const auto Found =
      std::ranges::find_if(FItems, [&](const auto& AnItem) { return AnItem->FPolicyName == APolicyName; });
  return Found == FItems.end() ? nullptr : Found->get();
}

void TQuillonRemoteUserWorkspaceAbstractFile::WriteProperties(TQuillonObjectWriter& AWriter) const {
  AWriter.WriteGuid(FID);
  FPermissions.WriteProperties(AWriter);
}

void TQuillonRemoteUserWorkspaceAbstractFile::ReadProperties(TQuillonObjectReader& AReader) {
  FID = AReader.ReadGuid();
  FPermissions.ReadProperties(AReader);
}

void TQuillonRemoteUserWorkspaceDocument::WriteProperties(TQuillonObjectWriter& AWriter) const {
  TQuillonRemoteUserWorkspaceAbstractFile::WriteProperties(AWriter);
  AWriter.WriteString(FDescription);
  AWriter.WriteString(FName);
}

void TQuillonRemoteUserWorkspaceDocument::ReadProperties(TQuillonObjectReader& AReader) {
  TQuillonRemoteUserWorkspaceAbstractFile::ReadProperties(AReader);
  FDescription = AReader.ReadString();
  FName = AReader.ReadString();
}

void TQuillonRemoteUserWorkspaceAbstractFolder::WriteProperties(TQuillonObjectWriter& AWriter) const {
  TQuillonRemoteUserWorkspaceAbstractFile::WriteProperties(AWriter);
  FFolders.WriteProperties(AWriter);
  FDocuments.WriteProperties(AWriter);
}

void TQuillonRemoteUserWorkspaceAbstractFolder::ReadProperties(TQuillonObjectReader& AReader) {
  TQuillonRemoteUserWorkspaceAbstractFile::ReadProperties(AReader);
  FFolders.ReadProperties(AReader);
  FDocuments.ReadProperties(AReader);
}

const TQuillonRemoteUserWorkspaceAbstractFile* TQuillonRemoteUserWorkspaceAbstractFolder::FindFile(
    const TGUID& AnID) const {
  for (const auto& Folder : FFolders.FItems) {
    const TQuillonRemoteUserWorkspaceAbstractFile* const Found =
        Folder->FID == AnID ? Folder.get() : Folder->FindFile(AnID);
    if (Found != nullptr) {
      return Found;
    }
  }
  const auto Found = std::ranges::find_if(FDocuments.FItems, [&](const auto& AnItem) { return AnItem->FID == AnID; });
  return Found == FDocuments.FItems.end() ? nullptr : Found->get();
}

void TQuillonRemoteUserWorkspaceFolder::WriteProperties(TQuillonObjectWriter& AWriter) const {
  TQuillonRemoteUserWorkspaceAbstractFolder::WriteProperties(AWriter);
  AWriter.WriteString(FName);
  AWriter.WriteString(FTenant);
}

void TQuillonRemoteUserWorkspaceFolder::ReadProperties(TQuillonObjectReader& AReader) {
  TQuillonRemoteUserWorkspaceAbstractFolder::ReadProperties(AReader);
  FName = AReader.ReadString();
  FTenant = AReader.ReadString();
}

void TQuillonRemoteUserWorkspaceFileSpace::Swap(TQuillonRemoteUserWorkspaceFileSpace& AnOther) {
  std::swap(FID, AnOther.FID);
  FPermissions.FItems.swap(AnOther.FPermissions.FItems);
  FFolders.FItems.swap(AnOther.FFolders.FItems);
  FDocuments.FItems.swap(AnOther.FDocuments.FItems);
}

void TQuillonRemoteUserWorkspace::WriteProperties(TQuillonObjectWriter& AWriter) const {
  for (const auto Text : LeadingTexts) {
    AWriter.WriteString(this->*Text);
  }
  FFileSpace.WriteProperties(AWriter);
  AWriter.WriteBoolean(FAdmin);
  AWriter.WriteString(FTenant);
  AWriter.WriteBoolean(FCanChangePassword);
}

void TQuillonRemoteUserWorkspace::ReadProperties(TQuillonObjectReader& AReader) {
  TQuillonRemoteUserWorkspace Profile;
  for (const auto Text : LeadingTexts) {
    Profile.*Text = AReader.ReadString();
  }
  Profile.FFileSpace.ReadProperties(AReader);
  Profile.FAdmin = AReader.ReadBoolean();
  Profile.FTenant = AReader.ReadString();
  Profile.FCanChangePassword = AReader.ReadBoolean();
  Swap(Profile);
}

void TQuillonRemoteUserWorkspace::Clear() {
  TQuillonRemoteUserWorkspace Fresh;
  Swap(Fresh);
}

const TQuillonRemoteUserWorkspaceAbstractFile* TQuillonRemoteUserWorkspace::FindFile(const TGUID& AnID) const {
  return FFileSpace.FID == AnID ? &FFileSpace : FFileSpace.FindFile(AnID);
}

std::int8_t TQuillonRemoteUserWorkspace::GetPolicyValue(const TGUID& AnID, std::string_view APolicyName) const {
  if (FAdmin) {
    return QuillonRemoteWorkspaces::AdminPolicyValue;
  }
  const TQuillonRemoteUserWorkspaceAbstractFile* const File = FindFile(AnID);
  const auto* const Permission = File == nullptr ? nullptr : File->FPermissions.Find(APolicyName);
  return Permission == nullptr ? QuillonRemoteWorkspaces::NoPolicyValue : Permission->FPolicyValue;
}

std::int8_t TQuillonRemoteUserWorkspace::GetPolicyValue(const TQuillonRemoteWorkspaceAbstractFile& AFile,
                                                        std::string_view APolicyName) const {
  return GetPolicyValue(AFile.ID(), APolicyName);
}

void TQuillonRemoteUserWorkspace::Swap(TQuillonRemoteUserWorkspace& AnOther) {
  for (const auto Text : LeadingTexts) {
    (this->*Text).swap(AnOther.*Text);
  }
  FFileSpace.Swap(AnOther.FFileSpace);
  std::swap(FAdmin, AnOther.FAdmin);
  FTenant.swap(AnOther.FTenant);
  std::swap(FCanChangePassword, AnOther.FCanChangePassword);
}
