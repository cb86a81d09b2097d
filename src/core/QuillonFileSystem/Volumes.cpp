#include <algorithm>
#include <limits>

#include "QuillonFileSystem/FileSystem.h"
#include "QuillonFileSystem/NativePath.h"
#include "platform/FileInfo.h"

using QuillonFileSystem::OnPath;

namespace {

Platform::VolumeInfo VolumeOf(const std::string& APath) {
  return OnPath(APath, [&] { return Platform::VolumeOf(APath); });
}

std::int64_t Bytes(std::uint64_t ACount) {
  constexpr auto Most = std::numeric_limits<std::int64_t>::max();
  return static_cast<std::int64_t>(std::min<std::uint64_t>(ACount, Most));
}

Platform::VolumeSpace SpaceOf(const std::string& APath) {
  return OnPath(APath, [&] { return Platform::SpaceOf(APath); });
}

}  // namespace

bool TQuillonFileSystem::IsRemote(const std::string& APath) { return GetDriveType(APath) == dtypeRemoteDrive; }

std::vector<std::string> TQuillonFileSystem::GetDrives() {
  return OnPath("", [] { return Platform::Drives(); });
}

TQuillonDriveType TQuillonFileSystem::GetDriveType(const std::string& APath) {
  return OnPath(APath, [&] { return Platform::DriveTypeOf(APath); });
}

std::string TQuillonFileSystem::GetVolumeName(const std::string& APath) { return VolumeOf(APath).Name; }

std::uint32_t TQuillonFileSystem::GetVolumeSerialNumber(const std::string& APath) {
  return VolumeOf(APath).SerialNumber;
}

std::string TQuillonFileSystem::GetFileSystemName(const std::string& APath) { return VolumeOf(APath).FileSystem; }

std::int64_t TQuillonFileSystem::GetDiskSize(const std::string& APath) { return Bytes(SpaceOf(APath).Size); }

std::int64_t TQuillonFileSystem::GetDiskFreeSpace(const std::string& APath) { return Bytes(SpaceOf(APath).Free); }

bool TQuillonFileSystem::PingDisk(const std::string& APath) {
  try {
    SpaceOf(APath);
    return true;
  } catch (const EQuillonFileSystemError&) {
    return false;
  }
}
