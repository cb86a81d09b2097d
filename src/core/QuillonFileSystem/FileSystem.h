#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonDateTime.h"
#include "QuillonFileSystem/Types.h"
#include "QuillonTypes.h"

/// A failed operation on the file system; the message names the path.
class EQuillonFileSystemError : public EQuillonWin32Error {
 public:
  using EQuillonWin32Error::EQuillonWin32Error;
};

/// Called while a file is copied, with the bytes that are done and the size. @return false to give up
using TQuillonCopyProgressEvent = std::function<bool(std::int64_t ACopied, std::int64_t ASize)>;

/// Operations on files and folders. Failures raise EQuillonFileSystemError.
///
/// Drives, volumes and attributes are notions of Windows. Elsewhere the one drive is "/", a volume has neither a name
/// nor a serial number; a file has fattrDirectory by its kind, fattrHidden by a point ahead of its name and
/// fattrReadOnly when nobody may write it, which alone can be set.
class TQuillonFileSystem {
 public:
  TQuillonFileSystem() = delete;

  static bool Exists(const std::string& APath);
  static bool IsDirectory(const std::string& APath);
  /// Whether the path names a regular file.
  static bool IsFile(const std::string& APath);
  /// Whether there is a file to be read whole.
  /// @throws EQuillonException for what is there and no file: a pipe would be waited for, a device may have no end
  static bool HasFile(const std::string& APath);
  /// Whether the path lies in the folder, or in one below, by the texts alone.
  static bool IsFileInDirectory(const std::string& APath, const std::string& ADirectory);
  /// Whether both paths lead to one file or folder; false where one of them leads nowhere.
  static bool SameFile(const std::string& APath1, const std::string& APath2);

  static std::int64_t GetSize(const std::string& APath);
  static TQuillonFileAttributes GetAttributes(const std::string& APath);
  /// What the system does not have, or let set, is passed over.
  static void SetAttributes(const std::string& APath, TQuillonFileAttributes AnAttributes);
  /// fmodeUnknown for what is no file.
  static TQuillonFileMode GetFileMode(const std::string& APath);

  /// In local time. Where the creation is not recorded, it is the last write.
  static TQuillonDateTime GetTime(const std::string& APath, TQuillonFileTimeInfo AWhich);
  static TQuillonDateTime GetTimeUtc(const std::string& APath, TQuillonFileTimeInfo AWhich);
  /// The time of creation can be set on Windows only; elsewhere that is a failure.
  static void SetTime(const std::string& APath, TQuillonFileTimeInfo AWhich, TQuillonDateTime ATime);
  static void SetTimeUtc(const std::string& APath, TQuillonFileTimeInfo AWhich, TQuillonDateTime ATime);
  // clang-format off
  static TQuillonDateTime GetCreationTime(const std::string& APath) { return GetTime(APath, ftimeCreation); }
  static TQuillonDateTime GetCreationTimeUtc(const std::string& APath) { return GetTimeUtc(APath, ftimeCreation); }
  static TQuillonDateTime GetLastAccessTime(const std::string& APath) { return GetTime(APath, ftimeLastAccess); }
  static TQuillonDateTime GetLastAccessTimeUtc(const std::string& APath) { return GetTimeUtc(APath, ftimeLastAccess); }
  static TQuillonDateTime GetLastWriteTime(const std::string& APath) { return GetTime(APath, ftimeLastWrite); }
  static TQuillonDateTime GetLastWriteTimeUtc(const std::string& APath) { return GetTimeUtc(APath, ftimeLastWrite); }
  static void SetCreationTime(const std::string& APath, TQuillonDateTime ATime) { SetTime(APath, ftimeCreation, ATime); }
  static void SetCreationTimeUtc(const std::string& APath, TQuillonDateTime ATime) { SetTimeUtc(APath, ftimeCreation, ATime); }
  static void SetLastAccessTime(const std::string& APath, TQuillonDateTime ATime) { SetTime(APath, ftimeLastAccess, ATime); }
  static void SetLastAccessTimeUtc(const std::string& APath, TQuillonDateTime ATime) { SetTimeUtc(APath, ftimeLastAccess, ATime); }
  static void SetLastWriteTime(const std::string& APath, TQuillonDateTime ATime) { SetTime(APath, ftimeLastWrite, ATime); }
  static void SetLastWriteTimeUtc(const std::string& APath, TQuillonDateTime ATime) { SetTimeUtc(APath, ftimeLastWrite, ATime); }
  // clang-format on

  /// The copy appears when it is complete. @param ReplaceExisting otherwise a file of that name is an error
  /// @throws EQuillonException for a target that is there and no file
  static void CopyFile(const std::string& ASourceFileName, const std::string& ADestFileName, bool ReplaceExisting);
  /// As CopyFile. @return false if AProgress gave up; nothing has changed then
  static bool CopyFileEx(const std::string& ASourceFileName, const std::string& ADestFileName, bool ReplaceExisting,
                         const TQuillonCopyProgressEvent& AProgress);
  /// @param CheckExistence a missing file is no error
  /// @param ALockedFileTimeout above 0: deletion is tried every 100 milliseconds until this time is exceeded
  static void DeleteFile(const std::string& APath, bool CheckExistence = false,
                         std::chrono::milliseconds ALockedFileTimeout = std::chrono::milliseconds(0));
  /// On Windows only; elsewhere a failure.
  static void DeleteFileAfterReboot(const std::string& APath);
  /// To another volume a file goes as a copy; a link, and a folder, do not go there.
  static void MoveFile(const std::string& ASourceFileName, const std::string& ADestFileName, bool ReplaceExisting);

  static std::string GetCurrentDirectory();
  static void SetCurrentDirectory(const std::string& APath);
  static void CreateDirectory(const std::string& APath);
  /// Creates the folder and all its parents as far as they are missing.
  static void ForceDirectory(const std::string& APath);
  /// Removes all that is in the folder; links go, not what they lead to.
  static void ClearDirectory(const std::string& APath);
  /// @param ARecursive with all that is in it; otherwise it must be empty
  static void DeleteDirectory(const std::string& APath, bool ARecursive = false);
  /// Within one volume.
  static void MoveDirectory(const std::string& ASourcePath, const std::string& ADestPath);
  /// Paths of what is in the folder itself, in the order of their texts.
  /// @param ASearchPattern "*" for any text, "?" for any character; "*.*" is every name
  /// @param APosAttrFilter attributes that an entry must have, all of them
  /// @param ANegAttrFilter attributes of which it must have none
  static std::vector<std::string> GetFiles(const std::string& APath, std::string_view ASearchPattern = "*",
                                           TQuillonFileAttributes APosAttrFilter = {},
                                           TQuillonFileAttributes ANegAttrFilter = {});
  /// The path itself if it is free, else the first free one of "Name (1).txt", "Name (2).txt" and so on.
  static std::string MakeFileNameUnique(const std::string& APath);

  /// Whether the volume of the path belongs to another machine.
  static bool IsRemote(const std::string& APath);
  static std::vector<std::string> GetDrives();
  /// Of the volume that the path lies on, as all that follow.
  static TQuillonDriveType GetDriveType(const std::string& APath);
  static std::string GetVolumeName(const std::string& APath);
  static std::uint32_t GetVolumeSerialNumber(const std::string& APath);
  /// "NTFS", "ext4"; empty for an unknown one.
  static std::string GetFileSystemName(const std::string& APath);
  /// In bytes; the free ones are those that this user may fill.
  static std::int64_t GetDiskSize(const std::string& APath);
  static std::int64_t GetDiskFreeSpace(const std::string& APath);
  /// Whether the volume answers.
  static bool PingDisk(const std::string& APath);
};
