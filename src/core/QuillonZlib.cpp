#include "QuillonZlib.h"

#include <zlib.h>

#include <algorithm>
#include <new>
#include <utility>

#include "QuillonStreams/Streams.h"

namespace {

constexpr std::size_t LargestCall = std::size_t{1} << 30;

Bytef* BytesOf(const char* AText) { return reinterpret_cast<Bytef*>(const_cast<char*>(AText)); }

uInt CountOf(std::size_t ASize) { return static_cast<uInt>(std::min(ASize, LargestCall)); }

/// Turns an answer of the library into an error, unless it has got on.
void Check(int AnAnswer, const char* AMessage) {
  if (AnAnswer == Z_MEM_ERROR) {
    throw std::bad_alloc();
  }
  if (AnAnswer != Z_OK && AnAnswer != Z_STREAM_END) {
    throw EQuillonZlibError(AMessage);
  }
}

constexpr const char* Damaged = "Der komprimierte Datenstrom ist beschädigt.";

}  // namespace

void TQuillonZCompressionStream::TEnd::operator()(z_stream_s* AState) const {
  deflateEnd(AState);
  delete AState;
}

TQuillonZCompressionStream::TQuillonZCompressionStream(TQuillonStream& ATarget, int ALevel)
    : FTarget(ATarget), FState(new z_stream_s{}), FBuffer(QuillonStreams::PieceSize, '\0') {
  Check(deflateInit(FState.get(), ALevel), "Die Stufe der Komprimierung ist ungültig.");
  FState->next_out = BytesOf(FBuffer.data());
  FState->avail_out = CountOf(FBuffer.size());
}

TQuillonZCompressionStream::~TQuillonZCompressionStream() = default;

void TQuillonZCompressionStream::Write(std::string_view ABytes) {
  for (std::string_view Left = ABytes; !Left.empty();) {
    const std::string_view Part = Left.substr(0, LargestCall);
    Compress(Part, Z_NO_FLUSH);
    Left.remove_prefix(Part.size());
    Advance(static_cast<std::int64_t>(Part.size()));
  }
}

void TQuillonZCompressionStream::Finish() {
  Compress({}, Z_FINISH);
  FState.reset();
}

/// Hands on what is compressed each time the buffer is full, and at the end.
void TQuillonZCompressionStream::Compress(std::string_view ABytes, int AFlush) {
  // What has reached the target when it raises is not known: nothing may follow it.
  auto State = std::move(FState);
  if (State == nullptr) {
    throw EQuillonZlibError("Der komprimierte Datenstrom ist bereits abgeschlossen.");
  }
  State->next_in = BytesOf(ABytes.data());
  State->avail_in = CountOf(ABytes.size());
  for (int Answer = Z_OK; AFlush == Z_FINISH ? Answer != Z_STREAM_END : State->avail_in > 0;) {
    Answer = deflate(State.get(), AFlush);
    Check(Answer, "Die Daten konnten nicht komprimiert werden.");
    if (State->avail_out == 0 || Answer == Z_STREAM_END) {
      FTarget.Write(std::string_view(FBuffer).substr(0, FBuffer.size() - State->avail_out));
      State->next_out = BytesOf(FBuffer.data());
      State->avail_out = CountOf(FBuffer.size());
    }
  }
  FState = std::move(State);
}

void TQuillonZDecompressionStream::TEnd::operator()(z_stream_s* AState) const {
  inflateEnd(AState);
  delete AState;
}

TQuillonZDecompressionStream::TQuillonZDecompressionStream(TQuillonStream& ASource)
    : FSource(ASource), FState(new z_stream_s{}), FBuffer(QuillonStreams::PieceSize, '\0') {
  Check(inflateInit(FState.get()), Damaged);
}

TQuillonZDecompressionStream::~TQuillonZDecompressionStream() = default;

std::size_t TQuillonZDecompressionStream::Read(std::span<char> ABuffer) {
  if (FIsAtEnd || ABuffer.empty()) {
    return 0;
  }
  const uInt Wanted = CountOf(ABuffer.size());
  FState->next_out = BytesOf(ABuffer.data());
  FState->avail_out = Wanted;
  while (FState->avail_out == Wanted && !FIsAtEnd) {
    FillBuffer();
    const int Answer = inflate(FState.get(), Z_NO_FLUSH);
    Check(Answer, Damaged);
    if (Answer == Z_STREAM_END) {
      FIsAtEnd = true;
      GiveBack();
    }
  }
  const std::size_t Got = Wanted - FState->avail_out;
  Advance(static_cast<std::int64_t>(Got));
  if (static_cast<std::size_t>(Position()) > QuillonZlib::LargestContent(FTaken)) {
    throw EQuillonZlibError("Der komprimierte Datenstrom wächst über jedes Maß.");
  }
  return Got;
}

void TQuillonZDecompressionStream::Finish() {
  std::string Piece(QuillonStreams::PieceSize, '\0');
  while (Read(Piece) > 0) {
  }
}

/// Takes the next piece off the source where all of the last one is used up.
void TQuillonZDecompressionStream::FillBuffer() {
  if (FState->avail_in > 0) {
    return;
  }
  FState->next_in = BytesOf(FBuffer.data());
  FState->avail_in = CountOf(FSource.Read(FBuffer));
  FTaken += FState->avail_in;
}

void TQuillonZDecompressionStream::GiveBack() {
  if (FState->avail_in > 0) {
    FSource.Seek(-static_cast<std::int64_t>(FState->avail_in), TQuillonSeekOrigin::Current);
    FState->avail_in = 0;
  }
}
