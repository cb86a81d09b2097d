#include "platform/Files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <limits>
#include <string>
#include <utility>

#include "QuillonTypes.h"

namespace {

[[noreturn]] void Fail(const std::string& APath) { throw EQuillonWin32Error(errno, APath); }

/// Repeats a call that a signal broke off.
template <class TCall>
auto Retried(TCall ACall) {
  auto Result = ACall();
  while (Result < 0 && errno == EINTR) {
    Result = ACall();
  }
  return Result;
}

std::string PathOf(int ADescriptor) { return "/proc/self/fd/" + std::to_string(ADescriptor); }

class PosixFile final : public Platform::File {
 public:
  PosixFile(int ADescriptor, std::string APath) : FDescriptor(ADescriptor), FPath(std::move(APath)) {}
  ~PosixFile() override {
    if (FDescriptor >= 0) {
      ::close(FDescriptor);
    }
  }

  std::size_t Read(std::span<char> ABuffer) override {
    const std::size_t Wanted = std::min<std::size_t>(ABuffer.size(), SSIZE_MAX);
    return Checked(Retried([&] { return ::read(FDescriptor, ABuffer.data(), Wanted); }));
  }

  void Write(std::string_view ABytes) override {
    while (!ABytes.empty()) {
      const std::size_t Wanted = std::min<std::size_t>(ABytes.size(), SSIZE_MAX);
      ABytes.remove_prefix(Checked(Retried([&] { return ::write(FDescriptor, ABytes.data(), Wanted); })));
    }
  }

  std::int64_t Seek(std::int64_t AnOffset, Platform::SeekFrom AnOrigin) override {
    constexpr std::array Origins = {SEEK_SET, SEEK_CUR, SEEK_END};
    const off_t Position = ::lseek(FDescriptor, AnOffset, Origins[static_cast<std::size_t>(AnOrigin)]);
    if (Position < 0) {
      Fail(FPath);
    }
    return Position;
  }

  void SetSize(std::int64_t ASize) override {
    Checked(Retried([&] { return ::ftruncate(FDescriptor, ASize); }));
  }

  void Flush() override {
    if (Retried([&] { return ::fsync(FDescriptor); }) < 0 && !Platform::IsUnsupported(errno) && errno != EROFS) {
      Fail(FPath);
    }
  }

#ifdef SYNC_FILE_RANGE_WRITE
  void BeginFlush() override { ::sync_file_range(FDescriptor, 0, 0, SYNC_FILE_RANGE_WRITE); }

  void EndFlush() override {
    constexpr unsigned Whole = SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
    if (Retried([&] { return ::sync_file_range(FDescriptor, 0, 0, Whole); }) < 0) {
      Flush();
    }
  }

  void FlushSystem() override { Checked(Retried([&] { return ::syncfs(FDescriptor); })); }
#else
  void BeginFlush() override {}
  void EndFlush() override { Flush(); }
  void FlushSystem() override {}
#endif

  void TakeAttributes(const std::string& APath) override {
    struct stat Info {};
    struct stat Own {};
    if (::stat(APath.c_str(), &Info) < 0 || ::fstat(FDescriptor, &Own) < 0) {
      Fail(APath);
    }
    constexpr mode_t AllPermissions = 07777;
    mode_t Mode = Info.st_mode & AllPermissions;
    const bool IsOwnerSame = Own.st_uid == Info.st_uid || ::fchown(FDescriptor, Info.st_uid, Info.st_gid) == 0;
    if (!IsOwnerSame) {
      Mode &= ~static_cast<mode_t>(S_ISUID);
    }
    if (::fstat(FDescriptor, &Own) < 0) {
      Fail(FPath);
    }
    if (Own.st_gid != Info.st_gid && ::fchown(FDescriptor, static_cast<uid_t>(-1), Info.st_gid) < 0) {
      const mode_t OfOthers = Mode & S_IRWXO;
      Mode = (Mode & ~static_cast<mode_t>(S_IRWXG | S_ISGID)) | ((OfOthers << 3) & Mode & S_IRWXG);
    }
    if (::fchmod(FDescriptor, Mode) < 0) {
      Fail(FPath);
    }
  }

  void GiveName(const std::string& APath) override {
    if (::linkat(AT_FDCWD, PathOf(FDescriptor).c_str(), AT_FDCWD, APath.c_str(), AT_SYMLINK_FOLLOW) < 0) {
      Fail(APath);
    }
  }

  bool IsLocked() const override { return FIsLocked; }

  /// @param DoWait whether a lock that is not free is waited for
  void TakeLock(Platform::Lock ALock, bool DoWait) {
    if (ALock == Platform::Lock::None) {
      RefuseIfSole();
      return;
    }
    const int Operation = (ALock == Platform::Lock::Shared ? LOCK_SH : LOCK_EX) | (DoWait ? 0 : LOCK_NB);
    FIsLocked = Retried([&] { return ::flock(FDescriptor, Operation); }) == 0;
    // EBADF: over a network a lock may need a file that is open for writing.
    if (!FIsLocked && errno != EBADF && !Platform::IsUnsupported(errno)) {
      Fail(FPath);
    }
    if (ALock == Platform::Lock::Sole) {
      MarkAsSole();
    }
  }

  /// Whether the path names this very file.
  bool IsAt(const std::string& APath) const {
    struct stat Named {};
    struct stat Own {};
    return ::stat(APath.c_str(), &Named) == 0 && ::fstat(FDescriptor, &Own) == 0 && Named.st_dev == Own.st_dev &&
           Named.st_ino == Own.st_ino;
  }

  void Close() override {
    const int Descriptor = std::exchange(FDescriptor, -1);
    // After EINTR the descriptor is gone all the same on the systems that matter: closing again might hit another file.
    if (Descriptor >= 0 && ::close(Descriptor) < 0 && errno != EINTR) {
      Fail(FPath);
    }
  }

 private:
  template <class TResult>
  std::size_t Checked(TResult AResult) const {
    if (AResult < 0) {
      Fail(FPath);
    }
    return static_cast<std::size_t>(AResult);
  }

  // One byte far behind any content stands for the whole file: a sole holder's lock on it, which belongs to the open
  // file as flock's does, is what those see who ask for no lock. Locks of other kinds mean nothing here.
#ifdef F_OFD_SETLK
  static struct flock SoleMark(short AType) { struct flock Mark { };
    Mark.l_type = AType;
    Mark.l_whence = SEEK_SET;
    Mark.l_start = std::numeric_limits<off_t>::max() - 1;
    Mark.l_len = 1;
    return Mark;
  }
  void MarkAsSole() const {
    for (const short Type : std::array<short, 2>{F_WRLCK, F_RDLCK}) {
      struct flock Mark = SoleMark(Type);
      if (::fcntl(FDescriptor, F_OFD_SETLK, &Mark) == 0 || errno != EBADF) {
        return;
      }
    }
  }
  void RefuseIfSole() const {
    struct flock Mark = SoleMark(F_WRLCK);
    if (::fcntl(FDescriptor, F_OFD_GETLK, &Mark) == 0 && Mark.l_type != F_UNLCK && Mark.l_pid == -1) {
      throw EQuillonWin32Error(EWOULDBLOCK, FPath);
    }
  }
#else
  void MarkAsSole() const {}
  void RefuseIfSole() const {}
#endif

  int FDescriptor;
  std::string FPath;
  bool FIsLocked = false;
};

int OpenFlags(Platform::Access AnAccess, Platform::Creation ACreation) {
  constexpr std::array AccessFlags = {O_RDONLY, O_WRONLY, O_RDWR};
  constexpr std::array CreationFlags = {0, O_CREAT, O_CREAT | O_EXCL, O_CREAT | O_EXCL};
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
    while (const dirent* const Entry = ::readdir(Folder.get())) {  // NOLINT(concurrency-mt-unsafe): a stream of our own
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
    // Only who removes left-overs can have the lock of a file that is just made, and gives it back at once.
    Result->TakeLock(ALock, IsNew);
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

Platform::FileSystem* Current = nullptr;

}  // namespace

namespace Platform {

FileSystem& Files() { return Current != nullptr ? *Current : System(); }

FilesReplacement::FilesReplacement(FileSystem& AFiles) : FReplaced(Current) { Current = &AFiles; }

FilesReplacement::~FilesReplacement() { Current = FReplaced; }

bool IsAccessDenied(int AnErrorCode) { return AnErrorCode == EACCES; }

bool IsMissing(int AnErrorCode) { return AnErrorCode == ENOENT || AnErrorCode == ENOTDIR; }

bool IsInUse(int AnErrorCode) { return AnErrorCode == EWOULDBLOCK; }

bool IsUnsupported(int AnErrorCode) {
  return AnErrorCode == EINVAL || AnErrorCode == ENOSYS || AnErrorCode == ENOTSUP || AnErrorCode == EOPNOTSUPP ||
         AnErrorCode == ENOLCK;
}

bool IsReplacementRefused(int AnErrorCode) {
  // EBUSY and EXDEV: the file is a mount point of its own, as containers have them.
  return AnErrorCode == EACCES || AnErrorCode == EPERM || AnErrorCode == EROFS || AnErrorCode == EBUSY ||
         AnErrorCode == EXDEV;
}

const int NotOpenError = EBADF;
const int NotWriteableError = EACCES;

const std::string_view PathDelimiters = "/";

std::size_t RootLength(std::string_view APath) { return APath.starts_with('/') ? 1 : 0; }

}  // namespace Platform
