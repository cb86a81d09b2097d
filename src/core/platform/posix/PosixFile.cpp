#include "platform/posix/PosixFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <limits>
#include <utility>

namespace {

using PosixCalls::Fail;
using PosixCalls::PathOf;
using PosixCalls::Retried;

#ifdef F_OFD_SETLK
/// One byte far behind any content stands for the whole file: a sole holder's lock on it, which belongs to the open
/// file as flock's does, is what those see who ask for no lock. Locks of other kinds mean nothing here.
struct flock SoleMark(int AType) {
  struct flock Mark = {};
  Mark.l_type = static_cast<short>(AType);
  Mark.l_whence = SEEK_SET;
  Mark.l_start = std::numeric_limits<off_t>::max() - 1;
  Mark.l_len = 1;
  return Mark;
}
#endif

}  // namespace

PosixFile::PosixFile(int ADescriptor, std::string APath) : FDescriptor(ADescriptor), FPath(std::move(APath)) {}

PosixFile::~PosixFile() {
  if (FDescriptor >= 0) {
    ::close(FDescriptor);
  }
}

template <class TResult>
std::size_t PosixFile::Checked(TResult AResult) const {
  if (AResult < 0) {
    Fail(FPath);
  }
  return static_cast<std::size_t>(AResult);
}

std::size_t PosixFile::Read(std::span<char> ABuffer) {
  const std::size_t Wanted = std::min<std::size_t>(ABuffer.size(), SSIZE_MAX);
  return Checked(Retried([&] { return ::read(FDescriptor, ABuffer.data(), Wanted); }));
}

void PosixFile::Write(std::string_view ABytes) {
  while (!ABytes.empty()) {
    const std::size_t Wanted = std::min<std::size_t>(ABytes.size(), SSIZE_MAX);
    ABytes.remove_prefix(Checked(Retried([&] { return ::write(FDescriptor, ABytes.data(), Wanted); })));
  }
}

std::int64_t PosixFile::Seek(std::int64_t AnOffset, Platform::SeekFrom AnOrigin) {
  constexpr std::array Origins = {SEEK_SET, SEEK_CUR, SEEK_END};
  const off_t Position = ::lseek(FDescriptor, AnOffset, Origins[static_cast<std::size_t>(AnOrigin)]);
  if (Position < 0) {
    Fail(FPath);
  }
  return Position;
}

void PosixFile::SetSize(std::int64_t ASize) {
  Checked(Retried([&] { return ::ftruncate(FDescriptor, ASize); }));
}

void PosixFile::Flush() {
  if (Retried([&] { return ::fsync(FDescriptor); }) < 0 && !Platform::IsUnsupported(errno) && errno != EROFS) {
    Fail(FPath);
  }
}

#ifdef SYNC_FILE_RANGE_WRITE
void PosixFile::BeginFlush() { ::sync_file_range(FDescriptor, 0, 0, SYNC_FILE_RANGE_WRITE); }

void PosixFile::EndFlush() {
  constexpr unsigned Whole = SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
  if (Retried([&] { return ::sync_file_range(FDescriptor, 0, 0, Whole); }) < 0) {
    // A failure is told once: a second call would find none.
    if (errno != ESPIPE && !Platform::IsUnsupported(errno)) {
      Fail(FPath);
    }
    Flush();
  }
}

void PosixFile::FlushSystem() {
  Checked(Retried([&] { return ::syncfs(FDescriptor); }));
}
#else
void PosixFile::BeginFlush() {}
void PosixFile::EndFlush() { Flush(); }
void PosixFile::FlushSystem() {}
#endif

void PosixFile::TakeAttributes(const std::string& APath) {
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

void PosixFile::GiveName(const std::string& APath) {
  if (::linkat(AT_FDCWD, PathOf(FDescriptor).c_str(), AT_FDCWD, APath.c_str(), AT_SYMLINK_FOLLOW) < 0) {
    Fail(APath);
  }
}

void PosixFile::TakeLock(Platform::Lock ALock, bool DoWait) {
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
  if (ALock == Platform::Lock::Sole || ALock == Platform::Lock::Readers) {
    MarkAsSole();
  }
}

bool PosixFile::IsAt(const std::string& APath) const {
  struct stat Named {};
  struct stat Own {};
  return ::stat(APath.c_str(), &Named) == 0 && ::fstat(FDescriptor, &Own) == 0 && Named.st_dev == Own.st_dev &&
         Named.st_ino == Own.st_ino;
}

void PosixFile::Close() {
  const int Descriptor = std::exchange(FDescriptor, -1);
  // After EINTR the descriptor is gone all the same on the systems that matter: closing again might hit another file.
  if (Descriptor >= 0 && ::close(Descriptor) < 0 && errno != EINTR) {
    Fail(FPath);
  }
}

#ifdef F_OFD_SETLK
void PosixFile::MarkAsSole() const {
  for (const int Type : {F_WRLCK, F_RDLCK}) {
    struct flock Mark = SoleMark(Type);
    if (::fcntl(FDescriptor, F_OFD_SETLK, &Mark) == 0 || errno != EBADF) {
      return;
    }
  }
}
void PosixFile::RefuseIfSole() const {
  struct flock Mark = SoleMark(F_WRLCK);
  if (::fcntl(FDescriptor, F_OFD_GETLK, &Mark) == 0 && Mark.l_type != F_UNLCK && Mark.l_pid == -1) {
    throw EQuillonWin32Error(EWOULDBLOCK, FPath);
  }
}
#else
void PosixFile::MarkAsSole() const {}
void PosixFile::RefuseIfSole() const {}
#endif
