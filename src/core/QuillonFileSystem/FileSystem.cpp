#include "QuillonFileSystem/FileSystem.h"

#include <algorithm>
#include <thread>

#include "QuillonFileSystem/FilePath.h"
#include "QuillonFileSystem/NativePath.h"
#include "QuillonNumbers.h"
#include "platform/FileInfo.h"
#include "platform/Files.h"

using QuillonFileSystem::OnPath;

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

bool TQuillonFileSystem::IsFileInDirectory(const std::string& APath, const std::string& ADirectory) {
  const std::string Folder = TQuillonFilePath::GetFullPath(ADirectory);
  std::string Path = TQuillonFilePath::GetFullPath(APath);
  for (std::size_t Size = Path.size() + 1; Path.size() < Size && !Folder.empty();) {
    Size = Path.size();
    Path = TQuillonFilePath::GetDirectoryName(Path);
    if (Path.size() < Size && TQuillonFilePath::IsPathEqual(Path, Folder)) {
      return true;
    }
  }
  return false;
}

bool TQuillonFileSystem::SameFile(const std::string& APath1, const std::string& APath2) {
  return OnPath(APath1, [&] { return Platform::IsSameFile(APath1, APath2); });
}

std::int64_t TQuillonFileSystem::GetSize(const std::string& APath) {
  return OnPath(APath, [&] { return Platform::Files().SizeOf(APath); });
}

TQuillonFileAttributes TQuillonFileSystem::GetAttributes(const std::string& APath) {
  return OnPath(APath, [&] { return Platform::InfoOf(APath).Attributes; });
}

void TQuillonFileSystem::SetAttributes(const std::string& APath, TQuillonFileAttributes AnAttributes) {
  OnPath(APath, [&] { Platform::SetAttributes(APath, AnAttributes); });
}

TQuillonFileMode TQuillonFileSystem::GetFileMode(const std::string& APath) {
  if (!IsFile(APath)) {
    return fmodeUnknown;
  }
  return Platform::Files().IsWriteable(APath) ? fmodeReadWrite : fmodeReadOnly;
}

TQuillonDateTime TQuillonFileSystem::GetTime(const std::string& APath, TQuillonFileTimeInfo AWhich) {
  return OnPath(APath, [&] { return QuillonDateTime::LocalFromInstant(Platform::InfoOf(APath).Times[AWhich]); });
}

TQuillonDateTime TQuillonFileSystem::GetTimeUtc(const std::string& APath, TQuillonFileTimeInfo AWhich) {
  return OnPath(APath, [&] { return QuillonDateTime::UtcFromInstant(Platform::InfoOf(APath).Times[AWhich]); });
}

void TQuillonFileSystem::SetTime(const std::string& APath, TQuillonFileTimeInfo AWhich, TQuillonDateTime ATime) {
  OnPath(APath, [&] { Platform::SetTime(APath, AWhich, QuillonDateTime::InstantOfLocal(ATime)); });
}

void TQuillonFileSystem::SetTimeUtc(const std::string& APath, TQuillonFileTimeInfo AWhich, TQuillonDateTime ATime) {
  OnPath(APath, [&] { Platform::SetTime(APath, AWhich, QuillonDateTime::InstantOfUtc(ATime)); });
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

void TQuillonFileSystem::DeleteFileAfterReboot(const std::string& APath) {
  OnPath(APath, [&] { Platform::RemoveAtRestart(APath); });
}

void TQuillonFileSystem::MoveFile(const std::string& ASourceFileName, const std::string& ADestFileName,
                                  bool ReplaceExisting) {
  auto& Files = Platform::Files();
  try {
    Files.Rename(ASourceFileName, ADestFileName, ReplaceExisting);
    return;
  } catch (const EQuillonWin32Error& Error) {
    const bool CanCopy = Platform::IsOtherVolume(Error.ErrorCode()) && OnPath(ASourceFileName, [&] {
                           return IsFile(ASourceFileName) && Files.FollowLinks(ASourceFileName) == ASourceFileName;
                         });
    if (!CanCopy) {
      const bool IsSource = Platform::IsMissing(Error.ErrorCode()) && !Exists(ASourceFileName);
      throw EQuillonFileSystemError(Error.ErrorCode(), IsSource ? ASourceFileName : ADestFileName);
    }
  }
  CopyFile(ASourceFileName, ADestFileName, ReplaceExisting);
  SetTimeUtc(ADestFileName, ftimeLastWrite, GetLastWriteTimeUtc(ASourceFileName));
  DeleteFile(ASourceFileName);
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
  const std::string Extension = TQuillonFilePath::GetExtension(APath);
  const std::string Stem = TQuillonFilePath::RemoveExtension(APath);
  std::string Path = APath;
  for (int Number = 1; Exists(Path); ++Number) {
    Path = Stem + " (";
    QuillonNumbers::AppendInteger(Path, Number);
    Path = TQuillonFilePath::AddExtension(Path.append(")"), Extension);
  }
  return Path;
}
