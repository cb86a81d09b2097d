#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "QuillonNewFile.h"
#include "QuillonStreams/OneWay.h"

/// The content of a stream that cannot seek, from where that stands on, for who may want it once more from the begin.
/// What has passed is kept in a temporary file that has no name where the system knows such files. A few hundred
/// kilobytes need no file and stay in memory, and so does what no temporary file can be written for.
///
/// The source must outlive this, and nobody else may use it meanwhile.
class TQuillonKeptStream final : public TQuillonOneWayStream {
 public:
  explicit TQuillonKeptStream(TQuillonStream& ASource) : FSource(ASource) {}

  /// Gives less than asked for only at the end, and ahead of a failure of the source.
  /// @throws what the source has raised, once more behind the same bytes too
  std::size_t Read(std::span<char> ABuffer) override;
  /// Goes back to the begin, once; from then on nothing is kept.
  std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) override;

 private:
  std::size_t ReadSource(std::span<char> ABuffer);
  std::size_t ReadKept(std::span<char> ABuffer);
  void KeepAll(std::string_view ABytes);
  void Keep(std::string_view ABytes);
  void MoveToFile();

  TQuillonStream& FSource;
  bool FIsSourceAtEnd = false;
  std::exception_ptr FFailure;  ///< of the source, or of keeping what it gave
  bool FHasGoneBack = false;
  std::optional<TQuillonNewFile> FFile;
  bool FTakesNoFile = false;
  std::uint64_t FInFile = 0;          ///< bytes in the file, later those that are still to be given again
  std::deque<std::string> FInMemory;  ///< what follows them
  std::size_t FGiven = 0;             ///< bytes of the first piece that were given again
};
