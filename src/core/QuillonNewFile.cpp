#include "QuillonNewFile.h"

#include <utility>

#include "QuillonFileSystem.h"
#include "QuillonGuid.h"

namespace {

constexpr std::string_view Prefix = ".velmora-";
constexpr std::string_view Suffix = ".tmp";

bool IsHiddenName(std::string_view AName) {
  if (AName.size() != Prefix.size() + QuillonGuid::PlainLength + Suffix.size() || !AName.starts_with(Prefix) ||
      !AName.ends_with(Suffix)) {
    return false;
  }
  try {
    QuillonGuid::Parse("{" + std::string(AName.substr(Prefix.size(), QuillonGuid::PlainLength)) + "}");
    return true;
  } catch (const EQuillonConvertError&) {
    return false;
  }
}

void RemoveQuietly(const std::string& APath) {
  try {
    Platform::Files().Remove(APath);
  } catch (const EQuillonWin32Error&) {
    // What led here is the error to be told, if there is one.
  }
}

}  // namespace

TQuillonNewFile::TQuillonNewFile(const std::string& AFolder, Platform::Creation ACreation, Platform::Lock ALock)
    : FFolder(AFolder.empty() ? "." : AFolder) {
  auto& Files = Platform::Files();
  try {
    FFile = Files.OpenUnnamed(FFolder, ACreation, ALock);
    return;
  } catch (const EQuillonWin32Error& Error) {
    if (!Platform::IsUnsupported(Error.ErrorCode())) {
      throw;
    }
  }
  ChooseName();
  FFile = Files.Open(FName, Platform::Access::ReadWrite, ACreation, ALock);
}

TQuillonNewFile::~TQuillonNewFile() {
  if (!FName.empty()) {
    FFile.reset();
    RemoveQuietly(FName);
  }
}

void TQuillonNewFile::ChooseName() {
  std::string Name(Prefix);
  QuillonGuid::AppendPlain(Name, QuillonGuid::New());
  FName = TQuillonFilePath::Combine(FFolder, Name.append(Suffix));
  FRemoval.emplace(FName);
}

void TQuillonNewFile::ForgetName() {
  FName.clear();
  FRemoval.reset();
}

void TQuillonNewFile::Prepare() {
  if (FName.empty()) {
    ChooseName();
    FFile->GiveName(FName);
  }
}

void TQuillonNewFile::Replace(const std::string& APath) {
  Prepare();
  Platform::Files().Rename(FName, APath, true);
  ForgetName();
}

bool TQuillonNewFile::TryAdd(const std::string& APath) {
  try {
    if (FName.empty()) {
      FFile->GiveName(APath);
    } else {
      Platform::Files().Rename(FName, APath, false);
      ForgetName();
    }
    return true;
  } catch (const EQuillonWin32Error&) {
    if (Platform::Files().Look(APath) == Platform::EntryKind::None) {
      throw;
    }
    return false;
  }
}

void TQuillonNewFile::RemoveLeftOvers(const std::string& AFolder) {
  auto& Files = Platform::Files();
  try {
    for (const std::string& Name : Files.NamesIn(AFolder.empty() ? "." : AFolder)) {
      const std::string Path = TQuillonFilePath::Combine(AFolder, Name);
      if (!IsHiddenName(Name) || Files.Look(Path) != Platform::EntryKind::File) {
        continue;
      }
      try {
        // Without locks nothing tells whether somebody is still writing.
        if (Files.Open(Path, Platform::Access::Read, Platform::Creation::Never, Platform::Lock::Exclusive)
                ->IsLocked()) {
          Files.Remove(Path);
        }
      } catch (const EQuillonWin32Error&) {
        continue;
      }
    }
  } catch (const EQuillonWin32Error&) {
    return;
  }
}

namespace QuillonIO {

std::string FolderOf(const std::string& AFileName) {
  const std::string Folder = TQuillonFilePath::GetDirectoryName(AFileName);
  return Folder.empty() ? "." : Folder;
}

}  // namespace QuillonIO
