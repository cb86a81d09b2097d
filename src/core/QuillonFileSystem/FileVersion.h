#pragma once

#include <cstdint>
#include <string>

#include "QuillonDateTime.h"
#include "QuillonFileSystem/Types.h"
#include "QuillonTypes.h"

/// The version block of a program, which Windows knows. Where there is none, all but the file's name and date is empty.
class TQuillonFileVersion : public TQuillonObject {
 public:
  /// Of the running program.
  TQuillonFileVersion();
  /// @throws EQuillonFileSystemError for a file that cannot be read
  explicit TQuillonFileVersion(const std::string& AFileName);

  TQuillonDateTime FBuildDateStamp;  ///< last write of the file, local time
  std::string FComment;
  std::string FCompanyName;
  std::uint16_t FFileBuild = 0;
  std::string FFileDescription;
  TQuillonFileFlags FFileFlags;
  std::uint16_t FFileMajorVersion = 0;
  std::uint16_t FFileMinorVersion = 0;
  std::string FFileName;
  std::uint16_t FFileRevision = 0;
  std::string FFileVersion;
  std::string FInternalName;
  std::string FLanguageName;
  std::string FLegalCopyright;
  std::string FLegalTradeMarks;
  std::string FOriginalFileName;
  std::string FPrivateBuild;
  std::uint16_t FProductBuild = 0;
  std::string FProductName;
  std::uint16_t FProductMajorVersion = 0;
  std::uint16_t FProductMinorVersion = 0;
  std::uint16_t FProductRevision = 0;
  std::string FProductVersion;
  std::string FSpecialBuild;
};
