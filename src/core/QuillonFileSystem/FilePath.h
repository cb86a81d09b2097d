#pragma once

#include <span>
#include <string>
#include <string_view>

#include "QuillonDateTime.h"
#include "QuillonGuid.h"

/// Path arithmetic: pure work on text by the platform's rules; nothing is looked up unless that is told. An extension
/// is what stands behind the last point of the file name, without the point; a point at its begin or end makes none.
class TQuillonFilePath {
 public:
  TQuillonFilePath() = delete;

  /// Path, point, extension, whatever the path ends in; the path alone if one of both is empty.
  static std::string AddExtension(std::string_view APath, std::string_view AnExtension);
  static std::string AddTrailingPathDelimiter(std::string_view APath);
  /// For addresses, whatever the system: "/".
  static std::string AddTrailingHTTPPathDelimiter(std::string_view APath);
  /// The file name in another folder.
  static std::string ChangeDirectoryName(std::string_view APath, std::string_view ADirectoryName);
  /// Of a path that begins with a drive letter; every other one, and on systems without drives all, as it is.
  static std::string ChangeDriveLetter(std::string_view APath, char ADriveLetter);
  /// An empty extension takes the present one away.
  static std::string ChangeExtension(std::string_view APath, std::string_view AnExtension);
  static std::string ChangeFileName(std::string_view APath, std::string_view AFileName);
  /// Both paths with one delimiter between; the second one alone if it begins at a root.
  static std::string Combine(std::string_view APath1, std::string_view APath2);
  static std::string Combine(std::span<const std::string> APaths);
  /// The path itself if it has the extension, else with it added.
  static std::string ForceExtension(std::string_view APath, std::string_view AnExtension);
  /// Without a delimiter at the end, except for a root; empty for a mere file name.
  static std::string GetDirectoryName(std::string_view APath);
  /// The file name for people; "Unbenannt" for none.
  static std::string GetDisplayName(std::string_view APath);
  /// The root that the path begins with, "C:\\" or "/"; empty for a relative one.
  static std::string GetDriveName(std::string_view APath);
  static std::string GetExtension(std::string_view APath);
  static std::string GetFileName(std::string_view APath);
  static std::string GetFileNameWithoutExtension(std::string_view APath);
  /// From the root on by the current folder, without ".", ".." and a delimiter at the end; empty for an empty path.
  static std::string GetFullPath(std::string_view APath);
  /// From one folder to a path; the full path if there is no common root.
  static std::string GetRelativePath(std::string_view APath, std::string_view ABasePath);
  /// An existing path with its full names, and with those of eight and three characters. The path itself on systems
  /// that have but one form. @throws EQuillonFileSystemError
  static std::string GetLongPath(const std::string& APath);
  static std::string GetShortPath(const std::string& APath);
  /// A path that the preferences of the user, or else of the machine, hold: the registry where there is one. Empty
  /// where neither do.
  static std::string GetPathFromRegistry(std::string_view AKey, std::string_view AName);

  /// "Prefix-{GUID}.txt", without the point for an empty extension.
  static std::string GetGuidFileName(const TGUID& AGuid, std::string_view APrefix, std::string_view AnExtension);
  /// As GetGuidFileName for a new GUID.
  static std::string GetUniqueFileName(std::string_view APrefix, std::string_view AnExtension);
  /// The system's folder for temporary files, with a delimiter at the end. @throws EQuillonFileSystemError
  static std::string GetTempPath();
  /// A path in it that nobody else has; no file is made.
  static std::string GetTempFileName(std::string_view APrefix);

  static bool HasExtension(std::string_view APath);
  /// Whatever the case of the letters.
  static bool IsExtensionEqual(std::string_view APath, std::string_view AnExtension);
  /// Whether the text has a delimiter: more than a mere file name.
  static bool IsPath(std::string_view AText);
  /// Whether the full paths are the same, in the case of letters that the system makes a difference of.
  static bool IsPathEqual(std::string_view APath1, std::string_view APath2);
  static bool IsPathRooted(std::string_view APath);
  static bool IsRoot(std::string_view APath);
  static std::string RemoveExtension(std::string_view APath);
  static std::string RemoveLeadingPathDelimiter(std::string_view APath);
  /// A root keeps its delimiter.
  static std::string RemoveTrailingPathDelimiter(std::string_view APath);

  /// The day, today if none is given, behind the file name: "Plan-02026-08-01.txt".
  static std::string GetDateStampedFileName(std::string_view APath);
  static std::string GetDateStampedFileName(std::string_view APath, TQuillonDate ADateStamp);
  /// The time, now if none is given, behind the file name: "Plan-02026-08-01-Sa-07-45-00.txt".
  static std::string GetTimeStampedFileName(std::string_view APath);
  static std::string GetTimeStampedFileName(std::string_view APath, TQuillonDateTime ATimeStamp);
};
