#include <algorithm>
#include <filesystem>

#include "QuillonFileSystem/FilePath.h"
#include "QuillonFileSystem/FileSystem.h"
#include "QuillonFileSystem/NativePath.h"
#include "QuillonText.h"
#include "platform/FileInfo.h"
#include "platform/Files.h"

using QuillonFileSystem::FromNative;
using QuillonFileSystem::OnPath;
using QuillonFileSystem::ToNative;

namespace {

std::u32string Characters(std::string_view AText) {
  const std::string Text = Platform::PathsIgnoreCase ? QuillonText::ToLower(AText) : std::string(AText);
  std::u32string Result;
  for (std::string_view Left = Text; !Left.empty();) {
    Result.push_back(QuillonText::TakeCharacter(Left));
  }
  return Result;
}

/// Walks back to the last "*" only, so that no pattern takes more than the product of both lengths.
bool Matches(std::u32string_view AName, std::u32string_view APattern) {
  constexpr std::size_t None = std::u32string_view::npos;
  std::size_t InName = 0;
  std::size_t InPattern = 0;
  std::size_t Star = None;
  std::size_t StarName = 0;
  while (InName < AName.size()) {
    if (InPattern < APattern.size() && APattern[InPattern] == U'*') {
      Star = InPattern++;
      StarName = InName;
    } else if (InPattern < APattern.size() && (APattern[InPattern] == U'?' || APattern[InPattern] == AName[InName])) {
      ++InPattern;
      ++InName;
    } else if (Star != None) {
      InPattern = Star + 1;
      InName = ++StarName;
    } else {
      return false;
    }
  }
  return APattern.find_first_not_of(U'*', InPattern) == None;
}

bool IsFolderItself(std::string_view AName) { return AName == "." || AName == ".."; }

/// An entry that has gone, or a link that leads nowhere, has none.
std::optional<TQuillonFileAttributes> AttributesIfThere(const std::string& APath) {
  try {
    return Platform::InfoOf(APath).Attributes;
  } catch (const EQuillonWin32Error& Error) {
    if (Platform::IsMissing(Error.ErrorCode())) {
      return std::nullopt;
    }
    throw;
  }
}

}  // namespace

std::string TQuillonFileSystem::GetCurrentDirectory() {
  return OnPath("", [] { return FromNative(std::filesystem::current_path()); });
}

void TQuillonFileSystem::SetCurrentDirectory(const std::string& APath) {
  OnPath(APath, [&] { std::filesystem::current_path(ToNative(APath)); });
}

void TQuillonFileSystem::ClearDirectory(const std::string& APath) {
  OnPath(APath, [&] {
    for (const std::string& Name : Platform::Files().NamesIn(APath)) {
      if (!IsFolderItself(Name)) {
        Platform::RemoveTree(TQuillonFilePath::Combine(APath, Name));
      }
    }
  });
}

void TQuillonFileSystem::DeleteDirectory(const std::string& APath, bool ARecursive) {
  OnPath(APath, [&] {
    if (!IsDirectory(APath)) {
      // Raises what the system says of a path that is no folder.
      Platform::Files().NamesIn(APath);
    }
    (ARecursive ? Platform::RemoveTree : Platform::RemoveFolder)(APath);
  });
}

void TQuillonFileSystem::MoveDirectory(const std::string& ASourcePath, const std::string& ADestPath) {
  MoveFile(ASourcePath, ADestPath, false);
}

std::vector<std::string> TQuillonFileSystem::GetFiles(const std::string& APath, std::string_view ASearchPattern,
                                                      TQuillonFileAttributes APosAttrFilter,
                                                      TQuillonFileAttributes ANegAttrFilter) {
  const std::u32string Pattern = Characters(ASearchPattern == "*.*" ? "*" : ASearchPattern);
  std::vector<std::string> Result;
  OnPath(APath, [&] {
    for (const std::string& Name : Platform::Files().NamesIn(APath)) {
      std::string Path = TQuillonFilePath::Combine(APath, Name);
      if (IsFolderItself(Name) || !Matches(Characters(Name), Pattern)) {
        continue;
      }
      const auto Attributes = AttributesIfThere(Path);
      if (Attributes && Attributes->ContainsAll(APosAttrFilter) && !Attributes->Overlaps(ANegAttrFilter)) {
        Result.push_back(std::move(Path));
      }
    }
  });
  std::ranges::sort(Result);
  return Result;
}
