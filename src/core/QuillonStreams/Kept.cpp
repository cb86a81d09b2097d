#include "QuillonStreams/Kept.h"

#include <algorithm>

#include "QuillonFileSystem.h"
#include "QuillonStreams/Streams.h"

namespace {

constexpr std::size_t PieceInMemory = std::size_t{256} << 10;

}  // namespace

std::size_t TQuillonKeptStream::Read(std::span<char> ABuffer) {
  std::size_t Got = FHasGoneBack ? ReadKept(ABuffer) : 0;
  if (Got == 0) {
    Got = ReadSource(ABuffer);
    if (!FHasGoneBack) {
      KeepAll({ABuffer.data(), Got});
    }
  }
  Advance(static_cast<std::int64_t>(Got));
  return Got;
}

std::int64_t TQuillonKeptStream::Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) {
  if (FHasGoneBack || AnOffset != 0 || AnOrigin != TQuillonSeekOrigin::Begin) {
    return TQuillonOneWayStream::Seek(AnOffset, AnOrigin);
  }
  if (FFile) {
    FFile->File().Seek(0, Platform::SeekFrom::Begin);
  }
  FHasGoneBack = true;
  Advance(-Position());
  return 0;
}

/// A source that has come to its end, or failed, is not asked again: a pipe could have more, of somebody else.
std::size_t TQuillonKeptStream::ReadSource(std::span<char> ABuffer) {
  std::size_t Done = 0;
  try {
    while (Done < ABuffer.size() && !FIsSourceAtEnd && FFailure == nullptr) {
      const std::size_t Got = FSource.Read(ABuffer.subspan(Done));
      FIsSourceAtEnd = Got == 0;
      Done += Got;
    }
  } catch (...) {
    FFailure = std::current_exception();
  }
  if (Done == 0 && FFailure != nullptr) {
    std::rethrow_exception(FFailure);
  }
  return Done;
}

std::size_t TQuillonKeptStream::ReadKept(std::span<char> ABuffer) {
  if (FInFile > 0) {
    const auto Count = static_cast<std::size_t>(std::min<std::uint64_t>(FInFile, ABuffer.size()));
    const std::size_t Got = FFile->File().Read(ABuffer.first(Count));
    if (Got == 0 && Count > 0) {
      throw EQuillonReaderError();
    }
    FInFile -= Got;
    return Got;
  }
  if (FInMemory.empty()) {
    return 0;
  }
  const std::string& Piece = FInMemory.front();
  const std::size_t Count = Piece.copy(ABuffer.data(), ABuffer.size(), FGiven);
  FGiven += Count;
  if (FGiven == Piece.size()) {
    FInMemory.pop_front();
    FGiven = 0;
  }
  return Count;
}

/// What could not be kept for want of memory is missing for good: whoever goes back comes to that failure again.
void TQuillonKeptStream::KeepAll(std::string_view ABytes) {
  try {
    Keep(ABytes);
  } catch (...) {
    FFailure = std::current_exception();
    throw;
  }
}

void TQuillonKeptStream::Keep(std::string_view ABytes) {
  if (FInMemory.empty() || FInMemory.back().size() > PieceInMemory) {
    FInMemory.emplace_back();
  }
  FInMemory.back().append(ABytes);
  if (FInMemory.back().size() > PieceInMemory && !FTakesNoFile) {
    MoveToFile();
  }
}

/// Of a write that failed, whatever came of it is not counted.
void TQuillonKeptStream::MoveToFile() {
  try {
    if (!FFile) {
      FFile.emplace(TQuillonFilePath::GetTempPath(), Platform::Creation::NewPrivate);
    }
    FFile->File().Write(FInMemory.front());
    FInFile += FInMemory.front().size();
    FInMemory.pop_front();
  } catch (const EQuillonException&) {
    FTakesNoFile = true;
  }
}
