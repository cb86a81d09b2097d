#pragma once

#include <memory>
#include <string>

#include "QuillonTypes.h"

namespace Platform {
class File;
enum class Lock;
}  // namespace Platform

/// A failed call on an open file, or a file that could not be opened; the message names the file.
class EQuillonFileHandleError : public EQuillonWin32Error {
 public:
  using EQuillonWin32Error::EQuillonWin32Error;
};

/// A file that somebody else holds.
class EQuillonFileInUseError : public EQuillonFileHandleError {
 public:
  EQuillonFileInUseError(int AnErrorCode, const std::string& AFileName);
};

enum TQuillonFileOpenMode {
  fomCreate,  ///< a new file; one that exists is emptied
  fomOpenRead,
  fomOpenWrite,
  fomOpenReadWrite,
  fomOpenReadWriteOrCreate  ///< fomOpenReadWrite for a file that exists, else fomCreate
};

/// What others may do with the file while it is open; a mode that cannot be had is refused at once. On POSIX systems
/// this is an advisory lock (flock) between all who ask for one; who denies reading keeps out everybody, those too
/// that share everything, as far as they are streams of this class.
enum TQuillonFileAccessMode { famShareExclusive, famShareDenyWrite, famShareDenyRead, famShareDenyNone };

/// A file of the system with its name and the modes that it is to be opened in; open or not. Every failure raises
/// EQuillonFileHandleError.
class TQuillonFileHandle {
 public:
  /// Not open yet.
  TQuillonFileHandle(std::string AFileName, TQuillonFileOpenMode AnOpenMode, TQuillonFileAccessMode AnAccessMode);
  /// Takes over an open file.
  TQuillonFileHandle(std::string AFileName, TQuillonFileOpenMode AnOpenMode, TQuillonFileAccessMode AnAccessMode,
                     std::unique_ptr<Platform::File> AHandle);
  TQuillonFileHandle(const TQuillonFileHandle&) = delete;
  TQuillonFileHandle& operator=(const TQuillonFileHandle&) = delete;
  /// Closes the file; call Close to see whether that worked.
  ~TQuillonFileHandle();

  void Open();
  void Open(TQuillonFileOpenMode AnOpenMode, TQuillonFileAccessMode AnAccessMode);
  void Close();
  bool IsOpen() const { return FHandle != nullptr; }
  /// Goes on with another open file, which has taken the place of this one.
  void GoOnWith(std::unique_ptr<Platform::File> AHandle);

  /// @throws EQuillonFileHandleError while it is not open
  Platform::File& Handle() const;
  const std::string& FileName() const { return FFileName; }
  /// As it was opened, not fomOpenReadWriteOrCreate.
  TQuillonFileOpenMode OpenMode() const { return FOpenMode; }
  TQuillonFileAccessMode AccessMode() const { return FAccessMode; }
  /// The lock that the two modes mean.
  Platform::Lock Lock() const;

 private:
  TQuillonFileAccessMode FAccessMode;
  std::string FFileName;
  std::unique_ptr<Platform::File> FHandle;
  TQuillonFileOpenMode FOpenMode;
};

namespace QuillonIO {

[[noreturn]] void ThrowOnFile(const EQuillonWin32Error& AnError, const std::string& AFileName);

/// Runs a call of the platform and names the file in what it raises.
/// @throws EQuillonFileHandleError
template <class TCall>
decltype(auto) OnFile(const std::string& AFileName, TCall ACall) {
  try {
    return ACall();
  } catch (const EQuillonFileHandleError&) {
    throw;
  } catch (const EQuillonWin32Error& Error) {
    ThrowOnFile(Error, AFileName);
  }
}

}  // namespace QuillonIO
