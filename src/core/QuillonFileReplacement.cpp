#include "QuillonFileReplacement.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "QuillonFileSystem.h"
#include "QuillonGuid.h"
#include "QuillonNewFile.h"
#include "QuillonText.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/Signals.h"

namespace {

constexpr std::size_t BlockSize = 1'048'576;

/// Hands the content over in blocks. @param AFile a file of the platform or a stream
template <class TFile>
void WriteBlocks(TFile& AFile, const TQuillonContent& AContent) {
  AContent([&](std::string_view APiece) {
    for (; !APiece.empty(); APiece.remove_prefix(std::min(BlockSize, APiece.size()))) {
      AFile.Write(APiece.substr(0, BlockSize));
    }
  });
  AFile.Flush();
}

TQuillonContent ContentOf(std::string_view AText) {
  return [AText](const TQuillonContentSink& ASink) { ASink(AText); };
}

/// @return false if the call was refused in a way that may still leave the target open to us
template <class TCall>
bool TryReplacing(TCall ACall) {
  try {
    ACall();
    return true;
  } catch (const EQuillonWin32Error& Error) {
    if (!Platform::IsReplacementRefused(Error.ErrorCode())) {
      throw;
    }
    return false;
  }
}

/// The new file, flushed and in its place; nothing where only overwriting the old one is left.
std::unique_ptr<Platform::File> TryReplaceWhole(const std::string& ATarget, const TQuillonContent& AContent,
                                                Platform::Lock ALock, bool IsThere) {
  const std::string Folder = QuillonIO::FolderOf(ATarget);
  TQuillonNewFile::RemoveLeftOvers(Folder);
  const auto Creation = IsThere ? Platform::Creation::NewPrivate : Platform::Creation::New;
  std::optional<TQuillonNewFile> New;
  if (!TryReplacing([&] { New.emplace(Folder, Creation, ALock); })) {
    return nullptr;
  }
  if (IsThere) {
    New->File().TakeAttributes(ATarget);
  }
  WriteBlocks(New->File(), AContent);
  return TryReplacing([&] { New->Replace(ATarget); }) ? New->TakeFile() : nullptr;
}

/// A complete private copy of what a file will hold.
struct TCopy {
  std::string Path;
  std::unique_ptr<Platform::File> File;
};

TCopy KeepCopy(const std::string& ATarget, const TQuillonContent& AContent) {
  std::vector<std::string> Folders = Platform::FoldersToKeepFilesIn();
  Folders.insert(Folders.begin(), QuillonIO::FolderOf(ATarget));
  // Of a long name only the begin, or with what follows it would be too long for the system.
  constexpr std::size_t LongestStem = 200;
  std::string Name = QuillonText::CutAtCharacter(TQuillonFilePath::GetFileName(ATarget), LongestStem);
  Name.append(".").append(QuillonGuid::Plain(QuillonGuid::New()));
  for (std::size_t I = 0;; ++I) {
    std::string Path = TQuillonFilePath::AddExtension(TQuillonFilePath::Combine(Folders[I], Name), "copy");
    try {
      TQuillonFileSystem::ForceDirectory(Folders[I]);
      TQuillonNewFile Copy(Folders[I], Platform::Creation::NewPrivate);
      WriteBlocks(Copy.File(), AContent);
      Copy.Replace(Path);
      Platform::Files().FlushDirectory(Folders[I]);
      return {Path, Copy.TakeFile()};
    } catch (const EQuillonWin32Error& Error) {
      if (TQuillonFileSystem::Exists(Path)) {
        TQuillonFileSystem::DeleteFile(Path, true);
      }
      if (I + 1 == Folders.size()) {
        throw EQuillonFileHandleError(Error.ErrorCode(),
                                      ATarget + " (unverändert, denn eine Kopie ließ sich nirgends ablegen)");
      }
    }
  }
}

void Overwrite(TQuillonFileStream& AFile, const std::string& ATarget, const TQuillonContent& AContent) {
  // A signal ends the run when the file is complete and its copy is gone.
  Platform::WithSignalsDelayed([&] {
    std::vector<char> Block(BlockSize);
    TCopy Copy = KeepCopy(ATarget, AContent);
    try {
      // From the copy: whatever made the content has no part in this any more.
      Copy.File->Seek(0, Platform::SeekFrom::Begin);
      AFile.Seek(0, TQuillonSeekOrigin::Begin);
      while (const std::size_t Got = Copy.File->Read(Block)) {
        AFile.Write({Block.data(), Got});
      }
      AFile.Flush();
      AFile.SetEndOfFile();
      AFile.Flush();
    } catch (const EQuillonWin32Error& Error) {
      throw EQuillonFileHandleError(Error.ErrorCode(), ATarget + " (vollständige Kopie: " + Copy.Path + ")");
    }
    Copy.File.reset();
    TQuillonFileSystem::DeleteFile(Copy.Path, true);
  });
}

void WriteToDevice(const std::string& APath, const TQuillonContent& AContent) {
  const auto Device =
      Platform::Files().Open(APath, Platform::Access::Write, Platform::Creation::IfMissing, Platform::Lock::None);
  WriteBlocks(*Device, AContent);
  Device->Close();
}

}  // namespace

namespace QuillonIO {

std::unique_ptr<TQuillonFileStream> HoldFile(const std::string& AFileName, std::chrono::milliseconds ATimeOut) {
  return WaitWhileInUse(ATimeOut, [&] {
    try {
      return std::make_unique<TQuillonFileStream>(AFileName, fomOpenReadWrite, famShareDenyWrite);
    } catch (const EQuillonFileHandleError& Error) {
      if (!Platform::IsReplacementRefused(Error.ErrorCode())) {
        throw;
      }
      return std::make_unique<TQuillonFileStream>(AFileName, fomOpenRead, famShareDenyWrite);
    }
  });
}

void ReplaceFile(TQuillonFileStream& AFile, const TQuillonContent& AContent) {
  const std::string& Name = AFile.FileName();
  OnFile(Name, [&] {
    const std::string Target = Platform::Files().FollowLinks(Name);
    // A file that was taken away while it was held comes back.
    const bool IsThere = Platform::Files().Look(Target) == Platform::EntryKind::File;
    if (AFile.OpenMode() == fomOpenRead || (IsThere && !Platform::Files().IsWriteable(Target))) {
      throw EQuillonWin32Error(Platform::NotWriteableError(Target), Target);
    }
    if (auto New = TryReplaceWhole(Target, AContent, AFile.Lock(), IsThere)) {
      AFile.GoOnWith(std::move(New));
      Platform::Files().FlushDirectory(FolderOf(Target));
    } else {
      Overwrite(AFile, Target, AContent);
    }
  });
}

std::unique_ptr<TQuillonFileStream> ReplaceFile(const std::string& AFileName, const TQuillonContent& AContent,
                                                std::chrono::milliseconds ATimeOut) {
  return OnFile(AFileName, [&]() -> std::unique_ptr<TQuillonFileStream> {
    const std::string Target = Platform::Files().FollowLinks(AFileName);
    const Platform::EntryKind Kind = Platform::Files().Look(Target);
    if (Kind == Platform::EntryKind::File) {
      auto Held = HoldFile(AFileName, ATimeOut);
      ReplaceFile(*Held, AContent);
      return Held;
    }
    if (Kind != Platform::EntryKind::None) {
      WriteToDevice(Target, AContent);
      return nullptr;
    }
    auto New = TryReplaceWhole(Target, AContent, Platform::Lock::Exclusive, false);
    if (New == nullptr) {
      throw EQuillonWin32Error(Platform::NotWriteableError(Target), Target);
    }
    Platform::Files().FlushDirectory(FolderOf(Target));
    return std::make_unique<TQuillonFileStream>(AFileName, std::move(New), famShareDenyWrite);
  });
}

void ReplaceFile(TQuillonFileStream& AFile, std::string_view AContent) { ReplaceFile(AFile, ContentOf(AContent)); }

std::unique_ptr<TQuillonFileStream> ReplaceFile(const std::string& AFileName, std::string_view AContent,
                                                std::chrono::milliseconds ATimeOut) {
  return ReplaceFile(AFileName, ContentOf(AContent), ATimeOut);
}

void KeepBackup(TQuillonFileStream& AFile, const std::string& ABackupName) {
  if (TQuillonFileSystem::Exists(ABackupName)) {
    return;
  }
  OnFile(ABackupName, [&] {
    const std::string Folder = FolderOf(ABackupName);
    TQuillonNewFile Backup(Folder, Platform::Creation::NewPrivate);
    Backup.File().TakeAttributes(AFile.FileName());
    AFile.Seek(0, TQuillonSeekOrigin::Begin);
    std::vector<char> Block(BlockSize);
    while (const std::size_t Got = AFile.Read(Block)) {
      Backup.File().Write({Block.data(), Got});
    }
    Backup.File().Flush();
    if (Backup.TryAdd(ABackupName)) {
      Platform::Files().FlushDirectory(Folder);
    }
  });
}

}  // namespace QuillonIO
