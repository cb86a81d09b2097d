#include "platform/windows/Replacement.h"

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <vector>

#include "QuillonGuid.h"
#include "platform/Files.h"
#include "platform/windows/WindowsCalls.h"

namespace {

using WindowsCalls::WidePath;

// Of newer headers: by these an open file goes from its name at once.
constexpr auto RenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
constexpr auto DispositionInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
constexpr DWORD ReplaceIfExists = 1;
constexpr DWORD PosixSemantics = 2;
constexpr DWORD DeleteAtOnce = 1;

bool IsUnsupported(DWORD ACode) { return Platform::IsUnsupported(static_cast<int>(ACode)); }
bool IsInTheWay(DWORD ACode) { return ACode == ERROR_ACCESS_DENIED || ACode == ERROR_SHARING_VIOLATION; }

DWORD ErrorOf(BOOL AResult) { return AResult != 0 ? ERROR_SUCCESS : ::GetLastError(); }

WindowsCalls::THandle OpenToRemove(const std::wstring& APath) {
  constexpr DWORD ForAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return WindowsCalls::OwnedFile(::CreateFileW(APath.c_str(), DELETE | SYNCHRONIZE, ForAll, nullptr, OPEN_EXISTING,
                                               FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

/// Takes the place of a file in one step, also of one that is open.
DWORD RenameAtOnce(const std::wstring& APath, const std::wstring& ANewPath) {
  const WindowsCalls::THandle File = OpenToRemove(APath);
  if (File == nullptr) {
    return ::GetLastError();
  }
  const std::size_t NameSize = ANewPath.size() * sizeof(wchar_t);
  std::vector<std::byte> Block(sizeof(FILE_RENAME_INFO) + NameSize);
  auto& Info = *reinterpret_cast<FILE_RENAME_INFO*>(Block.data());
  const DWORD Flags = ReplaceIfExists | PosixSemantics;
  std::memcpy(&Info, &Flags, sizeof(Flags));
  Info.FileNameLength = static_cast<DWORD>(NameSize);
  std::memcpy(static_cast<wchar_t*>(Info.FileName), ANewPath.data(), NameSize);
  return ErrorOf(::SetFileInformationByHandle(File.get(), RenameInfoEx, &Info, static_cast<DWORD>(Block.size())));
}

std::wstring NameAside(const std::wstring& APath, const std::string& AMark) {
  return APath + WindowsCalls::ToWide("." + AMark + ".old");
}

/// A name in the same folder that says what the file is, should this process end right now.
std::wstring NameAside(const std::wstring& APath) { return NameAside(APath, QuillonGuid::Plain(QuillonGuid::New())); }

/// Whether a file of this name lies aside.
bool IsMovedAside(const std::wstring& APath) {
  static const std::string AnyMark(QuillonGuid::PlainLength, '?');
  WIN32_FIND_DATAW Found{};
  const HANDLE Search = ::FindFirstFileW(NameAside(APath, AnyMark).c_str(), &Found);
  return Search != INVALID_HANDLE_VALUE && ::FindClose(Search) != 0;
}

DWORD RemoveOnce(const std::wstring& APath) {
  const WindowsCalls::THandle File = OpenToRemove(APath);
  if (File == nullptr) {
    return ::GetLastError();
  }
  DWORD Flags = DeleteAtOnce | PosixSemantics;
  const DWORD Code = ErrorOf(::SetFileInformationByHandle(File.get(), DispositionInfoEx, &Flags, sizeof(Flags)));
  if (!IsUnsupported(Code)) {
    return Code;
  }
  // Where an open file keeps its name until it is closed, it goes under another one.
  const std::wstring Aside = NameAside(APath);
  const bool IsAside = ::MoveFileExW(APath.c_str(), Aside.c_str(), 0) != 0;
  return ErrorOf(::DeleteFileW((IsAside ? Aside : APath).c_str()));
}

/// Moves an open file out of the way for a moment.
DWORD ReplaceInSteps(const std::wstring& APath, const std::wstring& ANewPath) {
  const std::wstring Aside = NameAside(ANewPath);
  if (const DWORD Code = ErrorOf(::MoveFileExW(ANewPath.c_str(), Aside.c_str(), MOVEFILE_WRITE_THROUGH));
      Code != ERROR_SUCCESS) {
    return Code;
  }
  const DWORD Code = ErrorOf(::MoveFileExW(APath.c_str(), ANewPath.c_str(), MOVEFILE_WRITE_THROUGH));
  if (Code != ERROR_SUCCESS) {
    ::MoveFileExW(Aside.c_str(), ANewPath.c_str(), MOVEFILE_WRITE_THROUGH);
    return Code;
  }
  ::DeleteFileW(Aside.c_str());
  return ERROR_SUCCESS;
}

DWORD ReplaceOnce(const std::wstring& APath, const std::wstring& ANewPath) {
  if (const DWORD Code = RenameAtOnce(APath, ANewPath); !IsUnsupported(Code)) {
    return Code;
  }
  DWORD Code =
      ErrorOf(::MoveFileExW(APath.c_str(), ANewPath.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
  // The old file is open. The system's own way out wants the new one closed; ours does not.
  if (IsInTheWay(Code)) {
    Code = ErrorOf(::ReplaceFileW(ANewPath.c_str(), APath.c_str(), nullptr, 0, nullptr, nullptr));
  }
  return IsInTheWay(Code) ? ReplaceInSteps(APath, ANewPath) : Code;
}

constexpr int MostTries = 20;
constexpr DWORD Pause = 25;

/// Makes a call again for a while as long as somebody else is in its way.
/// @return the system's code
template <class TCall>
DWORD Insist(TCall ACall) {
  DWORD Code = ACall();
  for (int Try = 1; IsInTheWay(Code) && Try < MostTries; ++Try) {
    ::Sleep(Pause);
    Code = ACall();
  }
  return Code;
}

}  // namespace

namespace Replacement {

void Rename(const std::string& APath, const std::string& ANewPath, bool DoReplace) {
  const std::wstring Path = WidePath(APath);
  const std::wstring NewPath = WidePath(ANewPath);
  const DWORD Code = Insist([&] {
    return DoReplace ? ReplaceOnce(Path, NewPath)
                     : ErrorOf(::MoveFileExW(Path.c_str(), NewPath.c_str(), MOVEFILE_WRITE_THROUGH));
  });
  if (Code != ERROR_SUCCESS) {
    // A file that cannot be replaced is no file that can be waited for.
    WindowsCalls::Fail(Code == ERROR_SHARING_VIOLATION ? ERROR_ACCESS_DENIED : Code, ANewPath);
  }
}

void Remove(const std::string& APath) {
  const std::wstring Path = WidePath(APath);
  if (const DWORD Code = Insist([&] { return RemoveOnce(Path); }); Code != ERROR_SUCCESS) {
    WindowsCalls::Fail(Code, APath);
  }
}

DWORD AwaitName(const std::wstring& APath, const std::function<DWORD()>& ACall) {
  DWORD Code = ACall();
  for (int Try = 1; Code == ERROR_FILE_NOT_FOUND && Try < MostTries; ++Try) {
    if (!IsMovedAside(APath)) {
      // The new file may have come since.
      return ACall();
    }
    ::Sleep(Pause);
    Code = ACall();
  }
  return Code;
}

void DemandGivesWay(const std::string& APath) {
  const std::wstring Path = WidePath(APath);
  const DWORD Code = Insist([&] { return OpenToRemove(Path) != nullptr ? ERROR_SUCCESS : ::GetLastError(); });
  if (Code != ERROR_SUCCESS && Code != ERROR_FILE_NOT_FOUND && Code != ERROR_PATH_NOT_FOUND) {
    WindowsCalls::Fail(Code, APath);
  }
}

}  // namespace Replacement
