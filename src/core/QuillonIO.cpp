#include "QuillonIO.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <new>
#include <utility>

#include "platform/Files.h"

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

std::size_t TQuillonCustomMemoryStream::Read(std::span<char> ABuffer) {
  const std::span<char> Content = Block();
  if (FPosition >= Content.size()) {
    return 0;
  }
  const std::size_t Count = std::min(ABuffer.size(), Content.size() - FPosition);
  std::copy_n(Content.begin() + static_cast<std::ptrdiff_t>(FPosition), Count, ABuffer.begin());
  FPosition += Count;
  return Count;
}

std::int64_t TQuillonCustomMemoryStream::Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) {
  const std::array<std::size_t, 3> Origins = {0, FPosition, Block().size()};
  const auto Origin = static_cast<std::int64_t>(Origins[static_cast<std::size_t>(AnOrigin)]);
  if (AnOffset < -Origin || AnOffset > std::numeric_limits<std::int64_t>::max() - Origin) {
    throw EQuillonStreamError("Die Position liegt außerhalb des Datenstroms.");
  }
  FPosition = static_cast<std::size_t>(Origin + AnOffset);
  return Origin + AnOffset;
}

void TQuillonCustomMemoryStream::Zero() { std::ranges::fill(Block(), '\0'); }

TQuillonMemoryStream::TQuillonMemoryStream(std::size_t ASize, std::size_t ACapacity) {
  FContent.reserve(std::max(ASize, ACapacity));
  FContent.resize(ASize);
}

void TQuillonMemoryStream::Write(std::string_view ABytes) {
  if (FPosition > FContent.size()) {
    FContent.resize(FPosition);
  }
  const std::size_t Overwritten = std::min(ABytes.size(), FContent.size() - FPosition);
  FContent.replace(FPosition, Overwritten, ABytes);
  FPosition += ABytes.size();
}

void TQuillonMemoryStream::SetEndOfFile() { FContent.resize(FPosition); }

std::string TQuillonMemoryStream::TakeContent() {
  FPosition = 0;
  return std::exchange(FContent, {});
}

void TQuillonBufferStream::Write(std::string_view ABytes) {
  if (FPosition > FBuffer.size() || ABytes.size() > FBuffer.size() - FPosition) {
    throw EQuillonStreamError("Expandieren des Speicher-Stream nicht möglich");
  }
  std::ranges::copy(ABytes, FBuffer.begin() + static_cast<std::ptrdiff_t>(FPosition));
  FPosition += ABytes.size();
}

void TQuillonBufferStream::SetEndOfFile() {
  if (FPosition != FBuffer.size()) {
    throw EQuillonStreamError("Die Größe des Speicher-Stream steht fest.");
  }
}

TQuillonFileStream::TQuillonFileStream(const std::string& AFileName, TQuillonFileOpenMode AnOpenMode,
                                       TQuillonFileAccessMode AnAccessMode)
    : FFileObject(AFileName, AnOpenMode, AnAccessMode) {
  FFileObject.Open();
}

TQuillonFileStream::TQuillonFileStream(const std::string& AFileName, TQuillonFileOpenMode AnOpenMode,
                                       TQuillonFileAccessMode AnAccessMode, TQuillonFileOpenMode AFallbackOpenMode,
                                       TQuillonFileAccessMode AFallbackAccessMode)
    : FFileObject(AFileName, AnOpenMode, AnAccessMode) {
  try {
    FFileObject.Open();
  } catch (const EQuillonFileHandleError&) {
    FFileObject.Open(AFallbackOpenMode, AFallbackAccessMode);
  }
}

TQuillonFileStream::TQuillonFileStream(const std::string& AFileName, TQuillonFileOpenMode AnOpenMode,
                                       TQuillonFileAccessMode AnAccessMode, std::chrono::milliseconds ATimeOut)
    : FFileObject(AFileName, AnOpenMode, AnAccessMode) {
  constexpr std::chrono::milliseconds Pause(100);
  for (std::chrono::milliseconds Waited(0); Waited <= ATimeOut; Waited += Pause) {
    try {
      FFileObject.Open(AnOpenMode, AnAccessMode);
      return;
    } catch (const EQuillonFileHandleError& Error) {
      if (!Platform::IsAccessDenied(Error.ErrorCode())) {
        throw;
      }
      std::this_thread::sleep_for(Pause);
    }
  }
}

TQuillonFileStream::TQuillonFileStream(std::string AFileName, std::unique_ptr<Platform::File> AFile,
                                       TQuillonFileAccessMode AnAccessMode)
    : FFileObject(std::move(AFileName), fomOpenReadWrite, AnAccessMode, std::move(AFile)) {}

TQuillonFileStream::~TQuillonFileStream() = default;

std::size_t TQuillonFileStream::Read(std::span<char> ABuffer) {
  return QuillonIO::OnFile(FileName(), [&] { return FFileObject.Handle().Read(ABuffer); });
}

void TQuillonFileStream::Write(std::string_view ABytes) {
  QuillonIO::OnFile(FileName(), [&] { FFileObject.Handle().Write(ABytes); });
}

std::int64_t TQuillonFileStream::Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) {
  const auto Origin = static_cast<Platform::SeekFrom>(AnOrigin);
  return QuillonIO::OnFile(FileName(), [&] { return FFileObject.Handle().Seek(AnOffset, Origin); });
}

void TQuillonFileStream::SetEndOfFile() {
  QuillonIO::OnFile(FileName(), [&] {
    Platform::File& File = FFileObject.Handle();
    File.SetSize(File.Seek(0, Platform::SeekFrom::Current));
  });
}

void TQuillonFileStream::Flush() {
  QuillonIO::OnFile(FileName(), [&] { FFileObject.Handle().Flush(); });
}

Platform::Lock TQuillonFileStream::Lock() const { return FFileObject.Lock(); }

void TQuillonFileStream::GoOnWith(std::unique_ptr<Platform::File> AFile) { FFileObject.GoOnWith(std::move(AFile)); }

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

std::uint64_t SizeOf(const TQuillonContent& AContent) {
  std::uint64_t Size = 0;
  AContent([&Size](std::string_view APiece) { Size += APiece.size(); });
  return Size;
}

std::size_t ClaimedSize(TQuillonStream& AStream) {
  try {
    return static_cast<std::size_t>(std::max<std::int64_t>(AStream.Size() - AStream.Position(), 0));
  } catch (const EQuillonException&) {
    return 0;
  }
}

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

TQuillonBuffer ReadIntoBuffer(const std::string& AFileName) {
  TQuillonFileStream Stream(AFileName, fomOpenRead, famShareDenyNone);
  return ReadIntoBuffer(Stream);
}

std::string ReadWholeFile(TQuillonStream& AStream) { return std::string(ReadIntoBuffer(AStream).View()); }

std::string ReadWholeFile(const std::string& AFileName) { return std::string(ReadIntoBuffer(AFileName).View()); }

}  // namespace QuillonIO
