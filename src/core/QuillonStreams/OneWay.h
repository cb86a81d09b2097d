#pragma once

#include "QuillonIO.h"

/// A stream whose bytes run through in one direction. Of the rest there is only the position, the count of the bytes so
/// far; every other move, and the other direction, raises EQuillonStreamError.
class TQuillonOneWayStream : public TQuillonStream {
 public:
  std::size_t Read(std::span<char> ABuffer) override;
  void Write(std::string_view ABytes) override;
  std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) override;
  void SetEndOfFile() override;

 protected:
  void Advance(std::int64_t ACount) { FPosition += ACount; }

 private:
  std::int64_t FPosition = 0;
};
