#include "QuillonStreams/OneWay.h"

namespace {

[[noreturn]] void Refuse() { throw EQuillonStreamError("Der Datenstrom erlaubt diesen Zugriff nicht."); }

}  // namespace

std::size_t TQuillonOneWayStream::Read(std::span<char> /*ABuffer*/) { Refuse(); }

void TQuillonOneWayStream::Write(std::string_view /*ABytes*/) { Refuse(); }

std::int64_t TQuillonOneWayStream::Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) {
  if (AnOffset != 0 || AnOrigin != TQuillonSeekOrigin::Current) {
    Refuse();
  }
  return FPosition;
}

void TQuillonOneWayStream::SetEndOfFile() { Refuse(); }
