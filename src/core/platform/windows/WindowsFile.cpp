#include "platform/windows/WindowsFile.h"

#include <aclapi.h>

#include <algorithm>
#include <array>
#include <utility>

namespace {

using WindowsCalls::Fail;

DWORD SizeOfPiece(std::size_t ASize) {
  constexpr std::size_t LargestPiece = std::size_t{1} << 30;
  return static_cast<DWORD>(std::min(ASize, LargestPiece));
}

LARGE_INTEGER Large(std::int64_t AValue) {
  LARGE_INTEGER Value{};
  Value.QuadPart = AValue;
  return Value;
}

/// Gives an open file the access list of another one, with what that inherits.
DWORD CopyAccessList(HANDLE ATarget, const std::wstring& ASource) {
  ACL* List = nullptr;
  PSECURITY_DESCRIPTOR Descriptor = nullptr;
  DWORD Code = ::GetNamedSecurityInfoW(ASource.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                       &List, nullptr, &Descriptor);
  const std::unique_ptr<void, WindowsCalls::TLocalFree> Owner(Descriptor);
  SECURITY_DESCRIPTOR_CONTROL Control = 0;
  DWORD Revision = 0;
  if (Code == ERROR_SUCCESS && ::GetSecurityDescriptorControl(Descriptor, &Control, &Revision) == 0) {
    Code = ::GetLastError();
  }
  if (Code == ERROR_SUCCESS) {
    const bool IsProtected = (Control & SE_DACL_PROTECTED) != 0;
    const SECURITY_INFORMATION Kind = DACL_SECURITY_INFORMATION | (IsProtected ? PROTECTED_DACL_SECURITY_INFORMATION
                                                                               : UNPROTECTED_DACL_SECURITY_INFORMATION);
    Code = ::SetSecurityInfo(ATarget, SE_FILE_OBJECT, Kind, nullptr, nullptr, List, nullptr);
  }
  return Code;
}

}  // namespace

WindowsFile::WindowsFile(WindowsCalls::THandle AHandle, std::string APath, bool AnIsLocked)
    : FHandle(std::move(AHandle)), FPath(std::move(APath)), FIsLocked(AnIsLocked) {}

std::size_t WindowsFile::Read(std::span<char> ABuffer) {
  DWORD Got = 0;
  if (::ReadFile(FHandle.get(), ABuffer.data(), SizeOfPiece(ABuffer.size()), &Got, nullptr) == 0) {
    // A pipe whose other end has gone is at its end.
    if (const DWORD Code = ::GetLastError(); Code != ERROR_BROKEN_PIPE && Code != ERROR_HANDLE_EOF) {
      Fail(Code, FPath);
    }
  }
  return Got;
}

void WindowsFile::Write(std::string_view ABytes) {
  while (!ABytes.empty()) {
    DWORD Written = 0;
    if (::WriteFile(FHandle.get(), ABytes.data(), SizeOfPiece(ABytes.size()), &Written, nullptr) == 0) {
      Fail(FPath);
    }
    if (Written == 0) {
      Fail(ERROR_DISK_FULL, FPath);
    }
    ABytes.remove_prefix(Written);
  }
}

std::int64_t WindowsFile::Seek(std::int64_t AnOffset, Platform::SeekFrom AnOrigin) {
  constexpr std::array<DWORD, 3> Origins = {FILE_BEGIN, FILE_CURRENT, FILE_END};
  LARGE_INTEGER Position{};
  if (::SetFilePointerEx(FHandle.get(), Large(AnOffset), &Position, Origins[static_cast<std::size_t>(AnOrigin)]) == 0) {
    Fail(FPath);
  }
  return Position.QuadPart;
}

void WindowsFile::SetSize(std::int64_t ASize) {
  FILE_END_OF_FILE_INFO Info{};
  Info.EndOfFile = Large(ASize);
  if (::SetFileInformationByHandle(FHandle.get(), FileEndOfFileInfo, &Info, sizeof(Info)) == 0) {
    Fail(FPath);
  }
}

void WindowsFile::Flush() {
  if (::FlushFileBuffers(FHandle.get()) == 0 && !Platform::IsUnsupported(static_cast<int>(::GetLastError())) &&
      ::GetFileType(FHandle.get()) == FILE_TYPE_DISK) {
    Fail(FPath);
  }
}

void WindowsFile::TakeAttributes(const std::string& APath) {
  const std::wstring Source = WindowsCalls::WidePath(APath);
  WIN32_FILE_ATTRIBUTE_DATA Attributes{};
  if (::GetFileAttributesExW(Source.c_str(), GetFileExInfoStandard, &Attributes) == 0) {
    Fail(APath);
  }
  if (const DWORD Code = CopyAccessList(FHandle.get(), Source);
      Code != ERROR_SUCCESS && !Platform::IsUnsupported(static_cast<int>(Code))) {
    Fail(Code, FPath);
  }
  constexpr DWORD Kept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  FILE_BASIC_INFO Info{};
  Info.FileAttributes = (Attributes.dwFileAttributes & Kept) | FILE_ATTRIBUTE_ARCHIVE;
  if (::SetFileInformationByHandle(FHandle.get(), FileBasicInfo, &Info, sizeof(Info)) == 0) {
    Fail(FPath);
  }
}

void WindowsFile::GiveName(const std::string& APath) { Fail(ERROR_NOT_SUPPORTED, APath); }

void WindowsFile::Close() {
  if (const HANDLE Handle = FHandle.release(); Handle != nullptr && ::CloseHandle(Handle) == 0) {
    Fail(FPath);
  }
}
