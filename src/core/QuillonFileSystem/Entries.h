#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonDateTime.h"
#include "QuillonFileSystem/Types.h"
#include "QuillonTypes.h"

/// What a path leads to, as it was when it was looked at last. Failures raise EQuillonFileSystemError.
class TQuillonAbstractFile : public TQuillonObject {
 public:
  /// Looks, if there is something; what does not exist has neither attributes nor times.
  explicit TQuillonAbstractFile(std::string_view APath);

  TQuillonFileAttributes FAttributes;
  TQuillonDateTime FCreationTime;  ///< local, as all three
  std::string FFullName;
  TQuillonDateTime FLastAccessTime;
  TQuillonDateTime FLastWriteTime;

  /// Looks again.
  virtual void RefreshInfos();
  virtual bool Exists() const = 0;
  /// Goes by the full name, in the case of letters that the system makes a difference of.
  bool Equals(const TQuillonObject& AnObject) const override;
  std::int32_t GetHashCode() const override;

 protected:
  /// After a move.
  void SetFullName(std::string_view APath);
};

class TQuillonFile : public TQuillonAbstractFile {
 public:
  explicit TQuillonFile(std::string_view APath);

  std::int64_t FSize = 0;  ///< bytes

  void RefreshInfos() override;
  bool Exists() const override;
  void Delete();
  void CopyTo(const std::string& ADestFileName, bool ReplaceExisting = false) const;
  /// The object goes along.
  void MoveTo(const std::string& ADestFileName, bool ReplaceExisting = false);
};

class TQuillonDirectory : public TQuillonAbstractFile {
 public:
  using TQuillonAbstractFile::TQuillonAbstractFile;

  bool Exists() const override;
  /// Creates the folder, and its parents as far as they are missing.
  void Create();
  TQuillonDirectory CreateSubdirectory(std::string_view AName) const;
  /// @param Recursiv with all that is in it; otherwise it must be empty
  void Delete(bool Recursiv);
  /// Within one volume; the object goes along.
  void MoveTo(const std::string& ADestPath);
  /// See TQuillonFileSystem::GetFiles.
  std::vector<std::string> GetFiles(std::string_view ASearchPattern = "*") const;
};

/// A drive, or the volume that a path lies on. TQuillonFileSystem tells what systems without drives answer.
class TQuillonDriveInfo : public TQuillonObject {
 public:
  /// @param ADrive root of the drive, or any path on it
  /// @throws EQuillonFileSystemError for a drive without a medium
  explicit TQuillonDriveInfo(const std::string& ADrive);

  std::string FName;
  TQuillonDriveType FDriveType = dtypeUnknown;
  std::string FVolumeName;
  std::uint32_t FSerialNumber = 0;
  std::string FFileSystemName;
  std::int64_t FTotalSize = 0;  ///< bytes
  std::int64_t FFreeSpace = 0;  ///< bytes that this user may fill
};
