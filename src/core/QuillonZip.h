#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "QuillonIO.h"
#include "QuillonTypes.h"

/// An archive that cannot be made or read; the message tells why.
class EQuillonZipError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// ZIP archives in memory.
namespace QuillonZip {

/// An archive with one entry, deflated as far as it goes (level 9).
/// @throws EQuillonZipError
std::string MakeArchive(std::string_view AnEntryName, std::string_view AContent);

/// The content of the first entry, whatever its name; nothing for an archive without entries.
/// @throws EQuillonZipError for what is no archive, a damaged or encrypted entry, and one that would grow beyond
/// reason:
///   deflated text of a plan grows thirtyfold, an entry may grow two hundredfold
std::optional<TQuillonBuffer> ReadFirstEntry(std::string_view AnArchive);

}  // namespace QuillonZip
