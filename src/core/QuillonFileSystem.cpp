#include "QuillonFileSystem.h"

#include <algorithm>
#include <thread>

#include "QuillonDateTimeFormat.h"
#include "QuillonNumbers.h"
#include "platform/Files.h"

namespace {

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

/// Passes a failure of the platform on as one of the file system.
template <class TCall>
decltype(auto) OnPath(const std::string& APath, TCall ACall) {
  try {
    return ACall();
  } catch (const EQuillonWin32Error& Error) {
    throw EQuillonFileSystemError(Error.ErrorCode(), APath);
  }
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

std::string TQuillonFilePath::GetDirectoryName(std::string_view APath) {
  return RemoveTrailingPathDelimiter(APath.substr(0, FileNameStart(APath)));
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

bool TQuillonFilePath::HasExtension(std::string_view APath) { return ExtensionStart(APath) < APath.size(); }

bool TQuillonFilePath::IsPathRooted(std::string_view APath) { return Platform::RootLength(APath) > 0; }

bool TQuillonFilePath::IsRoot(std::string_view APath) {
  return IsPathRooted(APath) && RemoveTrailingPathDelimiter(APath).size() == Platform::RootLength(APath);
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

bool TQuillonFileSystem::Exists(const std::string& APath) {
  return Platform::Files().Look(APath) != Platform::EntryKind::None;
}

bool TQuillonFileSystem::IsDirectory(const std::string& APath) {
  return Platform::Files().Look(APath) == Platform::EntryKind::Directory;
}

bool TQuillonFileSystem::IsFile(const std::string& APath) {
  return Platform::Files().Look(APath) == Platform::EntryKind::File;
}

bool TQuillonFileSystem::HasFile(const std::string& APath) {
  const bool IsThere = IsFile(APath);
  if (!IsThere && Exists(APath)) {
    throw EQuillonException("\"" + APath + "\" ist keine Datei.");
  }
  return IsThere;
}

std::int64_t TQuillonFileSystem::GetSize(const std::string& APath) {
  return OnPath(APath, [&] { return Platform::Files().SizeOf(APath); });
}

void TQuillonFileSystem::DeleteFile(const std::string& APath, bool CheckExistence,
                                    std::chrono::milliseconds ALockedFileTimeout) {
  constexpr std::chrono::milliseconds Pause(100);
  for (std::chrono::milliseconds Waited(0);; Waited += Pause) {
    try {
      Platform::Files().Remove(APath);
      return;
    } catch (const EQuillonWin32Error& Error) {
      if (CheckExistence && Platform::IsMissing(Error.ErrorCode())) {
        return;
      }
      if (ALockedFileTimeout.count() <= 0 || Waited > ALockedFileTimeout) {
        throw EQuillonFileSystemError(Error.ErrorCode(), APath);
      }
    }
    std::this_thread::sleep_for(Pause);
  }
}

void TQuillonFileSystem::MoveFile(const std::string& ASourceFileName, const std::string& ADestFileName,
                                  bool ReplaceExisting) {
  OnPath(ADestFileName, [&] { Platform::Files().Rename(ASourceFileName, ADestFileName, ReplaceExisting); });
}

void TQuillonFileSystem::CreateDirectory(const std::string& APath) {
  OnPath(APath, [&] { Platform::Files().MakeDirectory(APath); });
}

void TQuillonFileSystem::ForceDirectory(const std::string& APath) {
  const std::string Path = TQuillonFilePath::RemoveTrailingPathDelimiter(APath);
  if (Path.size() < Platform::ShortestFolder || TQuillonFilePath::IsRoot(Path) || IsDirectory(Path)) {
    return;
  }
  // From the root on: a path that is too long or has no place ends at the first folder that cannot be.
  for (std::size_t End = Platform::RootLength(Path); End < Path.size();) {
    End = std::min(Path.find_first_of(Platform::PathDelimiters, End + 1), Path.size());
    const std::string Parent = Path.substr(0, End);
    if (Parent.size() < Platform::ShortestFolder || IsDirectory(Parent)) {
      continue;
    }
    try {
      CreateDirectory(Parent);
    } catch (const EQuillonFileSystemError&) {
      // Another process may have been faster.
      if (!IsDirectory(Parent)) {
        throw;
      }
    }
  }
}

std::string TQuillonFileSystem::MakeFileNameUnique(const std::string& APath) {
  std::string Path = APath;
  for (int Number = 1; Exists(Path); ++Number) {
    std::string Suffix = " (";
    QuillonNumbers::AppendInteger(Suffix, Number);
    Path = InsertAheadOfExtension(APath, Suffix.append(")"));
  }
  return Path;
}
