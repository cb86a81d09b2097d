#include "platform/Files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <string>
#include <utility>

#include "platform/posix/PosixFile.h"

namespace {

using PosixCalls::Fail;
using PosixCalls::PathOf;
using PosixCalls::Retried;

int OpenFlags(Platform::Access AnAccess, Platform::Creation ACreation) {
  constexpr std::array AccessFlags = {O_RDONLY, O_WRONLY, O_RDWR};
  constexpr std::array CreationFlags = {0, O_CREAT, O_CREAT | O_EXCL, O_CREAT | O_EXCL,
                                        // A pipe of that name would be waited for.
                                        O_CREAT | O_NOFOLLOW | O_NONBLOCK};
  return AccessFlags[static_cast<std::size_t>(AnAccess)] | CreationFlags[static_cast<std::size_t>(ACreation)] |
         O_CLOEXEC | O_NOCTTY;
}

class PosixFileSystem final : public Platform::FileSystem {
 public:
  std::unique_ptr<Platform::File> Open(const std::string& APath, Platform::Access AnAccess,
                                       Platform::Creation ACreation, Platform::Lock ALock) override {
    constexpr int MostReplacements = 100;
    for (int Round = 1;; ++Round) {
      auto Result = OpenOnce(APath, AnAccess, ACreation, ALock);
      if (!Result->IsLocked() || Result->IsAt(APath) || Round == MostReplacements) {
        return Result;
      }
    }
  }

  std::unique_ptr<Platform::File> OpenUnnamed(const std::string& AFolder, Platform::Creation ACreation,
                                              Platform::Lock ALock) override {
#ifdef O_TMPFILE
    const mode_t Mode = ACreation == Platform::Creation::NewPrivate ? 0600 : 0666;
    const int Descriptor =
        Retried([&] { return ::open(AFolder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC | O_NOCTTY, Mode); });
    // EISDIR: a kernel that does not know the flag.
    if (Descriptor < 0 && errno != EISDIR) {
      Fail(AFolder);
    }
    if (Descriptor >= 0) {
      auto Result = std::make_unique<PosixFile>(Descriptor, AFolder);
      // It can be given a name only through this path, which is not everywhere.
      if (Result->IsAt(PathOf(Descriptor))) {
        Result->TakeLock(ALock, false);
        return Result;
      }
    }
#else
    static_cast<void>(ACreation);
    static_cast<void>(ALock);
#endif
    throw EQuillonWin32Error(ENOTSUP, AFolder);
  }

  Platform::EntryKind Look(const std::string& APath) override {
    struct stat Info {};
    if (::stat(APath.c_str(), &Info) < 0) {
      return Platform::EntryKind::None;
    }
    if (S_ISDIR(Info.st_mode)) {
      return Platform::EntryKind::Directory;
    }
    return S_ISREG(Info.st_mode) ? Platform::EntryKind::File : Platform::EntryKind::Other;
  }

  std::vector<std::string> NamesIn(const std::string& AFolder) override {
    const std::unique_ptr<DIR, int (*)(DIR*)> Folder(::opendir(AFolder.c_str()), ::closedir);
    if (Folder == nullptr) {
      Fail(AFolder);
    }
    std::vector<std::string> Names;
    while (const dirent* const Entry = ::readdir(Folder.get())) {
      Names.emplace_back(static_cast<const char*>(Entry->d_name));
    }
    return Names;
  }

  std::int64_t SizeOf(const std::string& APath) override {
    struct stat Info {};
    if (::stat(APath.c_str(), &Info) < 0) {
      Fail(APath);
    }
    return Info.st_size;
  }

  bool IsWriteable(const std::string& APath) override {
    return ::faccessat(AT_FDCWD, APath.c_str(), W_OK, AT_EACCESS) == 0;
  }

  void DemandGivesWay(const std::string& /*APath*/) override {}

  std::string FollowLinks(const std::string& APath) override {
    constexpr int MostLinks = 40;
    std::string Path = APath;
    for (int Links = 0; Links < MostLinks; ++Links) {
      std::array<char, PATH_MAX> Target;
      const ssize_t Length = ::readlink(Path.c_str(), Target.data(), Target.size());
      if (Length < 0) {
        return Path;
      }
      const std::string_view Next(Target.data(), static_cast<std::size_t>(Length));
      const std::size_t FolderLength = Next.starts_with('/') ? 0 : Path.rfind('/') + 1;
      Path.replace(FolderLength, std::string::npos, Next);
    }
    throw EQuillonWin32Error(ELOOP, APath);
  }

  void Remove(const std::string& APath) override { Check(::unlink(APath.c_str()), APath); }

  void Rename(const std::string& APath, const std::string& ANewPath, bool DoReplace) override {
    if (DoReplace) {
      Check(::rename(APath.c_str(), ANewPath.c_str()), ANewPath);
      return;
    }
    // A second link cannot come to stand over another file, as a renamed one does.
    if (::linkat(AT_FDCWD, APath.c_str(), AT_FDCWD, ANewPath.c_str(), 0) == 0) {
      Check(::unlink(APath.c_str()), APath);
      return;
    }
    if (errno != EPERM && errno != EMLINK && !Platform::IsUnsupported(errno)) {
      Fail(ANewPath);
    }
    struct stat Info {};
    if (::lstat(ANewPath.c_str(), &Info) == 0) {
      throw EQuillonWin32Error(EEXIST, ANewPath);
    }
    Check(::rename(APath.c_str(), ANewPath.c_str()), ANewPath);
  }

  void MakeDirectory(const std::string& APath) override { Check(::mkdir(APath.c_str(), 0777), APath); }

  void FlushDirectory(const std::string& APath) override {
    const int Descriptor = Retried([&] { return ::open(APath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (Descriptor < 0) {
      // A folder that may be written but not read cannot be flushed.
      if (errno == EACCES) {
        return;
      }
      Fail(APath);
    }
    PosixFile Folder(Descriptor, APath);
    Folder.Flush();
  }

 private:
  static std::unique_ptr<PosixFile> OpenOnce(const std::string& APath, Platform::Access AnAccess,
                                             Platform::Creation ACreation, Platform::Lock ALock) {
    const bool IsNew = ACreation == Platform::Creation::New || ACreation == Platform::Creation::NewPrivate;
    const mode_t Mode = ACreation == Platform::Creation::NewPrivate ? 0600 : 0666;
    const int Flags = OpenFlags(AnAccess, ACreation);
    const int Descriptor = Retried([&] { return ::open(APath.c_str(), Flags, Mode); });
    if (Descriptor < 0) {
      Fail(APath);
    }
    auto Result = std::make_unique<PosixFile>(Descriptor, APath);
    struct stat Info {};
    if (::fstat(Descriptor, &Info) < 0) {
      Fail(APath);
    }
    if (S_ISDIR(Info.st_mode)) {
      throw EQuillonWin32Error(EISDIR, APath);
    }
    if (ACreation == Platform::Creation::LockFile) {
      if (!S_ISREG(Info.st_mode)) {
        throw EQuillonWin32Error(EEXIST, APath);
      }
      // Whatever the mask says, another user's run must be able to wait for it and to take it over.
      constexpr mode_t ForEverybody = 0644;
      if (Info.st_size == 0 && Info.st_nlink == 1) {
        ::fchmod(Descriptor, ForEverybody);
      }
    }
    if (S_ISREG(Info.st_mode)) {
      // Only who removes left-overs can have the lock of a file that is just made, and gives it back at once.
      Result->TakeLock(ALock, IsNew);
    }
    return Result;
  }

  static void Check(int AResult, const std::string& APath) {
    if (AResult < 0) {
      Fail(APath);
    }
  }
};

Platform::FileSystem& System() {
  static PosixFileSystem Files;
  return Files;
}

}  // namespace

namespace Platform {

FileSystem& Files() { return FilesReplacement::Current(System); }

bool IsAccessDenied(int AnErrorCode) { return AnErrorCode == EACCES; }

bool IsMissing(int AnErrorCode) { return AnErrorCode == ENOENT || AnErrorCode == ENOTDIR; }

bool IsInUse(int AnErrorCode) { return AnErrorCode == EWOULDBLOCK; }

bool IsUnsupported(int AnErrorCode) {
  return AnErrorCode == EINVAL || AnErrorCode == ENOSYS || AnErrorCode == ENOTSUP || AnErrorCode == EOPNOTSUPP ||
         AnErrorCode == ENOLCK;
}

bool IsOtherVolume(int AnErrorCode) { return AnErrorCode == EXDEV; }

bool IsReplacementRefused(int AnErrorCode) {
  // EBUSY and EXDEV: the file is a mount point of its own, as containers have them.
  return AnErrorCode == EACCES || AnErrorCode == EPERM || AnErrorCode == EROFS || AnErrorCode == EBUSY ||
         AnErrorCode == EXDEV;
}

const bool OpenFilesGiveWay = true;

const int NotOpenError = EBADF;

int NotWriteableError(const std::string& APath) {
  const auto RefusalOf = [](const std::string& AnEntry) {
    return ::faccessat(AT_FDCWD, AnEntry.c_str(), W_OK, AT_EACCESS) != 0 ? errno : 0;
  };
  int Code = RefusalOf(APath);
  if (Code == ENOENT) {
    const std::size_t End = APath.rfind('/');
    Code = RefusalOf(End == std::string::npos ? "." : APath.substr(0, End + 1));
  }
  return Code == EROFS ? EROFS : EACCES;
}

const std::string_view PathDelimiters = "/";

std::size_t RootLength(std::string_view APath) { return APath.starts_with('/') ? 1 : 0; }

const std::size_t ShortestFolder = 1;

}  // namespace Platform
