#include "QuillonFileSystem/FilePath.h"

#include <algorithm>
#include <filesystem>

#include "QuillonFileSystem/NativePath.h"
#include "QuillonPreferences.h"
#include "QuillonText.h"
#include "platform/FileInfo.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/Preferences.h"

namespace {

using QuillonFileSystem::FromNative;
using QuillonFileSystem::OnPath;
using QuillonFileSystem::ToNative;

bool IsDelimiter(char AChar) { return Platform::PathDelimiters.find(AChar) != std::string_view::npos; }

std::size_t FileNameStart(std::string_view APath) {
  const std::size_t Delimiter = APath.find_last_of(Platform::PathDelimiters);
  return std::max(Delimiter == std::string_view::npos ? 0 : Delimiter + 1, Platform::RootLength(APath));
}

/// Place of the point ahead of the extension, or the path's length.
std::size_t ExtensionStart(std::string_view APath) {
  const std::size_t Point = APath.rfind('.');
  const bool IsExtension = Point != std::string_view::npos && Point > FileNameStart(APath) && Point + 1 < APath.size();
  return IsExtension ? Point : APath.size();
}

std::string InsertAheadOfExtension(std::string_view APath, std::string_view AText) {
  std::string Result(APath);
  return Result.insert(ExtensionStart(APath), AText);
}

}  // namespace

std::string TQuillonFilePath::AddExtension(std::string_view APath, std::string_view AnExtension) {
  std::string Result(APath);
  if (!APath.empty() && !AnExtension.empty()) {
    Result.append(".").append(AnExtension);
  }
  return Result;
}

std::string TQuillonFilePath::AddTrailingPathDelimiter(std::string_view APath) {
  std::string Result(APath);
  if (!Result.empty() && !IsDelimiter(Result.back())) {
    Result.push_back(Platform::PathDelimiters.front());
  }
  return Result;
}

std::string TQuillonFilePath::AddTrailingHTTPPathDelimiter(std::string_view APath) {
  std::string Result(APath);
  return APath.empty() || APath.ends_with('/') ? Result : Result + '/';
}

std::string TQuillonFilePath::ChangeDirectoryName(std::string_view APath, std::string_view ADirectoryName) {
  return Combine(ADirectoryName, GetFileName(APath));
}

std::string TQuillonFilePath::ChangeDriveLetter(std::string_view APath, char ADriveLetter) {
  std::string Result(APath);
  if (!Platform::PathsBeginWithSlash() && Result.size() > 1 && Result[1] == ':') {
    Result[0] = ADriveLetter;
  }
  return Result;
}

std::string TQuillonFilePath::ChangeFileName(std::string_view APath, std::string_view AFileName) {
  return Combine(GetDirectoryName(APath), AFileName);
}

std::string TQuillonFilePath::ChangeExtension(std::string_view APath, std::string_view AnExtension) {
  return AddExtension(APath.substr(0, ExtensionStart(APath)), AnExtension);
}

std::string TQuillonFilePath::Combine(std::string_view APath1, std::string_view APath2) {
  if (APath2.empty()) {
    return std::string(APath1);
  }
  return IsPathRooted(APath2) ? std::string(APath2) : AddTrailingPathDelimiter(APath1).append(APath2);
}

std::string TQuillonFilePath::Combine(std::span<const std::string> APaths) {
  std::string Result;
  for (const std::string& Path : APaths) {
    Result = Combine(Result, Path);
  }
  return Result;
}

std::string TQuillonFilePath::ForceExtension(std::string_view APath, std::string_view AnExtension) {
  return IsExtensionEqual(APath, AnExtension) ? std::string(APath) : AddExtension(APath, AnExtension);
}

std::string TQuillonFilePath::GetDirectoryName(std::string_view APath) {
  return RemoveTrailingPathDelimiter(APath.substr(0, FileNameStart(APath)));
}

std::string TQuillonFilePath::GetDisplayName(std::string_view APath) {
  std::string Name = GetFileName(APath);
  return Name.empty() ? "Unbenannt" : Name;
}

std::string TQuillonFilePath::GetDriveName(std::string_view APath) {
  return std::string(APath.substr(0, Platform::RootLength(APath)));
}

std::string TQuillonFilePath::GetExtension(std::string_view APath) {
  return HasExtension(APath) ? std::string(APath.substr(ExtensionStart(APath) + 1)) : std::string();
}

std::string TQuillonFilePath::GetFileName(std::string_view APath) {
  return std::string(APath.substr(FileNameStart(APath)));
}

std::string TQuillonFilePath::GetFileNameWithoutExtension(std::string_view APath) {
  return GetFileName(APath.substr(0, ExtensionStart(APath)));
}

std::string TQuillonFilePath::GetFullPath(std::string_view APath) {
  if (APath.empty()) {
    return {};
  }
  const std::string Path(APath);
  return OnPath(Path, [&] { return RemoveTrailingPathDelimiter(Platform::FullPath(Path)); });
}

std::string TQuillonFilePath::GetRelativePath(std::string_view APath, std::string_view ABasePath) {
  std::string Full = GetFullPath(APath);
  const std::string Base = GetFullPath(ABasePath);
  // The standard library takes a share for a folder.
  if (!IsPathEqual(GetDriveName(Full), GetDriveName(Base))) {
    return Full;
  }
  return OnPath(Full, [&] {
    std::string Relative = FromNative(ToNative(Full).lexically_relative(ToNative(Base)));
    return Relative.empty() ? Full : Relative;
  });
}

std::string TQuillonFilePath::GetLongPath(const std::string& APath) {
  return OnPath(APath, [&] { return Platform::LongForm(APath); });
}

std::string TQuillonFilePath::GetShortPath(const std::string& APath) {
  return OnPath(APath, [&] { return Platform::ShortForm(APath); });
}

std::string TQuillonFilePath::GetPathFromRegistry(std::string_view AKey, std::string_view AName) {
  for (const auto Open : {Platform::OpenUserPreferences, Platform::OpenMachinePreferences}) {
    const auto Preferences = Open();
    if (Preferences->OpenKey(AKey, false) && Preferences->ValueExists(AName)) {
      return Preferences->ReadString(AName);
    }
  }
  return {};
}

std::string TQuillonFilePath::GetGuidFileName(const TGUID& AGuid, std::string_view APrefix,
                                              std::string_view AnExtension) {
  return AddExtension(std::string(APrefix) + "-" + QuillonGuid::Braced(AGuid), AnExtension);
}

std::string TQuillonFilePath::GetUniqueFileName(std::string_view APrefix, std::string_view AnExtension) {
  return GetGuidFileName(QuillonGuid::New(), APrefix, AnExtension);
}

std::string TQuillonFilePath::GetTempPath() {
  return OnPath("", [] { return AddTrailingPathDelimiter(FromNative(std::filesystem::temp_directory_path())); });
}

std::string TQuillonFilePath::GetTempFileName(std::string_view APrefix) {
  return GetTempPath() + GetUniqueFileName(APrefix, "tmp");
}

bool TQuillonFilePath::HasExtension(std::string_view APath) { return ExtensionStart(APath) < APath.size(); }

bool TQuillonFilePath::IsExtensionEqual(std::string_view APath, std::string_view AnExtension) {
  return QuillonText::EqualsIgnoreCase(GetExtension(APath), AnExtension);
}

bool TQuillonFilePath::IsPath(std::string_view AText) {
  return AText.find_first_of(Platform::PathDelimiters) != std::string_view::npos;
}

bool TQuillonFilePath::IsPathEqual(std::string_view APath1, std::string_view APath2) {
  const std::string Full1 = GetFullPath(APath1);
  const std::string Full2 = GetFullPath(APath2);
  return Platform::PathsIgnoreCase ? QuillonText::EqualsIgnoreCase(Full1, Full2) : Full1 == Full2;
}

bool TQuillonFilePath::IsPathRooted(std::string_view APath) { return Platform::RootLength(APath) > 0; }

bool TQuillonFilePath::IsRoot(std::string_view APath) {
  return IsPathRooted(APath) && RemoveTrailingPathDelimiter(APath).size() == Platform::RootLength(APath);
}

std::string TQuillonFilePath::RemoveExtension(std::string_view APath) { return ChangeExtension(APath, {}); }

std::string TQuillonFilePath::RemoveLeadingPathDelimiter(std::string_view APath) {
  return std::string(APath.substr(std::min(APath.find_first_not_of(Platform::PathDelimiters), APath.size())));
}

std::string TQuillonFilePath::RemoveTrailingPathDelimiter(std::string_view APath) {
  while (APath.size() > Platform::RootLength(APath) && IsDelimiter(APath.back())) {
    APath.remove_suffix(1);
  }
  return std::string(APath);
}

std::string TQuillonFilePath::GetDateStampedFileName(std::string_view APath) {
  return GetDateStampedFileName(APath, TQuillonDate(QuillonDateTime::Now()));
}

std::string TQuillonFilePath::GetDateStampedFileName(std::string_view APath, TQuillonDate ADateStamp) {
  return InsertAheadOfExtension(APath, ADateStamp.ToString("-yyyyy-mm-dd"));
}

std::string TQuillonFilePath::GetTimeStampedFileName(std::string_view APath) {
  return GetTimeStampedFileName(APath, QuillonDateTime::Now());
}

std::string TQuillonFilePath::GetTimeStampedFileName(std::string_view APath, TQuillonDateTime ATimeStamp) {
  return InsertAheadOfExtension(APath, ATimeStamp.ToString("-yyyyy-mm-dd-ddd-hh-nn-ss"));
}
