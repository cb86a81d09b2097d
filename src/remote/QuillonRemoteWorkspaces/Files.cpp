#include "QuillonRemoteWorkspaces/Files.h"

#include "QuillonRemoteWorkspaces/Parties.h"

namespace {

using TFolder = TQuillonRemoteWorkspaceAbstractFolder;

template <class TList, class TParty>
auto FindIn(const TList& AList, TParty TList::TItemClass::*AParty, const auto& ASought) -> typename TList::TItemClass* {
  const auto Found = std::find_if(AList.begin(), AList.end(),
                                  [&](const auto* AnItem) { return AnItem != nullptr && AnItem->*AParty == &ASought; });
  return Found == AList.end() ? nullptr : *Found;
}

/// Levels of folders from this one down, itself included.
int HeightOf(const TFolder& AFolder) {
  int Below = 0;
  for (const TQuillonRemoteWorkspaceFolder* Folder : AFolder.FFolders) {
    Below = std::max(Below, HeightOf(*Folder));
  }
  return Below + 1;
}

/// Frees the items that are removed, or all.
template <class TList>
void RemoveItems(TList& AList, bool ARemoveAll) {
  TQuillonDataObjectSet Gone;
  for (const auto* Item : AList) {
    if (ARemoveAll || Item->FRemoved) {
      Gone.insert(Item);
    }
  }
  if (!Gone.empty() && std::cmp_equal(Gone.size(), AList.Count())) {
    AList.Clear();
  } else if (!Gone.empty()) {
    AList.RemoveObjects(Gone);
  }
}

}  // namespace

const TQuillonDataClass& TQuillonRemoteWorkspaceAbstractFile::Class() {
  using T = TQuillonRemoteWorkspaceAbstractFile;
  // clang-format off
  static const TQuillonDataClass Class =
      DescribeAbstractClass<T, TQuillonRemoteWorkspaceObject>("TQuillonRemoteWorkspaceAbstractFile")
      .Boolean<&T::FEnabled>("Enabled", true)
      .Boolean<&T::FRemoved>("Removed")
      .List<&T::FUserAccess>("UserAccess")
      .List<&T::FUserGroupAccess>("UserGroupAccess");
  // clang-format on
  return Class;
}

TFolder* TQuillonRemoteWorkspaceAbstractFile::ParentFolder() const {
  TQuillonDataList* const List = FOwner == nullptr ? nullptr : FOwner->AsList();
  return List == nullptr ? nullptr : dynamic_cast<TFolder*>(List->FOwner);
}

TQuillonRemoteWorkspaceUserAccess* TQuillonRemoteWorkspaceAbstractFile::FindAccess(
    const TQuillonRemoteWorkspaceUser& AUser) const {
  return FindIn(FUserAccess, &TQuillonRemoteWorkspaceUserAccess::FUser, AUser);
}

TQuillonRemoteWorkspaceUserGroupAccess* TQuillonRemoteWorkspaceAbstractFile::FindAccess(
    const TQuillonRemoteWorkspaceUserGroup& AGroup) const {
  return FindIn(FUserGroupAccess, &TQuillonRemoteWorkspaceUserGroupAccess::FUserGroup, AGroup);
}

void TQuillonRemoteWorkspaceFolderList::BeforeInsert(int AnIndex, TQuillonDataObject* AnItem) {
  TQuillonRemoteWorkspaceNamedList::BeforeInsert(AnIndex, AnItem);
  int Levels = HeightOf(static_cast<const TQuillonRemoteWorkspaceFolder&>(*AnItem));
  for (const TQuillonDataAbstractObject* Owner = FOwner; Owner != nullptr; Owner = Owner->FOwner) {
    Levels += dynamic_cast<const TFolder*>(Owner) != nullptr ? 1 : 0;
  }
  if (IsItemOwner() && Levels > QuillonRemoteWorkspaces::MaxFolderLevels) {
    throw EQuillonCollectionError(AnItem->GetDisplayName() + " ist zu tief verschachtelt.");
  }
}

const TQuillonDataClass& TQuillonRemoteWorkspaceDocument::Class() {
  using T = TQuillonRemoteWorkspaceDocument;
  // clang-format off
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceAbstractFile>("TQuillonRemoteWorkspaceDocument", "Dokument \"%s\"")
      .String<&T::FDescription>("Description")
      .String<&T::FFileExtension>("FileExtension")
      .String<&T::FFilePrefix>("FilePrefix")
      .String<&T::FName>("Name");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TQuillonRemoteWorkspaceAbstractFolder::Class() {
  using T = TQuillonRemoteWorkspaceAbstractFolder;
  // clang-format off
  static const TQuillonDataClass Class =
      DescribeAbstractClass<T, TQuillonRemoteWorkspaceAbstractFile>("TQuillonRemoteWorkspaceAbstractFolder")
      .List<&T::FDocuments>("Documents")
      .List<&T::FFolders>("Folders");
  // clang-format on
  return Class;
}

TQuillonRemoteWorkspaceDocument* TQuillonRemoteWorkspaceAbstractFolder::FindDocument(const TGUID& AnID) const {
  TQuillonRemoteWorkspaceDocument* Found = FDocuments.Find(AnID);
  for (auto Folder = FFolders.begin(); Found == nullptr && Folder != FFolders.end(); ++Folder) {
    Found = (*Folder)->FindDocument(AnID);
  }
  return Found;
}

void TQuillonRemoteWorkspaceAbstractFolder::ProcessRemovedDocuments(bool ARemoveAll) {
  RemoveItems(FDocuments, ARemoveAll);
}

void TQuillonRemoteWorkspaceAbstractFolder::ProcessRemovedFolders(bool ARemoveAll) {
  RemoveItems(FFolders, ARemoveAll);
  for (TQuillonRemoteWorkspaceFolder* Folder : FFolders) {
    Folder->ProcessRemovedFiles(false);
  }
}

void TQuillonRemoteWorkspaceAbstractFolder::ProcessRemovedFiles(bool ARemoveAll) {
  ProcessRemovedDocuments(ARemoveAll);
  ProcessRemovedFolders(ARemoveAll);
}

const TQuillonDataClass& TQuillonRemoteWorkspaceFolder::Class() {
  using T = TQuillonRemoteWorkspaceFolder;
  // clang-format off
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceAbstractFolder>("TQuillonRemoteWorkspaceFolder", "Ordner \"%s\"")
      .String<&T::FName>("Name")
      .Reference<&T::FTenant>("Tenant");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TQuillonRemoteWorkspaceFileSpace::Class() {
  using T = TQuillonRemoteWorkspaceFileSpace;
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonRemoteWorkspaceAbstractFolder>("TQuillonRemoteWorkspaceFileSpace", "Dateibereich");
  return Class;
}
