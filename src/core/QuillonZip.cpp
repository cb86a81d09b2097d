#include "QuillonZip.h"

#include <zip.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "QuillonZlib.h"

namespace {

constexpr zip_uint32_t BestCompression = 9;

/// An error of the library that is cleared at the end.
struct TError {
  zip_error_t Error;

  TError() { zip_error_init(&Error); }
  TError(const TError&) = delete;
  TError& operator=(const TError&) = delete;
  ~TError() { zip_error_fini(&Error); }

  [[noreturn]] void Throw() { throw EQuillonZipError(std::string("ZIP archive: ") + zip_error_strerror(&Error) + "."); }
};

[[noreturn]] void Throw(zip_t* AnArchive) {
  throw EQuillonZipError(std::string("ZIP archive: ") + zip_strerror(AnArchive) + ".");
}

struct TFreeSource {
  void operator()(zip_source_t* ASource) const { zip_source_free(ASource); }
};
/// A counted reference; opening an archive takes one of its own over.
using TSource = std::unique_ptr<zip_source_t, TFreeSource>;

TSource MakeSource(std::string_view ABytes) {
  TError Error;
  TSource Source(zip_source_buffer_create(ABytes.data(), ABytes.size(), 0, &Error.Error));
  if (Source == nullptr) {
    Error.Throw();
  }
  return Source;
}

QuillonZip::TArchive Open(zip_source_t& ASource, int AFlags) {
  TError Error;
  zip_source_keep(&ASource);
  QuillonZip::TArchive Archive(zip_open_from_source(&ASource, AFlags, &Error.Error));
  if (Archive == nullptr) {
    zip_source_free(&ASource);
    Error.Throw();
  }
  return Archive;
}

std::string ContentOf(zip_source_t& ASource) {
  std::string Content;
  zip_stat_t Stat;
  if (zip_source_open(&ASource) != 0 || zip_source_stat(&ASource, &Stat) != 0) {
    throw EQuillonZipError("ZIP archive: " + std::string(zip_error_strerror(zip_source_error(&ASource))) + ".");
  }
  Content.resize(Stat.size);
  const zip_int64_t Got = zip_source_read(&ASource, Content.data(), Content.size());
  zip_source_close(&ASource);
  if (Got != static_cast<zip_int64_t>(Content.size())) {
    throw EQuillonZipError("ZIP archive: it could not be read back.");
  }
  return Content;
}

}  // namespace

namespace QuillonZip {

void TDiscard::operator()(zip* AnArchive) const { zip_discard(AnArchive); }

std::string MakeArchive(std::string_view AnEntryName, std::string_view AContent) {
  const TSource Target = MakeSource({});
  TArchive Archive = Open(*Target, ZIP_TRUNCATE);
  zip_source_t* const Entry = zip_source_buffer(Archive.get(), AContent.data(), AContent.size(), 0);
  if (Entry == nullptr) {
    Throw(Archive.get());
  }
  const zip_int64_t Index = zip_file_add(Archive.get(), std::string(AnEntryName).c_str(), Entry, ZIP_FL_ENC_UTF_8);
  if (Index < 0) {
    zip_source_free(Entry);
    Throw(Archive.get());
  }
  if (zip_set_file_compression(Archive.get(), static_cast<zip_uint64_t>(Index), ZIP_CM_DEFLATE, BestCompression) != 0 ||
      zip_close(Archive.get()) != 0) {
    Throw(Archive.get());
  }
  static_cast<void>(Archive.release());
  return ContentOf(*Target);
}

}  // namespace QuillonZip

void TQuillonZipEntryStream::TClose::operator()(zip_file* AnEntry) const { zip_fclose(AnEntry); }

TQuillonZipEntryStream::TQuillonZipEntryStream(TQuillonBuffer AnArchive) : FBytes(std::move(AnArchive)) {
  // The library takes no bytes at all for an archive without entries.
  if (FBytes.Size() == 0) {
    throw EQuillonZipError("ZIP archive: the file is empty.");
  }
  FArchive = Open(*MakeSource(FBytes.View()), ZIP_RDONLY | ZIP_CHECKCONS);
  if (zip_get_num_entries(FArchive.get(), 0) > 0) {
    OpenEntry();
  }
}

TQuillonZipEntryStream::~TQuillonZipEntryStream() = default;

void TQuillonZipEntryStream::OpenEntry() {
  FEntry.reset(zip_fopen_index(FArchive.get(), 0, 0));
  if (FEntry == nullptr) {
    Throw(FArchive.get());
  }
}

std::size_t TQuillonZipEntryStream::ClaimedSize() const {
  zip_stat_t Stat;
  const bool IsKnown = zip_stat_index(FArchive.get(), 0, 0, &Stat) == 0 && (Stat.valid & ZIP_STAT_SIZE) != 0;
  return IsKnown ? std::min<std::uint64_t>(Stat.size, QuillonZlib::LargestContent(FBytes.Size())) : 0;
}

std::size_t TQuillonZipEntryStream::Read(std::span<char> ABuffer) {
  if (!HasEntry()) {
    return 0;
  }
  const zip_int64_t Got = zip_fread(FEntry.get(), ABuffer.data(), ABuffer.size());
  if (Got < 0) {
    throw EQuillonZipError(std::string("ZIP archive: ") + zip_file_strerror(FEntry.get()) + ".");
  }
  Advance(Got);
  if (std::cmp_greater(Position(), QuillonZlib::LargestContent(FBytes.Size()))) {
    throw EQuillonZipError("ZIP archive: its first entry grows beyond reason.");
  }
  return static_cast<std::size_t>(Got);
}

std::int64_t TQuillonZipEntryStream::Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) {
  if (AnOffset != 0 || AnOrigin != TQuillonSeekOrigin::Begin) {
    return TQuillonOneWayStream::Seek(AnOffset, AnOrigin);
  }
  OpenEntry();
  Advance(-Position());
  return 0;
}
