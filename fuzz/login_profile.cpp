#include <vector>

#include "Fuzz.h"
#include "QuillonRemoteWorkspaces/UserWorkspace.h"

namespace {

using TProfile = TQuillonRemoteUserWorkspace;
using TFile = TQuillonRemoteUserWorkspaceAbstractFile;

bool Read(TProfile& AProfile, std::string_view ABytes) {
  TQuillonMemoryStream Stream{std::string(ABytes)};
  return Fuzz::Accepts([&] { AProfile.LoadFromStream(Stream); });
}

std::string Written(const TProfile& AProfile) {
  TQuillonMemoryStream Stream;
  AProfile.SaveToStream(Stream);
  return Stream.TakeContent();
}

void Collect(const TQuillonRemoteUserWorkspaceAbstractFolder& AFolder, std::vector<const TFile*>& AFiles) {
  for (const auto& Folder : AFolder.FFolders.FItems) {
    AFiles.push_back(Folder.get());
    Collect(*Folder, AFiles);
  }
  for (const auto& Document : AFolder.FDocuments.FItems) {
    AFiles.push_back(Document.get());
  }
}

/// That of the first file with the identifier.
int ExpectedValue(const std::vector<const TFile*>& AFiles, const TGUID& AnID, std::string_view APolicyName) {
  const auto File = std::ranges::find(AFiles, AnID, &TFile::FID);
  const auto* const Permission = File == AFiles.end() ? nullptr : (*File)->FPermissions.Find(APolicyName);
  return Permission == nullptr ? -1 : Permission->FPolicyValue;
}

void CheckPolicies(const TProfile& AProfile) {
  constexpr std::size_t Most = 64;
  std::vector<const TFile*> Files = {&AProfile.FFileSpace};
  Collect(AProfile.FFileSpace, Files);
  for (std::size_t I = 0; I < std::min(Files.size(), Most); ++I) {
    const auto& Permissions = Files[I]->FPermissions.FItems;
    const std::string Policy = Permissions.empty() ? "Velmora.Login" : Permissions.back()->FPolicyName;
    const int Expected = AProfile.FAdmin ? 127 : ExpectedValue(Files, Files[I]->FID, Policy);
    Fuzz::Require(AProfile.GetPolicyValue(Files[I]->FID, Policy) == Expected, "a policy has another value");
  }
}

}  // namespace

/// Reads the input as the profile that comes with a login. A refused one leaves the profile as it was; one that is
/// accepted is written and read again as the same, and each of its files has its own policies.
void Fuzz::Run(std::string_view AnInput) {
  QuillonRemoteWorkspaces::RegisterUserWorkspaceClasses();
  TProfile Profile;
  Profile.FUserName = "before";
  const std::string Before = Written(Profile);
  if (!Read(Profile, AnInput)) {
    Fuzz::Require(Written(Profile) == Before, "a refused profile leaves something");
    return;
  }
  CheckPolicies(Profile);
  const std::string First = Written(Profile);
  TProfile Again;
  Fuzz::Require(Read(Again, First), "a written profile is refused");
  Fuzz::Require(Written(Again) == First, "a profile changes when it is written and read");
}
