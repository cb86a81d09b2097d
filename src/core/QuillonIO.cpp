#include "QuillonIO.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <new>
#include <thread>
#include <utility>

#include "QuillonFileSystem.h"
#include "QuillonGuid.h"
#include "platform/Files.h"

namespace {

constexpr std::size_t BlockSize = 1'048'576;

/// Runs a call of the platform and names the file in what it raises.
template <class TCall>
decltype(auto) OnHandle(const std::string& AFileName, TCall ACall) {
  try {
    return ACall();
  } catch (const EQuillonWin32Error& Error) {
    throw EQuillonFileHandleError(Error.ErrorCode(), AFileName);
  }
}

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

/// A lock shuts out all other writers, or all others: readers that deny writing get along with one another only.
Platform::Lock LockOf(TQuillonFileOpenMode AnOpenMode, TQuillonFileAccessMode AnAccessMode) {
  if (AnAccessMode == famShareDenyNone) {
    return Platform::Lock::None;
  }
  return AnAccessMode == famShareDenyWrite && AnOpenMode == fomOpenRead ? Platform::Lock::Shared
                                                                        : Platform::Lock::Exclusive;
}

void WriteBlocks(Platform::File& AFile, std::string_view AContent) {
  for (; !AContent.empty(); AContent.remove_prefix(std::min(BlockSize, AContent.size()))) {
    AFile.Write(AContent.substr(0, BlockSize));
  }
  AFile.Flush();
}

void WriteInPlace(const std::string& AFileName, std::string_view AContent) {
  auto& Files = Platform::Files();
  const auto File = Files.Open(AFileName, Platform::Access::Write, Platform::Creation::IfMissing, Platform::Lock::None);
  WriteBlocks(*File, AContent);
  if (Files.Look(AFileName) == Platform::EntryKind::File) {
    File->SetSize(static_cast<std::int64_t>(AContent.size()));
    File->Flush();
  }
  File->Close();
}

/// @return false if the call was refused in a way that may still leave the target open to us
template <class TCall>
bool TryReplacing(TCall ACall) {
  try {
    ACall();
    return true;
  } catch (const EQuillonWin32Error& Error) {
    if (!Platform::IsReplacementRefused(Error.ErrorCode())) {
      throw;
    }
    return false;
  }
}

std::string HiddenName() {
  std::string Name = ".";
  QuillonGuid::AppendPlain(Name, QuillonGuid::New());
  return Name.append(".tmp");
}

/// A file that is removed again unless it was renamed.
class TemporaryFile {
 public:
  TemporaryFile(const std::string& AFolder, Platform::Creation ACreation)
      : FPath(TQuillonFilePath::Combine(AFolder, HiddenName())),
        FFile(Platform::Files().Open(FPath, Platform::Access::Write, ACreation, Platform::Lock::None)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (FPath.empty()) {
      return;
    }
    FFile.reset();
    try {
      Platform::Files().Remove(FPath);
    } catch (const EQuillonWin32Error&) {
      // What made the writing fail is the error to be told.
    }
  }

  Platform::File& File() { return *FFile; }

  /// @return false where the target lets nothing take its place
  bool TryRenameTo(const std::string& ATarget) {
    FFile->Close();
    return TryReplacing([&] {
      Platform::Files().Rename(FPath, ATarget, true);
      FPath.clear();
    });
  }

 private:
  std::string FPath;
  std::unique_ptr<Platform::File> FFile;
};

/// Bytes from the position to the end, as far as the stream can tell.
std::size_t ClaimedSize(TQuillonStream& AStream) {
  try {
    return static_cast<std::size_t>(std::max<std::int64_t>(AStream.Size() - AStream.Position(), 0));
  } catch (const EQuillonException&) {
    return 0;
  }
}

/// @return false where only writing in place is left
bool TryReplaceWhole(const std::string& ATarget, std::string_view AContent, bool IsThere) {
  const std::string FolderName = TQuillonFilePath::GetDirectoryName(ATarget);
  const std::string Folder = FolderName.empty() ? "." : FolderName;
  const auto Creation = IsThere ? Platform::Creation::NewPrivate : Platform::Creation::New;
  std::unique_ptr<TemporaryFile> Temporary;
  if (!TryReplacing([&] { Temporary = std::make_unique<TemporaryFile>(Folder, Creation); })) {
    return false;
  }
  if (IsThere) {
    Temporary->File().TakeAttributes(ATarget);
  }
  WriteBlocks(Temporary->File(), AContent);
  if (!Temporary->TryRenameTo(ATarget)) {
    return false;
  }
  Platform::Files().FlushDirectory(Folder);
  return true;
}

void ReplaceTarget(const std::string& ATarget, std::string_view AContent) {
  const Platform::EntryKind Kind = Platform::Files().Look(ATarget);
  const bool IsThere = Kind == Platform::EntryKind::File;
  if (IsThere && !Platform::Files().IsWriteable(ATarget)) {
    throw EQuillonWin32Error(Platform::NotWriteableError, ATarget);
  }
  const bool IsReplaceable = IsThere || Kind == Platform::EntryKind::None;
  if (!IsReplaceable || !TryReplaceWhole(ATarget, AContent, IsThere)) {
    WriteInPlace(ATarget, AContent);
  }
}

}  // namespace

void TQuillonStream::ReadBuffer(std::span<char> ABuffer) {
  while (!ABuffer.empty()) {
    const std::size_t Got = Read(ABuffer);
    if (Got == 0) {
      throw EQuillonStreamError("Der Datenstrom endet vorzeitig.");
    }
    ABuffer = ABuffer.subspan(Got);
  }
}

std::int64_t TQuillonStream::Size() {
  const std::int64_t Place = Position();
  const std::int64_t End = Seek(0, TQuillonSeekOrigin::End);
  Seek(Place, TQuillonSeekOrigin::Begin);
  return End;
}

void TQuillonStream::Clear() {
  Seek(0, TQuillonSeekOrigin::Begin);
  SetEndOfFile();
}

std::size_t TQuillonMemoryStream::Read(std::span<char> ABuffer) {
  if (FPosition >= FContent.size()) {
    return 0;
  }
  const std::size_t Count = FContent.copy(ABuffer.data(), ABuffer.size(), FPosition);
  FPosition += Count;
  return Count;
}

void TQuillonMemoryStream::Write(std::string_view ABytes) {
  if (FPosition > FContent.size()) {
    FContent.resize(FPosition);
  }
  const std::size_t Overwritten = std::min(ABytes.size(), FContent.size() - FPosition);
  FContent.replace(FPosition, Overwritten, ABytes);
  FPosition += ABytes.size();
}

std::int64_t TQuillonMemoryStream::Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) {
  const std::array<std::size_t, 3> Origins = {0, FPosition, FContent.size()};
  const auto Origin = static_cast<std::int64_t>(Origins[static_cast<std::size_t>(AnOrigin)]);
  if (AnOffset < -Origin || AnOffset > std::numeric_limits<std::int64_t>::max() - Origin) {
    throw EQuillonStreamError("Die Position liegt außerhalb des Datenstroms.");
  }
  FPosition = static_cast<std::size_t>(Origin + AnOffset);
  return Origin + AnOffset;
}

void TQuillonMemoryStream::SetEndOfFile() { FContent.resize(FPosition); }

std::string TQuillonMemoryStream::TakeContent() {
  FPosition = 0;
  return std::exchange(FContent, {});
}

TQuillonFileStream::TQuillonFileStream(const std::string& AFileName, TQuillonFileOpenMode AnOpenMode,
                                       TQuillonFileAccessMode AnAccessMode)
    : FFileName(AFileName) {
  Open(AnOpenMode, AnAccessMode);
}

TQuillonFileStream::TQuillonFileStream(const std::string& AFileName, TQuillonFileOpenMode AnOpenMode,
                                       TQuillonFileAccessMode AnAccessMode, TQuillonFileOpenMode AFallbackOpenMode,
                                       TQuillonFileAccessMode AFallbackAccessMode)
    : FFileName(AFileName) {
  try {
    Open(AnOpenMode, AnAccessMode);
  } catch (const EQuillonFileHandleError&) {
    Open(AFallbackOpenMode, AFallbackAccessMode);
  }
}

TQuillonFileStream::TQuillonFileStream(const std::string& AFileName, TQuillonFileOpenMode AnOpenMode,
                                       TQuillonFileAccessMode AnAccessMode, std::chrono::milliseconds ATimeOut)
    : FFileName(AFileName) {
  constexpr std::chrono::milliseconds Pause(100);
  for (std::chrono::milliseconds Waited(0); Waited <= ATimeOut; Waited += Pause) {
    try {
      Open(AnOpenMode, AnAccessMode);
      return;
    } catch (const EQuillonFileHandleError& Error) {
      if (!Platform::IsAccessDenied(Error.ErrorCode())) {
        throw;
      }
      std::this_thread::sleep_for(Pause);
    }
  }
}

TQuillonFileStream::~TQuillonFileStream() = default;

void TQuillonFileStream::Open(TQuillonFileOpenMode AnOpenMode, TQuillonFileAccessMode AnAccessMode) {
  FOpenMode = AnOpenMode;
  FAccessMode = AnAccessMode;
  if (AnOpenMode == fomOpenReadWriteOrCreate) {
    const bool IsThere = Platform::Files().Look(FFileName) != Platform::EntryKind::None;
    FOpenMode = IsThere ? fomOpenReadWrite : fomCreate;
  }
  OnHandle(FFileName, [&] {
    const auto Creation = FOpenMode == fomCreate ? Platform::Creation::IfMissing : Platform::Creation::Never;
    auto File = Platform::Files().Open(FFileName, AccessOf(FOpenMode), Creation, LockOf(FOpenMode, FAccessMode));
    // Emptied under the lock: a file that somebody else holds keeps its content.
    if (FOpenMode == fomCreate && Platform::Files().Look(FFileName) == Platform::EntryKind::File) {
      File->SetSize(0);
    }
    FFileObject = std::move(File);
  });
}

Platform::File& TQuillonFileStream::Handle() const {
  if (FFileObject == nullptr) {
    throw EQuillonFileHandleError(Platform::NotOpenError, FFileName);
  }
  return *FFileObject;
}

std::size_t TQuillonFileStream::Read(std::span<char> ABuffer) {
  return OnHandle(FFileName, [&] { return Handle().Read(ABuffer); });
}

void TQuillonFileStream::Write(std::string_view ABytes) {
  OnHandle(FFileName, [&] { Handle().Write(ABytes); });
}

std::int64_t TQuillonFileStream::Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) {
  const auto Origin = static_cast<Platform::SeekFrom>(AnOrigin);
  return OnHandle(FFileName, [&] { return Handle().Seek(AnOffset, Origin); });
}

void TQuillonFileStream::SetEndOfFile() {
  OnHandle(FFileName, [&] { Handle().SetSize(Handle().Seek(0, Platform::SeekFrom::Current)); });
}

void TQuillonFileStream::Flush() {
  OnHandle(FFileName, [&] { Handle().Flush(); });
}

void TQuillonFileStream::Close() {
  const auto File = std::move(FFileObject);
  if (File != nullptr) {
    OnHandle(FFileName, [&] { File->Close(); });
  }
}

TQuillonBuffer::TQuillonBuffer(std::string_view ABytes) {
  Resize(ABytes.size());
  std::copy(ABytes.begin(), ABytes.end(), Data());
}

void TQuillonBuffer::TFree::operator()(char* ABytes) const { std::free(ABytes); }

void TQuillonBuffer::Resize(std::size_t ASize) {
  // One byte at least: an empty block may be told by a null pointer, as a failure is.
  auto* const Bytes = static_cast<char*>(std::realloc(FBytes.get(), std::max<std::size_t>(ASize, 1)));
  if (Bytes == nullptr) {
    throw std::bad_alloc();
  }
  static_cast<void>(FBytes.release());
  FBytes.reset(Bytes);
  FSize = ASize;
}

namespace QuillonIO {

TQuillonBuffer ReadIntoBuffer(TQuillonStream& AStream) {
  constexpr std::size_t FirstPiece = 65'536;
  const std::size_t Claimed = ClaimedSize(AStream);
  TQuillonBuffer Content;
  Content.Resize(FirstPiece);
  std::size_t Length = 0;
  while (const std::size_t Got = AStream.Read({Content.Data() + Length, Content.Size() - Length})) {
    Length += Got;
    if (Length == Content.Size()) {
      // Twice what has come, at most; the claimed size, and one more to see the end, as soon as it is within that.
      Content.Resize(Claimed >= Length && Claimed < 2 * Length ? Claimed + 1 : 2 * Length);
    }
  }
  Content.Resize(Length);
  return Content;
}

std::string ReadWholeFile(TQuillonStream& AStream) { return std::string(ReadIntoBuffer(AStream).View()); }

std::string ReadWholeFile(const std::string& AFileName) {
  TQuillonFileStream Stream(AFileName, fomOpenRead, famShareDenyNone);
  return ReadWholeFile(Stream);
}

void ReplaceFile(const std::string& AFileName, std::string_view AContent) {
  OnHandle(AFileName, [&] { ReplaceTarget(Platform::Files().FollowLinks(AFileName), AContent); });
}

}  // namespace QuillonIO
