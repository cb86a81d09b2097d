#include "Fuzz.h"
#include "QuillonDataObjects/Registry.h"
#include "QuillonRemoteWorkspaces/Workspace.h"

namespace {

constexpr std::uint8_t Own = 15;  ///< place of an object's number in its identity

/// An object with a number, as an item of a list; its lists have the number too, and their place.
template <class TList>
auto& Make(TQuillonRemoteWorkspace& AWorkspace, std::uint8_t ANumber, TList& AList) {
  TGUID ID;
  ID.Bytes[Own] = ANumber;
  auto& Item = *QuillonDataObjects::Create<typename TList::TItemClass>(&AWorkspace, ID);
  AList.Add(&Item);
  for (const auto Field : Item.DataClass().Lists()) {
    ++ID.Bytes[0];
    Field(Item).SetID(ID);
  }
  return Item;
}

/// Folders beside and in each other, with somebody who has access.
TQuillonDataHandle<TQuillonRemoteWorkspace> SampleWorkspace() {
  QuillonRemoteWorkspaces::RegisterClasses(TQuillonDataClassRegistry::Instance());
  auto Workspace = QuillonDataObjects::CreateStorage<TQuillonRemoteWorkspace>();
  Workspace->FFileSpace->FFolders.SetID(TGUID{});
  auto& Outer = Make(*Workspace, 1, Workspace->FFileSpace->FFolders);
  Make(*Workspace, 2, Workspace->FFileSpace->FFolders);
  auto& Inner = Make(*Workspace, 3, Outer.FFolders);
  auto& Document = Make(*Workspace, 4, Inner.FDocuments);
  auto& User = Make(*Workspace, 5, Workspace->FUsers);
  auto& Group = Make(*Workspace, 6, Workspace->FUserGroups);
  Group.FMembers.Add(&User);
  Make(*Workspace, 7, Document.FUserAccess).FUser = &User;
  Make(*Workspace, 8, Inner.FUserGroupAccess).FUserGroup = &Group;
  return Workspace;
}

std::string BytesOf(const TQuillonRemoteWorkspace& AWorkspace) {
  TQuillonMemoryStream Stream;
  AWorkspace.SaveToBinStream(Stream);
  return Stream.TakeContent();
}

void RequireRest(const TQuillonRemoteWorkspace& AWorkspace) {
  const std::string Bytes = BytesOf(AWorkspace);
  const auto Copy = SampleWorkspace();
  TQuillonMemoryStream Stream(Bytes);
  Copy->LoadFromBinStream(Stream);
  Fuzz::RequireSame(Bytes, BytesOf(*Copy), "a workspace that was saved is loaded otherwise");
  // Lists take other stamps at the first load of a document.
  Copy->LoadFromXML(TQuillonBuffer(AWorkspace.SaveToXML()), "input");
  const std::string Document = Copy->SaveToXML();
  Copy->LoadFromXML(TQuillonBuffer(Document), "input");
  Fuzz::RequireSame(Document, Copy->SaveToXML(), "a document that was saved is loaded otherwise");
}

void ReadStorage(std::string_view AnInput) {
  const auto Workspace = SampleWorkspace();
  TQuillonMemoryStream Input{std::string(AnInput)};
  if (Fuzz::Accepts([&] { Workspace->LoadFromBinStream(Input); })) {
    RequireRest(*Workspace);
  } else {
    Fuzz::Require(Workspace->Registry().Count() == 2, "a refused workspace leaves something");
  }
}

void PlayLog(std::string_view AnInput) {
  TQuillonMemoryStream Input{std::string(AnInput)};
  TQuillonDataChangeLog Log;
  if (!Fuzz::Accepts([&] { Log.LoadFromStream(Input); })) {
    return;
  }
  const auto Workspace = SampleWorkspace();
  const std::string Before = BytesOf(*Workspace);
  if (Fuzz::Accepts([&] { Log.Playback(*Workspace); })) {
    RequireRest(*Workspace);
  } else {
    Fuzz::RequireSame(Before, BytesOf(*Workspace), "a log that was refused has left something");
  }
}

}  // namespace

/// Reads the input behind its first byte as what a data server sends of its workspace: behind a 0 the whole, else the
/// changes. A refused workspace is empty and a refused log leaves nothing; what is accepted comes back from both forms.
void Fuzz::Run(std::string_view AnInput) {
  if (!AnInput.empty()) {
    (AnInput.front() == 0 ? ReadStorage : PlayLog)(AnInput.substr(1));
  }
}
