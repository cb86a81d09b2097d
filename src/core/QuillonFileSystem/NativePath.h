#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "QuillonFileSystem/FileSystem.h"

namespace QuillonFileSystem {

/// The standard library's path of a text in UTF-8, which it would take for another encoding on some systems.
inline std::filesystem::path ToNative(std::string_view APath) { return {std::u8string(APath.begin(), APath.end())}; }

inline std::string FromNative(const std::filesystem::path& APath) {
  const std::u8string Text = APath.u8string();
  return {Text.begin(), Text.end()};
}

/// Passes a failure of the platform or of the standard library on as one of the file system.
/// @throws EQuillonFileSystemError
template <class TCall>
decltype(auto) OnPath(const std::string& APath, TCall ACall) {
  try {
    return ACall();
  } catch (const EQuillonWin32Error& Error) {
    throw EQuillonFileSystemError(Error.ErrorCode(), APath);
  } catch (const std::filesystem::filesystem_error& Error) {
    throw EQuillonFileSystemError(Error.code().value(), APath);
  }
}

}  // namespace QuillonFileSystem
