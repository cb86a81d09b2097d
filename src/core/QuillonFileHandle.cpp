#include "QuillonFileHandle.h"

#include <utility>

#include "platform/Files.h"

namespace {

Platform::Access AccessOf(TQuillonFileOpenMode AnOpenMode) {
  switch (AnOpenMode) {
    case fomOpenRead:
      return Platform::Access::Read;
    case fomOpenWrite:
      return Platform::Access::Write;
    default:
      return Platform::Access::ReadWrite;
  }
}

}  // namespace

EQuillonFileInUseError::EQuillonFileInUseError(int AnErrorCode, const std::string& AFileName)
    : EQuillonFileHandleError(AnErrorCode, TText{"File is in use by another program: " + AFileName}) {}

TQuillonFileHandle::TQuillonFileHandle(std::string AFileName, TQuillonFileOpenMode AnOpenMode,
                                       TQuillonFileAccessMode AnAccessMode)
    : TQuillonFileHandle(std::move(AFileName), AnOpenMode, AnAccessMode, nullptr) {}

TQuillonFileHandle::TQuillonFileHandle(std::string AFileName, TQuillonFileOpenMode AnOpenMode,
                                       TQuillonFileAccessMode AnAccessMode, std::unique_ptr<Platform::File> AHandle)
    : FAccessMode(AnAccessMode), FFileName(std::move(AFileName)), FHandle(std::move(AHandle)), FOpenMode(AnOpenMode) {}

TQuillonFileHandle::~TQuillonFileHandle() = default;

void TQuillonFileHandle::Open() { Open(FOpenMode, FAccessMode); }

void TQuillonFileHandle::Open(TQuillonFileOpenMode AnOpenMode, TQuillonFileAccessMode AnAccessMode) {
  FOpenMode = AnOpenMode;
  FAccessMode = AnAccessMode;
  if (AnOpenMode == fomOpenReadWriteOrCreate) {
    const bool IsThere = Platform::Files().Look(FFileName) != Platform::EntryKind::None;
    FOpenMode = IsThere ? fomOpenReadWrite : fomCreate;
  }
  QuillonIO::OnFile(FFileName, [&] {
    const auto Creation = FOpenMode == fomCreate ? Platform::Creation::IfMissing : Platform::Creation::Never;
    auto File = Platform::Files().Open(FFileName, AccessOf(FOpenMode), Creation, Lock());
    // Emptied under the lock: a file that somebody else holds keeps its content.
    if (FOpenMode == fomCreate && Platform::Files().Look(FFileName) == Platform::EntryKind::File) {
      File->SetSize(0);
    }
    FHandle = std::move(File);
  });
}

Platform::File& TQuillonFileHandle::Handle() const {
  if (FHandle == nullptr) {
    throw EQuillonFileHandleError(Platform::NotOpenError, FFileName);
  }
  return *FHandle;
}

Platform::Lock TQuillonFileHandle::Lock() const {
  switch (FAccessMode) {
    case famShareDenyNone:
      return Platform::Lock::None;
    case famShareDenyWrite:
      // Readers that deny writing get along with one another.
      return FOpenMode == fomOpenRead ? Platform::Lock::Shared : Platform::Lock::Exclusive;
    case famShareDenyRead:
      return Platform::Lock::Readers;
    default:
      return Platform::Lock::Sole;
  }
}

void TQuillonFileHandle::GoOnWith(std::unique_ptr<Platform::File> AHandle) { FHandle = std::move(AHandle); }

void TQuillonFileHandle::Close() {
  const auto File = std::move(FHandle);
  if (File != nullptr) {
    QuillonIO::OnFile(FFileName, [&] { File->Close(); });
  }
}

namespace QuillonIO {

void ThrowOnFile(const EQuillonWin32Error& AnError, const std::string& AFileName) {
  if (Platform::IsInUse(AnError.ErrorCode())) {
    throw EQuillonFileInUseError(AnError.ErrorCode(), AFileName);
  }
  throw EQuillonFileHandleError(AnError.ErrorCode(), AFileName);
}

}  // namespace QuillonIO
