#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

// By these macros functions of ours would get other names behind this header than ahead of it.
#undef CreateDirectory
#undef DeleteFile
#undef MoveFile
#undef ReplaceFile

/// What the sources of this folder share: text of the wide interface, absolute paths, errors.
namespace WindowsCalls {

/// Raises the error of the call that has just failed.
[[noreturn]] void Fail(std::string_view ASubject);
[[noreturn]] void Fail(DWORD AnErrorCode, std::string_view ASubject);

/// UTF-16 for a text; units that no character has become U+FFFD.
std::wstring ToWide(std::string_view AText);
std::string FromWide(std::wstring_view AText);

/// The path as the system's calls take it: absolute, and in the form that knows no limit where it is long.
/// @throws EQuillonWin32Error for a text that is no UTF-8 or has a zero inside
std::wstring WidePath(std::string_view APath);
/// Without the beginning of a path that knows no limit.
std::string NarrowPath(std::wstring_view APath);

std::optional<std::string> Variable(const wchar_t* AName);

struct TCloseHandle {
  void operator()(HANDLE AHandle) const { ::CloseHandle(AHandle); }
};
using THandle = std::unique_ptr<void, TCloseHandle>;

/// A handle of CreateFileW; none where it failed.
inline THandle OwnedFile(HANDLE AHandle) { return THandle(AHandle == INVALID_HANDLE_VALUE ? nullptr : AHandle); }

struct TLocalFree {
  void operator()(void* ABlock) const { ::LocalFree(ABlock); }
};

}  // namespace WindowsCalls
