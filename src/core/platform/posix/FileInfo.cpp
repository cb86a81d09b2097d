#include "platform/FileInfo.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "platform/posix/PosixFile.h"

namespace {

using PosixCalls::Fail;

constexpr mode_t WriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

std::int64_t Milliseconds(const struct statx_timestamp& ATime) {
  return ATime.tv_sec * 1'000 + ATime.tv_nsec / 1'000'000;
}

std::string_view NameIn(std::string_view APath) {
  APath = APath.substr(0, APath.find_last_not_of('/') + 1);
  return APath.substr(APath.rfind('/') + 1);
}

struct TFileSystemKind {
  std::uint32_t Magic;
  const char* Name;
  TQuillonDriveType Type;
};

/// By the numbers of statfs(2).
constexpr TFileSystemKind FileSystems[] = {
    {0xEF53, "ext4", dtypeFixedDrive},        {0x58465342, "xfs", dtypeFixedDrive},
    {0x9123683E, "btrfs", dtypeFixedDrive},   {0x2FC12FC1, "zfs", dtypeFixedDrive},
    {0x794C7630, "overlay", dtypeFixedDrive}, {0x4D44, "vfat", dtypeFixedDrive},
    {0x2011BAB0, "exfat", dtypeFixedDrive},   {0x5346544E, "ntfs", dtypeFixedDrive},
    {0x01021994, "tmpfs", dtypeRAMDisk},      {0x858458F6, "ramfs", dtypeRAMDisk},
    {0x9660, "iso9660", dtypeCDROM},          {0x15013346, "udf", dtypeCDROM},
    {0x6969, "nfs", dtypeRemoteDrive},        {0xFF534D42, "cifs", dtypeRemoteDrive},
    {0xFE534D42, "smb3", dtypeRemoteDrive},   {0x517B, "smb", dtypeRemoteDrive},
    {0x01021997, "9p", dtypeRemoteDrive},     {0x5346414F, "afs", dtypeRemoteDrive},
};

TFileSystemKind KindOf(const std::string& APath) {
  struct statfs Info {};
  if (PosixCalls::Retried([&] { return ::statfs(APath.c_str(), &Info); }) < 0) {
    Fail(APath);
  }
  const auto Magic = static_cast<std::uint32_t>(Info.f_type);
  const auto* const Found = std::ranges::find(FileSystems, Magic, &TFileSystemKind::Magic);
  return Found != std::end(FileSystems) ? *Found : TFileSystemKind{Magic, "", dtypeUnknown};
}

}  // namespace

namespace Platform {

FileInfo InfoOf(const std::string& APath) {
  struct statx Info {};
  if (::statx(AT_FDCWD, APath.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &Info) < 0) {
    Fail(APath);
  }
  FileInfo Result;
  const bool HasBirth = (Info.stx_mask & STATX_BTIME) != 0;
  Result.Times = {Milliseconds(HasBirth ? Info.stx_btime : Info.stx_mtime), Milliseconds(Info.stx_atime),
                  Milliseconds(Info.stx_mtime)};
  Result.Size = static_cast<std::int64_t>(Info.stx_size);
  const std::string_view Name = NameIn(APath);
  if (Name.starts_with('.') && Name != "." && Name != "..") {
    Result.Attributes.Include(fattrHidden);
  }
  if ((Info.stx_mode & WriteBits) == 0) {
    Result.Attributes.Include(fattrReadOnly);
  }
  if (S_ISDIR(Info.stx_mode)) {
    Result.Attributes.Include(fattrDirectory);
  }
  if (Result.Attributes.IsEmpty()) {
    Result.Attributes.Include(fattrNormal);
  }
  return Result;
}

void SetAttributes(const std::string& APath, TQuillonFileAttributes AnAttributes) {
  struct stat Info {};
  if (::stat(APath.c_str(), &Info) < 0) {
    Fail(APath);
  }
  const bool IsReadOnly = (Info.st_mode & WriteBits) == 0;
  if (IsReadOnly == AnAttributes.Contains(fattrReadOnly)) {
    return;
  }
  const mode_t Mode = IsReadOnly ? Info.st_mode | S_IWUSR : Info.st_mode & ~WriteBits;
  if (::chmod(APath.c_str(), Mode & 07777) < 0) {
    Fail(APath);
  }
}

void SetTime(const std::string& APath, TQuillonFileTimeInfo AWhich, std::int64_t AMilliseconds) {
  if (AWhich == ftimeCreation) {
    throw EQuillonWin32Error(ENOTSUP, APath);
  }
  std::int64_t Seconds = AMilliseconds / 1'000;
  std::int64_t Rest = AMilliseconds % 1'000;
  if (Rest < 0) {
    --Seconds;
    Rest += 1'000;
  }
  const timespec Time = {.tv_sec = Seconds, .tv_nsec = Rest * 1'000'000};
  const timespec Kept = {.tv_sec = 0, .tv_nsec = UTIME_OMIT};
  const std::array<timespec, 2> Times = {AWhich == ftimeLastAccess ? Time : Kept,
                                         AWhich == ftimeLastWrite ? Time : Kept};
  if (::utimensat(AT_FDCWD, APath.c_str(), Times.data(), 0) < 0) {
    Fail(APath);
  }
}

void RemoveAtRestart(const std::string& APath) { throw EQuillonWin32Error(ENOTSUP, APath); }

void RemoveFolder(const std::string& APath) {
  std::error_code Error;
  if (!std::filesystem::remove(APath, Error)) {
    throw EQuillonWin32Error(Error ? Error.value() : ENOENT, APath);
  }
}

void RemoveTree(const std::string& APath) {
  std::error_code Error;
  std::filesystem::remove_all(APath, Error);
  if (Error) {
    throw EQuillonWin32Error(Error.value(), APath);
  }
}

std::string FullPath(const std::string& APath) { return std::filesystem::absolute(APath).lexically_normal(); }

std::string ShortForm(const std::string& APath) { return APath; }

std::string LongForm(const std::string& APath) { return APath; }

const bool PathsIgnoreCase = false;

std::vector<std::string> Drives() { return {"/"}; }

TQuillonDriveType DriveTypeOf(const std::string& APath) { return KindOf(APath).Type; }

VolumeInfo VolumeOf(const std::string& APath) {
  VolumeInfo Result;
  Result.FileSystem = KindOf(APath).Name;
  return Result;
}

VolumeSpace SpaceOf(const std::string& APath) {
  std::error_code Error;
  const auto Found = std::filesystem::space(APath, Error);
  if (Error) {
    throw EQuillonWin32Error(Error.value(), APath);
  }
  return {.Size = Found.capacity, .Free = Found.available};
}

bool IsSameFile(const std::string& APath1, const std::string& APath2) {
  std::error_code Ignored;
  return std::filesystem::equivalent(APath1, APath2, Ignored);
}

std::optional<VersionBlock> VersionBlockOf(const std::string& /*APath*/) { return std::nullopt; }

}  // namespace Platform
