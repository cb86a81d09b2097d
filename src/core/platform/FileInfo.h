#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "QuillonFileSystem/Types.h"

/// What a system tells of files and volumes beside their content. Failed calls raise EQuillonWin32Error.
namespace Platform {

struct FileInfo {
  TQuillonFileAttributes Attributes;
  /// Milliseconds since 1970-01-01T00:00:00 UTC, by TQuillonFileTimeInfo. Where the creation is not recorded, it is the
  /// last write.
  std::array<std::int64_t, 3> Times{};
  std::int64_t Size = 0;
};

/// Of what a path names; links are followed.
FileInfo InfoOf(const std::string& APath);
/// An attribute that the system does not have is passed over.
void SetAttributes(const std::string& APath, TQuillonFileAttributes AnAttributes);
/// @throws EQuillonWin32Error with a code of IsUnsupported for a time that the system does not let anybody set
void SetTime(const std::string& APath, TQuillonFileTimeInfo AWhich, std::int64_t AMilliseconds);
/// Lets the system remove the file when it starts the next time.
/// @throws EQuillonWin32Error with a code of IsUnsupported where there is no such service
void RemoveAtRestart(const std::string& APath);

/// Removes a folder, which must be empty, or a link to one.
void RemoveFolder(const std::string& APath);
/// Removes a file, a link, or a folder with all that is in it; links go, not what they lead to.
void RemoveTree(const std::string& APath);

/// The path from its root on by the current folder, without "." and ".."; nothing else is looked up.
std::string FullPath(const std::string& APath);
/// The form of an existing path with names of eight and three characters, and with the full ones; the path itself on
/// systems that have but one form.
std::string ShortForm(const std::string& APath);
std::string LongForm(const std::string& APath);
/// Whether names that differ in case only mean one file.
extern const bool PathsIgnoreCase;

/// Roots of the drives; "/" on systems without drives.
std::vector<std::string> Drives();

struct VolumeInfo {
  std::string Name;                ///< label; empty where it has none
  std::uint32_t SerialNumber = 0;  ///< 0 where it has none
  std::string FileSystem;          ///< "NTFS", "ext4"; empty for an unknown one
};

/// Of the volume that a path lies on; needs no medium in the drive.
TQuillonDriveType DriveTypeOf(const std::string& APath);
/// Of the volume that a path lies on.
VolumeInfo VolumeOf(const std::string& APath);

struct VolumeSpace {
  std::uint64_t Size = 0;  ///< bytes
  std::uint64_t Free = 0;  ///< bytes that this user may fill
};

VolumeSpace SpaceOf(const std::string& APath);

/// Whether both paths lead to one file or folder; false where one of them leads nowhere.
bool IsSameFile(const std::string& APath1, const std::string& APath2);

/// The version block of a program.
struct VersionBlock {
  /// Major version, minor version, revision, build.
  std::array<std::uint16_t, 4> FileVersion{};
  std::array<std::uint16_t, 4> ProductVersion{};
  TQuillonFileFlags Flags;
  std::string Language;
  /// By their names in the block: "CompanyName", "FileDescription".
  std::map<std::string, std::string, std::less<>> Texts;
};

/// None for a file without one, which all are on systems that know no such block.
std::optional<VersionBlock> VersionBlockOf(const std::string& APath);

}  // namespace Platform
