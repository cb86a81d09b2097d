#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Service.h"

/// Files as the operating system has them. Every failed call raises EQuillonWin32Error with the system's code.
namespace Platform {

enum class SeekFrom { Begin, Current, End };

/// An open file; the destructor closes it without a word.
class File {
 public:
  File() = default;
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  virtual ~File() = default;

  /// Reads up to the buffer's size; 0 only at the end or for an empty buffer.
  virtual std::size_t Read(std::span<char> ABuffer) = 0;
  /// Writes all bytes.
  virtual void Write(std::string_view ABytes) = 0;
  virtual std::int64_t Seek(std::int64_t AnOffset, SeekFrom AnOrigin) = 0;
  virtual void SetSize(std::int64_t ASize) = 0;
  /// Returns when the content has reached the disk. A file that has no disk behind it is no error.
  virtual void Flush() = 0;
  /// Lets the system begin to bring to the disk what was written, without waiting for it; where it cannot, nothing
  /// happens.
  virtual void BeginFlush() = 0;
  /// Returns when the file's bytes have left the memory; FlushSystem does the rest. For many files the two together are
  /// much quicker than Flush of each, which waits for the disk as often.
  virtual void EndFlush() = 0;
  /// Returns when everything that was written to the file system of this file has reached the disk.
  virtual void FlushSystem() = 0;
  /// Takes over permissions and, where the system lets us, the owner of another file. Where its group cannot be kept,
  /// the group gets no more than everybody.
  virtual void TakeAttributes(const std::string& APath) = 0;
  /// Gives a file of OpenUnnamed a name, which must be free.
  virtual void GiveName(const std::string& APath) = 0;
  /// Whether the lock that was asked for is held; some file systems have none to give.
  virtual bool IsLocked() const = 0;
  virtual void Close() = 0;
};

enum class Access { Read, Write, ReadWrite };
enum class Creation {
  Never,
  IfMissing,
  New,         ///< the file must not exist
  NewPrivate,  ///< as New; nobody but its owner may read it until TakeAttributes
  LockFile     ///< as IfMissing, for reading by everybody; a link is not followed, and only a file will do
};
/// What others are refused.
enum class Lock {
  None,
  Shared,     ///< an exclusive lock
  Exclusive,  ///< any lock
  Sole,       ///< to open the file at all, even without a lock
  Readers     ///< to open it for reading; as Sole where a system knows no way to let others write
};

/// What a path names; links are followed.
enum class EntryKind { None, File, Directory, Other };

class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// Opens a file as it is; a lock that is not free is refused at once (IsInUse), and pipes and devices have none. The
  /// file that is locked is the one that the path names, also if another one took its place in the meantime.
  virtual std::unique_ptr<File> Open(const std::string& APath, Access AnAccess, Creation ACreation, Lock ALock) = 0;
  /// A new file in a folder, for reading and writing, that is gone if it was given no name, whatever ends the process.
  /// @param ACreation New or NewPrivate
  /// @throws EQuillonWin32Error with a code of IsUnsupported where the file system has no such files
  virtual std::unique_ptr<File> OpenUnnamed(const std::string& AFolder, Creation ACreation, Lock ALock) = 0;
  virtual EntryKind Look(const std::string& APath) = 0;
  /// Names of what is in a folder, in no order.
  virtual std::vector<std::string> NamesIn(const std::string& AFolder) = 0;
  virtual std::int64_t SizeOf(const std::string& APath) = 0;
  /// Whether the file may be written, as far as that can be told without opening it.
  virtual bool IsWriteable(const std::string& APath) = 0;
  /// Sees to it that another file could take the place of this one. Who only looks at it is waited for.
  /// @throws EQuillonWin32Error with a code of IsInUse where somebody keeps it, which not all systems let them
  virtual void DemandGivesWay(const std::string& APath) = 0;
  /// The path that a symbolic link leads to, whether that exists or not; any other path as it is.
  virtual std::string FollowLinks(const std::string& APath) = 0;
  virtual void Remove(const std::string& APath) = 0;
  /// @param DoReplace whether a file of the new name is replaced; otherwise it is an error
  virtual void Rename(const std::string& APath, const std::string& ANewPath, bool DoReplace) = 0;
  virtual void MakeDirectory(const std::string& APath) = 0;
  /// Returns when the folder's entries have reached the disk.
  virtual void FlushDirectory(const std::string& APath) = 0;
};

/// The files in use: the system's, if none were put in their place.
FileSystem& Files();

using FilesReplacement = ServiceReplacement<FileSystem>;

/// Meanings of the system's error codes.
bool IsAccessDenied(int AnErrorCode);
bool IsMissing(int AnErrorCode);
/// Whether somebody else has a lock on the file.
bool IsInUse(int AnErrorCode);
/// Whether the system or the file system does not know the operation.
bool IsUnsupported(int AnErrorCode);
/// Whether a file cannot be renamed because the new name lies on another volume.
bool IsOtherVolume(int AnErrorCode);
/// Whether a folder takes no new file, or lets it not take the place of another, although the other may be open to us.
bool IsReplacementRefused(int AnErrorCode);
/// Whether a file that is open loses its name at once when another one takes its place, or it is removed. Elsewhere
/// what is open is in the way, or takes more steps.
extern const bool OpenFilesGiveWay;
/// The code of a call on a file that is not open.
extern const int NotOpenError;
/// The code of a file that may not be written, or not be made: of a medium that takes nothing its own, where the system
/// tells it apart.
int NotWriteableError(const std::string& APath);

/// The characters that part a path; the first one is what new paths are built with.
extern const std::string_view PathDelimiters;
/// Length of the part of a path that names a root: "/" here, a drive elsewhere; 0 for a relative path.
std::size_t RootLength(std::string_view APath);
/// Shorter paths are taken for folders that are there: drives, where there are any.
extern const std::size_t ShortestFolder;

}  // namespace Platform
