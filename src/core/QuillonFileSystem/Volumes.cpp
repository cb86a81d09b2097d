#include <algorithm>
#include <filesystem>
#include <limits>
#include <system_error>

#include "QuillonFileSystem/FileSystem.h"
#include "QuillonFileSystem/NativePath.h"
#include "platform/FileInfo.h"

using QuillonFileSystem::OnPath;
using QuillonFileSystem::ToNative;

namespace {

Platform::VolumeInfo VolumeOf(const std::string& APath) {
  return OnPath(APath, [&] { return Platform::VolumeOf(APath); });
}

std::int64_t Bytes(std::uintmax_t ACount) {
  constexpr auto Most = std::numeric_limits<std::int64_t>::max();
  return static_cast<std::int64_t>(std::min<std::uintmax_t>(ACount, Most));
}

std::filesystem::space_info SpaceOf(const std::string& APath) {
  return OnPath(APath, [&] { return std::filesystem::space(ToNative(APath)); });
}

}  // namespace

bool TQuillonFileSystem::IsRemote(const std::string& APath) { return GetDriveType(APath) == dtypeRemoteDrive; }

std::vector<std::string> TQuillonFileSystem::GetDrives() {
  return OnPath("", [] { return Platform::Drives(); });
}

TQuillonDriveType TQuillonFileSystem::GetDriveType(const std::string& APath) { return VolumeOf(APath).Type; }

std::string TQuillonFileSystem::GetVolumeName(const std::string& APath) { return VolumeOf(APath).Name; }

std::uint32_t TQuillonFileSystem::GetVolumeSerialNumber(const std::string& APath) {
  return VolumeOf(APath).SerialNumber;
}

std::string TQuillonFileSystem::GetFileSystemName(const std::string& APath) { return VolumeOf(APath).FileSystem; }

std::int64_t TQuillonFileSystem::GetDiskSize(const std::string& APath) { return Bytes(SpaceOf(APath).capacity); }

std::int64_t TQuillonFileSystem::GetDiskFreeSpace(const std::string& APath) { return Bytes(SpaceOf(APath).available); }

bool TQuillonFileSystem::PingDisk(const std::string& APath) {
  try {
    SpaceOf(APath);
    return true;
  } catch (const EQuillonFileSystemError&) {
    return false;
  }
}
