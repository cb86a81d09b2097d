#include "LocalSource.h"

#include "QuillonFileSystem.h"
#include "QuillonText.h"
#include "uPlandaten/Plan.h"

namespace {

/// What an operator needs to know of a name without a file: relative names begin at a folder that is easily another.
std::string AboutMissing(const std::string& AFileName) {
  if (AFileName.empty()) {
    return " (No file is named.)";
  }
  constexpr std::size_t Longest = 500;
  const bool IsFolder = TQuillonFileSystem::IsDirectory(AFileName);
  const std::string Path = QuillonText::CutAtCharacter(TQuillonFilePath::GetFullPath(AFileName), Longest);
  return " (File \"" + Path + (IsFolder ? "\" is a folder.)" : "\")");
}

}  // namespace

namespace LocalSource {

void RequireFile(const std::string& AFileName) {
  if (!TQuillonFileSystem::IsFile(AFileName)) {
    throw EQuillonException("Local Velmora file does not exist." + AboutMissing(AFileName));
  }
}

void Load(const std::string& AFileName, const std::function<void()>& ALoad) {
  RequireFile(AFileName);
  try {
    ALoad();
  } catch (const EDataFormatError& Error) {
    throw EDataFormatError(Error.what() + (" (Datei \"" + AFileName + "\")"));
  }
}

}  // namespace LocalSource
