#include <vector>

#include "QuillonFileSystem/FileSystem.h"
#include "QuillonFileSystem/NativePath.h"
#include "QuillonIO.h"
#include "QuillonNewFile.h"
#include "platform/Files.h"

namespace {

/// @return false if the event gave up
bool CopyContent(TQuillonStream& ASource, Platform::File& ATarget, const TQuillonCopyProgressEvent& AProgress) {
  constexpr std::size_t PieceSize = std::size_t{1} << 18;
  std::vector<char> Piece(PieceSize);
  const std::int64_t Size = ASource.Size();
  std::int64_t Copied = 0;
  while (const std::size_t Got = ASource.Read(Piece)) {
    ATarget.Write({Piece.data(), Got});
    Copied += static_cast<std::int64_t>(Got);
    if (AProgress != nullptr && !AProgress(Copied, Size)) {
      return false;
    }
  }
  return true;
}

}  // namespace

void TQuillonFileSystem::CopyFile(const std::string& ASourceFileName, const std::string& ADestFileName,
                                  bool ReplaceExisting) {
  CopyFileEx(ASourceFileName, ADestFileName, ReplaceExisting, nullptr);
}

bool TQuillonFileSystem::CopyFileEx(const std::string& ASourceFileName, const std::string& ADestFileName,
                                    bool ReplaceExisting, const TQuillonCopyProgressEvent& AProgress) {
  auto& Files = Platform::Files();
  HasFile(ASourceFileName);
  auto Source = QuillonFileSystem::OnPath(ASourceFileName, [&] {
    return std::make_unique<TQuillonFileStream>(ASourceFileName, fomOpenRead, famShareDenyNone);
  });
  return QuillonFileSystem::OnPath(ADestFileName, [&] {
    const std::string Target = Files.FollowLinks(ADestFileName);
    if (HasFile(Target) && !ReplaceExisting) {
      // The system's own error.
      Files.Open(Target, Platform::Access::Write, Platform::Creation::New, Platform::Lock::None);
    }
    TQuillonNewFile Copy(QuillonIO::FolderOf(Target), Platform::Creation::NewPrivate);
    if (!CopyContent(*Source, Copy.File(), AProgress)) {
      return false;
    }
    Copy.File().TakeAttributes(ASourceFileName);
    Copy.File().Flush();
    if (ReplaceExisting) {
      Copy.Replace(Target);
    } else if (!Copy.TryAdd(Target)) {
      Files.Open(Target, Platform::Access::Write, Platform::Creation::New, Platform::Lock::None);
    }
    return true;
  });
}
