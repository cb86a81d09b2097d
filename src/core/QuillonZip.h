#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "QuillonStreams/OneWay.h"
#include "QuillonTypes.h"

struct zip;
struct zip_file;

/// An archive that cannot be made or read; the message tells why.
class EQuillonZipError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// ZIP archives in memory.
namespace QuillonZip {

/// Closes an archive as it was.
struct TDiscard {
  void operator()(zip* AnArchive) const;
};
using TArchive = std::unique_ptr<zip, TDiscard>;

/// An archive with one entry, deflated as far as it goes (level 9).
/// @throws EQuillonZipError
std::string MakeArchive(std::string_view AnEntryName, std::string_view AContent);

}  // namespace QuillonZip

/// The content of an archive's first entry, whatever its name, unpacked as it is read.
class TQuillonZipEntryStream final : public TQuillonOneWayStream {
 public:
  /// @throws EQuillonZipError for what is no archive, and an encrypted entry
  explicit TQuillonZipEntryStream(TQuillonBuffer AnArchive);
  ~TQuillonZipEntryStream() override;

  /// An archive without entries has none; nothing can be read then.
  bool HasEntry() const { return FEntry != nullptr; }
  /// Size of the content as the archive tells it, no more than it may have.
  std::size_t ClaimedSize() const;

  /// At the end of the content its checksum is right.
  /// @throws EQuillonZipError for a damaged entry, and one that grows beyond reason: deflated text of a plan grows
  /// thirtyfold, an entry may grow two hundredfold
  std::size_t Read(std::span<char> ABuffer) override;
  /// Goes back to the begin, too.
  std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) override;

 private:
  struct TClose {
    void operator()(zip_file* AnEntry) const;
  };

  void OpenEntry();

  TQuillonBuffer FBytes;
  QuillonZip::TArchive FArchive;
  std::unique_ptr<zip_file, TClose> FEntry;
};
