#pragma once

#include <string>

#include "QuillonRemoteWorkspaces/Access.h"

class TQuillonRemoteWorkspaceAbstractFolder;
class TQuillonRemoteWorkspaceDocument;
class TQuillonRemoteWorkspaceFolder;
class TQuillonRemoteWorkspaceTenant;

namespace QuillonRemoteWorkspaces {

/// Folders within each other, beyond which no folder is put into another: fewer than readers take.
inline constexpr int MaxFolderLevels = 200;

}  // namespace QuillonRemoteWorkspaces

/// A part of the server's tree, with what everybody may do with it.
class TQuillonRemoteWorkspaceAbstractFile : public TQuillonRemoteWorkspaceObject {
 public:
  static const TQuillonDataClass& Class();

  /// The folder that this file lies in; null for the root.
  TQuillonRemoteWorkspaceAbstractFolder* ParentFolder() const;
  /// The first access of the user or the group; null if there is none.
  TQuillonRemoteWorkspaceUserAccess* FindAccess(const TQuillonRemoteWorkspaceUser& AUser) const;
  TQuillonRemoteWorkspaceUserGroupAccess* FindAccess(const TQuillonRemoteWorkspaceUserGroup& AGroup) const;

  bool FEnabled = true;
  bool FRemoved = false;  ///< the user has deleted the file; it waits to be freed
  TQuillonRemoteWorkspaceUserAccessList FUserAccess{this, TQuillonDataList::TItems::Owned};
  TQuillonRemoteWorkspaceUserGroupAccessList FUserGroupAccess{this, TQuillonDataList::TItems::Owned};
};

using TQuillonRemoteWorkspaceDocumentList =
    TQuillonRemoteWorkspaceNamedList<TQuillonRemoteWorkspaceDocument, "TQuillonRemoteWorkspaceDocumentList">;

class TQuillonRemoteWorkspaceFolderList final
    : public TQuillonRemoteWorkspaceNamedList<TQuillonRemoteWorkspaceFolder, "TQuillonRemoteWorkspaceFolderList"> {
 public:
  using TQuillonRemoteWorkspaceNamedList::TQuillonRemoteWorkspaceNamedList;

 protected:
  /// @throws EQuillonCollectionError also for more than MaxFolderLevels
  void BeforeInsert(int AnIndex, TQuillonDataObject* AnItem) override;
};

/// A file of data, such as a plan. On the server's disk it has FName with the prefix and the extension around it.
class TQuillonRemoteWorkspaceDocument final : public TQuillonRemoteWorkspaceAbstractFile {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FDescription;
  std::string FFileExtension;
  std::string FFilePrefix;
  std::string FName;

 protected:
  std::string DisplayArgument() const override { return FName; }
};

/// Each Process operation frees what lies in this folder and counts as removed, and all of it with ARemoveAll; a folder
/// goes with its content. In folders that stay it goes on with what is removed there.
class TQuillonRemoteWorkspaceAbstractFolder : public TQuillonRemoteWorkspaceAbstractFile {
 public:
  static const TQuillonDataClass& Class();

  /// The document of the identifier in this folder, or in one below it; null if there is none.
  TQuillonRemoteWorkspaceDocument* FindDocument(const TGUID& AnID) const;
  /// Of this folder alone.
  void ProcessRemovedDocuments(bool ARemoveAll);
  /// The folders, and all that is removed in those that stay.
  void ProcessRemovedFolders(bool ARemoveAll);
  /// Documents and folders.
  void ProcessRemovedFiles(bool ARemoveAll);

  TQuillonRemoteWorkspaceDocumentList FDocuments{this, TQuillonDataList::TItems::Owned};
  TQuillonRemoteWorkspaceFolderList FFolders{this, TQuillonDataList::TItems::Owned};
};

class TQuillonRemoteWorkspaceFolder final : public TQuillonRemoteWorkspaceAbstractFolder {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FName;
  TQuillonRemoteWorkspaceTenant* FTenant = nullptr;

 protected:
  std::string DisplayArgument() const override { return FName; }
};

/// The root of the tree.
class TQuillonRemoteWorkspaceFileSpace final : public TQuillonRemoteWorkspaceAbstractFolder {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
};
