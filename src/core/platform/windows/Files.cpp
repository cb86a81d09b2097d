#include "platform/Files.h"

#include <windows.h>

#include <sddl.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <optional>
#include <utility>

#include "QuillonText.h"
#include "QuillonTypes.h"
#include "platform/FileInfo.h"
#include "platform/windows/Replacement.h"
#include "platform/windows/WindowsCalls.h"
#include "platform/windows/WindowsFile.h"

namespace {

using Platform::Access;
using Platform::Creation;
using Platform::Lock;
using WindowsCalls::Fail;
using WindowsCalls::WidePath;

/// What others may do with the file while it is open. All may rename and remove it, as the replacement of an open file
/// does; a lock of a reader leaves no other way to keep other readers with a lock out than to keep out everybody.
DWORD ShareMode(Access AnAccess, Lock ALock) {
  switch (ALock) {
    case Lock::None:
      return FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    case Lock::Shared:
      return FILE_SHARE_READ | FILE_SHARE_DELETE;
    case Lock::Exclusive:
      return AnAccess == Access::Read ? FILE_SHARE_DELETE : FILE_SHARE_READ | FILE_SHARE_DELETE;
    case Lock::Readers:
      return FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    default:
      return FILE_SHARE_DELETE;
  }
}

bool IsNew(Creation ACreation) { return ACreation == Creation::New || ACreation == Creation::NewPrivate; }

DWORD AccessRights(Access AnAccess, Creation ACreation) {
  constexpr std::array<DWORD, 3> Rights = {GENERIC_READ, GENERIC_WRITE, GENERIC_READ | GENERIC_WRITE};
  // The access list of the file that it will replace.
  const DWORD ForAttributes = IsNew(ACreation) ? READ_CONTROL | WRITE_DAC : 0;
  return Rights[static_cast<std::size_t>(AnAccess)] | ForAttributes;
}

/// Security for files that only their owner, and the system and its administrators, may open.
class TPrivate {
 public:
  TPrivate() {
    if (::ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;OW)(A;;FA;;;SY)(A;;FA;;;BA)",
                                                               SDDL_REVISION_1, &FAttributes.lpSecurityDescriptor,
                                                               nullptr) == 0) {
      Fail("D:P");
    }
    FOwner.reset(FAttributes.lpSecurityDescriptor);
  }
  SECURITY_ATTRIBUTES* Attributes() { return &FAttributes; }

 private:
  SECURITY_ATTRIBUTES FAttributes = {sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
  std::unique_ptr<void, WindowsCalls::TLocalFree> FOwner;
};

DWORD AttributesOf(const std::wstring& APath) {
  WIN32_FILE_ATTRIBUTE_DATA Data{};
  const DWORD Code = Replacement::AwaitName(APath, [&] {
    const BOOL IsThere = ::GetFileAttributesExW(APath.c_str(), GetFileExInfoStandard, &Data);
    return IsThere != 0 ? ERROR_SUCCESS : ::GetLastError();
  });
  return Code == ERROR_SUCCESS ? Data.dwFileAttributes : INVALID_FILE_ATTRIBUTES;
}

/// "\\.\NUL" and the like, which the system makes of "nul" too.
bool IsDevice(const std::wstring& APath) { return APath.starts_with(LR"(\\.\)"); }

/// What a link leads to, opened for its attributes only; none where it leads nowhere.
WindowsCalls::THandle OpenTarget(const std::wstring& APath) {
  constexpr DWORD ForAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return WindowsCalls::OwnedFile(::CreateFileW(APath.c_str(), FILE_READ_ATTRIBUTES, ForAll, nullptr, OPEN_EXISTING,
                                               FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

bool IsSymbolicLink(const std::wstring& APath) {
  WIN32_FIND_DATAW Found{};
  const HANDLE Search = ::FindFirstFileW(APath.c_str(), &Found);
  if (Search == INVALID_HANDLE_VALUE) {
    return false;
  }
  ::FindClose(Search);
  return (Found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && Found.dwReserved0 == IO_REPARSE_TAG_SYMLINK;
}

class WindowsFileSystem final : public Platform::FileSystem {
 public:
  std::unique_ptr<Platform::File> Open(const std::string& APath, Access AnAccess, Creation ACreation,
                                       Lock ALock) override {
    constexpr std::array<DWORD, 5> Dispositions = {OPEN_EXISTING, OPEN_ALWAYS, CREATE_NEW, CREATE_NEW, OPEN_ALWAYS};
    const std::wstring Path = WidePath(APath);
    const bool IsLockFile = ACreation == Creation::LockFile;
    if (const DWORD Found = IsLockFile ? AttributesOf(Path) : INVALID_FILE_ATTRIBUTES;
        Found != INVALID_FILE_ATTRIBUTES &&
        (Found & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE | FILE_ATTRIBUTE_REPARSE_POINT)) != 0) {
      Fail(ERROR_FILE_EXISTS, APath);
    }
    std::optional<TPrivate> Private;
    if (ACreation == Creation::NewPrivate) {
      Private.emplace();
    }
    WindowsCalls::THandle Handle;
    const DWORD Code = Replacement::AwaitName(Path, [&] {
      Handle = WindowsCalls::OwnedFile(
          ::CreateFileW(Path.c_str(), AccessRights(AnAccess, ACreation), ShareMode(AnAccess, ALock),
                        Private ? Private->Attributes() : nullptr, Dispositions[static_cast<std::size_t>(ACreation)],
                        FILE_ATTRIBUTE_NORMAL | (IsLockFile ? FILE_FLAG_OPEN_REPARSE_POINT : 0), nullptr));
      return Handle != nullptr ? ERROR_SUCCESS : ::GetLastError();
    });
    if (Code != ERROR_SUCCESS) {
      // The system calls a folder a file to which access is denied.
      Fail(Code == ERROR_ACCESS_DENIED && Look(APath) == Platform::EntryKind::Directory ? ERROR_DIRECTORY : Code,
           APath);
    }
    const bool IsLocked = ALock != Lock::None && ::GetFileType(Handle.get()) == FILE_TYPE_DISK;
    return std::make_unique<WindowsFile>(std::move(Handle), APath, IsLocked);
  }

  std::unique_ptr<Platform::File> OpenUnnamed(const std::string& AFolder, Creation /*ACreation*/,
                                              Lock /*ALock*/) override {
    Fail(ERROR_NOT_SUPPORTED, AFolder);
  }

  Platform::EntryKind Look(const std::string& APath) override {
    std::wstring Path;
    try {
      Path = WidePath(APath);
    } catch (const EQuillonWin32Error&) {
      return Platform::EntryKind::None;
    }
    if (IsDevice(Path)) {
      return Platform::EntryKind::Other;
    }
    const DWORD Attributes = AttributesOf(Path);
    const bool IsThere = Attributes != INVALID_FILE_ATTRIBUTES &&
                         ((Attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 || OpenTarget(Path) != nullptr);
    if (!IsThere) {
      return Platform::EntryKind::None;
    }
    return (Attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Platform::EntryKind::Directory : Platform::EntryKind::File;
  }

  std::vector<std::string> NamesIn(const std::string& AFolder) override {
    WIN32_FIND_DATAW Found{};
    const std::wstring Pattern = WidePath(AFolder + R"(\*)");
    const std::unique_ptr<void, decltype(&::FindClose)> Search(
        ::FindFirstFileExW(Pattern.c_str(), FindExInfoBasic, &Found, FindExSearchNameMatch, nullptr, 0), ::FindClose);
    if (Search.get() == INVALID_HANDLE_VALUE) {
      Fail(AFolder);
    }
    std::vector<std::string> Names;
    do {
      Names.push_back(WindowsCalls::FromWide(static_cast<const wchar_t*>(Found.cFileName)));
    } while (::FindNextFileW(Search.get(), &Found) != 0);
    return Names;
  }

  std::int64_t SizeOf(const std::string& APath) override {
    WIN32_FILE_ATTRIBUTE_DATA Data{};
    if (::GetFileAttributesExW(WidePath(APath).c_str(), GetFileExInfoStandard, &Data) == 0) {
      Fail(APath);
    }
    // A link has a size of its own.
    return (Data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0
               ? Platform::InfoOf(APath).Size
               : static_cast<std::int64_t>(std::uint64_t{Data.nFileSizeHigh} << 32 | Data.nFileSizeLow);
  }

  bool IsWriteable(const std::string& APath) override {
    const DWORD Attributes = AttributesOf(WidePath(APath));
    return Attributes != INVALID_FILE_ATTRIBUTES && (Attributes & FILE_ATTRIBUTE_READONLY) == 0;
  }

  void DemandGivesWay(const std::string& APath) override { Replacement::DemandGivesWay(APath); }

  /// A link that leads nowhere is refused: the system follows only what is there.
  std::string FollowLinks(const std::string& APath) override {
    const std::wstring Path = WidePath(APath);
    if (!IsSymbolicLink(Path)) {
      return APath;
    }
    const WindowsCalls::THandle Target = OpenTarget(Path);
    constexpr DWORD LongestPath = 32'768;
    std::wstring Final(LongestPath, L'\0');
    Final.resize(Target == nullptr ? 0
                                   : ::GetFinalPathNameByHandleW(Target.get(), Final.data(), LongestPath,
                                                                 FILE_NAME_NORMALIZED | VOLUME_NAME_DOS));
    if (Final.empty()) {
      Fail(APath);
    }
    return WindowsCalls::NarrowPath(Final);
  }

  void Remove(const std::string& APath) override { Replacement::Remove(APath); }

  void Rename(const std::string& APath, const std::string& ANewPath, bool DoReplace) override {
    Replacement::Rename(APath, ANewPath, DoReplace);
  }

  void MakeDirectory(const std::string& APath) override {
    if (::CreateDirectoryW(WidePath(APath).c_str(), nullptr) == 0) {
      Fail(APath);
    }
  }

  /// The system brings the entries of a folder to the disk itself, each with the call that changes it.
  void FlushDirectory(const std::string& /*APath*/) override {}
};

Platform::FileSystem& System() {
  static WindowsFileSystem Files;
  return Files;
}

bool IsOneOf(int AnErrorCode, std::initializer_list<DWORD> ACodes) {
  return std::ranges::find(ACodes, static_cast<DWORD>(AnErrorCode)) != ACodes.end();
}

bool IsDelimiter(char AChar) { return AChar == '\\' || AChar == '/'; }

/// Place behind the next delimiter from a place on, or the path's length.
std::size_t BehindDelimiter(std::string_view APath, std::size_t AFrom) {
  const std::size_t Delimiter = APath.find_first_of(Platform::PathDelimiters, AFrom);
  return Delimiter == std::string_view::npos ? APath.size() : Delimiter + 1;
}

}  // namespace

namespace Platform {

FileSystem& Files() { return FilesReplacement::Current(System); }

bool IsAccessDenied(int AnErrorCode) { return AnErrorCode == ERROR_ACCESS_DENIED; }

bool IsMissing(int AnErrorCode) { return IsOneOf(AnErrorCode, {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND}); }

bool IsInUse(int AnErrorCode) { return IsOneOf(AnErrorCode, {ERROR_SHARING_VIOLATION, ERROR_LOCK_VIOLATION}); }

bool IsUnsupported(int AnErrorCode) {
  return IsOneOf(AnErrorCode, {ERROR_NOT_SUPPORTED, ERROR_INVALID_FUNCTION, ERROR_INVALID_PARAMETER,
                               ERROR_CALL_NOT_IMPLEMENTED, ERROR_INVALID_LEVEL});
}

bool IsOtherVolume(int AnErrorCode) { return AnErrorCode == ERROR_NOT_SAME_DEVICE; }

bool IsReplacementRefused(int AnErrorCode) {
  return IsOneOf(AnErrorCode, {ERROR_ACCESS_DENIED, ERROR_WRITE_PROTECT, ERROR_NOT_SAME_DEVICE, ERROR_CANNOT_MAKE,
                               ERROR_NETWORK_ACCESS_DENIED});
}

const bool OpenFilesGiveWay = false;

const int NotOpenError = ERROR_INVALID_HANDLE;

int NotWriteableError(const std::string& /*APath*/) { return ERROR_ACCESS_DENIED; }

const std::string_view PathDelimiters = R"(\/)";

std::size_t RootLength(std::string_view APath) {
  if (APath.size() >= 2 && IsDelimiter(APath[0]) && IsDelimiter(APath[1])) {
    // Server and share, "\\?\" and a drive, or "\\?\UNC\" and a share.
    constexpr std::string_view UnlimitedShare = R"(\\?\UNC\)";
    const bool IsUnlimited = QuillonText::EqualsIgnoreCase(APath.substr(0, UnlimitedShare.size()), UnlimitedShare);
    return BehindDelimiter(APath, BehindDelimiter(APath, IsUnlimited ? UnlimitedShare.size() : 2));
  }
  if (APath.size() >= 2 && APath[1] == ':') {
    return APath.size() > 2 && IsDelimiter(APath[2]) ? 3 : 2;
  }
  return !APath.empty() && IsDelimiter(APath[0]) ? 1 : 0;
}

const std::size_t ShortestFolder = 3;

}  // namespace Platform
