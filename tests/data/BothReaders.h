#pragma once

#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "QuillonDataObjects/Storage.h"
#include "QuillonIO.h"

/// What the tests and the fuzz target that hold the two readers of XML against each other share.
namespace BothReaders {

/// A stream in memory that gives a few bytes at a time.
class TPieces final : public TQuillonMemoryStream {
 public:
  TPieces(std::string AContent, std::size_t APiece, bool ACanSeek)
      : TQuillonMemoryStream(std::move(AContent)), FPiece(APiece), FCanSeek(ACanSeek) {}

  std::size_t Read(std::span<char> ABuffer) override {
    FHasGoneBack = FHasGoneBack || TQuillonMemoryStream::Seek(0, TQuillonSeekOrigin::Current) < FFurthest;
    const std::size_t Got = TQuillonMemoryStream::Read(ABuffer.first(std::min(ABuffer.size(), FPiece)));
    FFurthest += static_cast<std::int64_t>(Got);
    return Got;
  }
  std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) override {
    if (!FCanSeek) {
      throw EQuillonStreamError("a pipe");
    }
    return TQuillonMemoryStream::Seek(AnOffset, AnOrigin);
  }

  bool FHasGoneBack = false;  ///< something was read twice

 private:
  std::int64_t FFurthest = 0;
  std::size_t FPiece;
  bool FCanSeek;
};

/// The saved document without what a storage has of its own: identities that the input does not tell, and times from
/// AStart on.
inline std::string Scrubbed(std::string ADocument, std::string_view AnInput, const std::string& AStart) {
  std::set<std::string, std::less<>> Known;
  const auto Visit = [](auto& AText, const auto& AVisitor) {
    for (std::size_t Place = 0; (Place = AText.find('{', Place)) < AText.size(); ++Place) {
      AVisitor(std::string(AText.substr(Place, QuillonGuid::BracedLength)), Place);
    }
  };
  Visit(AnInput, [&](std::string AGuid, std::size_t) {
    std::ranges::transform(AGuid, AGuid.begin(), [](char C) { return C >= 'a' && C <= 'f' ? C - 'a' + 'A' : C; });
    Known.insert(std::move(AGuid));
  });
  Visit(ADocument, [&](const std::string& AGuid, std::size_t APlace) {
    if (QuillonGuid::TryParse(AGuid) && !Known.contains(AGuid)) {
      ADocument.replace(APlace, AGuid.size(), AGuid.size(), '?');
    }
  });
  std::istringstream Lines(std::move(ADocument));
  std::string Left;
  for (std::string Line; std::getline(Lines, Line);) {
    const std::size_t Text = Line.find('>') + 1;
    const bool IsStamp = Line.find("<Changed>") < Text || Line.find("<Created>") < Text;
    if (!IsStamp || Line.compare(Text, AStart.size(), AStart) < 0) {
      Left.append(Line).append("\n");
    }
  }
  return Left;
}

/// What a load leaves in a fresh storage: its error, and what can be saved then.
template <class TStorage, class TLoad>
std::string Outcome(TStorage& AStore, std::string_view AnInput, const TLoad& ALoad) {
  std::string Start;
  QuillonDateTime::AppendDateTime(Start, AStore.FCreated);
  std::string Error;
  try {
    ALoad(AStore);
  } catch (const EQuillonException& Raised) {
    Error = Raised.what();
  }
  return Error + "\n" + std::to_string(AStore.Registry().Count()) + " objects\n" +
         Scrubbed(AStore.SaveToXML(), AnInput, Start);
}

/// As the reader of whole documents leaves it: it serves storages that have changed already.
template <class TStorage>
std::string WholeOutcome(TStorage& AStore, const std::string& AnInput) {
  AStore.CountChange();
  return Outcome(AStore, AnInput, [&](TStorage& AStorage) { AStorage.LoadFromXML(AnInput, "input"); });
}

/// As it is left by a stream that gives pieces.
template <class TStorage>
std::string StreamOutcome(TStorage& AStore, const std::string& AnInput, std::size_t APiece, bool ACanSeek) {
  return Outcome(AStore, AnInput, [&](TStorage& AStorage) {
    TPieces Stream(AnInput, APiece, ACanSeek);
    AStorage.LoadFromXML(Stream, "input");
  });
}

}  // namespace BothReaders
