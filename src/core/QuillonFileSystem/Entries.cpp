#include "QuillonFileSystem/Entries.h"

#include "QuillonFileSystem/FilePath.h"
#include "QuillonFileSystem/FileSystem.h"
#include "QuillonText.h"
#include "QuillonValues.h"
#include "platform/FileInfo.h"

TQuillonAbstractFile::TQuillonAbstractFile(std::string_view APath) : FFullName(TQuillonFilePath::GetFullPath(APath)) {
  TQuillonAbstractFile::RefreshInfos();
}

void TQuillonAbstractFile::RefreshInfos() {
  const bool IsThere = TQuillonFileSystem::Exists(FFullName);
  const auto Time = [&](TQuillonFileTimeInfo AWhich) {
    return IsThere ? TQuillonFileSystem::GetTime(FFullName, AWhich) : TQuillonDateTime();
  };
  FAttributes = IsThere ? TQuillonFileSystem::GetAttributes(FFullName) : TQuillonFileAttributes();
  FCreationTime = Time(ftimeCreation);
  FLastAccessTime = Time(ftimeLastAccess);
  FLastWriteTime = Time(ftimeLastWrite);
}

bool TQuillonAbstractFile::Equals(const TQuillonObject& AnObject) const {
  const auto* const Other = dynamic_cast<const TQuillonAbstractFile*>(&AnObject);
  return Other != nullptr && TQuillonFilePath::IsPathEqual(FFullName, Other->FFullName);
}

std::int32_t TQuillonAbstractFile::GetHashCode() const {
  return QuillonValues::HashOf(Platform::PathsIgnoreCase ? QuillonText::ToLower(FFullName) : FFullName);
}

void TQuillonAbstractFile::SetFullName(std::string_view APath) {
  FFullName = TQuillonFilePath::GetFullPath(APath);
  RefreshInfos();
}

TQuillonFile::TQuillonFile(std::string_view APath) : TQuillonAbstractFile(APath) { TQuillonFile::RefreshInfos(); }

void TQuillonFile::RefreshInfos() {
  TQuillonAbstractFile::RefreshInfos();
  FSize = Exists() ? TQuillonFileSystem::GetSize(FFullName) : 0;
}

bool TQuillonFile::Exists() const { return TQuillonFileSystem::IsFile(FFullName); }

void TQuillonFile::Delete() {
  TQuillonFileSystem::DeleteFile(FFullName);
  RefreshInfos();
}

void TQuillonFile::CopyTo(const std::string& ADestFileName, bool ReplaceExisting) const {
  TQuillonFileSystem::CopyFile(FFullName, ADestFileName, ReplaceExisting);
}

void TQuillonFile::MoveTo(const std::string& ADestFileName, bool ReplaceExisting) {
  TQuillonFileSystem::MoveFile(FFullName, ADestFileName, ReplaceExisting);
  SetFullName(ADestFileName);
}

bool TQuillonDirectory::Exists() const { return TQuillonFileSystem::IsDirectory(FFullName); }

void TQuillonDirectory::Create() {
  TQuillonFileSystem::ForceDirectory(FFullName);
  RefreshInfos();
}

TQuillonDirectory TQuillonDirectory::CreateSubdirectory(std::string_view AName) const {
  const std::string Path = TQuillonFilePath::Combine(FFullName, AName);
  TQuillonFileSystem::ForceDirectory(Path);
  return TQuillonDirectory(Path);  // NOLINT(modernize-return-braced-init-list): the constructor is explicit
}

void TQuillonDirectory::Delete(bool Recursiv) {
  TQuillonFileSystem::DeleteDirectory(FFullName, Recursiv);
  RefreshInfos();
}

void TQuillonDirectory::MoveTo(const std::string& ADestPath) {
  TQuillonFileSystem::MoveDirectory(FFullName, ADestPath);
  SetFullName(ADestPath);
}

std::vector<std::string> TQuillonDirectory::GetFiles(std::string_view ASearchPattern) const {
  return TQuillonFileSystem::GetFiles(FFullName, ASearchPattern);
}

TQuillonDriveInfo::TQuillonDriveInfo(const std::string& ADrive)
    : FName(ADrive),
      FDriveType(TQuillonFileSystem::GetDriveType(ADrive)),
      FVolumeName(TQuillonFileSystem::GetVolumeName(ADrive)),
      FSerialNumber(TQuillonFileSystem::GetVolumeSerialNumber(ADrive)),
      FFileSystemName(TQuillonFileSystem::GetFileSystemName(ADrive)),
      FTotalSize(TQuillonFileSystem::GetDiskSize(ADrive)),
      FFreeSpace(TQuillonFileSystem::GetDiskFreeSpace(ADrive)) {}
