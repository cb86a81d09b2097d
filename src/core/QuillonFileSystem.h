#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "QuillonDateTime.h"
#include "QuillonTypes.h"

/// A failed operation on the file system; the message names the path.
class EQuillonFileSystemError : public EQuillonWin32Error {
 public:
  using EQuillonWin32Error::EQuillonWin32Error;
};

/// Path arithmetic: pure work on text by the platform's rules, nothing is looked up. An extension is what stands behind
/// the last point of the file name, without the point; a point at its begin or end makes none.
class TQuillonFilePath {
 public:
  TQuillonFilePath() = delete;

  /// Path, point, extension, whatever the path ends in; the path alone if one of both is empty.
  static std::string AddExtension(std::string_view APath, std::string_view AnExtension);
  static std::string AddTrailingPathDelimiter(std::string_view APath);
  /// An empty extension takes the present one away.
  static std::string ChangeExtension(std::string_view APath, std::string_view AnExtension);
  /// Both paths with one delimiter between; the second one alone if it begins at a root.
  static std::string Combine(std::string_view APath1, std::string_view APath2);
  static std::string Combine(std::span<const std::string> APaths);
  /// Without a delimiter at the end, except for a root; empty for a mere file name.
  static std::string GetDirectoryName(std::string_view APath);
  static std::string GetExtension(std::string_view APath);
  static std::string GetFileName(std::string_view APath);
  static std::string GetFileNameWithoutExtension(std::string_view APath);
  static bool HasExtension(std::string_view APath);
  static bool IsPathRooted(std::string_view APath);
  static bool IsRoot(std::string_view APath);
  /// A root keeps its delimiter.
  static std::string RemoveTrailingPathDelimiter(std::string_view APath);

  /// The day, today if none is given, behind the file name: "Plan-02026-08-01.txt".
  static std::string GetDateStampedFileName(std::string_view APath);
  static std::string GetDateStampedFileName(std::string_view APath, TQuillonDate ADateStamp);
  /// The time, now if none is given, behind the file name: "Plan-02026-08-01-Sa-07-45-00.txt".
  static std::string GetTimeStampedFileName(std::string_view APath);
  static std::string GetTimeStampedFileName(std::string_view APath, TQuillonDateTime ATimeStamp);
};

/// Operations on files and folders. Failures raise EQuillonFileSystemError.
class TQuillonFileSystem {
 public:
  TQuillonFileSystem() = delete;

  static bool Exists(const std::string& APath);
  static bool IsDirectory(const std::string& APath);
  /// Whether the path names a regular file.
  static bool IsFile(const std::string& APath);
  /// Whether there is a file to be read whole.
  /// @throws EQuillonException for what is there and no file: a pipe would be waited for, a device may have no end
  static bool HasFile(const std::string& APath);
  static std::int64_t GetSize(const std::string& APath);
  /// @param CheckExistence a missing file is no error
  /// @param ALockedFileTimeout above 0: deletion is tried every 100 milliseconds until this time is exceeded
  static void DeleteFile(const std::string& APath, bool CheckExistence = false,
                         std::chrono::milliseconds ALockedFileTimeout = std::chrono::milliseconds(0));
  static void MoveFile(const std::string& ASourceFileName, const std::string& ADestFileName, bool ReplaceExisting);
  static void CreateDirectory(const std::string& APath);
  /// Creates the folder and all its parents as far as they are missing.
  static void ForceDirectory(const std::string& APath);
  /// The path itself if it is free, else the first free one of "Name (1).txt", "Name (2).txt" and so on.
  static std::string MakeFileNameUnique(const std::string& APath);
};
