#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonStreams/Objects.h"

class TQuillonRemoteWorkspaceAbstractFile;

namespace QuillonRemoteWorkspaces {

/// Folders, documents and permissions of a profile that comes from a stream: far more than any user has.
inline constexpr std::size_t MaxUserWorkspaceItems = 1'000'000;

/// The value of each policy for who may do everything.
inline constexpr std::int8_t AdminPolicyValue = 127;
/// The value of a policy that nobody has set, or of a file that there is not.
inline constexpr std::int8_t NoPolicyValue = -1;

/// Makes the classes of what lists hold here known to readers.
void RegisterUserWorkspaceClasses();

}  // namespace QuillonRemoteWorkspaces

/// A list that is a part of its owner. On streams the count and each item as an object.
template <class TItem>
class TQuillonRemoteUserWorkspaceList : public TQuillonPersistent {
 public:
  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  /// What is read takes the place of what was there; a read that fails leaves that.
  /// @throws EQuillonReaderError for an item that is null, of another class, or in a list already, for a count below
  /// zero, and for more than MaxUserWorkspaceItems objects off this reader
  void ReadProperties(TQuillonObjectReader& AReader) override;

  std::vector<std::shared_ptr<TItem>> FItems;  ///< none is null
};

/// The value that a user holds of a policy on a file.
class TQuillonRemoteUserWorkspacePermission final : public TQuillonNamed<TQuillonRemoteUserWorkspacePermission> {
 public:
  static constexpr std::string_view ClassName = "TQuillonRemoteUserWorkspacePermission";

  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  /// @throws EQuillonReaderError for a value that has no room in the field
  void ReadProperties(TQuillonObjectReader& AReader) override;

  std::string FPolicyName;
  std::int8_t FPolicyValue = 0;  ///< 32 bits on streams
};

class TQuillonRemoteUserWorkspacePermissionList final
    : public TQuillonNamed<TQuillonRemoteUserWorkspacePermissionList,
                           TQuillonRemoteUserWorkspaceList<TQuillonRemoteUserWorkspacePermission>> {
 public:
  static constexpr std::string_view ClassName = "TQuillonRemoteUserWorkspacePermissionList";

  /// The first of the name, whose letters count as they stand; null if there is none.
  const TQuillonRemoteUserWorkspacePermission* Find(std::string_view APolicyName) const;
  bool Contains(std::string_view APolicyName) const { return Find(APolicyName) != nullptr; }
};

/// What a user sees of the server's files, with the rights on it.
class TQuillonRemoteUserWorkspaceAbstractFile : public TQuillonPersistent {
 public:
  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  void ReadProperties(TQuillonObjectReader& AReader) override;

  TGUID FID;
  TQuillonRemoteUserWorkspacePermissionList FPermissions;
};

class TQuillonRemoteUserWorkspaceDocument final
    : public TQuillonNamed<TQuillonRemoteUserWorkspaceDocument, TQuillonRemoteUserWorkspaceAbstractFile> {
 public:
  static constexpr std::string_view ClassName = "TQuillonRemoteUserWorkspaceDocument";

  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  void ReadProperties(TQuillonObjectReader& AReader) override;

  std::string FDescription;
  std::string FName;
};

class TQuillonRemoteUserWorkspaceFolder;

class TQuillonRemoteUserWorkspaceFolderList final
    : public TQuillonNamed<TQuillonRemoteUserWorkspaceFolderList,
                           TQuillonRemoteUserWorkspaceList<TQuillonRemoteUserWorkspaceFolder>> {
 public:
  static constexpr std::string_view ClassName = "TQuillonRemoteUserWorkspaceFolderList";
};

class TQuillonRemoteUserWorkspaceDocumentList final
    : public TQuillonNamed<TQuillonRemoteUserWorkspaceDocumentList,
                           TQuillonRemoteUserWorkspaceList<TQuillonRemoteUserWorkspaceDocument>> {
 public:
  static constexpr std::string_view ClassName = "TQuillonRemoteUserWorkspaceDocumentList";
};

class TQuillonRemoteUserWorkspaceAbstractFolder : public TQuillonRemoteUserWorkspaceAbstractFile {
 public:
  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  void ReadProperties(TQuillonObjectReader& AReader) override;

  /// The first file of the identifier below this folder; null if there is none. The order is that of the stream: each
  /// folder ahead of its content, folders ahead of documents.
  const TQuillonRemoteUserWorkspaceAbstractFile* FindFile(const TGUID& AnID) const;

  TQuillonRemoteUserWorkspaceFolderList FFolders;
  TQuillonRemoteUserWorkspaceDocumentList FDocuments;
};

class TQuillonRemoteUserWorkspaceFolder final
    : public TQuillonNamed<TQuillonRemoteUserWorkspaceFolder, TQuillonRemoteUserWorkspaceAbstractFolder> {
 public:
  static constexpr std::string_view ClassName = "TQuillonRemoteUserWorkspaceFolder";

  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  void ReadProperties(TQuillonObjectReader& AReader) override;

  std::string FName;
  std::string FTenant;
};

/// The root of the tree.
class TQuillonRemoteUserWorkspaceFileSpace final
    : public TQuillonNamed<TQuillonRemoteUserWorkspaceFileSpace, TQuillonRemoteUserWorkspaceAbstractFolder> {
 public:
  static constexpr std::string_view ClassName = "TQuillonRemoteUserWorkspaceFileSpace";

  void Swap(TQuillonRemoteUserWorkspaceFileSpace& AnOther);
};

/// One user's view of the server's workspace: who the user is, which files there are for them, and what they may do
/// with each.
class TQuillonRemoteUserWorkspace final : public TQuillonNamed<TQuillonRemoteUserWorkspace> {
 public:
  static constexpr std::string_view ClassName = "TQuillonRemoteUserWorkspace";

  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  /// All stays as it was unless the whole profile can be read.
  /// @throws EQuillonReaderError as the lists and the permissions in it
  /// @throws EQuillonPersistentError for folders that are nested too deep
  void ReadProperties(TQuillonObjectReader& AReader) override;

  bool Available() const { return !FUserName.empty(); }
  /// Whether the user administers the whole server.
  bool IsAdmin() const { return FAdmin && FTenant.empty(); }
  /// Whether the user administers their tenant.
  bool IsSubAdmin() const { return FAdmin && !FTenant.empty(); }
  void Clear();

  /// The root of the tree if it has the identifier, else what its FindFile gives.
  const TQuillonRemoteUserWorkspaceAbstractFile* FindFile(const TGUID& AnID) const;
  /// AdminPolicyValue for administrators of either kind, whatever the file and the policy; NoPolicyValue if there is no
  /// such file, or no such policy on it.
  std::int8_t GetPolicyValue(const TGUID& AnID, std::string_view APolicyName) const;
  std::int8_t GetPolicyValue(const TQuillonRemoteUserWorkspaceAbstractFile& AFile, std::string_view APolicyName) const {
    return GetPolicyValue(AFile.FID, APolicyName);
  }
  std::int8_t GetPolicyValue(const TQuillonRemoteWorkspaceAbstractFile& AFile, std::string_view APolicyName) const;

  std::string FUserName;
  std::string FLastname;
  std::string FMiddleName;
  std::string FFirstName;
  std::string FEMail;
  std::string FSite;
  TQuillonRemoteUserWorkspaceFileSpace FFileSpace;
  bool FAdmin = false;
  std::string FTenant;
  bool FCanChangePassword = false;

 private:
  void Swap(TQuillonRemoteUserWorkspace& AnOther);
};
